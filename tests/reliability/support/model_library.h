#pragma once

#include <cstdint>
#include <cstring>
#include <string>

#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvcmd::reliability {

// The expected end of a run.
struct Result {
    enum class Kind { Ok, System, Service };

    Kind kind = Kind::Ok;
    uint32_t code = 0;
    std::string text{};

    static Result System(uint32_t code) { return {Kind::System, code}; }

    bool IsOk() const { return kind == Kind::Ok; }

    // The line on standard error.
    std::string ResultLine(bool quiet) const;

    // The code's low 8 bits, and never 0 for a code that is not 0.
    int ExitStatus() const;
};

// The client library as the model calls it.
class ModelLibrary {
  public:
    // Makes one call with a fresh context.
    template <class Function, class... Arguments>
    Result Call(Function function, Arguments... arguments) const {
        KrvCallContext context;
        std::memset(&context, 0, sizeof context);
        context.headSize = 24;
        context.session = m_session;
        context.errorInfo = &context.error;
        context.error.size = 1032;
        if (function(&context, arguments...) != 0) return {};
        const char* const text = context.error.text;
        return {Result::Kind::Service, static_cast<uint32_t>(context.error.code),
                std::string(text, strnlen(text, sizeof context.error.text))};
    }

    Result Open(const std::string& server) { return Call(KrvSessionCreate, server.c_str(), &m_session); }

    Result Jukebox(int32_t id, JukeboxRecord& record) const {
        const JukeboxKey key{8, id};
        std::memset(&record, 0, sizeof record);
        record.size = 120;
        record.driveCount = -1;
        record.magazineCount = -1;
        return Call(KrvGetJukebox, &key, &record);
    }

    Result Magazine(int32_t jukebox, int32_t magazine, MagazineRecord& record) const {
        const MagazineKey key{12, jukebox, magazine};
        record = {12, -1, 0};
        return Call(KrvGetMagazine, &key, &record);
    }

    Result Drive(int32_t jukebox, int32_t drive) const {
        const DriveKey key{12, jukebox, drive};
        DriveRecord record;
        std::memset(&record, 0, sizeof record);
        record.size = 72;
        return Call(KrvGetDrive, &key, &record);
    }

    Result Slot(int32_t jukebox, int32_t magazine, int32_t slot, SlotRecord& record) const {
        const SlotKey key{16, jukebox, magazine, slot};
        record = {12, 0, 254};
        return Call(KrvGetSlot, &key, &record);
    }

    Result Side(const SideKey& key, SideRecord& record) const {
        record = {20, 0, 254, 0, -1};
        return Call(KrvGetSide, &key, &record);
    }

    Result VolumeDetail(int32_t volume) const {
        VolumeRecord record;
        std::memset(&record, 0, sizeof record);
        record.size = 336;
        record.libraryValue1 = -1;
        return Call(KrvVolumeDetail, static_cast<uint32_t>(volume), &record);
    }

    Result Locations(int32_t volume, SideKey* keys, uint32_t* count) const {
        return Call(KrvVolumeLocations, static_cast<uint32_t>(volume), keys, 1U, count);
    }

  private:
    KrvSession m_session = 0;
};

inline SideKey Unset() {
    return {20, -1, -1, -1, -1};
}

}  // namespace krvcmd::reliability
