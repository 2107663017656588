#include "tests/e2e/case_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <map>
#include <sstream>
#include <stdexcept>

#include "tests/e2e/known_texts.h"

namespace e2e {
namespace {

constexpr std::string_view kIndent = "    ";

struct NamedText {
    std::string_view name;
    std::string_view text;
};

// What {name} stands for in expected outputs.
constexpr std::array<NamedText, 7> kNamedTexts = {{
    {"{banner}", kBanner},
    {"{banner on 20 columns}", kBannerOn20Columns},
    {"{success}", kSuccess},
    {"{no such item}", kNoSuchItem},
    {"{invalid}", kInvalid},
    {"{unresolved}", kUnresolved},
    {"{interrupted}", kInterrupted},
}};

struct Result {
    std::string_view name;
    std::string_view standardError;
    int exitStatus;
};

// What `result:` stands for: the result line and the exit status that belongs to it.
constexpr std::array<Result, 6> kResults = {{
    {"success", kSuccess, 0},
    {"quiet", "", 0},
    {"no such item", kNoSuchItem, 2},
    {"interrupted", kInterrupted, 4},
    {"unresolved", kUnresolved, 6},
    {"invalid", kInvalid, 22},
}};

enum class Block : uint8_t { None, Farm, Script, StandardOutput, StandardError, Calls };

struct NamedBlock {
    std::string_view name;
    Block block;
};

constexpr std::array<NamedBlock, 4> kBlocks = {{
    {"script", Block::Script},
    {"stdout", Block::StandardOutput},
    {"stderr", Block::StandardError},
    {"calls", Block::Calls},
}};

struct NamedOutput {
    std::string_view name;
    OutputTo output;
};

constexpr std::array<NamedOutput, 3> kOutputs = {{
    {"full disk", OutputTo::FullDisk},
    {"closed", OutputTo::Closed},
    {"no reader", OutputTo::NoReader},
}};

struct NamedSignal {
    std::string_view name;
    int number;
};

constexpr std::array<NamedSignal, 2> kSignals = {{{"interrupt", SIGINT}, {"terminate", SIGTERM}}};

template <typename Table>
const auto& Find(const Table& table, std::string_view name) {
    const auto* const found =
        std::find_if(table.begin(), table.end(), [&](const auto& row) { return row.name == name; });
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

// One line of expected output with its "\n". "$" marks the end of a line that ends in blanks or is
// empty; "$$" is a "$" that the line really ends in; "\t" at its beginning is a tab.
std::string OutputLine(std::string_view line) {
    if (line.starts_with('{') && line.ends_with('}')) return std::string(Find(kNamedTexts, line).text);
    std::string output;
    if (line.starts_with("\\t")) {
        output += '\t';
        line.remove_prefix(2);
    }
    if (line.ends_with('$')) line.remove_suffix(1);
    return output.append(line).append("\n");
}

class CaseReader {
  public:
    std::vector<Case> Read(std::string_view text) {
        std::istringstream lines{std::string(text)};
        for (std::string line; std::getline(lines, line);) {
            ++m_line;
            try {
                ReadLine(line);
            } catch (const std::exception& error) {
                throw std::runtime_error("line " + std::to_string(m_line) + ": " + error.what());
            }
        }
        FinishCase();
        return std::move(m_cases);
    }

  private:
    void ReadLine(std::string_view line) {
        if (line.ends_with(' ')) throw std::runtime_error("the line ends in a blank; \"$\" shows its end");
        if (line.starts_with(kIndent)) {
            ReadBlockLine(line.substr(kIndent.size()));
            return;
        }
        m_block = Block::None;
        if (line.empty() || line.starts_with('#')) return;
        if (line.starts_with("case ")) {
            FinishCase();
            m_case = {};
            m_hasCase = true;
            m_hasOutput = m_hasResult = false;
            m_case.name = line.substr(5);
            m_case.line = m_line;
        } else if (line.starts_with("farm ")) {
            m_block = Block::Farm;
            m_farm = &m_farms[std::string(line.substr(5))];
        } else {
            ReadCaseLine(line);
        }
    }

    void ReadBlockLine(std::string_view line) {
        switch (m_block) {
            case Block::Farm:
                m_farm->append(line).append("\n");
                return;
            case Block::Script:
                m_case.run.script.append(line).append("\n");
                return;
            case Block::StandardOutput:
                m_case.standardOutput += OutputLine(line);
                return;
            case Block::StandardError:
                m_case.standardError += OutputLine(line);
                return;
            case Block::Calls:
                m_case.calls.emplace_back(line);
                return;
            case Block::None:
                throw std::runtime_error("an indented line outside a block");
        }
    }

    void ReadCaseLine(std::string_view line) {
        if (!m_hasCase) throw std::runtime_error("no case stands above this line");
        const size_t colon = line.find(':');
        const std::string_view key = line.substr(0, colon);
        if (colon == std::string_view::npos) {
            BeginBlock(key);
            return;
        }
        std::string_view value = line.substr(colon + 1);
        if (value.starts_with(' ')) value.remove_prefix(1);
        ReadSetting(key, value);
    }

    void BeginBlock(std::string_view key) {
        m_block = Find(kBlocks, key).block;
        if (m_block == Block::StandardOutput) m_hasOutput = true;
        if (m_block == Block::Calls) m_case.comparesCalls = true;
    }

    void ReadSetting(std::string_view key, std::string_view value) {
        if (ReadStart(key, value) || ReadExpectation(key, value)) return;
        throw std::runtime_error("unknown setting: " + std::string(key));
    }

    // How the program is started. False: the key is none of these.
    bool ReadStart(std::string_view key, std::string_view value) {
        if (key == "words") {
            m_case.commandLines.emplace_back(value);
        } else if (key == "farm") {
            UseFarms(value);
        } else if (key == "columns") {
            m_case.run.columns = ParseInt(value);
        } else if (key == "locale") {
            m_case.run.locale = value;
        } else if (key == "merged" && value == "yes") {
            m_case.run.merged = true;
        } else if (key == "output") {
            m_case.run.output = Find(kOutputs, value).output;
            m_hasOutput = true;
        } else if (key == "interrupt") {
            AddSignal(Interruption::Interrupt, value);
        } else if (key == "terminate") {
            AddSignal(Interruption::Terminate, value);
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
        } else if (key == "result") {
            const Result& result = Find(kResults, value);
            m_case.standardError = result.standardError;
            ExpectExit(result.exitStatus);
        } else if (key == "exit") {
            ExpectExit(ParseInt(value));
        } else if (key == "killed by") {
            ExpectExit(-1);
            m_case.killedBy = Find(kSignals, value).number;
        } else if (key == "calls" && value == "none") {
            m_case.comparesCalls = true;
        } else {
            return false;
        }
        return true;
    }

    void ExpectExit(int status) {
        m_case.exitStatus = status;
        m_hasResult = true;
    }

    // "after 6 calls". A second signal waits until the first one has been taken notice of.
    void AddSignal(Interruption interruption, std::string_view value) {
        constexpr std::string_view kAfter = "after ";
        constexpr std::string_view kCalls = " calls";
        if (!value.starts_with(kAfter) || !value.ends_with(kCalls)) {
            throw std::runtime_error("a signal comes \"after N calls\"");
        }
        value.remove_prefix(kAfter.size());
        value.remove_suffix(kCalls.size());
        const int pause = m_case.run.signals.empty() ? 0 : 100;
        m_case.run.signals.push_back({static_cast<size_t>(ParseInt(value)), interruption, pause});
    }

    // "one farm + another farm": their scripts one after the other.
    void UseFarms(std::string_view names) {
        constexpr std::string_view kAnd = " + ";
        while (true) {
            const size_t end = names.find(kAnd);
            const auto farm = m_farms.find(std::string(names.substr(0, end)));
            if (farm == m_farms.end()) throw std::runtime_error("there is no such farm above");
            m_case.run.script += farm->second;
            if (end == std::string_view::npos) return;
            names.remove_prefix(end + kAnd.size());
        }
    }

    void FinishCase() {
        if (!m_hasCase) return;
        m_hasCase = false;
        const char* missing = nullptr;
        if (m_case.commandLines.empty()) missing = "words";
        if (!m_hasOutput) missing = "stdout";
        if (!m_hasResult) missing = "result or exit";
        if (missing != nullptr) {
            throw std::runtime_error("the case above, \"" + m_case.name + "\", lacks " + missing);
        }
        m_cases.push_back(std::move(m_case));
    }

    int m_line = 0;
    Block m_block = Block::None;
    std::map<std::string, std::string> m_farms;
    std::string* m_farm = nullptr;
    bool m_hasCase = false;
    bool m_hasOutput = false;
    bool m_hasResult = false;
    Case m_case;
    std::vector<Case> m_cases;
};

}  // namespace

std::vector<Case> ReadCases(std::string_view text) {
    return CaseReader().Read(text);
}

}  // namespace e2e
