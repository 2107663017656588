#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "embedded/journal/journal.h"
#include "embedded/model/farm.h"
#include "embedded/store/database.h"
#include "tools/expectations/facts.h"
#include "tools/farm_diff/plan.h"
#include "tools/rehearsal/recorded_output.h"

namespace embedded::tools {

// A folder for one rehearsal: the farms, the simulated library and what stands in for programs. It is
// removed with this object.
class PrivateCopy {
  public:
    // Makes the folder without a farm. `library` is the simulated client library.
    PrivateCopy(std::string server, const std::filesystem::path& library);
    PrivateCopy(const PrivateCopy&) = delete;
    PrivateCopy& operator=(const PrivateCopy&) = delete;
    ~PrivateCopy();

    // Where the farm belongs; something else puts it there.
    std::filesystem::path GetFarm() const;
    std::filesystem::path GetFarmFolder() const { return m_folder / "farms"; }
    std::filesystem::path GetProgramFolder() const { return m_folder / "programs"; }
    std::filesystem::path GetLibrary() const { return m_library; }
    std::filesystem::path GetOutput() const { return m_folder / "output"; }

    // Other servers whose farms the command made use of: they have no copy.
    std::vector<std::string> FindOtherServers() const;

  private:
    std::string m_server;
    std::filesystem::path m_folder;
    std::filesystem::path m_library;
};

// The calls since the journal was switched on.
CallCounts CountCalls(Database& database);

// An empty journal that is switched on.
void StartJournal(Database& database);

enum class Isolation { ClosedOff, EnvironmentOnly };

struct RunOutcome {
    int status = 0;
    Plan plan;
    CallCounts calls;
    std::vector<std::string> otherServers;
    std::vector<std::string> otherLibraries;  // that krvcmd would have used; it was not run then
    std::chrono::milliseconds duration{0};
};

// What is run.
struct RehearsedCommand {
    std::vector<std::string> words;
    Isolation isolation = Isolation::ClosedOff;
    std::filesystem::path output;      // gets both outputs; empty = the streams of this process
    RecordedOutput* record = nullptr;  // also gets what goes to these streams; the caller's
};

struct Rehearsal {
    RunOutcome outcome;
    Farm after;
};

// Runs the command on the farm that is in the copy, which is `before`.
Rehearsal Rehearse(const PrivateCopy& copy, const RehearsedCommand& command, const Farm& before);

// What a call of the first run was, for a run in which it fails.
struct CallOfRun {
    std::string function;
    int64_t nth = 0;   // of this function, one-based
    std::string item;  // in words; may be empty
};
// The calls in their order; those of `function`, or all where it is empty.
std::vector<CallOfRun> ListCalls(Database& database, const std::string& function,
                                 const std::function<std::string(const StoredJournalEntry&)>& itemText);

}  // namespace embedded::tools
