#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "embedded/remote/protocol/cbor.h"
#include "embedded/sessions/connection.h"

namespace embedded::remote {

// Rows of volumes for a walk over them. While one travels to the caller, the next can be made.
class VolumeRows {
  public:
    // The row that begins with this volume, as a message.
    json Take(const View& view, uint32_t first, size_t count);

    // Whether a row was taken that goes on, and the one behind it was not made yet.
    bool GoesOn() const { return m_last != 0; }
    // Makes the row behind the one that was taken last. Take returns it if it is asked for that row in a view
    // that shows the same.
    void PrepareNext(const View& view);

  private:
    struct Row {
        uint64_t view = 0;
        uint32_t first = 0;
        size_t count = 0;   // that was asked for
        uint32_t last = 0;  // 0 when no volume follows the row
        json message;
    };
    static Row Make(const View& view, uint32_t first, size_t count);

    std::optional<Row> m_next;
    uint32_t m_last = 0;  // of the row that was taken last, until the one behind it is made
    size_t m_count = 0;   // that was asked for then
};

}  // namespace embedded::remote
