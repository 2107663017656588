#pragma once

#include <CLI/CLI.hpp>
#include <any>
#include <charconv>
#include <deque>
#include <functional>
#include <string>
#include <system_error>
#include <vector>

#include "tools/common/streams.h"

namespace embedded::tools {

// A command of a tool: where its options are defined, and where their values go.
template <typename Options>
struct Command {
    CLI::App& app;
    Options& options;
};

// The commands of a tool, and the running of the one that is asked for.
class CommandLine {
  public:
    CommandLine(const std::string& tool, const std::string& description);
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;
    ~CommandLine() = default;

    // The tool itself, the parent of its commands.
    CLI::App& GetTool() { return m_tool; }

    // A command that only has commands of its own, such as "fault".
    static CLI::App& AddGroup(CLI::App& parent, const std::string& name, const std::string& description);

    // A command that `work` does, unless the words name a command of its own. Its options live as long as the
    // command line.
    template <typename Options>
    Command<Options> Add(CLI::App& parent, const std::string& name, const std::string& description,
                         void (*work)(const Options&, const Streams&)) {
        return AddWithStatus<Options>(parent, name, description,
                                      [work](const Options& options, const Streams& streams) {
                                          work(options, streams);
                                          return 0;
                                      });
    }

    // A command that returns the exit status itself where it does not throw.
    template <typename Options>
    Command<Options> AddWithStatus(CLI::App& parent, const std::string& name, const std::string& description,
                                   std::function<int(const Options&, const Streams&)> work) {
        auto& options = std::any_cast<Options&>(m_options.emplace_back(std::in_place_type<Options>));
        CLI::App* const app = parent.add_subcommand(name, description);
        app->callback([this, app, &options, work] {
            if (!app->get_subcommands().empty()) return;
            m_work = [&options, work](const Streams& streams) { return work(options, streams); };
        });
        return {*app, options};
    }

    // Runs the command that the words name, without the tool's own name, and returns the exit status: 0 =
    // done, 1 = failed, 2 = the command line is invalid, 3 = done, but the result lacks something. Whatever
    // the command throws becomes a message on `err`.
    int Run(const std::vector<std::string>& words, const Streams& streams);

  private:
    int Explain(const CLI::Error& error, const Streams& streams) const;
    int Fail(int status, const std::string& message, const Streams& streams) const;

    CLI::App m_tool;
    std::deque<std::any> m_options;
    std::function<int(const Streams&)> m_work;
};

// An option for the server whose farm is meant, "." unless it is given.
CLI::Option* AddServerOption(CLI::App& command, std::string& server);

// Accepts only these words.
CLI::Validator OneOf(const std::vector<std::string>& values);

// Accepts only whole numbers from `lowest` to `highest`.
template <typename Number>
CLI::Validator FromTo(Number lowest, Number highest) {
    return CLI::Validator(
        [lowest, highest](const std::string& text) {
            Number number{};
            const char* const end = text.data() + text.size();
            const auto [stop, error] = std::from_chars(text.data(), end, number);
            if (error == std::errc{} && stop == end && lowest <= number && number <= highest)
                return std::string();
            return '"' + text + "\" is not a number from " + std::to_string(lowest) + " to " +
                   std::to_string(highest);
        },
        "");
}

}  // namespace embedded::tools
