#include <algorithm>
#include <string>
#include <vector>

#include "embedded/farms/servers.h"
#include "embedded/model/refusal.h"
#include "embedded/platform/platform.h"
#include "embedded/remote/client/connection.h"
#include "embedded/remote/servers/server_list.h"
#include "tools/common/command_line.h"
#include "tools/common/plain_text.h"
#include "tools/krvadm/tool.h"

namespace embedded::tools {
namespace {

struct ListOptions {
    bool offline = false;
};

struct AddOptions {
    std::string name;
    std::string place;
};

struct RemoveOptions {
    std::string name;
};

// A refusal is a failure of the tool like any other.
template <typename Work>
auto Explained(const Work& work) {
    try {
        return work();
    } catch (const Refusal& refusal) {
        throw ToolFailure(refusal.GetText());
    }
}

std::vector<std::string> LocalServers() {
    std::vector<std::string> servers = ListServers();
    if (std::ranges::find(servers, ".") == servers.end()) servers.insert(servers.begin(), ".");
    return servers;
}

bool IsLocal(const std::string& name) {
    const std::vector<std::string> servers = LocalServers();
    return IsDemonstrationServer(name) || std::ranges::find(servers, name) != servers.end();
}

// What is known without asking the other side.
std::vector<std::string> OfflineRowOf(const remote::KnownServer& server) {
    return {server.name, IsLocal(server.name) ? "hidden" : "ssh", server.placeText, "-", "-"};
}

// The release on the other side and whether it answers.
std::vector<std::string> RowOf(const remote::KnownServer& server) {
    std::vector<std::string> row = OfflineRowOf(server);
    try {
        remote::Connection connection(server);
        const remote::Hello greeting = connection.GetGreeting();
        row[3] = greeting.release;
        row[4] = "answers";
    } catch (const Refusal& refusal) {
        row[4] = refusal.GetText();
    }
    return row;
}

void ListAll(const ListOptions& options, const Streams& streams) {
    Explained([&] {
        TextTable table({"Server", "Kind", "Place", "Release", "State"});
        const std::string folder = "this machine";
        for (const std::string& server : LocalServers())
            table.Add({server, "local", folder, "-", "-"});
        for (const remote::KnownServer& server : remote::ListKnownServers())
            table.Add(options.offline ? OfflineRowOf(server) : RowOf(server));
        table.Write(streams.out);
    });
}

void AddServer(const AddOptions& options, const Streams& streams) {
    Explained([&] {
        if (!remote::IsServerName(options.name))
            throw UsageFailure("the name of a server has 1 to 64 bytes, none of them a control character");
        if (!remote::ParsePlace(options.place).has_value())
            throw UsageFailure("the place of a server is ssh://[USER@]HOST[:PORT][/SERVER]");
        if (IsLocal(options.name)) throw ToolFailure("server \"" + options.name + "\" is on this machine");
        for (const remote::KnownServer& known : remote::ListKnownServers()) {
            if (known.name == options.name)
                throw ToolFailure("server \"" + options.name + "\" is known already: " + known.placeText);
        }
        remote::AddKnownServer(options.name, options.place);
        streams.out << "Server \"" << options.name << "\" is at " << options.place << ".\n";
    });
}

void RemoveServer(const RemoveOptions& options, const Streams& streams) {
    Explained([&] {
        if (!remote::RemoveKnownServer(options.name))
            throw ToolFailure("your list of servers does not name \"" + options.name + "\"");
        streams.out << "Server \"" << options.name << "\" is not known any more.\n";
    });
}

}  // namespace

void AddServers(CommandLine& line) {
    const auto [servers, list] =
        line.Add(line.GetTool(), "servers", "List the servers, here and on other machines.", ListAll);
    servers.add_flag("--offline", list.offline, "do not ask the other machines");
    servers.require_subcommand(0, 1);
    const auto [add, addition] =
        line.Add(servers, "add", "Make a server on another machine known.", AddServer);
    add.add_option("NAME", addition.name, "the name that krvcmd knows it by")->required();
    add.add_option("PLACE", addition.place, "ssh://[USER@]HOST[:PORT][/SERVER]")->required();
    const auto [remove, removal] = line.Add(servers, "remove", "Forget a server.", RemoveServer);
    remove.add_option("NAME", removal.name, "the name that krvcmd knows it by")->required();
}

}  // namespace embedded::tools
