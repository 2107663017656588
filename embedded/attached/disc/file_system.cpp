#include "embedded/attached/disc/file_system.h"

#include <blkid/blkid.h>

#include <algorithm>
#include <memory>

namespace embedded::attached {
namespace {

struct ProbeDeleter {
    void operator()(blkid_probe probe) const { blkid_free_probe(probe); }
};
using Probe = std::unique_ptr<blkid_struct_probe, ProbeDeleter>;

std::string ValueOf(const Probe& probe, const char* name) {
    const char* data = nullptr;
    size_t length = 0;
    if (blkid_probe_lookup_value(probe.get(), name, &data, &length) != 0 || data == nullptr) return "";
    std::string value(data, length);
    // The length counts the NUL at the end.
    value.resize(std::min(value.size(), value.find('\0')));
    return value;
}

Error NoProbe() {
    return {ErrorKind::Refused,
            "libblkid cannot look at the blocks of the disc; there may be too little memory",
            {}};
}

}  // namespace

Result<std::optional<FoundContent>> FindContent(const SparseFile& disc, uint64_t start) {
    const Probe probe(blkid_new_probe());
    if (!probe || blkid_probe_set_device(probe.get(), disc.GetDescriptor(), 0, 0) != 0) return NoProbe();
    blkid_probe_enable_superblocks(probe.get(), 1);
    blkid_probe_set_superblocks_flags(probe.get(), BLKID_SUBLKS_TYPE | BLKID_SUBLKS_VERSION |
                                                       BLKID_SUBLKS_LABEL | BLKID_SUBLKS_UUID |
                                                       BLKID_SUBLKS_USAGE);
    if (start != 0 && blkid_probe_set_hint(probe.get(), "session_offset", start) != 0) return NoProbe();
    constexpr int kFound = 0;
    constexpr int kAmbiguous = -2;
    int result = blkid_do_safeprobe(probe.get());
    if (result == kAmbiguous) {
        // Leftovers of an earlier file system: the first that is found counts.
        blkid_reset_probe(probe.get());
        result = blkid_do_probe(probe.get());
    }
    if (result < 0) return NoProbe();
    if (result != kFound) return std::optional<FoundContent>();
    FoundContent found;
    found.type = ValueOf(probe, "TYPE");
    found.version = ValueOf(probe, "VERSION");
    found.label = ValueOf(probe, "LABEL");
    found.uuid = ValueOf(probe, "UUID");
    found.isEncrypted = ValueOf(probe, "USAGE") == "crypto";
    return std::optional<FoundContent>(std::move(found));
}

}  // namespace embedded::attached
