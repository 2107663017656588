#include "tests/fake_library/generated_answers.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace krvfake {
namespace {

constexpr uint32_t kDvdR = 5;
constexpr uint64_t kCapacity = 4'700'372'992;
// Spreads the labels, so that the order of the IDs is not the order of the labels.
constexpr uint64_t kSpread = 7919;

Failure Unknown() {
    return {kUnknownItem, "There is no such item."};
}

// Writes the prefix and the number's decimal digits, and a NUL. The target has room.
void WriteNumbered(char* target, std::string_view prefix, uint64_t number) {
    std::memcpy(target, prefix.data(), prefix.size());
    char* const digits = target + prefix.size();
    *std::to_chars(digits, digits + 20, number).ptr = '\0';
}

}  // namespace

uint32_t GeneratedAnswers::NextJukebox(uint32_t previous) {
    return previous < static_cast<uint32_t>(m_size.jukeboxes) ? previous + 1 : 0;
}

uint32_t GeneratedAnswers::NextVolume(uint32_t previous) {
    return previous < static_cast<uint32_t>(m_size.volumes) ? previous + 1 : 0;
}

Answer GeneratedAnswers::DescribeJukebox(const JukeboxKey& key, JukeboxRecord& record) {
    if (!HasJukebox(key.jukeboxId)) return Unknown();
    WriteNumbered(record.name, "Tower", static_cast<uint64_t>(key.jukeboxId));
    std::memcpy(record.identity.vendor, "OSTREL", 7);
    std::memcpy(record.identity.product, "Changer", 8);
    std::memcpy(record.identity.revision, "1.00", 5);
    record.enabled = 1;
    record.driveCount = 1;
    record.magazineCount = m_size.magazinesPerJukebox;
    record.slotCount = m_size.magazinesPerJukebox * m_size.slotsPerMagazine;
    return {};
}

Answer GeneratedAnswers::DescribeMagazine(const MagazineKey& key, MagazineRecord& record) {
    if (!HasSlot(key.jukeboxId, key.magazine, 0)) return Unknown();
    record.slotCount = m_size.slotsPerMagazine;
    record.present = 1;
    return {};
}

Answer GeneratedAnswers::DescribeDrive(const DriveKey& key, DriveRecord& record) {
    if (!HasJukebox(key.jukeboxId) || key.drive != 0) return Unknown();
    std::memcpy(record.identity.product, "Drive", 6);
    record.enabled = 1;
    return {};
}

Answer GeneratedAnswers::DescribeSlot(const SlotKey& key, SlotRecord& record) {
    if (!HasSlot(key.jukeboxId, key.magazine, key.slot)) return Unknown();
    record.state = krvcmd::slot_state::kFull;
    record.mediumCode = kDvdR;
    return {};
}

Answer GeneratedAnswers::DescribeSide(const SideKey& key, SideRecord& record) {
    if (!HasSlot(key.jukeboxId, key.magazine, key.slot)) return Unknown();
    record.mediumCode = kDvdR;
    record.finalization = 1;
    const bool isSideA = key.side == krvcmd::kSideA;
    record.state = isSideA ? krvcmd::side_state::kFileSystem : krvcmd::side_state::kNotPresent;
    record.volumeId =
        isSideA ? static_cast<int32_t>(SlotIndex(key.jukeboxId, key.magazine, key.slot) + 1) : 0;
    return {};
}

Answer GeneratedAnswers::DescribeVolume(uint32_t volumeId, VolumeRecord& record) {
    record.type = 0;
    record.state = 0;
    std::memcpy(record.fileSystem, "UDF", 4);
    const auto modulus = static_cast<uint64_t>(std::max(m_size.volumes, 1));
    WriteNumbered(record.label, "Label-", volumeId * kSpread % modulus);
    record.totalCapacity = kCapacity;
    record.freeCapacity = kCapacity / 100 * (volumeId % 101);
    if (m_size.isVaried) {
        WriteNumbered(record.fileSystem, "UDF ", volumeId);
        record.totalCapacity += volumeId * uint64_t{1'048'576};
    }
    return {};
}

Answer GeneratedAnswers::ListAspects(uint32_t volumeId, char* buffer, uint32_t bufferSize,
                                     uint32_t& requiredSize) {
    requiredSize = 0;
    if (!m_size.withDirectories) return {};
    char list[64] = {};
    WriteNumbered(list, "archive\\volume", volumeId);
    requiredSize = static_cast<uint32_t>(std::strlen(list)) + 2;
    if (bufferSize >= requiredSize) std::memcpy(buffer, list, requiredSize);
    return {};
}

Answer GeneratedAnswers::ListLocations(uint32_t volumeId, SideKey* locations, uint32_t room,
                                       uint32_t& count) {
    const int64_t index = static_cast<int64_t>(volumeId) - 1;
    const int64_t slotsPerJukebox =
        static_cast<int64_t>(m_size.magazinesPerJukebox) * m_size.slotsPerMagazine;
    if (!m_size.withLocations || index >= slotsPerJukebox * m_size.jukeboxes) {
        return Failure{kNoLocation, "The volume has no location."};
    }
    count = 1;
    if (room < 1) return {};
    locations->jukeboxId = static_cast<int32_t>(index / slotsPerJukebox) + 1;
    locations->magazine = static_cast<int32_t>(index % slotsPerJukebox / m_size.slotsPerMagazine);
    locations->slot = static_cast<int32_t>(index % m_size.slotsPerMagazine);
    locations->side = 0;
    return {};
}

bool GeneratedAnswers::HasJukebox(int32_t jukebox) const {
    return jukebox >= 1 && jukebox <= m_size.jukeboxes;
}

bool GeneratedAnswers::HasSlot(int32_t jukebox, int32_t magazine, int32_t slot) const {
    return HasJukebox(jukebox) && magazine >= 0 && magazine < m_size.magazinesPerJukebox && slot >= 0 &&
           slot < m_size.slotsPerMagazine;
}

int64_t GeneratedAnswers::SlotIndex(int32_t jukebox, int32_t magazine, int32_t slot) const {
    const int64_t magazines = static_cast<int64_t>(jukebox - 1) * m_size.magazinesPerJukebox + magazine;
    return magazines * m_size.slotsPerMagazine + slot;
}

}  // namespace krvfake
