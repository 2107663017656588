#pragma once

#include <optional>
#include <string>

#include "embedded/attached/disc/sparse_file.h"

namespace embedded::attached {

// What libblkid finds in the first and last blocks of a disc.
struct FoundContent {
    std::string type;  // libblkid's word: "udf", "iso9660", "vfat"
    std::string version;
    std::string label;  // untrusted bytes
    std::string uuid;
    bool isEncrypted = false;  // a container that only its key opens
};

// `start` is the first byte of the session to look at. Nothing when there is nothing that is known.
Result<std::optional<FoundContent>> FindContent(const SparseFile& disc, uint64_t start);

}  // namespace embedded::attached
