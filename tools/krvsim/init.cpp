#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "embedded/farms/farm_writer.h"
#include "embedded/farms/servers.h"
#include "embedded/layout/contradictions.h"
#include "embedded/layout/layout_reader.h"
#include "tools/common/command_line.h"
#include "tools/common/plain_text.h"
#include "tools/krvsim/new_farm.h"
#include "tools/krvsim/tool.h"

namespace embedded::tools {
namespace {

enum class Start { Demonstration, Empty, Layout };

struct InitOptions {
    std::string server = ".";
    Start start = Start::Demonstration;
    std::string layout;  // a file; "-" = standard input
    Existing existing = Existing::Keep;
};

constexpr uintmax_t kMaxLayoutSize = 1ULL << 30U;

[[noreturn]] void RefuseSize(const std::string& name) {
    throw ToolFailure(name + ": is larger than 1 GiB");
}

// The whole text, or one up to a NUL byte, with which no layout is valid. A stream may be endless.
std::string ReadText(std::istream& stream, const std::string& name) {
    constexpr size_t kBlock = 1U << 20U;
    std::string text;
    while (stream.good()) {
        const size_t before = text.size();
        if (before > kMaxLayoutSize) RefuseSize(name);
        text.resize(before + kBlock);
        stream.read(text.data() + before, kBlock);
        text.resize(before + static_cast<size_t>(stream.gcount()));
        if (text.find('\0', before) != std::string::npos) return text;
    }
    if (stream.bad()) throw ToolFailure(name + ": cannot be read");
    return text;
}

std::string ReadText(const std::string& file) {
    if (file == "-") return ReadText(std::cin, "standard input");
    std::error_code failure;
    if (std::filesystem::is_directory(file, failure)) throw ToolFailure(file + ": is a directory");
    std::ifstream stream(file, std::ios::binary);
    if (!stream.is_open()) throw ToolFailure(file + ": cannot be read");
    const uintmax_t size = std::filesystem::file_size(file, failure);
    if (!failure && size > kMaxLayoutSize) RefuseSize(file);
    return ReadText(stream, file);
}

Farm ReadFarmOf(const InitOptions& options) {
    if (options.start == Start::Empty) return {};
    const bool isDemonstration = options.start == Start::Demonstration;
    LayoutResult layout =
        ReadLayout(isDemonstration ? std::string(DemonstrationLayout()) : ReadText(options.layout));
    // A farm that is not complete has contradictions that the file does not have.
    if (std::ranges::all_of(layout.problems, &Problem::isCountMismatch)) {
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

// The service does not know a volume before its medium is imported; until then its ID is negative.
std::string VolumesText(const Farm& farm) {
    const auto waiting =
        std::ranges::count_if(farm.volumes, [](const FarmVolume& volume) { return volume.id < 0; });
    const std::string known = Counted(std::ssize(farm.volumes) - waiting, "volume", "volumes");
    return waiting == 0 ? known
                        : known + "; " + Counted(waiting, "volume waits", "volumes wait") + " for import";
}

void Init(const InitOptions& options, const Streams& streams) {
    const Farm farm = ReadFarmOf(options);
    MakeFarm(options.server, options.existing,
             [&](Database& database) { WriteFarm(database, options.server, farm); });
    streams.out << "Server \"" << options.server << "\" has a farm of "
                << Counted(std::ssize(farm.jukeboxes), "jukebox", "jukeboxes") << " and " << VolumesText(farm)
                << ".\n";
}

}  // namespace

void AddInit(CommandLine& line) {
    const auto [app, options] = line.Add(line.GetTool(), "init", "Create the farm of a server.", Init);
    AddServerOption(app, options.server);
    const auto start = [&chosen = options](Start value) {
        return [&chosen, value] { chosen.start = value; };
    };
    CLI::Option* layout = app.add_option("--layout", options.layout,
                                         "create it from this layout file; \"-\" is standard input");
    layout->each([set = start(Start::Layout)](const std::string&) { set(); });
    CLI::Option* demo = app.add_flag_callback("--demo", start(Start::Demonstration),
                                              "create the demonstration farm (the default)");
    CLI::Option* empty =
        app.add_flag_callback("--empty", start(Start::Empty), "create a farm without jukeboxes");
    layout->excludes(demo, empty);
    demo->excludes(empty);
    AddForceOption(app, options.existing);
}

}  // namespace embedded::tools
