#pragma once

#include <string>

#include "embedded/service/service_session.h"
#include "embedded/sessions/session.h"

namespace embedded {

// A session with the service of a farm on this machine.
class LocalSession : public ServiceSession {
  public:
    // Opens the session as Session does.
    LocalSession(const std::string& server, KrvSession handle) : m_session(server, handle) {}

    // For what no function of the client library offers.
    Session& GetSession() { return m_session; }

    void SessionClose() override;
    void GetNextJukebox(uint32_t previousId, uint32_t* nextId) override;
    void GetJukebox(const JukeboxKey* key, JukeboxRecord* record) override;
    void GetMagazine(const MagazineKey* key, MagazineRecord* record) override;
    void GetDrive(const DriveKey* key, DriveRecord* record) override;
    void GetSlot(const SlotKey* key, SlotRecord* record) override;
    void GetSide(const SideKey* key, SideRecord* record) override;
    void GetNextVolume(uint32_t previousId, uint32_t* nextId) override;
    void VolumeDetail(uint32_t volumeId, VolumeRecord* record) override;
    void VolumeAspects(uint32_t volumeId, char* buffer, uint32_t bufferSize, uint32_t* requiredSize) override;
    void VolumeLocations(uint32_t volumeId, SideKey* locations, uint32_t always1, uint32_t* count) override;
    void VolumeSetAspects(uint32_t volumeId, const char* text, uint32_t always1) override;
    void VolumeActivate(uint32_t volumeId, const void* alwaysNull) override;
    void VolumeDeactivate(uint32_t volumeId) override;
    void VolumeErase(const SideKey* key) override;
    void VolumeFinalize(const SideKey* key) override;
    void VolumeFormat(const SideKey* key, const FormatOptions* options) override;
    void MediaImport(const SlotKey* key) override;
    void MediaExport(const SlotKey* key) override;
    void MediaScan(const SideKey* key) override;
    void ActivateJukebox(const JukeboxKey* key) override;
    void DeactivateJukebox(const JukeboxKey* key) override;
    void ActivateMagazine(const MagazineKey* key) override;
    void DeactivateMagazine(const MagazineKey* key) override;
    void ActivateDrive(const DriveKey* key) override;
    void DeactivateDrive(const DriveKey* key) override;
    void JukeboxSetName(const JukeboxKey* key, const char* newName) override;
    void ServiceStop() override;
    void ServiceRestart() override;

  private:
    Session m_session;
};

}  // namespace embedded
