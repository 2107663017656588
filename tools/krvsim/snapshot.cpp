#include "embedded/farms/snapshots.h"

#include <filesystem>

#include "embedded/farms/servers.h"
#include "embedded/platform/platform.h"
#include "tools/common/command_line.h"
#include "tools/common/plain_text.h"
#include "tools/krvsim/tool.h"

namespace embedded::tools {
namespace {

struct SnapshotOptions {
    std::string server = ".";
    std::string name;
    bool force = false;
};

struct RemoveOptions {
    std::string server = ".";
    std::string name;
    bool farm = false;
};

struct ListOptions {
    std::string server = ".";
};

std::string NamesText(const std::string& server, const std::string& name) {
    return "snapshot \"" + name + "\" of server \"" + server + "\"";
}

// The file of a snapshot that exists.
std::filesystem::path Find(const std::string& server, const std::string& name) {
    std::filesystem::path file = SnapshotPath(server, name);
    std::error_code ignored;
    if (!std::filesystem::exists(file, ignored)) throw ToolFailure("there is no " + NamesText(server, name));
    return file;
}

void Remove(const std::filesystem::path& file) {
    std::error_code failure;
    std::filesystem::remove(file, failure);
    if (failure) throw ToolFailure(PathText(file) + ": " + failure.message());
}

void Take(const SnapshotOptions& options, const Streams& streams) {
    const std::filesystem::path file = SnapshotPath(options.server, options.name);
    const std::unique_ptr<Database> database = OpenSimulatedServer(options.server);
    std::filesystem::path copy = file;
    // The old snapshot stays until the new one is complete.
    if (options.force) copy += ".next";
    if (options.force) Remove(copy);
    if (!CopyFarm(*database, copy)) {
        throw ToolFailure("there is a " + NamesText(options.server, options.name) +
                          " already (--force replaces it)");
    }
    if (options.force) {
        std::error_code failure;
        std::filesystem::rename(copy, file, failure);
        if (failure) throw ToolFailure(PathText(file) + ": " + failure.message());
    }
    streams.out << "Made " << NamesText(options.server, options.name) << ".\n";
}

void Restore(const SnapshotOptions& options, const Streams& streams) {
    const std::filesystem::path file = Find(options.server, options.name);
    const std::filesystem::path aside = RestoreFarm(options.server, file);
    streams.out << "Restored " << NamesText(options.server, options.name) << ".\n";
    if (!aside.empty()) streams.err << "The file that could not be used is now " << PathText(aside) << ".\n";
}

void RemoveEither(const RemoveOptions& options, const Streams& streams) {
    if (options.farm == !options.name.empty())
        throw UsageFailure("name a snapshot, or use --farm to remove the farm itself");
    if (options.farm) {
        RemoveFarm(options.server);
        streams.out << "Removed the farm of server \"" << options.server << "\".\n";
        return;
    }
    Remove(Find(options.server, options.name));
    streams.out << "Removed " << NamesText(options.server, options.name) << ".\n";
}

void List(const ListOptions& options, const Streams& streams) {
    TextTable table({"Snapshot", "Size", "Made"});
    for (const std::string& name : ListSnapshots(options.server)) {
        const std::filesystem::path file = SnapshotPath(options.server, name);
        std::error_code failure;
        const auto size = std::filesystem::file_size(file, failure);
        const auto time = std::filesystem::last_write_time(file, failure);
        if (!failure) table.Add({name, SizeText(size), TimeText(time)});
    }
    if (table.HasRows()) {
        table.Write(streams.out);
    } else {
        streams.out << "Server \"" << options.server << "\" has no snapshots.\n";
    }
}

}  // namespace

void AddSnapshot(CommandLine& line) {
    const auto [take, takeOptions] =
        line.Add(line.GetTool(), "snapshot", "Keep the farm of a server as it is now.", Take);
    AddServerOption(take, takeOptions.server);
    take.add_option("NAME", takeOptions.name, "name of the snapshot")->required();
    take.add_flag("--force", takeOptions.force, "replace an existing snapshot");
    const auto [list, listOptions] =
        line.Add(line.GetTool(), "snapshots", "List the snapshots of a server.", List);
    AddServerOption(list, listOptions.server);
    const auto [restore, restoreOptions] =
        line.Add(line.GetTool(), "restore", "Make the farm of a server what it was in a snapshot.", Restore);
    AddServerOption(restore, restoreOptions.server);
    restore.add_option("NAME", restoreOptions.name, "name of the snapshot")->required();
    const auto [remove, removeOptions] = line.Add(
        line.GetTool(), "remove", "Remove a snapshot, or with --farm the farm of a server.", RemoveEither);
    AddServerOption(remove, removeOptions.server);
    remove.add_option("NAME", removeOptions.name, "name of the snapshot");
    remove.add_flag("--farm", removeOptions.farm, "remove the farm itself; its snapshots stay");
}

}  // namespace embedded::tools
