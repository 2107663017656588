#include "embedded/attached/disc/udf_volume.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

namespace embedded::attached {
namespace {

// Descriptor tag identifiers (ECMA-167, 3/7.2.1 and UDF 2.60, 2.2.1).
constexpr uint16_t kAnchor = 2;
constexpr uint16_t kLogicalVolume = 6;
constexpr uint16_t kTerminator = 8;
constexpr uint16_t kIntegrity = 9;

constexpr uint32_t kAnchorBlock = 256;

// Sequences of descriptors are 16 blocks long; more than this no writer makes.
constexpr uint32_t kMostDescriptors = 64;

// Little-endian numbers at the offsets that the standard names; zero behind the end.
class DescriptorReader {
  public:
    explicit DescriptorReader(std::vector<uint8_t> bytes) : m_bytes(std::move(bytes)) {}

    size_t GetSize() const { return m_bytes.size(); }
    uint8_t Get8(size_t at) const { return at < m_bytes.size() ? m_bytes[at] : uint8_t{0}; }
    uint16_t Get16(size_t at) const { return static_cast<uint16_t>(Get8(at) | Get8(at + 1) << 8); }
    uint32_t Get32(size_t at) const { return Get16(at) | static_cast<uint32_t>(Get16(at + 2)) << 16; }

    std::string_view GetText(size_t at, size_t length) const {
        const size_t start = std::min(at, m_bytes.size());
        return {reinterpret_cast<const char*>(m_bytes.data()) + start,
                std::min(length, m_bytes.size() - start)};
    }

    // The first 16 bytes add up (ECMA-167, 3/7.2.3), and the descriptor lies where it says.
    bool HasTag(uint16_t identifier, uint32_t location) const {
        unsigned sum = 0;
        for (size_t at = 0; at < 16; ++at)
            sum += at == 4 ? 0 : Get8(at);
        return GetSize() >= 16 && (sum & 0xFF) == Get8(4) && Get16(0) == identifier && Get32(12) == location;
    }

  private:
    std::vector<uint8_t> m_bytes;
};

// An extent: bytes and first block (ECMA-167, 3/7.1).
struct Extent {
    uint32_t length = 0;
    uint32_t block = 0;
};

// Blocks of a volume.
class Volume {
  public:
    Volume(const ByteSource& source, uint64_t start, uint32_t blockSize)
        : m_source(source), m_start(start), m_blockSize(blockSize) {}

    DescriptorReader Read(uint32_t block) const {
        return DescriptorReader(m_source(uint64_t{block} * m_blockSize, m_blockSize));
    }

    std::optional<DescriptorReader> FindAnchor() const {
        const uint64_t block = m_start / m_blockSize + kAnchorBlock;
        if (block > std::numeric_limits<uint32_t>::max()) return std::nullopt;
        auto anchor = Read(static_cast<uint32_t>(block));
        if (!anchor.HasTag(kAnchor, static_cast<uint32_t>(block))) return std::nullopt;
        return anchor;
    }

    // The last descriptor of a kind in an extent.
    std::optional<DescriptorReader> FindLast(const Extent& extent, uint16_t identifier) const {
        std::optional<DescriptorReader> found;
        const uint32_t count = std::min(extent.length / m_blockSize, kMostDescriptors);
        for (uint32_t i = 0; i < count && extent.block <= std::numeric_limits<uint32_t>::max() - i; ++i) {
            const uint32_t block = extent.block + i;
            auto descriptor = Read(block);
            if (descriptor.HasTag(kTerminator, block)) break;
            if (descriptor.HasTag(identifier, block)) found = std::move(descriptor);
        }
        return found;
    }

    uint32_t GetBlockSize() const { return m_blockSize; }

  private:
    const ByteSource& m_source;
    uint64_t m_start;
    uint32_t m_blockSize;
};

// Whether one of the partition maps (ECMA-167, 3/10.7; UDF 2.60, 2.2.8) is virtual.
bool HasVirtualMap(const DescriptorReader& volume) {
    constexpr size_t kMaps = 440;
    constexpr std::string_view kVirtual = "*UDF Virtual Partition";
    const size_t end = std::min(volume.GetSize(), kMaps + volume.Get32(264));
    size_t at = kMaps;
    while (at + 2 <= end) {
        if (volume.Get8(at) == 2 && volume.GetText(at + 5, kVirtual.size()) == kVirtual) return true;
        const size_t length = volume.Get8(at + 1);
        if (length < 2) break;
        at += length;
    }
    return false;
}

// The tables of free and of all blocks, by partition (ECMA-167, 3/10.10). FFFFFFFFh: not told.
void AddSpace(const DescriptorReader& integrity, uint32_t blockSize, UdfVolume& volume) {
    constexpr size_t kTables = 80;
    constexpr uint32_t kNotTold = 0xFFFFFFFF;
    const size_t partitions = integrity.Get32(72);
    if (partitions > (integrity.GetSize() - kTables) / 8) return;
    for (size_t i = 0; i < partitions; ++i) {
        const uint32_t free = integrity.Get32(kTables + 4 * i);
        const uint32_t size = integrity.Get32(kTables + 4 * (partitions + i));
        if (free == kNotTold || size == kNotTold) continue;
        volume.totalBytes += uint64_t{size} * blockSize;
        volume.freeBytes += uint64_t{std::min(free, size)} * blockSize;
    }
}

std::optional<UdfVolume> ReadWithBlocksOf(const Volume& blocks) {
    const auto anchor = blocks.FindAnchor();
    if (!anchor) return std::nullopt;
    auto descriptor = blocks.FindLast({anchor->Get32(16), anchor->Get32(20)}, kLogicalVolume);
    if (!descriptor) descriptor = blocks.FindLast({anchor->Get32(24), anchor->Get32(28)}, kLogicalVolume);
    if (!descriptor || descriptor->Get32(212) != blocks.GetBlockSize()) return std::nullopt;
    UdfVolume volume;
    volume.hasVirtualAllocationTable = HasVirtualMap(*descriptor);
    const auto integrity = blocks.FindLast({descriptor->Get32(432), descriptor->Get32(436)}, kIntegrity);
    if (integrity) AddSpace(*integrity, blocks.GetBlockSize(), volume);
    return volume;
}

}  // namespace

std::optional<UdfVolume> ReadUdfVolume(const ByteSource& source, uint64_t start, uint32_t blockSize) {
    // A volume that was made elsewhere may have other blocks than the medium.
    for (const uint32_t size : {blockSize, 2048U, 512U, 1024U, 4096U, 8192U}) {
        const auto volume = ReadWithBlocksOf(Volume(source, start, size));
        if (volume) return volume;
    }
    return std::nullopt;
}

}  // namespace embedded::attached
