#include "tests/unit/embedded/platform/farm_work.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/unit/embedded/platform/farm_probe.h"
#include "tests/unit/embedded/support/client.h"

namespace embedded_test {
namespace {

std::string NameOfWrite(int write) {
    return "write\\" + std::to_string(write);
}

// The n-th write sets the directory name of one of these.
const std::vector<uint32_t>& Targets() {
    static const std::vector<uint32_t> targets = {1,   2,   3,   5,   6,   9,   10,  33,  34,  101,
                                                  102, 103, 104, 105, 106, 107, 108, 111, 112, 113};
    return targets;
}

uint32_t TargetOf(int write) {
    return Targets()[static_cast<size_t>(write) % Targets().size()];
}

}  // namespace

int MoveAtRandom(unsigned seed, int steps, const std::function<void()>& afterEach) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<int32_t> magazine(0, 2);
    std::uniform_int_distribution<int32_t> slot(0, 5);
    Client client;
    if (!client.GetOpening().ok) return 1;
    for (int step = 0; step < steps; ++step) {
        const Slot place{29, magazine(random), slot(random)};
        const Outcome outcome = step % 2 == 0 ? client.Import(place) : client.Export(place);
        if (!outcome.ok && outcome.code != 501 && outcome.code != 502) return 2;
        afterEach();
    }
    return 0;
}

std::string MediaOf(const std::filesystem::path& farm) {
    return ReadText(farm,
                    "SELECT group_concat(id || ':' || type) FROM (SELECT id, type FROM medium ORDER BY id)");
}

void ExpectMediaInTheirPlaces(const std::filesystem::path& farm) {
    EXPECT_EQ(ReadNumber(farm,
                         "SELECT count(*) - count(DISTINCT place || '/' || jukebox || '/' || "
                         "magazine || '/' || slot) FROM medium"),
              0);
    EXPECT_EQ(
        ReadNumber(
            farm,
            "SELECT count(*) FROM slot s LEFT JOIN medium d ON d.place = 1 AND d.jukebox = s.jukebox AND "
            "d.magazine = s.magazine AND d.slot = s.number WHERE s.jukebox = 29 AND (s.state = 4) <> "
            "(d.id IS NOT NULL)"),
        0)
        << "a slot is full exactly when a medium is in it";
    EXPECT_EQ(ReadText(farm, "PRAGMA integrity_check"), "ok");
}

int WriteNames(const std::function<void()>& acknowledged) {
    Client client;
    for (int write = 0; write < kWrites; ++write) {
        if (!client.SetDirectory(TargetOf(write), NameOfWrite(write)).ok) return 1;
        acknowledged();
    }
    return 0;
}

void ExpectExactlyTheAcknowledgedWrites(int acknowledged) {
    Client after;
    ASSERT_TRUE(after.GetOpening().ok) << Describe(after.GetOpening());
    for (const uint32_t volume : Targets()) {
        std::vector<std::string> aspects;
        ASSERT_TRUE(after.Aspects(volume, aspects).ok);
        const std::string name = aspects.empty() ? "" : aspects[0];
        std::string expected;
        for (int write = 0; write < acknowledged; ++write) {
            if (TargetOf(write) == volume) expected = NameOfWrite(write);
        }
        if (acknowledged < kWrites && TargetOf(acknowledged) == volume && name == NameOfWrite(acknowledged)) {
            continue;
        }
        if (expected.empty()) {
            EXPECT_FALSE(name.starts_with("write\\")) << volume << ": " << name;
        } else {
            EXPECT_EQ(name, expected) << volume;
        }
    }
}

}  // namespace embedded_test
