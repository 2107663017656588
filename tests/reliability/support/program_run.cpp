#include "tests/reliability/support/program_run.h"

#include "krvcmd/console/writer/output_object.h"
#include "krvcmd/frontend/driver/driver.h"
#include "krvcmd/frontend/report/result_line.h"
#include "krvcmd/service/access/session.h"
#include "tests/fake_library/fake_library.h"

namespace krvcmd::reliability {

void BeginAsFreshProcess() {
    GetBannerFlags() = {};
    GetSession() = 0;
    GetProgramNames() = {};
}

ProgramRun ProgramRunner::Run(const std::vector<std::string>& words) {
    return Run(words, RunProgram);
}

ProgramRun ProgramRunner::Run(const std::vector<std::string>& words, const Main& main) {
    std::vector<const char*> arguments;
    arguments.reserve(words.size());
    for (const std::string& word : words)
        arguments.push_back(word.c_str());

    krvfake::FakeLibrary& library = krvfake::FakeLibrary::Instance();
    library.ForgetCalls();
    BeginAsFreshProcess();
    ProgramRun run;
    m_output.Begin();
    m_errorOutput.Begin();
    run.exitStatus = main(arguments);
    run.output = m_output.End();
    run.errorOutput = m_errorOutput.End();
    run.calls = library.Calls();
    return run;
}

}  // namespace krvcmd::reliability
