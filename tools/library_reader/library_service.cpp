#include "tools/library_reader/library_service.h"

#include <new>

#include "krvcmd/service/sdk/call.h"
#include "krvcmd/service/sdk/keys.h"
#include "krvcmd/service/sdk/records.h"
#include "tools/common/streams.h"

namespace embedded::tools {
namespace {

// A list of directory names, or of locations, beyond this is taken for a mistake of the library.
constexpr uint32_t kMostBytes = 1U << 24U;
constexpr uint32_t kMostLocations = 1U << 20U;

Outcome OutcomeOf(const krvcmd::Status& status) {
    if (status.IsOk()) return std::nullopt;
    // The only failure that is not the library's own.
    if (!status.IsServiceError()) throw std::bad_alloc();
    return CallFailure{static_cast<int32_t>(status.Code()), status.Message()};
}

// The failure of a call that succeeded with an answer that cannot be.
krvcmd::Status Mistake(const std::string& text) {
    return krvcmd::Status::ServiceError(0, text);
}

}  // namespace

std::string FailureText(const CallFailure& failure) {
    return "KRV error " + std::to_string(failure.code) + ": " + failure.text;
}

template <typename Function>
Function* LibraryService::Require(const char* name) const {
    auto* const function = m_library.Find<Function>(name);
    if (function == nullptr) throw ToolFailure(m_path + ": has no function " + name);
    return function;
}

LibraryService::LibraryService(const std::string& library, const std::string& server)
    : m_path(library),
      m_library([&]() -> SharedLibrary {
          try {
              return SharedLibrary(library);
          } catch (const std::runtime_error& failure) {
              throw ToolFailure(failure.what());
          }
      }()),
      m_create(Require<decltype(KrvSessionCreate)>("KrvSessionCreate")),
      m_close(Require<decltype(KrvSessionClose)>("KrvSessionClose")),
      m_nextJukebox(Require<decltype(KrvGetNextJukebox)>("KrvGetNextJukebox")),
      m_jukebox(Require<decltype(KrvGetJukebox)>("KrvGetJukebox")),
      m_magazine(Require<decltype(KrvGetMagazine)>("KrvGetMagazine")),
      m_drive(Require<decltype(KrvGetDrive)>("KrvGetDrive")),
      m_slot(Require<decltype(KrvGetSlot)>("KrvGetSlot")),
      m_side(Require<decltype(KrvGetSide)>("KrvGetSide")),
      m_nextVolume(Require<decltype(KrvGetNextVolume)>("KrvGetNextVolume")),
      m_volume(Require<decltype(KrvVolumeDetail)>("KrvVolumeDetail")),
      m_aspects(Require<decltype(KrvVolumeAspects)>("KrvVolumeAspects")),
      m_locations(Require<decltype(KrvVolumeLocations)>("KrvVolumeLocations")) {
    const Outcome outcome = Call(m_create, server.c_str(), &m_session);
    if (outcome.has_value()) {
        throw ToolFailure("no session with server \"" + server + "\": " + FailureText(*outcome));
    }
}

LibraryService::~LibraryService() {
    (void)Call(m_close);
}

template <typename Function, typename... Arguments>
Outcome LibraryService::Call(Function* function, Arguments... arguments) const {
    return OutcomeOf(krvcmd::CallInSession(m_session, function, arguments...));
}

template <typename Function, typename Key, typename Record>
Outcome LibraryService::LookUp(Function* function, const Key& key, Record& record) const {
    krvcmd::Preset(record);
    return Call(function, &key, &record);
}

template <typename Function>
Outcome LibraryService::Step(Function* function, uint32_t& id) const {
    const uint32_t previous = id;
    id = 0;
    return Call(function, previous, &id);
}

Outcome LibraryService::NextJukebox(uint32_t& id) const {
    return Step(m_nextJukebox, id);
}

Outcome LibraryService::NextVolume(uint32_t& id) const {
    return Step(m_nextVolume, id);
}

Outcome LibraryService::GetJukebox(int32_t jukebox, JukeboxRecord& record) const {
    return LookUp(m_jukebox, krvcmd::MakeJukeboxKey(jukebox), record);
}

Outcome LibraryService::GetMagazine(const MagazineKey& key, MagazineRecord& record) const {
    return LookUp(m_magazine, key, record);
}

Outcome LibraryService::GetDrive(const DriveKey& key, DriveRecord& record) const {
    return LookUp(m_drive, key, record);
}

Outcome LibraryService::GetSlot(const SlotKey& key, SlotRecord& record) const {
    return LookUp(m_slot, key, record);
}

Outcome LibraryService::GetSide(const SideKey& key, SideRecord& record) const {
    return LookUp(m_side, key, record);
}

Outcome LibraryService::GetVolume(uint32_t volume, VolumeRecord& record) const {
    krvcmd::Preset(record);
    return Call(m_volume, volume, &record);
}

Outcome LibraryService::GetDirectories(uint32_t volume, std::vector<std::string>& directories) const {
    directories.clear();
    const auto call = [&](char* buffer, uint32_t size, uint32_t* needed) {
        krvcmd::Status status = krvcmd::CallInSession(m_session, m_aspects, volume, buffer, size, needed);
        if (!status.IsOk() || *needed <= kMostBytes) return status;
        return Mistake("the directory names would need " + std::to_string(*needed) + " bytes");
    };
    return OutcomeOf(krvcmd::ReadAspects(call, directories));
}

Outcome LibraryService::GetLocations(uint32_t volume, std::vector<SideKey>& locations) const {
    const auto call = [&](SideKey* array, uint32_t always1, uint32_t* count) {
        krvcmd::Status status = krvcmd::CallInSession(m_session, m_locations, volume, array, always1, count);
        if (!status.IsOk() || *count <= kMostLocations) return status;
        return Mistake(std::to_string(*count) + " locations are more than a volume can have");
    };
    return OutcomeOf(krvcmd::ReadLocations(call, locations));
}

}  // namespace embedded::tools
