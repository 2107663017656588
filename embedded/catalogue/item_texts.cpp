#include "embedded/catalogue/item_texts.h"

#include "embedded/model/media_types.h"

namespace embedded {
namespace {

std::string VolumeNumberText(int32_t volume) {
    return "volume " + std::to_string(volume);
}

std::string LabelOf(Database& database, int32_t volume) {
    const auto found = FindVolume(database, volume);
    return found.has_value() ? found->label : std::string();
}

// The label of a volume, or its number where it has none.
std::string VolumeName(Database& database, int32_t volume) {
    const std::string label = LabelOf(database, volume);
    return label.empty() ? VolumeNumberText(volume) : label;
}

std::string BlankText(const Medium& medium) {
    return "blank " + std::string(MediaTypeName(medium.type));
}

}  // namespace

std::string OneBased(int32_t number) {
    return std::to_string(int64_t{number} + 1);
}

const char* SideLetter(int32_t side) {
    return side == 0 ? "A" : "B";
}

std::string MagazineText(Database& database, int32_t jukebox, int32_t magazine) {
    return "magazine " + OneBased(magazine) + " of jukebox \"" + FindJukebox(database, jukebox).name + "\"";
}

std::string PlaceText(Database& database, const SlotPlace& place) {
    return "slot " + OneBased(place.slot) + " of magazine " + OneBased(place.magazine) + " in jukebox \"" +
           FindJukebox(database, place.jukebox).name + "\"";
}

std::string SideText(Database& database, const SlotPlace& place, int32_t side) {
    return std::string("side ") + SideLetter(side) + " of the medium in " + PlaceText(database, place);
}

std::string LocationText(Database& database, const SlotPlace& place) {
    const Jukebox jukebox = FindJukebox(database, place.jukebox);
    std::string text = jukebox.name + "\\";
    if (jukebox.magazineCount > 1) text += OneBased(place.magazine) + "\\";
    return text + OneBased(place.slot);
}

std::string VolumeText(Database& database, int32_t volume) {
    const std::string label = LabelOf(database, volume);
    return VolumeNumberText(volume) + (label.empty() ? "" : " (" + label + ")");
}

std::string MediumText(Database& database, const Medium& medium) {
    std::string text;
    for (const Side& side : FindSides(database, medium)) {
        if (side.volume == 0) continue;
        if (!text.empty()) text += ", ";
        text += VolumeName(database, side.volume);
    }
    return text.empty() ? BlankText(medium) : text;
}

std::string SideContentText(Database& database, const Medium& medium, int32_t side) {
    const auto found = FindSide(database, medium, side);
    if (!found.has_value() || found->volume == 0) return BlankText(medium);
    return VolumeName(database, found->volume);
}

}  // namespace embedded
