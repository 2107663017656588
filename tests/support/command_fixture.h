#pragma once

#include <string>

#include "krvcmd/console/query/query_table.h"
#include "tests/support/service_fixture.h"

namespace krvcmd::test {

// What a command line did, from its parsing to the end of the command.
struct Outcome {
    std::string status;
    std::string output;  // standard output
    Calls calls;
};

// A test that runs command lines against the scripted client library. It prints no result line: that is the
// driver's work.
class CommandTest : public ServiceTest {
  protected:
    // Parses the words and runs the command that they name.
    Outcome Run(const Words& words);

    // As Run, with the banner already shown. The calls must begin with opening the session and end with
    // closing it; both are left out.
    Outcome Work(const Words& words);

    // The status of Work, then its calls, one a line: "OK" and "KrvMediaImport J=8 M=0 S=0", for example.
    Calls StatusAndCalls(const Words& words);

    // The console writer of the run.
    Ostrel::UI::Console::COutputObject& Writer() { return m_writer; }

  private:
    Ostrel::UI::Console::CKrvQueryTable m_writer;
};

}  // namespace krvcmd::test
