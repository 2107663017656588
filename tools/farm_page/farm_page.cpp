#include "tools/farm_page/farm_page.h"

#include <nlohmann/json.hpp>
#include <streambuf>

#include "embedded/layout/json_writer.h"
#include "embedded/layout/text_encoding.h"
#include "tools/farm_page/page_text.h"

namespace embedded::tools {
namespace {

using Json = nlohmann::ordered_json;

// JSON within an HTML element: the characters of markup, which only occur in strings, become escapes of JSON.
class ScriptData : public std::streambuf {
  public:
    explicit ScriptData(std::streambuf& out) : m_out(out) {}

  protected:
    int_type overflow(int_type character) override {
        if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
        const std::string_view escape = EscapeOf(traits_type::to_char_type(character));
        if (escape.empty()) return m_out.sputc(traits_type::to_char_type(character));
        const auto length = static_cast<std::streamsize>(escape.size());
        return m_out.sputn(escape.data(), length) == length ? character : traits_type::eof();
    }

  private:
    static std::string_view EscapeOf(char character) {
        switch (character) {
            case '<':
                return "\\u003c";
            case '>':
                return "\\u003e";
            case '&':
                return "\\u0026";
            default:
                return {};
        }
    }

    std::streambuf& m_out;
};

// A string, or an object with the bytes where they are no UTF-8.
Json Text(std::string_view bytes) {
    if (IsText(bytes)) return bytes;
    return {{"hex", ToHex(bytes)}};
}

Json Texts(const std::vector<std::string>& texts) {
    Json list = Json::array();
    for (const std::string& text : texts)
        list.push_back(Text(text));
    return list;
}

Json ChangesOf(const PageChanges& changes) {
    return {{"heading", Text(changes.heading)}, {"lines", Texts(changes.lines)}};
}

Json CallOf(const PageCall& call) {
    return {{"start", call.start.count()},   {"duration", call.duration.count()},
            {"moving", call.moving.count()}, {"function", Text(call.function)},
            {"item", Text(call.item)},       {"argument", Text(call.argument)},
            {"succeeded", call.succeeded},   {"code", call.code},
            {"text", Text(call.text)},       {"change", Text(call.change)}};
}

// One element a line, or null for a list that is not given.
template <typename Element>
void WriteList(std::ostream& out, const char* name, const std::optional<std::vector<Element>>& list,
               Json (*write)(const Element&)) {
    out << ",\n\"" << name << "\": ";
    if (!list.has_value()) {
        out << "null";
        return;
    }
    out << '[';
    const char* separator = "\n";
    for (const Element& element : *list) {
        out << separator << write(element).dump();
        separator = ",\n";
    }
    out << ']';
}

void WriteData(std::ostream& out, const FarmPage& page) {
    out << "{\"before\": ";
    WriteJson(out, page.server, *page.farm);
    out << ", \"after\": ";
    if (page.after == nullptr) {
        out << "null";
    } else {
        WriteJson(out, page.server, *page.after);
    }
    out << ", \"remarks\": " << Texts(page.remarks).dump();
    WriteList(out, "plan", page.plan, ChangesOf);
    WriteList(out, "calls", page.calls, CallOf);
    out << ",\n\"output\": " << (page.output.has_value() ? Text(*page.output) : Json()).dump() << "}\n";
}

}  // namespace

void WriteFarmPage(std::ostream& out, const FarmPage& page) {
    const std::string_view text = PageText();
    const size_t mark = text.find(kDataMark);
    out << text.substr(0, mark);
    ScriptData buffer(*out.rdbuf());
    std::ostream data(&buffer);
    WriteData(data, page);
    if (!data.good()) out.setstate(std::ios::badbit);
    out << text.substr(mark + kDataMark.size());
}

}  // namespace embedded::tools
