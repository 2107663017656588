#include "krvcmd/frontend/driver/driver.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>

#include "krvcmd/commands/base/command.h"
#include "krvcmd/commands/factory/command_factory.h"
#include "krvcmd/console/query/query_table.h"
#include "krvcmd/frontend/base/memory_guard.h"
#include "krvcmd/frontend/parsing/parser.h"
#include "krvcmd/frontend/platform/process.h"
#include "krvcmd/frontend/report/result_line.h"

namespace krvcmd {
namespace {

using Ostrel::UI::Console::CKrvQueryTable;
using Ostrel::UI::Console::COutputObject;

Status ParseAndExecute(std::span<const char* const> arguments, COutputObject& writer) {
    ParameterList line;
    if (Status status = ParseCommandLine(arguments, line); !status.IsOk()) return status;
    if (!ArgumentsAreIntact()) return Status::SystemError(os_code::kInvalidCommandLine);
    return ExecuteCommandLine(line, writer);
}

// The result line when there is no memory left to build one.
void ReportOutOfMemory() {
    const int code = static_cast<int>(os_code::kOutOfMemory);
    (void)std::fflush(stdout);
    (void)std::fprintf(stderr, "OS error %d: %s\n", code, std::strerror(code));
}

}  // namespace

Status ExecuteCommandLine(const ParameterList& line, COutputObject& writer) {
    if (line.command == nullptr) return Status::SystemError(os_code::kInvalidCommandLine);
    std::unique_ptr<CCommand> command;
    Status status = CreateCommand(line.command, command);
    if (status.IsOk()) status = command->Initialize(line.options, line.parameters, writer);
    if (status.IsOk()) status = command->Execute();
    return status;
}

int RunProgram(std::span<const char* const> arguments) {
    if (!HasMemoryFor(kMemoryForExceptions)) {
        ReportOutOfMemory();
        return ExitStatus(os_code::kOutOfMemory);
    }
    // The one writer of the run: a table without columns, as wide as the console.
    std::optional<CKrvQueryTable> writer;
    const Status status = GuardMemory([&] {
        GetProgramNames() = {"krvcmd", "Carvoline"};
        return ParseAndExecute(arguments, writer.emplace());
    });
    bool reported = false;
    const Status result = GuardMemory([&] {
        if (!writer) writer.emplace();
        Status final = ReportResult(GetBannerFlags(), status, *writer);
        reported = true;
        return final;
    });
    if (!reported) ReportOutOfMemory();
    return ExitStatus(result.Code());
}

}  // namespace krvcmd
