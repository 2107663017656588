// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include <gtest/gtest.h>

#include "embedded/attached/scsi/element_status.h"
#include "embedded/attached/scsi/mode_pages.h"
#include "tests/unit/attached/refusal.h"

namespace embedded::attached {
namespace {

// Mode page 1Dh: 1 picker at 1, 8 slots at 1024, 2 mail slots at 768, 2 drives at 256.
constexpr const char* kElementAddresses = "1D 12 00 01 00 01 04 00 00 08 03 00 00 02 01 00 00 02 00 00";

TEST(ModeSenseTest, FindsThePageBehindTheHeader) {
    const auto shortForm = Joined({Hex("17 00 00 00"), Hex(kElementAddresses)});
    EXPECT_EQ(DecodeModeSense6(shortForm, 0x1D)->page.size(), 20U);
    const auto longForm = Joined({Hex("00 1A 03 80 00 00 00 00"), Hex(kElementAddresses)});
    const auto data = DecodeModeSense10(longForm, 0x1D);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->page.size(), 20U);
    EXPECT_EQ(data->mediumType, 3);
    EXPECT_TRUE(data->isWriteProtected);
}

TEST(ModeSenseTest, FindsThePageBehindBlockDescriptorsThatWereNotAskedFor) {
    const auto answer = Joined({Hex("1F 03 80 08 00 x8"), Hex(kElementAddresses)});
    const auto data = DecodeModeSense6(answer, 0x1D);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->page[0], 0x1D);
    EXPECT_EQ(data->mediumType, 3);
    EXPECT_TRUE(data->isWriteProtected);
}

TEST(ModeSenseTest, RefusesWhatCannotBe) {
    EXPECT_EQ(Refusal(DecodeModeSense6(Hex("17 00 00"), 0x1D)),
              "the answer to MODE SENSE(6) ends too early, after 3 bytes");
    EXPECT_EQ(Refusal(DecodeModeSense6(Hex("04 00 00 FF 1D 12"), 0x1D)),
              "the answer to MODE SENSE(6) ends too early, after 6 bytes");
    EXPECT_EQ(Refusal(DecodeModeSense6(Hex("05 00 00 00 1E 00"), 0x1D)),
              "the answer to MODE SENSE(6) holds mode page 1Eh instead of 1Dh");
    EXPECT_EQ(Refusal(DecodeModeSense10(Hex("00 08 00 00 00 00 FF FF 1D 00"), 0x1D)),
              "the answer to MODE SENSE(10) ends too early, after 10 bytes");
}

TEST(ElementAddressesTest, NameTheRangeOfEachType) {
    const auto addresses = DecodeElementAddresses(Hex(kElementAddresses));
    ASSERT_TRUE(addresses);
    EXPECT_EQ(addresses->pickers, (ElementRange{1, 1}));
    EXPECT_EQ(addresses->slots, (ElementRange{1024, 8}));
    EXPECT_EQ(addresses->mailSlots, (ElementRange{768, 2}));
    EXPECT_EQ(addresses->drives, (ElementRange{256, 2}));
}

TEST(ElementAddressesTest, RefuseRangesThatCannotBe) {
    EXPECT_EQ(
        Refusal(DecodeElementAddresses(Hex("1D 12 00 01 00 01 FF F0 00 11 03 00 00 02 01 00 00 02 00 00"))),
        "mode page 1Dh names elements behind address 65535");
    EXPECT_EQ(
        Refusal(DecodeElementAddresses(Hex("1D 12 00 01 00 01 04 00 00 08 04 07 00 02 01 00 00 02 00 00"))),
        "mode page 1Dh names the same element twice, with different types");
    EXPECT_EQ(Refusal(DecodeElementAddresses(Hex("1D 02 00 01"))),
              "mode page 1Dh is too short, it has 4 bytes");
}

TEST(ElementAddressesTest, LetEmptyRangesLieAnywhere) {
    EXPECT_TRUE(DecodeElementAddresses(Hex("1D 12 00 01 00 01 04 00 00 08 04 00 00 00 FF FF 00 00 00 00")));
}

TEST(ElementRangeTest, ContainsItsAddressesOnly) {
    const ElementRange range{1024, 8};
    EXPECT_FALSE(range.Contains(1023));
    EXPECT_TRUE(range.Contains(1024));
    EXPECT_TRUE(range.Contains(1031));
    EXPECT_FALSE(range.Contains(1032));
    EXPECT_TRUE((ElementRange{65535, 1}.Contains(65535)));
    EXPECT_FALSE((ElementRange{0, 0}.Contains(0)));
}

TEST(TransportGeometryTest, TellsWhetherAnyPickerTurnsMedia) {
    EXPECT_FALSE(*DecodeTurnsMedia(Hex("1E 02 00 00")));
    EXPECT_TRUE(*DecodeTurnsMedia(Hex("1E 04 00 00 01 01")));
    EXPECT_FALSE(*DecodeTurnsMedia(Hex("1E 00")));
    EXPECT_EQ(Refusal(DecodeTurnsMedia(Hex("1E"))), "mode page 1Eh is too short, it has 1 bytes");
}

TEST(CapabilitiesTest, TellWhereMediaCanBeMoved) {
    const auto capabilities =
        DecodeCapabilities(Hex("1F 12 0E 00 00 0E 0E 0A 00 00 00 00 00 08 00 02 00 00 00 00"));
    ASSERT_TRUE(capabilities);
    EXPECT_EQ(capabilities->stores, 0x0E);
    EXPECT_EQ(capabilities->moves, (std::array<uint8_t, 4>{0x00, 0x0E, 0x0E, 0x0A}));
    EXPECT_EQ(capabilities->exchanges, (std::array<uint8_t, 4>{0x00, 0x08, 0x00, 0x02}));
    EXPECT_EQ(Refusal(DecodeCapabilities(Hex("1F 02 0E 00"))), "mode page 1Fh is too short, it has 4 bytes");
}

ElementQuery Slots() {
    return {ElementType::Slot, 1024, 2, true, false, 0xFF00};
}
ElementQuery Drives() {
    return {ElementType::Drive, 256, 1, true, true, 0xFF00};
}

// Two slots with volume tags, 52 bytes each: the first is full and came from slot 1026, the second has a
// fault.
std::vector<uint8_t> TwoSlots() {
    return Joined({Hex("04 00 00 02 00 00 00 70"), Hex("02 80 00 34 00 00 00 68"),                  //
                   Hex("04 00 09 00 00 00 00 00 00 C0 04 02"), Padded("DISC-1", 32), Hex("00 x8"),  //
                   Hex("04 01 04 00 83 02 00 00 00 00 00 00"), Padded("", 32), Hex("00 x8")});
}

TEST(ElementStatusTest, TellsWhatSlotsHold) {
    const auto report = DecodeElementStatus(TwoSlots(), Slots());
    ASSERT_TRUE(report);
    EXPECT_TRUE(report->isWhole);
    ASSERT_EQ(report->elements.size(), 2U);
    const Element& full = report->elements[0];
    EXPECT_EQ(full.address, 1024);
    EXPECT_TRUE(full.isFull);
    EXPECT_TRUE(full.isAccessible);
    EXPECT_FALSE(full.isException);
    EXPECT_TRUE(full.isInverted);
    EXPECT_EQ(full.source, 1026);
    EXPECT_EQ(full.volumeTag, "DISC-1");
    const Element& faulty = report->elements[1];
    EXPECT_FALSE(faulty.isFull);
    EXPECT_TRUE(faulty.isException);
    EXPECT_EQ(faulty.asc, 0x83);
    EXPECT_EQ(faulty.ascq, 0x02);
    EXPECT_FALSE(faulty.source);
    EXPECT_EQ(faulty.volumeTag, "");
}

TEST(ElementStatusTest, TellsWhoPutAMediumIntoAMailSlot) {
    const auto answer =
        Hex("03 00 00 01 00 00 00 14 03 00 00 0C 00 00 00 0C 03 00 3B 00 00 00 00 00 00 00 00 00");
    const auto report = DecodeElementStatus(answer, {ElementType::MailSlot, 768, 1, false, false, 0xFF00});
    ASSERT_TRUE(report);
    EXPECT_TRUE(report->elements.at(0).wasPutByOperator);
    // The same bit means nothing for a slot.
    auto slot = answer;
    slot[8] = 0x02;
    EXPECT_FALSE(DecodeElementStatus(slot, {ElementType::Slot, 768, 1, false, false, 0xFF00})
                     ->elements.at(0)
                     .wasPutByOperator);
}

// One drive with an identifier of 12 bytes behind the volume tag: 64 bytes.
std::vector<uint8_t> OneDrive() {
    return Joined({Hex("01 00 00 01 00 00 00 48"), Hex("04 80 00 40 00 00 00 40"),  //
                   Hex("01 00 08 00 00 00 00 00 00 00 00 00"), Padded("", 32), Hex("00 x4"),
                   Hex("02 00 00 0C"), Padded("SERIAL-12345", 12)});
}

TEST(ElementStatusTest, TellsTheIdentifierOfADrive) {
    const auto report = DecodeElementStatus(OneDrive(), Drives());
    ASSERT_TRUE(report);
    EXPECT_EQ(report->elements.at(0).driveIdentifier,
              (DriveIdentifier{2, 0, Padded("SERIAL-12345", 12), false}));
}

TEST(ElementStatusTest, FindsTheIdentifierBehindBothVolumeTags) {
    auto answer = Joined({Hex("01 00 00 01 00 00 00 62"), Hex("04 C0 00 5A 00 00 00 5A"),
                          Hex("01 00 08 00 00 x8"), Hex("00 x72"), Hex("01 03 00 02 AB CD")});
    const auto report = DecodeElementStatus(answer, Drives());
    ASSERT_TRUE(report);
    EXPECT_EQ(report->elements.at(0).driveIdentifier, (DriveIdentifier{1, 3, Hex("AB CD"), false}));
}

TEST(ElementStatusTest, TakesNoIdentifierThatWasNotAskedFor) {
    ElementQuery query = Drives();
    query.wantsDriveIdentifiers = false;
    EXPECT_FALSE(DecodeElementStatus(OneDrive(), query)->elements.at(0).driveIdentifier);
}

TEST(ElementStatusTest, PadsALastElementThatEndsUpTo8BytesEarly) {
    auto answer = TwoSlots();
    answer.resize(answer.size() - 8);
    EXPECT_EQ(DecodeElementStatus(answer, Slots())->elements.size(), 2U);
    answer.pop_back();
    EXPECT_EQ(Refusal(DecodeElementStatus(answer, Slots())),
              "the answer to READ ELEMENT STATUS promises more elements than it holds");
}

TEST(ElementStatusTest, MarksAnIdentifierThatWasCutOff) {
    auto answer = OneDrive();
    answer.resize(answer.size() - 8);
    const auto report = DecodeElementStatus(answer, Drives());
    ASSERT_TRUE(report);
    EXPECT_EQ(report->elements.at(0).driveIdentifier, (DriveIdentifier{2, 0, Padded("SERI", 4), true}));
}

TEST(ElementStatusTest, LeavesOutAnElementThatTheRoomWasTooSmallFor) {
    auto answer = TwoSlots();
    answer.resize(answer.size() - 8);
    ElementQuery query = Slots();
    query.allocation = static_cast<uint32_t>(answer.size());
    const auto report = DecodeElementStatus(answer, query);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->elements.size(), 1U);
    EXPECT_FALSE(report->isWhole);
}

TEST(ElementStatusTest, UnderstandsThatThereIsNothing) {
    const auto report = DecodeElementStatus(Hex("00 00 00 00 00 00 00 00"), Slots());
    ASSERT_TRUE(report);
    EXPECT_TRUE(report->elements.empty());
    EXPECT_TRUE(report->isWhole);
}

TEST(ElementStatusTest, IgnoresWhatLiesBehindItsOwnByteCount) {
    auto answer = TwoSlots();
    answer.resize(answer.size() + 50, 0xFF);
    EXPECT_EQ(DecodeElementStatus(answer, Slots())->elements.size(), 2U);
}

struct Lie {
    const char* what;
    size_t at;
    uint8_t byte;
    const char* refusal;
};

TEST(ElementStatusTest, RefusesAnswersThatContradictThemselves) {
    const Lie lies[] = {
        {"another type", 8, 0x04, "holds elements of type 4 instead of 2"},
        {"descriptors shorter than their tags", 11, 0x2F,
         "has 47 bytes for each element, fewer than its flags need"},
        {"descriptors without length", 11, 0x00, "has 0 bytes for each element, fewer than its flags need"},
        {"a page that ends within an element", 15, 0x67, "has a page that ends within an element"},
        {"a page with more elements than came", 14, 0x68, "promises more elements than it holds"},
    };
    for (const Lie& lie : lies) {
        auto answer = TwoSlots();
        answer[lie.at] = lie.byte;
        if (lie.at == 14) answer[15] = 0x00;  // 6800h bytes, 512 elements
        EXPECT_EQ(Refusal(DecodeElementStatus(answer, Slots())),
                  std::string("the answer to READ ELEMENT STATUS ") + lie.refusal)
            << lie.what;
    }
}

TEST(ElementStatusTest, RefusesAnswersThatEndWithinAHeader) {
    EXPECT_EQ(Refusal(DecodeElementStatus(Hex("04 00 00 02 00 00 00"), Slots())),
              "the answer to READ ELEMENT STATUS ends too early, after 7 bytes");
    EXPECT_EQ(Refusal(DecodeElementStatus(Hex("04 00 00 02 00 00 00 70 02 80"), Slots())),
              "the answer to READ ELEMENT STATUS ends within the header of a page");
}

TEST(ElementStatusTest, RefusesAnIdentifierThatIsLongerThanItsElement) {
    auto answer = OneDrive();
    answer[8 + 8 + 48 + 3] = 0x0D;
    EXPECT_EQ(Refusal(DecodeElementStatus(answer, Drives())),
              "the answer to READ ELEMENT STATUS has a drive identifier that reaches behind its element");
}

}  // namespace
}  // namespace embedded::attached
