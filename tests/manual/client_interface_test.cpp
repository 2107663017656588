#include "packaging/generate/client_interface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace krvcmd {
namespace {

using testing::SizeIs;

const std::string kRecord =
    "/** Addresses a\n"
    " * slot. */\n"
    "typedef struct SlotKey {\n"
    "    uint32_t size; /**< 8 */\n"
    "    /** the name,\n"
    "        as it is */\n"
    "    char name[4];\n"
    "} SlotKey;\n"
    "\n"
    "static_assert(sizeof(SlotKey) == 8, \"SlotKey is 8 bytes\");\n"
    "static_assert(offsetof(SlotKey, size) == 0, \"size at 0\");\n";
const std::string kLastAssertion = "static_assert(offsetof(SlotKey, name) == 4, \"name at 4\");\n";

TEST(ClientInterface, ReadsRecordsWithTheirFields) {
    const ClientInterface found = ReadClientInterface(kRecord + kLastAssertion);
    ASSERT_THAT(found.records, SizeIs(1));
    const ClientInterface::Record& record = found.records[0];
    EXPECT_EQ(record.name, "SlotKey");
    EXPECT_EQ(record.size, 8U);
    EXPECT_EQ(record.text, "Addresses a slot.");
    ASSERT_THAT(record.fields, SizeIs(2));
    EXPECT_EQ(record.fields[0].declaration, "uint32_t size");
    EXPECT_EQ(record.fields[0].text, "8");
    EXPECT_EQ(record.fields[1].declaration, "char name[4]");
    EXPECT_EQ(record.fields[1].offset, 4U);
    EXPECT_EQ(record.fields[1].text, "the name, as it is");
}

TEST(ClientInterface, ReadsFunctionsUnderTheirHeadings) {
    const ClientInterface found = ReadClientInterface(
        "/* ---- Looking ----- */\n"
        "\n"
        "/** Describes a slot. */\n"
        "KRV_API KrvBool KrvGetSlot(KrvCallContext* context,\n"
        "                           const SlotKey* key);\n");
    ASSERT_THAT(found.functions, SizeIs(1));
    EXPECT_EQ(found.functions[0].section, "Looking");
    EXPECT_EQ(found.functions[0].name, "KrvGetSlot");
    EXPECT_EQ(found.functions[0].prototype,
              "KrvBool KrvGetSlot(KrvCallContext* context, const SlotKey* key);");
    EXPECT_EQ(found.functions[0].text, "Describes a slot.");
}

TEST(ClientInterface, RefusesWhatIsNotDescribedOrNotAsserted) {
    EXPECT_THROW((void)ReadClientInterface(kRecord), std::runtime_error);
    EXPECT_THROW((void)ReadClientInterface("KRV_API KrvBool KrvGetSlot(KrvCallContext* context);\n"),
                 std::runtime_error);
    EXPECT_THROW((void)ReadClientInterface(
                     "/** A record. */\ntypedef struct SlotKey {\n    uint32_t size;\n} SlotKey;\n"),
                 std::runtime_error);
}

}  // namespace
}  // namespace krvcmd
