#include "embedded/farms/farm_writer.h"
#include "embedded/model/farm_words.h"
#include "embedded/model/media_types.h"
#include "embedded/model/random.h"
#include "embedded/model/strings.h"
#include "tools/common/command_line.h"
#include "tools/common/long_task.h"
#include "tools/common/plain_text.h"
#include "tools/krvsim/new_farm.h"
#include "tools/krvsim/tool.h"

namespace embedded::tools {
namespace {

constexpr int64_t kMaxSlots = 2'000'000;

struct GenerateOptions {
    std::string server = ".";
    int32_t jukeboxes = 1;
    int32_t magazines = 1;  // in each jukebox
    int32_t slots = 100;    // in each magazine
    int32_t fill = 80;      // percentage of the slots that hold a medium
    int64_t seed = 1;
    Existing existing = Existing::Keep;
};

std::string Padded(int64_t number, size_t digits) {
    std::string text = std::to_string(number);
    if (text.size() < digits) text.insert(0, digits - text.size(), '0');
    return text;
}

// Makes one jukebox after the other; volume IDs ascend from 1.
class Generator {
  public:
    Generator(const GenerateOptions& options, FarmWriter& writer, Progress& progress)
        : m_options(options), m_random(options.seed), m_writer(writer), m_progress(progress) {}

    void Run() {
        for (int32_t jukebox = 1; jukebox <= m_options.jukeboxes; ++jukebox)
            AddJukebox(jukebox);
        m_writer.Finish(true, 0);
    }

    int32_t GetVolumeCount() const { return m_lastVolume; }

  private:
    void AddJukebox(int32_t number) {
        FarmJukebox jukebox;
        jukebox.id = number;
        jukebox.name = "Jukebox " + Padded(number, 3);
        jukebox.doubleSided = m_random.PerCent(50);
        jukebox.changer = {"TINDRAK", "Tower " + std::to_string(m_options.slots), "4.0", {number, 0, 0}};
        for (int32_t drive = 1; drive <= 4; ++drive) {
            jukebox.drives.push_back({{"OVELLE", "MultiDrive M5", "A103", {number, drive, 0}}, true, {0, 0}});
        }
        for (int32_t magazine = 0; magazine < m_options.magazines; ++magazine) {
            jukebox.magazines.push_back(MakeMagazine(jukebox));
        }
        m_writer.AddJukebox(jukebox);
        for (const FarmVolume& volume : m_volumes)
            m_writer.AddVolume(volume);
        // Each slot is two steps, whether or not it holds a volume.
        m_progress.Step(int64_t{m_options.magazines} * m_options.slots -
                        static_cast<int64_t>(m_volumes.size()));
        m_volumes.clear();
    }

    FarmMagazine MakeMagazine(const FarmJukebox& jukebox) {
        FarmMagazine magazine;
        magazine.slotCount = m_options.slots;
        for (int32_t slot = 1; slot <= m_options.slots; ++slot) {
            if (!m_random.PerCent(static_cast<uint64_t>(m_options.fill))) continue;
            FarmMedium medium = MakeMedium(jukebox);
            medium.slot = slot;
            magazine.media.push_back(std::move(medium));
        }
        return magazine;
    }

    FarmMedium MakeMedium(const FarmJukebox& jukebox) {
        const auto types = AllMediaTypes();
        const MediaType& type = types[m_random.Below(types.size())];
        FarmMedium medium;
        medium.type = type.code;
        const int sides = jukebox.doubleSided && m_random.PerCent(50) ? 2 : 1;
        for (int side = 0; side < sides; ++side)
            medium.sides.push_back(MakeSide(jukebox, type));
        return medium;
    }

    // Most sides hold a volume, some are blank, a few are bad.
    FarmSide MakeSide(const FarmJukebox& jukebox, const MediaType& type) {
        const uint64_t fate = m_random.Below(100);
        if (fate == 0) return UsualSide(type.code, Content::Bad, 0);
        if (fate < 8 && type.writing != Writing::ReadOnly) return UsualSide(type.code, Content::Blank, 0);
        FarmVolume volume;
        volume.id = ++m_lastVolume;
        const std::string number = Padded(volume.id, 7);
        volume.label = "Disc-" + number;
        volume.fileSystem = type.access == Access::Random ? "UDF 2.01" : "UDF 1.50 seq";
        volume.total = type.capacity;
        volume.free = m_random.Below(type.capacity);
        volume.enabled = !m_random.PerCent(2);
        volume.directories = {Joined({"archive\\", jukebox.name, "\\", number})};
        m_volumes.push_back(std::move(volume));
        return UsualSide(type.code, Content::FileSystem, m_lastVolume);
    }

    const GenerateOptions& m_options;
    Random m_random;
    FarmWriter& m_writer;
    Progress& m_progress;
    std::vector<FarmVolume> m_volumes;
    int32_t m_lastVolume = 0;
};

void Generate(const GenerateOptions& options, const Streams& streams) {
    const int64_t slots = int64_t{options.jukeboxes} * options.magazines * options.slots;
    if (slots > kMaxSlots) {
        throw UsageFailure(std::to_string(slots) + " slots are too many; the limit is " +
                           std::to_string(kMaxSlots));
    }
    RequireRoom(options.server, options.existing);
    int32_t volumes = 0;
    MakeFarm(options.server, options.existing, [&](Database& database) {
        Progress progress(streams.err, "writing", 2 * slots);
        FarmWriter writer(database, options.server, [&] { progress.Step(); });
        Generator generator(options, writer, progress);
        generator.Run();
        volumes = generator.GetVolumeCount();
    });
    streams.out << "Server \"" << options.server << "\" has a farm of "
                << Counted(options.jukeboxes, "jukebox", "jukeboxes") << ", "
                << Counted(slots, "slot", "slots") << " and " << Counted(volumes, "volume", "volumes")
                << ".\n";
}

}  // namespace

void AddGenerate(CommandLine& line) {
    const auto [app, options] = line.Add(line.GetTool(), "generate",
                                         "Create a large farm; the same seed gives the same farm.", Generate);
    AddServerOption(app, options.server);
    const struct {
        const char* name;
        int32_t& value;
        const char* description;
    } counts[] = {
        {"--jukeboxes", options.jukeboxes, "number of jukeboxes"},
        {"--magazines", options.magazines, "magazines in each jukebox"},
        {"--slots", options.slots, "slots in each magazine; at most 2000000 slots in total"},
    };
    for (const auto& count : counts) {
        app.add_option(count.name, count.value, count.description)
            ->capture_default_str()
            ->check(FromTo(int64_t{1}, kMaxSlots));
    }
    app.add_option("--fill", options.fill, "percentage of the slots that hold a medium")
        ->capture_default_str()
        ->check(FromTo(0, 100));
    app.add_option("--seed", options.seed, "seed of the random numbers")->capture_default_str();
    AddForceOption(app, options.existing);
}

}  // namespace embedded::tools
