#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "embedded/platform/platform.h"
#include "krvcmd/service/sdk/krv_sdk.h"
#include "krvcmd/service/sdk/records.h"

namespace embedded::tools {

// Why a call failed.
struct CallFailure {
    int32_t code = 0;
    std::string text;
};

// "KRV error CODE: TEXT"
std::string FailureText(const CallFailure& failure);

// The result of a call: no value is success.
using Outcome = std::optional<CallFailure>;

// A service behind any client library that keeps the binary interface, for reading only.
class LibraryService {
  public:
    // Loads the library and opens a session; throws ToolFailure when either does not work.
    LibraryService(const std::string& library, const std::string& server);
    LibraryService(const LibraryService&) = delete;
    LibraryService& operator=(const LibraryService&) = delete;
    ~LibraryService();

    // One step of an enumeration; `id` becomes 0 after the last one.
    Outcome NextJukebox(uint32_t& id) const;
    Outcome NextVolume(uint32_t& id) const;

    Outcome GetJukebox(int32_t jukebox, JukeboxRecord& record) const;
    Outcome GetMagazine(const MagazineKey& key, MagazineRecord& record) const;
    Outcome GetDrive(const DriveKey& key, DriveRecord& record) const;
    Outcome GetSlot(const SlotKey& key, SlotRecord& record) const;
    // With code 3 the record is filled all the same.
    Outcome GetSide(const SideKey& key, SideRecord& record) const;
    Outcome GetVolume(uint32_t volume, VolumeRecord& record) const;
    Outcome GetDirectories(uint32_t volume, std::vector<std::string>& directories) const;
    // Code 500 is success without a location.
    Outcome GetLocations(uint32_t volume, std::vector<SideKey>& locations) const;

  private:
    template <typename Function>
    Function* Require(const char* name) const;
    template <typename Function, typename... Arguments>
    Outcome Call(Function* function, Arguments... arguments) const;
    template <typename Function, typename Key, typename Record>
    Outcome LookUp(Function* function, const Key& key, Record& record) const;
    template <typename Function>
    Outcome Step(Function* function, uint32_t& id) const;

    std::string m_path;
    SharedLibrary m_library;
    KrvSession m_session = 0;
    decltype(KrvSessionCreate)* m_create;
    decltype(KrvSessionClose)* m_close;
    decltype(KrvGetNextJukebox)* m_nextJukebox;
    decltype(KrvGetJukebox)* m_jukebox;
    decltype(KrvGetMagazine)* m_magazine;
    decltype(KrvGetDrive)* m_drive;
    decltype(KrvGetSlot)* m_slot;
    decltype(KrvGetSide)* m_side;
    decltype(KrvGetNextVolume)* m_nextVolume;
    decltype(KrvVolumeDetail)* m_volume;
    decltype(KrvVolumeAspects)* m_aspects;
    decltype(KrvVolumeLocations)* m_locations;
};

// The text of a field of a record.
template <size_t Size>
std::string TextOf(const char (&field)[Size]) {
    return std::string(krvcmd::RecordText(field));
}

}  // namespace embedded::tools
