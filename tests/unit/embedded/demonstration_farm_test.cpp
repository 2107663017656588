// The demonstration farm shows one of everything, and contradicts itself nowhere.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "embedded/farms/servers.h"
#include "embedded/layout/contradictions.h"
#include "embedded/layout/layout_reader.h"
#include "embedded/model/media_types.h"

namespace embedded_test {
namespace {

using embedded::Content;
using embedded::Farm;
using embedded::FarmJukebox;
using embedded::FarmMagazine;
using embedded::FarmMedium;
using embedded::FarmSide;
using embedded::FarmVolume;
using embedded::Finalization;
using embedded::SlotState;

class DemonstrationFarm : public testing::Test {
  protected:
    DemonstrationFarm() {
        for (const FarmJukebox& jukebox : m_farm.jukeboxes) {
            Collect(jukebox.waiting);
            Collect(jukebox.exported);
            for (const FarmMagazine& magazine : jukebox.magazines)
                Collect(magazine.media);
        }
        Collect(m_farm.shelf);
    }

    void Collect(const std::vector<FarmMedium>& media) {
        m_media.insert(m_media.end(), media.begin(), media.end());
    }

    template <typename Condition>
    bool AnyJukebox(const Condition& condition) const {
        return std::ranges::any_of(m_farm.jukeboxes, condition);
    }
    template <typename Condition>
    bool AnyMedium(const Condition& condition) const {
        return std::ranges::any_of(m_media, condition);
    }
    template <typename Condition>
    bool AnySide(const Condition& condition) const {
        return AnyMedium(
            [&](const FarmMedium& medium) { return std::ranges::any_of(medium.sides, condition); });
    }
    template <typename Condition>
    bool AnyVolume(const Condition& condition) const {
        return std::ranges::any_of(m_farm.volumes, condition);
    }

    embedded::LayoutResult m_layout = embedded::ReadLayout(embedded::DemonstrationLayout());
    Farm& m_farm = m_layout.farm;
    std::vector<FarmMedium> m_media;
};

TEST_F(DemonstrationFarm, IsAFaultlessLayout) {
    for (const embedded::Problem& problem : m_layout.problems)
        ADD_FAILURE() << ProblemText("demonstration.toml", problem);
    for (const embedded::Problem& problem : embedded::FindContradictions(m_farm)) {
        ADD_FAILURE() << ProblemText("demonstration.toml", problem);
    }
}

TEST_F(DemonstrationFarm, ShowsEveryKindOfJukebox) {
    EXPECT_TRUE(AnyJukebox([](const FarmJukebox& jukebox) { return jukebox.magazines.size() == 1; }));
    EXPECT_TRUE(AnyJukebox([](const FarmJukebox& jukebox) { return jukebox.magazines.size() > 1; }));
    EXPECT_TRUE(AnyJukebox([](const FarmJukebox& jukebox) { return jukebox.drives.empty(); }));
    EXPECT_TRUE(AnyJukebox([](const FarmJukebox& jukebox) { return !jukebox.enabled; }));
    EXPECT_TRUE(AnyJukebox([](const FarmJukebox& jukebox) { return jukebox.doubleSided; }));
    EXPECT_TRUE(AnyJukebox([](const FarmJukebox& jukebox) { return !jukebox.waiting.empty(); }));
    EXPECT_TRUE(AnyJukebox([](const FarmJukebox& jukebox) {
        return std::ranges::any_of(jukebox.magazines,
                                   [](const FarmMagazine& magazine) { return !magazine.present; });
    }));
}

TEST_F(DemonstrationFarm, ShowsEveryStateOfASlotAndASide) {
    std::set<SlotState> slots;
    for (const FarmJukebox& jukebox : m_farm.jukeboxes) {
        for (const FarmMagazine& magazine : jukebox.magazines) {
            for (const embedded::FarmSlot& odd : magazine.oddSlots)
                slots.insert(odd.state);
        }
    }
    EXPECT_EQ(slots, (std::set<SlotState>{SlotState::Unknown, SlotState::NotPresent, SlotState::ScanFailed}));
    for (const Content content : {Content::Bad, Content::Blank, Content::NoFileSystem, Content::FileSystem}) {
        EXPECT_TRUE(AnySide([&](const FarmSide& side) { return side.content == content; }))
            << static_cast<int>(content);
    }
    for (const auto finalization :
         {Finalization::Unknown, Finalization::NotFinalized, Finalization::Finalized, Finalization::Closed}) {
        EXPECT_TRUE(AnySide([&](const FarmSide& side) { return side.finalization == finalization; }))
            << static_cast<int>(finalization);
    }
}

TEST_F(DemonstrationFarm, ShowsEveryMediaType) {
    for (const embedded::MediaType& type : embedded::AllMediaTypes()) {
        EXPECT_TRUE(AnyMedium([&](const FarmMedium& medium) { return medium.type == type.code; }))
            << type.name;
    }
    EXPECT_TRUE(AnyMedium([](const FarmMedium& medium) { return medium.type == embedded::kUnknownMedium; }));
}

TEST_F(DemonstrationFarm, ShowsDoubleSidedMediaWithOneAndWithTwoVolumes) {
    const auto volumesOn = [](const FarmMedium& medium) {
        return std::ranges::count_if(medium.sides, [](const FarmSide& side) { return side.volume != 0; });
    };
    EXPECT_TRUE(AnyMedium(
        [&](const FarmMedium& medium) { return medium.sides.size() == 2 && volumesOn(medium) == 1; }));
    EXPECT_TRUE(AnyMedium(
        [&](const FarmMedium& medium) { return medium.sides.size() == 2 && volumesOn(medium) == 2; }));
}

TEST_F(DemonstrationFarm, ShowsEveryKindOfVolume) {
    for (const auto type :
         {embedded::VolumeType::Disc, embedded::VolumeType::Mirror, embedded::VolumeType::VolumeSet}) {
        EXPECT_TRUE(AnyVolume([&](const FarmVolume& volume) { return volume.type == type; }));
    }
    EXPECT_TRUE(AnyVolume([](const FarmVolume& volume) { return !volume.enabled; }));
    EXPECT_TRUE(AnyVolume([](const FarmVolume& volume) { return volume.state.has_value(); }));
    EXPECT_TRUE(AnyVolume([](const FarmVolume& volume) { return volume.id < 0; }));
    EXPECT_TRUE(AnyVolume([](const FarmVolume& volume) { return volume.label.empty(); }));
    EXPECT_TRUE(AnyVolume([](const FarmVolume& volume) { return volume.directories.empty(); }));
    EXPECT_TRUE(AnyVolume([](const FarmVolume& volume) { return volume.directories.size() > 1; }));
    EXPECT_TRUE(
        AnyVolume([](const FarmVolume& volume) { return volume.label.find('%') != std::string::npos; }));
    EXPECT_TRUE(AnyVolume([](const FarmVolume& volume) { return volume.total == 0; }));
    EXPECT_TRUE(AnyVolume([](const FarmVolume& volume) { return volume.total >= 2'000'000'000'000; }));
    EXPECT_TRUE(AnyVolume([](const FarmVolume& volume) {
        return !volume.directories.empty() && volume.directories[0].size() > 60 &&
               std::ranges::count(volume.directories[0], '\\') > 2;
    }));
    for (const char* label : {"Disc-9", "Disc-10"}) {
        EXPECT_TRUE(AnyVolume([&](const FarmVolume& volume) { return volume.label == label; })) << label;
    }
}

TEST_F(DemonstrationFarm, ServersAreTheLocalOneAndThoseOfTheHelpTexts) {
    for (const char* server : {".", "my_server", "MyServer", "My Server", "sales server"}) {
        EXPECT_TRUE(embedded::IsDemonstrationServer(server)) << server;
    }
    for (const char* server : {"", "myserver", "My Server ", ".."}) {
        EXPECT_FALSE(embedded::IsDemonstrationServer(server)) << server;
    }
}

}  // namespace
}  // namespace embedded_test
