#include "tests/reliability/support/model_work.h"

#include <limits>

namespace krvcmd::reliability {
namespace {

// A library can answer any number; the one after the largest does not exist.
int32_t OneMore(int32_t number) {
    return number == std::numeric_limits<int32_t>::max() ? number : number + 1;
}

SideKey KeyOf(const Place& place, int32_t side) {
    return {20, place.jukebox, place.magazine, place.slot, side};
}

bool IsServiceCode(const Result& result, uint32_t code) {
    return result.kind == Result::Kind::Service && result.code == code;
}

}  // namespace

Result WalkSlots(const ModelLibrary& library, const WalkRules& rules, const Place& address,
                 const SlotWork& work) {
    Level level = Level::Slot;
    if (rules.repeat == 0 && address.slot < 0) {
        level = address.magazine < 0 ? Level::Jukebox : Level::Magazine;
    }
    const bool goesOn = rules.repeat != 0 || address.slot < 0;
    int64_t wanted = rules.repeat;

    ModelSlots slots(library);
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
    // 500: it lies nowhere, wherever locations are read.
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

namespace {

Result FormatOneSide(const ModelLibrary& library, const Order& order, const SideKey& key) {
    if (order.erase) return library.Call(KrvVolumeErase, &key);
    if (order.finalize) return library.Call(KrvVolumeFinalize, &key);
    FormatOptions options;
    std::memset(&options, 0, sizeof options);
    options.size = 284;
    if (order.label) {
        if (order.label->size() > 255) return Result::System(22);
        std::memcpy(options.label, order.label->data(), order.label->size());
    }
    options.certify = order.certify ? 1 : 0;
    options.sequential = order.sequential ? 1 : 0;
    return library.Call(KrvVolumeFormat, &key, &options);
}

}  // namespace

Result FormatMedium(const ModelLibrary& library, const Order& order, const Place& place) {
    if (place.side > 2) return Result::System(22);
    int32_t first = place.side == 1 ? 1 : 0;
    int32_t last = place.side == 0 ? 0 : 1;
    if (first != last && (order.erase || !order.finalize)) {
        SideRecord sideB;
        const SideKey key = KeyOf(place, 1);
        if (library.Side(key, sideB).IsOk() && sideB.state == 1) last = 0;
    }
    if (order.finalize) first = last = 2;
    Result result;
    for (int32_t side = first; side <= last && result.IsOk(); ++side) {
        result = FormatOneSide(library, order, KeyOf(place, side));
    }
    return result;
}

Result SwitchVolume(const ModelLibrary& library, bool enable, int32_t volume) {
    const auto id = static_cast<uint32_t>(volume);
    if (!enable) return library.Call(KrvVolumeDeactivate, id);
    return library.Call(KrvVolumeActivate, id, static_cast<const void*>(nullptr));
}

Result SwitchVolumesInSlot(const ModelLibrary& library, bool enable, const Place& address) {
    ModelSlots slots(library);
    Result result = slots.Start(address.jukebox, address.magazine, address.slot, address.side);
    for (int32_t side = 0; side <= 1 && result.IsOk(); ++side) {
        SideRecord record;
        result = library.Side(KeyOf(slots.At(), side), record);
        if (result.IsOk() && record.volumeId > 0) result = SwitchVolume(library, enable, record.volumeId);
    }
    return result;
}

}  // namespace krvcmd::reliability
