#include "tools/farm_diff/item_changes.h"

#include <algorithm>

#include "embedded/model/farm_words.h"

namespace embedded::tools {
namespace {

using Group = std::pair<int32_t, int32_t>;

std::map<int32_t, const FarmJukebox*> JukeboxesOf(const Farm& farm) {
    std::map<int32_t, const FarmJukebox*> jukeboxes;
    for (const FarmJukebox& jukebox : farm.jukeboxes)
        jukeboxes.emplace(jukebox.id, &jukebox);
    return jukeboxes;
}

Change ChangeOf(ChangeKind kind, std::string item, std::string subject = {}) {
    Change change;
    change.kind = kind;
    change.item = std::move(item);
    change.subject = std::move(subject);
    return change;
}

void AddEnabling(ChangeList& changes, const Group& group, const std::string& item, bool before, bool after) {
    if (before == after) return;
    changes[group].push_back(ChangeOf(after ? ChangeKind::Enabled : ChangeKind::Disabled, item));
}

void AddIfAltered(ChangeList& changes, const Group& group, Change change) {
    if (!change.fields.empty()) changes[group].push_back(std::move(change));
}

void AddDeviceFields(Change& change, const FarmDevice& before, const FarmDevice& after) {
    AddField(change, "vendor", before.vendor, after.vendor);
    AddField(change, "product", before.product, after.product);
    AddField(change, "revision", before.revision, after.revision);
    const auto address = [](const FarmDevice& device) {
        return std::to_string(device.scsi[0]) + ":" + std::to_string(device.scsi[1]) + ":" +
               std::to_string(device.scsi[2]);
    };
    AddField(change, "SCSI address", address(before), address(after));
}

void AddDriveChanges(const FarmJukebox& before, const FarmJukebox& after, ChangeList& changes) {
    const Group group = {after.id, 0};
    const size_t both = std::min(before.drives.size(), after.drives.size());
    for (size_t index = 0; index < std::max(before.drives.size(), after.drives.size()); ++index) {
        const std::string item = "drive " + std::to_string(index + 1);
        if (index >= both) {
            const bool isNew = after.drives.size() > both;
            changes[group].push_back(ChangeOf(isNew ? ChangeKind::Added : ChangeKind::Removed, item));
            continue;
        }
        const FarmDrive& was = before.drives[index];
        const FarmDrive& is = after.drives[index];
        AddEnabling(changes, group, item, was.enabled, is.enabled);
        Change change = ChangeOf(ChangeKind::Altered, item);
        AddDeviceFields(change, was.device, is.device);
        for (size_t value = 0; value < std::size(was.values); ++value)
            AddField(change, "value", std::to_string(was.values[value]), std::to_string(is.values[value]));
        AddIfAltered(changes, group, std::move(change));
    }
}

std::map<int32_t, SlotState> OddSlots(const FarmMagazine& magazine) {
    std::map<int32_t, SlotState> states;
    for (const FarmSlot& slot : magazine.oddSlots)
        states.emplace(slot.number, slot.state);
    return states;
}

// "full" and "empty" stand for a state that is as the media say.
std::string StateText(const std::map<int32_t, SlotState>& odd, int32_t slot, bool hasMedium) {
    const auto found = odd.find(slot);
    const SlotState state =
        found != odd.end() ? found->second : (hasMedium ? SlotState::Full : SlotState::Empty);
    return std::string(WordOf(SlotStateWords(), static_cast<int32_t>(state)));
}

// What the media say about the slots of a magazine.
struct SlotsOfMedia {
    std::set<int32_t> moved;  // a medium left or came
    std::set<int32_t> full;   // as before, whose medium stayed
};
using SlotsByGroup = std::map<Group, SlotsOfMedia>;

SlotsByGroup FindSlots(const std::vector<MediumPair>& media) {
    SlotsByGroup slots;
    const auto at = [&](const PlacedMedium& placed) -> SlotsOfMedia& {
        return slots[{placed.place.jukebox, placed.place.magazine}];
    };
    for (const MediumPair& pair : media) {
        const bool stays =
            pair.before != nullptr && pair.after != nullptr && pair.before->place == pair.after->place;
        for (const PlacedMedium* placed : {pair.before, pair.after}) {
            if (placed == nullptr || placed->place.place != Place::Slot) continue;
            (stays ? at(*placed).full : at(*placed).moved).insert(placed->place.slot);
        }
    }
    return slots;
}

void AddSlotChanges(const Group& group, const FarmMagazine& before, const FarmMagazine& after,
                    const SlotsByGroup& slotsOfMedia, ChangeList& changes) {
    if (before.oddSlots.empty() && after.oddSlots.empty()) return;
    const auto found = slotsOfMedia.find(group);
    const SlotsOfMedia slots = found == slotsOfMedia.end() ? SlotsOfMedia() : found->second;
    const std::map<int32_t, SlotState> was = OddSlots(before);
    const std::map<int32_t, SlotState> is = OddSlots(after);
    std::set<int32_t> numbers;
    for (const auto& [number, state] : was)
        numbers.insert(number);
    for (const auto& [number, state] : is)
        numbers.insert(number);
    for (const int32_t number : numbers) {
        if (slots.moved.contains(number) && !is.contains(number)) continue;
        const bool hasMedium = slots.full.contains(number) || slots.moved.contains(number);
        Change change = ChangeOf(is.contains(number) ? ChangeKind::Altered : ChangeKind::Scanned,
                                 "slot " + std::to_string(number));
        change.slot = number;
        AddField(change, "state", StateText(was, number, hasMedium), StateText(is, number, hasMedium));
        AddIfAltered(changes, group, std::move(change));
    }
}

void AddMagazineChanges(const FarmJukebox& before, const FarmJukebox& after, const SlotsByGroup& slots,
                        ChangeList& changes) {
    const size_t both = std::min(before.magazines.size(), after.magazines.size());
    for (size_t index = 0; index < std::max(before.magazines.size(), after.magazines.size()); ++index) {
        const Group group = {after.id, static_cast<int32_t>(index) + 1};
        if (index >= both) {
            const bool isNew = after.magazines.size() > both;
            changes[group].push_back(ChangeOf(isNew ? ChangeKind::Added : ChangeKind::Removed, "magazine"));
            continue;
        }
        const FarmMagazine& was = before.magazines[index];
        const FarmMagazine& is = after.magazines[index];
        AddEnabling(changes, group, "magazine", was.present, is.present);
        Change change = ChangeOf(ChangeKind::Altered, "magazine");
        AddField(change, "slots", std::to_string(was.slotCount), std::to_string(is.slotCount));
        AddIfAltered(changes, group, std::move(change));
        AddSlotChanges(group, was, is, slots, changes);
    }
}

void AddOneJukebox(const FarmJukebox& before, const FarmJukebox& after, const SlotsByGroup& slots,
                   ChangeList& changes) {
    const Group group = {after.id, 0};
    Change name = ChangeOf(ChangeKind::Renamed, "jukebox");
    AddField(name, "name", before.name, after.name);
    AddIfAltered(changes, group, std::move(name));
    AddEnabling(changes, group, "jukebox", before.enabled, after.enabled);
    Change change = ChangeOf(ChangeKind::Altered, "jukebox");
    AddField(change, "double-sided", before.doubleSided ? "yes" : "no", after.doubleSided ? "yes" : "no");
    AddDeviceFields(change, before.changer, after.changer);
    AddIfAltered(changes, group, std::move(change));
    AddDriveChanges(before, after, changes);
    AddMagazineChanges(before, after, slots, changes);
}

std::string Joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

std::string ShownState(const FarmVolume& volume) {
    return volume.state.has_value() ? std::to_string(*volume.state) : "usual";
}

void AddOneVolume(const FarmVolume& before, const FarmVolume& after, bool isCovered, const Group& group,
                  ChangeList& changes) {
    const std::string item = "volume " + std::to_string(after.id);
    AddEnabling(changes, group, item, before.enabled, after.enabled);
    Change directories = ChangeOf(ChangeKind::Renamed, item, after.label);
    AddField(directories, "directories", Joined(before.directories), Joined(after.directories));
    AddIfAltered(changes, group, std::move(directories));
    Change change = ChangeOf(ChangeKind::Altered, item, after.label);
    AddField(change, "type", std::string(WordOf(VolumeTypeWords(), static_cast<int32_t>(before.type))),
             std::string(WordOf(VolumeTypeWords(), static_cast<int32_t>(after.type))));
    AddField(change, "state", ShownState(before), ShownState(after));
    if (!isCovered) {
        AddField(change, "label", before.label, after.label);
        AddField(change, "file system", before.fileSystem, after.fileSystem);
        AddField(change, "bytes", std::to_string(before.total), std::to_string(after.total));
        AddField(change, "free bytes", std::to_string(before.free), std::to_string(after.free));
    }
    AddField(change, "value 1", std::to_string(before.value1), std::to_string(after.value1));
    AddField(change, "value 2", std::to_string(before.value2), std::to_string(after.value2));
    AddIfAltered(changes, group, std::move(change));
}

}  // namespace

std::set<int32_t> JukeboxesOfOneFarm(const Farm& before, const Farm& after) {
    const auto was = JukeboxesOf(before);
    const auto is = JukeboxesOf(after);
    std::set<int32_t> ids;
    for (const auto& [id, jukebox] : was) {
        if (!is.contains(id)) ids.insert(id);
    }
    for (const auto& [id, jukebox] : is) {
        if (!was.contains(id)) ids.insert(id);
    }
    return ids;
}

void AddJukeboxChanges(const Farm& before, const Farm& after, const std::vector<MediumPair>& media,
                       ChangeList& changes) {
    const auto was = JukeboxesOf(before);
    const auto is = JukeboxesOf(after);
    const SlotsByGroup slots = FindSlots(media);
    for (const auto& [id, jukebox] : was) {
        const auto found = is.find(id);
        if (found == is.end()) {
            changes[{id, 0}].push_back(ChangeOf(ChangeKind::Removed, "jukebox", jukebox->name));
        } else {
            AddOneJukebox(*jukebox, *found->second, slots, changes);
        }
    }
    for (const auto& [id, jukebox] : is) {
        if (!was.contains(id))
            changes[{id, 0}].push_back(ChangeOf(ChangeKind::Added, "jukebox", jukebox->name));
    }
}

void AddVolumeChanges(const VolumeFindings& findings, const Farm& before, const Farm& after,
                      ChangeList& changes) {
    const auto groupOf = [&](int32_t id) {
        const auto found = findings.groups.find(id);
        return found == findings.groups.end() ? Group(0, 0) : found->second;
    };
    std::unordered_set<int32_t> paired;
    for (const FarmVolume& volume : before.volumes) {
        const auto numbered = findings.numbered.find(volume.id);
        const int32_t id = numbered == findings.numbered.end() ? volume.id : numbered->second;
        const auto found = findings.after.find(id);
        if (found != findings.after.end()) {
            paired.insert(id);
            AddOneVolume(volume, *found->second, findings.coveredAfter.contains(id), groupOf(id), changes);
        } else if (!findings.coveredBefore.contains(volume.id)) {
            Change change =
                ChangeOf(ChangeKind::Removed, "volume " + std::to_string(volume.id), volume.label);
            change.volume = volume.id;
            changes[groupOf(volume.id)].push_back(std::move(change));
        }
    }
    for (const FarmVolume& volume : after.volumes) {
        if (paired.contains(volume.id) || findings.coveredAfter.contains(volume.id)) continue;
        Change change = ChangeOf(ChangeKind::Added, "volume " + std::to_string(volume.id), volume.label);
        change.volume = volume.id;
        changes[groupOf(volume.id)].push_back(std::move(change));
    }
}

}  // namespace embedded::tools
