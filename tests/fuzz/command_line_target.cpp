#include <algorithm>

#include "krvcmd/frontend/parsing/parser.h"
#include "tests/fuzz/bytes_reader.h"
#include "tests/reliability/support/program_run.h"
#include "tests/reliability/support/random_world.h"
#include "tests/reliability/support/run_checks.h"

namespace krvcmd::fuzz {
namespace {

std::vector<std::string> WordsOf(std::string_view lines) {
    std::vector<std::string> words;
    while (!lines.empty()) {
        const size_t end = std::min(lines.find('\n'), lines.size());
        // A word of a command line ends at its first NUL.
        words.emplace_back(lines.substr(0, end).substr(0, lines.substr(0, end).find('\0')));
        lines.remove_prefix(std::min(end + 1, lines.size()));
    }
    return words;
}

bool CanBeParsed(const std::vector<std::string>& words) {
    std::vector<const char*> arguments;
    arguments.reserve(words.size());
    for (const std::string& word : words)
        arguments.push_back(word.c_str());
    ParameterList line;
    return ParseCommandLine(arguments, line).IsOk() && line.command != nullptr;
}

}  // namespace

}  // namespace krvcmd::fuzz

// One run of the program. The first byte chooses a random farm with random nonsense in its answers, the rest
// are the words of the command line, one per line.
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace krvcmd;
    // A table as wide as the largest number needs memory and time, and tells nothing.
    constexpr size_t kLongest = 2000;
    if (size < 1 || size > kLongest) return 0;
    const std::vector<std::string> words = fuzz::WordsOf(fuzz::TextOf(data + 1, size - 1));

    static reliability::ProgramRunner program;
    krvfake::FakeLibrary& library = krvfake::FakeLibrary::Instance();
    library.Reset();
    reliability::ScriptRandomWorld(library, data[0]);
    // A range may be long; the operator ends what would take too long.
    reliability::InterruptAfterChecks(400);
    const reliability::ProgramRun run = program.Run(words);
    reliability::CancelInterrupt();

    const std::string broken = reliability::BrokenRule(run);
    fuzz::Require(broken.empty(), broken);
    if (fuzz::CanBeParsed(words)) return 0;
    fuzz::Require(run.calls.empty(), "no call for a command line that is none");
    fuzz::Require(run.exitStatus == 22, "a command line that is none is error 22");
    return 0;
}
