#pragma once

#include <string>

#include "embedded/attached/disc/medium.h"
#include "embedded/attached/disc/sparse_file.h"

namespace embedded::attached {

// An empty UDF file system for a medium, made by mkudffs. With a VAT on a medium that is written
// sequentially, the file ends with the last block to be written; all others are as large as the medium.
struct UdfRequest {
    std::string label;  // UTF-8
    std::string revision;
    bool hasVirtualAllocationTable = false;
};
Result<SparseFile> MakeEmptyUdf(const Medium& medium, const UdfRequest& request);

// What mkudffs is called with, its own name excepted.
std::vector<std::string> UdfArguments(const Medium& medium, const UdfRequest& request);

}  // namespace embedded::attached
