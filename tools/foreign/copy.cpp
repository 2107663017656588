#include "tools/foreign/copy.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>

#include "embedded/layout/contradictions.h"
#include "embedded/model/farm.h"
#include "embedded/model/farm_words.h"
#include "embedded/model/media_types.h"
#include "krvcmd/service/sdk/codes.h"
#include "tools/common/command.h"
#include "tools/common/progress.h"
#include "tools/foreign/foreign_service.h"

namespace embedded::tools {
namespace {

constexpr auto kSideUnreadable = static_cast<int32_t>(krvcmd::service_code::kSideUnreadable);
// More is taken for a mistake of the library.
constexpr int32_t kMostSlots = 10'000'000;
constexpr int32_t kMostParts = 1'000'000;

class Copier {
  public:
    Copier(const ForeignService& service, const Streams& streams)
        : m_service(service), m_err(streams.err), m_progress(streams.err, "items read:", 0) {}

    Farm Copy() {
        ReadVolumes();
        ReadJukeboxes();
        OrderParts();
        SettleVolumes();
        DropUsualStates(m_farm);
        return std::move(m_farm);
    }

    size_t GetUnread() const { return m_unread; }

  private:
    void Report(const std::string& item, const std::string& reason) {
        m_progress.Clear();
        m_err << "not read: " << item << ": " << reason << '\n';
        ++m_unread;
    }
    // What the service has, but no call can show.
    void ReportHidden(const std::string& item, const std::string& reason) {
        m_progress.Clear();
        m_err << "not shown: " << item << ": " << reason << '\n';
    }
    bool IsRead(const Outcome& outcome, const std::string& item) {
        if (!outcome.has_value()) return true;
        Report(item, FailureText(*outcome));
        return false;
    }

    // A number that the library tells, kept within reason.
    int32_t Sane(int32_t count, int32_t most, const std::string& item) {
        if (count >= 0 && count <= most) return count;
        Report(item, "its number of parts, " + std::to_string(count) + ", is not possible");
        return 0;
    }

    // ---- Volumes

    void ReadVolumes() {
        uint32_t id = 0;
        uint32_t last = 0;
        while (true) {
            const Outcome outcome = m_service.NextVolume(id);
            if (!IsRead(outcome, "the volumes after ID " + std::to_string(last)) || id == 0) return;
            // A list that turns back would have no end.
            if (id <= last || id > INT32_MAX) {
                Report("the volumes after ID " + std::to_string(last),
                       "the next ID is " + std::to_string(id));
                return;
            }
            last = id;
            ReadVolume(id);
            m_progress.Step();
        }
    }

    void ReadVolume(uint32_t id) {
        const std::string name = "volume " + std::to_string(id);
        VolumeRecord record{};
        if (!IsRead(m_service.GetVolume(id, record), name)) return;
        FarmVolume volume;
        volume.id = static_cast<int32_t>(id);
        volume.type = static_cast<VolumeType>(record.type);
        if (record.type > static_cast<uint32_t>(VolumeType::VolumeSet)) {
            Report(name, "its type, " + std::to_string(record.type) + ", is not known: taken for a disc");
            volume.type = VolumeType::Disc;
        }
        volume.enabled = record.state != static_cast<uint32_t>(VolumeState::Disabled);
        volume.state = static_cast<int32_t>(std::min<uint32_t>(record.state, INT32_MAX));
        volume.label = TextOf(record.label).substr(0, sizeof(record.label) - 1);
        volume.fileSystem = TextOf(record.fileSystem).substr(0, sizeof(record.fileSystem) - 1);
        volume.total = record.totalCapacity;
        volume.free = record.freeCapacity;
        if (volume.free > volume.total) {
            Report(name, "it has more free bytes than bytes: taken for empty");
            volume.free = volume.total;
        }
        volume.value1 = record.libraryValue1;
        volume.value2 = record.libraryValue2;
        ReadDirectories(name, volume);
        ReadLocations(name, id);
        m_volumes.emplace(volume.id, m_farm.volumes.size());
        m_farm.volumes.push_back(std::move(volume));
    }

    void ReadDirectories(const std::string& name, FarmVolume& volume) {
        std::vector<std::string> directories;
        if (!IsRead(m_service.GetDirectories(static_cast<uint32_t>(volume.id), directories),
                    "the directory names of " + name)) {
            return;
        }
        for (std::string& directory : directories) {
            if (m_directories.insert(directory).second) {
                volume.directories.push_back(std::move(directory));
            } else {
                Report(std::string("the directory name \"").append(directory).append("\" of ").append(name),
                       "another volume has it already");
            }
        }
    }

    using SidePlace = std::tuple<int32_t, int32_t, int32_t, int32_t>;

    void ReadLocations(const std::string& name, uint32_t id) {
        std::vector<SideKey> locations;
        if (!IsRead(m_service.GetLocations(id, locations), "the locations of " + name)) return;
        if (locations.empty())
            ReportHidden("the medium of " + name, "it lies in no slot that can be looked at");
        if (locations.size() < 2) return;
        int32_t part = 0;
        for (const SideKey& location : locations) {
            m_parts.emplace(SidePlace{location.jukeboxId, location.magazine, location.slot, location.side},
                            ++part);
        }
    }

    // ---- Jukeboxes

    void ReadJukeboxes() {
        uint32_t id = 0;
        uint32_t last = 0;
        while (true) {
            const Outcome outcome = m_service.NextJukebox(id);
            if (!IsRead(outcome, "the jukeboxes after ID " + std::to_string(last)) || id == 0) return;
            if (id <= last || id > INT32_MAX) {
                Report("the jukeboxes after ID " + std::to_string(last),
                       "the next ID is " + std::to_string(id));
                return;
            }
            last = id;
            ReadJukebox(static_cast<int32_t>(id));
        }
    }

    static FarmDevice DeviceOf(const DeviceIdentity& identity) {
        FarmDevice device;
        device.vendor = TextOf(identity.vendor).substr(0, sizeof(identity.vendor) - 1);
        device.product = TextOf(identity.product).substr(0, sizeof(identity.product) - 1);
        device.revision = TextOf(identity.revision).substr(0, sizeof(identity.revision) - 1);
        std::ranges::copy(identity.scsiAddress, device.scsi);
        return device;
    }

    void ReadJukebox(int32_t id) {
        const std::string name = "jukebox " + std::to_string(id);
        JukeboxRecord record{};
        if (!IsRead(m_service.GetJukebox(id, record), name)) return;
        FarmJukebox jukebox;
        jukebox.id = id;
        jukebox.name = TextOf(record.name).substr(0, sizeof(record.name) - 1);
        if (jukebox.name.empty()) {
            jukebox.name = name;
            Report("the name of " + name, "it is empty");
        }
        jukebox.enabled = record.enabled != 0;
        jukebox.doubleSided = record.doubleSided != 0;
        jukebox.changer = DeviceOf(record.identity);
        const int32_t drives = Sane(record.driveCount, kMostParts, "the drives of " + name);
        for (int32_t drive = 0; drive < drives; ++drive)
            ReadDrive(jukebox, drive, name);
        const int32_t magazines = Sane(record.magazineCount, kMostParts, "the magazines of " + name);
        for (int32_t magazine = 0; magazine < magazines; ++magazine)
            ReadMagazine(jukebox, magazine, name);
        m_farm.jukeboxes.push_back(std::move(jukebox));
    }

    // A drive that cannot be read keeps its number: it is there, disabled.
    void ReadDrive(FarmJukebox& jukebox, int32_t number, const std::string& owner) {
        FarmDrive drive;
        DriveRecord record{};
        drive.enabled = false;
        if (IsRead(m_service.GetDrive({sizeof(DriveKey), jukebox.id, number}, record),
                   "drive " + std::to_string(number + 1) + " of " + owner)) {
            drive.device = DeviceOf(record.identity);
            drive.enabled = record.enabled != 0;
            drive.values[0] = record.libraryValue1;
            drive.values[1] = record.libraryValue2;
        }
        jukebox.drives.push_back(std::move(drive));
    }

    // So does a magazine: it is there as one that is not present.
    void ReadMagazine(FarmJukebox& jukebox, int32_t number, const std::string& owner) {
        const std::string name = "magazine " + std::to_string(number + 1) + " of " + owner;
        FarmMagazine magazine;
        magazine.present = false;
        MagazineRecord record{};
        if (IsRead(m_service.GetMagazine({sizeof(MagazineKey), jukebox.id, number}, record), name)) {
            magazine.present = record.present != 0;
            magazine.slotCount = Sane(record.slotCount, kMostSlots, "the slots of " + name);
            if (!magazine.present) ReportHidden("what is in " + name, "it is not present");
            for (int32_t slot = 0; magazine.present && slot < magazine.slotCount; ++slot) {
                ReadSlot({jukebox.id, number, slot}, "slot " + std::to_string(slot + 1) + " of " + name,
                         magazine);
                m_progress.Step();
            }
        }
        jukebox.magazines.push_back(std::move(magazine));
    }

    struct SlotPlace {
        int32_t jukebox;
        int32_t magazine;
        int32_t slot;
    };

    void ReadSlot(const SlotPlace& place, const std::string& name, FarmMagazine& magazine) {
        SlotRecord record{};
        if (!IsRead(m_service.GetSlot({sizeof(SlotKey), place.jukebox, place.magazine, place.slot}, record),
                    name)) {
            magazine.oddSlots.push_back({place.slot + 1, SlotState::Unknown});
            return;
        }
        auto state = static_cast<SlotState>(record.state);
        if (record.state > static_cast<uint32_t>(SlotState::Full)) {
            Report(name, "its state, " + std::to_string(record.state) + ", is not known");
            state = SlotState::Unknown;
        }
        const bool isNamed = record.mediumCode != kNoMedium;
        const bool mayHoldMedium = state != SlotState::Empty && state != SlotState::NotPresent;
        const bool holdsMedium = state == SlotState::Full || (mayHoldMedium && isNamed);
        if (holdsMedium) {
            if (!isNamed) Report("the type of the medium in " + name, "the slot is full, but tells no type");
            magazine.media.push_back(
                ReadMedium(place, isNamed ? record.mediumCode : kUnknownMedium, state, name));
        }
        const SlotState usual = holdsMedium ? SlotState::Full : SlotState::Empty;
        if (state != usual) magazine.oddSlots.push_back({place.slot + 1, state});
    }

    FarmMedium ReadMedium(const SlotPlace& place, uint32_t type, SlotState slot, const std::string& name) {
        FarmMedium medium;
        medium.slot = place.slot + 1;
        medium.type = type;
        for (int32_t side = 0; side < 2; ++side) {
            const SideKey key{sizeof(SideKey), place.jukebox, place.magazine, place.slot, side};
            SideRecord record{};
            const Outcome outcome = m_service.GetSide(key, record);
            const std::string sideName = std::string("side ") + (side == 0 ? "A" : "B") + " of " + name;
            if (outcome.has_value() && outcome->code != kSideUnreadable) {
                Report(sideName, FailureText(*outcome));
                if (side == 0) medium.sides.push_back(UsualSide(type, Content::Bad, 0));
                continue;
            }
            if (side == 1 && record.state == krvcmd::side_state::kNotPresent) continue;
            medium.sides.push_back(SideOf(key, type, slot, record, sideName));
        }
        return medium;
    }

    // A side whose medium was not read shows no content; one that agrees with the slot's state is taken.
    FarmSide SideOf(const SideKey& key, uint32_t type, SlotState slot, const SideRecord& record,
                    const std::string& name) {
        const int32_t volume = KnownVolume(record.volumeId, name);
        auto content = static_cast<Content>(record.state);
        const bool isRead = record.state >= static_cast<uint32_t>(Content::Bad) &&
                            record.state <= static_cast<uint32_t>(Content::FileSystem);
        if (!isRead) {
            content = volume == 0 ? Content::Blank : Content::FileSystem;
            if (slot == SlotState::ScanFailed) content = Content::Bad;
            if (slot == SlotState::Full)
                Report(name, "its state, " + std::to_string(record.state) + ", tells nothing");
        }
        if (volume != 0 && content != Content::Bad) content = Content::FileSystem;
        FarmSide side = UsualSide(type, content, volume);
        if (isRead && record.finalization <= static_cast<uint32_t>(Finalization::Closed)) {
            side.finalization = static_cast<Finalization>(record.finalization);
        } else if (isRead) {
            Report(name, "its finalization, " + std::to_string(record.finalization) + ", is not known");
        }
        if (volume != 0) {
            ++m_sides[volume];
            const auto part = m_parts.find({key.jukeboxId, key.magazine, key.slot, key.side});
            if (part != m_parts.end()) side.part = part->second;
        }
        return side;
    }

    // A volume that is on a side but was not in the list is asked for by its ID.
    int32_t KnownVolume(int32_t volume, const std::string& name) {
        if (volume < 1) return 0;
        if (m_volumes.contains(volume)) return volume;
        Report("volume " + std::to_string(volume) + " on " + name, "it is not in the list of volumes");
        return 0;
    }

    // ---- What follows from all

    // The parts of a volume are counted from 1 without gaps; those of a volume on one side not at all.
    void OrderParts() {
        std::map<int32_t, std::vector<FarmSide*>> volumes;
        for (FarmJukebox& jukebox : m_farm.jukeboxes) {
            for (FarmMagazine& magazine : jukebox.magazines) {
                for (FarmMedium& medium : magazine.media) {
                    for (FarmSide& side : medium.sides) {
                        if (side.volume != 0) volumes[side.volume].push_back(&side);
                    }
                }
            }
        }
        for (auto& [volume, sides] : volumes) {
            std::ranges::stable_sort(sides, {}, &FarmSide::part);
            int32_t part = 0;
            for (FarmSide* side : sides)
                side->part = sides.size() > 1 ? ++part : 0;
        }
    }

    void SettleVolumes() {
        for (FarmVolume& volume : m_farm.volumes) {
            const int sides = m_sides[volume.id];
            if (volume.type != VolumeType::Disc || sides < 2) continue;
            Report("volume " + std::to_string(volume.id),
                   "it is a disc, but lies on " + std::to_string(sides) + " sides: taken for a volume set");
            volume.type = VolumeType::VolumeSet;
        }
    }

    const ForeignService& m_service;
    std::ostream& m_err;
    Progress m_progress;
    Farm m_farm;
    std::unordered_map<int32_t, size_t> m_volumes;
    std::unordered_map<int32_t, int> m_sides;
    std::map<SidePlace, int32_t> m_parts;
    std::set<std::string> m_directories;
    size_t m_unread = 0;
};

}  // namespace

Farm CopyFarm(const std::string& library, const std::string& server, const Streams& streams) {
    const ForeignService service(library, server);
    Copier copier(service, streams);
    Farm farm = copier.Copy();
    const std::vector<Problem> problems = FindContradictions(farm);
    if (!problems.empty()) throw ToolFailure("what was read contradicts itself: " + problems.front().text);
    if (copier.GetUnread() > 0) {
        streams.err << copier.GetUnread() << " item" << (copier.GetUnread() == 1 ? "" : "s")
                    << " could not be read.\n";
    }
    return farm;
}

}  // namespace embedded::tools
