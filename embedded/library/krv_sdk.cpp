#include "krvcmd/service/sdk/krv_sdk.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "embedded/catalogue/enable_disable_rename.h"
#include "embedded/catalogue/format_erase_finalize.h"
#include "embedded/catalogue/import_export_scan.h"
#include "embedded/catalogue/records.h"
#include "embedded/catalogue/service_state.h"
#include "embedded/library/call.h"
#include "embedded/sessions/session.h"

// The 31 entry points of the client library. Inside each of them __func__ is the name that the caller knows.

using embedded::Call;
using embedded::ChangeCall;
using embedded::CheckConstant;
using embedded::CheckPointer;
using embedded::CheckRecord;
using embedded::Database;
using embedded::Enabled;
using embedded::ItemOf;
using embedded::LookCall;
using embedded::Session;
using embedded::SessionTable;
using embedded::View;
using embedded::VolumeItem;
using embedded::WithText;

// ---- Sessions

KrvBool KrvSessionCreate(KrvCallContext* context, const char* serverName, KrvSession* session) {
    const char* function = __func__;
    return Call(context, function, [&] {
        CheckPointer(serverName, function, "server name");
        CheckPointer(session, function, "session handle");
        const KrvSession handle = SessionTable::Instance().Reserve();
        SessionTable::Instance().Add(handle, std::make_shared<Session>(serverName, handle));
        *session = handle;
    });
}

KrvBool KrvSessionClose(KrvCallContext* context) {
    const char* function = __func__;
    return Call(context, function, [&] {
        SessionTable::Instance().Remove(context->session)->Close({function, {}});
    });
}

// ---- Looking

KrvBool KrvGetNextJukebox(KrvCallContext* context, uint32_t previousId, uint32_t* nextId) {
    const char* function = __func__;
    return LookCall(context, {function, {}}, [&](const View& view) {
        CheckPointer(nextId, function, "next ID");
        *nextId = embedded::NextJukebox(view.database, previousId);
    });
}

KrvBool KrvGetJukebox(KrvCallContext* context, const JukeboxKey* key, JukeboxRecord* record) {
    const char* function = __func__;
    return LookCall(context, {function, ItemOf(key)}, [&](const View& view) {
        CheckRecord(key, function, "key");
        CheckRecord(record, function, "record");
        if (const JukeboxRecord* known = view.ahead.FindJukebox(key->jukeboxId)) {
            *record = *known;
            return;
        }
        *record = embedded::DescribeJukebox(view.database, *key);
        view.ahead.KeepJukebox(key->jukeboxId, *record);
    });
}

KrvBool KrvGetMagazine(KrvCallContext* context, const MagazineKey* key, MagazineRecord* record) {
    const char* function = __func__;
    return LookCall(context, {function, ItemOf(key)}, [&](const View& view) {
        CheckRecord(key, function, "key");
        CheckRecord(record, function, "record");
        *record = embedded::DescribeMagazine(view.database, *key);
    });
}

KrvBool KrvGetDrive(KrvCallContext* context, const DriveKey* key, DriveRecord* record) {
    const char* function = __func__;
    return LookCall(context, {function, ItemOf(key)}, [&](const View& view) {
        CheckRecord(key, function, "key");
        CheckRecord(record, function, "record");
        *record = embedded::DescribeDrive(view.database, *key);
    });
}

KrvBool KrvGetSlot(KrvCallContext* context, const SlotKey* key, SlotRecord* record) {
    const char* function = __func__;
    return LookCall(context, {function, ItemOf(key)}, [&](const View& view) {
        CheckRecord(key, function, "key");
        CheckRecord(record, function, "record");
        *record = embedded::DescribeSlot(view.database, *key);
    });
}

KrvBool KrvGetSide(KrvCallContext* context, const SideKey* key, SideRecord* record) {
    const char* function = __func__;
    return LookCall(context, {function, ItemOf(key)}, [&](const View& view) {
        CheckRecord(key, function, "key");
        CheckRecord(record, function, "record");
        if (const SideRecord* known = view.ahead.FindSide(*key)) {
            *record = *known;
            return;
        }
        embedded::DescribeSide(view.database, *key, *record);
    });
}

KrvBool KrvGetNextVolume(KrvCallContext* context, uint32_t previousId, uint32_t* nextId) {
    const char* function = __func__;
    return LookCall(context, {function, {}}, [&](const View& view) {
        CheckPointer(nextId, function, "next ID");
        *nextId = view.ahead.NextVolume(view.database, previousId);
    });
}

KrvBool KrvVolumeDetail(KrvCallContext* context, uint32_t volumeId, VolumeRecord* record) {
    const char* function = __func__;
    return LookCall(context, {function, VolumeItem(volumeId)}, [&](const View& view) {
        CheckRecord(record, function, "record");
        if (const auto* known = view.ahead.FindVolume(volumeId)) {
            *record = known->record;
            return;
        }
        *record = embedded::DescribeVolume(view.database, volumeId);
    });
}

KrvBool KrvVolumeAspects(KrvCallContext* context, uint32_t volumeId, char* buffer, uint32_t bufferSize,
                         uint32_t* requiredSize) {
    const char* function = __func__;
    return LookCall(context, {function, VolumeItem(volumeId)}, [&](const View& view) {
        CheckPointer(requiredSize, function, "required size");
        if (bufferSize > 0) CheckPointer(buffer, function, "buffer");
        const auto* known = view.ahead.FindVolume(volumeId);
        const std::string found =
            known == nullptr ? embedded::DescribeAspects(view.database, volumeId) : std::string();
        const std::string& list = known == nullptr ? found : known->aspects;
        *requiredSize = static_cast<uint32_t>(list.size());
        if (list.size() <= bufferSize) std::ranges::copy(list, buffer);
    });
}

KrvBool KrvVolumeLocations(KrvCallContext* context, uint32_t volumeId, SideKey* locations, uint32_t always1,
                           uint32_t* count) {
    const char* function = __func__;
    return LookCall(context, {function, VolumeItem(volumeId)}, [&](const View& view) {
        CheckPointer(count, function, "count");
        CheckPointer(locations, function, "location array");
        CheckConstant(always1 == 1, function, "fourth argument");
        CheckRecord(locations, function, "location");
        const auto* known = view.ahead.FindVolume(volumeId);
        const bool isKnown = known != nullptr && !known->places.empty();
        const std::vector<SideKey> found =
            isKnown ? std::vector<SideKey>() : embedded::DescribeLocations(view.database, volumeId);
        const auto total = static_cast<uint32_t>(isKnown ? known->places.size() : found.size());
        // A caller that asks for the first time passes one element and count 0; for the second time,
        // as many elements as the count of the first call says.
        const uint32_t room = std::min(std::max(*count, 1U), total);
        for (uint32_t place = 0; place < room; ++place) {
            CheckRecord(&locations[place], function, "location");
        }
        for (uint32_t place = 0; place < room; ++place) {
            locations[place] = isKnown ? known->places[place].place : found[place];
        }
        *count = total;
    });
}

// ---- Changing volumes

KrvBool KrvVolumeSetAspects(KrvCallContext* context, uint32_t volumeId, const char* text, uint32_t always1) {
    const char* function = __func__;
    return ChangeCall(context, {function, WithText(VolumeItem(volumeId), text)}, [&](Database& database) {
        CheckPointer(text, function, "text");
        CheckConstant(always1 == 1, function, "fourth argument");
        return embedded::SetDirectory(database, volumeId, text);
    });
}

KrvBool KrvVolumeActivate(KrvCallContext* context, uint32_t volumeId, const void* alwaysNull) {
    const char* function = __func__;
    return ChangeCall(context, {function, VolumeItem(volumeId)}, [&](Database& database) {
        CheckConstant(alwaysNull == nullptr, function, "third argument");
        return embedded::EnableVolume(database, volumeId, Enabled::Yes);
    });
}

KrvBool KrvVolumeDeactivate(KrvCallContext* context, uint32_t volumeId) {
    return ChangeCall(context, {__func__, VolumeItem(volumeId)}, [&](Database& database) {
        return embedded::EnableVolume(database, volumeId, Enabled::No);
    });
}

KrvBool KrvVolumeErase(KrvCallContext* context, const SideKey* key) {
    const char* function = __func__;
    return ChangeCall(context, {function, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, function, "key");
        return embedded::EraseSide(database, *key);
    });
}

KrvBool KrvVolumeFinalize(KrvCallContext* context, const SideKey* key) {
    const char* function = __func__;
    return ChangeCall(context, {function, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, function, "key");
        return embedded::FinalizeMedium(database, *key);
    });
}

KrvBool KrvVolumeFormat(KrvCallContext* context, const SideKey* key, const FormatOptions* options) {
    const char* function = __func__;
    return ChangeCall(context, {function, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, function, "key");
        CheckRecord(options, function, "options record");
        const void* end = std::memchr(options->label, '\0', sizeof(options->label));
        CheckConstant(end != nullptr, function, "label");
        CheckConstant(options->alwaysZero == 0, function, "field at 268");
        return embedded::FormatSide(database, *key,
                                    {options->label, options->sequential != 0, options->certify != 0});
    });
}

// ---- Moving media

KrvBool KrvMediaImport(KrvCallContext* context, const SlotKey* key) {
    const char* function = __func__;
    return ChangeCall(context, {function, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, function, "key");
        return embedded::ImportMedium(database, *key);
    });
}

KrvBool KrvMediaExport(KrvCallContext* context, const SlotKey* key) {
    const char* function = __func__;
    return ChangeCall(context, {function, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, function, "key");
        return embedded::ExportMedium(database, *key);
    });
}

KrvBool KrvMediaScan(KrvCallContext* context, const SideKey* key) {
    const char* function = __func__;
    return embedded::SessionCall(context, function, [&](Session& session) {
        embedded::ScanResult result;
        session.Write({function, ItemOf(key)}, [&](Database& database) {
            CheckRecord(key, function, "key");
            result = embedded::ScanMedium(database, *key);
            return result.change;
        });
        if (result.refusal.has_value()) throw embedded::Refusal(*result.refusal);
    });
}

// ---- Enabling and disabling items, names

KrvBool KrvActivateJukebox(KrvCallContext* context, const JukeboxKey* key) {
    const char* function = __func__;
    return ChangeCall(context, {function, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, function, "key");
        return embedded::EnableJukebox(database, *key, Enabled::Yes);
    });
}

KrvBool KrvDeactivateJukebox(KrvCallContext* context, const JukeboxKey* key) {
    const char* function = __func__;
    return ChangeCall(context, {function, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, function, "key");
        return embedded::EnableJukebox(database, *key, Enabled::No);
    });
}

KrvBool KrvActivateMagazine(KrvCallContext* context, const MagazineKey* key) {
    const char* function = __func__;
    return ChangeCall(context, {function, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, function, "key");
        return embedded::EnableMagazine(database, *key, Enabled::Yes);
    });
}

KrvBool KrvDeactivateMagazine(KrvCallContext* context, const MagazineKey* key) {
    const char* function = __func__;
    return ChangeCall(context, {function, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, function, "key");
        return embedded::EnableMagazine(database, *key, Enabled::No);
    });
}

KrvBool KrvActivateDrive(KrvCallContext* context, const DriveKey* key) {
    const char* function = __func__;
    return ChangeCall(context, {function, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, function, "key");
        return embedded::EnableDrive(database, *key, Enabled::Yes);
    });
}

KrvBool KrvDeactivateDrive(KrvCallContext* context, const DriveKey* key) {
    const char* function = __func__;
    return ChangeCall(context, {function, ItemOf(key)}, [&](Database& database) {
        CheckRecord(key, function, "key");
        return embedded::EnableDrive(database, *key, Enabled::No);
    });
}

KrvBool KrvJukeboxSetName(KrvCallContext* context, const JukeboxKey* key, const char* newName) {
    const char* function = __func__;
    return ChangeCall(context, {function, WithText(ItemOf(key), newName)}, [&](Database& database) {
        CheckRecord(key, function, "key");
        CheckPointer(newName, function, "new name");
        return embedded::RenameJukebox(database, *key, newName);
    });
}

// ---- The service itself

KrvBool KrvServiceStart(KrvCallContext* context, const char* serverName) {
    const char* function = __func__;
    return Call(context, function, [&] {
        CheckPointer(serverName, function, "server name");
        embedded::StartServer(serverName, {function, WithText({}, serverName)});
    });
}

KrvBool KrvServiceStop(KrvCallContext* context) {
    return ChangeCall(context, {__func__, {}}, embedded::StopService);
}

KrvBool KrvServiceRestart(KrvCallContext* context) {
    return ChangeCall(context, {__func__, {}}, embedded::RestartService);
}
