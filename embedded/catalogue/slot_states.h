#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <tuple>

#include "embedded/model/farm.h"
#include "embedded/store/database.h"

namespace embedded {

// The states of slots, read ahead for a caller that asks for many of them: a slot is read together with its
// neighbours, since searching for a slot costs far more than reading the next one.
class SlotStates {
  public:
    // The caller has a new view.
    void Forget();

    // Zero-based, as in the keys. Nothing for an unknown slot and for one whose magazine is not present.
    std::optional<SlotState> Find(Database& database, int64_t jukebox, int64_t magazine, int64_t slot);

  private:
    static constexpr int64_t kBlockSize = 32;  // a power of two

    using Block = std::array<std::optional<SlotState>, kBlockSize>;
    struct Key {
        int64_t jukebox;
        int64_t magazine;
        int64_t firstSlot;  // a multiple of kBlockSize

        friend bool operator<(const Key& left, const Key& right) {
            return std::tie(left.jukebox, left.magazine, left.firstSlot) <
                   std::tie(right.jukebox, right.magazine, right.firstSlot);
        }
    };

    static Block Read(Database& database, const Key& key);

    std::map<Key, Block> m_blocks;
};

}  // namespace embedded
