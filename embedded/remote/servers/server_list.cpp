#include "embedded/remote/servers/server_list.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "embedded/layout/table_reader.h"
#include "embedded/model/refusal.h"
#include "embedded/platform/platform.h"
#include "embedded/remote/servers/server_files.h"

namespace embedded::remote {
namespace {

constexpr size_t kLongestName = 64;
constexpr size_t kLongestPlace = 512;
constexpr uintmax_t kLargestFile = 1U << 20U;

[[noreturn]] void RefuseFile(const std::filesystem::path& file, const std::string& reason) {
    throw Refuse(Code::InvalidServerList, {PathText(file), reason});
}

// Empty when there is no such file.
std::string ReadFile(const std::filesystem::path& file) {
    std::error_code failure;
    if (file.empty() || !std::filesystem::exists(file, failure)) return {};
    if (std::filesystem::file_size(file, failure) > kLargestFile) RefuseFile(file, "it is too large");
    std::ifstream in(file, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    if (!in) {
        // An empty file sets the same state.
        if (std::filesystem::file_size(file, failure) == 0 && !failure) return {};
        RefuseFile(file, "it cannot be read");
    }
    return text.str();
}

struct Entry {
    KnownServer server;
    // Of the text, from 1: its first line and the one behind its last.
    size_t firstLine = 0;
    size_t endLine = 0;
};

KnownServer ReadServer(TableReader& reader) {
    KnownServer server;
    reader.Require("name");
    reader.Require("place");
    reader.Text("name", kLongestName, server.name);
    reader.Text("place", kLongestPlace, server.placeText);
    const std::optional<Place> place = ParsePlace(server.placeText);
    if (place.has_value()) {
        server.place = *place;
    } else if (!server.placeText.empty()) {
        reader.AddProblem("place", reader.Node("place"), "is not ssh://[USER@]HOST[:PORT][/SERVER]");
    }
    reader.RejectUnknownFields();
    return server;
}

Entry ReadEntry(const std::filesystem::path& file, TableReader& reader) {
    Entry entry;
    entry.server = ReadServer(reader);
    entry.server.file = file;
    entry.firstLine = static_cast<size_t>(reader.GetLine());
    for (const char* field : {"name", "place"}) {
        if (const toml::node* node = reader.Node(field))
            entry.endLine = std::max<size_t>(entry.endLine, node->source().end.line + 1);
    }
    return entry;
}

std::vector<Entry> ReadEntries(const std::filesystem::path& file, const std::string& text) {
    std::vector<Entry> entries;
    std::vector<Problem> problems;
    ReadToml(text, problems, [&](TableReader& reader) {
        reader.Tables("server", [&](TableReader& server) { entries.push_back(ReadEntry(file, server)); });
        reader.RejectUnknownFields();
    });
    if (!problems.empty()) RefuseFile(file, ProblemText("servers.toml", problems.front()));
    return entries;
}

std::vector<Entry> ReadEntries(const std::filesystem::path& file) {
    return ReadEntries(file, ReadFile(file));
}

std::filesystem::path UserFile() {
    std::filesystem::path file = FindServerFiles().ofUser;
    if (file.empty()) RefuseFile("servers.toml", "the environment names no folder for it");
    return file;
}

// The old file or the new one is there, whatever happens.
void ReplaceFile(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::path draft = file;
    draft += ".new-" + std::to_string(ProcessId());
    if (const std::error_code failure = CreatePrivateFile(draft)) RefuseFile(file, failure.message());
    std::ofstream out(draft, std::ios::binary | std::ios::trunc);
    out << text;
    out.close();
    std::error_code failure;
    if (out) std::filesystem::rename(draft, file, failure);
    if (out && !failure) return;
    const std::string reason = failure ? failure.message() : "it cannot be written";
    std::filesystem::remove(draft, failure);
    RefuseFile(file, reason);
}

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted + '"';
}

}  // namespace

std::optional<KnownServer> FindKnownServer(std::string_view name) {
    const ServerFiles files = FindServerFiles();
    for (const std::filesystem::path& file : {files.ofUser, files.ofSystem}) {
        for (Entry& entry : ReadEntries(file)) {
            if (entry.server.name == name) return std::move(entry.server);
        }
    }
    return std::nullopt;
}

std::vector<KnownServer> ListKnownServers() {
    std::vector<KnownServer> servers;
    const ServerFiles files = FindServerFiles();
    for (const std::filesystem::path& file : {files.ofUser, files.ofSystem}) {
        for (Entry& entry : ReadEntries(file)) {
            if (std::ranges::find(servers, entry.server.name, &KnownServer::name) == servers.end())
                servers.push_back(std::move(entry.server));
        }
    }
    return servers;
}

bool IsServerName(std::string_view name) {
    constexpr char kDelete = '\x7F';
    const bool isPlain = std::ranges::none_of(
        name, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == kDelete; });
    return !name.empty() && name.size() <= kLongestName && isPlain;
}

void AddKnownServer(const std::string& name, const std::string& placeText) {
    const std::filesystem::path file = UserFile();
    std::string text = ReadFile(file);
    (void)ReadEntries(file, text);  // an invalid file is not made longer
    if (!text.empty() && !text.ends_with('\n')) text += '\n';
    if (!text.empty()) text += '\n';
    text += "[[server]]\nname = " + Quoted(name) + "\nplace = " + Quoted(placeText) + "\n";
    (void)ReadEntries(file, text);  // the name may not be UTF-8
    if (const std::error_code failure = CreatePrivateFolder(file.parent_path()))
        RefuseFile(file, failure.message());
    ReplaceFile(file, text);
}

bool RemoveKnownServer(std::string_view name) {
    const std::filesystem::path file = UserFile();
    const std::string text = ReadFile(file);
    const std::vector<Entry> entries = ReadEntries(file, text);
    const auto found =
        std::ranges::find_if(entries, [name](const Entry& entry) { return entry.server.name == name; });
    if (found == entries.end()) return false;
    std::string rest;
    std::istringstream lines(text);
    std::string line;
    for (size_t number = 1; std::getline(lines, line); ++number) {
        const bool isOfServer = number >= found->firstLine && number < found->endLine;
        // The blank line behind it goes with it.
        const bool isBlankBehind = number == found->endLine && line.empty();
        if (!isOfServer && !isBlankBehind) rest += line + '\n';
    }
    ReplaceFile(file, rest);
    return true;
}

}  // namespace embedded::remote
