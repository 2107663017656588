#include "embedded/catalogue/format_erase_finalize.h"

#include <vector>

#include "embedded/catalogue/item_texts.h"
#include "embedded/catalogue/items.h"
#include "embedded/catalogue/volume_changes.h"
#include "embedded/model/media_types.h"
#include "embedded/model/refusal.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr Sql kSetSide = R"sql(
    UPDATE side SET content = ?3, finalization = ?4, sequential = ?5, volume = nullif(?6, 0)
    WHERE medium = ?1 AND side = ?2
)sql";

constexpr Sql kFinalizeSide = R"sql(
    UPDATE side SET finalization = ?3 WHERE medium = ?1 AND side = ?2
)sql";

// The slot that the key names, with its medium.
Slot FindSlotOfKey(Database& database, const SideKey& key, const char* function) {
    if (key.slot < 0) throw Refuse(Code::NotANumberedItem, {"the slot number", function});
    RequireEnabledJukebox(database, key.jukeboxId);
    return FindSlotWithMedium(database, ResolveSlot(database, key.jukeboxId, key.magazine, key.slot));
}

Side RequireSide(Database& database, const Slot& slot, int32_t side) {
    const auto found = FindSide(database, *slot.medium, side);
    if (found.has_value()) return *found;
    const std::string name = side == 0 || side == 1 ? SideLetter(side) : std::to_string(side);
    throw Refuse(Code::NoSuchSide, {"the medium in " + PlaceText(database, slot.place), name});
}

// One part of a mirror or a volume set cannot be written without the others.
void RequireOwnVolume(Database& database, const Slot& slot, const Side& side) {
    if (side.volume == 0 || FindReach(database, side.volume).sides <= 1) return;
    throw Refuse(Code::PartOfSeveral,
                 {SideText(database, slot.place, side.number), std::to_string(side.volume)});
}

void RequireGoodSide(Database& database, const Slot& slot, const Side& side) {
    if (side.content != Content::Bad) return;
    throw Refuse(Code::SideUnreadable, {SideText(database, slot.place, side.number)});
}

// Media of an unknown type count as rewritable random-access media.
Writing WritingOf(uint32_t mediumType) {
    const MediaType* type = FindMediaType(mediumType);
    return type == nullptr ? Writing::Rewritable : type->writing;
}

void RequireFormattable(Database& database, const Slot& slot, const Side& side) {
    const Writing writing = WritingOf(slot.medium->type);
    if (writing == Writing::ReadOnly) {
        throw Refuse(Code::MediumReadOnly,
                     {MediaTypeName(slot.medium->type), PlaceText(database, slot.place)});
    }
    const std::string name = SideText(database, slot.place, side.number);
    if (side.finalization == Finalization::Closed) throw Refuse(Code::MediumClosed, {name});
    if (side.finalization == Finalization::Finalized) throw Refuse(Code::MediumFinalized, {name});
    if (writing == Writing::WriteOnce && side.content == Content::FileSystem) {
        throw Refuse(Code::AlreadyRecorded, {name});
    }
    RequireGoodSide(database, slot, side);
    RequireOwnVolume(database, slot, side);
}

// The volume on a side that was written; 0 = none. A bad side keeps its volume.
int32_t RecordVolume(Database& database, const Side& before, const SideReading& reading) {
    if (reading.content == Content::Bad) return before.volume;
    if (reading.content != Content::FileSystem) {
        if (before.volume != 0) RemoveVolume(database, before.volume);
        return 0;
    }
    if (before.volume == 0) return AddVolume(database, reading);
    SetVolume(database, before.volume, reading);
    return before.volume;
}

// Returns the volume on the side; 0 = none.
int32_t RecordSide(Database& database, const Medium& medium, const Side& before, const SideReading& reading) {
    const int32_t volume = RecordVolume(database, before, reading);
    Run(database, kSetSide, medium.id, before.number, reading.content, reading.finalization,
        reading.isSequential, volume);
    if (volume != 0) RefreshVolumeState(database, volume);
    return volume;
}

std::string FormatWords(Database& database, const SlotPlace& place, const Side& side, int32_t volume,
                        const SideReading& reading) {
    return "formatted: " + LocationText(database, place) + "." + SideLetter(side.number) + " (volume " +
           std::to_string(volume) + ", " + reading.fileSystem + ", label \"" + reading.label + "\")";
}

}  // namespace

WritePlan PlanFormat(Database& database, const SideKey& key, const FormatRequest& request) {
    WritePlan plan;
    plan.slot = FindSlotOfKey(database, key, "KrvVolumeFormat");
    const Side side = RequireSide(database, plan.slot, key.side);
    RequireFormattable(database, plan.slot, side);
    const MediaType* type = FindMediaType(plan.slot.medium->type);
    plan.isSequential = request.isSequential || (type != nullptr && type->access == Access::Sequential);
    plan.label = request.label;
    if (plan.label.empty() && side.volume != 0) {
        plan.label = FindVolume(database, side.volume).value_or(Volume{}).label;
    }
    plan.sides.push_back(side);
    plan.handledSides = SidesOfKey(key.side, 1);
    plan.isCertified = request.isCertified;
    return plan;
}

WritePlan PlanErase(Database& database, const SideKey& key) {
    WritePlan plan;
    plan.task = WriteTask::Erase;
    plan.slot = FindSlotOfKey(database, key, "KrvVolumeErase");
    const Medium& medium = *plan.slot.medium;
    if (key.side == kBothSides) {
        plan.sides = FindSides(database, medium);
    } else {
        plan.sides.push_back(RequireSide(database, plan.slot, key.side));
    }
    if (WritingOf(medium.type) != Writing::Rewritable) {
        throw Refuse(Code::NotRewritable, {MediaTypeName(medium.type), PlaceText(database, plan.slot.place)});
    }
    for (const Side& side : plan.sides) {
        RequireGoodSide(database, plan.slot, side);
        RequireOwnVolume(database, plan.slot, side);
    }
    std::string place = LocationText(database, plan.slot.place);
    if (key.side != kBothSides) place += std::string(".") + SideLetter(key.side);
    const std::string erased =
        key.side == kBothSides ? MediumText(database, medium) : SideContentText(database, medium, key.side);
    plan.words = "erased: " + place + " (" + erased + ")";
    plan.handledSides = SidesOfKey(key.side, plan.sides.size());
    return plan;
}

WritePlan PlanFinalize(Database& database, const SideKey& key) {
    WritePlan plan;
    plan.task = WriteTask::Finalize;
    plan.slot = FindSlotOfKey(database, key, "KrvVolumeFinalize");
    if (key.side != kBothSides) {
        throw Refuse(Code::InvalidCall,
                     {"KrvVolumeFinalize", "only the whole medium, side 2, can be finalized"});
    }
    const std::vector<Side> sides = FindSides(database, *plan.slot.medium);
    bool isSequential = false;
    for (const Side& side : sides) {
        RequireGoodSide(database, plan.slot, side);
        if (side.content != Content::FileSystem || !side.isSequential) continue;
        isSequential = true;
        if (side.finalization != Finalization::Closed) plan.sides.push_back(side);
    }
    if (!isSequential) throw Refuse(Code::NotSequential, {PlaceText(database, plan.slot.place)});
    plan.handledSides = SidesOfKey(kBothSides, sides.size());
    plan.words = "finalized: " + LocationText(database, plan.slot.place) + " (" +
                 MediumText(database, *plan.slot.medium) + ")";
    return plan;
}

CallOutcome RecordWriting(Database& database, const WritePlan& plan, const WrittenSides& written) {
    CallOutcome outcome;
    if (plan.sides.empty()) return outcome;
    if (written.end.side != SideAfter::Done) {
        outcome.refusal = Refuse(Code::DeviceTrouble, {written.end.trouble});
        return outcome;
    }
    const SlotPlace& place = plan.slot.place;
    const Medium& medium = *plan.slot.medium;
    outcome.change.words = plan.words;
    for (size_t i = 0; i < plan.sides.size(); ++i) {
        const Side& side = plan.sides[i];
        const SideReading& reading = written.sides.at(i).reading;
        if (plan.task == WriteTask::Finalize) {
            Run(database, kFinalizeSide, medium.id, side.number, reading.finalization);
            continue;
        }
        const int32_t volume = RecordSide(database, medium, side, reading);
        if (plan.task == WriteTask::Format)
            outcome.change.words = FormatWords(database, place, side, volume, reading);
    }
    if (plan.task != WriteTask::Finalize) SetSlotState(database, place, SlotState::Full);
    outcome.change.medium = Handled(database, place, medium, plan.handledSides);
    outcome.change.medium->certified = plan.isCertified;
    return outcome;
}

}  // namespace embedded
