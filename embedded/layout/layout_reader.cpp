#include "embedded/layout/layout_reader.h"

#include <limits>
#include <optional>

#include "embedded/layout/long_arrays.h"
#include "embedded/layout/table_reader.h"
#include "embedded/model/media_types.h"

namespace embedded {
namespace {

constexpr int32_t kFormat = 1;
constexpr int64_t kLowest = std::numeric_limits<int32_t>::min();
constexpr int64_t kHighest = std::numeric_limits<int32_t>::max();
// The slots of a magazine are stored one by one.
constexpr int64_t kMostSlots = 10'000'000;

// A name, or the code of a type without one.
uint32_t ReadType(TableReader& reader) {
    reader.Require("type");
    const toml::node* node = reader.Node("type");
    if (node == nullptr) return kUnknownMedium;
    if (const auto code = node->value_exact<int64_t>(); code.has_value() && *code >= 0 && *code < kNoMedium) {
        return static_cast<uint32_t>(*code);
    }
    const auto name = node->value_exact<std::string_view>();
    if (name.has_value() && *name == "unknown") return kUnknownMedium;
    const MediaType* type = name.has_value() ? FindMediaType(*name) : nullptr;
    if (type != nullptr) return type->code;
    reader.AddProblem("type", node, "is not a media type");
    return kUnknownMedium;
}

FarmSide ReadSideTable(TableReader& reader, uint32_t type) {
    int32_t volume = 0;
    reader.Number("volume", kLowest, kHighest, volume);
    auto content = static_cast<int32_t>(volume == 0 ? Content::Blank : Content::FileSystem);
    reader.Choice("content", ContentWords(), content);
    FarmSide side = UsualSide(type, static_cast<Content>(content), volume);
    auto finalization = static_cast<int32_t>(side.finalization);
    reader.Choice("finalization", FinalizationWords(), finalization);
    side.finalization = static_cast<Finalization>(finalization);
    reader.Flag("sequential", side.sequential);
    reader.Number("part", 0, kHighest, side.part);
    return side;
}

// A volume ID, a content word, or a table.
FarmSide ReadSide(TableReader& reader, std::string_view field, uint32_t type) {
    const toml::node* node = reader.Node(field);
    if (const auto volume = node->value_exact<int64_t>()) {
        if (*volume != 0 && *volume >= kLowest && *volume <= kHighest) {
            return UsualSide(type, Content::FileSystem, static_cast<int32_t>(*volume));
        }
    }
    if (const auto word = node->value_exact<std::string_view>()) {
        if (const auto content = ValueOf(ContentWords(), *word)) {
            return UsualSide(type, static_cast<Content>(*content), 0);
        }
    }
    if (const toml::table* table = node->as_table()) {
        TableReader side(*table, reader.PathOf(field), reader.GetProblems());
        const FarmSide result = ReadSideTable(side, type);
        side.RejectUnknownFields();
        return result;
    }
    reader.AddProblem(field, node, "must be a volume ID, a content word or a table");
    return {};
}

enum class Numbering { InSlots, InOrder };

FarmMedium ReadMedium(TableReader& reader, Numbering numbering) {
    FarmMedium medium;
    medium.line = reader.GetLine();
    if (numbering == Numbering::InSlots) {
        reader.Require("slot");
        reader.Number("slot", 1, kHighest, medium.slot);
    }
    medium.type = ReadType(reader);
    reader.Require("a");
    if (reader.Has("a")) medium.sides.push_back(ReadSide(reader, "a", medium.type));
    if (reader.Has("b")) medium.sides.push_back(ReadSide(reader, "b", medium.type));
    return medium;
}

std::vector<FarmMedium> ReadMedia(TableReader& reader, std::string_view field, Numbering numbering) {
    std::vector<FarmMedium> media;
    reader.Tables(field, [&](TableReader& medium) { media.push_back(ReadMedium(medium, numbering)); });
    return media;
}

void ReadDevice(TableReader& reader, FarmDevice& device) {
    reader.Text("vendor", 8, device.vendor);
    reader.Text("product", 16, device.product);
    reader.Text("revision", 4, device.revision);
    const toml::node* node = reader.Node("scsi");
    if (node == nullptr) return;
    const toml::array* list = node->as_array();
    bool isValid = list != nullptr && list->size() == std::size(device.scsi);
    for (size_t position = 0; isValid && position < list->size(); ++position) {
        const auto value = (*list)[position].value_exact<int64_t>();
        isValid = value.has_value() && *value >= kLowest && *value <= kHighest;
        if (isValid) device.scsi[position] = static_cast<int32_t>(*value);
    }
    if (!isValid) reader.AddProblem("scsi", node, "must be an array of three integers");
}

FarmDrive ReadDrive(TableReader& reader) {
    FarmDrive drive;
    ReadDevice(reader, drive.device);
    reader.Flag("enabled", drive.enabled);
    reader.Huge("value1", drive.values[0]);
    reader.Huge("value2", drive.values[1]);
    return drive;
}

void ReadOddSlots(TableReader& reader, std::string_view field, SlotState state, FarmMagazine& magazine) {
    for (const int32_t number : reader.Numbers(field))
        magazine.oddSlots.push_back({number, state});
}

FarmMagazine ReadMagazine(TableReader& reader) {
    FarmMagazine magazine;
    magazine.line = reader.GetLine();
    reader.Require("slots");
    reader.Number("slots", 0, kMostSlots, magazine.slotCount);
    reader.Flag("present", magazine.present);
    ReadOddSlots(reader, "unknown", SlotState::Unknown, magazine);
    ReadOddSlots(reader, "not_present", SlotState::NotPresent, magazine);
    ReadOddSlots(reader, "scan_failed", SlotState::ScanFailed, magazine);
    magazine.media = ReadMedia(reader, "media", Numbering::InSlots);
    return magazine;
}

// A layout may state a count to guard against slips; it must match.
void CheckCount(TableReader& reader, std::string_view field, int64_t count) {
    const std::optional<int64_t> declared = reader.Integer(field, 0, kHighest);
    if (!declared.has_value() || *declared == count) return;
    reader.AddProblem(field, reader.Node(field),
                      "is " + std::to_string(*declared) + ", but there are " + std::to_string(count));
    reader.GetProblems().back().isCountMismatch = true;
}

FarmJukebox ReadJukebox(TableReader& reader) {
    FarmJukebox jukebox;
    jukebox.line = reader.GetLine();
    reader.Require("id");
    reader.Number("id", 1, kHighest, jukebox.id);
    reader.Require("name");
    reader.Text("name", 51, jukebox.name);
    reader.Flag("enabled", jukebox.enabled);
    reader.Flag("double_sided", jukebox.doubleSided);
    ReadDevice(reader, jukebox.changer);
    reader.Tables("drive", [&](TableReader& drive) { jukebox.drives.push_back(ReadDrive(drive)); });
    reader.Tables("magazine",
                  [&](TableReader& magazine) { jukebox.magazines.push_back(ReadMagazine(magazine)); });
    jukebox.waiting = ReadMedia(reader, "waiting", Numbering::InOrder);
    jukebox.exported = ReadMedia(reader, "exported", Numbering::InOrder);
    int64_t slots = 0;
    for (const FarmMagazine& magazine : jukebox.magazines)
        slots += magazine.slotCount;
    CheckCount(reader, "drive_count", static_cast<int64_t>(jukebox.drives.size()));
    CheckCount(reader, "magazine_count", static_cast<int64_t>(jukebox.magazines.size()));
    CheckCount(reader, "slot_count", slots);
    return jukebox;
}

FarmVolume ReadVolume(TableReader& reader) {
    FarmVolume volume;
    volume.line = reader.GetLine();
    reader.Require("id");
    reader.Number("id", kLowest, kHighest, volume.id);
    auto type = static_cast<int32_t>(volume.type);
    reader.Choice("type", VolumeTypeWords(), type);
    volume.type = static_cast<VolumeType>(type);
    reader.Flag("enabled", volume.enabled);
    if (reader.Has("state")) {
        volume.state = static_cast<int32_t>(VolumeState::Unknown);
        reader.Number("state", 0, kHighest, *volume.state);
    }
    reader.Text("label", 255, volume.label);
    reader.Text("file_system", 29, volume.fileSystem);
    reader.Huge("total", volume.total);
    reader.Huge("free", volume.free);
    volume.directories = reader.Texts("directories", 1023);
    reader.Number("value1", kLowest, kHighest, volume.value1);
    reader.Unsigned("value2", volume.value2);
    return volume;
}

void ReadFarm(TableReader& reader, Farm& farm) {
    reader.RequireFormat(kFormat);
    reader.Flag("running", farm.running);
    reader.Number("next_volume", 0, kHighest, farm.nextVolume);
    reader.Tables("jukebox", [&](TableReader& jukebox) { farm.jukeboxes.push_back(ReadJukebox(jukebox)); });
    reader.Tables("volume", [&](TableReader& volume) { farm.volumes.push_back(ReadVolume(volume)); });
    farm.shelf = ReadMedia(reader, "shelf", Numbering::InOrder);
    CheckCount(reader, "jukebox_count", static_cast<int64_t>(farm.jukeboxes.size()));
    CheckCount(reader, "volume_count", static_cast<int64_t>(farm.volumes.size()));
    reader.RejectUnknownFields();
}

// The farm of a valid text with long arrays; nothing for any other text, whose problems are found in the text
// as a whole.
std::optional<Farm> ReadInPieces(std::string_view text) {
    LongArrays arrays(text);
    if (arrays.IsEmpty()) return std::nullopt;
    Farm farm;
    std::vector<Problem> problems;
    ReadToml(arrays.GetRest(), problems, [&](TableReader& reader) {
        reader.SetLongArrays(arrays);
        ReadFarm(reader, farm);
    });
    if (problems.empty() && arrays.AreAllTaken()) return farm;
    return std::nullopt;
}

}  // namespace

std::string ProblemText(std::string_view file, const Problem& problem) {
    std::string text(file);
    if (problem.line > 0) text += ":" + std::to_string(problem.line);
    text += ": ";
    if (!problem.field.empty()) text += problem.field + ": ";
    return text + problem.text;
}

LayoutResult ReadLayout(std::string_view text) {
    LayoutResult result;
    if (std::optional<Farm> farm = ReadInPieces(text)) {
        result.farm = std::move(*farm);
        return result;
    }
    ReadToml(text, result.problems, [&](TableReader& reader) { ReadFarm(reader, result.farm); });
    return result;
}

}  // namespace embedded
