#include "tools/farm_diff/medium_changes.h"

#include <algorithm>

#include "embedded/model/farm_words.h"
#include "embedded/model/media_types.h"

namespace embedded::tools {
namespace {

const FarmVolume* FindIn(const VolumesById& volumes, int32_t id) {
    const auto found = volumes.find(id);
    return found == volumes.end() ? nullptr : found->second;
}

std::string VolumeName(const VolumesById& volumes, int32_t id) {
    const FarmVolume* volume = FindIn(volumes, id);
    const std::string label = volume == nullptr ? std::string() : volume->label;
    if (id < 0) return label.empty() ? "new volume" : label;
    const std::string name = "volume " + std::to_string(id);
    return label.empty() ? name : label + " (" + name + ")";
}

// "Disc-12 (volume 12), Disc-13 (volume 13)", "blank DVD-RAM".
std::string SubjectOf(const FarmMedium& medium, const VolumesById& volumes) {
    std::string text;
    for (const FarmSide& side : medium.sides) {
        if (side.volume == 0) continue;
        text += (text.empty() ? "" : ", ") + VolumeName(volumes, side.volume);
    }
    if (!text.empty()) return text;
    const bool isBlank = std::ranges::all_of(
        medium.sides, [](const FarmSide& side) { return side.content == Content::Blank; });
    return std::string(isBlank ? "blank " : "") + std::string(MediaTypeName(medium.type));
}

std::pair<int32_t, int32_t> GroupOf(const FarmPlace& place) {
    return {place.jukebox, place.magazine};
}

ChangeKind KindOfMove(Place from, Place to) {
    if (to == Place::ImportStation) return ChangeKind::Loaded;
    if (to == Place::Shelf) return from == Place::Slot ? ChangeKind::Moved : ChangeKind::Unloaded;
    if (from == Place::ImportStation && to == Place::Slot) return ChangeKind::Imported;
    if (from == Place::Slot && to == Place::ExportStation) return ChangeKind::Exported;
    return ChangeKind::Moved;
}

// A change of the order in a station is not the medium's own.
bool IsSamePlace(const FarmPlace& left, const FarmPlace& right) {
    return left == right ||
           (left.place == right.place && left.place != Place::Slot && left.jukebox == right.jukebox);
}

std::string SlotName(const FarmPlace& place) {
    switch (place.place) {
        case Place::Slot:
            return "slot " + std::to_string(place.slot);
        case Place::ImportStation:
            return "import station";
        case Place::ExportStation:
            return "export station";
        case Place::Shelf:
            break;
    }
    return "shelf";
}

int32_t SlotNumber(const FarmPlace& place) {
    return place.place == Place::Slot ? place.slot : 0;
}

void AddMove(const MediumPair& pair, const VolumeFindings& findings, ChangeList& changes) {
    const FarmPlace& from = pair.before->place;
    const FarmPlace& to = pair.after->place;
    if (IsSamePlace(from, to)) return;
    Change change;
    change.kind = KindOfMove(from.place, to.place);
    change.from = from;
    change.to = to;
    const bool isAtStart = change.kind == ChangeKind::Exported || change.kind == ChangeKind::Unloaded;
    const FarmPlace& place = isAtStart ? from : to;
    change.item = SlotName(place);
    change.slot = SlotNumber(place);
    // An export keeps the medium as it was for the reader of the plan, everything else as it is.
    change.subject = SubjectOf(*pair.after->medium, findings.after);
    changes[GroupOf(place)].push_back(std::move(change));
}

void AddOnlyOne(ChangeKind kind, const PlacedMedium& placed, const VolumesById& volumes,
                ChangeList& changes) {
    Change change;
    change.kind = kind;
    (kind == ChangeKind::Added ? change.to : change.from) = placed.place;
    change.item = SlotName(placed.place);
    change.slot = SlotNumber(placed.place);
    change.subject = SubjectOf(*placed.medium, volumes);
    changes[GroupOf(placed.place)].push_back(std::move(change));
}

struct SidePair {
    const FarmSide& before;
    const FarmSide& after;
    const FarmVolume* volumeBefore;
    const FarmVolume* volumeAfter;
};

bool IsNumbered(const SidePair& side) {
    return side.before.volume < 0 && side.after.volume > 0;
}

// Nothing but a format gives back what a file system has taken.
bool IsEmptied(const FarmVolume& before, const FarmVolume& after) {
    return before.free < before.total && after.free == after.total;
}

// Whether something was written that only a format writes.
bool IsFormatted(const SidePair& side) {
    if (side.after.content != Content::FileSystem) return false;
    if (side.before.content != Content::FileSystem) return true;
    if (side.before.sequential != side.after.sequential) return true;
    if (side.volumeBefore == nullptr || side.volumeAfter == nullptr) return false;
    return side.volumeBefore->label != side.volumeAfter->label ||
           side.volumeBefore->fileSystem != side.volumeAfter->fileSystem ||
           IsEmptied(*side.volumeBefore, *side.volumeAfter);
}

std::string Word(std::span<const embedded::Word> words, auto value) {
    return std::string(WordOf(words, static_cast<int32_t>(value)));
}

void AddVolumeFields(Change& change, const SidePair& side) {
    static const FarmVolume kNone;
    const FarmVolume& before = side.volumeBefore == nullptr ? kNone : *side.volumeBefore;
    const FarmVolume& after = side.volumeAfter == nullptr ? kNone : *side.volumeAfter;
    AddField(change, "label", before.label, after.label);
    AddField(change, "file system", before.fileSystem, after.fileSystem);
    if (change.fields.empty())
        AddField(change, "free bytes", std::to_string(before.free), std::to_string(after.free));
}

// The kind of the change of a side, and its fields; no fields when nothing has changed.
Change SideChange(const SidePair& side) {
    Change change;
    if (IsFormatted(side)) {
        change.kind = ChangeKind::Formatted;
        AddVolumeFields(change, side);
        if (side.before.content != Content::FileSystem)
            AddField(change, "content", Word(ContentWords(), side.before.content),
                     Word(ContentWords(), side.after.content));
        return change;
    }
    const bool isErased = side.after.content == Content::Blank && side.before.content != Content::Blank;
    change.kind = isErased ? ChangeKind::Erased : ChangeKind::Altered;
    if (isErased && side.volumeBefore != nullptr) AddField(change, "label", side.volumeBefore->label, "");
    AddField(change, "content", Word(ContentWords(), side.before.content),
             Word(ContentWords(), side.after.content));
    if (isErased) return change;
    const bool isClosed =
        side.after.finalization == Finalization::Finalized || side.after.finalization == Finalization::Closed;
    if (change.fields.empty() && isClosed) change.kind = ChangeKind::Finalized;
    AddField(change, "finalization", Word(FinalizationWords(), side.before.finalization),
             Word(FinalizationWords(), side.after.finalization));
    if (change.fields.empty()) change.kind = ChangeKind::Altered;
    if (!IsNumbered(side))
        AddField(change, "volume", std::to_string(side.before.volume), std::to_string(side.after.volume));
    AddField(change, "part", std::to_string(side.before.part), std::to_string(side.after.part));
    AddField(change, "sequential", side.before.sequential ? "yes" : "no",
             side.after.sequential ? "yes" : "no");
    return change;
}

void AddSideChange(const PlacedMedium& placed, size_t number, const SidePair& side, VolumeFindings& findings,
                   ChangeList& changes) {
    if (IsNumbered(side)) findings.numbered.emplace(side.before.volume, side.after.volume);
    Change change = SideChange(side);
    const bool writesVolume = change.kind == ChangeKind::Formatted || change.kind == ChangeKind::Erased;
    if (change.fields.empty() && change.kind != ChangeKind::Formatted) return;
    // A volume on several sides is reported with the first one.
    if (writesVolume && side.after.volume != 0 && !findings.coveredAfter.insert(side.after.volume).second)
        return;
    if (writesVolume || side.before.volume != side.after.volume)
        findings.coveredBefore.insert(side.before.volume);
    if (side.before.volume != side.after.volume) findings.coveredAfter.insert(side.after.volume);
    change.item = SlotName(placed.place) + " side " + (number == 0 ? "A" : "B");
    change.slot = SlotNumber(placed.place);
    change.side = static_cast<int32_t>(number) + 1;
    change.volume = side.after.volume != 0 ? side.after.volume : side.before.volume;
    if (change.volume > 0) change.subject = "volume " + std::to_string(change.volume);
    changes[GroupOf(placed.place)].push_back(std::move(change));
}

void NoteGroup(const PlacedMedium& placed, VolumeFindings& findings) {
    for (const FarmSide& side : placed.medium->sides) {
        if (side.volume != 0) findings.groups.emplace(side.volume, GroupOf(placed.place));
    }
}

}  // namespace

void AddField(Change& change, const char* field, std::string before, std::string after) {
    if (before != after) change.fields.push_back({field, std::move(before), std::move(after)});
}

void CoverVolumes(const MediumPair& pair, VolumeFindings& findings) {
    if (pair.before != nullptr) {
        for (const FarmSide& side : pair.before->medium->sides)
            findings.coveredBefore.insert(side.volume);
    }
    if (pair.after != nullptr) {
        for (const FarmSide& side : pair.after->medium->sides)
            findings.coveredAfter.insert(side.volume);
    }
}

void AddMediumChanges(const MediumPair& pair, VolumeFindings& findings, ChangeList& changes) {
    if (pair.after != nullptr) NoteGroup(*pair.after, findings);
    if (pair.before != nullptr) NoteGroup(*pair.before, findings);
    if (pair.before == nullptr || pair.after == nullptr) {
        CoverVolumes(pair, findings);
        if (pair.before == nullptr) {
            AddOnlyOne(ChangeKind::Added, *pair.after, findings.after, changes);
        } else {
            AddOnlyOne(ChangeKind::Removed, *pair.before, findings.before, changes);
        }
        return;
    }
    AddMove(pair, findings, changes);
    const std::vector<FarmSide>& before = pair.before->medium->sides;
    const std::vector<FarmSide>& after = pair.after->medium->sides;
    for (size_t number = 0; number < std::min(before.size(), after.size()); ++number) {
        AddSideChange(*pair.after, number,
                      {before[number], after[number], FindIn(findings.before, before[number].volume),
                       FindIn(findings.after, after[number].volume)},
                      findings, changes);
    }
    Change change;
    change.item = SlotName(pair.after->place);
    change.slot = SlotNumber(pair.after->place);
    change.subject = SubjectOf(*pair.after->medium, findings.after);
    AddField(change, "medium type", std::string(MediaTypeName(pair.before->medium->type)),
             std::string(MediaTypeName(pair.after->medium->type)));
    AddField(change, "sides", std::to_string(before.size()), std::to_string(after.size()));
    if (!change.fields.empty()) changes[GroupOf(pair.after->place)].push_back(std::move(change));
}

}  // namespace embedded::tools
