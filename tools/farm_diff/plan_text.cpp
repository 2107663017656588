#include "tools/farm_diff/plan_text.h"

#include <algorithm>

#include "embedded/layout/text_encoding.h"
#include "tools/common/plain_text.h"

namespace embedded::tools {
namespace {

constexpr size_t kWordWidth = 10;

char MarkOf(ChangeEffect effect) {
    switch (effect) {
        case ChangeEffect::Adds:
            return '+';
        case ChangeEffect::Removes:
            return '-';
        case ChangeEffect::Alters:
            break;
    }
    return '~';
}

std::string JukeboxName(const Plan& plan, int32_t jukebox) {
    const auto found = plan.jukeboxNames.find(jukebox);
    return found == plan.jukeboxNames.end() ? "@" + std::to_string(jukebox) : found->second;
}

// In full where it is in another jukebox or magazine than the group.
std::string PlaceText(const FarmPlace& place, const Plan& plan, std::pair<int32_t, int32_t> group) {
    std::string text;
    if (place.place == Place::Shelf) return "shelf";
    if (place.place == Place::ImportStation) text = "import station";
    if (place.place == Place::ExportStation) text = "export station";
    if (place.place == Place::Slot) {
        text = "slot " + std::to_string(place.slot);
        if (place.jukebox != group.first || place.magazine != group.second)
            text = "magazine " + std::to_string(place.magazine) + " " + text;
    }
    return place.jukebox == group.first ? text : text + " of jukebox " + JukeboxName(plan, place.jukebox);
}

std::string FieldText(const FieldChange& field) {
    return field.field + " \"" + field.before + "\" -> \"" + field.after + "\"";
}

}  // namespace

std::string ChangeText(const Change& change, const Plan& plan, std::pair<int32_t, int32_t> group) {
    std::string text = change.item;
    if (change.from.has_value() && change.to.has_value()) {
        text = PlaceText(*change.from, plan, group) + " -> " + PlaceText(*change.to, plan, group);
    }
    if (!change.subject.empty()) text += ": " + change.subject;
    const char* separator = change.subject.empty() ? ": " : "; ";
    for (const FieldChange& field : change.fields) {
        text += separator + FieldText(field);
        separator = ", ";
    }
    return PrintableText(text);
}

std::string CountText(const Plan& plan) {
    int64_t all = 0;
    std::string kinds;
    for (const auto& [kind, count] : CountChanges(plan)) {
        all += count;
        kinds += (kinds.empty() ? ": " : ", ") + std::to_string(count) + " " +
                 std::string(WordOfChange(kind).word);
    }
    return Counted(all, "change", "changes") + kinds;
}

void WritePlan(std::ostream& out, const Plan& plan, const ColourSetter& setColour) {
    const auto colour = [&](std::optional<ChangeEffect> effect) {
        if (setColour) setColour(out, effect);
    };
    if (plan.IsEmpty()) return;
    for (const JukeboxChanges& jukebox : plan.jukeboxes) {
        if (jukebox.jukebox == 0) {
            out << "Outside the jukeboxes\n";
        } else {
            out << "Jukebox " << PrintableText(jukebox.name) << " (@" << jukebox.jukebox << ")\n";
        }
        for (const MagazineChanges& magazine : jukebox.magazines) {
            if (magazine.magazine != 0) out << "  Magazine " << magazine.magazine << '\n';
            for (const Change& change : magazine.changes) {
                const ChangeWord& word = WordOfChange(change.kind);
                out << (magazine.magazine == 0 ? "  " : "    ");
                colour(word.effect);
                out << MarkOf(word.effect) << ' ' << word.word;
                colour(std::nullopt);
                out << std::string(kWordWidth - std::min(kWordWidth, word.word.size()), ' ')
                    << ChangeText(change, plan, {jukebox.jukebox, magazine.magazine}) << '\n';
            }
        }
    }
    out << CountText(plan) << ".\n";
}

}  // namespace embedded::tools
