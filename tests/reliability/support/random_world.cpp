#include "tests/reliability/support/random_world.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace krvcmd::reliability {
namespace {

using krvfake::FakeLibrary;
using krvfake::Farm;
using krvfake::Occurrence;

constexpr int32_t kLargest = std::numeric_limits<int32_t>::max();
constexpr int32_t kSmallest = std::numeric_limits<int32_t>::min();

constexpr int32_t kJukeboxIds[] = {8, 11, 29, 31, 1, kLargest};
constexpr int32_t kVolumeIds[] = {33, 273, 517, 1, 2, 3, 40, 41, 42, kLargest};
constexpr const char* kNames[] = {"Tower", "MyBox", "my_box", "My Box", "Tower"};
constexpr int32_t kCodes[] = {0, 1, 2, 3, 4, 7, 22, 256, 500, 501, 502, 1001, kLargest, -1};
constexpr int32_t kOddNumbers[] = {-1, 0, 1, 2, 3, 4, 7, kLargest, kSmallest, kSmallest + 1, -2};
constexpr const char* kFunctions[] = {"*",
                                      "KrvSessionCreate",
                                      "KrvSessionClose",
                                      "KrvGetNextJukebox",
                                      "KrvGetJukebox",
                                      "KrvGetMagazine",
                                      "KrvGetDrive",
                                      "KrvGetSlot",
                                      "KrvGetSide",
                                      "KrvGetNextVolume",
                                      "KrvVolumeDetail",
                                      "KrvVolumeAspects",
                                      "KrvVolumeLocations",
                                      "KrvMediaImport",
                                      "KrvMediaExport",
                                      "KrvMediaScan",
                                      "KrvVolumeFormat",
                                      "KrvVolumeErase",
                                      "KrvVolumeFinalize",
                                      "KrvVolumeActivate",
                                      "KrvVolumeDeactivate"};

int32_t Id(RandomNumbers& random, const std::vector<int32_t>& known) {
    if (known.empty() || random.OneIn(8)) return random.Pick(kOddNumbers);
    return random.Pick(known);
}

krvfake::Device RandomDevice(RandomNumbers& random) {
    krvfake::Device device{RandomText(random, 12), RandomText(random, 20), RandomText(random, 7), {}};
    for (int32_t& part : device.scsi)
        part = random.OneIn(10) ? random.Pick(kOddNumbers) : random.Between(0, 9);
    return device;
}

krvfake::Slot RandomSlot(RandomNumbers& random, const std::vector<int32_t>& volumes) {
    krvfake::Slot slot;
    slot.state = static_cast<uint32_t>(random.OneIn(3) ? random.Between(0, 6) : 4);
    slot.mediumCode = static_cast<uint32_t>(random.OneIn(3) ? 255 : random.Between(0, 300));
    for (krvfake::Side& side : slot.sides) {
        if (random.OneIn(3)) continue;
        side.state = static_cast<uint32_t>(random.Between(0, 7));
        side.mediumCode = static_cast<uint32_t>(random.Between(0, 300));
        side.finalization = static_cast<uint32_t>(random.Between(0, 4));
        side.volumeId = Id(random, volumes);
    }
    return slot;
}

void AddJukebox(Farm& farm, RandomNumbers& random, int32_t id, const std::vector<int32_t>& volumes) {
    krvfake::Jukebox& jukebox =
        farm.AddJukebox(id, random.OneIn(6) ? RandomText(random, 60) : std::string(random.Pick(kNames)));
    jukebox.WithChanger(RandomDevice(random));
    if (random.OneIn(2)) jukebox.DoubleSided();
    if (random.OneIn(4)) jukebox.Disabled();
    for (size_t drives = random.Below(4); drives > 0; --drives)
        jukebox.WithDrive(RandomDevice(random), random.OneIn(2));
    const int32_t magazines = random.Between(0, 3);
    for (int32_t m = 0; m < magazines; ++m) {
        jukebox.WithMagazine(random.Between(0, 4), RandomSlot(random, volumes));
        jukebox.magazines.back().present = !random.OneIn(5);
        for (int32_t s = 0; s < jukebox.magazines.back().slotCount; ++s)
            if (random.OneIn(2)) jukebox.SlotEntry(m, s) = RandomSlot(random, volumes);
        // A magazine may claim too many slots.
        if (random.OneIn(6)) jukebox.magazines.back().slotCount = random.Between(-2, 9);
    }
    if (random.OneIn(6)) jukebox.claimedDrives = random.Between(-2, 6);
    if (random.OneIn(6)) jukebox.claimedMagazines = random.Between(-2, 6);
    if (random.OneIn(6)) jukebox.claimedSlots = random.Pick(kOddNumbers);
}

uint64_t RandomCapacity(RandomNumbers& random) {
    if (random.OneIn(6)) return random.Next();
    return random.Next() >> random.Below(64);
}

void AddVolume(Farm& farm, RandomNumbers& random, int32_t id, const std::vector<int32_t>& jukeboxes) {
    krvfake::Volume& volume = farm.AddVolume(id, RandomText(random, 300));
    volume.WithType(static_cast<uint32_t>(random.Between(0, 3)))
        .InState(static_cast<uint32_t>(random.Between(0, 4)))
        .WithFileSystem(RandomText(random, 40))
        .WithCapacity(RandomCapacity(random), RandomCapacity(random));
    for (size_t count = random.Below(3); count > 0; --count)
        volume.WithDirectory(RandomText(random, 80));
    for (size_t count = random.Below(4); count > 0; --count) {
        const bool odd = random.OneIn(5);
        volume.SaysItIsAt(Id(random, jukeboxes), odd ? random.Pick(kOddNumbers) : random.Between(0, 2),
                          odd ? random.Pick(kOddNumbers) : random.Between(0, 3),
                          odd ? random.Pick(kOddNumbers) : random.Between(0, 1));
    }
    if (random.OneIn(6)) volume.aspectBytes = RandomText(random, 40);
    for (size_t count = random.OneIn(5) ? random.Below(3) : 0; count > 0; --count)
        volume.aspectSizes.push_back(static_cast<uint32_t>(random.Below(200)));
    for (size_t count = random.OneIn(5) ? random.Below(3) : 0; count > 0; --count)
        volume.locationCounts.push_back(static_cast<uint32_t>(random.Below(7)));
}

// A part of the list, each item at most once and in any order.
std::vector<int32_t> Some(RandomNumbers& random, std::vector<int32_t> all) {
    for (size_t i = all.size(); i > 1; --i)
        std::swap(all[i - 1], all[random.Below(i)]);
    all.resize(random.Below(all.size()));
    return all;
}

void AddFailure(FakeLibrary& library, RandomNumbers& random) {
    const int n = random.Between(1, 12);
    library.FailCall(random.Pick(kFunctions), random.OneIn(3) ? Occurrence::From(n) : Occurrence::Nth(n),
                     {random.Pick(kCodes), RandomText(random, 1100)},
                     random.OneIn(2) ? krvfake::Outputs::Filled : krvfake::Outputs::LeftAlone);
}

constexpr const char* kOptions[] = {"quiet", "-quiet", "/qui", "server=srv", "serve", "-server=x"};

constexpr const char* kCommandWords[] = {"help", "?",    "-?",     "service", "import", "imp", "export",
                                         "exp",  "scan", "format", "form",    "enable", "en",  "disable",
                                         "dis",  "name", "query",  "que",     "delete"};

constexpr const char* kParameters[] = {
    "J",       "J@8",         "J=@11",         "J=Tower",    "M",       "M1",         "M=2",
    "S",       "S1",          "S=2",           "S1-3",       "S1/4,2",  "S5-3",       "D1",
    "V",       "V@33",        "V@1-9",         "V=@273,517", ".A",      ".B",         "repeat=2",
    "repeat",  "label",       "lab=x",         "erase",      "certify", "sequential", "final",
    "start",   "stop",        "restart",       "col=IL",     "so=-lI",  "width=60",   "notable",
    "-not",    "sep=,",       "juke",          "magazines",  "drives",  "slots",      "slot",
    "volumes", "-volumes",    "new_name",      "8",          "@8",      "=@8",        "1-3",
    "Tower",   "x",           "S1-2000000000", "erase=1",    "=",       "S0",         "V@0",
    "J@0",     "M2147483648", "S1-",           "sort=",      "width=0"};

}  // namespace

std::string RandomText(RandomNumbers& random, size_t longest) {
    constexpr const char* kPieces[] = {"%",  "%%", "%s", "%n",  "[CmdLine]", "[ProductName]", "|",    " ",
                                       "\\", "..", "-9", "-10", "\t",        "\x1b[2J",       "\x7f", "A",
                                       "z",  "\r", "@",  "\"",  "\xC3\xBC",  "\xff"};
    const size_t length = random.OneIn(4) ? longest : random.Below(longest + 1);
    std::string text;
    while (text.size() < length) {
        if (random.OneIn(3)) {
            text += random.Pick(kPieces);
        } else {
            text += static_cast<char>(random.Between('a', 'z'));
        }
    }
    text.resize(length);
    return text;
}

void ScriptRandomWorld(FakeLibrary& library, uint64_t seed) {
    RandomNumbers random(seed);
    const std::vector<int32_t> jukeboxes = Some(random, {std::begin(kJukeboxIds), std::end(kJukeboxIds)});
    const std::vector<int32_t> volumes = Some(random, {std::begin(kVolumeIds), std::end(kVolumeIds)});
    Farm& farm = library.GetFarm();
    for (const int32_t id : jukeboxes)
        AddJukebox(farm, random, id, volumes);
    for (const int32_t id : volumes)
        AddVolume(farm, random, id, jukeboxes);
    if (random.OneIn(10)) farm.EnumerateJukeboxes({8, 11, random.OneIn(2) ? -1 : 31, 29});
    if (random.OneIn(10)) farm.EnumerateVolumes({33, kLargest, 5, random.OneIn(2) ? kSmallest : 2, 1});
    for (size_t failures = random.OneIn(2) ? random.Below(3) : 0; failures > 0; --failures)
        AddFailure(library, random);
}

namespace {

std::vector<Numbers> RandomList(RandomNumbers& random, int32_t largest) {
    std::vector<Numbers> list;
    const size_t count = random.OneIn(4) ? 1 + random.Below(3) : 1;
    while (list.size() < count) {
        const int32_t from = random.OneIn(20) ? kLargest : random.Between(0, largest);
        if (random.OneIn(5)) {
            list.push_back(FromTo(from, from == kLargest ? from : random.Between(0, largest + 2)));
        } else {
            list.push_back(One(from));
        }
    }
    return list;
}

void AddAddress(CommandSpec& command, RandomNumbers& random) {
    const bool takesVolumes = command.verb != Verb::Import;
    const bool takesSlots = command.verb != Verb::Name;
    const bool takesSides = command.verb == Verb::Format || command.verb == Verb::Query;
    const bool takesDrives =
        command.verb == Verb::Enable || command.verb == Verb::Disable || command.verb == Verb::Query;
    if (takesVolumes && random.OneIn(4)) {
        command.volumes = RandomList(random, 45);
    } else if (!random.OneIn(5)) {
        if (random.OneIn(2)) {
            command.jukeboxName = random.Pick(kNames);
        } else {
            command.jukeboxId = random.OneIn(8) ? random.Between(0, 40) : random.Pick(kJukeboxIds);
        }
    }
    if (takesSlots && command.HasJukebox()) {
        if (random.OneIn(3)) command.magazines = RandomList(random, 4);
        if (random.OneIn(2)) command.slots = RandomList(random, 8);
    }
    if (takesSides && random.OneIn(5)) command.sideA = true;
    if (takesSides && random.OneIn(5)) command.sideB = true;
    if (takesDrives && random.OneIn(8)) command.drive = random.Between(0, 4);
}

std::string RandomLetters(RandomNumbers& random, std::string_view letters, size_t longest) {
    std::string text;
    for (size_t count = 1 + random.Below(longest); count > 0; --count)
        text += random.OneIn(60) ? 'Q' : letters[random.Below(letters.size())];
    return text;
}

void AddQueryOptions(CommandSpec& command, RandomNumbers& random) {
    constexpr Object kObjects[] = {Object::Jukeboxes, Object::Magazines, Object::Drives, Object::Slots,
                                   Object::Volumes,   Object::Slots,     Object::Volumes};
    constexpr std::string_view kLetters = "SDMIJNLmdsaCRPFnlvftxXzyYo";
    constexpr std::string_view kSortLetters = "SDMIJNLmdsaCRPFnlvftxXzyYo+--";
    if (!random.OneIn(30)) command.object = random.Pick(kObjects);
    if (random.OneIn(3)) command.columns = RandomLetters(random, kLetters, 12);
    if (random.OneIn(3)) command.sort = RandomLetters(random, kSortLetters, 5);
    if (random.OneIn(5)) command.separator = RandomText(random, 5) + ",";
    if (random.OneIn(2)) command.width = random.OneIn(10) ? kLargest : random.Between(0, 200);
    command.notable = random.OneIn(2);
}

}  // namespace

CommandSpec RandomCommand(RandomNumbers& random) {
    constexpr Verb kTargetedVerbs[] = {Verb::Import,  Verb::Export, Verb::Scan,  Verb::Format, Verb::Enable,
                                       Verb::Disable, Verb::Name,   Verb::Query, Verb::Query,  Verb::Query};
    constexpr Verb kServiceVerbs[] = {Verb::Start, Verb::Stop, Verb::Restart};
    CommandSpec command;
    command.quiet = random.OneIn(3);
    if (random.OneIn(5)) command.server = "my_server";
    command.verb = random.OneIn(40) ? random.Pick(kServiceVerbs) : random.Pick(kTargetedVerbs);
    if (command.verb == Verb::Start || command.verb == Verb::Stop || command.verb == Verb::Restart)
        return command;

    AddAddress(command, random);
    const bool repeats = command.verb == Verb::Import || command.verb == Verb::Export;
    if (repeats && random.OneIn(3)) command.repeat = random.OneIn(10) ? kLargest : random.Between(0, 6);
    if (command.verb == Verb::Format) {
        if (random.OneIn(3))
            command.label = random.OneIn(5) ? std::string(250 + random.Below(10), 'l') : "New label";
        command.erase = random.OneIn(4);
        command.certify = random.OneIn(4);
        command.sequential = random.OneIn(4);
        command.finalize = random.OneIn(4);
    }
    if (command.verb == Verb::Name && !random.OneIn(6)) command.newName = "dir1/volume273";
    if (command.verb == Verb::Query) AddQueryOptions(command, random);
    return command;
}

std::vector<std::string> RandomWords(RandomNumbers& random) {
    std::vector<std::string> words;
    while (random.OneIn(4))
        words.emplace_back(random.Pick(kOptions));
    if (!random.OneIn(15)) words.emplace_back(random.Pick(kCommandWords));
    while (!random.OneIn(3)) {
        std::string word = random.Pick(kParameters);
        if (random.OneIn(20)) word = RandomText(random, 12);
        if (random.OneIn(20)) word.resize(random.Below(word.size() + 1));
        if (random.OneIn(20)) word += RandomText(random, 3);
        words.push_back(word);
    }
    return words;
}

}  // namespace krvcmd::reliability
