// The least that a command can cost: the same calls to the client library in a bare loop, then one write of
// the bytes that are to come out, which lie ready in a file.
//
//     floor volumes FILE         as "query volumes"
//     floor slots JUKEBOX FILE   as "query slots J@JUKEBOX"
//     floor enable COUNT FILE    as "enable V@1-COUNT"
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "krvcmd/service/sdk/krv_sdk.h"

namespace {

KrvSession session = 0;

// A context as the library expects it before every call.
struct Context {
    Context() {
        context.headSize = offsetof(KrvCallContext, error);
        context.session = session;
        context.errorInfo = &context.error;
        context.error.size = sizeof(KrvErrorInfo);
    }

    KrvCallContext context{};
};

template <class Function, class... Arguments>
bool Call(Function function, Arguments... arguments) {
    Context fresh;
    return function(&fresh.context, arguments...) != 0;
}

JukeboxRecord GetJukebox(int32_t jukebox) {
    const JukeboxKey key{sizeof key, jukebox};
    JukeboxRecord record{};
    record.size = sizeof record;
    record.driveCount = -1;
    record.magazineCount = -1;
    Call(KrvGetJukebox, &key, &record);
    return record;
}

MagazineRecord GetMagazine(int32_t jukebox, int32_t magazine) {
    const MagazineKey key{sizeof key, jukebox, magazine};
    MagazineRecord record{sizeof record, -1, 0};
    Call(KrvGetMagazine, &key, &record);
    return record;
}

SideRecord GetSide(const SideKey& key) {
    SideRecord record{sizeof record, 0, 254, 0, -1};
    Call(KrvGetSide, &key, &record);
    return record;
}

void AskForAspects(uint32_t volumeId) {
    static std::vector<char> buffer;
    char tooSmall = '\0';
    uint32_t size = 0;
    if (!Call(KrvVolumeAspects, volumeId, &tooSmall, 1U, &size) || size == 0) return;
    buffer.resize(size);
    Call(KrvVolumeAspects, volumeId, buffer.data(), size, &size);
}

void AskForVolume(uint32_t volumeId) {
    VolumeRecord volume{};
    volume.size = sizeof volume;
    volume.libraryValue1 = -1;
    Call(KrvVolumeDetail, volumeId, &volume);
    AskForAspects(volumeId);

    SideKey location{sizeof location, -1, -1, -1, -1};
    uint32_t count = 0;
    if (!Call(KrvVolumeLocations, volumeId, &location, 1U, &count) || count == 0) return;
    GetJukebox(location.jukeboxId);
    GetSide(location);
}

void AskForSlot(const SlotKey& key) {
    constexpr uint32_t kFull = 4;
    GetJukebox(key.jukeboxId);
    SlotRecord slot{sizeof slot, 0, 254};
    Call(KrvGetSlot, &key, &slot);
    if (slot.state != kFull) return;
    for (int32_t side = 0; side <= 1; ++side) {
        const SideRecord record = GetSide({sizeof(SideKey), key.jukeboxId, key.magazine, key.slot, side});
        if (record.volumeId >= 1) AskForVolume(static_cast<uint32_t>(record.volumeId));
    }
}

void AskForAllVolumes() {
    for (uint32_t id = 0, next = 0; Call(KrvGetNextVolume, id, &next) && next >= 1; next = 0) {
        id = next;
        AskForVolume(id);
    }
}

void AskForAllSlots(int32_t jukebox) {
    GetJukebox(jukebox);  // whether there is one
    const int32_t magazines = GetJukebox(jukebox).magazineCount;
    for (int32_t m = 0; m < magazines; ++m) {
        const int32_t slots = GetMagazine(jukebox, m).slotCount;
        for (int32_t s = 0; s < slots; ++s)
            AskForSlot({sizeof(SlotKey), jukebox, m, s});
    }
}

void EnableVolumes(uint32_t count) {
    for (uint32_t id = 1; id <= count; ++id)
        Call(KrvVolumeActivate, id, static_cast<const void*>(nullptr));
}

bool WriteFile(const char* path) {
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    struct stat info = {};
    if (file == -1 || fstat(file, &info) != 0) return false;
    if (info.st_size == 0) return true;
    const auto size = static_cast<size_t>(info.st_size);
    const void* bytes = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    return bytes != MAP_FAILED && write(STDOUT_FILENO, bytes, size) == info.st_size;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) return 2;
    const std::string_view what = argv[1];
    Call(KrvSessionCreate, ".", &session);
    if (what == "volumes") AskForAllVolumes();
    if (what == "slots") AskForAllSlots(std::atoi(argv[2]));
    if (what == "enable") EnableVolumes(static_cast<uint32_t>(std::atoi(argv[2])));
    Call(KrvSessionClose);
    return WriteFile(argv[argc - 1]) ? 0 : 1;
}
