#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/model/refusal.h"
#include "embedded/store/farm_file.h"
#include "embedded/store/statement.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

using embedded::FindValue;
using embedded::FindValues;
using embedded::Sql;
using embedded::Statement;

class Statements : public FarmFixture {
  protected:
    int CountPrepared() {
        int count = 0;
        sqlite3_stmt* statement = nullptr;
        while ((statement = sqlite3_next_stmt(m_database->GetConnection(), statement)) != nullptr)
            ++count;
        return count;
    }

    std::unique_ptr<embedded::Database> m_database = embedded::OpenFarm(".", [](embedded::Database&) {});
};

TEST_F(Statements, ReadsTheColumnsOfEachRowInOrder) {
    Statement row(*m_database, "SELECT * FROM (VALUES (1, 'a', 0.5), (2, 'b', 0.25))");
    ASSERT_TRUE(row.Next());
    int32_t number = 0;
    std::string text;
    double fraction = 0;
    row >> number >> text >> fraction;
    EXPECT_EQ(number, 1);
    EXPECT_EQ(text, "a");
    EXPECT_EQ(fraction, 0.5);
    ASSERT_TRUE(row.Next());
    const auto [second, letter] = row.Read<int64_t, std::string>();
    EXPECT_EQ(second, 2);
    EXPECT_EQ(letter, "b");
    EXPECT_FALSE(row.Next());
}

TEST_F(Statements, GivesBackWhatWasBound) {
    const std::string bytes("a\0\xFF", 3);
    Statement row(*m_database, "SELECT ?1, ?2, ?3, ?4, ?5", bytes, std::string_view(), true, 1.5,
                  std::optional<int32_t>(-7));
    ASSERT_TRUE(row.Next());
    EXPECT_EQ(row.Read<std::string>(), bytes);
    EXPECT_EQ(row.Read<std::optional<std::string>>(), "") << "an empty text is not null";
    EXPECT_TRUE(row.Read<bool>());
    EXPECT_EQ(row.Read<double>(), 1.5);
    EXPECT_EQ(row.Read<std::optional<int32_t>>(), -7);
}

TEST_F(Statements, NullIsNothingAndTheColumnBehindItIsReadNext) {
    Statement row(*m_database, "SELECT ?1, 5", std::optional<int64_t>());
    ASSERT_TRUE(row.Next());
    EXPECT_EQ(row.Read<std::optional<int64_t>>(), std::nullopt);
    EXPECT_EQ(row.Read<int64_t>(), 5);
}

TEST_F(Statements, ValueOfNoRowIsNothing) {
    EXPECT_EQ(FindValue<int32_t>(*m_database, "SELECT id FROM jukebox"), std::nullopt);
    EXPECT_EQ(FindValue<int32_t>(*m_database, "SELECT max(id) FROM jukebox"), std::nullopt);
    EXPECT_EQ(FindValues<int32_t>(*m_database, "VALUES (3), (1), (2)"), (std::vector<int32_t>{3, 1, 2}));
}

TEST_F(Statements, IsPreparedOnce) {
    static constexpr Sql kSquare = "SELECT ?1 * ?1";
    const int before = CountPrepared();
    for (int32_t number = 1; number <= 3; ++number)
        EXPECT_EQ(FindValue<int32_t>(*m_database, kSquare, number), number * number);
    EXPECT_EQ(CountPrepared(), before + 1);
}

TEST_F(Statements, FailureIsARefusal) {
    EXPECT_THROW(embedded::Run(*m_database, "SELECT nothing FROM nowhere"), embedded::Refusal);
}

#ifndef _WIN32
TEST_F(Statements, PathThatLooksLikeAnAddressIsAPath) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_home.GetFolder());
    const std::filesystem::path folder = "file:farms?mode=x";
    std::filesystem::create_directory(folder);
    std::ofstream(folder / "farm.db").close();
    embedded::Database database(folder / "farm.db");
    database.Execute("CREATE TABLE written (id INTEGER)");
    EXPECT_GT(std::filesystem::file_size(folder / "farm.db"), 0U);
    std::filesystem::current_path(before);
}
#endif

}  // namespace
}  // namespace embedded_test
