// Messages as bytes; the examples are those of the page for other implementations.
#include <gtest/gtest.h>

#include <fstream>
#include <limits>
#include <sstream>
#include <string>

#include "embedded/model/strings.h"
#include "embedded/remote/protocol/ahead.h"
#include "embedded/remote/protocol/fields.h"
#include "embedded/remote/protocol/frame.h"
#include "embedded/remote/protocol/limits.h"
#include "embedded/remote/protocol/messages.h"
#include "embedded/remote/protocol/sequence.h"

namespace embedded::remote {
namespace {

std::string Hex(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes)
        text += HexDigits(byte);
    return text;
}

std::string Bytes(std::string_view hex) {
    std::string bytes;
    for (size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += ByteOfHexDigits(hex.substr(i, 2)).value();
    return bytes;
}

// The page without blanks and line breaks.
std::string ReadPage() {
    std::ifstream file(KRVCMD_PROTOCOL_PAGE);
    std::string page;
    for (char c = 0; file.get(c);) {
        if (c != ' ' && c != '\n') page += c;
    }
    return page;
}

TEST(RemoteProtocolTest, PageShowsTheBytesOfAGreeting) {
    const std::string bytes = Hex(Framed(ToMessage(Hello{1, 1, "1.0.0", {"ahead"}})));
    EXPECT_EQ(bytes,
              "00000029a368666561747572657381656168656164666b7276636d648201016772656c6561736565312e302e30");
    EXPECT_NE(ReadPage().find(bytes), std::string::npos);
}

TEST(RemoteProtocolTest, PageShowsTheBytesOfARequest) {
    Request request;
    request.number = 2;
    request.function = "KrvVolumeDetail";
    request.arguments = {33};
    request.ahead = 1;
    const std::string bytes = Hex(Framed(ToMessage(request)));
    EXPECT_EQ(bytes,
              "00000028a46561686561640164"
              "63616c6c6f4b7276566f6c756d6544657461696c616e026477697468811821");
    EXPECT_NE(ReadPage().find(bytes), std::string::npos);
}

TEST(RemoteProtocolTest, PageShowsTheBytesOfAFailure) {
    Answer answer;
    answer.number = 2;
    answer.failure = {1105, "No"};
    const std::string bytes = Hex(Framed(ToMessage(answer)));
    EXPECT_EQ(bytes,
              "0000001ba3676661696c757265821904514"
              "24e6f616e0266726573756c7480");
    EXPECT_NE(ReadPage().find(bytes), std::string::npos);
}

TEST(RemoteProtocolTest, MessagesComeOutAsTheyWentIn) {
    Request request;
    request.number = std::numeric_limits<uint64_t>::max();
    request.function = "KrvVolumeSetAspects";
    request.arguments = {33, BytesOf("\xFF\x01 name")};
    request.change = 7;
    const Request same = RequestFrom(DecodeCbor(EncodeCbor(ToMessage(request))));
    EXPECT_EQ(same.number, request.number);
    EXPECT_EQ(same.function, request.function);
    EXPECT_EQ(same.arguments, request.arguments);
    EXPECT_EQ(same.change, 7U);
    EXPECT_EQ(same.ahead, 0U);
}

TEST(RemoteProtocolTest, RecordsComeOutAsTheyWentIn) {
    VolumeRecord record{};
    record.size = sizeof(record);
    record.type = 2;
    record.state = std::numeric_limits<uint32_t>::max();
    record.libraryValue1 = -1;
    std::memset(record.fileSystem, 'f', sizeof(record.fileSystem));  // no NUL
    std::memcpy(record.label, "L\xFF", 3);
    record.totalCapacity = std::numeric_limits<uint64_t>::max();
    record.freeCapacity = 5;
    record.libraryValue2 = 6;
    const json list = DecodeCbor(EncodeCbor(ListOf(record)));
    FieldReader fields(list);
    const auto same = Take<VolumeRecord>(fields);
    EXPECT_EQ(std::memcmp(&same, &record, sizeof(record)), 0);
    EXPECT_TRUE(fields.IsAtEnd());
}

TEST(RemoteProtocolTest, FieldsThatDoNotFitAreRefused) {
    for (const json& list :
         {json::array({json::array()}), json::array({1.5}), json::array({"3"}),
          json::array({int64_t{1} << 40}), json::array({-int64_t{1} << 40}), json::array()}) {
        FieldReader fields(list);
        EXPECT_THROW((void)fields.Number<int32_t>(), ProtocolFailure) << list;
    }
    const json negative = json::array({-1});
    FieldReader fields(negative);
    EXPECT_THROW((void)fields.Number<uint32_t>(), ProtocolFailure);
    const json longText = json::array({BytesOf("12345")});
    FieldReader text(longText);
    char field[4];
    EXPECT_THROW(text.Text(field), ProtocolFailure);
}

TEST(RemoteProtocolTest, ValuesThatCannotBeMessagesAreRefused) {
    for (const char* hex : {"",
                            "18",
                            "82",
                            "8201",
                            "a1",
                            "a161",
                            "43ffff",
                            "5f41614162ff",
                            "9f01ff",
                            "bf616101ff",
                            "c001",
                            "d9d9f700",
                            "0000",
                            "ff",
                            "1c",
                            "9b7fffffffffffffff",
                            "5bffffffffffffffff",
                            "bb7fffffffffffffff",
                            "bbffffffffffffffff",
                            "a10101"}) {
        EXPECT_THROW((void)DecodeCbor(Bytes(hex)), ProtocolFailure) << hex;
    }
}

TEST(RemoteProtocolTest, DeepValuesAreRefused) {
    std::string bytes(kMaxDepth, '\x81');
    EXPECT_NO_THROW((void)DecodeCbor(bytes + '\x01'));
    EXPECT_THROW((void)DecodeCbor(bytes + "\x81\x01"), ProtocolFailure);
    EXPECT_THROW((void)DecodeCbor(std::string(kLongestRequest, '\x81')), ProtocolFailure);
    EXPECT_THROW((void)DecodeCbor(std::string(kLongestRequest, '\x5F')), ProtocolFailure);
}

TEST(RemoteProtocolTest, FramesMayArriveByteByByte) {
    const std::string bytes = Framed(json{{"n", 1}}) + Framed(json{{"n", 2}});
    FrameReader reader(kLongestRequest);
    int count = 0;
    for (const char byte : bytes) {
        reader.Append({&byte, 1});
        while (const auto message = reader.Next())
            EXPECT_EQ((*message)["n"], ++count);
    }
    EXPECT_EQ(count, 2);
    EXPECT_FALSE(reader.HasPartialMessage());
}

TEST(RemoteProtocolTest, LongFramesAreRefusedBeforeTheyArrive) {
    FrameReader reader(kLongestRequest);
    reader.Append(Bytes("00010001"));
    EXPECT_THROW((void)reader.Next(), ProtocolFailure);
}

TEST(RemoteProtocolTest, PageShowsTheBytesOfSidesThatWereReadAhead) {
    Ahead ahead;
    ahead.sides.resize(2);
    ahead.sides[0].key = {sizeof(SideKey), 1, 2, 3, 1};
    ahead.sides[0].record = {sizeof(SideRecord), 2, 0, 0, -1};
    ahead.sides[0].failure = {1105, "No"};
    ahead.sides[1].key = {sizeof(SideKey), 1, 2, 4, 0};
    ahead.sides[1].record = {sizeof(SideRecord), 6, 255, 2, 1033};
    const std::string bytes = Hex(EncodeCbor(ToMessage(ahead)));
    EXPECT_EQ(bytes,
              "a1657369646573581a0102030102000020190451424e6f"
              "010204000618ff0219040900");
    EXPECT_NE(ReadPage().find(bytes), std::string::npos);

    const Ahead same = AheadFrom(ToMessage(ahead));
    ASSERT_EQ(same.sides.size(), 2U);
    EXPECT_EQ(same.sides[0].failure->code, 1105);
    EXPECT_EQ(same.sides[0].failure->text, "No");
    EXPECT_FALSE(same.sides[1].failure.has_value());
    EXPECT_EQ(same.sides[1].key.slot, 4);
    EXPECT_EQ(same.sides[0].record.volumeId, -1);
    EXPECT_EQ(same.sides[1].record.volumeId, 1033);
}

TEST(RemoteProtocolTest, VolumesThatAreReadAheadCountTheirLocations) {
    Ahead ahead;
    ahead.volumes.resize(2);
    ahead.volumes[0].id = 8;
    ahead.volumes[0].aspects = "a\nb";
    ahead.volumes[0].places = {{sizeof(SideKey), 1, 2, 3, 0}, {sizeof(SideKey), 1, 2, 3, 1}};
    ahead.volumes[1].id = 9;
    const Ahead same = AheadFrom(ToMessage(ahead));
    ASSERT_EQ(same.volumes.size(), 2U);
    EXPECT_EQ(same.volumes[0].aspects, "a\nb");
    ASSERT_EQ(same.volumes[0].places.size(), 2U);
    EXPECT_EQ(same.volumes[0].places[1].side, 1);
    EXPECT_EQ(same.volumes[1].id, 9U);
    EXPECT_TRUE(same.volumes[1].places.empty());
}

TEST(RemoteProtocolTest, MoreLocationsThanThereAreAreRefused) {
    SequenceWriter volume;
    volume.Number(8);
    Put(volume, VolumeRecord{});
    volume.Text(std::string_view());
    volume.Number(4'000'000'000);
    EXPECT_THROW((void)AheadFrom({{"volumes", std::move(volume).Take()}}), ProtocolFailure);
}

TEST(RemoteProtocolTest, FieldsOfASequenceComeOutAsTheyWentIn) {
    SequenceWriter written;
    const auto numbers = {int64_t{0},
                          int64_t{23},
                          int64_t{24},
                          int64_t{255},
                          int64_t{256},
                          int64_t{65535},
                          int64_t{65536},
                          int64_t{1} << 32,
                          (int64_t{1} << 32) - 1,
                          int64_t{-1},
                          int64_t{-24},
                          int64_t{-25},
                          int64_t{-257},
                          std::numeric_limits<int64_t>::min(),
                          std::numeric_limits<int64_t>::max()};
    for (const int64_t number : numbers)
        written.Number(number);
    written.Number(std::numeric_limits<uint64_t>::max());
    written.Text("\xFF\x01 name");
    const json message = std::move(written).Take();
    SequenceReader fields(TextOf(message));
    for (const int64_t number : numbers)
        EXPECT_EQ(fields.Number<int64_t>(), number);
    EXPECT_EQ(fields.Number<uint64_t>(), std::numeric_limits<uint64_t>::max());
    EXPECT_EQ(fields.Text(), "\xFF\x01 name");
    EXPECT_TRUE(fields.IsAtEnd());
    // The same numbers, as the library writes them.
    std::string expected;
    for (const int64_t number : numbers)
        expected += EncodeCbor(number);
    EXPECT_TRUE(TextOf(message).starts_with(expected));
}

TEST(RemoteProtocolTest, FieldsOfASequenceThatDoNotFitAreRefused) {
    // Nothing, half a number, a text where a number is wanted, true, an array, a length left open, and too
    // large.
    for (const char* hex :
         {"", "18", "4161", "f5", "8101", "1f", "1a80000000", "3a80000000", "3bffffffffffffffff"}) {
        const std::string bytes = Bytes(hex);
        SequenceReader fields(bytes);
        EXPECT_THROW((void)fields.Number<int32_t>(), ProtocolFailure) << hex;
    }
    for (const char* hex : {"", "41", "01", "6161", "5f4161ff", "5bffffffffffffffff"}) {
        const std::string bytes = Bytes(hex);
        SequenceReader fields(bytes);
        EXPECT_THROW((void)fields.Text(), ProtocolFailure) << hex;
    }
    const std::string fiveBytes = Bytes("453132333435");
    SequenceReader fields(fiveBytes);
    char field[4];
    EXPECT_THROW(fields.Text(field), ProtocolFailure);
    const std::string negative = Bytes("20");
    EXPECT_THROW((void)SequenceReader(negative).Number<uint32_t>(), ProtocolFailure);
}

TEST(RemoteProtocolTest, VolumesInARowMustRise) {
    Ahead ahead;
    ahead.volumes.resize(2);
    ahead.volumes[0].id = 2;
    ahead.volumes[1].id = 2;
    EXPECT_NO_THROW((void)AheadFrom(ToMessage(ahead)));
    ahead.areVolumesInRow = true;
    EXPECT_THROW((void)AheadFrom(ToMessage(ahead)), ProtocolFailure);
}

TEST(RemoteProtocolTest, GreetingsOfLaterReleasesAreUnderstood) {
    const Hello hello = HelloFrom(json{{"krvcmd", {1, 9, 3}},
                                       {"release", "9.0"},
                                       {"features", {"ahead", 7, "telepathy"}},
                                       {"mood", "good"}});
    EXPECT_EQ(hello.highest, 9U);
    EXPECT_EQ(hello.features, (std::vector<std::string>{"ahead", "telepathy"}));
}

}  // namespace
}  // namespace embedded::remote
