// The descriptors of a hostile UDF volume. The input is a list of blocks: the number of each in two bytes,
// the lower one first, and 512 bytes of content. Every block gets the tag location and checksum that the
// reader asks for.
#include <algorithm>
#include <map>
#include <vector>

#include "embedded/attached/disc/udf_volume.h"
#include "tests/fuzz/fuzz_target.h"

namespace krvcmd::fuzz {
namespace {

constexpr size_t kBlock = 512;

// No reader needs more reads than this for a volume, whatever its descriptors say.
constexpr size_t kMostReads = 2000;

std::vector<uint8_t> Tagged(const uint8_t* content, uint32_t block) {
    std::vector<uint8_t> bytes(content, content + kBlock);
    for (size_t i = 0; i < 4; ++i)
        bytes[12 + i] = static_cast<uint8_t>(block >> 8 * i);
    unsigned sum = 0;
    for (size_t at = 0; at < 16; ++at)
        sum += at == 4 ? 0U : bytes[at];
    bytes[4] = static_cast<uint8_t>(sum);
    return bytes;
}

void TryVolume(const uint8_t* data, size_t size) {
    std::map<uint64_t, std::vector<uint8_t>> blocks;
    for (size_t at = 0; at + 2 + kBlock <= size; at += 2 + kBlock) {
        const auto block = static_cast<uint32_t>(data[at] | data[at + 1] << 8);
        blocks[block] = Tagged(data + at + 2, block);
    }
    size_t reads = 0;
    const embedded::attached::ByteSource source = [&](uint64_t at, size_t length) {
        Require(++reads <= kMostReads, "the reader comes to an end");
        Require(length <= 32768, "a read is no longer than a block");
        std::vector<uint8_t> bytes(length);
        const auto found = blocks.find(at / kBlock);
        if (found != blocks.end() && at % kBlock == 0)
            std::copy_n(found->second.begin(), std::min(length, kBlock), bytes.begin());
        return bytes;
    };
    const auto volume = embedded::attached::ReadUdfVolume(source, 0, kBlock);
    if (volume) Require(volume->freeBytes <= volume->totalBytes, "there is no more free than there is");
}

}  // namespace
}  // namespace krvcmd::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    krvcmd::fuzz::TryVolume(data, size);
    return 0;
}
