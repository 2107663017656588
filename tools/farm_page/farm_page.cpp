#include "tools/farm_page/farm_page.h"

#include <nlohmann/json.hpp>
#include <streambuf>

#include "embedded/layout/json_writer.h"
#include "embedded/layout/text_encoding.h"
#include "tools/farm_diff/plan_text.h"
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

const char* EffectWord(ChangeEffect effect) {
    switch (effect) {
        case ChangeEffect::Adds:
            return "adds";
        case ChangeEffect::Removes:
            return "removes";
        case ChangeEffect::Alters:
            break;
    }
    return "alters";
}

// The lines of a plan in groups: a jukebox, or a magazine of it.
Json GroupOf(const Plan& plan, const JukeboxChanges& jukebox, const MagazineChanges& magazine) {
    Json lines = Json::array();
    for (const Change& change : magazine.changes) {
        const ChangeWord& word = WordOfChange(change.kind);
        lines.push_back({{"effect", EffectWord(word.effect)},
                         {"word", word.word},
                         {"text", Text(ChangeText(change, plan, {jukebox.jukebox, magazine.magazine}))}});
    }
    return {{"jukebox", jukebox.jukebox},
            {"name", Text(jukebox.name)},
            {"magazine", magazine.magazine},
            {"lines", std::move(lines)}};
}

Json PlanOf(const Plan& plan) {
    Json groups = Json::array();
    for (const JukeboxChanges& jukebox : plan.jukeboxes) {
        for (const MagazineChanges& magazine : jukebox.magazines)
            groups.push_back(GroupOf(plan, jukebox, magazine));
    }
    return {{"count", CountText(plan)}, {"groups", std::move(groups)}};
}

Json CallOf(const PageCall& call) {
    return {{"start", call.start.count()},   {"duration", call.duration.count()},
            {"moving", call.moving.count()}, {"function", Text(call.function)},
            {"item", Text(call.item)},       {"argument", Text(call.argument)},
            {"succeeded", call.succeeded},   {"code", call.code},
            {"text", Text(call.text)},       {"change", Text(call.change)}};
}

// One call a line, or null.
void WriteCalls(std::ostream& out, const std::optional<std::vector<PageCall>>& calls) {
    if (!calls.has_value()) {
        out << "null";
        return;
    }
    out << '[';
    const char* separator = "\n";
    for (const PageCall& call : *calls) {
        out << separator << CallOf(call).dump();
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
    out << ",\n\"plan\": " << (page.plan == nullptr ? Json() : PlanOf(*page.plan)).dump() << ",\n\"calls\": ";
    WriteCalls(out, page.calls);
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
