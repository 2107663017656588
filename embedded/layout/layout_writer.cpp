#include "embedded/layout/layout_writer.h"

#include <algorithm>
#include <limits>

#include "embedded/layout/text_encoding.h"
#include "embedded/model/farm_words.h"
#include "embedded/model/media_types.h"
#include "embedded/model/strings.h"

namespace embedded {
namespace {

std::string Quoted(std::string_view text) {
    if (!IsText(text)) return Joined({"{ hex = \"", ToHex(text), "\" }"});
    std::string quoted = "\"";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            quoted += '\\';
            quoted += character;
        } else if (byte < 0x20 || byte == 0x7F) {
            quoted += "\\u00" + ToHex({&character, 1});
        } else {
            quoted += character;
        }
    }
    return quoted + "\"";
}

// A number above the range of TOML is written as a string.
std::string Number(uint64_t number) {
    const bool fits = number <= static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
    return fits ? std::to_string(number) : "\"" + std::to_string(number) + "\"";
}

// The fields of a table, written inline or as lines below its heading.
class Fields {
  public:
    void Add(std::string_view name, std::string_view value) {
        m_fields.push_back(Joined({name, " = ", value}));
    }
    void AddIf(bool isUnusual, std::string_view name, std::string_view value) {
        if (isUnusual) Add(name, value);
    }

    std::string Inline() const {
        std::string text = "{ ";
        for (size_t position = 0; position < m_fields.size(); ++position) {
            if (position > 0) text += ", ";
            text += m_fields[position];
        }
        return text + " }";
    }

    void WriteLines(std::ostream& out) const {
        for (const std::string& field : m_fields)
            out << field << '\n';
    }

  private:
    std::vector<std::string> m_fields;
};

const char* Truth(bool value) {
    return value ? "true" : "false";
}

template <typename Value>
std::string QuotedWord(std::span<const Word> words, Value value) {
    return Joined({"\"", WordOf(words, static_cast<int32_t>(value)), "\""});
}

std::string Type(uint32_t code) {
    if (code == kUnknownMedium) return "\"unknown\"";
    const MediaType* type = FindMediaType(code);
    return type == nullptr ? std::to_string(code) : Quoted(type->name);
}

std::string Side(uint32_t type, const FarmSide& side) {
    const FarmSide usual = UsualSide(type, side.content, side.volume);
    const bool isUsual =
        side.finalization == usual.finalization && side.sequential == usual.sequential && side.part == 0;
    std::string content = QuotedWord(ContentWords(), side.content);
    if (isUsual && side.volume == 0) return content;
    if (isUsual && side.content == Content::FileSystem) return std::to_string(side.volume);
    Fields fields;
    fields.AddIf(side.volume != 0, "volume", std::to_string(side.volume));
    const Content implied = side.volume == 0 ? Content::Blank : Content::FileSystem;
    fields.AddIf(side.content != implied, "content", content);
    fields.AddIf(side.finalization != usual.finalization, "finalization",
                 QuotedWord(FinalizationWords(), side.finalization));
    fields.AddIf(side.sequential != usual.sequential, "sequential", Truth(side.sequential));
    fields.AddIf(side.part != 0, "part", std::to_string(side.part));
    return fields.Inline();
}

enum class SlotField { Written, LeftOut };

std::string Medium(const FarmMedium& medium, SlotField slot) {
    Fields fields;
    fields.AddIf(slot == SlotField::Written, "slot", std::to_string(medium.slot));
    fields.Add("type", Type(medium.type));
    for (size_t side = 0; side < medium.sides.size(); ++side) {
        fields.Add(side == 0 ? "a" : "b", Side(medium.type, medium.sides[side]));
    }
    return fields.Inline();
}

void WriteMedia(std::ostream& out, std::string_view name, const std::vector<FarmMedium>& media,
                SlotField slot) {
    if (media.empty()) return;
    out << name << " = [\n";
    for (const FarmMedium& medium : media)
        out << "  " << Medium(medium, slot) << ",\n";
    out << "]\n";
}

void AddDevice(Fields& fields, const FarmDevice& device) {
    fields.AddIf(!device.vendor.empty(), "vendor", Quoted(device.vendor));
    fields.AddIf(!device.product.empty(), "product", Quoted(device.product));
    fields.AddIf(!device.revision.empty(), "revision", Quoted(device.revision));
    const bool isUnusual = std::ranges::any_of(device.scsi, [](int32_t component) { return component != 0; });
    fields.AddIf(isUnusual, "scsi",
                 Joined({"[", std::to_string(device.scsi[0]), ", ", std::to_string(device.scsi[1]), ", ",
                         std::to_string(device.scsi[2]), "]"}));
}

std::string Drive(const FarmDrive& drive) {
    Fields fields;
    AddDevice(fields, drive.device);
    fields.AddIf(!drive.enabled, "enabled", "false");
    fields.AddIf(drive.values[0] != 0, "value1", Number(drive.values[0]));
    fields.AddIf(drive.values[1] != 0, "value2", Number(drive.values[1]));
    return fields.Inline();
}

void AddOddSlots(Fields& fields, std::string_view name, SlotState state, const FarmMagazine& magazine) {
    std::string list;
    for (const FarmSlot& slot : magazine.oddSlots) {
        if (slot.state != state) continue;
        if (!list.empty()) list += ", ";
        list += std::to_string(slot.number);
    }
    fields.AddIf(!list.empty(), name, Joined({"[", list, "]"}));
}

void WriteMagazine(std::ostream& out, const FarmMagazine& magazine) {
    Fields fields;
    fields.Add("slots", std::to_string(magazine.slotCount));
    fields.AddIf(!magazine.present, "present", "false");
    AddOddSlots(fields, "unknown", SlotState::Unknown, magazine);
    AddOddSlots(fields, "not_present", SlotState::NotPresent, magazine);
    AddOddSlots(fields, "scan_failed", SlotState::ScanFailed, magazine);
    out << "\n[[jukebox.magazine]]\n";
    fields.WriteLines(out);
    WriteMedia(out, "media", magazine.media, SlotField::Written);
}

void WriteJukebox(std::ostream& out, const FarmJukebox& jukebox) {
    Fields fields;
    fields.Add("id", std::to_string(jukebox.id));
    fields.Add("name", Quoted(jukebox.name));
    fields.AddIf(!jukebox.enabled, "enabled", "false");
    fields.AddIf(jukebox.doubleSided, "double_sided", "true");
    AddDevice(fields, jukebox.changer);
    out << "\n[[jukebox]]\n";
    fields.WriteLines(out);
    if (!jukebox.drives.empty()) {
        out << "drive = [\n";
        for (const FarmDrive& drive : jukebox.drives)
            out << "  " << Drive(drive) << ",\n";
        out << "]\n";
    }
    WriteMedia(out, "waiting", jukebox.waiting, SlotField::LeftOut);
    WriteMedia(out, "exported", jukebox.exported, SlotField::LeftOut);
    for (const FarmMagazine& magazine : jukebox.magazines)
        WriteMagazine(out, magazine);
}

std::string Volume(const FarmVolume& volume) {
    Fields fields;
    fields.Add("id", std::to_string(volume.id));
    fields.AddIf(volume.type != VolumeType::Disc, "type", QuotedWord(VolumeTypeWords(), volume.type));
    fields.AddIf(!volume.enabled, "enabled", "false");
    if (volume.state.has_value()) fields.Add("state", std::to_string(*volume.state));
    fields.AddIf(!volume.label.empty(), "label", Quoted(volume.label));
    fields.AddIf(!volume.fileSystem.empty(), "file_system", Quoted(volume.fileSystem));
    fields.AddIf(volume.total != 0, "total", Number(volume.total));
    fields.AddIf(volume.free != 0, "free", Number(volume.free));
    std::string directories;
    for (const std::string& directory : volume.directories) {
        if (!directories.empty()) directories += ", ";
        directories += Quoted(directory);
    }
    fields.AddIf(!directories.empty(), "directories", Joined({"[", directories, "]"}));
    fields.AddIf(volume.value1 != -1, "value1", std::to_string(volume.value1));
    fields.AddIf(volume.value2 != 0, "value2", std::to_string(volume.value2));
    return fields.Inline();
}

}  // namespace

void WriteLayout(std::ostream& out, std::string_view server, const Farm& farm) {
    out << "# The farm of server " << (IsText(server) ? Quoted(server) : ToHex(server))
        << ".\n\nformat = 1\n";
    if (!farm.running) out << "running = false\n";
    if (farm.nextVolume != 0) out << "next_volume = " << farm.nextVolume << '\n';
    if (!farm.volumes.empty()) {
        out << "\nvolume = [\n";
        for (const FarmVolume& volume : farm.volumes)
            out << "  " << Volume(volume) << ",\n";
        out << "]\n";
    }
    if (!farm.shelf.empty()) out << '\n';
    WriteMedia(out, "shelf", farm.shelf, SlotField::LeftOut);
    for (const FarmJukebox& jukebox : farm.jukeboxes)
        WriteJukebox(out, jukebox);
}

}  // namespace embedded
