// krvsim init: a server gets a farm.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

#include "embedded/farms/demonstration.h"
#include "embedded/farms/farm_writer.h"
#include "embedded/layout/contradictions.h"
#include "embedded/layout/layout_reader.h"
#include "tools/common/command.h"
#include "tools/common/counted.h"
#include "tools/krvsim/commands.h"
#include "tools/krvsim/new_farm.h"

namespace embedded::tools {
namespace {

std::string ReadText(const std::string& file) {
    std::stringstream text;
    if (file == "-") {
        text << std::cin.rdbuf();
        return text.str();
    }
    std::error_code failure;
    if (std::filesystem::is_directory(file, failure)) throw ToolFailure(file + ": is a folder");
    std::ifstream stream(file, std::ios::binary);
    if (!stream.is_open()) throw ToolFailure(file + ": cannot be read");
    text << stream.rdbuf();
    if (stream.bad()) throw ToolFailure(file + ": cannot be read");
    return text.str();
}

Farm ReadFarmOf(const InitOptions& options) {
    if (options.start == Start::Empty) return {};
    const bool isDemonstration = options.start == Start::Demonstration;
    const std::string text = isDemonstration ? std::string(DemonstrationLayout()) : ReadText(options.layout);
    LayoutResult layout = ReadLayout(text);
    // Contradictions of what could not be read whole would be made-up ones.
    if (std::ranges::all_of(layout.problems, &Problem::isOfCount)) {
        std::ranges::move(FindContradictions(layout.farm), std::back_inserter(layout.problems));
    }
    if (layout.problems.empty()) return std::move(layout.farm);
    std::string message;
    for (const Problem& problem : layout.problems) {
        if (!message.empty()) message += '\n';
        message += ProblemText(options.layout == "-" ? "standard input" : options.layout, problem);
    }
    throw ToolFailure(message);
}

}  // namespace

void Init(const InitOptions& options, const Streams& streams) {
    const Farm farm = ReadFarmOf(options);
    MakeFarm(options.server, options.force ? Existing::Replace : Existing::Keep,
             [&](Database& database) { WriteFarm(database, options.server, farm); });
    streams.out << "Server \"" << options.server << "\" has a farm of "
                << CountedJukeboxes(farm.jukeboxes.size()) << " and " << CountedVolumes(farm.volumes.size())
                << ".\n";
}

}  // namespace embedded::tools
