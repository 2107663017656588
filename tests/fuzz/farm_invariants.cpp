#include "tests/fuzz/farm_invariants.h"

#include <cstring>
#include <map>
#include <tuple>
#include <vector>

#include "tests/fuzz/fuzz_target.h"

namespace krvcmd::fuzz {
namespace {

struct Context : KrvCallContext {
    explicit Context(KrvSession current) : KrvCallContext{} {
        headSize = 24;
        session = current;
        errorInfo = &error;
        error.size = sizeof(KrvErrorInfo);
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
};

template <class Function, class... Arguments>
bool Succeeds(KrvSession session, Function function, Arguments... arguments) {
    Context context(session);
    return function(&context, arguments...) != 0;
}

template <class Function, class... Arguments>
void Do(KrvSession session, Function function, Arguments... arguments) {
    Context context(session);
    const bool isDone = function(&context, arguments...) != 0;
    Require(isDone, std::string("the service answers: ") + context.error.text);
}

template <class Next>
std::vector<int32_t> Enumerate(KrvSession session, Next next) {
    constexpr size_t kMost = 10'000;
    std::vector<int32_t> ids;
    for (uint32_t id = 0;;) {
        uint32_t following = 0;
        Do(session, next, id, &following);
        if (following == 0) return ids;
        Require(following <= 0x7FFFFFFF, "an ID is positive");
        Require(ids.size() < kMost, "an enumeration ends");
        id = following;
        ids.push_back(static_cast<int32_t>(id));
    }
}

using Place = std::tuple<int32_t, int32_t, int32_t, int32_t>;

std::map<Place, int32_t> VolumesBySide(KrvSession session) {
    std::map<Place, int32_t> volumes;
    for (const int32_t jukebox : Enumerate(session, KrvGetNextJukebox)) {
        const JukeboxKey jukeboxKey{sizeof(JukeboxKey), jukebox};
        JukeboxRecord record{};
        record.size = sizeof record;
        Do(session, KrvGetJukebox, &jukeboxKey, &record);
        for (int32_t m = 0; m < record.magazineCount; ++m) {
            const MagazineKey magazineKey{sizeof(MagazineKey), jukebox, m};
            MagazineRecord magazine{sizeof(MagazineRecord), -1, 0};
            if (!Succeeds(session, KrvGetMagazine, &magazineKey, &magazine)) continue;
            for (int32_t s = 0; s < magazine.slotCount; ++s) {
                for (int32_t side = 0; side <= 1; ++side) {
                    const SideKey key{sizeof(SideKey), jukebox, m, s, side};
                    SideRecord sideRecord{sizeof(SideRecord), 0, 254, 0, -1};
                    // An unreadable side fails but is filled in all the same.
                    (void)Succeeds(session, KrvGetSide, &key, &sideRecord);
                    if (sideRecord.volumeId > 0) volumes[{jukebox, m, s, side}] = sideRecord.volumeId;
                }
            }
        }
    }
    return volumes;
}

std::vector<SideKey> Locations(KrvSession session, int32_t volume) {
    std::vector<SideKey> keys(1, {sizeof(SideKey), -1, -1, -1, -1});
    uint32_t count = 0;
    const auto id = static_cast<uint32_t>(volume);
    if (!Succeeds(session, KrvVolumeLocations, id, keys.data(), 1U, &count)) return {};
    if (count > 1) {
        keys.assign(count, {sizeof(SideKey), -1, -1, -1, -1});
        Do(session, KrvVolumeLocations, id, keys.data(), 1U, &count);
    }
    keys.resize(count);
    return keys;
}

}  // namespace

KrvSession OpenSession() {
    KrvSession session = 0;
    if (Succeeds(0, KrvSessionCreate, ".", &session)) return session;
    Do(0, KrvServiceStart, ".");
    Do(0, KrvSessionCreate, ".", &session);
    return session;
}

void CloseSession(KrvSession session) {
    Do(session, KrvSessionClose);
}

void TryToCloseSession(KrvSession session) {
    (void)Succeeds(session, KrvSessionClose);
}

void CheckFarm() {
    const KrvSession session = OpenSession();
    std::map<Place, int32_t> bySide = VolumesBySide(session);
    for (const int32_t volume : Enumerate(session, KrvGetNextVolume)) {
        VolumeRecord record{};
        record.size = sizeof record;
        record.libraryValue1 = -1;
        Do(session, KrvVolumeDetail, static_cast<uint32_t>(volume), &record);
        Require(std::memchr(record.label, '\0', sizeof record.label) != nullptr, "a label has an end");
        for (const SideKey& key : Locations(session, volume)) {
            const auto side = bySide.find({key.jukeboxId, key.magazine, key.slot, key.side});
            Require(side != bySide.end() && side->second == volume,
                    "volume " + std::to_string(volume) + " lies where it says");
            bySide.erase(side);
        }
    }
    Require(bySide.empty(), "every volume on a side says that it lies there");
    CloseSession(session);
}

}  // namespace krvcmd::fuzz
