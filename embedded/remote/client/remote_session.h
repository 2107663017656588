#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "embedded/remote/client/ahead_cache.h"
#include "embedded/remote/client/connection.h"
#include "embedded/service/service_session.h"

namespace embedded::remote {

// A session with the service of a server on another machine. When the connection is lost, every later call is
// refused for the same reason; a change that was being made says what became of it.
class RemoteSession : public ServiceSession {
  public:
    // Connects and opens the session.
    explicit RemoteSession(const KnownServer& server);

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
    enum class Effect { Looks, Changes };

    Answer AskFor(Request request);
    // Ends the connection because of the exception that is being handled.
    void GiveUp();
    void KeepAhead(const Answer& answer);
    // The result of a look, which may have failed with a result all the same.
    json Look(const char* function, json::array_t arguments, uint32_t ahead, std::optional<Failure>& failure);
    json Look(const char* function, json::array_t arguments, uint32_t ahead);
    template <typename Key, typename Record>
    void Describe(const char* function, const Key* key, Record* record, uint32_t ahead);
    // `slot`: the fields of the slot that is changed, if it is one.
    void Change(const char* function, json::array_t arguments, json::array_t slot = {});
    template <typename Key>
    void ChangeItem(const char* function, const Key* key);
    // Fills in what a change asks to be read ahead after it: the walk that the last looks belong to.
    void AskAheadAfterChange(Request& request) const;
    uint32_t SlotsAhead(const SlotKey& key);
    uint32_t VolumesAhead(uint32_t previous);
    uint32_t MoreVolumesAhead() const;
    // While the caller takes the row of volumes that begins with this one, the other side reads the next row.
    void AskForNextVolumesEarly(uint32_t first);

    std::mutex m_mutex;
    KnownServer m_server;
    std::string m_client;  // names this session in the numbers of its changes
    std::unique_ptr<Connection> m_connection;
    std::exception_ptr m_loss;  // why there is no connection any more
    AheadCache m_ahead;
    uint64_t m_lastChange = 0;
    // For walks, of which every step reads further ahead.
    uint32_t m_lastNextVolume = 0;
    uint32_t m_volumesAhead = 0;
    std::optional<int32_t> m_lastSlotJukebox;
    json::array_t m_lastLook;  // where a walk is: the fields of its slot, or the ID of its volume
    uint32_t m_slotsAhead = 0;
};

// Starts the service of a server on another machine without a session.
void StartRemoteService(const KnownServer& server);

}  // namespace embedded::remote
