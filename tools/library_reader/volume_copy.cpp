#include "tools/library_reader/volume_copy.h"

#include <algorithm>

namespace embedded::tools {
namespace {

std::string NameOf(int32_t volume) {
    return "volume " + std::to_string(volume);
}

}  // namespace

void VolumeCopier::CopyListed() {
    ForEachId(
        "volumes", m_log, [&](uint32_t& id) { return m_service.NextVolume(id); },
        [&](int32_t id) {
            ReadVolume(id);
            m_log.Step();
        });
}

bool VolumeCopier::HasVolumeOf(const SidePlace& side, int32_t volume, const std::string& name) {
    if (!m_asked.contains(volume)) {
        ReadVolume(volume);
        if (m_copied.contains(volume)) {
            m_log.AddChanged(NameOf(volume),
                             "missing in the list of volumes, copied because " + name + " names it");
        }
    }
    if (!m_copied.contains(volume)) {
        m_log.AddUnread(NameOf(volume) + " on " + name, "the volume could not be read");
        return false;
    }
    m_sides[volume].insert(side);
    return true;
}

int32_t VolumeCopier::PartOf(const SidePlace& side) const {
    const auto part = m_parts.find(side);
    return part == m_parts.end() ? 0 : part->second;
}

void VolumeCopier::CompareLocations() {
    for (const auto& [volume, locations] : m_locations) {
        const std::set<SidePlace>& sides = m_sides[volume];
        if (locations.empty() && sides.empty()) {
            m_log.AddHidden("the medium of " + NameOf(volume), "it is in no visible slot");
        } else if (locations != sides) {
            m_log.AddChanged(NameOf(volume), "locations (" + std::to_string(locations.size()) +
                                                 ") that differ from the sides that name it (" +
                                                 std::to_string(sides.size()) + "), copied on these sides");
        }
    }
}

std::vector<FarmVolume> VolumeCopier::TakeVolumes() {
    std::ranges::sort(m_volumes, {}, &FarmVolume::id);
    return std::move(m_volumes);
}

void VolumeCopier::ReadVolume(int32_t id) {
    m_asked.insert(id);
    const std::string name = NameOf(id);
    VolumeRecord record{};
    if (!m_log.IsRead(m_service.GetVolume(static_cast<uint32_t>(id), record), name)) return;
    FarmVolume volume;
    volume.id = id;
    volume.type = TypeOf(record, name);
    volume.enabled = record.state != static_cast<uint32_t>(VolumeState::Disabled);
    volume.state = static_cast<int32_t>(std::min<uint32_t>(record.state, INT32_MAX));
    volume.label = TextOf(record.label).substr(0, sizeof(record.label) - 1);
    volume.fileSystem = TextOf(record.fileSystem).substr(0, sizeof(record.fileSystem) - 1);
    volume.total = record.totalCapacity;
    volume.free = record.freeCapacity;
    if (volume.free > volume.total) {
        m_log.AddChanged(name, "more free than total bytes, copied with all bytes free");
        volume.free = volume.total;
    }
    volume.value1 = record.libraryValue1;
    volume.value2 = record.libraryValue2;
    ReadDirectories(name, volume);
    ReadLocations(name, id);
    m_copied.insert(id);
    m_volumes.push_back(std::move(volume));
}

VolumeType VolumeCopier::TypeOf(const VolumeRecord& record, const std::string& name) {
    if (record.type <= static_cast<uint32_t>(VolumeType::VolumeSet)) {
        return static_cast<VolumeType>(record.type);
    }
    m_log.AddChanged(name, "invalid type " + std::to_string(record.type) + ", copied as a disc");
    return VolumeType::Disc;
}

void VolumeCopier::ReadDirectories(const std::string& name, FarmVolume& volume) {
    std::vector<std::string> directories;
    if (!m_log.IsRead(m_service.GetDirectories(static_cast<uint32_t>(volume.id), directories),
                      "the directory names of " + name)) {
        return;
    }
    for (std::string& directory : directories) {
        if (m_directories.insert(directory).second) {
            volume.directories.push_back(std::move(directory));
        } else {
            m_log.AddChanged(name, "directory name \"" + directory + "\" of another volume, left out");
        }
    }
}

void VolumeCopier::ReadLocations(const std::string& name, int32_t id) {
    std::vector<SideKey> locations;
    if (!m_log.IsRead(m_service.GetLocations(static_cast<uint32_t>(id), locations),
                      "the locations of " + name)) {
        return;
    }
    std::set<SidePlace>& places = m_locations[id];
    int32_t part = 0;
    for (const SideKey& side : locations) {
        const SidePlace place{side.jukeboxId, side.magazine, side.slot, side.side};
        places.insert(place);
        if (locations.size() > 1) m_parts.emplace(place, ++part);
    }
}

}  // namespace embedded::tools
