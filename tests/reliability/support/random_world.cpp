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

int32_t Id(Dice& dice, const std::vector<int32_t>& known) {
    if (known.empty() || dice.OneIn(8)) return dice.Pick(kOddNumbers);
    return dice.Pick(known);
}

krvfake::Device RandomDevice(Dice& dice) {
    krvfake::Device device{RandomText(dice, 12), RandomText(dice, 20), RandomText(dice, 7), {}};
    for (int32_t& part : device.scsi)
        part = dice.OneIn(10) ? dice.Pick(kOddNumbers) : dice.Between(0, 9);
    return device;
}

krvfake::Slot RandomSlot(Dice& dice, const std::vector<int32_t>& volumes) {
    krvfake::Slot slot;
    slot.state = static_cast<uint32_t>(dice.OneIn(3) ? dice.Between(0, 6) : 4);
    slot.mediumCode = static_cast<uint32_t>(dice.OneIn(3) ? 255 : dice.Between(0, 300));
    for (krvfake::Side& side : slot.sides) {
        if (dice.OneIn(3)) continue;
        side.state = static_cast<uint32_t>(dice.Between(0, 7));
        side.mediumCode = static_cast<uint32_t>(dice.Between(0, 300));
        side.finalization = static_cast<uint32_t>(dice.Between(0, 4));
        side.volumeId = Id(dice, volumes);
    }
    return slot;
}

void AddJukebox(Farm& farm, Dice& dice, int32_t id, const std::vector<int32_t>& volumes) {
    krvfake::Jukebox& jukebox =
        farm.AddJukebox(id, dice.OneIn(6) ? RandomText(dice, 60) : std::string(dice.Pick(kNames)));
    jukebox.WithChanger(RandomDevice(dice));
    if (dice.OneIn(2)) jukebox.DoubleSided();
    if (dice.OneIn(4)) jukebox.Disabled();
    for (size_t drives = dice.Below(4); drives > 0; --drives)
        jukebox.WithDrive(RandomDevice(dice), dice.OneIn(2));
    const int32_t magazines = dice.Between(0, 3);
    for (int32_t m = 0; m < magazines; ++m) {
        jukebox.WithMagazine(dice.Between(0, 4), RandomSlot(dice, volumes));
        jukebox.magazines.back().present = !dice.OneIn(5);
        for (int32_t s = 0; s < jukebox.magazines.back().slotCount; ++s)
            if (dice.OneIn(2)) jukebox.SlotEntry(m, s) = RandomSlot(dice, volumes);
        // A magazine may claim slots that are not there.
        if (dice.OneIn(6)) jukebox.magazines.back().slotCount = dice.Between(-2, 9);
    }
    if (dice.OneIn(6)) jukebox.claimedDrives = dice.Between(-2, 6);
    if (dice.OneIn(6)) jukebox.claimedMagazines = dice.Between(-2, 6);
    if (dice.OneIn(6)) jukebox.claimedSlots = dice.Pick(kOddNumbers);
}

uint64_t RandomCapacity(Dice& dice) {
    if (dice.OneIn(6)) return dice.Next();
    return dice.Next() >> dice.Below(64);
}

void AddVolume(Farm& farm, Dice& dice, int32_t id, const std::vector<int32_t>& jukeboxes) {
    krvfake::Volume& volume = farm.AddVolume(id, RandomText(dice, 300));
    volume.WithType(static_cast<uint32_t>(dice.Between(0, 3)))
        .InState(static_cast<uint32_t>(dice.Between(0, 4)))
        .WithFileSystem(RandomText(dice, 40))
        .WithCapacity(RandomCapacity(dice), RandomCapacity(dice));
    for (size_t count = dice.Below(3); count > 0; --count)
        volume.WithDirectory(RandomText(dice, 80));
    for (size_t count = dice.Below(4); count > 0; --count) {
        const bool odd = dice.OneIn(5);
        volume.SaysItIsAt(Id(dice, jukeboxes), odd ? dice.Pick(kOddNumbers) : dice.Between(0, 2),
                          odd ? dice.Pick(kOddNumbers) : dice.Between(0, 3),
                          odd ? dice.Pick(kOddNumbers) : dice.Between(0, 1));
    }
    if (dice.OneIn(6)) volume.aspectBytes = RandomText(dice, 40);
    for (size_t count = dice.OneIn(5) ? dice.Below(3) : 0; count > 0; --count)
        volume.aspectSizes.push_back(static_cast<uint32_t>(dice.Below(200)));
    for (size_t count = dice.OneIn(5) ? dice.Below(3) : 0; count > 0; --count)
        volume.locationCounts.push_back(static_cast<uint32_t>(dice.Below(7)));
}

// A part of what there is, each at most once and in any order.
std::vector<int32_t> Some(Dice& dice, std::vector<int32_t> all) {
    for (size_t i = all.size(); i > 1; --i)
        std::swap(all[i - 1], all[dice.Below(i)]);
    all.resize(dice.Below(all.size()));
    return all;
}

void AddFailure(FakeLibrary& library, Dice& dice) {
    const int n = dice.Between(1, 12);
    library.FailCall(dice.Pick(kFunctions), dice.OneIn(3) ? Occurrence::From(n) : Occurrence::Nth(n),
                     {dice.Pick(kCodes), RandomText(dice, 1100)},
                     dice.OneIn(2) ? krvfake::Outputs::Filled : krvfake::Outputs::LeftAlone);
}

}  // namespace

std::string RandomText(Dice& dice, size_t longest) {
    constexpr const char* kPieces[] = {"%",  "%%", "%s", "%n",  "[CmdLine]", "[ProductName]", "|",    " ",
                                       "\\", "..", "-9", "-10", "\t",        "\x1b[2J",       "\x7f", "A",
                                       "z",  "\r", "@",  "\"",  "\xC3\xBC",  "\xff"};
    const size_t length = dice.OneIn(4) ? longest : dice.Below(longest + 1);
    std::string text;
    while (text.size() < length) {
        if (dice.OneIn(3)) {
            text += dice.Pick(kPieces);
        } else {
            text += static_cast<char>(dice.Between('a', 'z'));
        }
    }
    text.resize(length);
    return text;
}

void ScriptRandomWorld(FakeLibrary& library, uint64_t seed) {
    Dice dice(seed);
    const std::vector<int32_t> jukeboxes = Some(dice, {std::begin(kJukeboxIds), std::end(kJukeboxIds)});
    const std::vector<int32_t> volumes = Some(dice, {std::begin(kVolumeIds), std::end(kVolumeIds)});
    Farm& farm = library.GetFarm();
    for (const int32_t id : jukeboxes)
        AddJukebox(farm, dice, id, volumes);
    for (const int32_t id : volumes)
        AddVolume(farm, dice, id, jukeboxes);
    if (dice.OneIn(10)) farm.EnumerateJukeboxes({8, 11, dice.OneIn(2) ? -1 : 31, 29});
    if (dice.OneIn(10)) farm.EnumerateVolumes({33, kLargest, 5, dice.OneIn(2) ? kSmallest : 2, 1});
    for (size_t failures = dice.OneIn(2) ? dice.Below(3) : 0; failures > 0; --failures)
        AddFailure(library, dice);
}

namespace {

std::vector<Numbers> RandomList(Dice& dice, int32_t largest) {
    std::vector<Numbers> list;
    const size_t count = dice.OneIn(4) ? 1 + dice.Below(3) : 1;
    while (list.size() < count) {
        const int32_t from = dice.OneIn(20) ? kLargest : dice.Between(0, largest);
        if (dice.OneIn(5)) {
            list.push_back(FromTo(from, from == kLargest ? from : dice.Between(0, largest + 2)));
        } else {
            list.push_back(One(from));
        }
    }
    return list;
}

void AddAddress(Order& order, Dice& dice) {
    const bool takesVolumes = order.verb != Verb::Import;
    const bool takesSlots = order.verb != Verb::Name;
    const bool takesSides = order.verb == Verb::Format || order.verb == Verb::Query;
    const bool takesDrives =
        order.verb == Verb::Enable || order.verb == Verb::Disable || order.verb == Verb::Query;
    if (takesVolumes && dice.OneIn(4)) {
        order.volumes = RandomList(dice, 45);
    } else if (!dice.OneIn(5)) {
        if (dice.OneIn(2)) {
            order.jukeboxName = dice.Pick(kNames);
        } else {
            order.jukeboxId = dice.OneIn(8) ? dice.Between(0, 40) : dice.Pick(kJukeboxIds);
        }
    }
    if (takesSlots && order.HasJukebox()) {
        if (dice.OneIn(3)) order.magazines = RandomList(dice, 4);
        if (dice.OneIn(2)) order.slots = RandomList(dice, 8);
    }
    if (takesSides && dice.OneIn(5)) order.sideA = true;
    if (takesSides && dice.OneIn(5)) order.sideB = true;
    if (takesDrives && dice.OneIn(8)) order.drive = dice.Between(0, 4);
}

std::string RandomLetters(Dice& dice, std::string_view letters, size_t longest) {
    std::string text;
    for (size_t count = 1 + dice.Below(longest); count > 0; --count)
        text += dice.OneIn(60) ? 'Q' : letters[dice.Below(letters.size())];
    return text;
}

void AddQueryOptions(Order& order, Dice& dice) {
    constexpr Object kObjects[] = {Object::Jukeboxes, Object::Magazines, Object::Drives, Object::Slots,
                                   Object::Volumes,   Object::Slots,     Object::Volumes};
    constexpr std::string_view kLetters = "SDMIJNLmdsaCRPFnlvftxXzyYo";
    constexpr std::string_view kSortLetters = "SDMIJNLmdsaCRPFnlvftxXzyYo+--";
    if (!dice.OneIn(30)) order.object = dice.Pick(kObjects);
    if (dice.OneIn(3)) order.columns = RandomLetters(dice, kLetters, 12);
    if (dice.OneIn(3)) order.sort = RandomLetters(dice, kSortLetters, 5);
    if (dice.OneIn(5)) order.separator = RandomText(dice, 5) + ",";
    if (dice.OneIn(2)) order.width = dice.OneIn(10) ? kLargest : dice.Between(0, 200);
    order.notable = dice.OneIn(2);
}

}  // namespace

Order RandomOrder(Dice& dice) {
    constexpr Verb kVerbs[] = {Verb::Import,  Verb::Export, Verb::Scan,  Verb::Format, Verb::Enable,
                               Verb::Disable, Verb::Name,   Verb::Query, Verb::Query,  Verb::Query};
    constexpr Verb kServiceVerbs[] = {Verb::Start, Verb::Stop, Verb::Restart};
    Order order;
    order.quiet = dice.OneIn(3);
    if (dice.OneIn(5)) order.server = "my_server";
    order.verb = dice.OneIn(40) ? dice.Pick(kServiceVerbs) : dice.Pick(kVerbs);
    if (order.verb == Verb::Start || order.verb == Verb::Stop || order.verb == Verb::Restart) return order;

    AddAddress(order, dice);
    const bool repeats = order.verb == Verb::Import || order.verb == Verb::Export;
    if (repeats && dice.OneIn(3)) order.repeat = dice.OneIn(10) ? kLargest : dice.Between(0, 6);
    if (order.verb == Verb::Format) {
        if (dice.OneIn(3)) order.label = dice.OneIn(5) ? std::string(250 + dice.Below(10), 'l') : "New label";
        order.erase = dice.OneIn(4);
        order.certify = dice.OneIn(4);
        order.sequential = dice.OneIn(4);
        order.finalize = dice.OneIn(4);
    }
    if (order.verb == Verb::Name && !dice.OneIn(6)) order.newName = "dir1/volume273";
    if (order.verb == Verb::Query) AddQueryOptions(order, dice);
    return order;
}

}  // namespace krvcmd::reliability
