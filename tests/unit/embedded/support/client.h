// The client library as a test calls it: each function takes what it is about, builds the context,
// the keys and the records as a program does, and returns how the call ended.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded_test {

struct Outcome {
    bool ok = false;
    int32_t code = 0;
    std::string text;
};

// A context as a program prepares it for one call.
class Context {
  public:
    explicit Context(KrvSession session = 0);
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    ~Context() = default;

    KrvCallContext* Get() { return &m_context; }
    Outcome Result(KrvBool success) const;

  private:
    KrvCallContext m_context{};
};

struct Slot {
    int32_t jukebox;
    int32_t magazine;  // zero-based, -1 = the slot counts through the jukebox
    int32_t slot;      // zero-based
};

class Client {
  public:
    // Opens a session; a test that expects that to fail asks GetOpening.
    explicit Client(const std::string& server = ".");
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client();

    const Outcome& GetOpening() const { return m_opening; }
    KrvSession GetSession() const { return m_session; }
    Outcome Close();

    std::vector<uint32_t> Jukeboxes();
    std::vector<uint32_t> Volumes();

    Outcome Jukebox(int32_t jukebox, JukeboxRecord& record);
    Outcome Magazine(int32_t jukebox, int32_t magazine, MagazineRecord& record);
    Outcome Drive(int32_t jukebox, int32_t drive, DriveRecord& record);
    Outcome GetSlot(const Slot& slot, SlotRecord& record);
    Outcome Side(const Slot& slot, int32_t side, SideRecord& record);
    Outcome Volume(uint32_t volume, VolumeRecord& record);
    Outcome Aspects(uint32_t volume, std::vector<std::string>& aspects);
    Outcome Locations(uint32_t volume, std::vector<SideKey>& locations);

    Outcome SetDirectory(uint32_t volume, const std::string& text);
    Outcome EnableVolume(uint32_t volume);
    Outcome DisableVolume(uint32_t volume);
    Outcome Erase(const Slot& slot, int32_t side);
    Outcome Finalize(const Slot& slot, int32_t side = 2);
    Outcome Format(const Slot& slot, int32_t side, const std::string& label = "", bool sequential = false);
    Outcome Import(const Slot& slot);
    Outcome Export(const Slot& slot);
    Outcome Scan(const Slot& slot);
    Outcome EnableJukebox(int32_t jukebox);
    Outcome DisableJukebox(int32_t jukebox);
    Outcome EnableMagazine(int32_t jukebox, int32_t magazine);
    Outcome DisableMagazine(int32_t jukebox, int32_t magazine);
    Outcome EnableDrive(int32_t jukebox, int32_t drive);
    Outcome DisableDrive(int32_t jukebox, int32_t drive);
    Outcome RenameJukebox(int32_t jukebox, const std::string& name);
    Outcome StopService();
    Outcome RestartService();

    // Short forms for what most tests compare; each fails the test when its call fails.
    uint32_t SlotState(const Slot& slot);
    SideRecord SideOf(const Slot& slot, int32_t side);
    VolumeRecord VolumeOf(uint32_t volume);
    std::string LabelOf(uint32_t volume);

  private:
    KrvSession m_session = 0;
    Outcome m_opening;
};

// Needs no session.
Outcome StartService(const std::string& server);

SlotKey KeyOf(const Slot& slot);
SideKey KeyOf(const Slot& slot, int32_t side);

// Success, or the code and the text that the call ended with: the message of a failed expectation.
std::string Describe(const Outcome& outcome);

}  // namespace embedded_test
