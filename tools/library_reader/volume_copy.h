#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "embedded/model/farm.h"
#include "tools/library_reader/copy_log.h"
#include "tools/library_reader/library_service.h"

namespace embedded::tools {

// Jukebox ID, and magazine, slot and side, zero-based.
using SidePlace = std::tuple<int32_t, int32_t, int32_t, int32_t>;

// Copies the volumes of a service, with their directory names and locations.
class VolumeCopier {
  public:
    VolumeCopier(const LibraryService& service, CopyLog& log) : m_service(service), m_log(log) {}

    // Reads the volumes that the service lists.
    void CopyListed();

    // Whether the volume that a side names is copied. One that the service did not list is read by its ID.
    // `name` is the side's.
    bool HasVolumeOf(const SidePlace& side, int32_t volume, const std::string& name);

    // The side's position among the locations of its volume, one-based; 0 for a volume on one side.
    int32_t PartOf(const SidePlace& side) const;

    // Reports the volumes whose locations differ from the sides that name them. Call it after the last side.
    void CompareLocations();

    // The copied volumes by ID.
    std::vector<FarmVolume> TakeVolumes();

  private:
    void ReadVolume(int32_t id);
    VolumeType TypeOf(const VolumeRecord& record, const std::string& name);
    void ReadDirectories(const std::string& name, FarmVolume& volume);
    void ReadLocations(const std::string& name, int32_t id);

    const LibraryService& m_service;
    CopyLog& m_log;
    std::vector<FarmVolume> m_volumes;
    std::unordered_set<int32_t> m_asked;
    std::unordered_set<int32_t> m_copied;
    std::map<SidePlace, int32_t> m_parts;
    std::map<int32_t, std::set<SidePlace>> m_locations;  // only where they could be read
    std::unordered_map<int32_t, std::set<SidePlace>> m_sides;
    std::set<std::string> m_directories;
};

}  // namespace embedded::tools
