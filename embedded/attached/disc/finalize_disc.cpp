#include "embedded/attached/disc/disc_change.h"

namespace embedded::attached {
namespace {

// Read-only discs are closed: many drives call a closed disc by the profile of a pressed one.
bool IsClosed(const Medium& medium) {
    if (medium.profile == nullptr) return false;
    return medium.recording == Recording::None ||
           (medium.recording == Recording::Sequential && medium.status == DiscStatus::Complete);
}

Result<Nothing> Finalize(DiscChange& change) {
    const auto medium = change.ReadReadyMedium();
    if (!medium) return medium.GetError();
    if (IsClosed(*medium)) return Nothing();
    if (medium->recording != Recording::Sequential || medium->profile == nullptr) {
        return change.Refuse("holds a disc that is not written sequentially and cannot be closed (" +
                             std::string(MediaTypeName(medium->type)) + ")");
    }
    if (medium->status == DiscStatus::Empty)
        return change.Refuse("holds a blank disc; there is nothing to close");
    auto set = change.SetNextSession(*medium, false);
    if (!set) return set;
    // Discs with write parameters take from them whether more may follow.
    auto closed = change.CloseSession(medium->profile->hasWriteParameters ? CloseFunction::Session
                                                                          : CloseFunction::Finalize);
    if (!closed) return closed;
    const auto after = change.ReadReadyMedium();
    if (!after) return after.GetError();
    if (IsClosed(*after)) return Nothing();
    return change.Refuse("has closed the disc, but it still takes more; try again");
}

}  // namespace

ChangeResult FinalizeDisc(Device& drive, const DiscLimits& limits, const DiscProgress& progress) {
    DiscChange change(drive, limits, progress);
    return change.Finish(Finalize(change));
}

}  // namespace embedded::attached
