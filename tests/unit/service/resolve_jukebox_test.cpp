#include "krvcmd/service/access/item_lookup.h"
#include "tests/support/service_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Text;

class ResolveJukeboxTest : public test::ServiceTest {
  protected:
    ResolveJukeboxTest() {
        Farm().AddJukebox(8, "mybox");
        Farm().AddJukebox(11, "MyBox");
        Farm().AddJukebox(29, "MyBox");
        Farm().AddJukebox(31, "My Box");
    }

    // The jukebox's ID, and the status unless it is success.
    static std::string Resolved(const ItemAddress& address) {
        int32_t id = 99;
        const Status status = ResolveJukebox(address, id);
        return std::to_string(id) + (status.IsOk() ? "" : ", " + Text(status));
    }

    static std::string ById(int32_t id) {
        ItemAddress address;
        address.jukeboxId = id;
        return Resolved(address);
    }

    static std::string ByName(std::string_view name) {
        ItemAddress address;
        address.jukeboxName = name;
        return Resolved(address);
    }
};

TEST_F(ResolveJukeboxTest, AsksOnceForAnId) {
    EXPECT_EQ(ById(29), "29");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=29"}));
}

TEST_F(ResolveJukeboxTest, HandsOnTheErrorOfAnUnknownId) {
    EXPECT_EQ(ById(9), "9, service error 1001: There is no jukebox 9.");
}

TEST_F(ResolveJukeboxTest, FindsNothingWithoutIdAndName) {
    EXPECT_EQ(ById(-1), "-1, error 6");
    EXPECT_EQ(ById(0), "-1, error 6");
    EXPECT_EQ(ByName(""), "-1, error 6");
    EXPECT_EQ(TakeCalls(), Calls{});
}

TEST_F(ResolveJukeboxTest, TakesTheFirstJukeboxOfTheName) {
    EXPECT_EQ(ByName("MyBox"), "11");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetNextJukebox previous=0", "KrvGetJukebox J=8",
                                  "KrvGetNextJukebox previous=8", "KrvGetJukebox J=11"}));
}

TEST_F(ResolveJukeboxTest, ComparesTheWholeNameExactly) {
    EXPECT_EQ(ByName("mybox"), "8");
    EXPECT_EQ(ByName("My Box"), "31");
    for (const std::string_view name : {"MYBOX", "MyBo", "MyBox ", " MyBox", "MyBoxx", "8"}) {
        EXPECT_EQ(ByName(name), "-1, error 6") << name;
    }
}

TEST_F(ResolveJukeboxTest, ComparesANameThatFillsItsFieldWithoutANul) {
    const std::string name(52, 'x');
    Farm().AddJukebox(40, name);
    EXPECT_EQ(ByName(name), "40");
    EXPECT_EQ(ByName(std::string(51, 'x')), "-1, error 6");
}

TEST_F(ResolveJukeboxTest, PassesOverJukeboxesThatCannotBeDescribed) {
    Fake().FailCall("KrvGetJukebox J=11", Occurrence::Every(), {9, "no"}, krvfake::Outputs::Filled);
    EXPECT_EQ(ByName("MyBox"), "29");
}

TEST_F(ResolveJukeboxTest, FindsNothingWhenTheEnumerationFails) {
    Fake().FailCall("KrvGetNextJukebox", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(ByName("MyBox"), "-1, error 6");
}

TEST_F(ResolveJukeboxTest, GoesThroughTheWholeEnumerationBeforeItGivesUp) {
    EXPECT_EQ(ByName("nobody"), "-1, error 6");
    EXPECT_EQ(TakeCalls().size(), 4U + 5U);  // four jukeboxes, five steps
}

TEST_F(ResolveJukeboxTest, EndsWhenTheEnumerationGoesInCircles) {
    Farm().EnumerateJukeboxes({8, 31}, true);
    EXPECT_EQ(ByName("nobody"), "-1, error 6");
}

}  // namespace
}  // namespace krvcmd
