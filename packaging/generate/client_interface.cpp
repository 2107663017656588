#include "packaging/generate/client_interface.h"

#include <algorithm>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace krvcmd {
namespace {

using Record = ClientInterface::Record;
using Field = ClientInterface::Field;
using Function = ClientInterface::Function;

std::string Trimmed(const std::string& text) {
    const size_t begin = text.find_first_not_of(' ');
    if (begin == std::string::npos) return {};
    return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

// Reads line by line and joins what spans several lines by blanks.
class Reader {
  public:
    explicit Reader(const std::string& header) : m_lines(header) {}

    ClientInterface Read() {
        std::string line;
        while (ReadLine(line))
            ReadFrom(line);
        for (const Record& record : m_found.records)
            CheckRecord(record);
        return std::move(m_found);
    }

  private:
    bool ReadLine(std::string& line) {
        if (!std::getline(m_lines, line)) return false;
        line = Trimmed(line);
        return true;
    }

    // The declaration that starts at the line, up to its semicolon.
    std::string ReadDeclaration(std::string line) {
        std::string next;
        while (line.find(';') == std::string::npos && ReadLine(next))
            line += " " + next;
        return line;
    }

    // The comment that starts at the line, without its marks.
    std::string ReadComment(std::string line) {
        std::string comment = line;
        while (line.find("*/") == std::string::npos && ReadLine(line)) {
            const bool isDecorated = line.starts_with("* ");
            comment += " " + (isDecorated ? line.substr(2) : line);
        }
        const size_t begin = comment.find_first_not_of("/*<");
        return Trimmed(comment.substr(begin, comment.find("*/") - begin));
    }

    void ReadFrom(const std::string& line) {
        std::smatch match;
        if (line.starts_with("/**")) {
            m_text = ReadComment(line);
        } else if (std::regex_match(line, match, std::regex(R"(/\* -+ (.*?) -+ \*/)"))) {
            m_section = match[1];
        } else if (std::regex_match(line, match, std::regex(R"(typedef struct (\w+) \{)"))) {
            m_found.records.push_back({match[1], 0, TakeText(match[1]), {}});
            ReadFields(m_found.records.back());
        } else if (line.starts_with("KRV_API ")) {
            ReadFunction(ReadDeclaration(line));
        } else if (line.starts_with("static_assert(")) {
            ReadAssertion(line);
        } else if (line.starts_with("typedef ") || line.starts_with("#")) {
            m_text.clear();
        }
    }

    void ReadFields(Record& record) {
        std::string line;
        while (ReadLine(line) && !line.starts_with("}")) {
            if (line.starts_with("/**")) {
                m_text = ReadComment(line);
                continue;
            }
            const size_t end = line.find(';');
            if (end == std::string::npos) continue;
            const size_t comment = line.find("/**<");
            if (comment != std::string::npos) m_text = ReadComment(line.substr(comment));
            const std::string declaration = line.substr(0, end);
            record.fields.push_back({declaration, kUnknown, TakeText(record.name + "." + declaration)});
        }
    }

    void ReadFunction(const std::string& declaration) {
        const std::string prototype = declaration.substr(std::string("KRV_API ").size());
        std::smatch match;
        if (!std::regex_search(prototype, match, std::regex(R"((\w+)\()"))) {
            throw std::runtime_error("no function: " + declaration);
        }
        m_found.functions.push_back({m_section, match[1], prototype, TakeText(match[1])});
    }

    void ReadAssertion(const std::string& line) {
        std::smatch match;
        if (std::regex_search(line, match, std::regex(R"(sizeof\((\w+)\) == (\d+))"))) {
            RecordOf(match[1]).size = static_cast<unsigned>(std::stoul(match[2]));
        } else if (std::regex_search(line, match, std::regex(R"(offsetof\((\w+), (\w+)\) == (\d+))"))) {
            const std::regex field("(^|.*[ *])" + match[2].str() + R"((\[\d+\])?)");
            for (Field& candidate : RecordOf(match[1]).fields) {
                if (!std::regex_match(candidate.declaration, field)) continue;
                candidate.offset = static_cast<unsigned>(std::stoul(match[3]));
            }
        }
    }

    Record& RecordOf(const std::string& name) {
        const auto record = std::ranges::find(m_found.records, name, &Record::name);
        if (record == m_found.records.end()) throw std::runtime_error("no record: " + name);
        return *record;
    }

    std::string TakeText(const std::string& owner) {
        if (m_text.empty()) throw std::runtime_error("not described: " + owner);
        std::string text;
        text.swap(m_text);
        return text;
    }

    static void CheckRecord(const Record& record) {
        if (record.size == 0) throw std::runtime_error("size not asserted: " + record.name);
        for (const Field& field : record.fields) {
            if (field.offset != kUnknown) continue;
            throw std::runtime_error("offset not asserted: " + record.name + "." + field.declaration);
        }
    }

    static constexpr unsigned kUnknown = ~0U;

    std::istringstream m_lines;
    std::string m_text;  // the description of the declaration that follows
    std::string m_section;
    ClientInterface m_found;
};

}  // namespace

ClientInterface ReadClientInterface(const std::string& header) {
    return Reader(header).Read();
}

}  // namespace krvcmd
