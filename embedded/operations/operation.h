#pragma once

#include <cstdint>
#include <memory>

#include "embedded/catalogue/change_made.h"
#include "embedded/catalogue/format_erase_finalize.h"
#include "embedded/operations/mechanics.h"
#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// One call that handles media, in three steps, the same ones in simulated and real jukeboxes. In a simulated
// one they are one transaction; in a real one, what happens physically is outside of any.
class Operation {
  public:
    explicit Operation(int32_t jukebox) : m_jukebox(jukebox) {}
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;
    virtual ~Operation() = default;

    int32_t GetJukebox() const { return m_jukebox; }

    // The side that is going to be written, 2 = both; null when none is.
    virtual const SideKey* GetWrittenSide() const { return nullptr; }

    // Refuses what the service does not do and changes nothing.
    virtual void Plan(Database& database) = 0;
    virtual void Perform(Mechanics& mechanics) = 0;
    // In the caller's transaction.
    virtual CallOutcome Record(Database& database) = 0;

  private:
    int32_t m_jukebox;
};

std::unique_ptr<Operation> ImportOperation(const SlotKey& key);
std::unique_ptr<Operation> ExportOperation(const SlotKey& key);
std::unique_ptr<Operation> ScanOperation(const SideKey& key);
std::unique_ptr<Operation> FormatOperation(const SideKey& key, const FormatRequest& request);
std::unique_ptr<Operation> EraseOperation(const SideKey& key);
std::unique_ptr<Operation> FinalizeOperation(const SideKey& key);

}  // namespace embedded
