#include "embedded/remote/serve/volume_rows.h"

#include <utility>

#include "embedded/remote/serve/ahead_reader.h"

namespace embedded::remote {

VolumeRows::Row VolumeRows::Make(const View& view, uint32_t first, size_t count) {
    const Ahead ahead = ReadAheadOfVolumes(view, first, count);
    const bool goesOn = !ahead.isEndOfRow && !ahead.volumes.empty();
    return {view.number, first, count, goesOn ? ahead.volumes.back().id : 0, ToMessage(ahead)};
}

json VolumeRows::Take(const View& view, uint32_t first, size_t count) {
    std::optional<Row> row = std::exchange(m_next, std::nullopt);
    const bool isMade =
        row.has_value() && row->view == view.number && row->first == first && row->count == count;
    if (!isMade) row = Make(view, first, count);
    m_last = row->last;
    m_count = count;
    return std::move(row->message);
}

void VolumeRows::PrepareNext(const View& view) {
    const uint32_t last = std::exchange(m_last, 0);
    m_next = Make(view, view.ahead.NextVolume(view.database, last), m_count);
}

}  // namespace embedded::remote
