#include "tools/common/command_line.h"

#include <algorithm>
#include <new>

#include "tools/common/usage_error.h"

namespace embedded::tools {
namespace {

constexpr int kFailed = 1;
constexpr int kUsage = 2;
constexpr int kIncomplete = 3;

}  // namespace

CommandLine::CommandLine(const std::string& tool, const std::string& description)
    : m_tool(description, tool) {
    m_tool.require_subcommand(1);
    m_tool.set_version_flag("--version", tool + " " + KRVCMD_VERSION, "print the version and exit");
    m_tool.footer(tool + " COMMAND --help describes a command.");
}

CLI::App& CommandLine::AddGroup(CLI::App& parent, const std::string& name, const std::string& description) {
    CLI::App* const group = parent.add_subcommand(name, description);
    group->require_subcommand(1);
    return *group;
}

int CommandLine::Run(const std::vector<std::string>& words, const Streams& streams) {
    try {
        // The parser takes the words from the end.
        m_tool.parse(std::vector<std::string>(words.rbegin(), words.rend()));
        const int status = m_work(streams);
        streams.out.flush();
        return streams.out.good() ? status : Fail(kFailed, "cannot write the output", streams);
    } catch (const CLI::Error& error) {
        return Explain(error, streams);
    } catch (const UsageFailure& failure) {
        return Fail(kUsage, failure.what(), streams);
    } catch (const ToolFailure& failure) {
        return Fail(failure.GetStatus(), failure.what(), streams);
    } catch (const IncompleteResult& failure) {
        streams.out.flush();
        return Fail(streams.out.good() ? kIncomplete : kFailed, failure.what(), streams);
    } catch (const std::bad_alloc&) {
        return Fail(kFailed, "not enough memory", streams);
    } catch (const std::exception& failure) {
        return Fail(kFailed, failure.what(), streams);
    }
}

// A request for help is an error to the parser, too.
int CommandLine::Explain(const CLI::Error& error, const Streams& streams) const {
    if (error.get_exit_code() == 0) return m_tool.exit(error, streams.out, streams.err);
    Fail(kUsage, UsageErrorText(m_tool, error), streams);
    streams.err << "Run with --help for more information.\n";
    return kUsage;
}

// Every line of the message begins with the tool's name.
int CommandLine::Fail(int status, const std::string& message, const Streams& streams) const {
    for (size_t start = 0; start <= message.size();) {
        const size_t end = std::min(message.find('\n', start), message.size());
        streams.err << m_tool.get_name() << ": " << message.substr(start, end - start) << '\n';
        start = end + 1;
    }
    return status;
}

CLI::Validator OneOf(const std::vector<std::string>& values) {
    const auto problem = [values](const std::string& text) {
        if (std::ranges::find(values, text) != values.end()) return std::string();
        std::string known;
        for (const std::string& value : values)
            known += (known.empty() ? "" : &value == &values.back() ? " or " : ", ") + value;
        return '"' + text + "\" is not " + known;
    };
    return {problem, ""};
}

CLI::Option* AddServerOption(CLI::App& command, std::string& server) {
    return command.add_option("--server", server, "server; \".\" is the local one")->capture_default_str();
}

}  // namespace embedded::tools
