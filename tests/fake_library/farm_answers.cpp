#include "tests/fake_library/farm_answers.h"

#include <algorithm>

namespace krvfake {
namespace {

Failure Unknown(const char* what, int64_t id) {
    return {kUnknownItem, std::string("There is no ") + what + " " + std::to_string(id) + "."};
}

void FillIdentity(DeviceIdentity& identity, const Device& device) {
    std::copy(device.scsi.begin(), device.scsi.end(), identity.scsiAddress);
    FillText(identity.vendor, device.vendor);
    FillText(identity.product, device.product);
    FillText(identity.revision, device.revision);
}

// The n-th of a list whose last element stays for ever.
uint32_t Scripted(const std::vector<uint32_t>& values, size_t n) {
    return values[std::min(n, values.size() - 1)];
}

std::string AspectBytes(const Volume& volume) {
    if (!volume.aspectBytes.empty()) return volume.aspectBytes;
    if (volume.directories.empty()) return {};
    std::string bytes;
    for (const std::string& directory : volume.directories) {
        bytes += directory;
        bytes += '\0';
    }
    bytes += '\0';
    return bytes;
}

}  // namespace

Answer FarmAnswers::DescribeJukebox(const JukeboxKey& key, JukeboxRecord& record) {
    const Jukebox* const jukebox = m_farm.FindJukebox(key.jukeboxId);
    if (jukebox == nullptr) return Unknown("jukebox", key.jukeboxId);
    FillIdentity(record.identity, jukebox->changer);
    record.enabled = jukebox->enabled ? 1 : 0;
    record.doubleSided = jukebox->doubleSided ? 1 : 0;
    record.driveCount = jukebox->claimedDrives;
    record.magazineCount = jukebox->claimedMagazines;
    record.slotCount = jukebox->claimedSlots;
    FillText(record.name, jukebox->name);
    return {};
}

Answer FarmAnswers::DescribeMagazine(const MagazineKey& key, MagazineRecord& record) {
    const Magazine* const magazine = FindMagazine(key.jukeboxId, key.magazine);
    if (magazine == nullptr) return Unknown("magazine", key.magazine);
    record.slotCount = magazine->slotCount;
    record.present = magazine->present ? 1 : 0;
    return {};
}

Answer FarmAnswers::DescribeDrive(const DriveKey& key, DriveRecord& record) {
    const Jukebox* const jukebox = m_farm.FindJukebox(key.jukeboxId);
    if (jukebox == nullptr) return Unknown("jukebox", key.jukeboxId);
    const auto drive = static_cast<size_t>(key.drive);
    if (key.drive < 0 || drive >= jukebox->drives.size()) return Unknown("drive", key.drive);
    FillIdentity(record.identity, jukebox->drives[drive].device);
    record.enabled = jukebox->drives[drive].enabled ? 1 : 0;
    record.libraryValue1 = 1;
    record.libraryValue2 = 2;
    return {};
}

Answer FarmAnswers::DescribeSlot(const SlotKey& key, SlotRecord& record) {
    const Slot* const slot = FindSlot(key.jukeboxId, key.magazine, key.slot);
    if (slot == nullptr) return Unknown("slot", key.slot);
    record.state = slot->state;
    record.mediumCode = slot->mediumCode;
    return {};
}

Answer FarmAnswers::DescribeSide(const SideKey& key, SideRecord& record) {
    const Slot* const slot = FindSlot(key.jukeboxId, key.magazine, key.slot);
    if (slot == nullptr) return Unknown("slot", key.slot);
    if (key.side != kSideA && key.side != kSideB) return Unknown("side", key.side);
    const Side& side = slot->sides[static_cast<size_t>(key.side)];
    record.state = side.state;
    record.mediumCode = side.mediumCode;
    record.finalization = side.finalization;
    record.volumeId = side.volumeId;
    return {};
}

Answer FarmAnswers::DescribeVolume(uint32_t volumeId, VolumeRecord& record) {
    const Volume* const volume = m_farm.FindVolume(static_cast<int32_t>(volumeId));
    if (volume == nullptr) return Unknown("volume", volumeId);
    record.type = volume->type;
    record.state = volume->state;
    record.libraryValue1 = 7;
    FillText(record.fileSystem, volume->fileSystem);
    FillText(record.label, volume->label);
    record.totalCapacity = volume->totalCapacity;
    record.freeCapacity = volume->freeCapacity;
    record.libraryValue2 = 8;
    return {};
}

Answer FarmAnswers::ListAspects(uint32_t volumeId, char* buffer, uint32_t bufferSize,
                                uint32_t& requiredSize) {
    Volume* const volume = m_farm.FindVolume(static_cast<int32_t>(volumeId));
    if (volume == nullptr) return Unknown("volume", volumeId);
    const std::string bytes = AspectBytes(*volume);
    requiredSize = volume->aspectSizes.empty() ? static_cast<uint32_t>(bytes.size())
                                               : Scripted(volume->aspectSizes, volume->aspectCalls);
    ++volume->aspectCalls;
    // A buffer of one byte only asks for the size. Scripted sizes can make the buffer shorter than
    // the bytes; never is more written than it holds.
    if (bufferSize > 1) std::copy_n(bytes.begin(), std::min<size_t>(bufferSize, bytes.size()), buffer);
    return {};
}

Answer FarmAnswers::ListLocations(uint32_t volumeId, SideKey* locations, uint32_t room, uint32_t& count) {
    Volume* const volume = m_farm.FindVolume(static_cast<int32_t>(volumeId));
    if (volume == nullptr) return Unknown("volume", volumeId);
    if (volume->locations.empty() && volume->locationCounts.empty()) {
        return Failure{kNoLocation, "The volume has no location."};
    }
    count = volume->locationCounts.empty() ? static_cast<uint32_t>(volume->locations.size())
                                           : Scripted(volume->locationCounts, volume->locationCalls);
    ++volume->locationCalls;
    std::copy_n(volume->locations.begin(), std::min<size_t>(room, volume->locations.size()), locations);
    return {};
}

Magazine* FarmAnswers::FindMagazine(int32_t jukebox, int32_t magazine) {
    Jukebox* const holder = m_farm.FindJukebox(jukebox);
    if (holder == nullptr || magazine < 0) return nullptr;
    const auto index = static_cast<size_t>(magazine);
    return index < holder->magazines.size() ? &holder->magazines[index] : nullptr;
}

const Slot* FarmAnswers::FindSlot(int32_t jukebox, int32_t magazine, int32_t slot) {
    if (magazine == -1) {
        for (int32_t m = 0;; ++m) {
            const Magazine* const candidate = FindMagazine(jukebox, m);
            if (candidate == nullptr) return nullptr;
            if (slot < candidate->slotCount) return FindSlot(jukebox, m, slot);
            slot -= candidate->slotCount;
        }
    }
    const Magazine* const holder = FindMagazine(jukebox, magazine);
    if (holder == nullptr || slot < 0 || slot >= holder->slotCount) return nullptr;
    const auto found = holder->slots.find(slot);
    return found == holder->slots.end() ? &holder->otherSlots : &found->second;
}

}  // namespace krvfake
