#pragma once

#include <iosfwd>
#include <span>

#include "tests/fake_library/farm.h"
#include "tests/reliability/support/command_spec.h"

namespace krvcmd::reliability {

// A farm with one of each thing, small enough that every call of every command can be made to fail:
//
//   jukebox 8 "Tower"     double-sided, two drives; magazine 1: slot 1 with volumes 33 and 34 on its sides,
//                         slot 2 empty, slot 3 with volume 273 on side A; magazine 2: not present; magazine
//                         3: a slot whose scan failed, an empty one
//   jukebox 11 "MyBox"    one magazine of three slots, no drive; slot 2 with volume 517 on side A
//   jukebox 29 "Shelf"    no magazine
//   volume 600            in no jukebox
//   volume 700            two locations; the second is wrong
void BuildSmallFarm(krvfake::Farm& farm);

struct NamedCommand {
    const char* name;  // as part of a test's name
    CommandSpec command;
};

// For messages.
void PrintTo(const NamedCommand& command, std::ostream* stream);

// Every command in every form of address that it knows, on the small farm.
std::span<const NamedCommand> RepresentativeCommands();

}  // namespace krvcmd::reliability
