#include "tools/farm_diff/farm_diff.h"

#include <algorithm>
#include <tuple>

#include "tools/farm_diff/item_changes.h"
#include "tools/farm_diff/medium_changes.h"

namespace embedded::tools {
namespace {

// Whether all that is known of the medium is in a jukebox that came or went as a whole.
bool IsPartOfWholeJukebox(const MediumPair& pair, const std::set<int32_t>& jukeboxes) {
    const bool isBefore = pair.before == nullptr || jukeboxes.contains(pair.before->place.jukebox);
    const bool isAfter = pair.after == nullptr || jukeboxes.contains(pair.after->place.jukebox);
    return isBefore && isAfter && (pair.before == nullptr || pair.after == nullptr);
}

// Media that stay in a station but come in another order.
void AddOrderChanges(const std::vector<MediumPair>& media, ChangeList& changes) {
    struct Station {
        int32_t lastAfter = 0;
        bool isReordered = false;
    };
    std::map<std::pair<Place, int32_t>, Station> stations;
    for (const MediumPair& pair : media) {
        if (pair.before == nullptr || pair.after == nullptr) continue;
        const FarmPlace& from = pair.before->place;
        const FarmPlace& to = pair.after->place;
        if (from.place == Place::Slot || from.place != to.place || from.jukebox != to.jukebox) continue;
        Station& station = stations[{from.place, from.jukebox}];
        if (to.slot < station.lastAfter) station.isReordered = true;
        station.lastAfter = to.slot;
    }
    for (const auto& [where, station] : stations) {
        if (!station.isReordered) continue;
        Change change;
        change.item = where.first == Place::ImportStation   ? "import station"
                      : where.first == Place::ExportStation ? "export station"
                                                            : "shelf";
        change.subject = "the order of the media";
        changes[{where.second, 0}].push_back(std::move(change));
    }
}

void AddServiceChange(const Farm& before, const Farm& after, ChangeList& changes) {
    if (before.running == after.running) return;
    Change change;
    change.kind = after.running ? ChangeKind::Enabled : ChangeKind::Disabled;
    change.item = "service";
    changes[{0, 0}].push_back(std::move(change));
}

std::map<int32_t, std::string> NamesOf(const Farm& before, const Farm& after) {
    std::map<int32_t, std::string> names;
    for (const Farm* farm : {&after, &before}) {
        for (const FarmJukebox& jukebox : farm->jukeboxes)
            names.emplace(jukebox.id, jukebox.name);
    }
    return names;
}

Plan Grouped(ChangeList&& changes, std::map<int32_t, std::string> names) {
    Plan plan;
    JukeboxChanges outside;
    for (auto& [group, list] : changes) {
        const auto [jukebox, magazine] = group;
        std::ranges::stable_sort(
            list, {}, [](const Change& change) { return std::tuple(change.slot, change.side, change.kind); });
        if (jukebox == 0) {
            outside.magazines.push_back({magazine, std::move(list)});
            continue;
        }
        if (plan.jukeboxes.empty() || plan.jukeboxes.back().jukebox != jukebox)
            plan.jukeboxes.push_back({jukebox, names[jukebox], {}});
        plan.jukeboxes.back().magazines.push_back({magazine, std::move(list)});
    }
    if (!outside.magazines.empty()) plan.jukeboxes.push_back(std::move(outside));
    plan.jukeboxNames = std::move(names);
    return plan;
}

}  // namespace

Plan CompareFarms(const Farm& before, const Farm& after) {
    const std::vector<PlacedMedium> mediaBefore = PlacedMedia(before);
    const std::vector<PlacedMedium> mediaAfter = PlacedMedia(after);
    const std::vector<MediumPair> media = MatchMedia(before, mediaBefore, after, mediaAfter);
    const std::set<int32_t> whole = JukeboxesOfOneFarm(before, after);
    VolumeFindings findings;
    findings.before = VolumesOf(before);
    findings.after = VolumesOf(after);
    ChangeList changes;
    for (const MediumPair& pair : media) {
        if (IsPartOfWholeJukebox(pair, whole)) {
            CoverVolumes(pair, findings);
        } else {
            AddMediumChanges(pair, findings, changes);
        }
    }
    AddOrderChanges(media, changes);
    AddJukeboxChanges(before, after, media, changes);
    AddVolumeChanges(findings, before, after, changes);
    AddServiceChange(before, after, changes);
    return Grouped(std::move(changes), NamesOf(before, after));
}

}  // namespace embedded::tools
