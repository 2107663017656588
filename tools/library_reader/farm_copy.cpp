#include "tools/library_reader/farm_copy.h"

#include <algorithm>
#include <map>
#include <vector>

#include "embedded/layout/contradictions.h"
#include "tools/library_reader/copy_log.h"
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

Farm CopyFarm(const std::string& library, const std::string& server, const Streams& streams) {
    const LibraryService service(library, server);
    CopyLog log(streams.err);
    VolumeCopy volumes = CopyVolumes(service, log);
    Farm farm;
    farm.jukeboxes = CopyJukeboxes(service, volumes, log);
    farm.volumes = std::move(volumes.volumes);
    SidesOfVolumes sides = FindSidesOfVolumes(farm);
    NumberParts(sides);
    MakeVolumeSets(farm, sides, log);
    DropUsualStates(farm);
    const std::vector<Problem> problems = FindContradictions(farm);
    if (!problems.empty()) throw ToolFailure("the farm contradicts itself: " + problems.front().text);
    log.WriteTotals();
    return farm;
}

}  // namespace embedded::tools
