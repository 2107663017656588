#include "tools/library_reader/jukebox_copy.h"

#include <algorithm>
#include <string>

#include "embedded/model/farm_words.h"
#include "embedded/model/media_types.h"
#include "krvcmd/service/sdk/codes.h"
#include "tools/common/plain_text.h"

namespace embedded::tools {
namespace {

constexpr auto kSideUnreadable = static_cast<int32_t>(krvcmd::service_code::kSideUnreadable);
// Larger counts are mistakes of the library.
constexpr int32_t kMaxSlots = 10'000'000;
constexpr int32_t kMaxParts = 1'000'000;

FarmDevice DeviceOf(const DeviceIdentity& identity) {
    FarmDevice device;
    device.vendor = TextOf(identity.vendor).substr(0, sizeof(identity.vendor) - 1);
    device.product = TextOf(identity.product).substr(0, sizeof(identity.product) - 1);
    device.revision = TextOf(identity.revision).substr(0, sizeof(identity.revision) - 1);
    std::ranges::copy(identity.scsiAddress, device.scsi);
    return device;
}

class JukeboxCopier {
  public:
    JukeboxCopier(const LibraryService& service, VolumeCopier& volumes, CopyLog& log)
        : m_service(service), m_volumes(volumes), m_log(log) {}

    std::vector<FarmJukebox> Copy() {
        ForEachId(
            "jukeboxes", m_log, [&](uint32_t& id) { return m_service.NextJukebox(id); },
            [&](int32_t id) { ReadJukebox(id); });
        return std::move(m_jukeboxes);
    }

  private:
    void ReadJukebox(int32_t id) {
        const std::string name = "jukebox " + std::to_string(id);
        JukeboxRecord record{};
        if (!m_log.IsRead(m_service.GetJukebox(id, record), name)) return;
        FarmJukebox jukebox;
        jukebox.id = id;
        jukebox.name = TextOf(record.name).substr(0, sizeof(record.name) - 1);
        if (jukebox.name.empty()) {
            m_log.AddChanged(name, "empty name, copied as \"" + name + "\"");
            jukebox.name = name;
        }
        jukebox.enabled = record.enabled != 0;
        jukebox.doubleSided = record.doubleSided != 0;
        jukebox.changer = DeviceOf(record.identity);
        const int32_t drives = m_log.PossibleCount(record.driveCount, kMaxParts, "the drives of " + name);
        for (int32_t drive = 0; drive < drives; ++drive)
            jukebox.drives.push_back(ReadDrive(id, drive, name));
        const int32_t magazines =
            m_log.PossibleCount(record.magazineCount, kMaxParts, "the magazines of " + name);
        for (int32_t magazine = 0; magazine < magazines; ++magazine)
            jukebox.magazines.push_back(ReadMagazine(id, magazine, name));
        CompareSlotCounts(record, jukebox, name);
        m_jukeboxes.push_back(std::move(jukebox));
    }

    // A service may or may not count the slots of magazines that are not present.
    void CompareSlotCounts(const JukeboxRecord& record, const FarmJukebox& jukebox, const std::string& name) {
        int64_t present = 0;
        int64_t all = 0;
        for (const FarmMagazine& magazine : jukebox.magazines) {
            all += magazine.slotCount;
            if (magazine.present) present += magazine.slotCount;
        }
        if (record.slotCount == present || record.slotCount == all) return;
        m_log.AddChanged(name, Counted(record.slotCount, "slot", "slots") + " but " +
                                   std::to_string(present) + " in its magazines, copied with those");
    }

    FarmDrive ReadDrive(int32_t jukebox, int32_t number, const std::string& owner) {
        FarmDrive drive;
        drive.enabled = false;
        DriveRecord record{};
        const std::string name = "drive " + std::to_string(number + 1) + " of " + owner;
        if (!m_log.IsRead(m_service.GetDrive({sizeof(DriveKey), jukebox, number}, record), name))
            return drive;
        drive.device = DeviceOf(record.identity);
        drive.enabled = record.enabled != 0;
        drive.values[0] = record.libraryValue1;
        drive.values[1] = record.libraryValue2;
        return drive;
    }

    FarmMagazine ReadMagazine(int32_t jukebox, int32_t number, const std::string& owner) {
        FarmMagazine magazine;
        magazine.present = false;
        MagazineRecord record{};
        const std::string name = "magazine " + std::to_string(number + 1) + " of " + owner;
        if (!m_log.IsRead(m_service.GetMagazine({sizeof(MagazineKey), jukebox, number}, record), name))
            return magazine;
        magazine.present = record.present != 0;
        magazine.slotCount = m_log.PossibleCount(record.slotCount, kMaxSlots, "the slots of " + name);
        if (!magazine.present) {
            m_log.AddHidden("the media in " + name, "the magazine is not present");
            return magazine;
        }
        for (int32_t slot = 0; slot < magazine.slotCount; ++slot) {
            ReadSlot({sizeof(SlotKey), jukebox, number, slot},
                     "slot " + std::to_string(slot + 1) + " of " + name, magazine);
            m_log.Step();
        }
        return magazine;
    }

    void ReadSlot(const SlotKey& key, const std::string& name, FarmMagazine& magazine) {
        SlotRecord record{};
        if (!m_log.IsRead(m_service.GetSlot({sizeof(SlotKey), key.jukeboxId, key.magazine, key.slot}, record),
                          name)) {
            magazine.oddSlots.push_back({key.slot + 1, SlotState::Unknown});
            return;
        }
        auto state = static_cast<SlotState>(record.state);
        if (record.state > static_cast<uint32_t>(SlotState::Full)) {
            m_log.AddChanged(name, "invalid state " + std::to_string(record.state) + ", copied as unknown");
            state = SlotState::Unknown;
        }
        const bool hasType = record.mediumCode != kNoMedium;
        const bool mayHoldMedium = state != SlotState::Empty && state != SlotState::NotPresent;
        const bool holdsMedium = state == SlotState::Full || (mayHoldMedium && hasType);
        if (holdsMedium) {
            if (!hasType) m_log.AddChanged(name, "full without a medium type, copied with an unknown type");
            magazine.media.push_back(
                ReadMedium(key, hasType ? record.mediumCode : kUnknownMedium, state, name));
        }
        const SlotState usual = holdsMedium ? SlotState::Full : SlotState::Empty;
        if (state != usual) magazine.oddSlots.push_back({key.slot + 1, state});
    }

    FarmMedium ReadMedium(const SlotKey& slot, uint32_t type, SlotState slotState,
                          const std::string& slotName) {
        FarmMedium medium;
        medium.slot = slot.slot + 1;
        medium.type = type;
        for (int32_t side = 0; side < 2; ++side) {
            const SideKey key{sizeof(SideKey), slot.jukeboxId, slot.magazine, slot.slot, side};
            const std::string name = std::string("side ") + (side == 0 ? "A" : "B") + " of " + slotName;
            SideRecord record{};
            const Outcome outcome = m_service.GetSide(key, record);
            if (outcome.has_value() && outcome->code != kSideUnreadable) {
                m_log.AddUnread(name, FailureText(*outcome));
                if (side == 0) medium.sides.push_back(UsualSide(type, Content::Bad, 0));
            } else if (side == 0 || record.state != krvcmd::side_state::kNotPresent) {
                medium.sides.push_back(SideOf(key, type, slotState, record, name));
            }
        }
        return medium;
    }

    FarmSide SideOf(const SideKey& key, uint32_t type, SlotState slotState, const SideRecord& record,
                    const std::string& name) {
        const SidePlace place{key.jukeboxId, key.magazine, key.slot, key.side};
        const bool hasVolume = record.volumeId > 0 && m_volumes.HasVolumeOf(place, record.volumeId, name);
        const int32_t volume = hasVolume ? record.volumeId : 0;
        FarmSide side = UsualSide(type, ContentOf(record, slotState, volume, name), volume);
        if (IsContentKnown(record)) {
            if (record.finalization <= static_cast<uint32_t>(Finalization::Closed)) {
                side.finalization = static_cast<Finalization>(record.finalization);
            } else {
                m_log.AddChanged(name, "invalid finalization " + std::to_string(record.finalization) +
                                           ", copied as usual for the medium");
            }
        }
        if (hasVolume) side.part = m_volumes.PartOf(place);
        return side;
    }

    static bool IsContentKnown(const SideRecord& record) {
        return record.state >= static_cast<uint32_t>(Content::Bad) &&
               record.state <= static_cast<uint32_t>(Content::FileSystem);
    }

    // The side of a medium that was not read shows no content; it gets one that fits its slot and its volume.
    Content ContentOf(const SideRecord& record, SlotState slotState, int32_t volume,
                      const std::string& name) {
        auto content = static_cast<Content>(record.state);
        if (!IsContentKnown(record)) {
            content = slotState == SlotState::ScanFailed ? Content::Bad : Content::Blank;
            if (slotState == SlotState::Full) {
                m_log.AddChanged(name, "invalid state " + std::to_string(record.state) + ", copied as " +
                                           (volume == 0 ? "blank" : "a file system"));
            }
        }
        return volume != 0 && content != Content::Bad ? Content::FileSystem : content;
    }

    const LibraryService& m_service;
    VolumeCopier& m_volumes;
    CopyLog& m_log;
    std::vector<FarmJukebox> m_jukeboxes;
};

}  // namespace

std::vector<FarmJukebox> CopyJukeboxes(const LibraryService& service, VolumeCopier& volumes, CopyLog& log) {
    return JukeboxCopier(service, volumes, log).Copy();
}

}  // namespace embedded::tools
