#pragma once

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "embedded/model/farm.h"
#include "embedded/simulated/durations/simulated_time.h"
#include "tools/expectations/expectations.h"
#include "tools/farm_page/farm_page.h"
#include "tools/rehearsal/fault_sweep.h"
#include "tools/rehearsal/private_copy.h"

namespace embedded::tools {

// Everything that a rehearsal found.
struct RunReport {
    std::string server;
    std::vector<std::string> words;  // the command
    RunOutcome outcome;
    std::vector<ExpectationResult> expectations;
    std::vector<FaultRun> faultRuns;  // of --each-fault
    SimulatedTime time;
    std::optional<std::string> late;  // the warning that a deadline cannot be kept
    // Shown by the page alone:
    Farm before;
    Farm after;
    std::vector<PageCall> calls;
    std::string output;
};

// The words of the command with blanks between them, to be read.
std::string CommandText(const RunReport& report);

enum class ReportFormat { Json, JUnit, Html };

// By the ending of the file; nothing for another one.
std::optional<ReportFormat> ReportFormatOf(const std::filesystem::path& file);

void WriteReport(std::ostream& out, ReportFormat format, const RunReport& report);

}  // namespace embedded::tools
