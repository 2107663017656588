// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include "embedded/attached/changer/drive_matching.h"

#include <gtest/gtest.h>

#include "tests/unit/attached/hex.h"

namespace embedded::attached {
namespace {

Identity Drive(const std::string& serialNumber, std::vector<Designator> designators = {}) {
    return {
        {DeviceType::Optical, 0, true, "MAKER", "BD WRITER", "1.0"}, serialNumber, std::move(designators)};
}

Element ElementWith(uint16_t address, const std::vector<uint8_t>& identifier, bool isCut = false) {
    Element element;
    element.type = ElementType::Drive;
    element.address = address;
    element.driveIdentifier = DriveIdentifier{2, 1, identifier, isCut};
    return element;
}

// Vendor in 8 characters, product in 16, serial number.
std::vector<uint8_t> FullIdentifier(const std::string& serialNumber) {
    return Joined({Padded("MAKER", 8), Padded("BD WRITER", 16), Padded(serialNumber, 10)});
}

DriveMatch MatchOne(const Element& element, const std::vector<Identity>& candidates) {
    return MatchDrives({{element}}, candidates).at(0).at(0);
}

TEST(DriveMatchingTest, KnowsADriveByAnIdentifierThatItHas) {
    const Designator naa{1, 3, 0, Hex("50 01 02 03 04 05 06 07")};
    const DriveMatch match = MatchOne(ElementWith(256, naa.bytes), {Drive("A"), Drive("B", {naa})});
    EXPECT_EQ(match.evidence, Evidence::Identifier);
    EXPECT_EQ(match.drives, std::vector<size_t>{1});
}

TEST(DriveMatchingTest, KnowsNoDriveByTheIdentifierOfItsPort) {
    const Designator port{1, 3, 1, Hex("50 01 02 03 04 05 06 07")};
    EXPECT_EQ(MatchOne(ElementWith(256, port.bytes), {Drive("B", {port})}).evidence, Evidence::None);
}

TEST(DriveMatchingTest, KnowsADriveByVendorProductAndSerialNumber) {
    const DriveMatch match = MatchOne(ElementWith(256, FullIdentifier("S2")), {Drive("S1"), Drive("S2")});
    EXPECT_EQ(match.evidence, Evidence::Identifier);
    EXPECT_EQ(match.drives, std::vector<size_t>{1});
    // Or with the serial number at the right end of its field.
    EXPECT_EQ(MatchOne(ElementWith(256, FullIdentifier("        S2")), {Drive("S1"), Drive("S2")}).drives,
              std::vector<size_t>{1});
}

TEST(DriveMatchingTest, KnowsADriveByItsSerialNumberAlone) {
    const DriveMatch match = MatchOne(ElementWith(256, Padded("S2", 10)), {Drive("S1"), Drive("S2")});
    EXPECT_EQ(match.evidence, Evidence::SerialNumber);
    EXPECT_EQ(match.drives, std::vector<size_t>{1});
}

TEST(DriveMatchingTest, TakesNoPartOfASerialNumberForIt) {
    EXPECT_EQ(MatchOne(ElementWith(256, Padded("S2", 10)), {Drive("S21"), Drive("XS2")}).evidence,
              Evidence::None);
    EXPECT_EQ(MatchOne(ElementWith(256, {}), {Drive("")}).evidence, Evidence::None);
    EXPECT_EQ(MatchOne(ElementWith(256, Padded("", 10)), {Drive("")}).evidence, Evidence::None);
}

TEST(DriveMatchingTest, GivesNoDriveToAnElementWithoutIdentifier) {
    Element element;
    element.type = ElementType::Drive;
    EXPECT_EQ(MatchOne(element, {Drive("S1")}).evidence, Evidence::None);
}

TEST(DriveMatchingTest, ListsEveryWayToADrive) {
    EXPECT_EQ(
        MatchOne(ElementWith(256, FullIdentifier("S1")), {Drive("S1"), Drive("S2"), Drive("S1")}).drives,
        (std::vector<size_t>{0, 2}));
}

TEST(DriveMatchingTest, MatchesNothingWhereDrivesCannotBeToldApart) {
    const Identity one = Drive("0000", {{1, 3, 0, Hex("01")}});
    const Identity other = Drive("0000", {{1, 3, 0, Hex("02")}});
    EXPECT_EQ(MatchOne(ElementWith(256, FullIdentifier("0000")), {one, other}).evidence, Evidence::None);
}

TEST(DriveMatchingTest, MatchesNothingWhereAChangerNamesADriveTwice) {
    const auto matches = MatchDrives(
        {{ElementWith(256, FullIdentifier("S1")), ElementWith(257, FullIdentifier("S1"))}}, {Drive("S1")});
    EXPECT_EQ(matches.at(0).at(0).evidence, Evidence::None);
    EXPECT_EQ(matches.at(0).at(1).evidence, Evidence::None);
}

TEST(DriveMatchingTest, TakesAPartOfAnIdentifierWhenOneDriveIsLeftForIt) {
    const std::vector<Element> elements = {ElementWith(256, FullIdentifier("S1")),
                                           ElementWith(257, FullIdentifier("S"), true)};
    const auto matches = MatchDrives({elements}, {Drive("S1"), Drive("S2")});
    EXPECT_EQ(matches.at(0).at(0).drives, std::vector<size_t>{0});
    EXPECT_EQ(matches.at(0).at(1).evidence, Evidence::PartOfIdentifier);
    EXPECT_EQ(matches.at(0).at(1).drives, std::vector<size_t>{1});
    EXPECT_EQ(MatchDrives({elements}, {Drive("S1"), Drive("S2"), Drive("S3")}).at(0).at(1).evidence,
              Evidence::None);
    EXPECT_EQ(MatchDrives({elements}, {Drive("S1"), Drive("T2")}).at(0).at(1).evidence, Evidence::None);
}

TEST(DriveMatchingTest, LeavesThePartOfAnIdentifierNoDriveThatAnotherChangerNames) {
    const std::vector<Element> first = {ElementWith(256, FullIdentifier("S"), true)};
    const std::vector<Element> second = {ElementWith(256, FullIdentifier("S2"))};
    const auto matches = MatchDrives({first, second}, {Drive("S2")});
    EXPECT_EQ(matches.at(0).at(0).evidence, Evidence::None);
    EXPECT_EQ(matches.at(1).at(0).evidence, Evidence::Identifier);
}

TEST(DriveMatchingTest, MatchesAChangerThatIsReachedInTwoWaysTwice) {
    const std::vector<Element> elements = {ElementWith(256, FullIdentifier("S1"))};
    const auto matches = MatchDrives({elements, elements}, {Drive("S1")});
    EXPECT_EQ(matches.at(0).at(0).drives, std::vector<size_t>{0});
    EXPECT_EQ(matches.at(1).at(0).drives, std::vector<size_t>{0});
}

}  // namespace
}  // namespace embedded::attached
