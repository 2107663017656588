#include "embedded/layout/contradictions.h"

#include <algorithm>
#include <map>
#include <set>
#include <span>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "embedded/model/farm_words.h"
#include "embedded/model/strings.h"

namespace embedded {
namespace {

// Looks at each item once, in the order of the file.
class Search {
  public:
    explicit Search(const Farm& farm) : m_farm(farm) {}

    std::vector<Problem> Run() {
        for (const FarmVolume& volume : m_farm.volumes)
            CheckVolume(volume);
        for (const FarmJukebox& jukebox : m_farm.jukeboxes)
            CheckJukebox(jukebox);
        if (m_slots > kMaxFarmSlots) {
            AddProblem(0, "the farm has " + std::to_string(m_slots) + " slots; the limit is " +
                              std::to_string(kMaxFarmSlots));
        }
        for (const FarmMedium& medium : m_farm.shelf)
            CheckMedium(medium, Place::Shelf, "on the shelf");
        std::ranges::sort(m_sides);
        for (const FarmVolume& volume : m_farm.volumes)
            CheckSides(volume);
        return std::move(m_problems);
    }

  private:
    using VolumePart = std::pair<int32_t, int32_t>;  // volume ID, part number

    void AddProblem(int line, std::string text) { m_problems.push_back({line, "", std::move(text)}); }

    static std::string Name(const FarmVolume& volume) { return "volume " + std::to_string(volume.id); }

    void CheckVolume(const FarmVolume& volume) {
        const std::string name = Name(volume);
        if (volume.id == 0) AddProblem(volume.line, "volume 0: 0 is not a volume ID");
        if (!m_volumes.insert(volume.id).second) AddProblem(volume.line, name + " is defined twice");
        if (volume.free > volume.total) AddProblem(volume.line, name + " has more free than total bytes");
        if (m_farm.nextVolume != 0 && volume.id >= m_farm.nextVolume) {
            AddProblem(volume.line,
                       name + " is not below next_volume (" + std::to_string(m_farm.nextVolume) + ")");
        }
        if (volume.id < 0 && !volume.directories.empty()) {
            AddProblem(volume.line, name + " has a directory name but was never imported");
        }
        for (const std::string& directory : volume.directories) {
            if (directory.empty()) AddProblem(volume.line, name + " has an empty directory name");
            if (!m_directories.insert(directory).second) {
                AddProblem(volume.line, Joined({name, " has the directory name \"", directory,
                                                "\", which is used twice"}));
            }
        }
    }

    void CheckJukebox(const FarmJukebox& jukebox) {
        const std::string name = "jukebox " + std::to_string(jukebox.id);
        if (!m_jukeboxes.insert(jukebox.id).second) AddProblem(jukebox.line, name + " is defined twice");
        if (jukebox.name.empty()) AddProblem(jukebox.line, name + " has an empty name");
        size_t number = 0;
        for (const FarmMagazine& magazine : jukebox.magazines) {
            m_slots += magazine.slotCount;
            CheckMagazine(magazine, "magazine " + std::to_string(++number) + " of " + name);
        }
        for (const FarmMedium& medium : jukebox.waiting) {
            CheckMedium(medium, Place::ImportStation, "in the import station of " + name);
        }
        for (const FarmMedium& medium : jukebox.exported) {
            CheckMedium(medium, Place::ExportStation, "in the export station of " + name);
        }
    }

    void CheckMagazine(const FarmMagazine& magazine, const std::string& name) {
        std::map<int32_t, SlotState> odd;
        for (const FarmSlot& slot : magazine.oddSlots) {
            const std::string place = "slot " + std::to_string(slot.number) + " of " + name;
            if (slot.number > magazine.slotCount) AddProblem(magazine.line, place + " does not exist");
            if (!odd.emplace(slot.number, slot.state).second)
                AddProblem(magazine.line, place + " is listed with two states");
        }
        std::set<int32_t> full;
        for (const FarmMedium& medium : magazine.media) {
            const std::string place = "slot " + std::to_string(medium.slot) + " of " + name;
            if (medium.slot > magazine.slotCount) AddProblem(medium.line, place + " does not exist");
            if (!full.insert(medium.slot).second) AddProblem(medium.line, place + " holds two media");
            const auto state = odd.find(medium.slot);
            if (state != odd.end() && state->second == SlotState::NotPresent) {
                AddProblem(medium.line, place + " is not present but holds a medium");
            }
            CheckMedium(medium, Place::Slot, "in " + place);
        }
    }

    void CheckMedium(const FarmMedium& medium, Place place, const std::string& name) {
        for (const FarmSide& side : medium.sides) {
            if (side.volume == 0) continue;
            const std::string volume = "volume " + std::to_string(side.volume);
            m_sides.emplace_back(side.volume, side.part);
            if (!m_volumes.contains(side.volume))
                AddProblem(medium.line, Joined({volume, " ", name, " is not defined"}));
            if (side.content == Content::Blank || side.content == Content::NoFileSystem) {
                AddProblem(medium.line, Joined({volume, " ", name, " is on a side without a file system"}));
            }
            if (side.volume < 0 && (place == Place::Slot || place == Place::ExportStation)) {
                AddProblem(medium.line,
                           Joined({volume, " ", name, " was imported, so its ID must be above 0"}));
            }
        }
    }

    void CheckSides(const FarmVolume& volume) {
        const auto first = std::ranges::lower_bound(m_sides, volume.id, {}, &VolumePart::first);
        const auto last = std::ranges::upper_bound(m_sides, volume.id, {}, &VolumePart::first);
        const std::span<const VolumePart> own(first, last);
        const int64_t sides = std::ssize(own);
        if (volume.type == VolumeType::Disc && sides > 1) {
            AddProblem(volume.line,
                       Name(volume) + " is a disc but is on " + std::to_string(sides) + " sides");
        }
        if (sides > kMaxSidesOfVolume) {
            AddProblem(volume.line, Name(volume) + " is on " + std::to_string(sides) +
                                        " sides; the limit is " + std::to_string(kMaxSidesOfVolume));
        }
        if (volume.type != VolumeType::Disc && sides > 1) CheckParts(volume, own);
        if (volume.id < 0 && sides == 0) {
            AddProblem(volume.line, Name(volume) + " is on no medium and was never imported");
        }
    }

    // Sides without a number, 0, are in the order of their places.
    void CheckParts(const FarmVolume& volume, std::span<const VolumePart> parts) {
        const auto repeated = std::ranges::adjacent_find(
            parts,
            [](const VolumePart& one, const VolumePart& next) { return one == next && one.second != 0; });
        if (repeated == parts.end()) return;
        AddProblem(volume.line, Name(volume) + " has several sides with the part number " +
                                    std::to_string(repeated->second));
    }

    const Farm& m_farm;
    int64_t m_slots = 0;
    std::vector<Problem> m_problems;
    std::unordered_set<int32_t> m_volumes;
    std::vector<VolumePart> m_sides;  // every side with a volume
    std::set<int32_t> m_jukeboxes;
    std::unordered_set<std::string_view> m_directories;
};

}  // namespace

std::vector<Problem> FindContradictions(const Farm& farm) {
    return Search(farm).Run();
}

}  // namespace embedded
