#include "tools/library_reader/farm_copy.h"

#include <algorithm>
#include <map>
#include <vector>

#include "embedded/layout/contradictions.h"
#include "tools/library_reader/jukebox_copy.h"
#include "tools/library_reader/library_service.h"
#include "tools/library_reader/volume_copy.h"

namespace embedded::tools {
namespace {

using SidesOfVolumes = std::map<int32_t, std::vector<FarmSide*>>;

SidesOfVolumes FindSidesOfVolumes(Farm& farm) {
    SidesOfVolumes volumes;
    for (FarmJukebox& jukebox : farm.jukeboxes) {
        for (FarmMagazine& magazine : jukebox.magazines) {
            for (FarmMedium& medium : magazine.media) {
                for (FarmSide& side : medium.sides) {
                    if (side.volume != 0) volumes[side.volume].push_back(&side);
                }
            }
        }
    }
    return volumes;
}

// The parts of a volume are numbered from 1 without gaps; the side of a volume on one side has no number.
void NumberParts(SidesOfVolumes& volumes) {
    for (auto& [volume, sides] : volumes) {
        std::ranges::stable_sort(sides, {}, &FarmSide::part);
        int32_t part = 0;
        for (FarmSide* side : sides)
            side->part = sides.size() > 1 ? ++part : 0;
    }
}

void MakeVolumeSets(Farm& farm, const SidesOfVolumes& sides, CopyLog& log) {
    for (FarmVolume& volume : farm.volumes) {
        const auto found = sides.find(volume.id);
        const size_t count = found == sides.end() ? 0 : found->second.size();
        if (volume.type != VolumeType::Disc || count < 2) continue;
        log.AddChanged("volume " + std::to_string(volume.id),
                       "a disc on " + std::to_string(count) + " sides, copied as a volume set");
        volume.type = VolumeType::VolumeSet;
    }
}

}  // namespace

void AddCopyOptions(CLI::App& command, CLI::Option& library, CopyOptions& options) {
    command
        .add_flag_callback(
            "--verbose", [&options] { options.listing = Listing::Complete; },
            "list every item that cannot be copied as it is")
        ->needs(&library);
    command
        .add_flag_callback(
            "--partial-ok", [&options] { options.incomplete = Incomplete::Accepted; },
            "succeed even if something could not be read")
        ->needs(&library);
}

FarmCopy CopyFarm(const CopyOptions& options, const Streams& streams) {
    const LibraryService service(options.library, options.from);
    CopyLog log(streams.err, options.listing);
    VolumeCopier volumes(service, log);
    volumes.CopyListed();
    Farm farm;
    farm.jukeboxes = CopyJukeboxes(service, volumes, log);
    volumes.CompareLocations();
    farm.volumes = volumes.TakeVolumes();
    SidesOfVolumes sides = FindSidesOfVolumes(farm);
    NumberParts(sides);
    MakeVolumeSets(farm, sides, log);
    DropUsualStates(farm);
    const std::vector<Problem> problems = FindContradictions(farm);
    if (!problems.empty()) throw ToolFailure("the farm contradicts itself: " + problems.front().text);
    log.WriteTotals();
    return {std::move(farm), log.GetUnread()};
}

void RequireComplete(const FarmCopy& copy, const CopyOptions& options) {
    if (copy.unread == 0 || options.incomplete == Incomplete::Accepted) return;
    throw IncompleteResult("the copy is incomplete (--partial-ok accepts it)");
}

}  // namespace embedded::tools
