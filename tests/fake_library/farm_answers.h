#pragma once

#include "tests/fake_library/answers.h"
#include "tests/fake_library/farm.h"

namespace krvfake {

// Answers out of a `Farm`, which must outlive it. Items that the farm lacks are refused with
// kUnknownItem; a magazine of -1 makes the slot an absolute number.
class FarmAnswers : public Answers {
  public:
    explicit FarmAnswers(Farm& farm) : m_farm(farm) {}

    uint32_t NextJukebox(uint32_t previous) override { return m_farm.NextJukebox(previous); }
    uint32_t NextVolume(uint32_t previous) override { return m_farm.NextVolume(previous); }
    Answer DescribeJukebox(const JukeboxKey& key, JukeboxRecord& record) override;
    Answer DescribeMagazine(const MagazineKey& key, MagazineRecord& record) override;
    Answer DescribeDrive(const DriveKey& key, DriveRecord& record) override;
    Answer DescribeSlot(const SlotKey& key, SlotRecord& record) override;
    Answer DescribeSide(const SideKey& key, SideRecord& record) override;
    Answer DescribeVolume(uint32_t volumeId, VolumeRecord& record) override;
    Answer ListAspects(uint32_t volumeId, char* buffer, uint32_t bufferSize, uint32_t& requiredSize) override;
    Answer ListLocations(uint32_t volumeId, SideKey* locations, uint32_t room, uint32_t& count) override;

  private:
    Magazine* FindMagazine(int32_t jukebox, int32_t magazine);
    const Slot* FindSlot(int32_t jukebox, int32_t magazine, int32_t slot);

    Farm& m_farm;
};

}  // namespace krvfake
