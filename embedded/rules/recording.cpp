#include "embedded/rules/recording.h"

#include <vector>

#include "embedded/model/media_types.h"
#include "embedded/model/refusal.h"
#include "embedded/rules/changes.h"
#include "embedded/store/rows.h"

namespace embedded {
namespace {

constexpr int32_t kBothSides = 2;

SlotView FindMedium(Database& database, const SideKey& key, const char* function) {
    if (key.slot < 0) throw Refuse(Code::NotANumberedItem, {"the slot number", function});
    RequireEnabledJukebox(database, key.jukeboxId);
    return RequireMedium(database, ResolveSlot(database, key.jukeboxId, key.magazine, key.slot));
}

SideView RequireSide(Database& database, const SlotView& slot, int32_t side) {
    const auto view = FindSide(database, *slot.medium, side);
    if (view.has_value()) return *view;
    std::string name = std::to_string(side);
    if (side == 0 || side == 1) name = side == 0 ? "A" : "B";
    throw Refuse(Code::NoSuchSide, {"the medium in " + PlaceText(database, slot.place), name});
}

std::vector<SideView> SidesOf(Database& database, const MediumView& medium) {
    std::vector<SideView> sides;
    Rows rows(database, Sql::SidesOfMedium, medium.id);
    while (rows.Next()) {
        sides.push_back({rows.Number(0), static_cast<Content>(rows.Number(1)),
                         static_cast<Finalization>(rows.Number(2)), rows.Flag(3), rows.Number(4)});
    }
    return sides;
}

// One part of a mirror or a volume set cannot be written without the others.
void RequireOwnVolume(Database& database, const SlotView& slot, const SideView& side) {
    if (side.volume == 0) return;
    Rows places(database, Sql::VolumePlaces, side.volume);
    places.Next();
    if (places.Integer(0) <= 1) return;
    throw Refuse(Code::PartOfSeveral,
                 {SideText(database, slot.place, side.side), std::to_string(side.volume)});
}

void RequireGoodSide(Database& database, const SlotView& slot, const SideView& side) {
    if (side.content != Content::Bad) return;
    throw Refuse(Code::SideUnreadable, {SideText(database, slot.place, side.side)});
}

// Media of a type that the table does not have count as rewritable random-access ones.
Writing WritingOf(uint32_t mediumType) {
    const MediaType* type = FindMediaType(mediumType);
    return type == nullptr ? Writing::Rewritable : type->writing;
}

void RequireFormattable(Database& database, const SlotView& slot, const SideView& side) {
    const Writing writing = WritingOf(slot.medium->type);
    if (writing == Writing::ReadOnly) {
        throw Refuse(Code::MediumReadOnly,
                     {MediaTypeName(slot.medium->type), PlaceText(database, slot.place)});
    }
    const std::string name = SideText(database, slot.place, side.side);
    if (side.finalization == Finalization::Closed) throw Refuse(Code::MediumClosed, {name});
    if (side.finalization == Finalization::Finalized) throw Refuse(Code::MediumFinalized, {name});
    if (writing == Writing::WriteOnce && side.content == Content::FileSystem) {
        throw Refuse(Code::AlreadyRecorded, {name});
    }
    RequireGoodSide(database, slot, side);
    RequireOwnVolume(database, slot, side);
}

void WriteSide(Database& database, const SlotView& slot, const SideView& side) {
    Run(database, Sql::SetSide, slot.medium->id, side.side, side.content, side.finalization, side.sequential,
        side.volume);
}

int32_t TakeVolumeId(Database& database) {
    Rows taken(database, Sql::TakeVolumeId);
    taken.Next();
    return taken.Number(0);
}

struct VolumeContent {
    std::string label;
    uint64_t capacity;
};

// What the volume is to be after the format: of a medium type without a capacity of its own, the
// volume keeps the one that it has.
VolumeContent NewContent(Database& database, const SlotView& slot, const SideView& side,
                         const std::string& label) {
    VolumeContent content{label, 0};
    if (side.volume != 0) {
        Rows before(database, Sql::Volume, side.volume);
        if (before.Next()) {
            if (label.empty()) content.label = before.Text(5);
            content.capacity = static_cast<uint64_t>(before.Integer(6));
        }
    }
    const MediaType* type = FindMediaType(slot.medium->type);
    if (type != nullptr) content.capacity = type->capacity;
    return content;
}

void EraseOne(Database& database, const SlotView& slot, SideView side) {
    if (side.volume != 0) {
        Run(database, Sql::RemoveVolume, side.volume);
        Run(database, Sql::RemoveDirectories, side.volume);
        Run(database, Sql::ForgetOddState, side.volume);
    }
    side.content = Content::Blank;
    side.finalization = Finalization::NotFinalized;
    side.sequential = false;
    side.volume = 0;
    WriteSide(database, slot, side);
}

}  // namespace

std::string FormatSide(Database& database, const SideKey& key, const std::string& label, bool sequential) {
    const SlotView slot = FindMedium(database, key, "KrvVolumeFormat");
    SideView side = RequireSide(database, slot, key.side);
    RequireFormattable(database, slot, side);
    const MediaType* type = FindMediaType(slot.medium->type);
    side.sequential = sequential || (type != nullptr && type->access == Access::Sequential);
    const char* fileSystem = side.sequential ? kSequentialFileSystem : kRandomFileSystem;
    const VolumeContent content = NewContent(database, slot, side, label);
    if (side.volume == 0) {
        side.volume = TakeVolumeId(database);
        Run(database, Sql::AddVolume, side.volume, fileSystem, content.label, content.capacity,
            content.capacity);
    } else {
        Run(database, Sql::SetVolumeFormat, side.volume, fileSystem, content.label, content.capacity,
            content.capacity);
    }
    side.content = Content::FileSystem;
    side.finalization = Finalization::NotFinalized;
    WriteSide(database, slot, side);
    SetSlotState(database, slot.place, SlotState::Full);
    RefreshVolumeState(database, side.volume);
    return "formatted: " + LocationText(database, slot.place) + (side.side == 0 ? ".A" : ".B") + " (volume " +
           std::to_string(side.volume) + ", " + fileSystem + ", label \"" + content.label + "\")";
}

std::string EraseSide(Database& database, const SideKey& key) {
    const SlotView slot = FindMedium(database, key, "KrvVolumeErase");
    std::vector<SideView> sides;
    if (key.side == kBothSides) {
        sides = SidesOf(database, *slot.medium);
    } else {
        sides.push_back(RequireSide(database, slot, key.side));
    }
    if (WritingOf(slot.medium->type) != Writing::Rewritable) {
        throw Refuse(Code::NotRewritable,
                     {MediaTypeName(slot.medium->type), PlaceText(database, slot.place)});
    }
    for (const SideView& side : sides) {
        RequireGoodSide(database, slot, side);
        RequireOwnVolume(database, slot, side);
    }
    const std::string erased = key.side == kBothSides ? MediumText(database, *slot.medium)
                                                      : SideContentText(database, *slot.medium, key.side);
    for (const SideView& side : sides)
        EraseOne(database, slot, side);
    SetSlotState(database, slot.place, SlotState::Full);
    std::string place = LocationText(database, slot.place);
    if (key.side != kBothSides) place += key.side == 0 ? ".A" : ".B";
    return "erased: " + place + " (" + erased + ")";
}

std::string FinalizeMedium(Database& database, const SideKey& key) {
    const SlotView slot = FindMedium(database, key, "KrvVolumeFinalize");
    if (key.side != kBothSides) {
        throw Refuse(Code::InvalidCall,
                     {"KrvVolumeFinalize", "only the whole medium, side 2, can be finalized"});
    }
    bool isSequential = false;
    bool isChanged = false;
    for (const SideView& side : SidesOf(database, *slot.medium)) {
        RequireGoodSide(database, slot, side);
        if (side.content != Content::FileSystem || !side.sequential) continue;
        isSequential = true;
        if (side.finalization == Finalization::Closed) continue;
        Run(database, Sql::FinalizeSide, slot.medium->id, side.side, Finalization::Closed);
        isChanged = true;
    }
    if (!isSequential) throw Refuse(Code::NotSequential, {PlaceText(database, slot.place)});
    if (!isChanged) return {};
    return "finalized: " + LocationText(database, slot.place) + " (" + MediumText(database, *slot.medium) +
           ")";
}

}  // namespace embedded
