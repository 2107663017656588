// No look-up goes through a table: its cost would grow with the farm.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "simulator/store/database.h"
#include "simulator/store/farm_file.h"
#include "simulator/store/sql.h"
#include "tests/unit/simulator/support/farm_home.h"

namespace simulator_test {
namespace {

// The lines of the plan that the database makes for a statement.
std::vector<std::string> PlanOf(krvsim::Database& database, const std::string& statement) {
    std::vector<std::string> lines;
    const krvsim::StatementHandle plan = database.Prepare("EXPLAIN QUERY PLAN " + statement);
    while (sqlite3_step(plan.get()) == SQLITE_ROW) {
        lines.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(plan.get(), 3)));
    }
    return lines;
}

class QueryPlan : public FarmTest {
  protected:
    std::unique_ptr<krvsim::Database> m_database = krvsim::OpenFarm(".", [](krvsim::Database&) {});
};

TEST_F(QueryPlan, EveryLookUpIsAnIndexSearch) {
    size_t searches = 0;
    for (const char* statement : krvsim::SqlTexts()) {
        for (const std::string& line : PlanOf(*m_database, statement)) {
            EXPECT_TRUE(line.starts_with("SEARCH ")) << statement << "\n  " << line;
            ++searches;
        }
    }
    EXPECT_GT(searches, krvsim::kSqlCount / 2);
}

TEST_F(QueryPlan, AScanWouldBeNoticed) {
    const std::vector<std::string> plan = PlanOf(*m_database, "SELECT id FROM volume WHERE label = 'x'");
    ASSERT_EQ(plan.size(), 1U);
    EXPECT_FALSE(plan[0].starts_with("SEARCH "));
}

TEST_F(QueryPlan, EveryStatementHasAText) {
    for (const char* statement : krvsim::SqlTexts()) {
        ASSERT_NE(statement, nullptr);
        EXPECT_NO_THROW((void)m_database->Prepare(statement)) << statement;
    }
}

}  // namespace
}  // namespace simulator_test
