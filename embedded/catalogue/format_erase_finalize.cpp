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

constexpr Sql kAddVolume = R"sql(
    INSERT INTO volume (id, type, state, enabled, file_system, label, total, free, value1, value2)
    VALUES (?1, 0, 0, 1, ?2, ?3, ?4, ?4, -1, 0)
)sql";

constexpr Sql kSetVolumeFormat = R"sql(
    UPDATE volume SET file_system = ?2, label = ?3, total = ?4, free = ?4 WHERE id = ?1
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

void WriteSide(Database& database, const Slot& slot, const Side& side) {
    Run(database, kSetSide, slot.medium->id, side.number, side.content, side.finalization, side.isSequential,
        side.volume);
}

struct VolumeContent {
    std::string label;
    uint64_t capacity;
};

// Label and capacity of the volume after the format. On a medium type without a known capacity, the volume
// keeps the one that it has.
VolumeContent NewContent(Database& database, const Slot& slot, const Side& side, const std::string& label) {
    VolumeContent content{label, 0};
    const auto before = side.volume == 0 ? std::nullopt : FindVolume(database, side.volume);
    if (before.has_value()) {
        if (label.empty()) content.label = before->label;
        content.capacity = before->total;
    }
    const MediaType* type = FindMediaType(slot.medium->type);
    if (type != nullptr) content.capacity = type->capacity;
    return content;
}

void EraseOne(Database& database, const Slot& slot, Side side) {
    if (side.volume != 0) RemoveVolume(database, side.volume);
    side.content = Content::Blank;
    side.finalization = Finalization::NotFinalized;
    side.isSequential = false;
    side.volume = 0;
    WriteSide(database, slot, side);
}

}  // namespace

WritePlan PlanFormat(Database& database, const SideKey& key, const FormatWishes& wishes) {
    WritePlan plan;
    plan.slot = FindSlotOfKey(database, key, "KrvVolumeFormat");
    const Side side = RequireSide(database, plan.slot, key.side);
    RequireFormattable(database, plan.slot, side);
    const MediaType* type = FindMediaType(plan.slot.medium->type);
    plan.isSequential = wishes.isSequential || (type != nullptr && type->access == Access::Sequential);
    plan.label = NewContent(database, plan.slot, side, wishes.label).label;
    plan.sides.push_back(side);
    return plan;
}

WritePlan PlanErase(Database& database, const SideKey& key) {
    WritePlan plan;
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
    plan.text = "erased: " + place + " (" + erased + ")";
    return plan;
}

WritePlan PlanFinalize(Database& database, const SideKey& key) {
    WritePlan plan;
    plan.slot = FindSlotOfKey(database, key, "KrvVolumeFinalize");
    if (key.side != kBothSides) {
        throw Refuse(Code::InvalidCall,
                     {"KrvVolumeFinalize", "only the whole medium, side 2, can be finalized"});
    }
    bool isSequential = false;
    for (const Side& side : FindSides(database, *plan.slot.medium)) {
        RequireGoodSide(database, plan.slot, side);
        if (side.content != Content::FileSystem || !side.isSequential) continue;
        isSequential = true;
        if (side.finalization != Finalization::Closed) plan.sides.push_back(side);
    }
    if (!isSequential) throw Refuse(Code::NotSequential, {PlaceText(database, plan.slot.place)});
    plan.text = "finalized: " + LocationText(database, plan.slot.place) + " (" +
                MediumText(database, *plan.slot.medium) + ")";
    return plan;
}

std::string FormatText(Database& database, const Slot& slot, const Side& side) {
    const auto fileSystem = FindValue<std::string>(
        database, R"sql(SELECT file_system FROM volume WHERE id = ?1)sql", side.volume);
    const auto volume = FindVolume(database, side.volume);
    return "formatted: " + LocationText(database, slot.place) + "." + SideLetter(side.number) + " (volume " +
           std::to_string(side.volume) + ", " + fileSystem.value_or("") + ", label \"" +
           volume.value_or(Volume{}).label + "\")";
}

ChangeMade FormatSide(Database& database, const SideKey& key, const FormatWishes& wishes) {
    const WritePlan plan = PlanFormat(database, key, wishes);
    const Slot& slot = plan.slot;
    Side side = plan.sides.front();
    const char* fileSystem = FileSystemName(plan.isSequential ? Access::Sequential : Access::Random);
    const VolumeContent content = NewContent(database, slot, side, wishes.label);
    const bool isNew = side.volume == 0;
    if (isNew) side.volume = TakeVolumeId(database);
    Run(database, isNew ? kAddVolume : kSetVolumeFormat, side.volume, fileSystem, content.label,
        content.capacity);
    side.isSequential = plan.isSequential;
    side.content = Content::FileSystem;
    side.finalization = Finalization::NotFinalized;
    WriteSide(database, slot, side);
    SetSlotState(database, slot.place, SlotState::Full);
    RefreshVolumeState(database, side.volume);
    HandledMedium medium = DrivenMedium(database, slot.place, *slot.medium, side.number);
    medium.certified = wishes.isCertified;
    return {FormatText(database, slot, side), medium};
}

ChangeMade EraseSide(Database& database, const SideKey& key) {
    const WritePlan plan = PlanErase(database, key);
    for (const Side& side : plan.sides)
        EraseOne(database, plan.slot, side);
    SetSlotState(database, plan.slot.place, SlotState::Full);
    return {plan.text, DrivenMedium(database, plan.slot.place, *plan.slot.medium, key.side)};
}

ChangeMade FinalizeMedium(Database& database, const SideKey& key) {
    const WritePlan plan = PlanFinalize(database, key);
    if (plan.sides.empty()) return std::string();
    for (const Side& side : plan.sides)
        Run(database, kFinalizeSide, plan.slot.medium->id, side.number, Finalization::Closed);
    return {plan.text, DrivenMedium(database, plan.slot.place, *plan.slot.medium, kBothSides)};
}

}  // namespace embedded
