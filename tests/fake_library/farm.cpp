#include "tests/fake_library/farm.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

namespace krvfake {
namespace {

constexpr int32_t kMost = std::numeric_limits<int32_t>::max();

template <typename Items>
uint32_t NextOf(const Items& items, const std::map<int32_t, size_t>& index, Farm::Enumeration& scripted,
                uint32_t previous) {
    if (!scripted.ids.empty()) {
        if (previous == 0) scripted.step = 0;
        const size_t step = scripted.step++;
        if (step < scripted.ids.size()) return static_cast<uint32_t>(scripted.ids[step]);
        return scripted.endless ? static_cast<uint32_t>(scripted.ids.back()) : 0;
    }
    size_t position = 0;
    if (previous != 0) {
        const auto found = index.find(static_cast<int32_t>(previous));
        if (found == index.end()) return 0;
        position = found->second + 1;
    }
    return position < items.size() ? static_cast<uint32_t>(items[position].id) : 0;
}

}  // namespace

Jukebox& Jukebox::WithChanger(Device device) {
    changer = std::move(device);
    return *this;
}

Jukebox& Jukebox::Disabled() {
    enabled = false;
    return *this;
}

Jukebox& Jukebox::DoubleSided() {
    doubleSided = true;
    return *this;
}

Jukebox& Jukebox::WithDrive(Device device, bool driveEnabled) {
    drives.push_back({std::move(device), driveEnabled});
    ++claimedDrives;
    return *this;
}

Jukebox& Jukebox::WithMagazine(int32_t slotCount, Slot otherSlots) {
    magazines.push_back({slotCount, true, otherSlots, {}});
    ++claimedMagazines;
    const int64_t slots = int64_t{claimedSlots} + std::max(slotCount, 0);
    claimedSlots = static_cast<int32_t>(std::min<int64_t>(slots, kMost));
    return *this;
}

Jukebox& Jukebox::WithMissingMagazine(int32_t slotCount) {
    WithMagazine(slotCount);
    magazines.back().present = false;
    return *this;
}

Jukebox& Jukebox::WithSlot(int32_t magazine, int32_t slot, uint32_t state, uint32_t mediumCode) {
    Slot& entry = SlotEntry(magazine, slot);
    entry.state = state;
    entry.mediumCode = mediumCode;
    return *this;
}

Jukebox& Jukebox::WithSide(int32_t magazine, int32_t slot, int32_t side, Side contents) {
    SlotEntry(magazine, slot).sides.at(static_cast<size_t>(side)) = contents;
    return *this;
}

Slot& Jukebox::SlotEntry(int32_t magazine, int32_t slot) {
    Magazine& holder = magazines.at(static_cast<size_t>(magazine));
    return holder.slots.try_emplace(slot, holder.otherSlots).first->second;
}

Volume& Volume::WithType(uint32_t value) {
    type = value;
    return *this;
}

Volume& Volume::InState(uint32_t value) {
    state = value;
    return *this;
}

Volume& Volume::WithFileSystem(std::string_view name) {
    fileSystem = name;
    return *this;
}

Volume& Volume::WithCapacity(uint64_t total, uint64_t free) {
    totalCapacity = total;
    freeCapacity = free;
    return *this;
}

Volume& Volume::WithDirectory(std::string_view path) {
    directories.emplace_back(path);
    return *this;
}

Volume& Volume::WithMedium(uint32_t code) {
    mediumCode = code;
    return *this;
}

Volume& Volume::At(int32_t jukebox, int32_t magazine, int32_t slot, int32_t side) {
    Jukebox* const holder = farm->FindJukebox(jukebox);
    if (holder == nullptr) throw std::invalid_argument("a volume lies in a jukebox that was not added");
    Slot& entry = holder->SlotEntry(magazine, slot);
    entry.state = slot_state::kFull;
    entry.mediumCode = mediumCode;
    entry.sides.at(static_cast<size_t>(side)) = {6, mediumCode, 1, id};
    return SaysItIsAt(jukebox, magazine, slot, side);
}

Volume& Volume::SaysItIsAt(int32_t jukebox, int32_t magazine, int32_t slot, int32_t side) {
    locations.push_back({sizeof(SideKey), jukebox, magazine, slot, side});
    return *this;
}

Jukebox& Farm::AddJukebox(int32_t id, std::string_view name) {
    m_jukeboxIndex.try_emplace(id, m_jukeboxes.size());
    Jukebox& jukebox = m_jukeboxes.emplace_back();
    jukebox.id = id;
    jukebox.name = name;
    return jukebox;
}

Volume& Farm::AddVolume(int32_t id, std::string_view label) {
    m_volumeIndex.try_emplace(id, m_volumes.size());
    Volume& volume = m_volumes.emplace_back();
    volume.farm = this;
    volume.id = id;
    volume.label = label;
    return volume;
}

Jukebox* Farm::FindJukebox(int32_t id) {
    const auto found = m_jukeboxIndex.find(id);
    return found == m_jukeboxIndex.end() ? nullptr : &m_jukeboxes[found->second];
}

Volume* Farm::FindVolume(int32_t id) {
    const auto found = m_volumeIndex.find(id);
    return found == m_volumeIndex.end() ? nullptr : &m_volumes[found->second];
}

void Farm::EnumerateJukeboxes(std::vector<int32_t> ids, bool endless) {
    m_jukeboxEnumeration = {std::move(ids), endless, 0};
}

void Farm::EnumerateVolumes(std::vector<int32_t> ids, bool endless) {
    m_volumeEnumeration = {std::move(ids), endless, 0};
}

uint32_t Farm::NextJukebox(uint32_t previous) {
    return NextOf(m_jukeboxes, m_jukeboxIndex, m_jukeboxEnumeration, previous);
}

uint32_t Farm::NextVolume(uint32_t previous) {
    return NextOf(m_volumes, m_volumeIndex, m_volumeEnumeration, previous);
}

void Farm::Clear() {
    m_jukeboxes.clear();
    m_volumes.clear();
    m_jukeboxIndex.clear();
    m_volumeIndex.clear();
    m_jukeboxEnumeration = {};
    m_volumeEnumeration = {};
}

}  // namespace krvfake
