#include "embedded/store/statement.h"
#include "tools/common/plain_text.h"
#include "tools/krvadm/attached_server.h"
#include "tools/krvadm/common_options.h"

namespace embedded::tools {
namespace {

struct CheckOptions {
    std::string server;
};

std::string ElementText(uint16_t address) {
    return "element " + std::to_string(address);
}

// Where the catalogue and a jukebox contradict each other, one sentence a line.
std::vector<std::string> Contradictions(const KnownJukebox& known, const Reconciliation& found) {
    std::vector<std::string> lines;
    if (known.intent.has_value()) {
        lines.push_back("a move from " + ElementText(known.intent->source) + " to " +
                        ElementText(known.intent->destination) + " has not ended");
    }
    for (const uint16_t address : found.appeared)
        lines.push_back(ElementText(address) + " is there again");
    for (const uint16_t address : found.disappeared)
        lines.push_back(ElementText(address) + " is not there any more");
    for (const int64_t medium : found.removed)
        lines.push_back("medium " + std::to_string(medium) + " is in no element any more");
    for (const Placement& placement : found.placed) {
        const std::string medium = placement.medium == 0
                                       ? "a medium that the catalogue has elsewhere or does not know"
                                       : "medium " + std::to_string(placement.medium);
        lines.push_back(medium + " is in " + ElementText(placement.element));
    }
    for (const Tagging& tagging : found.tagged)
        lines.push_back("the barcode of medium " + std::to_string(tagging.medium) +
                        " is not in the catalogue");
    for (const LoadedMedium& medium : found.loaded)
        lines.push_back("a medium was left in " + ElementText(medium.element));
    return lines;
}

void Check(const CheckOptions& options, const Streams& streams) {
    AttachedServer server(options.server);
    Database& database = server.GetDatabase();
    std::string problems;
    for (const int32_t jukebox : AttachedJukeboxes(database)) {
        const auto elements = server.GetFarm().Open(jukebox).LookAtElements();
        const KnownJukebox known = ReadKnownJukebox(database, jukebox);
        for (const std::string& text : Contradictions(known, Reconcile(known, elements, Robot::AtRest))) {
            problems.append(problems.empty() ? "" : "\n");
            problems += "jukebox " + std::to_string(jukebox) + ": " + text;
        }
    }
    if (!problems.empty()) throw ToolFailure(problems);
    streams.out << "The catalogue of server \"" << options.server << "\" agrees with its jukeboxes.\n";
}

}  // namespace

void AddCheck(CommandLine& line) {
    const auto [app, options] =
        line.Add(line.GetTool(), "check", "Compare the catalogue with what the jukeboxes hold.", Check);
    app.add_option("--server", options.server, "server")->required();
}

}  // namespace embedded::tools
