#include "tests/e2e/case_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "tests/e2e/shell_words.h"

namespace e2e {
namespace {

constexpr std::string_view kIndent = "    ";

constexpr std::string_view kBanner =
    "Carvoline - command line interface\n"
    "Copyright (c) Ostrel 2003-2026\n"
    "\n";

struct NamedText {
    std::string_view name;
    std::string_view text;
};

// What {name} stands for in expected outputs, besides the result lines below.
constexpr std::array<NamedText, 2> kNamedTexts = {{
    {"banner", kBanner},
    {"banner on 20 columns",
     "Carvoline - command\n"
     "line interface\n"
     "Copyright (c)\n"
     "Ostrel 2003-2026\n"
     "\n"},
}};

struct Result {
    std::string_view name;
    std::string_view standardError;
    int exitStatus;
};

// What `result:` stands for: the result line and its exit status.
constexpr std::string_view kQuiet = "quiet";
constexpr std::array<Result, 6> kResults = {{
    {"success", "Operation completed successfully.\n", 0},
    {kQuiet, "", 0},
    {"no such item", "Error: No such item present.\n", 2},
    {"interrupted", "OS error 4: Interrupted system call\n", 4},
    {"unresolved", "OS error 6: No such device or address\n", 6},
    {"invalid", "Error: Invalid command line parameter. Specify help to get further information.\n", 22},
}};

enum class Block : uint8_t { None, Farm, Script, StandardOutput, StandardError, Calls, CallsInSession };

struct NamedBlock {
    std::string_view name;
    Block block;
};

constexpr std::array<NamedBlock, 5> kBlocks = {{
    {"script", Block::Script},
    {"stdout", Block::StandardOutput},
    {"stderr", Block::StandardError},
    {"calls", Block::Calls},
    {"calls in session", Block::CallsInSession},
}};

struct NamedOutput {
    std::string_view name;
    OutputTo output;
};

constexpr std::array<NamedOutput, 4> kOutputs = {{
    {"full disk", OutputTo::FullDisk},
    {"limited file", OutputTo::LimitedFile},
    {"closed", OutputTo::Closed},
    {"no reader", OutputTo::NoReader},
}};

struct NamedSignal {
    std::string_view name;
    int number;
};

constexpr std::array<NamedSignal, 3> kSignals = {
    {{"interrupt", SIGINT}, {"terminate", SIGTERM}, {"hang up", SIGHUP}}};

template <typename Table>
const auto& Find(const Table& table, std::string_view name) {
    const auto found = std::ranges::find_if(table, [&](const auto& row) { return row.name == name; });
    if (found == table.end()) throw std::runtime_error("unknown: " + std::string(name));
    return *found;
}

int ParseInt(std::string_view text) {
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) {
        throw std::runtime_error("not a number: " + std::string(text));
    }
    return value;
}

void ReplaceAll(std::string& text, std::string_view what, std::string_view by) {
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
}

std::string_view TextNamed(std::string_view name) {
    const auto named = std::ranges::find(kNamedTexts, name, &NamedText::name);
    return named == kNamedTexts.end() ? Find(kResults, name).standardError : named->text;
}

// One line of expected output with its "\n". "$" marks the end of a line that ends in blanks or is empty;
// "$$" is a "$" at the line's end; "\t" at its beginning is a tab.
std::string OutputLine(std::string_view line) {
    if (line.starts_with('{') && line.ends_with('}')) {
        return std::string(TextNamed(line.substr(1, line.size() - 2)));
    }
    std::string output;
    if (line.starts_with("\\t")) {
        output += '\t';
        line.remove_prefix(2);
    }
    if (line.ends_with('$')) line.remove_suffix(1);
    return output.append(line).append("\n");
}

// The call lines that a line stands for: "S=0..2" in it stands for S=0, S=1 and S=2, "(twice)" behind it for
// two.
std::vector<std::string> CallLines(std::string_view line) {
    constexpr std::string_view kTwice = " (twice)";
    if (line.ends_with(kTwice)) return {2, std::string(line.substr(0, line.size() - kTwice.size()))};
    const size_t dots = line.find("..");
    const size_t equals = line.rfind('=', dots);
    if (dots == std::string_view::npos || line.find('"') < dots) return {std::string(line)};
    const size_t end = std::min(line.find(' ', dots), line.size());
    const int first = ParseInt(line.substr(equals + 1, dots - equals - 1));
    const int last = ParseInt(line.substr(dots + 2, end - dots - 2));
    if (first >= last) throw std::runtime_error("a range of calls must grow");
    std::vector<std::string> lines;
    for (int number = first; number <= last; ++number) {
        lines.push_back(std::string(line.substr(0, equals + 1)) + std::to_string(number) +
                        std::string(line.substr(end)));
    }
    return lines;
}

struct Line {
    int number;  // in the file, one-based
    std::string text;
};

// A table of values for placeholders: the first row names them, each further row gives one value for each.
using Table = std::vector<std::vector<std::string>>;

// Moves past the indented lines behind `at`, which are the table's rows.
Table ReadTable(const std::vector<Line>& lines, size_t& at) {
    Table table;
    while (at + 1 < lines.size() && lines[at + 1].text.starts_with(kIndent)) {
        table.push_back(SplitShellWords(lines[++at].text));
        if (table.back().size() != table.front().size())
            throw std::runtime_error("a row of the table has gaps");
    }
    if (table.size() < 2) throw std::runtime_error("the table has no rows");
    return table;
}

std::string Filled(std::string text, const std::vector<std::string>& names,
                   const std::vector<std::string>& values) {
    for (size_t column = 0; column < names.size(); ++column)
        ReplaceAll(text, "<" + names[column] + ">", values[column]);
    return text;
}

class CaseReader {
  public:
    explicit CaseReader(const GoldenTexts& goldenTexts) : m_goldenTexts(goldenTexts) {}

    std::vector<Case> Read(std::string_view text) {
        std::istringstream stream{std::string(text)};
        std::vector<Line> lines;
        int number = 0;
        for (std::string line; std::getline(stream, line);) {
            if (line.starts_with("case ")) ReadLines(std::exchange(lines, {}));
            lines.push_back({++number, line});
        }
        ReadLines(std::move(lines));
        return std::move(m_cases);
    }

  private:
    // The lines before the first case, or those of one case up to the next.
    void ReadLines(std::vector<Line> lines) {
        if (lines.empty()) return;
        m_line = lines.front().number;
        try {
            const Table table = TakeTables(lines);
            for (size_t row = 1; row < std::max<size_t>(table.size(), 2); ++row) {
                for (const Line& line : lines) {
                    m_line = line.number;
                    ReadLine(table.empty() ? line.text : Filled(line.text, table.front(), table[row]));
                }
                FinishCase();
            }
        } catch (const std::exception& error) {
            throw std::runtime_error("line " + std::to_string(m_line) + ": " + error.what());
        }
    }

    // Takes the tables out of the lines. Returns the one that multiplies the case, empty when there is none.
    Table TakeTables(std::vector<Line>& lines) {
        constexpr std::string_view kNamed = "each ";
        constexpr std::string_view kUse = "each: ";
        Table used;
        std::vector<Line> others;
        for (size_t at = 0; at < lines.size(); ++at) {
            const Line& line = lines[at];
            if (line.text == "each") {
                used = ReadTable(lines, at);
            } else if (line.text.starts_with(kUse)) {
                used = m_tables.at(line.text.substr(kUse.size()));
            } else if (line.text.starts_with(kNamed)) {
                m_tables[line.text.substr(kNamed.size())] = ReadTable(lines, at);
            } else {
                others.push_back(line);
            }
        }
        lines = std::move(others);
        return used;
    }

    void ReadLine(std::string_view line) {
        if (line.ends_with(' ')) throw std::runtime_error("the line ends in a blank; \"$\" shows its end");
        if (line.starts_with(kIndent)) {
            ReadBlockLine(line.substr(kIndent.size()));
            return;
        }
        m_block = Block::None;
        if (line.empty() || line.starts_with('#')) return;
        if (line.starts_with("case ")) {
            m_case = {};
            m_case.name = line.substr(5);
            m_case.line = m_line;
            m_hasCase = true;
            m_hasOutput = m_hasResult = m_namesFarm = false;
            m_server.reset();
        } else if (line.starts_with("farm ")) {
            m_block = Block::Farm;
            m_farm = &m_farms[std::string(line.substr(5))];
        } else {
            ReadSettingLine(line);
        }
    }

    void ReadBlockLine(std::string_view line) {
        switch (m_block) {
            case Block::Farm:
                m_farm->append(line).append("\n");
                return;
            case Block::Script:
                m_script.append(line).append("\n");
                return;
            case Block::StandardOutput:
                m_case.standardOutput += OutputLine(line);
                return;
            case Block::StandardError:
                m_case.standardError += OutputLine(line);
                return;
            case Block::CallsInSession:
                if (line.starts_with("KrvSession"))
                    throw std::runtime_error("the session's own calls are implied");
                [[fallthrough]];
            case Block::Calls:
                for (std::string& call : CallLines(line))
                    m_case.calls.push_back(std::move(call));
                return;
            case Block::None:
                throw std::runtime_error("an indented line outside a block");
        }
    }

    void ReadSettingLine(std::string_view line) {
        const size_t colon = line.find(':');
        const std::string_view key = line.substr(0, colon);
        std::string_view value = colon == std::string_view::npos ? "" : line.substr(colon + 1);
        if (value.starts_with(' ')) value.remove_prefix(1);
        if (!m_hasCase && key == "farm") {
            m_usualFarms = value;
            return;
        }
        if (!m_hasCase) throw std::runtime_error("no case stands above this line");
        if (colon == std::string_view::npos) {
            BeginBlock(key);
        } else if (!ReadStart(key, value) && !ReadExpectation(key, value)) {
            throw std::runtime_error("unknown setting: " + std::string(key));
        }
    }

    void BeginBlock(std::string_view name) {
        constexpr std::string_view kOnServer = "calls in session on ";
        if (name.starts_with(kOnServer)) {
            BeginSession(name.substr(kOnServer.size()));
            return;
        }
        m_block = Find(kBlocks, name).block;
        if (m_block == Block::StandardOutput) m_hasOutput = true;
        if (m_block == Block::Calls) m_case.comparesCalls = true;
        if (m_block == Block::CallsInSession) BeginSession(".");
    }

    void BeginSession(std::string_view server) {
        m_block = Block::CallsInSession;
        m_case.comparesCalls = true;
        m_server = server;
    }

    // How the program is started. False: the key is none of these.
    bool ReadStart(std::string_view key, std::string_view value) {
        if (key == "words") {
            m_case.commandLines.push_back({std::string(value), SplitShellWords(value)});
        } else if (key == "farm") {
            m_case.run.script = ScriptOf(value);
            m_namesFarm = true;
        } else if (key == "script") {
            m_script.append(value).append("\n");
        } else if (key == "columns") {
            m_case.run.columns = ParseInt(value);
        } else if (key == "locale") {
            m_case.run.locale = value;
        } else if (key == "merged" && value == "yes") {
            m_case.run.merged = true;
        } else if (key == "input" && value == "closed") {
            m_case.run.isInputClosed = true;
        } else if (key == "output") {
            m_case.run.output = Find(kOutputs, value).output;
            m_hasOutput = true;
        } else if (key == "interrupt") {
            AddSignal(Interruption::Interrupt, value);
        } else if (key == "terminate") {
            AddSignal(Interruption::Terminate, value);
        } else if (key == "hang up") {
            AddSignal(Interruption::HangUp, value);
        } else if (key == "not on windows") {
            m_case.notOnWindows = value;
        } else {
            return false;
        }
        return true;
    }

    // What must come of it. False: the key is none of these.
    bool ReadExpectation(std::string_view key, std::string_view value) {
        if (key == "stdout") {
            if (value != "nothing") m_case.standardOutput = OutputLine(value);
            m_hasOutput = true;
        } else if (key == "golden") {
            const auto golden = m_goldenTexts.find(value);
            if (golden == m_goldenTexts.end()) throw std::runtime_error("no such golden text");
            m_case.standardOutput = golden->second;
            m_hasOutput = true;
        } else if (key == "result") {
            ReadResult(value);
        } else if (key == "exit") {
            ExpectExit(ParseInt(value));
        } else if (key == "killed by") {
            ExpectExit(-1);
            m_case.killedBy = Find(kSignals, value).number;
        } else if (key == "calls" && value == "none") {
            m_case.comparesCalls = true;
        } else if (key == "calls in session" && value == "none") {
            BeginSession(".");
        } else {
            return false;
        }
        return true;
    }

    // A name of kResults or the result line of a service error, which has its code as the exit status. A code
    // of 256 or more does not fit an exit status, so the case has to tell it.
    void ReadResult(std::string_view value) {
        constexpr std::string_view kServiceError = "KRV error ";
        if (value.starts_with(kServiceError)) {
            m_case.standardError = std::string(value) + "\n";
            const std::string_view text = value.substr(kServiceError.size());
            const int code = ParseInt(text.substr(0, text.find(": ")));
            if (code < 256) ExpectExit(code);
            return;
        }
        const Result& result = Find(kResults, value);
        m_case.standardError = result.standardError;
        ExpectExit(result.exitStatus);
        if (value == kQuiet) m_hasOutput = true;
    }

    void ExpectExit(int status) {
        m_case.exitStatus = status;
        m_hasResult = true;
    }

    // "after 6 calls", or "after 6 calls and 1200 ms". A second signal is sent a moment later, when the
    // program has taken note of the first.
    void AddSignal(Interruption interruption, std::string_view value) {
        constexpr std::string_view kAfter = "after ";
        constexpr std::string_view kCalls = " calls";
        constexpr std::string_view kAnd = " calls and ";
        constexpr std::string_view kMilliseconds = " ms";
        const auto read = [&](size_t end) {
            return ParseInt(value.substr(kAfter.size(), end - kAfter.size()));
        };
        int pause = m_case.run.signals.empty() ? 0 : 100;
        size_t end = value.size() - std::min(value.size(), kCalls.size());
        if (const size_t more = value.find(kAnd);
            more != std::string_view::npos && value.ends_with(kMilliseconds)) {
            end = more;
            const size_t begin = more + kAnd.size();
            pause = ParseInt(value.substr(begin, value.size() - kMilliseconds.size() - begin));
        } else if (!value.ends_with(kCalls)) {
            end = 0;
        }
        if (!value.starts_with(kAfter) || end <= kAfter.size()) {
            throw std::runtime_error("a signal comes \"after N calls\" or \"after N calls and N ms\"");
        }
        m_case.run.signals.push_back({static_cast<size_t>(read(end)), interruption, pause});
    }

    // The scripts of "one farm + another farm", one after the other.
    std::string ScriptOf(std::string_view names) const {
        constexpr std::string_view kAnd = " + ";
        if (names.empty() || names == "none") return {};
        std::string script;
        while (true) {
            const size_t end = names.find(kAnd);
            const auto farm = m_farms.find(std::string(names.substr(0, end)));
            if (farm == m_farms.end()) throw std::runtime_error("there is no such farm above");
            script += farm->second;
            if (end == std::string_view::npos) return script;
            names.remove_prefix(end + kAnd.size());
        }
    }

    void FinishCase() {
        if (!std::exchange(m_hasCase, false)) return;
        if (m_case.commandLines.empty()) throw std::runtime_error("the case lacks words");
        if (!m_hasResult) throw std::runtime_error("the case lacks a result or an exit status");
        if (!m_namesFarm) m_case.run.script = ScriptOf(m_usualFarms);
        m_case.run.script += std::exchange(m_script, {});
        if (!m_hasOutput) m_case.standardOutput = kBanner;
        if (m_server) {
            m_case.calls.insert(m_case.calls.begin(), "KrvSessionCreate server=\"" + *m_server + "\"");
            m_case.calls.emplace_back("KrvSessionClose");
        }
        m_cases.push_back(std::move(m_case));
    }

    const GoldenTexts& m_goldenTexts;
    std::map<std::string, std::string> m_farms;
    std::map<std::string, Table> m_tables;
    std::string m_usualFarms;  // of cases that name none
    std::vector<Case> m_cases;
    int m_line = 0;

    // The case being read.
    Case m_case;
    Block m_block = Block::None;
    std::string* m_farm = nullptr;
    std::string m_script;
    std::optional<std::string> m_server;  // of `calls in session`
    bool m_hasCase = false;
    bool m_hasOutput = false;
    bool m_hasResult = false;
    bool m_namesFarm = false;
};

}  // namespace

std::vector<Case> ReadCases(std::string_view text, const GoldenTexts& goldenTexts) {
    return CaseReader(goldenTexts).Read(text);
}

}  // namespace e2e
