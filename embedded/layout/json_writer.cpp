#include "embedded/layout/json_writer.h"

#include <nlohmann/json.hpp>

#include "embedded/layout/text_encoding.h"
#include "embedded/model/farm_words.h"
#include "embedded/model/media_types.h"

namespace embedded {
namespace {

using Json = nlohmann::ordered_json;

// The version of the object that is written.
constexpr int kSchema = 1;

// A string, or an object with the bytes where they are no UTF-8.
Json Text(std::string_view bytes) {
    if (IsText(bytes)) return bytes;
    return {{"hex", ToHex(bytes)}};
}

constexpr Word kVolumeWords[] = {
    {static_cast<int32_t>(VolumeState::Active), "active"},
    {static_cast<int32_t>(VolumeState::Disabled), "disabled"},
    {static_cast<int32_t>(VolumeState::Offline), "offline"},
};

template <typename Value>
std::string_view WordOrUnknown(std::span<const Word> words, Value value) {
    const std::string_view word = WordOf(words, static_cast<int32_t>(value));
    return word.empty() ? "unknown" : word;
}

Json Device(const FarmDevice& device) {
    return {{"vendor", Text(device.vendor)},
            {"product", Text(device.product)},
            {"revision", Text(device.revision)},
            {"scsi", {device.scsi[0], device.scsi[1], device.scsi[2]}}};
}

Json Medium(const FarmMedium& medium) {
    Json sides = Json::array();
    for (const FarmSide& side : medium.sides) {
        Json entry = {{"content", WordOrUnknown(ContentWords(), side.content)},
                      {"finalization", WordOrUnknown(FinalizationWords(), side.finalization)},
                      {"sequential", side.sequential}};
        entry["volume"] = side.volume == 0 ? Json() : Json(side.volume);
        entry["part"] = side.part;
        sides.push_back(std::move(entry));
    }
    return {{"type", MediaTypeName(medium.type)}, {"type_code", medium.type}, {"sides", std::move(sides)}};
}

Json Media(const std::vector<FarmMedium>& media) {
    Json list = Json::array();
    for (const FarmMedium& medium : media)
        list.push_back(Medium(medium));
    return list;
}

Json Magazine(const FarmMagazine& magazine, size_t number) {
    std::vector<Json> slots(static_cast<size_t>(magazine.slotCount));
    for (size_t slot = 0; slot < slots.size(); ++slot) {
        slots[slot] = {{"slot", slot + 1}, {"state", "empty"}, {"medium", nullptr}};
    }
    for (const FarmMedium& medium : magazine.media) {
        Json& slot = slots.at(static_cast<size_t>(medium.slot - 1));
        slot["state"] = "full";
        slot["medium"] = Medium(medium);
    }
    for (const FarmSlot& odd : magazine.oddSlots) {
        slots.at(static_cast<size_t>(odd.number - 1))["state"] = WordOrUnknown(SlotStateWords(), odd.state);
    }
    return {{"magazine", number}, {"present", magazine.present}, {"slots", std::move(slots)}};
}

Json Jukebox(const FarmJukebox& jukebox) {
    Json drives = Json::array();
    for (const FarmDrive& drive : jukebox.drives) {
        Json entry = {{"drive", drives.size() + 1}, {"enabled", drive.enabled}};
        entry.update(Device(drive.device));
        entry["value1"] = drive.values[0];
        entry["value2"] = drive.values[1];
        drives.push_back(std::move(entry));
    }
    Json magazines = Json::array();
    for (const FarmMagazine& magazine : jukebox.magazines)
        magazines.push_back(Magazine(magazine, magazines.size() + 1));
    Json result = {{"id", jukebox.id},
                   {"name", Text(jukebox.name)},
                   {"enabled", jukebox.enabled},
                   {"double_sided", jukebox.doubleSided}};
    result.update(Device(jukebox.changer));
    result["drives"] = std::move(drives);
    result["magazines"] = std::move(magazines);
    result["waiting"] = Media(jukebox.waiting);
    result["exported"] = Media(jukebox.exported);
    return result;
}

Json Volume(const FarmVolume& volume, VolumeState usual) {
    Json directories = Json::array();
    for (const std::string& directory : volume.directories)
        directories.push_back(Text(directory));
    const int32_t state = volume.state.value_or(static_cast<int32_t>(usual));
    return {{"id", volume.id},
            {"type", WordOrUnknown(VolumeTypeWords(), volume.type)},
            {"enabled", volume.enabled},
            {"state", WordOrUnknown(kVolumeWords, state)},
            {"state_code", state},
            {"label", Text(volume.label)},
            {"file_system", Text(volume.fileSystem)},
            {"total", volume.total},
            {"free", volume.free},
            {"directories", std::move(directories)},
            {"value1", volume.value1},
            {"value2", volume.value2}};
}

// One element a line, written one by one: a large farm is never in memory twice.
template <typename Element, typename Write>
void WriteList(std::ostream& out, const char* name, const std::vector<Element>& list, const Write& write) {
    out << "  \"" << name << "\": [";
    const char* separator = "\n";
    for (const Element& element : list) {
        out << separator << "    " << write(element).dump();
        separator = ",\n";
    }
    out << (list.empty() ? "]" : "\n  ]");
}

}  // namespace

void WriteJson(std::ostream& out, std::string_view server, const Farm& farm) {
    const std::map<int32_t, VolumeState> usual = UsualStates(farm);
    out << "{\n  \"schema\": " << kSchema << ",\n  \"server\": " << Text(server).dump()
        << ",\n  \"running\": " << (farm.running ? "true" : "false")
        << ",\n  \"next_volume\": " << farm.nextVolume << ",\n";
    WriteList(out, "jukeboxes", farm.jukeboxes, Jukebox);
    out << ",\n";
    WriteList(out, "volumes", farm.volumes,
              [&](const FarmVolume& volume) { return Volume(volume, usual.at(volume.id)); });
    out << ",\n";
    WriteList(out, "shelf", farm.shelf, Medium);
    out << "\n}\n";
}

}  // namespace embedded
