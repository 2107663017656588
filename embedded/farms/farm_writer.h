#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "embedded/model/farm.h"
#include "embedded/store/database.h"

namespace embedded {

// Writes a farm into the empty tables of a database. Jukeboxes and volumes may come one at a time, so that a
// large farm need not be in memory as a whole.
class FarmWriter {
  public:
    // The tables exist and are empty; the caller has opened a transaction. `onPart` is called for each slot
    // and each volume.
    FarmWriter(Database& database, std::string_view server, std::function<void()> onPart = {});

    // For more jukeboxes without media in a farm that exists. There is nothing to Finish.
    explicit FarmWriter(Database& database);

    // The jukebox with all that is in it. The caller has checked the farm for contradictions.
    void AddJukebox(const FarmJukebox& jukebox);
    void AddVolume(const FarmVolume& volume);
    void AddToShelf(const FarmMedium& medium);

    // Call it once, at the end: it sets the state of each volume. nextVolume 0 = after the highest ID.
    void Finish(bool running, int32_t nextVolume);

  private:
    void AddMagazine(int32_t jukebox, int32_t number, int32_t firstSlot, const FarmMagazine& magazine);
    void AddMedium(const FarmMedium& medium, Place place, int32_t jukebox, int32_t magazine, int32_t slot);

    void ReportPart() const {
        if (m_onPart) m_onPart();
    }

    Database& m_database;
    std::function<void()> m_onPart;
    int64_t m_lastMedium = 0;
    int32_t m_shelfLength = 0;
    std::vector<std::pair<int32_t, int32_t>> m_shownStates;  // volume ID, state
};

void WriteFarm(Database& database, std::string_view server, const Farm& farm,
               std::function<void()> onPart = {});

// Empties the tables of a farm, its faults and its journal too, and fills them with another farm; sessions
// with the old one are over. The caller has opened a transaction.
void ReplaceFarm(Database& database, std::string_view server, const std::function<void(Database&)>& fill);

}  // namespace embedded
