#pragma once

#include "tests/fake_library/answers.h"

namespace krvfake {

// The size of a farm that is made up arithmetically, so that its answers cost next to nothing.
// Jukeboxes have the IDs 1, 2, ..., each as many magazines and slots as told; every slot is full
// and carries one volume on side A, numbered 1, 2, ... through all jukeboxes.
struct GeneratedSize {
    int32_t jukeboxes = 1;
    int32_t magazinesPerJukebox = 1;
    int32_t slotsPerMagazine = 1;
    // Volumes in the volume enumeration; those beyond the last slot have no location.
    int32_t volumes = 0;
    bool withLocations = true;
    bool withDirectories = false;
    // Whether capacity and file system change from one volume to the next.
    bool isVaried = false;
};

class GeneratedAnswers : public Answers {
  public:
    explicit GeneratedAnswers(const GeneratedSize& size) : m_size(size) {}

    uint32_t NextJukebox(uint32_t previous) override;
    uint32_t NextVolume(uint32_t previous) override;
    Answer DescribeJukebox(const JukeboxKey& key, JukeboxRecord& record) override;
    Answer DescribeMagazine(const MagazineKey& key, MagazineRecord& record) override;
    Answer DescribeDrive(const DriveKey& key, DriveRecord& record) override;
    Answer DescribeSlot(const SlotKey& key, SlotRecord& record) override;
    Answer DescribeSide(const SideKey& key, SideRecord& record) override;
    Answer DescribeVolume(uint32_t volumeId, VolumeRecord& record) override;
    Answer ListAspects(uint32_t volumeId, char* buffer, uint32_t bufferSize, uint32_t& requiredSize) override;
    Answer ListLocations(uint32_t volumeId, SideKey* locations, uint32_t room, uint32_t& count) override;

  private:
    bool HasJukebox(int32_t jukebox) const;
    bool HasSlot(int32_t jukebox, int32_t magazine, int32_t slot) const;
    // Slots of all jukeboxes before the given one.
    int64_t SlotIndex(int32_t jukebox, int32_t magazine, int32_t slot) const;

    GeneratedSize m_size;
};

}  // namespace krvfake
