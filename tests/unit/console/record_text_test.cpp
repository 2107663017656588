#include "krvcmd/service/sdk/records.h"

#include <gtest/gtest.h>

namespace {

TEST(RecordText, EndsAtTheFirstNul) {
    const char field[8] = {'a', 'b', '\0', 'c', 'd', '\0', 'e', 'f'};
    EXPECT_EQ(krvcmd::RecordText(field), "ab");
}

TEST(RecordText, EndsWithTheFieldWhenThereIsNoNul) {
    const char field[4] = {'a', 'b', 'c', 'd'};
    EXPECT_EQ(krvcmd::RecordText(field), "abcd");
}

TEST(RecordText, IsEmptyWhenTheFieldBeginsWithANul) {
    const char field[4] = {'\0', 'b', 'c', 'd'};
    EXPECT_EQ(krvcmd::RecordText(field), "");
}

}  // namespace
