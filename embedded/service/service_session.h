#pragma once

#include <cstdint>

#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// An open session with a server's service, wherever that runs. The functions are those of the client library
// (krv_sdk.h) without their first three letters, with the same arguments; every failure is thrown. Each may
// be called from any thread.
class ServiceSession {
  public:
    ServiceSession() = default;
    ServiceSession(const ServiceSession&) = delete;
    ServiceSession& operator=(const ServiceSession&) = delete;
    virtual ~ServiceSession() = default;

    virtual void SessionClose() = 0;

    virtual void GetNextJukebox(uint32_t previousId, uint32_t* nextId) = 0;
    virtual void GetJukebox(const JukeboxKey* key, JukeboxRecord* record) = 0;
    virtual void GetMagazine(const MagazineKey* key, MagazineRecord* record) = 0;
    virtual void GetDrive(const DriveKey* key, DriveRecord* record) = 0;
    virtual void GetSlot(const SlotKey* key, SlotRecord* record) = 0;
    virtual void GetSide(const SideKey* key, SideRecord* record) = 0;
    virtual void GetNextVolume(uint32_t previousId, uint32_t* nextId) = 0;
    virtual void VolumeDetail(uint32_t volumeId, VolumeRecord* record) = 0;
    virtual void VolumeAspects(uint32_t volumeId, char* buffer, uint32_t bufferSize,
                               uint32_t* requiredSize) = 0;
    virtual void VolumeLocations(uint32_t volumeId, SideKey* locations, uint32_t always1,
                                 uint32_t* count) = 0;

    virtual void VolumeSetAspects(uint32_t volumeId, const char* text, uint32_t always1) = 0;
    virtual void VolumeActivate(uint32_t volumeId, const void* alwaysNull) = 0;
    virtual void VolumeDeactivate(uint32_t volumeId) = 0;
    virtual void VolumeErase(const SideKey* key) = 0;
    virtual void VolumeFinalize(const SideKey* key) = 0;
    virtual void VolumeFormat(const SideKey* key, const FormatOptions* options) = 0;
    virtual void MediaImport(const SlotKey* key) = 0;
    virtual void MediaExport(const SlotKey* key) = 0;
    virtual void MediaScan(const SideKey* key) = 0;
    virtual void ActivateJukebox(const JukeboxKey* key) = 0;
    virtual void DeactivateJukebox(const JukeboxKey* key) = 0;
    virtual void ActivateMagazine(const MagazineKey* key) = 0;
    virtual void DeactivateMagazine(const MagazineKey* key) = 0;
    virtual void ActivateDrive(const DriveKey* key) = 0;
    virtual void DeactivateDrive(const DriveKey* key) = 0;
    virtual void JukeboxSetName(const JukeboxKey* key, const char* newName) = 0;
    virtual void ServiceStop() = 0;
    virtual void ServiceRestart() = 0;
};

}  // namespace embedded
