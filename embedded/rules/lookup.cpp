#include "embedded/rules/lookup.h"

#include "embedded/model/media_types.h"
#include "embedded/model/refusal.h"
#include "embedded/store/rows.h"

namespace embedded {
namespace {

struct JukeboxHead {
    std::string name;
    int32_t magazineCount;
};

JukeboxHead FindHead(Database& database, int32_t jukebox) {
    Rows rows(database, Sql::Jukebox, jukebox);
    if (!rows.Next()) throw Refuse(Code::NoJukebox, {std::to_string(jukebox)});
    return {std::string(rows.Text(0)), rows.Number(10)};
}

// One-based, without overflow for a hostile number.
std::string Shown(int32_t number) {
    return std::to_string(int64_t{number} + 1);
}

// Why no slot was found: one of the items above it is not there, or it is beyond the last one.
Refusal WhyNoSlot(Database& database, const SlotPlace& place) {
    const std::string name = JukeboxName(database, place.jukebox);
    RequireMagazine(database, place.jukebox, place.magazine);
    return Refuse(Code::NoSlot, {Shown(place.magazine), name, Shown(place.slot)});
}

// The label of a volume, or its ID where it has none.
std::string VolumeText(Database& database, int64_t volume) {
    Rows rows(database, Sql::Volume, volume);
    if (rows.Next() && !rows.Text(5).empty()) return std::string(rows.Text(5));
    return "volume " + std::to_string(volume);
}

}  // namespace

std::string JukeboxName(Database& database, int32_t jukebox) {
    return FindHead(database, jukebox).name;
}

void RequireMagazine(Database& database, int32_t jukebox, int32_t magazine) {
    Rows rows(database, Sql::Magazine, jukebox, magazine);
    if (!rows.Next()) throw Refuse(Code::NoMagazine, {JukeboxName(database, jukebox), Shown(magazine)});
}

void RequirePresentMagazine(Database& database, int32_t jukebox, int32_t magazine) {
    RequireMagazine(database, jukebox, magazine);
    Rows rows(database, Sql::Magazine, jukebox, magazine);
    if (rows.Next() && rows.Flag(1)) return;
    throw Refuse(Code::SlotNotUsable, {MagazineText(database, jukebox, magazine), "not present"});
}

void RequireVolume(Database& database, int32_t volume) {
    Rows rows(database, Sql::Volume, volume);
    if (volume < 1 || !rows.Next()) throw Refuse(Code::NoVolume, {std::to_string(volume)});
}

SlotPlace ResolveSlot(Database& database, int32_t jukebox, int32_t magazine, int32_t slot) {
    if (magazine != -1) return {jukebox, magazine, slot};
    const std::string name = JukeboxName(database, jukebox);
    const auto beyond = [&] { return Refuse(Code::NoAbsoluteSlot, {Shown(slot), name}); };
    Rows rows(database, Sql::AbsoluteSlot, jukebox, slot);
    if (slot < 0 || !rows.Next()) throw beyond();
    const SlotPlace place{jukebox, rows.Number(0), slot - rows.Number(1)};
    if (place.slot >= rows.Number(2)) throw beyond();
    Rows gap(database, Sql::FirstGap, jukebox);
    if (gap.Next() && gap.Number(0) <= place.magazine) throw beyond();
    return place;
}

SlotView FindSlot(Database& database, const SlotPlace& place) {
    Rows rows(database, Sql::Slot, place.jukebox, place.magazine, place.slot);
    if (!rows.Next()) {
        RequirePresentMagazine(database, place.jukebox, place.magazine);
        throw WhyNoSlot(database, place);
    }
    if (!rows.Flag(0)) {
        throw Refuse(Code::SlotNotUsable,
                     {MagazineText(database, place.jukebox, place.magazine), "not present"});
    }
    SlotView view{place, static_cast<SlotState>(rows.Number(1)), std::nullopt};
    if (!rows.IsNull(2)) view.medium = MediumView{rows.Integer(2), rows.Unsigned(3), rows.Number(4)};
    return view;
}

std::optional<SideView> FindSide(Database& database, const MediumView& medium, int32_t side) {
    Rows rows(database, Sql::Side, medium.id, side);
    if (!rows.Next()) return std::nullopt;
    return SideView{side, static_cast<Content>(rows.Number(0)), static_cast<Finalization>(rows.Number(1)),
                    rows.Flag(2), rows.Number(3)};
}

std::string MagazineText(Database& database, int32_t jukebox, int32_t magazine) {
    return "magazine " + Shown(magazine) + " of jukebox \"" + JukeboxName(database, jukebox) + "\"";
}

std::string PlaceText(Database& database, const SlotPlace& place) {
    return "slot " + Shown(place.slot) + " of magazine " + Shown(place.magazine) + " in jukebox \"" +
           JukeboxName(database, place.jukebox) + "\"";
}

std::string SideText(Database& database, const SlotPlace& place, int32_t side) {
    return std::string("side ") + (side == 0 ? "A" : "B") + " of the medium in " + PlaceText(database, place);
}

std::string LocationText(Database& database, const SlotPlace& place) {
    const JukeboxHead head = FindHead(database, place.jukebox);
    std::string text = head.name + "\\";
    if (head.magazineCount > 1) text += Shown(place.magazine) + "\\";
    return text + Shown(place.slot);
}

std::string MediumText(Database& database, const MediumView& medium) {
    std::string text;
    Rows sides(database, Sql::SidesOfMedium, medium.id);
    while (sides.Next()) {
        if (sides.IsNull(4)) continue;
        if (!text.empty()) text += ", ";
        text += VolumeText(database, sides.Integer(4));
    }
    return text.empty() ? "blank " + std::string(MediaTypeName(medium.type)) : text;
}

std::string SideContentText(Database& database, const MediumView& medium, int32_t side) {
    const auto view = FindSide(database, medium, side);
    if (!view.has_value() || view->volume == 0) return "blank " + std::string(MediaTypeName(medium.type));
    return VolumeText(database, view->volume);
}

}  // namespace embedded
