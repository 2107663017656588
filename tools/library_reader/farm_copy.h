#pragma once

#include <string>

#include "embedded/model/farm.h"
#include "tools/common/command_line.h"
#include "tools/common/streams.h"
#include "tools/library_reader/copy_log.h"

namespace embedded::tools {

// What becomes of a copy that lacks what could not be read.
enum class Incomplete { Refused, Accepted };

struct CopyOptions {
    std::string library;     // a file
    std::string from = ".";  // the server to read
    Listing listing = Listing::Grouped;
    Incomplete incomplete = Incomplete::Refused;
};

// The options --verbose and --partial-ok, which need the option `library`.
void AddCopyOptions(CLI::App& command, CLI::Option& library, CopyOptions& options);

struct FarmCopy {
    Farm farm;
    int64_t unread = 0;  // items
};

// Reads a whole farm through a client library and changes nothing there. Whatever cannot be read is reported
// on `err` and left out, and so is what no call shows: the media of volumes outside of visible slots, and the
// media in magazines that are not present. Blank media outside of slots stay unnoticed. Where two answers of
// the service differ, what was copied is reported. The farm has no contradictions. Throws ToolFailure when
// the library or the session fails.
FarmCopy CopyFarm(const CopyOptions& options, const Streams& streams);

// Throws IncompleteResult for a copy that lacks something, unless that is accepted. Call it when the copy is
// where it belongs.
void RequireComplete(const FarmCopy& copy, const CopyOptions& options);

}  // namespace embedded::tools
