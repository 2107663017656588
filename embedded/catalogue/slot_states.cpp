#include "embedded/catalogue/slot_states.h"

#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr Sql kSlots = R"sql(
    SELECT s.number, s.state
    FROM magazine g
    CROSS JOIN slot s ON s.jukebox = g.jukebox AND s.magazine = g.number
    WHERE g.jukebox = ?1 AND g.number = ?2 AND g.present = 1 AND s.number BETWEEN ?3 AND ?4
)sql";

// Enough for a million slots in a row.
constexpr size_t kMostBlocks = 32768;

}  // namespace

void SlotStates::Forget() {
    m_blocks.clear();
}

std::optional<SlotState> SlotStates::Find(Database& database, int64_t jukebox, int64_t magazine,
                                          int64_t slot) {
    const int64_t offset = slot & (kBlockSize - 1);
    const Key key{jukebox, magazine, slot - offset};
    auto found = m_blocks.find(key);
    if (found == m_blocks.end()) {
        if (m_blocks.size() == kMostBlocks) m_blocks.clear();
        found = m_blocks.emplace(key, Read(database, key)).first;
    }
    return found->second[static_cast<size_t>(offset)];
}

SlotStates::Block SlotStates::Read(Database& database, const Key& key) {
    Block block{};
    Statement row(database, kSlots, key.jukebox, key.magazine, key.firstSlot, key.firstSlot + kBlockSize - 1);
    while (row.Next()) {
        const auto offset = static_cast<size_t>(row.Read<int64_t>() - key.firstSlot);
        block[offset] = row.Read<SlotState>();
    }
    return block;
}

}  // namespace embedded
