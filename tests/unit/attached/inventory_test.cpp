// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include "embedded/attached/changer/inventory.h"

#include "tests/unit/attached/scripted_device.h"

namespace embedded::attached {
namespace {

constexpr const char* kAddressPage = "1A 08 1D 00 FF 00";
constexpr const char* kGeometryPage = "1A 08 1E 00 FF 00";
constexpr const char* kCapabilitiesPage = "1A 08 1F 00 FF 00";

std::vector<uint8_t> Page(const char* page) {
    const auto content = Hex(page);
    return Joined({{static_cast<uint8_t>(content.size() + 3), 0, 0, 0}, content});
}

class GeometryTest : public testing::Test {
  protected:
    ScriptedDevice m_script{"Tower"};
};

TEST_F(GeometryTest, ReadsTheThreePages) {
    m_script.Answers(kAddressPage, Page("1D 12 00 01 00 01 04 00 00 08 03 00 00 02 01 00 00 02 00 00"));
    m_script.Answers(kGeometryPage, Page("1E 02 01 00"));
    m_script.Answers(kCapabilitiesPage, Page("1F 12 0E 00 00 0E 0E 0E 00 x12"));
    const auto geometry = ReadGeometry(m_script.Get());
    ASSERT_TRUE(geometry);
    EXPECT_EQ(geometry->RangeOf(ElementType::Slot), (ElementRange{1024, 8}));
    EXPECT_EQ(geometry->RangeOf(ElementType::MailSlot), (ElementRange{768, 2}));
    EXPECT_EQ(geometry->RangeOf(ElementType::Drive), (ElementRange{256, 2}));
    EXPECT_EQ(geometry->RangeOf(ElementType::Picker), (ElementRange{1, 1}));
    EXPECT_TRUE(geometry->turnsMedia);
    EXPECT_EQ(geometry->capabilities->stores, 0x0E);
}

TEST_F(GeometryTest, DoesWithoutThePagesThatNeedNotBeThere) {
    m_script.Answers(kAddressPage, Page("1D 12 00 01 00 01 04 00 00 08 00 00 00 00 01 00 00 02 00 00"));
    m_script.Fails(kGeometryPage, {0x5, 0x24, 0x00});
    m_script.Fails(kCapabilitiesPage, {0x5, 0x24, 0x00});
    const auto geometry = ReadGeometry(m_script.Get());
    ASSERT_TRUE(geometry);
    EXPECT_FALSE(geometry->turnsMedia);
    EXPECT_FALSE(geometry->capabilities);
}

TEST_F(GeometryTest, AsksByTheLongCommandWhereTheShortOneIsNotKnown) {
    m_script.Fails(kAddressPage, {0x5, 0x20, 0x00});
    m_script.Answers("5A 08 1D 00 00 00 00 00 FF 00",
                     Joined({Hex("00 1A 00 00 00 00 00 00"),
                             Hex("1D 12 00 01 00 01 04 00 00 08 00 00 00 00 01 00 00 02 00 00")}));
    for (const char* page : {"1E", "1F"}) {
        m_script.Fails((std::string("1A 08 ") + page + " 00 FF 00").c_str(), {0x5, 0x20, 0x00});
        m_script.Fails((std::string("5A 08 ") + page + " 00 00 00 00 00 FF 00").c_str(), {0x5, 0x24, 0x00});
    }
    EXPECT_EQ(ReadGeometry(m_script.Get())->addresses.slots, (ElementRange{1024, 8}));
}

TEST_F(GeometryTest, RefusesAChangerThatAddressesAnElementTwice) {
    m_script.Answers(kAddressPage, Page("1D 12 04 01 00 01 04 00 00 08 00 00 00 00 01 00 00 02 00 00"));
    EXPECT_EQ(ReadGeometry(m_script.Get()).GetError().text,
              "Tower: mode page 1Dh names the same element twice, with different types");
}

// An answer with slots of 12 bytes each, without volume tags, all of them full.
std::vector<uint8_t> SlotsAt(std::initializer_list<uint16_t> addresses) {
    const auto bytes = static_cast<uint16_t>(12 * addresses.size());
    const auto high = [](size_t number) { return static_cast<uint8_t>(number >> 8); };
    const auto low = [](size_t number) { return static_cast<uint8_t>(number); };
    std::vector<uint8_t> answer = {0,
                                   0,
                                   high(addresses.size()),
                                   low(addresses.size()),
                                   0,
                                   0,
                                   high(bytes + 8),
                                   low(bytes + 8),
                                   2,
                                   0,
                                   0,
                                   12,
                                   0,
                                   0,
                                   high(bytes),
                                   low(bytes)};
    for (const uint16_t address : addresses)
        answer = Joined({answer, {high(address), low(address), 0x09}, Hex("00 x9")});
    return answer;
}

std::vector<uint16_t> Addresses(const std::vector<Element>& elements) {
    std::vector<uint16_t> addresses;
    for (const Element& element : elements)
        addresses.push_back(element.address);
    return addresses;
}

class ElementsTest : public testing::Test {
  protected:
    Result<std::vector<Element>> Slots(uint16_t first, uint16_t count) {
        return ReadElements(m_script.Get(), ElementType::Slot, {first, count});
    }

    ScriptedDevice m_script{"Tower"};
};

TEST_F(ElementsTest, AsksForNothingWhereThereIsNothing) {
    EXPECT_TRUE(Slots(1024, 0)->empty());
}

TEST_F(ElementsTest, AsksPageByPage) {
    // 300 slots from 1024 on: 256 at once, then the other 44.
    std::vector<uint8_t> first = Hex("04 00 01 00 00 00 0C 08 02 00 00 0C 00 00 0C 00");
    for (unsigned i = 0; i < 256; ++i) {
        first = Joined({first,
                        {static_cast<uint8_t>((1024 + i) >> 8), static_cast<uint8_t>(1024 + i)},
                        Hex("09 00 x9")});
    }
    std::vector<uint8_t> second = Hex("05 00 00 2C 00 00 02 18 02 00 00 0C 00 00 02 10");
    for (unsigned i = 256; i < 300; ++i) {
        second = Joined({second,
                         {static_cast<uint8_t>((1024 + i) >> 8), static_cast<uint8_t>(1024 + i)},
                         Hex("08 00 x9")});
    }
    m_script.Answers("B8 12 04 00 01 00 00 00 FF 00 00 00", first);
    m_script.Answers("B8 12 05 00 00 2C 00 00 FF 00 00 00", second);
    const auto slots = Slots(1024, 300);
    ASSERT_TRUE(slots);
    ASSERT_EQ(slots->size(), 300U);
    EXPECT_TRUE(slots->at(255).isFull);
    EXPECT_FALSE(slots->at(256).isFull);
    EXPECT_EQ(slots->back().address, 1323);
}

TEST_F(ElementsTest, GoesOnWhereAChangerStopsEarly) {
    m_script.Answers("B8 12 04 00 00 04 00 00 FF 00 00 00", SlotsAt({1024, 1025}));
    m_script.Answers("B8 12 04 02 00 02 00 00 FF 00 00 00", SlotsAt({1026}));
    m_script.Answers("B8 12 04 03 00 01 00 00 FF 00 00 00", SlotsAt({1027}));
    EXPECT_EQ(Addresses(*Slots(1024, 4)), (std::vector<uint16_t>{1024, 1025, 1026, 1027}));
}

TEST_F(ElementsTest, SortsWhatComesInAnotherOrder) {
    m_script.Answers("B8 12 04 00 00 03 00 00 FF 00 00 00", SlotsAt({1026, 1024, 1025}));
    EXPECT_EQ(Addresses(*Slots(1024, 3)), (std::vector<uint16_t>{1024, 1025, 1026}));
}

TEST_F(ElementsTest, LeavesOutElementsThatTheChangerDoesNotReport) {
    // A magazine with the slots 1026 and 1027 is missing.
    m_script.Answers("B8 12 04 00 00 06 00 00 FF 00 00 00", SlotsAt({1024, 1025, 1028, 1029}));
    m_script.Answers("B8 12 04 02 00 04 00 00 FF 00 00 00", SlotsAt({1028, 1029}));
    EXPECT_EQ(Addresses(*Slots(1024, 6)), (std::vector<uint16_t>{1024, 1025, 1028, 1029}));
}

TEST_F(ElementsTest, EndsWhenNothingMoreIsReported) {
    m_script.Answers("B8 12 04 00 00 06 00 00 FF 00 00 00", Hex("00 x8"));
    EXPECT_TRUE(Slots(1024, 6)->empty());
}

TEST_F(ElementsTest, RefusesAnElementOutsideOfTheChangersOwnRange) {
    m_script.Answers("B8 12 04 00 00 02 00 00 FF 00 00 00", SlotsAt({1024, 1026}));
    EXPECT_EQ(Slots(1024, 2).GetError().text,
              "Tower: the answer to READ ELEMENT STATUS names slot 1026, but the changer's own range is 1024 "
              "to 1025");
}

TEST_F(ElementsTest, RefusesAnElementThatIsNamedTwice) {
    m_script.Answers("B8 12 04 00 00 02 00 00 FF 00 00 00", SlotsAt({1024, 1024}));
    EXPECT_EQ(Slots(1024, 2).GetError().text,
              "Tower: the answer to READ ELEMENT STATUS names element 1024 twice");
}

TEST_F(ElementsTest, ReadsUpToTheHighestAddress) {
    m_script.Answers("B8 12 FF FE 00 02 00 00 FF 00 00 00", SlotsAt({65534, 65535}));
    EXPECT_EQ(Addresses(*Slots(65534, 2)), (std::vector<uint16_t>{65534, 65535}));
}

TEST_F(ElementsTest, AsksForDrivesWithoutIdentifiersWhereTheChangerKnowsNone) {
    auto drive = SlotsAt({256});
    drive[8] = 4;
    m_script.Fails("B8 14 01 00 00 01 01 00 FF 00 00 00", {0x5, 0x24, 0x00});
    m_script.Answers("B8 14 01 00 00 01 00 00 FF 00 00 00", drive);
    const auto drives = ReadElements(m_script.Get(), ElementType::Drive, {256, 1});
    ASSERT_TRUE(drives);
    EXPECT_FALSE(drives->at(0).driveIdentifier);
}

TEST_F(ElementsTest, TellsWhenAChangerDoesNotAnswer) {
    m_script.Fails("B8 12 04 00 00 02 00 00 FF 00 00 00", {0x2, 0x04, 0x03});
    EXPECT_EQ(Slots(1024, 2).GetError().text, "Tower needs an operator; look at its panel (sense 2/04/03)");
}

}  // namespace
}  // namespace embedded::attached
