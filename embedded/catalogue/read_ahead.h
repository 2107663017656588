#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "embedded/catalogue/slot_states.h"
#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// Reads ahead for a caller that goes through all volumes one by one, as every listing does: the next volumes
// are read in batches, with their directory names, their places and the sides there. What is read ahead
// belongs to the caller's present view of the farm and is forgotten with it, so that the answers are those of
// single searches.
class ReadAhead {
  public:
    // The caller has a new view.
    void Forget();

    // The next higher ID, 0 after the last one.
    uint32_t NextVolume(Database& database, uint32_t previous);

    struct PlacedSide {
        SideKey place;
        SideRecord record;
    };
    struct Volume {
        uint32_t id = 0;
        VolumeRecord record{};
        std::string aspects;
        std::vector<PlacedSide> places;
    };

    // Null when the volume was not read ahead.
    const Volume* FindVolume(uint32_t id);

    // Null when the side does not belong to the volume that was found last, or cannot be read.
    const SideRecord* FindSide(const SideKey& key) const;

    // The jukeboxes that were asked for in this view.
    const JukeboxRecord* FindJukebox(int32_t jukebox) const;
    void KeepJukebox(int32_t jukebox, const JukeboxRecord& record);

  private:
    void ReadBatch(Database& database, uint32_t previous);
    void AttachDirectories(Database& database, uint32_t first, uint32_t last);
    void AttachPlaces(Database& database, uint32_t first, uint32_t last);
    Volume* FindFrom(size_t& position, uint32_t id);

    std::vector<Volume> m_batch;  // room for a batch; the first m_count are in use, by rising ID
    size_t m_count = 0;
    size_t m_current = 0;       // of the volume that was found last
    uint32_t m_lastAnswer = 0;  // of NextVolume; a caller that passes it on goes through the list
    SlotStates m_slotStates;
    std::unordered_map<int32_t, JukeboxRecord> m_jukeboxes;
};

}  // namespace embedded
