#pragma once

#include <string>
#include <string_view>

#include "krvcmd/service/query/query_walks.h"
#include "tests/support/service_fixture.h"

namespace krvcmd::test {

// A test of the walks that fill a query's table. All columns are there while rows are added; they are
// shown in the order in which they were added.
class QueryWalksTest : public ServiceTest {
  protected:
    QueryWalksTest() {
        EXPECT_TRUE(m_table.SetColumnLetters("SDMIJNLmdsaCRPFnlvftxXzyYo"));
        EXPECT_TRUE(m_table.SetSortLetters(""));
        m_table.SetFormatted(false);
        m_table.SetSeparator(",");
    }

    QueryWalks& Walks() { return m_walks; }

    // The rows so far, with the columns of the letters only.
    std::string Rows(std::string_view letters) {
        EXPECT_TRUE(m_table.SetColumnLetters(letters));
        testing::internal::CaptureStdout();
        m_table.Print();
        EXPECT_TRUE(m_table.Finish().IsOk());
        return testing::internal::GetCapturedStdout();
    }

  private:
    Ostrel::UI::Console::CKrvQueryTable m_table;
    QueryWalks m_walks{m_table};
};

}  // namespace krvcmd::test
