#include "tools/farm_diff/plan.h"

#include <algorithm>
#include <iterator>

namespace embedded::tools {
namespace {

// In the order of the kinds.
constexpr ChangeWord kWords[] = {
    {ChangeKind::Added, "added", ChangeEffect::Adds},
    {ChangeKind::Removed, "removed", ChangeEffect::Removes},
    {ChangeKind::Loaded, "loaded", ChangeEffect::Adds},
    {ChangeKind::Imported, "imported", ChangeEffect::Adds},
    {ChangeKind::Exported, "exported", ChangeEffect::Removes},
    {ChangeKind::Unloaded, "unloaded", ChangeEffect::Removes},
    {ChangeKind::Moved, "moved", ChangeEffect::Alters},
    {ChangeKind::Formatted, "formatted", ChangeEffect::Alters},
    {ChangeKind::Erased, "erased", ChangeEffect::Removes},
    {ChangeKind::Finalized, "finalized", ChangeEffect::Alters},
    {ChangeKind::Scanned, "scanned", ChangeEffect::Alters},
    {ChangeKind::Enabled, "enabled", ChangeEffect::Adds},
    {ChangeKind::Disabled, "disabled", ChangeEffect::Removes},
    {ChangeKind::Renamed, "renamed", ChangeEffect::Alters},
    {ChangeKind::Altered, "altered", ChangeEffect::Alters},
};

}  // namespace

const ChangeWord& WordOfChange(ChangeKind kind) {
    return kWords[static_cast<size_t>(kind)];
}

std::optional<ChangeKind> FindChange(std::string_view word) {
    const auto* const found = std::ranges::find(kWords, word, &ChangeWord::word);
    if (found == std::end(kWords)) return std::nullopt;
    return found->kind;
}

std::vector<std::pair<ChangeKind, int64_t>> CountChanges(const Plan& plan) {
    std::map<ChangeKind, int64_t> counts;
    for (const JukeboxChanges& jukebox : plan.jukeboxes) {
        for (const MagazineChanges& magazine : jukebox.magazines) {
            for (const Change& change : magazine.changes)
                ++counts[change.kind];
        }
    }
    return {counts.begin(), counts.end()};
}

}  // namespace embedded::tools
