#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "embedded/journal/call_info.h"
#include "embedded/model/handled_medium.h"
#include "embedded/store/database.h"

namespace embedded {

// The journal of a farm: every call that any process made, while it is switched on.
struct JournalEntry {
    CallInfo call;         // without the text of its item, which may be gone when the entry is written
    std::string argument;  // that text
    std::chrono::system_clock::time_point time;  // when the call began
    std::chrono::steady_clock::duration duration{0};
    uint64_t session = 0;
    bool succeeded = true;
    int32_t code = 0;
    std::string text;    // of the failure
    std::string change;  // what the call changed, in words; empty when nothing
    std::optional<HandledMedium> medium;
};

// Appends the entries and drops the oldest ones beyond the limit, in the caller's transaction.
void WriteJournal(Database& database, int64_t limit, std::span<const JournalEntry> entries);

// Leaves a mark beside the farm, an empty file, that calls could not be recorded; on a full disk there is
// room for it. In a read-only folder there is no mark.
void MarkUnrecordedCalls(const Database& database);
// The time of the last mark; nothing when there is none.
std::optional<std::filesystem::file_time_type> FindUnrecordedCalls(const Database& database);
void ForgetUnrecordedCalls(const Database& database);

// An entry as the database keeps it.
struct StoredJournalEntry {
    int64_t id = 0;
    std::chrono::system_clock::time_point time;
    int64_t duration = 0;  // microseconds
    int64_t process = 0;
    uint64_t session = 0;
    std::string function;
    Item item;             // without its text
    std::string argument;  // the text that came with the call
    bool succeeded = true;
    int64_t code = 0;
    std::string text;
    std::string change;
    std::optional<HandledMedium> medium;
};

// Hands over the entries behind the one with the ID `last`, in order.
void ReadJournal(Database& database, int64_t last,
                 const std::function<void(const StoredJournalEntry&)>& read);

}  // namespace embedded
