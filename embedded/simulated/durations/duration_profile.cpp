#include "embedded/simulated/durations/duration_profile.h"

#include "embedded/layout/table_reader.h"
#include "embedded/model/media_types.h"

namespace embedded {
namespace {

constexpr int32_t kFormat = 1;
constexpr double kLongest = 10'000'000;
constexpr size_t kLongestName = 100;

template <typename Durations>
struct Field {
    std::string_view name;
    Seconds Durations::*member;
};

constexpr Field<DurationProfile> kFieldsOfJukebox[] = {
    {"move", &DurationProfile::move},     {"move_per_slot", &DurationProfile::movePerSlot},
    {"turn", &DurationProfile::turn},     {"load", &DurationProfile::load},
    {"unload", &DurationProfile::unload},
};

constexpr Field<DriveDurations> kFieldsOfDrive[] = {
    {"spin_up", &DriveDurations::spinUp},
    {"read", &DriveDurations::read},
    {"format_disc", &DriveDurations::formatDisc},
    {"format_per_gb", &DriveDurations::formatPerGb},
    {"certify_per_gb", &DriveDurations::certifyPerGb},
    {"finalize", &DriveDurations::finalize},
    {"finalize_per_gb", &DriveDurations::finalizePerGb},
    {"erase", &DriveDurations::erase},
    {"erase_per_gb", &DriveDurations::erasePerGb},
};

// A duration that the table leaves out stays as it is.
template <typename Durations, size_t count>
void ReadDurations(TableReader& reader, const Field<Durations> (&fields)[count], Durations& durations) {
    for (const Field<Durations>& field : fields) {
        const toml::node* node = reader.Node(field.name);
        if (node == nullptr) continue;
        const auto seconds = node->is_number() ? node->value<double>() : std::nullopt;
        if (seconds.has_value() && *seconds >= 0 && *seconds <= kLongest) {
            durations.*(field.member) = Seconds(*seconds);
        } else {
            reader.AddProblem(field.name, node, "must be a number of seconds from 0 to 10000000");
        }
    }
}

void ReadMedium(TableReader& reader, DurationProfile& profile) {
    DriveDurations durations = profile.drive;
    ReadDurations(reader, kFieldsOfDrive, durations);
    reader.Require("types");
    for (const std::string& name : reader.Texts("types", kLongestName)) {
        const MediaType* type = FindMediaType(name);
        if (type == nullptr) {
            reader.AddProblem("types", reader.Node("types"), "\"" + name + "\" is not a media type");
        } else if (!profile.media.emplace(type->code, durations).second) {
            reader.AddProblem("types", reader.Node("types"), "\"" + name + "\" has durations already");
        }
    }
}

void ReadProfile(TableReader& reader, DurationProfile& profile) {
    reader.RequireFormat(kFormat);
    reader.Text("name", kLongestName, profile.name);
    reader.Require("move");
    ReadDurations(reader, kFieldsOfJukebox, profile);
    ReadDurations(reader, kFieldsOfDrive, profile.drive);
    reader.Tables("medium", [&](TableReader& medium) { ReadMedium(medium, profile); });
    reader.RejectUnknownFields();
}

}  // namespace

const DriveDurations& DurationProfile::Of(uint32_t type) const {
    const auto found = media.find(type);
    return found == media.end() ? drive : found->second;
}

ProfileResult ReadDurationProfile(std::string_view text) {
    ProfileResult result;
    ReadToml(text, result.problems, [&](TableReader& reader) { ReadProfile(reader, result.profile); });
    return result;
}

const DurationProfile& DefaultProfile(int64_t slots) {
    static const DurationProfile small = ReadDurationProfile(SmallProfileText()).profile;
    static const DurationProfile large = ReadDurationProfile(LargeProfileText()).profile;
    return slots <= kMostSlotsOfSmallJukebox ? small : large;
}

}  // namespace embedded
