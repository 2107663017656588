#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "tools/expectations/expectations.h"
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
};

enum class ReportFormat { Json, JUnit };

// By the ending of the file; nothing for another one.
std::optional<ReportFormat> ReportFormatOf(const std::filesystem::path& file);

void WriteReport(std::ostream& out, ReportFormat format, const RunReport& report);

}  // namespace embedded::tools
