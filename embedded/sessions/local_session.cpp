#include "embedded/sessions/local_session.h"

#include <algorithm>
#include <string>
#include <vector>

#include "embedded/catalogue/enable_disable_rename.h"
#include "embedded/catalogue/records.h"
#include "embedded/catalogue/service_state.h"
#include "embedded/operations/operation.h"
#include "embedded/service/arguments.h"

namespace embedded {

void LocalSession::SessionClose() {
    m_session.Close({"KrvSessionClose", {}});
}

// ---- Looking

void LocalSession::GetNextJukebox(uint32_t previousId, uint32_t* nextId) {
    constexpr const char* kFunction = "KrvGetNextJukebox";
    m_session.Read({kFunction, {}}, [&](const View& view) {
        CheckPointer(nextId, kFunction, "next ID");
        *nextId = NextJukebox(view.database, previousId);
    });
}

void LocalSession::GetJukebox(const JukeboxKey* key, JukeboxRecord* record) {
    constexpr const char* kFunction = "KrvGetJukebox";
    m_session.Read({kFunction, ItemOf(key)}, [&](const View& view) {
        CheckRecord(key, kFunction, "key");
        CheckRecord(record, kFunction, "record");
        if (const JukeboxRecord* known = view.ahead.FindJukebox(key->jukeboxId)) {
            *record = *known;
            return;
        }
        *record = DescribeJukebox(view.database, *key);
        view.ahead.KeepJukebox(key->jukeboxId, *record);
    });
}

void LocalSession::GetMagazine(const MagazineKey* key, MagazineRecord* record) {
    constexpr const char* kFunction = "KrvGetMagazine";
    m_session.Read({kFunction, ItemOf(key)}, [&](const View& view) {
        CheckRecord(key, kFunction, "key");
        CheckRecord(record, kFunction, "record");
        *record = DescribeMagazine(view.database, *key);
    });
}

void LocalSession::GetDrive(const DriveKey* key, DriveRecord* record) {
    constexpr const char* kFunction = "KrvGetDrive";
    m_session.Read({kFunction, ItemOf(key)}, [&](const View& view) {
        CheckRecord(key, kFunction, "key");
        CheckRecord(record, kFunction, "record");
        *record = DescribeDrive(view.database, *key);
    });
}

void LocalSession::GetSlot(const SlotKey* key, SlotRecord* record) {
    constexpr const char* kFunction = "KrvGetSlot";
    m_session.Read({kFunction, ItemOf(key)}, [&](const View& view) {
        CheckRecord(key, kFunction, "key");
        CheckRecord(record, kFunction, "record");
        *record = DescribeSlot(view.database, *key);
    });
}

void LocalSession::GetSide(const SideKey* key, SideRecord* record) {
    constexpr const char* kFunction = "KrvGetSide";
    m_session.Read({kFunction, ItemOf(key)}, [&](const View& view) {
        CheckRecord(key, kFunction, "key");
        CheckRecord(record, kFunction, "record");
        if (const SideRecord* known = view.ahead.FindSide(*key)) {
            *record = *known;
            return;
        }
        DescribeSide(view.database, *key, *record);
    });
}

void LocalSession::GetNextVolume(uint32_t previousId, uint32_t* nextId) {
    constexpr const char* kFunction = "KrvGetNextVolume";
    m_session.Read({kFunction, {}}, [&](const View& view) {
        CheckPointer(nextId, kFunction, "next ID");
        *nextId = view.ahead.NextVolume(view.database, previousId);
    });
}

void LocalSession::VolumeDetail(uint32_t volumeId, VolumeRecord* record) {
    constexpr const char* kFunction = "KrvVolumeDetail";
    m_session.Read({kFunction, VolumeItem(volumeId)}, [&](const View& view) {
        CheckRecord(record, kFunction, "record");
        if (const auto* known = view.ahead.FindVolume(volumeId)) {
            *record = known->record;
            return;
        }
        *record = DescribeVolume(view.database, volumeId);
    });
}

void LocalSession::VolumeAspects(uint32_t volumeId, char* buffer, uint32_t bufferSize,
                                 uint32_t* requiredSize) {
    constexpr const char* kFunction = "KrvVolumeAspects";
    m_session.Read({kFunction, VolumeItem(volumeId)}, [&](const View& view) {
        CheckPointer(requiredSize, kFunction, "required size");
        if (bufferSize > 0) CheckPointer(buffer, kFunction, "buffer");
        const auto* known = view.ahead.FindVolume(volumeId);
        const std::string found = known == nullptr ? DescribeAspects(view.database, volumeId) : std::string();
        const std::string& list = known == nullptr ? found : known->aspects;
        CopyAspects(list, buffer, bufferSize, *requiredSize);
    });
}

void LocalSession::VolumeLocations(uint32_t volumeId, SideKey* locations, uint32_t always1, uint32_t* count) {
    constexpr const char* kFunction = "KrvVolumeLocations";
    m_session.Read({kFunction, VolumeItem(volumeId)}, [&](const View& view) {
        CheckPointer(count, kFunction, "count");
        CheckPointer(locations, kFunction, "location array");
        CheckConstant(always1 == 1, kFunction, "fourth argument");
        CheckRecord(locations, kFunction, "location");
        const auto* known = view.ahead.FindVolume(volumeId);
        const bool isKnown = known != nullptr && !known->places.empty();
        const std::vector<SideKey> found =
            isKnown ? std::vector<SideKey>() : DescribeLocations(view.database, volumeId);
        const auto total = static_cast<uint32_t>(isKnown ? known->places.size() : found.size());
        // A caller that asks for the first time passes one element and count 0; for the second time,
        // as many elements as the count of the first call says.
        const uint32_t room = std::min(std::max(*count, 1U), total);
        for (uint32_t place = 0; place < room; ++place) {
            CheckRecord(&locations[place], kFunction, "location");
        }
        for (uint32_t place = 0; place < room; ++place) {
            locations[place] = isKnown ? known->places[place].place : found[place];
        }
        *count = total;
    });
}

// ---- Changing volumes

void LocalSession::VolumeSetAspects(uint32_t volumeId, const char* text, uint32_t always1) {
    constexpr const char* kFunction = "KrvVolumeSetAspects";
    m_session.Write({kFunction, WithText(VolumeItem(volumeId), text)}, [&](Database& database) {
        CheckPointer(text, kFunction, "text");
        CheckConstant(always1 == 1, kFunction, "fourth argument");
        return SetDirectory(database, volumeId, text);
    });
}

void LocalSession::VolumeActivate(uint32_t volumeId, const void* alwaysNull) {
    constexpr const char* kFunction = "KrvVolumeActivate";
    m_session.Write({kFunction, VolumeItem(volumeId)}, [&](Database& database) {
        CheckConstant(alwaysNull == nullptr, kFunction, "third argument");
        return EnableVolume(database, volumeId, Enabled::Yes);
    });
}

void LocalSession::VolumeDeactivate(uint32_t volumeId) {
    m_session.Write({"KrvVolumeDeactivate", VolumeItem(volumeId)},
                    [&](Database& database) { return EnableVolume(database, volumeId, Enabled::No); });
}

void LocalSession::VolumeErase(const SideKey* key) {
    constexpr const char* kFunction = "KrvVolumeErase";
    m_session.Operate({kFunction, ItemOf(key)}, [&] {
        CheckRecord(key, kFunction, "key");
        return EraseOperation(*key);
    });
}

void LocalSession::VolumeFinalize(const SideKey* key) {
    constexpr const char* kFunction = "KrvVolumeFinalize";
    m_session.Operate({kFunction, ItemOf(key)}, [&] {
        CheckRecord(key, kFunction, "key");
        return FinalizeOperation(*key);
    });
}

void LocalSession::VolumeFormat(const SideKey* key, const FormatOptions* options) {
    constexpr const char* kFunction = "KrvVolumeFormat";
    m_session.Operate({kFunction, ItemOf(key)}, [&] {
        CheckRecord(key, kFunction, "key");
        CheckFormatOptions(options, kFunction);
        return FormatOperation(*key, {options->label, options->sequential != 0, options->certify != 0});
    });
}

// ---- Moving media

void LocalSession::MediaImport(const SlotKey* key) {
    constexpr const char* kFunction = "KrvMediaImport";
    m_session.Operate({kFunction, ItemOf(key)}, [&] {
        CheckRecord(key, kFunction, "key");
        return ImportOperation(*key);
    });
}

void LocalSession::MediaExport(const SlotKey* key) {
    constexpr const char* kFunction = "KrvMediaExport";
    m_session.Operate({kFunction, ItemOf(key)}, [&] {
        CheckRecord(key, kFunction, "key");
        return ExportOperation(*key);
    });
}

void LocalSession::MediaScan(const SideKey* key) {
    constexpr const char* kFunction = "KrvMediaScan";
    m_session.Operate({kFunction, ItemOf(key)}, [&] {
        CheckRecord(key, kFunction, "key");
        return ScanOperation(*key);
    });
}

// ---- Enabling and disabling items, names

void LocalSession::ActivateJukebox(const JukeboxKey* key) {
    constexpr const char* kFunction = "KrvActivateJukebox";
    m_session.Write({kFunction, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, kFunction, "key");
        return EnableJukebox(database, *key, Enabled::Yes);
    });
}

void LocalSession::DeactivateJukebox(const JukeboxKey* key) {
    constexpr const char* kFunction = "KrvDeactivateJukebox";
    m_session.Write({kFunction, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, kFunction, "key");
        return EnableJukebox(database, *key, Enabled::No);
    });
}

void LocalSession::ActivateMagazine(const MagazineKey* key) {
    constexpr const char* kFunction = "KrvActivateMagazine";
    m_session.Write({kFunction, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, kFunction, "key");
        return EnableMagazine(database, *key, Enabled::Yes);
    });
}

void LocalSession::DeactivateMagazine(const MagazineKey* key) {
    constexpr const char* kFunction = "KrvDeactivateMagazine";
    m_session.Write({kFunction, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, kFunction, "key");
        return EnableMagazine(database, *key, Enabled::No);
    });
}

void LocalSession::ActivateDrive(const DriveKey* key) {
    constexpr const char* kFunction = "KrvActivateDrive";
    m_session.Write({kFunction, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, kFunction, "key");
        return EnableDrive(database, *key, Enabled::Yes);
    });
}

void LocalSession::DeactivateDrive(const DriveKey* key) {
    constexpr const char* kFunction = "KrvDeactivateDrive";
    m_session.Write({kFunction, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, kFunction, "key");
        return EnableDrive(database, *key, Enabled::No);
    });
}

void LocalSession::JukeboxSetName(const JukeboxKey* key, const char* newName) {
    constexpr const char* kFunction = "KrvJukeboxSetName";
    m_session.Write({kFunction, WithText(ItemOf(key), newName)}, [&](Database& database) {
        CheckRecord(key, kFunction, "key");
        CheckPointer(newName, kFunction, "new name");
        return RenameJukebox(database, *key, newName);
    });
}

// ---- The service itself

void LocalSession::ServiceStop() {
    m_session.Write({"KrvServiceStop", {}}, StopService);
}

void LocalSession::ServiceRestart() {
    m_session.Write({"KrvServiceRestart", {}}, RestartService);
}

}  // namespace embedded
