#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>

#include "embedded/platform/platform.h"
#include "tools/common/streams.h"
#include "tools/rehearsal/closed_off.h"
#include "tools/rehearsal/spawn_mutex_posix.h"

namespace embedded::tools {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLibrary = "libkrvSdk64.so";
constexpr const char* kPrograms[] = {"krvcmd", "krvsim"};
// Where a program is found that does not ask the environment.
constexpr const char* kSystemPath = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin";
constexpr const char* kSystemLibraries =
    "/usr/local/lib:/usr/local/lib64:/usr/lib:/usr/lib64:/lib:/lib64:/usr/lib/x86_64-linux-gnu:"
    "/lib/x86_64-linux-gnu:/usr/lib/aarch64-linux-gnu:/lib/aarch64-linux-gnu";

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

// The parts between colons, without empty ones.
std::vector<fs::path> FoldersOf(const std::string& list) {
    std::vector<fs::path> folders;
    for (size_t start = 0; start <= list.size();) {
        const size_t end = std::min(list.find(':', start), list.size());
        if (end > start) folders.emplace_back(list.substr(start, end - start));
        start = end + 1;
    }
    return folders;
}

// The file that the path leads to; empty when there is none.
fs::path RealFile(const fs::path& path) {
    std::error_code failure;
    const fs::path real = fs::canonical(path, failure);
    return failure || !fs::is_regular_file(real, failure) ? fs::path() : real;
}

// The absolute paths in a text, as folders, as files in a folder, and as the place of a whole installation,
// which a script may keep in a variable.
void AddPathsIn(const std::string& text, std::set<fs::path>& folders) {
    constexpr const char* kEnds = " \t\r\n\"'`;:|&<>()=";
    for (size_t start = text.find('/'); start != std::string::npos; start = text.find('/', start)) {
        const size_t end = std::min(text.find_first_of(kEnds, start), text.size());
        const bool isStart = start == 0 || std::string(kEnds).find(text[start - 1]) != std::string::npos;
        if (isStart) {
            const fs::path path = text.substr(start, end - start);
            folders.insert(path);
            folders.insert(path.parent_path());
            folders.insert(path / "bin");
            folders.insert(path / "lib");
        }
        start = std::max(end, start + 1);
    }
}

std::string StartOf(const fs::path& file) {
    constexpr size_t kMost = 1U << 20U;
    std::ifstream stream(file, std::ios::binary);
    std::string text(kMost, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(kMost));
    text.resize(static_cast<size_t>(stream.gcount()));
    return text;
}

// The folders whose krvcmd or client library the command might use.
std::set<fs::path> FoldersToCover(const std::vector<std::string>& words) {
    std::set<fs::path> folders;
    const auto add = [&](const std::string& list) {
        for (const fs::path& folder : FoldersOf(list))
            folders.insert(folder);
    };
    add(Variable("PATH"));
    add(kSystemPath);
    add(Variable("LD_LIBRARY_PATH"));
    add(kSystemLibraries);
    folders.insert(OwnProgram().parent_path());
    folders.insert(FindClientLibrary().parent_path());
    for (const std::string& word : words) {
        AddPathsIn(word, folders);
        const fs::path file = RealFile(word);
        const std::string text = file.empty() ? std::string() : StartOf(file);
        // What a shell reads, not a program.
        if (text.find('\0') == std::string::npos) AddPathsIn(text, folders);
    }
    return folders;
}

std::string InShell(const std::string& text) {
    std::string quoted = "'";
    for (const char character : text)
        quoted += character == '\'' ? std::string("'\\''") : std::string(1, character);
    return quoted + "'";
}

// The lines of a stand-in that refuse a client library that is not the simulated one.
std::string LibraryCheck(const StandIns& standIns) {
    return "IFS=:\n"
           "for folder in $LD_LIBRARY_PATH; do\n"
           "  library=$folder/" +
           std::string(kLibrary) +
           "\n"
           "  [ -e \"$library\" ] || continue\n"
           "  [ \"$library\" -ef " +
           InShell(standIns.library.string()) +
           " ] && break\n"
           "  echo \"$library\" >>" +
           InShell(OtherLibrariesFile(standIns).string()) +
           "\n"
           "  exit 70\n"
           "done\n"
           "unset IFS\n";
}

// A program that runs `original` with the environment of the rehearsal, after the lines of `check`.
void WriteStandIn(const fs::path& file, const fs::path& original, const StandIns& standIns,
                  const std::string& check = {}) {
    constexpr mode_t kMode = 0755;
    const std::lock_guard<std::mutex> lock(SpawnMutex());
    std::ofstream script(file, std::ios::binary);
    script << "#!/bin/sh\n"
           << check << "unset LD_PRELOAD LD_AUDIT\n"
           << "LD_LIBRARY_PATH=" << InShell(standIns.library.parent_path().string()) << '\n'
           << "KRVSIM_HOME=" << InShell(standIns.farms.string()) << '\n'
           << "export LD_LIBRARY_PATH KRVSIM_HOME\n"
           << "exec " << InShell(original.string()) << " \"$@\"\n";
    script.close();
    if (!script || chmod(file.c_str(), kMode) != 0) throw ToolFailure(file.string() + ": cannot be written");
}

void MakeEmptyFile(const fs::path& file) {
    const std::ofstream stream(file, std::ios::binary);
    if (!stream) throw ToolFailure(file.string() + ": cannot be written");
}

// The folders in which the simulated library looks for farms without KRVSIM_HOME.
std::set<fs::path> DefaultFolders() {
    std::set<fs::path> folders;
    const auto add = [&](const fs::path& folder) {
        std::error_code failure;
        const fs::path real = fs::canonical(folder, failure);
        if (!failure && fs::is_directory(real, failure)) folders.insert(real);
    };
    add(Variable("KRVSIM_HOME"));
    if (const std::string state = Variable("XDG_STATE_HOME"); !state.empty()) add(fs::path(state) / "krvsim");
    add(fs::path(Variable("HOME")) / ".local" / "state" / "krvsim");
    add("/root/.local/state/krvsim");
    return folders;
}

bool IsBelow(const fs::path& file, const fs::path& folder) {
    const auto [end, rest] = std::ranges::mismatch(folder, file);
    return end == folder.end();
}

}  // namespace

std::vector<Overlay> FindOverlays(const StandIns& standIns, const std::vector<std::string>& words) {
    std::set<fs::path> programs;
    std::set<fs::path> libraries;
    for (const fs::path& folder : FoldersToCover(words)) {
        for (const char* name : kPrograms) {
            const fs::path program = RealFile(folder / name);
            if (program.empty()) continue;
            programs.insert(program);
            libraries.insert(RealFile(program.parent_path() / ".." / "lib" / kLibrary));
        }
        libraries.insert(RealFile(folder / kLibrary));
    }
    for (const std::string& word : words) {
        const fs::path file = RealFile(word);
        if (file.filename() == kPrograms[0] || file.filename() == kPrograms[1]) programs.insert(file);
    }
    std::vector<Overlay> overlays;
    const fs::path simulated = RealFile(standIns.library);
    for (const fs::path& library : libraries) {
        if (!library.empty() && library != simulated) overlays.push_back({simulated, library});
    }
    // The folder of the farms may hold the programs, but not the other way round.
    for (const fs::path& folder : DefaultFolders()) {
        if (!IsBelow(standIns.farms, folder)) overlays.push_back({standIns.farms, folder});
    }
    int number = 0;
    for (const fs::path& program : programs) {
        const std::string suffix = "-" + std::to_string(++number);
        const fs::path original = standIns.programs / (program.filename().string() + suffix);
        const fs::path standIn = standIns.programs / (program.filename().string() + suffix + ".sh");
        MakeEmptyFile(original);
        WriteStandIn(standIn, original, standIns);
        overlays.push_back({program, original});
        overlays.push_back({standIn, program});
    }
    return overlays;
}

std::map<std::string, std::string> EnvironmentFor(const StandIns& standIns) {
    std::string libraries = standIns.library.parent_path().string();
    if (const std::string more = Variable("LD_LIBRARY_PATH"); !more.empty()) libraries += ":" + more;
    return {{"KRVSIM_HOME", standIns.farms.string()}, {"LD_LIBRARY_PATH", libraries}};
}

void AddProgramsOnPath(const StandIns& standIns, std::map<std::string, std::string>& environment) {
    for (const char* name : kPrograms) {
        const fs::path original = RealFile(FindProgram(name));
        if (original.empty()) continue;
        WriteStandIn(standIns.programs / name, original, standIns, LibraryCheck(standIns));
    }
    environment["PATH"] = standIns.programs.string() + ":" + Variable("PATH");
}

fs::path OtherLibrariesFile(const StandIns& standIns) {
    return standIns.programs / "other-libraries";
}

std::string FindObstacle() {
    if (FindProgram("bwrap").empty()) return "bubblewrap (the program bwrap) is not installed";
    ProcessRequest probe;
    probe.words = {"bwrap", "--dev-bind", "/", "/", "true"};
    probe.output = "/dev/null";
    if (RunProcess(probe) != 0) return "this system does not let bubblewrap make namespaces";
    return {};
}

}  // namespace embedded::tools
