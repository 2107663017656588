#include "krvcmd/service/sdk/krv_sdk.h"

#include "embedded/library/call.h"
#include "embedded/library/open_session.h"
#include "embedded/library/session_table.h"
#include "embedded/service/arguments.h"

// The 31 entry points of the client library. Inside each of them __func__ is the name that the caller knows.

using embedded::Call;
using embedded::ServiceSession;
using embedded::SessionCall;
using embedded::SessionTable;

// ---- Sessions

KrvBool KrvSessionCreate(KrvCallContext* context, const char* serverName, KrvSession* session) {
    const char* function = __func__;
    return Call(context, function, [&] {
        embedded::CheckPointer(serverName, function, "server name");
        embedded::CheckPointer(session, function, "session handle");
        const KrvSession handle = SessionTable::Instance().Reserve();
        SessionTable::Instance().Add(handle, embedded::OpenSession(serverName, handle));
        *session = handle;
    });
}

KrvBool KrvSessionClose(KrvCallContext* context) {
    return Call(context, __func__,
                [&] { SessionTable::Instance().Remove(context->session)->SessionClose(); });
}

// ---- Calls in a session

KrvBool KrvGetNextJukebox(KrvCallContext* context, uint32_t previousId, uint32_t* nextId) {
    return SessionCall(context, __func__, &ServiceSession::GetNextJukebox, previousId, nextId);
}

KrvBool KrvGetJukebox(KrvCallContext* context, const JukeboxKey* key, JukeboxRecord* record) {
    return SessionCall(context, __func__, &ServiceSession::GetJukebox, key, record);
}

KrvBool KrvGetMagazine(KrvCallContext* context, const MagazineKey* key, MagazineRecord* record) {
    return SessionCall(context, __func__, &ServiceSession::GetMagazine, key, record);
}

KrvBool KrvGetDrive(KrvCallContext* context, const DriveKey* key, DriveRecord* record) {
    return SessionCall(context, __func__, &ServiceSession::GetDrive, key, record);
}

KrvBool KrvGetSlot(KrvCallContext* context, const SlotKey* key, SlotRecord* record) {
    return SessionCall(context, __func__, &ServiceSession::GetSlot, key, record);
}

KrvBool KrvGetSide(KrvCallContext* context, const SideKey* key, SideRecord* record) {
    return SessionCall(context, __func__, &ServiceSession::GetSide, key, record);
}

KrvBool KrvGetNextVolume(KrvCallContext* context, uint32_t previousId, uint32_t* nextId) {
    return SessionCall(context, __func__, &ServiceSession::GetNextVolume, previousId, nextId);
}

KrvBool KrvVolumeDetail(KrvCallContext* context, uint32_t volumeId, VolumeRecord* record) {
    return SessionCall(context, __func__, &ServiceSession::VolumeDetail, volumeId, record);
}

KrvBool KrvVolumeAspects(KrvCallContext* context, uint32_t volumeId, char* buffer, uint32_t bufferSize,
                         uint32_t* requiredSize) {
    return SessionCall(context, __func__, &ServiceSession::VolumeAspects, volumeId, buffer, bufferSize,
                       requiredSize);
}

KrvBool KrvVolumeLocations(KrvCallContext* context, uint32_t volumeId, SideKey* locations, uint32_t always1,
                           uint32_t* count) {
    return SessionCall(context, __func__, &ServiceSession::VolumeLocations, volumeId, locations, always1,
                       count);
}

KrvBool KrvVolumeSetAspects(KrvCallContext* context, uint32_t volumeId, const char* text, uint32_t always1) {
    return SessionCall(context, __func__, &ServiceSession::VolumeSetAspects, volumeId, text, always1);
}

KrvBool KrvVolumeActivate(KrvCallContext* context, uint32_t volumeId, const void* alwaysNull) {
    return SessionCall(context, __func__, &ServiceSession::VolumeActivate, volumeId, alwaysNull);
}

KrvBool KrvVolumeDeactivate(KrvCallContext* context, uint32_t volumeId) {
    return SessionCall(context, __func__, &ServiceSession::VolumeDeactivate, volumeId);
}

KrvBool KrvVolumeErase(KrvCallContext* context, const SideKey* key) {
    return SessionCall(context, __func__, &ServiceSession::VolumeErase, key);
}

KrvBool KrvVolumeFinalize(KrvCallContext* context, const SideKey* key) {
    return SessionCall(context, __func__, &ServiceSession::VolumeFinalize, key);
}

KrvBool KrvVolumeFormat(KrvCallContext* context, const SideKey* key, const FormatOptions* options) {
    return SessionCall(context, __func__, &ServiceSession::VolumeFormat, key, options);
}

KrvBool KrvMediaImport(KrvCallContext* context, const SlotKey* key) {
    return SessionCall(context, __func__, &ServiceSession::MediaImport, key);
}

KrvBool KrvMediaExport(KrvCallContext* context, const SlotKey* key) {
    return SessionCall(context, __func__, &ServiceSession::MediaExport, key);
}

KrvBool KrvMediaScan(KrvCallContext* context, const SideKey* key) {
    return SessionCall(context, __func__, &ServiceSession::MediaScan, key);
}

KrvBool KrvActivateJukebox(KrvCallContext* context, const JukeboxKey* key) {
    return SessionCall(context, __func__, &ServiceSession::ActivateJukebox, key);
}

KrvBool KrvDeactivateJukebox(KrvCallContext* context, const JukeboxKey* key) {
    return SessionCall(context, __func__, &ServiceSession::DeactivateJukebox, key);
}

KrvBool KrvActivateMagazine(KrvCallContext* context, const MagazineKey* key) {
    return SessionCall(context, __func__, &ServiceSession::ActivateMagazine, key);
}

KrvBool KrvDeactivateMagazine(KrvCallContext* context, const MagazineKey* key) {
    return SessionCall(context, __func__, &ServiceSession::DeactivateMagazine, key);
}

KrvBool KrvActivateDrive(KrvCallContext* context, const DriveKey* key) {
    return SessionCall(context, __func__, &ServiceSession::ActivateDrive, key);
}

KrvBool KrvDeactivateDrive(KrvCallContext* context, const DriveKey* key) {
    return SessionCall(context, __func__, &ServiceSession::DeactivateDrive, key);
}

KrvBool KrvJukeboxSetName(KrvCallContext* context, const JukeboxKey* key, const char* newName) {
    return SessionCall(context, __func__, &ServiceSession::JukeboxSetName, key, newName);
}

KrvBool KrvServiceStop(KrvCallContext* context) {
    return SessionCall(context, __func__, &ServiceSession::ServiceStop);
}

KrvBool KrvServiceRestart(KrvCallContext* context) {
    return SessionCall(context, __func__, &ServiceSession::ServiceRestart);
}

// ---- The service itself, without a session

KrvBool KrvServiceStart(KrvCallContext* context, const char* serverName) {
    const char* function = __func__;
    return Call(context, function, [&] {
        embedded::CheckPointer(serverName, function, "server name");
        embedded::StartServiceOn(serverName);
    });
}
