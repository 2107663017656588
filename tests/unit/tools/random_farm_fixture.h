#pragma once

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "embedded/model/farm.h"
#include "embedded/model/farm_words.h"
#include "embedded/model/media_types.h"

namespace embedded_test {

using embedded::Content;
using embedded::Farm;
using embedded::FarmMedium;
using embedded::FarmSide;
using embedded::FarmVolume;
using embedded::SlotState;

// A farm with everything that a layout can hold, chosen by the seed.
class RandomFarm {
  public:
    explicit RandomFarm(uint64_t seed) : m_random(seed) {}

    Farm Make() {
        Farm farm;
        farm.running = Chance(70);
        const uint64_t jukeboxes = 1 + Below(3);
        for (uint64_t id = 1; id <= jukeboxes; ++id)
            AddJukebox(farm, static_cast<int32_t>(id * 7));
        for (uint64_t count = Below(3); count > 0; --count)
            farm.shelf.push_back(Medium(1));
        farm.volumes = m_volumes;
        for (uint64_t count = Below(3); count > 0; --count)
            farm.volumes.push_back(Volume(NextId()));
        std::ranges::stable_sort(farm.volumes, [](const FarmVolume& left, const FarmVolume& right) {
            return std::pair(left.id < 0, std::abs(left.id)) < std::pair(right.id < 0, std::abs(right.id));
        });
        farm.nextVolume = m_last + 1 + static_cast<int32_t>(Below(50));
        return farm;
    }

  private:
    uint64_t Below(uint64_t count) { return m_random() % count; }
    bool Chance(uint64_t percent) { return Below(100) < percent; }

    std::string Text(size_t limit) {
        static const std::vector<std::string> texts = {"",
                                                       "plain",
                                                       "a \"quoted\" one",
                                                       "back\\slash",
                                                       "line\nbreak\ttab",
                                                       "K\xC3\xB6ln",
                                                       "K\xF6ln",
                                                       "100%s %n",
                                                       "\x7F",
                                                       "\xED\xA0\x80",
                                                       std::string(200, 'x')};
        return texts[Below(texts.size())].substr(0, limit);
    }

    int32_t NextId() { return m_last += 1 + static_cast<int32_t>(Below(3)); }

    embedded::FarmDevice Device() {
        return {Text(8), Text(16), Text(4), {static_cast<int32_t>(Below(9)), -1, 0}};
    }

    FarmVolume Volume(int32_t id) {
        FarmVolume volume;
        volume.id = id;
        volume.enabled = Chance(80);
        volume.label = Text(255);
        volume.fileSystem = Text(29);
        volume.total = Chance(10) ? UINT64_MAX : Below(1'000'000);
        volume.free = volume.total == 0 ? 0 : Below(volume.total);
        if (Chance(20)) volume.state = 3 + static_cast<int32_t>(Below(5));
        if (Chance(20)) volume.value1 = 5;
        if (Chance(20)) volume.value2 = UINT32_MAX;
        if (id < 0) return volume;
        for (uint64_t count = Below(3); count > 0; --count) {
            volume.directories.push_back("dir" + std::to_string(id) + "." + std::to_string(count) +
                                         Text(100));
        }
        return volume;
    }

    // A volume on several sides gets up to three of them.
    int32_t VolumeOfSide(int sign, FarmSide& side) {
        if (sign > 0 && Chance(15)) {
            if (m_shared == 0 || m_parts == 3) {
                m_shared = NextId();
                m_parts = 0;
                FarmVolume volume = Volume(m_shared);
                volume.type = Chance(50) ? embedded::VolumeType::Mirror : embedded::VolumeType::VolumeSet;
                m_volumes.push_back(std::move(volume));
            }
            side.part = ++m_parts;
            return m_shared;
        }
        const int32_t id = sign > 0 ? NextId() : --m_lastUnseen;
        m_volumes.push_back(Volume(id));
        return id;
    }

    FarmSide Side(uint32_t type, int sign) {
        const uint64_t fate = Below(10);
        FarmSide side = embedded::UsualSide(type, Content::Blank, 0);
        if (fate == 0) side = embedded::UsualSide(type, Content::Bad, 0);
        if (fate == 1) side = embedded::UsualSide(type, Content::NoFileSystem, 0);
        if (fate > 3) {
            side = embedded::UsualSide(type, fate == 9 ? Content::Bad : Content::FileSystem, 1);
            side.volume = VolumeOfSide(sign, side);
        }
        if (Chance(30)) side.finalization = static_cast<embedded::Finalization>(Below(4));
        if (Chance(20)) side.sequential = !side.sequential;
        return side;
    }

    FarmMedium Medium(int sign) {
        static const std::vector<uint32_t> odd = {3, 19, 253, 254};
        FarmMedium medium;
        const auto types = embedded::AllMediaTypes();
        medium.type = Chance(20) ? odd[Below(odd.size())] : types[Below(types.size())].code;
        const int sides = Chance(40) ? 2 : 1;
        for (int side = 0; side < sides; ++side)
            medium.sides.push_back(Side(medium.type, sign));
        return medium;
    }

    embedded::FarmMagazine Magazine() {
        embedded::FarmMagazine magazine;
        magazine.slotCount = static_cast<int32_t>(Below(8));
        magazine.present = Chance(80);
        for (int32_t slot = 1; slot <= magazine.slotCount; ++slot) {
            const uint64_t fate = Below(10);
            const bool isFull = fate < 6;
            if (isFull) {
                magazine.media.push_back(Medium(1));
                magazine.media.back().slot = slot;
            }
            if (fate == 0 || fate == 9) magazine.oddSlots.push_back({slot, SlotState::Unknown});
            if (fate == 1 || fate == 8) magazine.oddSlots.push_back({slot, SlotState::ScanFailed});
            if (fate == 7) magazine.oddSlots.push_back({slot, SlotState::NotPresent});
        }
        return magazine;
    }

    void AddJukebox(Farm& farm, int32_t id) {
        embedded::FarmJukebox jukebox;
        jukebox.id = id;
        jukebox.name = "n" + Text(50);
        jukebox.enabled = Chance(80);
        jukebox.doubleSided = Chance(50);
        jukebox.changer = Device();
        for (uint64_t count = Below(3); count > 0; --count) {
            jukebox.drives.push_back({Device(), Chance(80), {m_random(), 0}});
        }
        for (uint64_t count = Below(4); count > 0; --count)
            jukebox.magazines.push_back(Magazine());
        for (uint64_t count = Below(3); count > 0; --count)
            jukebox.waiting.push_back(Medium(-1));
        for (uint64_t count = Below(3); count > 0; --count)
            jukebox.exported.push_back(Medium(1));
        farm.jukeboxes.push_back(std::move(jukebox));
    }

    std::mt19937_64 m_random;  // gives the same numbers everywhere
    std::vector<FarmVolume> m_volumes;
    int32_t m_last = 0;
    int32_t m_lastUnseen = 0;
    int32_t m_shared = 0;
    int32_t m_parts = 0;
};

}  // namespace embedded_test
