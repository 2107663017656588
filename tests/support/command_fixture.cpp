#include "tests/support/command_fixture.h"

#include "krvcmd/frontend/driver/driver.h"
#include "krvcmd/frontend/parsing/parser.h"

namespace krvcmd::test {
namespace {

Status ParseAndExecute(const Words& words, Ostrel::UI::Console::COutputObject& writer) {
    ParameterList line;
    if (Status status = ParseCommandLine(words, line); !status.IsOk()) return status;
    return ExecuteCommandLine(line, writer);
}

}  // namespace

Outcome CommandTest::Run(const Words& words) {
    Outcome outcome;
    testing::internal::CaptureStdout();
    outcome.status = Text(ParseAndExecute(words, Writer()));
    outcome.output = testing::internal::GetCapturedStdout();
    outcome.calls = TakeCalls();
    return outcome;
}

Outcome CommandTest::Work(const Words& words) {
    GetBannerFlags() = {false, true};
    Outcome outcome = Run(words);
    Calls& calls = outcome.calls;
    if (calls.size() < 2 || !calls.front().starts_with("KrvSessionCreate") ||
        calls.back() != "KrvSessionClose") {
        ADD_FAILURE() << "no session around the calls: " << testing::PrintToString(calls);
        return outcome;
    }
    calls.pop_back();
    calls.erase(calls.begin());
    return outcome;
}

Calls CommandTest::StatusAndCalls(const Words& words) {
    Outcome outcome = Work(words);
    outcome.calls.insert(outcome.calls.begin(), outcome.status);
    return outcome.calls;
}

}  // namespace krvcmd::test
