#include "tests/unit/embedded/support/client.h"

#include <gtest/gtest.h>

#include <cstring>

namespace embedded_test {
namespace {

constexpr uint32_t kHeadSize = 24;

}  // namespace

Context::Context(KrvSession session) {
    m_context.headSize = kHeadSize;
    m_context.session = session;
    m_context.errorInfo = &m_context.error;
    m_context.error.size = sizeof(KrvErrorInfo);
}

Outcome Context::Result(KrvBool success) const {
    return {success != 0, m_context.error.code, std::string(m_context.error.text)};
}

SlotKey KeyOf(const Slot& slot) {
    return {sizeof(SlotKey), slot.jukebox, slot.magazine, slot.slot};
}

SideKey KeyOf(const Slot& slot, int32_t side) {
    return {sizeof(SideKey), slot.jukebox, slot.magazine, slot.slot, side};
}

std::string Describe(const Outcome& outcome) {
    return outcome.ok ? "success" : std::to_string(outcome.code) + ": " + outcome.text;
}

Client::Client(const std::string& server) {
    Context context;
    m_opening = context.Result(KrvSessionCreate(context.Get(), server.c_str(), &m_session));
}

Client::~Client() {
    if (m_session != 0) (void)Close();
}

Outcome Client::Close() {
    Context context(m_session);
    Outcome outcome = context.Result(KrvSessionClose(context.Get()));
    m_session = 0;
    return outcome;
}

std::vector<uint32_t> Client::Jukeboxes() {
    std::vector<uint32_t> jukeboxes;
    uint32_t next = 0;
    while (true) {
        Context context(m_session);
        const uint32_t previous = next;
        EXPECT_NE(KrvGetNextJukebox(context.Get(), previous, &next), 0);
        if (next == 0) return jukeboxes;
        jukeboxes.push_back(next);
    }
}

std::vector<uint32_t> Client::Volumes() {
    std::vector<uint32_t> volumes;
    uint32_t next = 0;
    while (true) {
        Context context(m_session);
        const uint32_t previous = next;
        EXPECT_NE(KrvGetNextVolume(context.Get(), previous, &next), 0);
        if (next == 0) return volumes;
        volumes.push_back(next);
    }
}

Outcome Client::Jukebox(int32_t jukebox, JukeboxRecord& record) {
    Context context(m_session);
    const JukeboxKey key{sizeof(JukeboxKey), jukebox};
    record = {};
    record.size = sizeof(record);
    record.driveCount = -1;
    record.magazineCount = -1;
    return context.Result(KrvGetJukebox(context.Get(), &key, &record));
}

Outcome Client::Magazine(int32_t jukebox, int32_t magazine, MagazineRecord& record) {
    Context context(m_session);
    const MagazineKey key{sizeof(MagazineKey), jukebox, magazine};
    record = {sizeof(MagazineRecord), -1, 0};
    return context.Result(KrvGetMagazine(context.Get(), &key, &record));
}

Outcome Client::Drive(int32_t jukebox, int32_t drive, DriveRecord& record) {
    Context context(m_session);
    const DriveKey key{sizeof(DriveKey), jukebox, drive};
    record = {};
    record.size = sizeof(record);
    return context.Result(KrvGetDrive(context.Get(), &key, &record));
}

Outcome Client::GetSlot(const Slot& slot, SlotRecord& record) {
    Context context(m_session);
    const SlotKey key = KeyOf(slot);
    record = {sizeof(SlotRecord), 0, 254};
    return context.Result(KrvGetSlot(context.Get(), &key, &record));
}

Outcome Client::Side(const Slot& slot, int32_t side, SideRecord& record) {
    Context context(m_session);
    const SideKey key = KeyOf(slot, side);
    record = {sizeof(SideRecord), 0, 254, 0, -1};
    return context.Result(KrvGetSide(context.Get(), &key, &record));
}

Outcome Client::Volume(uint32_t volume, VolumeRecord& record) {
    Context context(m_session);
    std::memset(&record, 0, sizeof(record));
    record.size = sizeof(record);
    record.state = 0xEEEEEEEE;  // this field alone is not set before the call
    record.libraryValue1 = -1;
    return context.Result(KrvVolumeDetail(context.Get(), volume, &record));
}

Outcome Client::Aspects(uint32_t volume, std::vector<std::string>& aspects) {
    aspects.clear();
    Context first(m_session);
    char small = '\x7F';
    uint32_t required = 0;
    Outcome outcome = first.Result(KrvVolumeAspects(first.Get(), volume, &small, 1, &required));
    EXPECT_EQ(small, '\x7F') << "a buffer that is too small is left alone";
    if (!outcome.ok || required == 0) return outcome;
    std::string buffer(required, '\x7F');
    Context second(m_session);
    Outcome result =
        second.Result(KrvVolumeAspects(second.Get(), volume, buffer.data(), required, &required));
    for (size_t start = 0; start < buffer.size() && buffer[start] != '\0';) {
        aspects.emplace_back(buffer.data() + start);
        start += aspects.back().size() + 1;
    }
    return result;
}

Outcome Client::Locations(uint32_t volume, std::vector<SideKey>& locations) {
    const SideKey unset{sizeof(SideKey), -1, -1, -1, -1};
    locations.assign(1, unset);
    uint32_t count = 0;
    Context first(m_session);
    Outcome outcome = first.Result(KrvVolumeLocations(first.Get(), volume, locations.data(), 1, &count));
    if (!outcome.ok || count < 2) return outcome;
    locations.assign(count, unset);
    Context second(m_session);
    return second.Result(KrvVolumeLocations(second.Get(), volume, locations.data(), 1, &count));
}

Outcome Client::SetDirectory(uint32_t volume, const std::string& text) {
    Context context(m_session);
    return context.Result(KrvVolumeSetAspects(context.Get(), volume, text.c_str(), 1));
}

Outcome Client::EnableVolume(uint32_t volume) {
    Context context(m_session);
    return context.Result(KrvVolumeActivate(context.Get(), volume, nullptr));
}

Outcome Client::DisableVolume(uint32_t volume) {
    Context context(m_session);
    return context.Result(KrvVolumeDeactivate(context.Get(), volume));
}

Outcome Client::Erase(const Slot& slot, int32_t side) {
    Context context(m_session);
    const SideKey key = KeyOf(slot, side);
    return context.Result(KrvVolumeErase(context.Get(), &key));
}

Outcome Client::Finalize(const Slot& slot, int32_t side) {
    Context context(m_session);
    const SideKey key = KeyOf(slot, side);
    return context.Result(KrvVolumeFinalize(context.Get(), &key));
}

Outcome Client::Format(const Slot& slot, int32_t side, const std::string& label, bool sequential) {
    Context context(m_session);
    const SideKey key = KeyOf(slot, side);
    FormatOptions options{};
    options.size = sizeof(options);
    std::memcpy(options.label, label.data(), label.size());
    options.sequential = sequential ? 1 : 0;
    return context.Result(KrvVolumeFormat(context.Get(), &key, &options));
}

Outcome Client::Import(const Slot& slot) {
    Context context(m_session);
    const SlotKey key = KeyOf(slot);
    return context.Result(KrvMediaImport(context.Get(), &key));
}

Outcome Client::Export(const Slot& slot) {
    Context context(m_session);
    const SlotKey key = KeyOf(slot);
    return context.Result(KrvMediaExport(context.Get(), &key));
}

Outcome Client::Scan(const Slot& slot) {
    Context context(m_session);
    const SideKey key = KeyOf(slot, 2);
    return context.Result(KrvMediaScan(context.Get(), &key));
}

Outcome Client::EnableJukebox(int32_t jukebox) {
    Context context(m_session);
    const JukeboxKey key{sizeof(JukeboxKey), jukebox};
    return context.Result(KrvActivateJukebox(context.Get(), &key));
}

Outcome Client::DisableJukebox(int32_t jukebox) {
    Context context(m_session);
    const JukeboxKey key{sizeof(JukeboxKey), jukebox};
    return context.Result(KrvDeactivateJukebox(context.Get(), &key));
}

Outcome Client::EnableMagazine(int32_t jukebox, int32_t magazine) {
    Context context(m_session);
    const MagazineKey key{sizeof(MagazineKey), jukebox, magazine};
    return context.Result(KrvActivateMagazine(context.Get(), &key));
}

Outcome Client::DisableMagazine(int32_t jukebox, int32_t magazine) {
    Context context(m_session);
    const MagazineKey key{sizeof(MagazineKey), jukebox, magazine};
    return context.Result(KrvDeactivateMagazine(context.Get(), &key));
}

Outcome Client::EnableDrive(int32_t jukebox, int32_t drive) {
    Context context(m_session);
    const DriveKey key{sizeof(DriveKey), jukebox, drive};
    return context.Result(KrvActivateDrive(context.Get(), &key));
}

Outcome Client::DisableDrive(int32_t jukebox, int32_t drive) {
    Context context(m_session);
    const DriveKey key{sizeof(DriveKey), jukebox, drive};
    return context.Result(KrvDeactivateDrive(context.Get(), &key));
}

Outcome Client::RenameJukebox(int32_t jukebox, const std::string& name) {
    Context context(m_session);
    const JukeboxKey key{sizeof(JukeboxKey), jukebox};
    return context.Result(KrvJukeboxSetName(context.Get(), &key, name.c_str()));
}

Outcome Client::StopService() {
    Context context(m_session);
    return context.Result(KrvServiceStop(context.Get()));
}

Outcome Client::RestartService() {
    Context context(m_session);
    return context.Result(KrvServiceRestart(context.Get()));
}

uint32_t Client::SlotState(const Slot& slot) {
    SlotRecord record{};
    Outcome outcome = GetSlot(slot, record);
    EXPECT_TRUE(outcome.ok) << Describe(outcome);
    return record.state;
}

SideRecord Client::SideOf(const Slot& slot, int32_t side) {
    SideRecord record{};
    Outcome outcome = Side(slot, side, record);
    EXPECT_TRUE(outcome.ok) << Describe(outcome);
    return record;
}

VolumeRecord Client::VolumeOf(uint32_t volume) {
    VolumeRecord record{};
    Outcome outcome = Volume(volume, record);
    EXPECT_TRUE(outcome.ok) << Describe(outcome);
    return record;
}

std::string Client::LabelOf(uint32_t volume) {
    return VolumeOf(volume).label;
}

Outcome StartService(const std::string& server) {
    Context context;
    return context.Result(KrvServiceStart(context.Get(), server.c_str()));
}

}  // namespace embedded_test
