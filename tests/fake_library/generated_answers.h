#pragma once

#include "tests/fake_library/answers.h"

namespace krvfake {

// The size of a farm that is made up arithmetically, so that its answers cost next to nothing.
// Jukeboxes have the IDs 1, 2, ..., each as many magazines and slots as told; every slot is full
// and carries one volume on side A, numbered 1, 2, ... through all jukeboxes.
struct GeneratedSize {
    std::int32_t jukeboxes = 1;
    std::int32_t magazinesPerJukebox = 1;
    std::int32_t slotsPerMagazine = 1;
    // Volumes in the volume enumeration; those beyond the last slot lie nowhere.
    std::int32_t volumes = 0;
    bool withLocations = true;
    bool withDirectories = false;
};

class GeneratedAnswers : public Answers {
  public:
    explicit GeneratedAnswers(const GeneratedSize& size) : m_size(size) {}

    std::uint32_t NextJukebox(std::uint32_t previous) override;
    std::uint32_t NextVolume(std::uint32_t previous) override;
    Answer DescribeJukebox(const JukeboxKey& key, JukeboxRecord& record) override;
    Answer DescribeMagazine(const MagazineKey& key, MagazineRecord& record) override;
    Answer DescribeDrive(const DriveKey& key, DriveRecord& record) override;
    Answer DescribeSlot(const SlotKey& key, SlotRecord& record) override;
    Answer DescribeSide(const SideKey& key, SideRecord& record) override;
    Answer DescribeVolume(std::uint32_t volumeId, VolumeRecord& record) override;
    Answer ListAspects(std::uint32_t volumeId, char* buffer, std::uint32_t bufferSize,
                       std::uint32_t& requiredSize) override;
    Answer ListLocations(std::uint32_t volumeId, SideKey* locations, std::uint32_t room,
                         std::uint32_t& count) override;

  private:
    bool HasJukebox(std::int32_t jukebox) const;
    bool HasSlot(std::int32_t jukebox, std::int32_t magazine, std::int32_t slot) const;
    // Slots of all jukeboxes before the given one.
    std::int64_t SlotIndex(std::int32_t jukebox, std::int32_t magazine, std::int32_t slot) const;

    GeneratedSize m_size;
};

}  // namespace krvfake
