#pragma once

#include <string>

#include "krvcmd/commands/base/command.h"

namespace krvcmd {

// Renames a jukebox, or sets the directory name of volumes. Without a new name the library gets an empty
// text.
class CName : public CCommand {
  public:
    Status ParseOptions() override;
    Status Run() override;

  private:
    Status Rename(const ItemAddress& entry, int32_t jukeboxId) const;

    bool m_hasNewName = false;
    std::string m_newName;
};

// Deliberately changes nothing and succeeds. No command line can name it.
class CDelete : public CCommand {
  public:
    Status Run() override;
};

}  // namespace krvcmd
