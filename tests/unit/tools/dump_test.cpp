#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "embedded/layout/text_encoding.h"
#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

class KrvsimDump : public ToolFixture {};

TEST_F(KrvsimDump, JsonTellsTheWholeFarm) {
    const auto farm = nlohmann::json::parse(Done({"dump", "--format", "json"}));
    EXPECT_EQ(farm["schema"], 1);
    EXPECT_EQ(farm["server"], ".");
    EXPECT_EQ(farm["running"], true);
    EXPECT_EQ(farm["jukeboxes"].size(), 8U);
    EXPECT_EQ(farm["volumes"].size(), 53U);
    EXPECT_EQ(farm["shelf"].size(), 1U);
    const auto& box = farm["jukeboxes"][0];
    EXPECT_EQ(box["name"], "MyBox");
    EXPECT_EQ(box["drives"].size(), 2U);
    const auto& slots = box["magazines"][0]["slots"];
    ASSERT_EQ(slots.size(), 12U);
    EXPECT_EQ(slots[2]["state"], "full");
    EXPECT_EQ(slots[2]["medium"]["type"], "DVD-RAM");
    EXPECT_EQ(slots[2]["medium"]["sides"][1]["volume"], 34);
    EXPECT_EQ(slots[4]["state"], "empty");
    EXPECT_EQ(slots[5]["state"], "not present");
    EXPECT_TRUE(slots[4]["medium"].is_null());
}

TEST_F(KrvsimDump, JsonTellsEachFieldOfALayout) {
    const std::string layout = WriteFile("tower.toml", R"(format = 1
next_volume = 50
[[volume]]
id = 7
type = "mirror"
enabled = false
label = "Sales"
file_system = "UDF 2.01"
total = 100
free = 40
directories = ["a", "b"]
value1 = 3
value2 = 4
[[jukebox]]
id = 3
name = "Tower"
enabled = false
double_sided = true
vendor = "V"
product = "P"
revision = "R"
scsi = [1, 2, 3]
waiting = [ { type = "CD-ROM", a = "no file system" } ]
exported = [ { type = "CD-R", a = "bad" } ]
[[jukebox.drive]]
vendor = "DV"
product = "DP"
revision = "DR"
scsi = [4, 5, 6]
enabled = false
value1 = 8
value2 = 9
[[jukebox.magazine]]
slots = 3
not_present = [2]
[[jukebox.magazine.media]]
slot = 1
type = "DVD-RAM"
a = { volume = 7, part = 1, finalization = "closed", sequential = true }
b = { volume = 7, part = 2 }
[[jukebox.magazine]]
slots = 0
present = false
)");
    Done({"init", "--server", "tower", "--layout", layout});
    EXPECT_EQ(nlohmann::json::parse(Done({"dump", "--server", "tower", "--format", "json"})),
              nlohmann::json::parse(R"({"schema": 1, "server": "tower", "running": true, "next_volume": 50,
        "jukeboxes": [{
            "id": 3, "name": "Tower", "enabled": false, "double_sided": true,
            "vendor": "V", "product": "P", "revision": "R", "scsi": [1, 2, 3],
            "drives": [{"drive": 1, "enabled": false, "vendor": "DV", "product": "DP", "revision": "DR",
                        "scsi": [4, 5, 6], "value1": 8, "value2": 9}],
            "magazines": [
                {"magazine": 1, "present": true, "slots": [
                    {"slot": 1, "state": "full", "medium": {"type": "DVD-RAM", "type_code": 12, "sides": [
                        {"content": "file system", "finalization": "closed", "sequential": true,
                         "volume": 7, "part": 1},
                        {"content": "file system", "finalization": "not finalized", "sequential": false,
                         "volume": 7, "part": 2}]}},
                    {"slot": 2, "state": "not present", "medium": null},
                    {"slot": 3, "state": "empty", "medium": null}]},
                {"magazine": 2, "present": false, "slots": []}],
            "waiting": [{"type": "CD-ROM", "type_code": 0, "sides": [
                {"content": "no file system", "finalization": "closed", "sequential": false,
                 "volume": null, "part": 0}]}],
            "exported": [{"type": "CD-R", "type_code": 1, "sides": [
                {"content": "bad", "finalization": "unknown", "sequential": false,
                 "volume": null, "part": 0}]}]}],
        "volumes": [{"id": 7, "type": "mirror", "enabled": false, "state": "disabled", "state_code": 1,
                     "label": "Sales", "file_system": "UDF 2.01", "total": 100, "free": 40,
                     "directories": ["a", "b"], "value1": 3, "value2": 4}],
        "shelf": []})"));
}

TEST_F(KrvsimDump, JsonGivesBytesThatAreNoTextInHexadecimal) {
    Client client;
    ASSERT_TRUE(client.RenameJukebox(8, "K\xF6ln").ok);
    const auto farm = nlohmann::json::parse(Done({"dump", "--format", "json"}));
    EXPECT_EQ(farm["jukeboxes"][0]["name"]["hex"], "4bf66c6e");
}

// The data of a page, which a browser gets as JSON.
nlohmann::json DataOf(const std::string& page) {
    const std::string start = "id=\"data\">";
    const size_t begin = page.find(start) + start.size();
    return nlohmann::json::parse(page.substr(begin, page.find("</script>", begin) - begin));
}

TEST_F(KrvsimDump, PageContainsTheFarm) {
    const nlohmann::json data = DataOf(Done({"dump", "--format", "html"}));
    EXPECT_EQ(data["before"], nlohmann::json::parse(Done({"dump", "--format", "json"})));
    EXPECT_TRUE(data["after"].is_null());
    EXPECT_TRUE(data["calls"].is_null());
}

TEST_F(KrvsimDump, PageReadsAFarmThroughALibrary) {
    const ToolResult result =
        RunKrvsim({"dump", "--library", KRVSIM_EMBEDDED_LIBRARY, "--format", "html", "--partial-ok"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(DataOf(result.out)["before"]["jukeboxes"].size(), 8U);
}

TEST_F(KrvsimDump, NoTextOfAFarmIsMarkupInThePage) {
    Client client;
    ASSERT_TRUE(client.RenameJukebox(8, "</script><b>&amp;").ok);
    const std::string page = Done({"dump", "--format", "html"});
    EXPECT_EQ(page.find("<b>"), std::string::npos);
    EXPECT_EQ(page.find("&amp;"), std::string::npos);
    EXPECT_EQ(DataOf(page)["before"]["jukeboxes"][0]["name"], "</script><b>&amp;");
}

TEST_F(KrvsimDump, PageCanContainTheCallsOfTheJournal) {
    Done({"journal", "--on"});
    Client client;
    ASSERT_TRUE(client.Export({8, 0, 0}).ok);
    ASSERT_FALSE(client.Export({8, 0, 0}).ok);
    ASSERT_TRUE(client.Export({8, 0, 1}).ok);
    const nlohmann::json calls = DataOf(Done({"dump", "--format", "html", "--journal"}))["calls"];
    ASSERT_EQ(calls.size(), 4U);
    EXPECT_EQ(calls[1]["function"], "KrvMediaExport");
    EXPECT_EQ(calls[1]["item"], "jukebox 8, magazine 1, slot 1");
    EXPECT_EQ(calls[1]["start"], 0);
    EXPECT_EQ(calls[1]["duration"], 5'000'000);
    EXPECT_EQ(calls[1]["moving"], 5'000'000);
    EXPECT_EQ(calls[2]["succeeded"], false);
    EXPECT_EQ(calls[2]["code"], 501);
    EXPECT_EQ(calls[3]["start"], 5'000'000);
    EXPECT_EQ(calls[3]["duration"], 5'020'000);
    EXPECT_NE(WrongUsage({"dump", "--journal"}).find("--journal needs --format html"), std::string::npos);
}

struct TextCase {
    const char* bytes;
    bool isText;
};

TEST(TextEncoding, TextIsUtf8WithoutNul) {
    const std::vector<TextCase> cases = {
        {"", true},
        {"plain", true},
        {"K\xC3\xB6ln", true},
        {"\xE2\x82\xAC", true},
        {"\xF0\x9F\x92\xBF", true},
        {"\xF4\x8F\xBF\xBF", true},
        {"K\xF6ln", false},
        {"\xC3", false},
        {"\xC0\xAF", false},          // overlong
        {"\xE0\x80\xAF", false},      // overlong
        {"\xED\xA0\x80", false},      // a surrogate
        {"\xF4\x90\x80\x80", false},  // beyond Unicode
        {"\xE2\x82", false},
        {"\x80", false},
    };
    for (const TextCase& expected : cases)
        EXPECT_EQ(embedded::IsText(expected.bytes), expected.isText) << expected.bytes;
    EXPECT_FALSE(embedded::IsText(std::string_view("a\0b", 3)));
}

TEST(TextEncoding, BytesAreWrittenAndReadInHexadecimal) {
    EXPECT_EQ(embedded::ToHex("K\xF6"), "4bf6");
    EXPECT_EQ(embedded::FromHex("4BF6"), "K\xF6");
    for (const char* digits : {"4", "4g", "g4", "+4", "4 "})
        EXPECT_EQ(embedded::FromHex(digits), std::nullopt) << digits;
}

}  // namespace
}  // namespace embedded_test
