// Not on Windows: the peak of a process's memory comes from getrusage.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <string>

#include "embedded/layout/layout_reader.h"

namespace embedded_test {
namespace {

// The most memory that this process has used, in bytes.
int64_t PeakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return int64_t{usage.ru_maxrss} * 1024;
}

TEST(LayoutMemory, LargeFarmTakesLittleMoreThanItsText) {
    constexpr int kVolumes = 100'000;
    std::string text = "format = 1\nvolume = [\n";
    for (int volume = 1; volume <= kVolumes; ++volume) {
        const std::string number = std::to_string(volume);
        text += "  { id = " + number + ", label = \"Disc-" + number +
                "\", file_system = \"UDF 2.01\", total = " + number + "000, free = " + number +
                ", directories = [\"archive\\\\Jukebox 001\\\\" + number + "\"] },\n";
    }
    text += "]\n";
    const int64_t before = PeakMemory();
    const embedded::LayoutResult layout = embedded::ReadLayout(text);
    ASSERT_TRUE(layout.problems.empty());
    ASSERT_EQ(layout.farm.volumes.size(), size_t{kVolumes});
    EXPECT_LT(PeakMemory() - before, 6 * static_cast<int64_t>(text.size()));
}

}  // namespace
}  // namespace embedded_test
