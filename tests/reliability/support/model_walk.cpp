#include "tests/reliability/support/model_walk.h"

#include <limits>

namespace krvcmd::reliability {
namespace {

// The library can answer any number; the largest has no successor.
int32_t OneMore(int32_t number) {
    return number == std::numeric_limits<int32_t>::max() ? number : number + 1;
}

SideKey KeyOf(const Place& place, int32_t side) {
    return {20, place.jukebox, place.magazine, place.slot, side};
}

bool IsServiceCode(const Result& result, uint32_t code) {
    return result.kind == Result::Kind::Service && result.code == code;
}

Result FormatOneSide(const ModelLibrary& library, const CommandSpec& command, const SideKey& key) {
    if (command.erase) return library.Call(KrvVolumeErase, &key);
    if (command.finalize) return library.Call(KrvVolumeFinalize, &key);
    FormatOptions options;
    std::memset(&options, 0, sizeof options);
    options.size = 284;
    if (command.label) {
        if (command.label->size() > 255) return Result::System(22);
        std::memcpy(options.label, command.label->data(), command.label->size());
    }
    options.certify = command.certify ? 1 : 0;
    options.sequential = command.sequential ? 1 : 0;
    return library.Call(KrvVolumeFormat, &key, &options);
}

}  // namespace

Result SlotWalk::FindAbsolute(int32_t jukebox, int32_t absoluteSlot, int32_t side) {
    JukeboxRecord record;
    if (Result result = m_library.Jukebox(jukebox, record); !result.IsOk()) return result;
    int64_t slotsBefore = 0;
    for (int32_t m = 0; m < record.magazineCount; ++m) {
        MagazineRecord magazine;
        // The magazine's own error is not reported.
        if (!m_library.Magazine(jukebox, m, magazine).IsOk() || magazine.slotCount == 0) break;
        if (slotsBefore <= absoluteSlot && absoluteSlot < slotsBefore + magazine.slotCount) {
            m_at = {jukebox, m, static_cast<int32_t>(absoluteSlot - slotsBefore), side};
            return {};
        }
        slotsBefore += magazine.slotCount;
    }
    return Result::System(22);
}

Result SlotWalk::Start(int32_t jukebox, int32_t magazine, int32_t slot, int32_t side) {
    if (slot >= 1 && magazine < 0) {
        if (Result result = FindAbsolute(jukebox, slot - 1, side); !result.IsOk()) return result;
    } else {
        m_at = {jukebox, magazine >= 1 ? magazine - 1 : 0, slot >= 1 ? slot - 1 : 0, side};
    }
    const Place wanted = m_at;
    JukeboxRecord record;
    if (Result result = m_library.Jukebox(jukebox, record); !result.IsOk()) return result;
    m_magazines = record.magazineCount;
    if (Result result = EnterMagazine(wanted.magazine); !result.IsOk()) return result;
    if (wanted.slot >= m_slots) return Result::System(22);
    m_at.slot = wanted.slot;
    return {};
}

Result SlotWalk::EnterMagazine(int32_t magazine) {
    if (magazine >= m_magazines) return Result::System(2);
    MagazineRecord record;
    m_slots = m_library.Magazine(m_at.jukebox, magazine, record).IsOk() ? record.slotCount : 0;
    m_at.magazine = magazine;
    m_at.slot = 0;
    return {};
}

Result SlotWalk::Next(Level level) {
    if (m_at.slot + 1 < m_slots) {
        ++m_at.slot;
        return {};
    }
    return level == Level::Magazine ? Result::System(2) : EnterMagazine(m_at.magazine + 1);
}

Result WalkSlots(const ModelLibrary& library, const WalkRules& rules, const Place& address,
                 const SlotWork& work) {
    Level level = Level::Slot;
    if (rules.repeat == 0 && address.slot < 0) {
        level = address.magazine < 0 ? Level::Jukebox : Level::Magazine;
    }
    const bool goesOn = rules.repeat != 0 || address.slot < 0;
    int64_t wanted = rules.repeat;

    SlotWalk slots(library);
    Result result = slots.Start(address.jukebox, address.magazine, address.slot, address.side);
    if (!result.IsOk()) return result;
    for (;;) {
        result = work(slots.At());
        const uint32_t code = result.code;
        if (code == 7 || !goesOn) break;
        if (result.IsOk()) --wanted;
        if (rules.stopsWhenNoMedium && code == 501) {
            result = {};
            break;
        }
        if (code == 501 || code == 502) result = {};
        if (result.IsOk()) result = slots.Next(level);
        if (!result.IsOk()) break;
        if (level == Level::Slot && wanted < 1) break;
    }
    return result.code == 2 ? Result() : result;
}

Result WorkOnVolume(const ModelLibrary& library, int32_t volume, const SlotWork& work) {
    SideKey location = Unset();
    uint32_t count = 0;
    Result result = library.Locations(volume, &location, &count);
    // 500: the volume is in no jukebox.
    if (IsServiceCode(result, 500)) return {};
    if (!result.IsOk() || count < 1) return result;
    const Place address{location.jukeboxId, OneMore(location.magazine), OneMore(location.slot),
                        location.side};
    return WalkSlots(library, {0, true}, address, work);
}

Result MoveMedium(const ModelLibrary& library, Verb verb, const Place& place) {
    const SlotKey key{16, place.jukebox, place.magazine, place.slot};
    Result result = library.Call(verb == Verb::Import ? KrvMediaImport : KrvMediaExport, &key);
    return IsServiceCode(result, 4) ? Result() : result;
}

Result ScanMedium(const ModelLibrary& library, Place place) {
    if (place.side > 2) return Result::System(22);
    const SideKey key = KeyOf(place, 2);
    Result result = library.Call(KrvMediaScan, &key);
    return IsServiceCode(result, 4) ? Result() : result;
}

Result FormatMedium(const ModelLibrary& library, const CommandSpec& command, const Place& place) {
    if (place.side > 2) return Result::System(22);
    int32_t first = place.side == 1 ? 1 : 0;
    int32_t last = place.side == 0 ? 0 : 1;
    if (first != last && (command.erase || !command.finalize)) {
        SideRecord sideB;
        const SideKey key = KeyOf(place, 1);
        if (library.Side(key, sideB).IsOk() && sideB.state == 1) last = 0;
    }
    if (command.finalize) first = last = 2;
    Result result;
    for (int32_t side = first; side <= last && result.IsOk(); ++side) {
        result = FormatOneSide(library, command, KeyOf(place, side));
    }
    return result;
}

Result SwitchVolume(const ModelLibrary& library, bool enable, int32_t volume) {
    const auto id = static_cast<uint32_t>(volume);
    if (!enable) return library.Call(KrvVolumeDeactivate, id);
    return library.Call(KrvVolumeActivate, id, static_cast<const void*>(nullptr));
}

Result SwitchVolumesInSlot(const ModelLibrary& library, bool enable, const Place& address) {
    SlotWalk slots(library);
    Result result = slots.Start(address.jukebox, address.magazine, address.slot, address.side);
    for (int32_t side = 0; side <= 1 && result.IsOk(); ++side) {
        SideRecord record;
        result = library.Side(KeyOf(slots.At(), side), record);
        if (result.IsOk() && record.volumeId > 0) result = SwitchVolume(library, enable, record.volumeId);
    }
    return result;
}

}  // namespace krvcmd::reliability
