#include "tools/expectations/expectations.h"

#include "embedded/farms/farm_reader.h"
#include "embedded/farms/servers.h"
#include "embedded/store/statement.h"
#include "tools/common/command_line.h"
#include "tools/common/plain_text.h"
#include "tools/krvsim/tool.h"
#include "tools/rehearsal/private_copy.h"

namespace embedded::tools {
namespace {

struct ExpectOptions {
    std::string server = ".";
    std::string file;
};

void Expect(const ExpectOptions& options, const Streams& streams) {
    const std::vector<Expectation> expectations = ReadExpectationFile(options.file);
    const std::unique_ptr<Database> database = OpenServer(options.server);
    const Farm farm = ReadFarm(*database);
    Facts facts{farm, nullptr, std::nullopt, std::nullopt};
    const bool hasJournal =
        FindValue<int64_t>(*database, "SELECT journal_limit FROM server").value_or(0) != 0;
    if (hasJournal) facts.calls = CountCalls(*database);
    std::string failures;
    for (const ExpectationResult& result : CheckExpectations(expectations, facts)) {
        if (result.failure.has_value())
            failures += (failures.empty() ? "" : "\n") + FailureText(options.file, result);
    }
    if (!failures.empty()) throw ToolFailure(failures);
    streams.out << Counted(std::ssize(expectations), "expectation holds", "expectations hold") << ".\n";
}

}  // namespace

void AddExpect(CommandLine& line) {
    const auto [app, options] =
        line.Add(line.GetTool(), "expect", "Check whether a farm is as a file says.", Expect);
    AddServerOption(app, options.server);
    app.add_option("FILE", options.file, "file of expectations, one a line")->required();
}

}  // namespace embedded::tools
