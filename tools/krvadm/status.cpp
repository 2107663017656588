#include <algorithm>

#include "embedded/attached/base/device_text.h"
#include "embedded/catalogue/attachment.h"
#include "embedded/catalogue/items.h"
#include "embedded/store/statement.h"
#include "tools/common/plain_text.h"
#include "tools/krvadm/attached_server.h"
#include "tools/krvadm/common_options.h"
#include "tools/krvadm/limits.h"

namespace embedded::tools {
namespace {

struct StatusOptions {
    std::string server;
    std::string jukebox;
};

constexpr Sql kPlaces = R"sql(
    SELECT e.address, e.kind, e.magazine, e.number FROM element e WHERE e.jukebox = ?1
)sql";
constexpr Sql kDrives = R"sql(
    SELECT d.number, d.enabled, e.address, v.address
    FROM drive d
    CROSS JOIN element e ON e.jukebox = d.jukebox AND e.kind = 4 AND e.number = d.number
    CROSS JOIN drive_device v ON v.jukebox = d.jukebox AND v.number = d.number
    WHERE d.jukebox = ?1 ORDER BY d.number
)sql";
constexpr Sql kUnfinished = R"sql(
    SELECT source, destination, time FROM intent WHERE jukebox = ?1
)sql";
constexpr Sql kFailures = R"sql(
    SELECT time, text FROM journal WHERE succeeded = 0 AND code BETWEEN 1240 AND 1249 ORDER BY id DESC LIMIT 5
)sql";

std::string PlaceName(Database& database, int32_t jukebox, uint16_t address) {
    Statement row(database, kPlaces, jukebox);
    while (row.Next()) {
        const auto [found, kind, magazine, number] = row.Read<uint16_t, ElementKind, int32_t, int32_t>();
        if (found != address) continue;
        const std::string name = std::to_string(number + 1);
        switch (kind) {
            case ElementKind::Slot:
                return "slot " + name + " of magazine " + std::to_string(magazine + 1);
            case ElementKind::MailSlot:
                return "mail slot " + name;
            case ElementKind::Drive:
                return "drive " + name;
            case ElementKind::Picker:
                return "picker " + name;
        }
    }
    return "element " + std::to_string(address);
}

std::string ContentText(Database& database, int32_t jukebox, const ElementState& element) {
    if (!element.isFull) return "empty";
    std::string text = element.tag.empty() ? "a medium" : "medium " + attached::Printable(element.tag);
    if (element.source.has_value()) text += " from " + PlaceName(database, jukebox, *element.source);
    return text;
}

const ElementState* Find(const std::vector<ElementState>& elements, uint16_t address) {
    const auto found = std::ranges::find(elements, address, &ElementState::address);
    return found == elements.end() ? nullptr : &*found;
}

void ShowDrives(Database& database, int32_t jukebox, const std::vector<ElementState>& elements,
                std::ostream& out) {
    TextTable table({"  Drive", "State", "Holds", "Address"});
    Statement row(database, kDrives, jukebox);
    while (row.Next()) {
        const auto number = row.Read<int32_t>();
        const auto isEnabled = row.Read<bool>();
        const auto element = row.Read<uint16_t>();
        const auto address = row.Read<std::string>();
        const ElementState* state = Find(elements, element);
        table.Add({"  " + std::to_string(number + 1), isEnabled ? "enabled" : "disabled",
                   state == nullptr ? "not there" : ContentText(database, jukebox, *state),
                   address.empty() ? "not known" : address});
    }
    if (table.HasRows()) table.Write(out);
}

void ShowJukebox(AttachedServer& server, int32_t jukebox, std::ostream& out) {
    Database& database = server.GetDatabase();
    const std::vector<ElementState> elements = server.GetFarm().Open(jukebox).LookAtElements();
    int64_t slots = 0;
    int64_t full = 0;
    for (const ElementState& element : elements) {
        if (element.kind != ElementKind::Slot) continue;
        ++slots;
        full += element.isFull ? 1 : 0;
    }
    const Jukebox found = FindJukebox(database, jukebox);
    out << "Jukebox " << found.name << " (@" << jukebox << "), " << (found.isEnabled ? "enabled" : "disabled")
        << "\n  Slots       " << slots << ", " << full << " of them full\n"
        << "  Limits      " << LimitsText(ReadTimeLimits(database, jukebox)) << '\n';
    ShowDrives(database, jukebox, elements, out);
    for (const ElementState& element : elements) {
        if (element.kind == ElementKind::MailSlot ||
            (element.kind == ElementKind::Picker && element.isFull)) {
            out << "  " << PlaceName(database, jukebox, element.address) << ": "
                << ContentText(database, jukebox, element) << '\n';
        }
        if (!element.trouble.empty())
            out << "  " << PlaceName(database, jukebox, element.address) << ": " << element.trouble << '\n';
    }
    Statement row(database, kUnfinished, jukebox);
    if (!row.Next()) return;
    const auto [source, destination, time] = row.Read<uint16_t, uint16_t, int64_t>();
    const std::chrono::system_clock::time_point begin{std::chrono::microseconds(time)};
    out << "  A move from " << PlaceName(database, jukebox, source) << " to "
        << PlaceName(database, jukebox, destination) << " was begun at " << TimeText(begin)
        << " and has not ended.\n";
}

void ShowFailures(Database& database, std::ostream& out) {
    Statement row(database, kFailures);
    bool isFirst = true;
    while (row.Next()) {
        const auto [time, text] = row.Read<int64_t, std::string>();
        if (isFirst) out << "Last errors in the journal:\n";
        isFirst = false;
        out << "  " << TimeText(std::chrono::system_clock::time_point{std::chrono::microseconds(time)})
            << "  " << text << '\n';
    }
}

void Status(const StatusOptions& options, const Streams& streams) {
    AttachedServer server(options.server);
    std::string problems;
    for (const int32_t jukebox : server.FindJukeboxes(options.jukebox)) {
        try {
            ShowJukebox(server, jukebox, streams.out);
        } catch (const Refusal& refusal) {
            if (!problems.empty()) problems += '\n';
            problems += refusal.GetText();
        }
    }
    ShowFailures(server.GetDatabase(), streams.out);
    if (!problems.empty()) throw ToolFailure(problems);
}

}  // namespace

void AddStatus(CommandLine& line) {
    const auto [app, options] =
        line.Add(line.GetTool(), "status", "Show the drives and mail slots of real jukeboxes.", Status);
    app.add_option("--server", options.server, "server")->required();
    app.add_option("--jukebox,-J", options.jukebox, "only this jukebox, by name or as @ID");
}

}  // namespace embedded::tools
