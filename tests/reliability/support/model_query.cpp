#include "tests/reliability/support/model_query.h"

#include <algorithm>
#include <string>
#include <vector>

#include "tests/reliability/support/model_walk.h"

namespace krvcmd::reliability {
namespace {

// From this count on the program reports that memory is exhausted.
constexpr uint32_t kTooManyLocations = 2'147'483'647 / 20 + 1;

// Handles the IDs of an enumeration up to the first failure.
template <class Next, class Handle>
Result ForEach(const ModelLibrary& library, Next next, Handle handle) {
    Result result;
    uint32_t id = 0;
    while (result.IsOk()) {
        uint32_t following = 0;
        if (!library.Call(next, id, &following).IsOk()) break;
        if (static_cast<int32_t>(following) < 1) break;
        id = following;
        result = handle(static_cast<int32_t>(id));
    }
    return result;
}

// Handles each number of a list; the last one's result counts.
template <class Handle>
Result EachOf(const std::vector<Numbers>& list, Handle handle) {
    Result result;
    for (const Numbers& numbers : list) {
        for (int64_t number = numbers.from; number <= numbers.to; ++number)
            result = handle(static_cast<int32_t>(number));
    }
    return result;
}

}  // namespace

Result ModelQuery::Gather(int32_t jukebox) {
    const auto each = [&](Result (ModelQuery::*list)(int32_t)) {
        if (!NamesNoJukebox()) return (this->*list)(jukebox);
        return ForEach(m_library, KrvGetNextJukebox, [&](int32_t id) { return (this->*list)(id); });
    };
    switch (m_command.object) {
        case Object::Jukeboxes:
            return each(&ModelQuery::ListJukebox);
        case Object::Magazines:
            return each(&ModelQuery::ListMagazines);
        case Object::Drives:
            if (m_command.drive) return ListDrive(jukebox, *m_command.drive - 1);
            return each(&ModelQuery::ListDrives);
        case Object::Slots:
        case Object::Volumes:
            return ListSlotsOrVolumes(jukebox);
        case Object::None:
            break;
    }
    return Result::System(22);
}

Result ModelQuery::ListJukebox(int32_t jukebox) {
    JukeboxRecord record;
    Result result = m_library.Jukebox(jukebox, record);
    if (result.IsOk()) ++m_rows;
    return result;
}

Result ModelQuery::ListMagazines(int32_t jukebox) {
    JukeboxRecord record;
    Result result = m_library.Jukebox(jukebox, record);
    if (!result.IsOk()) return result;
    for (int32_t m = 0; m < record.magazineCount; ++m) {
        MagazineRecord magazine;
        const Result asked = m_library.Magazine(jukebox, m, magazine);
        if (asked.IsOk()) {
            ++m_rows;
        } else {
            result = asked;
        }
    }
    return result;
}

Result ModelQuery::ListDrives(int32_t jukebox) {
    JukeboxRecord record;
    Result result = m_library.Jukebox(jukebox, record);
    if (!result.IsOk()) return result;
    result = Result::System(2);
    for (int32_t d = 0; d < record.driveCount; ++d)
        result = ListDrive(jukebox, d);
    return result;
}

Result ModelQuery::ListDrive(int32_t jukebox, int32_t drive) {
    JukeboxRecord record;
    Result result = m_library.Jukebox(jukebox, record);
    if (result.IsOk()) result = m_library.Drive(jukebox, drive);
    if (result.IsOk()) ++m_rows;
    return result;
}

Result ModelQuery::Walk(const Place& address) {
    return WalkSlots(m_library, {}, address, [this](const Place& place) { return ListSlot(place); });
}

Result ModelQuery::ListSlotsOrVolumes(int32_t jukebox) {
    if (!m_command.volumes.empty()) {
        return EachOf(m_command.volumes, [this](int32_t id) { return ListVolume(-1, id); });
    }
    if (NamesNoJukebox()) {
        if (m_command.object == Object::Volumes) {
            return ForEach(m_library, KrvGetNextVolume, [this](int32_t id) { return ListVolume(-1, id); });
        }
        return ForEach(m_library, KrvGetNextJukebox, [this](int32_t id) { return Walk({id, -1, -1, -1}); });
    }
    if (m_command.drive) return Result::System(22);
    if (!m_command.slots.empty()) return ListAddressedSlots(jukebox);
    if (m_command.magazines.empty()) return Walk({jukebox, -1, -1, -1});
    return EachOf(m_command.magazines, [&](int32_t m) { return Walk({jukebox, m, -1, -1}); });
}

Result ModelQuery::ListAddressedSlots(int32_t jukebox) {
    const int32_t magazine = m_command.magazines.empty() ? -1 : m_command.magazines.front().from;
    if (m_command.sideA == m_command.sideB) {
        return EachOf(m_command.slots, [&](int32_t slot) { return Walk({jukebox, magazine, slot, -1}); });
    }
    // No walk: the library gets the numbers unchecked, only zero-based.
    const auto fromZero = [](int32_t number) { return number >= 1 ? number - 1 : number; };
    return EachOf(m_command.slots, [&](int32_t slot) {
        return ListSlot({jukebox, fromZero(magazine), fromZero(slot), m_command.sideA ? 0 : 1});
    });
}

Result ModelQuery::ListSlot(const Place& place) {
    JukeboxRecord jukebox;
    Result result = m_library.Jukebox(place.jukebox, jukebox);
    if (!result.IsOk()) return result;
    SlotRecord slot;
    result = m_library.Slot(place.jukebox, place.magazine, place.slot, slot);
    if (!result.IsOk()) return result;
    if (slot.state != 4) {
        if (m_command.object == Object::Slots && slot.state != 3) ++m_rows;
        return result;
    }
    for (int32_t side = 0; side <= 1; ++side) {
        if ((place.side == 0 || place.side == 1) && side != place.side) continue;
        SideRecord record;
        result = m_library.Side({20, place.jukebox, place.magazine, place.slot, side}, record);
        if (!result.IsOk() && result.code != 3) continue;
        if (record.volumeId >= 1) result = ListVolume(place.jukebox, record.volumeId);
    }
    return result.code == 3 ? Result() : result;
}

Result ModelQuery::ReadDirectories(int32_t volume) {
    const auto id = static_cast<uint32_t>(volume);
    char oneByte = 0;
    uint32_t size = 0;
    Result result = m_library.Call(KrvVolumeAspects, id, &oneByte, 1U, &size);
    if (!result.IsOk() || size == 0) return result;
    std::vector<char> buffer(size);
    return m_library.Call(KrvVolumeAspects, id, buffer.data(), static_cast<uint32_t>(buffer.size()), &size);
}

Result ModelQuery::ListVolume(int32_t jukebox, int32_t volume) {
    Result result = m_library.VolumeDetail(volume);
    if (result.IsOk()) result = ReadDirectories(volume);
    if (!result.IsOk()) return result;

    std::vector<SideKey> keys(1, Unset());
    uint32_t count = 0;
    const auto ask = [&] {
        result = m_library.Locations(volume, keys.data(), &count);
        if (result.kind != Result::Kind::Service || result.code != 500) return;
        result = {};
        count = 0;
    };
    ask();
    if (result.IsOk() && count >= 2) {
        if (count >= kTooManyLocations) return Result::System(12);
        keys.assign(count, Unset());
        ask();
    }
    if (!result.IsOk()) return result;
    keys.resize(std::min<size_t>(count, keys.size()));
    if (keys.empty()) {
        ++m_rows;
        return result;
    }
    if (jukebox < 1) jukebox = keys.front().jukeboxId;
    for (const SideKey& key : keys) {
        JukeboxRecord record;
        SideRecord side;
        result = m_library.Jukebox(jukebox, record);
        if (result.IsOk()) result = m_library.Side(key, side);
        if (result.IsOk()) ++m_rows;
    }
    return result;
}

}  // namespace krvcmd::reliability
