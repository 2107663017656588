#include <algorithm>

#include "embedded/attached/disc/block_writing.h"
#include "embedded/attached/disc/disc_change.h"

namespace embedded::attached {
namespace {

bool IsRewritable(const Medium& medium) {
    const MediaType* type = FindMediaType(medium.type);
    return type != nullptr && type->writing == Writing::Rewritable;
}

// Zeros at the start and at the end, or everywhere.
Result<Nothing> Overwrite(DiscChange& change, const Medium& medium, EraseExtent extent) {
    const uint64_t size = medium.blocks * medium.blockSize;
    const uint64_t signatures = std::min(size, medium.GetSignatureBlocks() * medium.blockSize);
    std::vector<SparseFile::Extent> extents{{0, extent == EraseExtent::Whole ? size : signatures}};
    if (extent == EraseExtent::Quick) extents.push_back({size - signatures, size});
    const auto zeros = SparseFile::Create(size);
    if (!zeros) return zeros.GetError();
    const auto runs = RunsOf(extents, medium.blocks, medium.blockSize);
    auto written = WriteRuns(change, *zeros, runs, medium.blockSize);
    if (!written) return written;
    return CompareRuns(change, *zeros, runs, medium.blockSize);
}

Result<Nothing> Erase(DiscChange& change, EraseExtent extent) {
    const auto medium = change.ReadWritableMedium();
    if (!medium) return medium.GetError();
    if (!IsRewritable(*medium)) {
        return change.Refuse("cannot erase a medium that can be written once only (" +
                             std::string(MediaTypeName(medium->type)) + ")");
    }
    // Nothing was ever written.
    if (medium->isUnformatted) return Nothing();
    if (medium->recording == Recording::Random) return Overwrite(change, *medium, extent);
    if (medium->status == DiscStatus::Empty && extent == EraseExtent::Quick) return Nothing();
    auto blanked = change.BlankMedium(*medium, extent);
    if (!blanked) return blanked;
    const auto after = change.ReadWritableMedium();
    if (!after) return after.GetError();
    if (after->status == DiscStatus::Empty) return Nothing();
    return change.Condemn("finds the disc still written after erasing it; use another disc");
}

}  // namespace

ChangeResult EraseDisc(Device& drive, EraseExtent extent, const DiscLimits& limits,
                       const DiscProgress& progress) {
    DiscChange change(drive, limits, progress);
    return change.Finish(Erase(change, extent));
}

}  // namespace embedded::attached
