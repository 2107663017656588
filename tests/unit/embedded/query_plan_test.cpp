// No look-up goes through a table: its cost would grow with the farm.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "embedded/catalogue/enable_disable_rename.h"
#include "embedded/farms/farm_writer.h"
#include "embedded/model/farm.h"
#include "embedded/model/farm_words.h"
#include "embedded/operations/operation.h"
#include "embedded/simulated/mechanics/simulated_mechanics.h"
#include "embedded/store/database.h"
#include "embedded/store/farm_file.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

// The sources of what a call of the library runs.
std::vector<std::string> SourcesOfCalls() {
    std::vector<std::string> sources;
    for (const char* folder :
         {"catalogue", "journal", "library", "sessions", "simulated", "simulated/mechanics"}) {
        const std::filesystem::path path = std::filesystem::path(EMBEDDED_SOURCES) / folder;
        for (const auto& entry : std::filesystem::directory_iterator(path)) {
            if (entry.path().extension() != ".cpp") continue;
            std::ifstream file(entry.path());
            sources.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
        }
    }
    return sources;
}

std::vector<std::string> StatementsOf(const std::string& source) {
    static const std::string kBegin = "R\"sql(";
    static const std::string kEnd = ")sql\"";
    std::vector<std::string> statements;
    for (size_t begin = source.find(kBegin); begin != std::string::npos; begin = source.find(kBegin, begin)) {
        begin += kBegin.size();
        statements.push_back(source.substr(begin, source.find(kEnd, begin) - begin));
    }
    return statements;
}

// The lines of the plan that the database makes for a statement.
std::vector<std::string> PlanOf(embedded::Database& database, const std::string& statement) {
    std::vector<std::string> lines;
    sqlite3_stmt* prepared = nullptr;
    const std::string explained = "EXPLAIN QUERY PLAN " + statement;
    EXPECT_EQ(sqlite3_prepare_v2(database.GetConnection(), explained.c_str(), -1, &prepared, nullptr),
              SQLITE_OK)
        << statement;
    const embedded::StatementHandle plan(prepared);
    while (sqlite3_step(plan.get()) == SQLITE_ROW) {
        lines.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(plan.get(), 3)));
    }
    return lines;
}

class QueryPlan : public FarmFixture {
  protected:
    std::unique_ptr<embedded::Database> m_database = embedded::OpenFarm(".", [](embedded::Database&) {});
};

TEST_F(QueryPlan, EveryLookUpIsAnIndexSearch) {
    size_t statements = 0;
    size_t searches = 0;
    for (const std::string& source : SourcesOfCalls()) {
        for (const std::string& statement : StatementsOf(source)) {
            ++statements;
            for (const std::string& line : PlanOf(*m_database, statement)) {
                EXPECT_TRUE(line.starts_with("SEARCH ")) << statement << "\n  " << line;
                ++searches;
            }
        }
    }
    EXPECT_GT(statements, 45U);
    EXPECT_GT(searches, statements / 2);
}

// Else the test above would not see it.
TEST_F(QueryPlan, EveryStatementIsARawString) {
    const std::regex ordinary(R"re("\s*(SELECT|INSERT|UPDATE|DELETE|REPLACE|WITH)\b)re");
    for (const std::string& source : SourcesOfCalls()) {
        std::smatch match;
        EXPECT_FALSE(std::regex_search(source, match, ordinary)) << match.str();
    }
}

// A jukebox whose first magazine is missing, with a medium in every other of its slots. The second one has as
// many slots, all full, and three empty ones behind them.
embedded::Farm FarmWithAMissingMagazine(int32_t slots) {
    const auto blank = [](int32_t slot) {
        embedded::FarmMedium medium;
        medium.slot = slot;
        medium.type = 1;
        medium.sides.push_back(embedded::UsualSide(medium.type, embedded::Content::Blank, 0));
        return medium;
    };
    embedded::FarmMagazine missing;
    missing.slotCount = slots;
    missing.present = false;
    for (int32_t slot = 1; slot <= slots; slot += 2)
        missing.media.push_back(blank(slot));
    embedded::FarmMagazine present;
    present.slotCount = slots + 3;
    for (int32_t slot = 1; slot <= slots; ++slot)
        present.media.push_back(blank(slot));
    embedded::FarmJukebox jukebox;
    jukebox.id = 1;
    jukebox.name = "x";
    jukebox.magazines = {missing, present};
    jukebox.waiting = {blank(0)};
    embedded::Farm farm;
    farm.jukeboxes.push_back(jukebox);
    return farm;
}

int CountStep(void* steps) {
    ++*static_cast<int64_t*>(steps);
    return 0;
}

// The database's own steps of an import and of an export that name no slot.
int64_t StepsOfMovingWithoutASlot(int32_t slotsOfTheMissingMagazine) {
    const std::string server = "slots" + std::to_string(slotsOfTheMissingMagazine);
    const auto database = embedded::OpenFarm(server, [&](embedded::Database& empty) {
        embedded::WriteFarm(empty, server, FarmWithAMissingMagazine(slotsOfTheMissingMagazine));
    });
    int64_t steps = 0;
    sqlite3_progress_handler(database->GetConnection(), 1, &CountStep, &steps);
    const SlotKey anySlot{sizeof(SlotKey), 1, -1, -1};
    const std::string firstEmpty = std::to_string(slotsOfTheMissingMagazine + 1);
    EXPECT_EQ(RunSimulated(*database, *embedded::ImportOperation(anySlot)).change.words,
              "imported: x\\2\\" + firstEmpty + " (blank CD-R)");
    EXPECT_EQ(RunSimulated(*database, *embedded::ExportOperation(anySlot)).change.words,
              "exported: x\\2\\1 (blank CD-R)");
    return steps;
}

TEST_F(QueryPlan, MissingAndFullSlotsCostAMoveWithoutASlotNothing) {
    const int64_t few = StepsOfMovingWithoutASlot(4);
    const int64_t many = StepsOfMovingWithoutASlot(4'000);
    EXPECT_GT(few, 100) << "they are counted";
    EXPECT_LT(many, few + 50);
}

// One volume set on the media of a whole magazine.
embedded::Farm FarmWithOneVolume(int32_t sides) {
    embedded::FarmMagazine magazine;
    magazine.slotCount = sides;
    for (int32_t slot = 1; slot <= sides; ++slot) {
        embedded::FarmMedium medium;
        medium.slot = slot;
        medium.type = 1;
        medium.sides.push_back(embedded::UsualSide(medium.type, embedded::Content::FileSystem, 7));
        medium.sides.back().part = slot;
        magazine.media.push_back(medium);
    }
    embedded::FarmVolume volume;
    volume.id = 7;
    volume.type = embedded::VolumeType::VolumeSet;
    embedded::FarmJukebox jukebox;
    jukebox.id = 1;
    jukebox.name = "x";
    jukebox.magazines.push_back(magazine);
    embedded::Farm farm;
    farm.jukeboxes.push_back(jukebox);
    farm.volumes.push_back(volume);
    return farm;
}

// The database's own steps of disabling that magazine.
int64_t StepsOfDisabling(int32_t sides) {
    const std::string server = "sides" + std::to_string(sides);
    const auto database = embedded::OpenFarm(server, [&](embedded::Database& empty) {
        embedded::WriteFarm(empty, server, FarmWithOneVolume(sides));
    });
    int64_t steps = 0;
    sqlite3_progress_handler(database->GetConnection(), 1, &CountStep, &steps);
    const MagazineKey key{sizeof(MagazineKey), 1, 0};
    EXPECT_EQ(embedded::EnableMagazine(*database, key, embedded::Enabled::No),
              "disabled: magazine 1 of jukebox \"x\"");
    return steps;
}

TEST_F(QueryPlan, DisabledMagazineCostsNoMoreThanItHasSides) {
    const int64_t few = StepsOfDisabling(100);
    const int64_t many = StepsOfDisabling(1'000);
    EXPECT_GT(few, 1'000) << "they are counted";
    EXPECT_LT(many, 12 * few);
}

TEST_F(QueryPlan, AScanWouldBeNoticed) {
    const std::vector<std::string> plan = PlanOf(*m_database, "SELECT id FROM volume WHERE label = 'x'");
    ASSERT_EQ(plan.size(), 1U);
    EXPECT_FALSE(plan[0].starts_with("SEARCH "));
}

}  // namespace
}  // namespace embedded_test
