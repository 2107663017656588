#pragma once

#include <string>

namespace krvcmd {

// What stands for a mark in a template:
//
//   table SHELL NAME        a table for a completion script, see shell_tables.h
//   manual PART [COMMAND]   a part of a manual page, see manual_blocks.h
//
// Throws std::runtime_error for a mark that there is not.
std::string BlockOf(const std::string& mark);

}  // namespace krvcmd
