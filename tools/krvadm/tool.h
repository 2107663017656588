#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/common/streams.h"

namespace embedded::tools {

// Runs krvadm with these words, which begin with the command. Returns the exit status: 0 = done, 1 = failed,
// 2 = the command line is invalid.
int RunAdministration(const std::vector<std::string>& words, const Streams& streams);

enum class OutputForm { Table, Json };

struct DiscoverOptions {
    std::string portal;       // HOST[:PORT]; empty: the devices of this machine
    std::string credentials;  // a file; empty: none
    bool loadsDiscs = false;  // where nothing else tells which drive is which
    OutputForm form = OutputForm::Table;
    std::filesystem::path sysfs = "/sys";
};
void Discover(const DiscoverOptions& options, const Streams& streams);

class CommandLine;

// Defines all commands of krvadm, in the order of the help.
void AddAdministration(CommandLine& line);

// Each defines the command of the file with the same name.
void AddDiscover(CommandLine& line);
void AddAttach(CommandLine& line);  // attach and detach
void AddStatus(CommandLine& line);
void AddInventory(CommandLine& line);
void AddCheck(CommandLine& line);
void AddLibrary(CommandLine& line);
void AddLimits(CommandLine& line);
void AddServe(CommandLine& line);
void AddServers(CommandLine& line);

}  // namespace embedded::tools
