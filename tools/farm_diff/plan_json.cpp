#include "tools/farm_diff/plan_json.h"

#include "embedded/layout/text_encoding.h"

namespace embedded::tools {
namespace {

using Json = nlohmann::ordered_json;

Json Text(const std::string& bytes) {
    if (IsText(bytes)) return bytes;
    return {{"hex", ToHex(bytes)}};
}

Json NumberOrNull(int32_t number) {
    return number == 0 ? Json() : Json(number);
}

const char* PlaceWord(Place place) {
    switch (place) {
        case Place::Slot:
            return "slot";
        case Place::ImportStation:
            return "import station";
        case Place::ExportStation:
            return "export station";
        case Place::Shelf:
            break;
    }
    return "shelf";
}

Json PlaceObject(const std::optional<FarmPlace>& place) {
    if (!place.has_value()) return nullptr;
    return {{"place", PlaceWord(place->place)},
            {"jukebox", NumberOrNull(place->jukebox)},
            {"magazine", NumberOrNull(place->magazine)},
            {"slot", NumberOrNull(place->slot)}};
}

Json SideLetter(int32_t side) {
    if (side == 0) return nullptr;
    return side == 1 ? "A" : "B";
}

Json ChangeObject(const Change& change) {
    Json fields = Json::array();
    for (const FieldChange& field : change.fields) {
        fields.push_back(
            {{"field", field.field}, {"before", Text(field.before)}, {"after", Text(field.after)}});
    }
    return {{"kind", WordOfChange(change.kind).word},
            {"item", Text(change.item)},
            {"subject", Text(change.subject)},
            {"from", PlaceObject(change.from)},
            {"to", PlaceObject(change.to)},
            {"slot", NumberOrNull(change.slot)},
            {"side", SideLetter(change.side)},
            {"volume", NumberOrNull(change.volume)},
            {"fields", std::move(fields)}};
}

}  // namespace

Json PlanObject(const Plan& plan) {
    Json counts = Json::object();
    for (const auto& [kind, count] : CountChanges(plan))
        counts[std::string(WordOfChange(kind).word)] = count;
    Json jukeboxes = Json::array();
    for (const JukeboxChanges& jukebox : plan.jukeboxes) {
        Json magazines = Json::array();
        for (const MagazineChanges& magazine : jukebox.magazines) {
            Json changes = Json::array();
            for (const Change& change : magazine.changes)
                changes.push_back(ChangeObject(change));
            magazines.push_back(
                {{"magazine", NumberOrNull(magazine.magazine)}, {"changes", std::move(changes)}});
        }
        jukeboxes.push_back({{"jukebox", NumberOrNull(jukebox.jukebox)},
                             {"name", Text(jukebox.name)},
                             {"magazines", std::move(magazines)}});
    }
    return {{"equal", plan.IsEmpty()}, {"counts", std::move(counts)}, {"jukeboxes", std::move(jukeboxes)}};
}

}  // namespace embedded::tools
