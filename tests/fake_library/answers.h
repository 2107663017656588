#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "krvcmd/service/sdk/codes.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvfake {

// What a failing call writes into the context. A text of 1024 bytes or more has no NUL there.
struct Failure {
    int32_t code = 0;
    std::string text;
};

// The outcome of one call: nothing is success.
using Answer = std::optional<Failure>;

// The code of every "there is no such item" that nobody scripted.
inline constexpr int32_t kUnknownItem = 1001;
inline constexpr auto kNoLocation = static_cast<int32_t>(krvcmd::service_code::kNoLocation);

// Where the answers of the looking calls come from: a farm in memory or made up arithmetically.
class Answers {
  public:
    Answers() = default;
    Answers(const Answers&) = delete;
    Answers& operator=(const Answers&) = delete;
    virtual ~Answers() = default;

    virtual uint32_t NextJukebox(uint32_t previous) = 0;
    virtual uint32_t NextVolume(uint32_t previous) = 0;
    virtual Answer DescribeJukebox(const JukeboxKey& key, JukeboxRecord& record) = 0;
    virtual Answer DescribeMagazine(const MagazineKey& key, MagazineRecord& record) = 0;
    virtual Answer DescribeDrive(const DriveKey& key, DriveRecord& record) = 0;
    virtual Answer DescribeSlot(const SlotKey& key, SlotRecord& record) = 0;
    virtual Answer DescribeSide(const SideKey& key, SideRecord& record) = 0;
    virtual Answer DescribeVolume(uint32_t volumeId, VolumeRecord& record) = 0;
    virtual Answer ListAspects(uint32_t volumeId, char* buffer, uint32_t bufferSize,
                               uint32_t& requiredSize) = 0;
    // `room` elements may be written.
    virtual Answer ListLocations(uint32_t volumeId, SideKey* locations, uint32_t room, uint32_t& count) = 0;
};

// Copies a text into a fixed-width field: filled up with NULs, or without any when it does not fit.
template <size_t N>
void FillText(char (&field)[N], std::string_view text) {
    for (size_t i = 0; i < N; ++i)
        field[i] = i < text.size() ? text[i] : '\0';
}

}  // namespace krvfake
