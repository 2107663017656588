#include "tools/foreign/foreign_service.h"

#include <algorithm>
#include <cstddef>

#include "tools/common/command.h"

namespace embedded::tools {
namespace {

constexpr uint32_t kHead = offsetof(KrvCallContext, error);
constexpr int32_t kNoLocation = 500;
// A list of directory names, or of locations, beyond this is taken for a mistake of the library.
constexpr uint32_t kMostBytes = 1U << 24U;
constexpr uint32_t kMostLocations = 1U << 20U;

// A context as it is prepared for one call.
class Context {
  public:
    explicit Context(KrvSession session = 0) {
        m_context.headSize = kHead;
        m_context.session = session;
        m_context.errorInfo = &m_context.error;
        m_context.error.size = sizeof(KrvErrorInfo);
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    ~Context() = default;

    KrvCallContext* Get() { return &m_context; }

    Outcome Result(KrvBool success) const {
        if (success != 0) return std::nullopt;
        return CallFailure{m_context.error.code, TextOf(m_context.error.text)};
    }

  private:
    KrvCallContext m_context{};
};

constexpr SideKey kUnset{sizeof(SideKey), -1, -1, -1, -1};

}  // namespace

std::string FailureText(const CallFailure& failure) {
    return "KRV error " + std::to_string(failure.code) + ": " + failure.text;
}

template <typename Function>
Function* ForeignService::Require(const char* name) const {
    auto* const function = m_library.Find<Function>(name);
    if (function == nullptr) throw ToolFailure(m_path + ": has no function " + name);
    return function;
}

ForeignService::ForeignService(const std::string& library, const std::string& server)
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
    Context context;
    const Outcome outcome = context.Result(m_create(context.Get(), server.c_str(), &m_session));
    if (outcome.has_value()) {
        throw ToolFailure("no session with server \"" + server + "\": " + FailureText(*outcome));
    }
}

ForeignService::~ForeignService() {
    Context context(m_session);
    (void)m_close(context.Get());
}

Outcome ForeignService::NextJukebox(uint32_t& id) const {
    Context context(m_session);
    const uint32_t previous = id;
    id = 0;
    return context.Result(m_nextJukebox(context.Get(), previous, &id));
}

Outcome ForeignService::NextVolume(uint32_t& id) const {
    Context context(m_session);
    const uint32_t previous = id;
    id = 0;
    return context.Result(m_nextVolume(context.Get(), previous, &id));
}

Outcome ForeignService::GetJukebox(int32_t jukebox, JukeboxRecord& record) const {
    Context context(m_session);
    const JukeboxKey key{sizeof(key), jukebox};
    record = {};
    record.size = sizeof(record);
    record.driveCount = -1;
    record.magazineCount = -1;
    return context.Result(m_jukebox(context.Get(), &key, &record));
}

Outcome ForeignService::GetMagazine(int32_t jukebox, int32_t magazine, MagazineRecord& record) const {
    Context context(m_session);
    const MagazineKey key{sizeof(key), jukebox, magazine};
    record = {sizeof(record), -1, 0};
    return context.Result(m_magazine(context.Get(), &key, &record));
}

Outcome ForeignService::GetDrive(int32_t jukebox, int32_t drive, DriveRecord& record) const {
    Context context(m_session);
    const DriveKey key{sizeof(key), jukebox, drive};
    record = {};
    record.size = sizeof(record);
    return context.Result(m_drive(context.Get(), &key, &record));
}

Outcome ForeignService::GetSlot(int32_t jukebox, int32_t magazine, int32_t slot, SlotRecord& record) const {
    Context context(m_session);
    const SlotKey key{sizeof(key), jukebox, magazine, slot};
    record = {sizeof(record), 0, 254};
    return context.Result(m_slot(context.Get(), &key, &record));
}

Outcome ForeignService::GetSide(const SideKey& key, SideRecord& record) const {
    Context context(m_session);
    record = {sizeof(record), 0, 254, 0, -1};
    return context.Result(m_side(context.Get(), &key, &record));
}

Outcome ForeignService::GetVolume(uint32_t volume, VolumeRecord& record) const {
    Context context(m_session);
    record = {};
    record.size = sizeof(record);
    record.libraryValue1 = -1;
    return context.Result(m_volume(context.Get(), volume, &record));
}

Outcome ForeignService::GetDirectories(uint32_t volume, std::vector<std::string>& directories) const {
    directories.clear();
    char small = 0;
    uint32_t needed = 0;
    Context first(m_session);
    Outcome outcome = first.Result(m_aspects(first.Get(), volume, &small, 1, &needed));
    if (outcome.has_value() || needed == 0) return outcome;
    if (needed > kMostBytes) {
        return CallFailure{0, "the directory names would need " + std::to_string(needed) + " bytes"};
    }
    std::string list(needed, '\0');
    Context second(m_session);
    outcome = second.Result(m_aspects(second.Get(), volume, list.data(), needed, &needed));
    if (outcome.has_value()) return outcome;
    for (size_t start = 0; start < list.size() && list[start] != '\0';) {
        const size_t end = std::min(list.find('\0', start), list.size());
        directories.push_back(list.substr(start, end - start));
        start = end + 1;
    }
    return std::nullopt;
}

Outcome ForeignService::GetLocations(uint32_t volume, std::vector<SideKey>& locations) const {
    locations.assign(1, kUnset);
    uint32_t count = 0;
    Context first(m_session);
    Outcome outcome = first.Result(m_locations(first.Get(), volume, locations.data(), 1, &count));
    if (outcome.has_value()) {
        locations.clear();
        if (outcome->code == kNoLocation) outcome.reset();
        return outcome;
    }
    if (count > kMostLocations) {
        locations.clear();
        return CallFailure{0, std::to_string(count) + " locations are more than a volume can have"};
    }
    if (count >= 2) {
        locations.assign(count, kUnset);
        const uint32_t room = count;
        Context second(m_session);
        outcome = second.Result(m_locations(second.Get(), volume, locations.data(), 1, &count));
        count = std::min(count, room);
    }
    locations.resize(count);
    return outcome;
}

}  // namespace embedded::tools
