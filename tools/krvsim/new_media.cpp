#include "tools/krvsim/new_media.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "embedded/model/farm_words.h"
#include "embedded/model/media_types.h"
#include "embedded/store/statement.h"
#include "krvcmd/service/sdk/krv_sdk.h"
#include "tools/common/streams.h"

namespace embedded::tools {
namespace {

constexpr Sql kEndOfStation = R"sql(
    SELECT max(slot) + 1 FROM medium WHERE place = ?1 AND jukebox = ?2 AND magazine = 0
)sql";
constexpr Sql kNextUnseenVolume = R"sql(
    SELECT min(id, 0) - 1 FROM (SELECT min(id) AS id FROM volume)
)sql";
constexpr Sql kAddVolume = R"sql(
    INSERT INTO volume (id, type, state, enabled, file_system, label, total, free, value1, value2)
    VALUES (?1, 0, 2, 1, ?2, ?3, ?4, 0, -1, 0)
)sql";
constexpr Sql kAddSide = R"sql(
    INSERT INTO side (medium, side, content, finalization, sequential, volume, part)
    VALUES (?1, ?2, ?3, ?4, ?5, nullif(?6, 0), 0)
)sql";
constexpr Sql kAddMedium = R"sql(
    INSERT INTO medium (type, sides, place, jukebox, magazine, slot) VALUES (?1, ?2, ?3, ?4, 0, ?5)
    RETURNING id
)sql";

// A volume that was never imported: its ID is below 0.
int32_t AddNewVolume(Database& database, const MediaType& type, const std::string& label) {
    const int32_t id = FindValue<int32_t>(database, kNextUnseenVolume).value_or(-1);
    Run(database, kAddVolume, id, FileSystemName(type.access), label, type.capacity);
    return id;
}

void AddSide(Database& database, int64_t medium, int number, const FarmSide& side) {
    Run(database, kAddSide, medium, number, side.content, side.finalization, side.sequential, side.volume);
}

// Several media are numbered, two sides lettered: "Sales 2 A".
std::string LabelOf(const NewMedia& media, int32_t number, int side) {
    std::string label = media.label;
    if (media.count > 1) label += " " + std::to_string(number);
    if (media.doubleSided) label += side == 0 ? " A" : " B";
    return label;
}

}  // namespace

NewMedia NewMediaOf(const std::string& text) {
    constexpr int32_t kMost = 100'000;
    NewMedia media;
    const char* end = text.data() + text.size();
    const auto number = std::from_chars(text.data(), end, media.count);
    const bool isNumber = number.ec == std::errc() && media.count >= 1 && media.count <= kMost;
    std::string rest(number.ptr, end);
    rest.erase(0, std::min(rest.find_first_not_of(' '), rest.size()));
    // The longest type counts: "DVD-R DL" is not a "DVD-R" with the label "DL".
    for (const MediaType& type : AllMediaTypes()) {
        const bool isType = rest == type.name || rest.starts_with(std::string(type.name) + " ");
        if (isType && type.name.size() > media.type.size()) media.type = type.name;
    }
    if (!isNumber || media.type.empty())
        throw UsageFailure("\"" + text +
                           "\" is not a number, a media type and a label, such as 3 DVD-RAM Incoming");
    media.label = rest.substr(media.type.size());
    media.label.erase(0, std::min(media.label.find_first_not_of(' '), media.label.size()));
    RequireShortLabels(media);
    return media;
}

int64_t NextNumber(Database& database, Place place, int32_t jukebox) {
    return FindValue<int64_t>(database, kEndOfStation, place, jukebox).value_or(0);
}

void RequireShortLabels(const NewMedia& media) {
    constexpr size_t kMaxLength = sizeof(VolumeRecord::label) - 1;
    const std::string last = LabelOf(media, media.count, 1);
    if (media.label.empty() || last.size() <= kMaxLength) return;
    throw UsageFailure("the label \"" + last + "\" is " + std::to_string(last.size()) +
                       " bytes long; the limit is " + std::to_string(kMaxLength));
}

void AddNewMedia(Database& database, const NewMedia& media, int32_t jukebox) {
    const MediaType* type = FindMediaType(media.type);
    if (type == nullptr) {
        std::string message = "unknown media type \"" + media.type + "\"; the types are:";
        for (const MediaType& known : AllMediaTypes())
            message.append("\n  ").append(known.name);
        throw ToolFailure(message);
    }
    const int sides = media.doubleSided ? 2 : 1;
    for (int32_t number = 1; number <= media.count; ++number) {
        const int64_t medium =
            FindValue<int64_t>(database, kAddMedium, type->code, sides, Place::ImportStation, jukebox,
                               NextNumber(database, Place::ImportStation, jukebox))
                .value_or(0);
        for (int side = 0; side < sides; ++side) {
            if (media.label.empty()) {
                AddSide(database, medium, side, UsualSide(type->code, Content::Blank, 0));
                continue;
            }
            const int32_t volume = AddNewVolume(database, *type, LabelOf(media, number, side));
            AddSide(database, medium, side, UsualSide(type->code, Content::FileSystem, volume));
        }
    }
}

}  // namespace embedded::tools
