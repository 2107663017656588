#include "krvcmd/service/access/volume_lookup.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <string_view>

#include "krvcmd/service/access/library_call.h"
#include "krvcmd/service/sdk/keys.h"

namespace krvcmd {
namespace {

// The service error "the volume has no location".
constexpr uint32_t kNoLocation = 500;

// Third argument of every call for locations, however long the array is.
constexpr uint32_t kAlways1 = 1;

// A list of locations that takes more bytes than this cannot be meant.
constexpr size_t kLargestLocationList = std::numeric_limits<int32_t>::max();

uint32_t LibraryId(int32_t volumeId) {
    return static_cast<uint32_t>(volumeId);
}

Status OutOfMemory() {
    return Status::SystemError(os_code::kOutOfMemory);
}

// Asks for locations into an array; "no location" leaves the count at 0 and is no error.
Status CallVolumeLocations(int32_t volumeId, SideKey* locations, uint32_t& count) {
    Status status = CallLibrary(KrvVolumeLocations, LibraryId(volumeId), locations, kAlways1, &count);
    if (!status.IsServiceError() || status.Code() != kNoLocation) return status;
    count = 0;
    return {};
}

VolumeRecord PresetVolumeRecord() {
    VolumeRecord record{};
    record.size = sizeof(VolumeRecord);
    record.libraryValue1 = -1;
    return record;
}

struct FreeBuffer {
    void operator()(char* buffer) const { std::free(buffer); }
};

// Zeroed memory that costs nothing until it is touched: the size is the library's word. Throws when there
// is none, as every other request for memory.
std::unique_ptr<char, FreeBuffer> AllocateZeroed(size_t size) {
    std::unique_ptr<char, FreeBuffer> buffer(static_cast<char*>(std::calloc(size, 1)));
    if (buffer == nullptr) throw std::bad_alloc();
    return buffer;
}

}  // namespace

Status GetVolume(int32_t volumeId, VolumeInfo& volume) {
    volume.volumeId = volumeId;
    volume.record = PresetVolumeRecord();
    volume.aspects.clear();
    Status status = CallLibrary(KrvVolumeDetail, LibraryId(volumeId), &volume.record);
    if (!status.IsOk()) return status;
    return ReadVolumeAspects(volumeId, volume.aspects);
}

Status ReadVolumeAspects(int32_t volumeId, std::vector<std::string>& aspects) {
    char tooSmall = '\0';
    uint32_t requiredSize = 0;
    const uint32_t id = LibraryId(volumeId);
    Status status = CallLibrary(KrvVolumeAspects, id, &tooSmall, uint32_t{1}, &requiredSize);
    if (!status.IsOk() || requiredSize == 0) return status;

    const uint32_t bufferSize = requiredSize;
    const auto buffer = AllocateZeroed(bufferSize);
    status = CallLibrary(KrvVolumeAspects, id, buffer.get(), bufferSize, &requiredSize);
    if (!status.IsOk()) return status;
    SplitAspects({buffer.get(), bufferSize}, requiredSize, aspects);
    return {};
}

void SplitAspects(std::span<const char> buffer, size_t requiredSize, std::vector<std::string>& aspects) {
    const std::string_view list(buffer.data(), buffer.size());
    size_t offset = 0;
    while (offset < list.size() && offset <= requiredSize) {
        const std::string_view rest = list.substr(offset);
        const std::string_view aspect = rest.substr(0, rest.find('\0'));
        if (aspect.empty()) return;
        aspects.emplace_back(aspect);
        offset += aspect.size() + 1;
    }
}

Status ReadFirstVolumeLocation(int32_t volumeId, SideKey& location, bool& found) {
    location = UnsetSideKey();
    uint32_t count = 0;
    Status status = CallVolumeLocations(volumeId, &location, count);
    found = status.IsOk() && count >= 1;
    return status;
}

Status ReadVolumeLocations(int32_t volumeId, std::vector<SideKey>& locations) {
    locations.assign(1, UnsetSideKey());
    uint32_t count = 0;
    Status status = CallVolumeLocations(volumeId, locations.data(), count);
    if (status.IsOk() && count >= 2) {
        if (count > kLargestLocationList / sizeof(SideKey)) {
            locations.clear();
            return OutOfMemory();
        }
        locations.assign(count, UnsetSideKey());
        status = CallVolumeLocations(volumeId, locations.data(), count);
    }
    // The count may have grown between the calls; what there was no room for is not there.
    const size_t filled = status.IsOk() ? std::min<size_t>(count, locations.size()) : 0;
    locations.resize(filled);
    return status;
}

}  // namespace krvcmd
