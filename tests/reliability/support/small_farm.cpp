#include "tests/reliability/support/small_farm.h"

#include <ostream>

namespace krvcmd::reliability {
namespace {

// clang-format off
const NamedCommand kCommands[] = {
    {"ImportIntoSlot",            {.verb = Verb::Import, .jukeboxId = 8, .magazines = {One(1)}, .slots = {One(2)}}},
    {"ImportIntoMagazine",        {.verb = Verb::Import, .jukeboxId = 8, .magazines = {One(1)}}},
    {"ImportIntoJukebox",         {.verb = Verb::Import, .jukeboxName = "MyBox"}},
    {"ImportRepeated",            {.verb = Verb::Import, .jukeboxId = 8, .magazines = {One(1)}, .repeat = 4}},
    {"ImportRepeatedPastTheEnd",  {.verb = Verb::Import, .jukeboxId = 8, .slots = {One(2)}, .repeat = 9}},
    {"ImportIntoSlots",           {.verb = Verb::Import, .quiet = true, .jukeboxId = 8, .slots = {One(1), FromTo(2, 3)}}},
    {"ExportSlot",                {.verb = Verb::Export, .jukeboxId = 8, .slots = {One(5)}}},
    {"ExportMagazines",           {.verb = Verb::Export, .jukeboxId = 8, .magazines = {FromTo(1, 3)}}},
    {"ExportJukebox",             {.verb = Verb::Export, .server = "backup", .jukeboxName = "Tower"}},
    {"ExportRepeated",            {.verb = Verb::Export, .jukeboxId = 8, .slots = {One(1)}, .repeat = 2}},
    {"ExportVolumes",             {.verb = Verb::Export, .volumes = {One(33), One(600), One(700)}}},
    {"ScanSlot",                  {.verb = Verb::Scan, .jukeboxId = 11, .magazines = {One(1)}, .slots = {One(3)}}},
    {"ScanJukebox",               {.verb = Verb::Scan, .quiet = true, .jukeboxId = 8}},
    {"ScanVolume",                {.verb = Verb::Scan, .volumes = {One(517)}}},
    {"FormatSlot",                {.verb = Verb::Format, .jukeboxId = 8, .magazines = {One(1)}, .slots = {One(1)}, .label = "New", .certify = true}},
    {"FormatSide",                {.verb = Verb::Format, .jukeboxId = 8, .slots = {One(1)}, .sideB = true, .sequential = true}},
    {"FormatMagazine",            {.verb = Verb::Format, .jukeboxId = 8, .magazines = {One(1)}}},
    {"FormatVolume",              {.verb = Verb::Format, .volumes = {One(34)}}},
    {"FormatWithTooLongLabel",    {.verb = Verb::Format, .jukeboxId = 8, .slots = {One(1), One(3)}, .label = std::string(256, 'x')}},
    {"EraseJukebox",              {.verb = Verb::Format, .jukeboxId = 11, .erase = true}},
    {"EraseAndFinalize",          {.verb = Verb::Format, .jukeboxId = 8, .slots = {One(1)}, .erase = true, .finalize = true}},
    {"FinalizeSlots",             {.verb = Verb::Format, .jukeboxId = 8, .slots = {One(3), One(1)}, .finalize = true}},
    {"EnableJukebox",             {.verb = Verb::Enable, .jukeboxName = "Shelf"}},
    {"EnableMagazines",           {.verb = Verb::Enable, .jukeboxId = 8, .magazines = {One(2), One(3)}}},
    {"EnableDrive",               {.verb = Verb::Enable, .jukeboxId = 8, .drive = 2}},
    {"EnableVolumes",             {.verb = Verb::Enable, .volumes = {One(33), One(34)}}},
    {"EnableSlots",               {.verb = Verb::Enable, .jukeboxId = 8, .slots = {FromTo(1, 3)}}},
    {"DisableSlot",               {.verb = Verb::Disable, .jukeboxId = 8, .magazines = {One(1)}, .slots = {One(1)}}},
    {"DisableJukebox",            {.verb = Verb::Disable, .quiet = true, .jukeboxId = 29}},
    {"DisableMagazine",           {.verb = Verb::Disable, .jukeboxId = 8, .magazines = {One(1)}}},
    {"DisableDrive",              {.verb = Verb::Disable, .jukeboxId = 8, .drive = 1}},
    {"DisableVolume",             {.verb = Verb::Disable, .volumes = {One(273)}}},
    {"NameJukebox",               {.verb = Verb::Name, .jukeboxName = "MyBox", .newName = "Archive box"}},
    {"NameVolumes",               {.verb = Verb::Name, .volumes = {One(273), One(33)}, .newName = "dir1/volume273"}},
    {"NameNothing",               {.verb = Verb::Name, .newName = "nobody"}},
    {"QueryJukeboxes",            {.object = Object::Jukeboxes, .notable = true}},
    {"QueryOneJukebox",           {.jukeboxName = "Shelf", .object = Object::Jukeboxes}},
    {"QueryMagazines",            {.object = Object::Magazines, .notable = true}},
    {"QueryMagazinesOfJukebox",   {.jukeboxId = 8, .magazines = {One(2)}, .object = Object::Magazines, .notable = true}},
    {"QueryDrives",               {.object = Object::Drives, .notable = true}},
    {"QueryDrivesOfJukebox",      {.jukeboxId = 8, .object = Object::Drives, .notable = true}},
    {"QueryOneDrive",             {.jukeboxId = 8, .drive = 2, .object = Object::Drives, .notable = true}},
    {"QuerySlots",                {.object = Object::Slots, .notable = true}},
    {"QuerySlotsOfMagazine",      {.jukeboxId = 8, .magazines = {One(3)}, .object = Object::Slots, .notable = true}},
    {"QuerySlotsByNumber",        {.jukeboxId = 8, .slots = {One(1), FromTo(3, 6)}, .object = Object::Slots, .notable = true}},
    {"QuerySide",                 {.jukeboxId = 8, .magazines = {One(1)}, .slots = {One(1)}, .sideB = true, .object = Object::Slots, .notable = true}},
    {"QuerySideBySlotNumber",     {.jukeboxId = 8, .slots = {One(3)}, .sideA = true, .object = Object::Volumes, .notable = true}},
    {"QueryVolumes",              {.object = Object::Volumes, .notable = true}},
    {"QueryVolumesAsTable",       {.object = Object::Volumes, .sort = "-lI", .width = 60}},
    {"QueryVolumesByNumber",      {.volumes = {One(34), One(700), One(600)}, .object = Object::Volumes, .notable = true}},
    {"QueryVolumesOfJukebox",     {.jukeboxId = 8, .object = Object::Volumes, .notable = true}},
    {"QueryVolumesInDrive",       {.jukeboxId = 8, .drive = 1, .object = Object::Volumes}},
    {"QueryUnknownColumn",        {.jukeboxId = 8, .object = Object::Slots, .columns = "IQ"}},
    {"QueryNoObject",             {.jukeboxName = "Tower"}},
    {"ServiceStart",              {.verb = Verb::Start, .server = "sales server"}},
    {"ServiceStop",               {.verb = Verb::Stop}},
    {"ServiceRestart",            {.verb = Verb::Restart, .quiet = true}},
};
// clang-format on

}  // namespace

using krvfake::kSideA;
using krvfake::kSideB;

void BuildSmallFarm(krvfake::Farm& farm) {
    farm.AddJukebox(8, "Tower")
        .WithChanger({"HP", "C1160A", "1.10", {0, 3, 0}})
        .DoubleSided()
        .WithDrive({"HP", "C1113F", "3.02", {0, 4, 0}})
        .WithDrive({"", "C1113F", "3.02", {0, 4, 1}}, false)
        .WithMagazine(3)
        .WithMissingMagazine(0)
        .WithMagazine(2)
        .WithSlot(2, 0, krvfake::slot_state::kScanFailed, 254);
    farm.AddJukebox(11, "MyBox").Disabled().WithMagazine(3);
    farm.AddJukebox(29, "Shelf");

    farm.AddVolume(33, "Sales 2005").WithCapacity(4'700'000'000, 700'000'000).At(8, 0, 0, kSideA);
    farm.AddVolume(34, "Sales 2006").WithDirectory("sales\\2006").WithDirectory("old").At(8, 0, 0, kSideB);
    farm.AddVolume(273, "Disc-9").WithMedium(20).WithFileSystem("FAT").At(8, 0, 2, kSideA);
    farm.AddVolume(517, "100% full").InState(1).WithCapacity(1000, 0).At(11, 0, 1, kSideA);
    farm.AddVolume(600, "Away").InState(2);
    farm.AddVolume(700, "Set").WithType(2).SaysItIsAt(8, 0, 0, kSideA).SaysItIsAt(8, 2, 9, kSideA);
}

void PrintTo(const NamedCommand& command, std::ostream* stream) {
    *stream << CommandLineText(Words(command.command));
}

std::span<const NamedCommand> RepresentativeCommands() {
    return kCommands;
}

}  // namespace krvcmd::reliability
