#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "krvcmd/commands/base/worker.h"

namespace krvcmd::test {

// The address of slots in a jukebox, zero-based.
inline ItemAddress SlotsOf(int32_t jukeboxId, std::optional<int32_t> magazine, std::optional<int32_t> slot) {
    ItemAddress address;
    address.jukeboxId = jukeboxId;
    address.magazine = magazine;
    address.slot = slot;
    return address;
}

// A worker that notes where it works and answers as it was told, with success by default.
class ScriptedWorker : public CWorker {
  public:
    using CWorker::WorkOnEntries;

    // The answer for a position, zero-based, as "magazine/slot".
    void Answers(const std::string& position, Status status) { m_answers[position] = std::move(status); }

    Status Work(const SlotPosition& position) override {
        const std::string where = std::to_string(position.magazine) + "/" + std::to_string(position.slot);
        m_visited += where + " ";
        m_last = position;
        const auto answer = m_answers.find(where);
        return answer == m_answers.end() ? Status() : answer->second;
    }

    // The positions so far, in the order of the work, each followed by a blank.
    const std::string& Visited() const { return m_visited; }

    const SlotPosition& Last() const { return m_last; }

  private:
    std::map<std::string, Status> m_answers;
    std::string m_visited;
    SlotPosition m_last;
};

}  // namespace krvcmd::test
