#include "krvcmd/frontend/parsing/item_address.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "krvcmd/frontend/parsing/parser.h"
#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

using test::Words;

// ---- Every combination of the seven parameters -----------------------------------------------

// Which of the seven address parameters a line has.
struct Given {
    bool j, m, s, a, b, d, v;

    bool OneSide() const { return a != b; }
    bool NoOrBothSides() const { return a == b; }
};

// The table of kinds, row by row: what must be there and what must not. No two rows fit the same line,
// and a line that no row fits addresses nothing that exists.
std::optional<AddressKind> KindByTable(const Given& g) {
    std::vector<AddressKind> fitting;
    if (!g.j && !g.m && !g.s && !g.a && !g.b && !g.d && !g.v) fitting.push_back(AddressKind::None);
    if (!g.j && !g.m && !g.s && !g.a && !g.b && !g.d && g.v) fitting.push_back(AddressKind::Volumes);
    if (g.j && g.s && g.OneSide() && !g.d && !g.v) fitting.push_back(AddressKind::SlotSide);
    if (g.j && g.s && g.NoOrBothSides() && !g.d && !g.v) fitting.push_back(AddressKind::Slots);
    if (g.j && g.m && !g.s && g.NoOrBothSides() && !g.d && !g.v) fitting.push_back(AddressKind::Magazine);
    if (g.j && !g.m && !g.s && g.NoOrBothSides() && !g.d && !g.v) fitting.push_back(AddressKind::Jukebox);
    if (g.j && g.d && !g.m && !g.s && !g.a && !g.b && !g.v) fitting.push_back(AddressKind::Drive);
    EXPECT_LE(fitting.size(), 1U);
    return fitting.empty() ? std::nullopt : std::optional(fitting.front());
}

Parameter MakeParameter(std::string_view keyword) {
    Parameter parameter;
    parameter.node = &test::Node("query." + std::string(keyword));
    const bool isSide = keyword.front() == '.';
    if (isSide) return parameter;
    parameter.valueKind = ValueKind::Numbers;
    parameter.ranges = {{3, 3, false}};
    return parameter;
}

std::vector<Parameter> MakeParameters(const Given& given, std::string& description) {
    const std::pair<bool, std::string_view> all[] = {{given.j, "J"},  {given.m, "M"},  {given.s, "S"},
                                                     {given.a, ".A"}, {given.b, ".B"}, {given.d, "D"},
                                                     {given.v, "V"}};
    std::vector<Parameter> parameters;
    for (const auto& [isGiven, keyword] : all) {
        if (!isGiven) continue;
        parameters.push_back(MakeParameter(keyword));
        description.append(keyword).append(" ");
    }
    return parameters;
}

TEST(ReadItemAddress, KnowsEveryCombinationOfTheSevenParameters) {
    int valid = 0;
    for (unsigned bits = 0; bits < 128; ++bits) {
        const Given given{(bits & 1U) != 0,  (bits & 2U) != 0,  (bits & 4U) != 0, (bits & 8U) != 0,
                          (bits & 16U) != 0, (bits & 32U) != 0, (bits & 64U) != 0};
        std::string description;
        const std::vector<Parameter> parameters = MakeParameters(given, description);
        AddressKind kind = AddressKind::None;
        ItemAddressList addresses;
        const Status status = ReadItemAddress(parameters, kind, addresses);

        const std::optional<AddressKind> expected = KindByTable(given);
        EXPECT_EQ(test::Text(status), expected ? "OK" : "error 22") << description;
        if (!expected) continue;
        ++valid;
        EXPECT_EQ(kind, *expected) << description;
        EXPECT_EQ(addresses.IsEmpty(), *expected == AddressKind::None) << description;
    }
    // None, V, J D: one each. With J and S, M or no M: two lines with one side each, two without or with
    // both: 8. J M and J, without or with both sides: 4.
    EXPECT_EQ(valid, 3 + 8 + 4);
}

TEST(ReadItemAddress, NumbersTheKindsAsScriptsOfTheLibraryKnowThem) {
    EXPECT_EQ(static_cast<int32_t>(AddressKind::None), 0);
    EXPECT_EQ(static_cast<int32_t>(AddressKind::Volumes), 1);
    EXPECT_EQ(static_cast<int32_t>(AddressKind::SlotSide), 2);
    EXPECT_EQ(static_cast<int32_t>(AddressKind::Slots), 3);
    EXPECT_EQ(static_cast<int32_t>(AddressKind::Magazine), 5);
    EXPECT_EQ(static_cast<int32_t>(AddressKind::Jukebox), 6);
    EXPECT_EQ(static_cast<int32_t>(AddressKind::Drive), 7);
}

// ---- Entries ---------------------------------------------------------------------------------

// The entries as the parser and ReadItemAddress make them from the words behind "query": each with what it
// gives, IDs as the user wrote them; M, S and D are one less.
std::string Addressed(const Words& words) {
    Words line = {"query"};
    line.insert(line.end(), words.begin(), words.end());
    ParameterList parsed;
    if (Status status = ParseCommandLine(line, parsed); !status.IsOk())
        return "parser: " + test::Text(status);
    AddressKind kind = AddressKind::None;
    ItemAddressList addresses;
    if (Status status = ReadItemAddress(parsed.parameters, kind, addresses); !status.IsOk())
        return test::Text(status);

    std::string text = "kind " + std::to_string(static_cast<int>(kind)) + ":";
    const auto add = [&text](const char* name, std::optional<int32_t> number) {
        if (number.has_value()) text += std::string(" ") + name + std::to_string(*number);
    };
    const auto addId = [&add](const char* name, int32_t id) {
        if (id != -1) add(name, id);
    };
    for (const ItemAddress& entry : addresses) {
        text += " (";
        if (!entry.jukeboxName.empty()) text += " \"" + entry.jukeboxName + "\"";
        addId("@", entry.jukeboxId);
        add("M", entry.magazine);
        add("S", entry.slot);
        add("side", entry.side);
        add("D", entry.drive);
        addId("V", entry.volumeId);
        text += " )";
    }
    return text;
}

struct AddressRow {
    Words words;
    std::string_view expected;
};

void ExpectAddresses(const std::vector<AddressRow>& rows) {
    for (const AddressRow& row : rows) {
        std::string words;
        for (const char* word : row.words)
            words.append("[").append(word).append("]");
        EXPECT_EQ(Addressed(row.words), row.expected) << words;
    }
}

TEST(ReadItemAddress, ListsOneEntryForEachAddressedItem) {
    ExpectAddresses({
        {{}, "kind 0:"},
        {{"volumes"}, "kind 0:"},
        {{"V@33"}, "kind 1: ( V33 )"},
        {{"V@33,35-37"}, "kind 1: ( V33 ) ( V35 ) ( V36 ) ( V37 )"},
        {{"J@8", "S3", ".A"}, "kind 2: ( @8 S2 side0 )"},
        {{"J@8", "M2", "S3", ".B"}, "kind 2: ( @8 M1 S2 side1 )"},
        {{"J@8", "S1-3"}, "kind 3: ( @8 S0 ) ( @8 S1 ) ( @8 S2 )"},
        {{"J@8", "M2", "S1,5"}, "kind 3: ( @8 M1 S0 ) ( @8 M1 S4 )"},
        {{"J@8", "M2"}, "kind 5: ( @8 M1 )"},
        {{"J@8", "M1,3-4"}, "kind 5: ( @8 M0 ) ( @8 M2 ) ( @8 M3 )"},
        {{"J@8"}, "kind 6: ( @8 )"},
        {{"J", "MyBox"}, "kind 6: ( \"MyBox\" )"},
        {{"J", "MyBox", "M2", "S1"}, "kind 3: ( \"MyBox\" M1 S0 )"},
        {{"J@8", "D2"}, "kind 7: ( @8 D1 )"},
    });
}

TEST(ReadItemAddress, TakesBothSidesTogetherAsNoSide) {
    ExpectAddresses({
        {{"J@8", "S3", ".A", ".B"}, "kind 3: ( @8 S2 )"},
        {{"J@8", "M2", "S3", ".B", ".A"}, "kind 3: ( @8 M1 S2 )"},
        {{"J@8", "M2", ".A", ".B"}, "kind 5: ( @8 M1 )"},
        {{"J@8", ".A", ".B"}, "kind 6: ( @8 )"},
    });
}

TEST(ReadItemAddress, RefusesWhatAddressesNothing) {
    ExpectAddresses({
        {{"M2"}, "error 22"},
        {{"S1"}, "error 22"},
        {{".A"}, "error 22"},
        {{"D1"}, "error 22"},
        {{"J@8", "V@33"}, "error 22"},
        {{"V@33", "S1"}, "error 22"},
        {{"J@8", ".A"}, "error 22"},
        {{"J@8", "M2", ".B"}, "error 22"},
        {{"J@8", "D1", "S1"}, "error 22"},
        {{"J@8", "D1", ".A", ".B"}, "error 22"},
    });
}

TEST(ReadItemAddress, NeedsASingleSlotMagazineAndJukeboxForASide) {
    ExpectAddresses({
        {{"J@8", "S1,2", ".A"}, "error 22"},
        {{"J@8", "S1-2", ".A"}, "error 22"},
        {{"J@8", "S1-1", ".A"}, "error 22"},  // a range, even of one number, is no single number
        {{"J@8", "M1,2", "S1", ".A"}, "error 22"},
        {{"J@8,11", "S1", ".A"}, "error 22"},
        {{"J@8", "S1,2", ".A", ".B"}, "error 22"},
        {{"J@8", "M1,2", ".A", ".B"}, "error 22"},
        {{"J@8-9", ".A", ".B"}, "error 22"},
    });
}

TEST(ReadItemAddress, NeedsASingleMagazineAndJukeboxForSlots) {
    ExpectAddresses({
        {{"J@8", "M1,2", "S1"}, "error 22"},
        {{"J@8", "M1-2", "S1,2"}, "error 22"},
        {{"J@8,11", "S1"}, "error 22"},
    });
}

TEST(ReadItemAddress, NeedsASingleJukeboxForMagazinesAndDrives) {
    ExpectAddresses({
        {{"J@8,11", "M1"}, "error 22"},
        {{"J@8-9", "M1"}, "error 22"},
        {{"J@8,11", "D1"}, "error 22"},
    });
}

TEST(ReadItemAddress, TakesTheFirstNumberOfAListOfJukeboxesAndOfDrives) {
    ExpectAddresses({
        {{"J@8,11"}, "kind 6: ( @8 )"},
        {{"J@11-8"}, "kind 6: ( @11 )"},
        {{"J@8", "D2,1"}, "kind 7: ( @8 D1 )"},
        {{"J@8", "D3-5"}, "kind 7: ( @8 D2 )"},
    });
}

TEST(ReadItemAddress, TakesTheLastOfAParameterGivenTwice) {
    ExpectAddresses({
        {{"J@8", "J@11"}, "kind 6: ( @11 )"},
        {{"J@8", "J", "MyBox"}, "kind 6: ( \"MyBox\" )"},
        {{"J", "MyBox", "J@8"}, "kind 6: ( @8 )"},
        {{"J@8", "S1,2", "S3", ".A"}, "kind 2: ( @8 S2 side0 )"},
        {{"J@8", "M1", "M2", "S5", "S6"}, "kind 3: ( @8 M1 S5 )"},
        {{"V@33", "V@34"}, "kind 1: ( V34 )"},
        {{"J@8", "D1", "D2"}, "kind 7: ( @8 D1 )"},
    });
}

TEST(ReadItemAddress, KeepsAZeroAsANumberThatIsGiven) {
    ExpectAddresses({
        {{"J@0"}, "kind 6: ( @0 )"},
        {{"J@8", "M0", "S0"}, "kind 3: ( @8 M-1 S-1 )"},
        {{"J@8", "D0"}, "kind 7: ( @8 D-1 )"},
        {{"V@0"}, "kind 1: ( V0 )"},
    });
}

TEST(ReadItemAddress, AddressesNothingWithAReversedRange) {
    ExpectAddresses({
        {{"J@8", "S5-3"}, "kind 3:"},
        {{"J@8", "M5-3"}, "kind 5:"},
        {{"V@5-3"}, "kind 1:"},
        {{"J@8", "S5-3,7,2-1,9-10"}, "kind 3: ( @8 S6 ) ( @8 S8 ) ( @8 S9 )"},
    });
}

TEST(ReadItemAddress, KeepsAnEmptyJukeboxName) {
    ExpectAddresses({{{"J="}, "kind 6: ( )"}});
}

}  // namespace
}  // namespace krvcmd
