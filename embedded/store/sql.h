// Every statement that a call of the library runs, as one table. The statements that look
// something up find it by index searches alone, so that no call grows slower with the farm.
#pragma once

#include <cstddef>
#include <span>

namespace embedded {

enum class Sql {
    // transactions
    BeginRead,
    BeginChange,
    Commit,
    Rollback,
    // looking
    ServerState,
    NextJukebox,
    NextVolume,
    Jukebox,
    Magazine,
    Drive,
    Slot,
    AbsoluteSlot,
    FirstGap,
    Side,
    SidesOfMedium,
    Volume,
    Directories,
    DirectoryOwner,
    Locations,
    VolumePlaces,
    VolumesInMagazine,
    VolumesAhead,
    DirectoriesAhead,
    PlacesAhead,
    FaultsOfFunction,
    NextWaiting,
    LastInStation,
    FirstEmptySlot,
    FirstEmptySlotOfMagazine,
    FirstFullSlot,
    FirstFullSlotOfMagazine,
    // changing
    MoveMedium,
    SetSlotState,
    SetSide,
    FinalizeSide,
    NumberSides,
    NumberVolume,
    NumberDirectories,
    TakeVolumeId,
    AddVolume,
    SetVolumeFormat,
    SetVolumeState,
    ForgetOddState,
    SetVolumeEnabled,
    RemoveVolume,
    RemoveDirectories,
    SetDirectory,
    SetJukeboxEnabled,
    SetJukeboxName,
    SetMagazinePresent,
    AddToSlotCount,
    SetDriveEnabled,
    SetRunning,
    CountFault,
    AddJournalEntry,
    TrimJournal,
    Count
};

inline constexpr size_t kSqlCount = static_cast<size_t>(Sql::Count);

// Statement texts in the order of Sql.
std::span<const char* const> SqlTexts();

}  // namespace embedded
