#include "tools/library_reader/volume_copy.h"

#include <algorithm>
#include <set>
#include <string>

namespace embedded::tools {
namespace {

class VolumeCopier {
  public:
    VolumeCopier(const LibraryService& service, CopyLog& log) : m_service(service), m_log(log) {}

    VolumeCopy Copy() {
        ForEachId(
            "volumes", m_log, [&](uint32_t& id) { return m_service.NextVolume(id); },
            [&](int32_t id) {
                ReadVolume(id);
                m_log.Step();
            });
        return std::move(m_copy);
    }

  private:
    void ReadVolume(int32_t id) {
        const std::string name = "volume " + std::to_string(id);
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
        m_copy.ids.insert(id);
        m_copy.volumes.push_back(std::move(volume));
    }

    VolumeType TypeOf(const VolumeRecord& record, const std::string& name) {
        if (record.type <= static_cast<uint32_t>(VolumeType::VolumeSet)) {
            return static_cast<VolumeType>(record.type);
        }
        m_log.AddChanged(name, "invalid type " + std::to_string(record.type) + ", copied as a disc");
        return VolumeType::Disc;
    }

    void ReadDirectories(const std::string& name, FarmVolume& volume) {
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

    void ReadLocations(const std::string& name, int32_t id) {
        std::vector<SideKey> locations;
        if (!m_log.IsRead(m_service.GetLocations(static_cast<uint32_t>(id), locations),
                          "the locations of " + name)) {
            return;
        }
        if (locations.empty()) m_log.AddHidden("the medium of " + name, "it is in no visible slot");
        if (locations.size() < 2) return;
        int32_t part = 0;
        for (const SideKey& side : locations) {
            m_copy.parts.emplace(SidePlace{side.jukeboxId, side.magazine, side.slot, side.side}, ++part);
        }
    }

    const LibraryService& m_service;
    CopyLog& m_log;
    VolumeCopy m_copy;
    std::set<std::string> m_directories;
};

}  // namespace

VolumeCopy CopyVolumes(const LibraryService& service, CopyLog& log) {
    return VolumeCopier(service, log).Copy();
}

}  // namespace embedded::tools
