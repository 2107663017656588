#pragma once

#include <cstddef>
#include <cstdint>

#include "tests/reliability/support/command_spec.h"
#include "tests/reliability/support/model_library.h"
#include "tests/reliability/support/model_walk.h"

namespace krvcmd::reliability {

// The look-ups of the query command, and the number of their rows.
class ModelQuery {
  public:
    ModelQuery(const ModelLibrary& library, const CommandSpec& command)
        : m_library(library), m_command(command) {}

    // `jukebox` is the resolved ID, -1 when the address names none.
    Result Gather(int32_t jukebox);

    size_t Rows() const { return m_rows; }

  private:
    Result ListJukebox(int32_t jukebox);
    Result ListMagazines(int32_t jukebox);
    Result ListDrives(int32_t jukebox);
    Result ListDrive(int32_t jukebox, int32_t drive);
    Result ListSlotsOrVolumes(int32_t jukebox);
    Result ListAddressedSlots(int32_t jukebox);
    // `address` is one-based.
    Result Walk(const Place& address);
    Result ListSlot(const Place& place);
    Result ListVolume(int32_t jukebox, int32_t volume);
    Result ReadDirectories(int32_t volume);
    bool NamesNoJukebox() const { return !m_command.HasJukebox(); }

    const ModelLibrary& m_library;
    const CommandSpec& m_command;
    size_t m_rows = 0;
};

}  // namespace krvcmd::reliability
