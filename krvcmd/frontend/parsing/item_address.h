#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/frontend/parsing/parameter_list.h"

namespace krvcmd {

enum class AddressKind : int32_t {
    None = 0,
    Volumes = 1,   // V
    SlotSide = 2,  // J, S and one side, M optional
    Slots = 3,     // J and S, M optional
    Magazine = 5,  // J and M
    Jukebox = 6,   // J
    Drive = 7,     // J and D
};

// One addressed target. Magazine, slot and drive are zero-based: one less than the user wrote, so that 0 on
// the command line becomes -1.
struct ItemAddress {
    int32_t jukeboxId = -1;   // below 1: not given
    std::string jukeboxName;  // given instead of an ID
    std::optional<int32_t> magazine;
    std::optional<int32_t> slot;
    std::optional<int32_t> side;  // 0 = A, 1 = B; without a value: none or both given
    std::optional<int32_t> drive;
    int32_t volumeId = -1;  // below 1: not given
};

// The addressed targets of one command line: one entry for each number of its lists and ranges.
// Entries are made one at a time, so that "S1-2000000000" costs no memory. A reversed range holds
// no entry.
class ItemAddressList {
  public:
    // An empty list.
    ItemAddressList() = default;

    // Puts one number of the command line into an entry.
    using SetNumber = void (*)(ItemAddress& entry, int32_t number);

    // Entries are copies of `common`, into each of which one number of `numbers` is put.
    ItemAddressList(ItemAddress common, SetNumber setNumber, std::vector<NumberRange> numbers);

    class Iterator {
      public:
        explicit Iterator(const ItemAddressList& list);
        ItemAddress operator*() const;
        Iterator& operator++();
        bool operator==(std::default_sentinel_t) const;

      private:
        void SkipEmptyRanges();

        const ItemAddressList* m_list;
        size_t m_range = 0;
        int64_t m_number = 0;  // 64 bits: may step past the largest number of a range
    };

    Iterator begin() const { return Iterator(*this); }
    static std::default_sentinel_t end() { return {}; }

    bool IsEmpty() const { return begin() == end(); }

    // The first entry; the list must not be empty.
    ItemAddress Front() const { return *begin(); }

  private:
    ItemAddress m_common;
    SetNumber m_setNumber = nullptr;
    std::vector<NumberRange> m_numbers;
};

// Chooses the address kind from the parameters J, M, S, .A, .B, D and V and lists the entries.
// System error 22 for a combination that addresses nothing, and where a single number is needed
// but a list or range is given.
Status ReadItemAddress(const std::vector<Parameter>& parameters, AddressKind& kind,
                       ItemAddressList& addresses);

}  // namespace krvcmd
