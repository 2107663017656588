#pragma once

#include <string>

#include "krvcmd/commands/command.h"

namespace krvcmd {

// Renames a jukebox, or sets the directory name of volumes. Without a new name the library is
// handed an empty text.
class CName : public CCommand {
  public:
    Status ParseOptions() override;
    Status Run() override;

  private:
    Status Rename(const ItemAddress& entry, std::int32_t jukeboxId) const;

    bool m_hasNewName = false;
    std::string m_newName;
};

}  // namespace krvcmd
