#include "tests/unit/embedded/support/model_jukebox.h"

#include <utility>

#include "embedded/model/refusal.h"

namespace embedded_test {
namespace {

using embedded::Code;
using embedded::Content;
using embedded::ElementKind;
using embedded::ElementState;
using embedded::Hold;
using embedded::MediumMove;
using embedded::Refuse;
using embedded::SideAfter;
using embedded::SideChange;
using embedded::SideFormat;
using embedded::SideReading;
using embedded::Turning;

constexpr uint16_t kSlots = 4;

}  // namespace

class Mechanics::Grip : public Hold {
  public:
    explicit Grip(Mechanics& mechanics) : m_mechanics(mechanics) { m_mechanics.m_isHeld = true; }
    Grip(const Grip&) = delete;
    Grip& operator=(const Grip&) = delete;
    ~Grip() override { m_mechanics.m_isHeld = false; }

  private:
    Mechanics& m_mechanics;
};

class Mechanics::Robot : public embedded::PhysicalJukebox {
  public:
    explicit Robot(Mechanics& mechanics) : m_mechanics(mechanics) {}

    std::vector<ElementState> LookAtElements() override {
        if (m_mechanics.m_inFlight.has_value() && m_mechanics.m_looksInFlight-- == 0)
            m_mechanics.m_discs[m_mechanics.m_destination] = *std::exchange(m_mechanics.m_inFlight, {});
        std::vector<ElementState> states;
        states.push_back(StateOf(ElementKind::Picker, kPicker));
        for (uint16_t i = 0; i < kSlots; ++i)
            states.push_back(StateOf(ElementKind::Slot, static_cast<uint16_t>(kFirstSlot + i)));
        states.push_back(StateOf(ElementKind::MailSlot, kMailSlot));
        for (int32_t i = 0; i < m_mechanics.m_driveCount; ++i)
            states.push_back(StateOf(ElementKind::Drive, static_cast<uint16_t>(kFirstDrive + i)));
        for (ElementState& state : states) {
            if (state.address != m_mechanics.m_ghost) continue;
            state.isFull = true;
            state.tag = m_mechanics.m_discs.at(m_mechanics.m_destination).tag;
        }
        m_mechanics.m_ghost = 0;
        return states;
    }

    std::unique_ptr<Hold> KeepOtherHostsAway() override {
        if (m_mechanics.Takes(Fault::OtherHost)) throw Refuse(Code::DeviceTrouble, {"another host has it"});
        return std::make_unique<Grip>(m_mechanics);
    }

    void TakeInventory() override {}

    void MoveMedium(const MediumMove& move) override {
        if (m_mechanics.m_onMove) m_mechanics.m_onMove();
        if (m_mechanics.Takes(Fault::BeforeMove) || m_mechanics.m_jammed.contains(move.source))
            throw Refuse(Code::DeviceTrouble, {"the medium is stuck"});
        if (m_mechanics.Takes(Fault::CrashBeforeMove)) throw Crash();
        auto& discs = m_mechanics.m_discs;
        if (!discs.contains(move.source)) throw Refuse(Code::DeviceTrouble, {"the source is empty"});
        if (discs.contains(move.destination)) throw Refuse(Code::DeviceTrouble, {"the destination is full"});
        Disc disc = std::move(discs[move.source]);
        discs.erase(move.source);
        if (m_mechanics.Takes(Fault::CrashInFlight)) {
            constexpr int kLooks = 3;
            m_mechanics.m_inFlight = std::move(disc);
            m_mechanics.m_destination = move.destination;
            m_mechanics.m_looksInFlight = kLooks;
            throw Crash();
        }
        if (move.turning == Turning::Invert) disc.isUpsideDown = !disc.isUpsideDown;
        disc.home = move.source;
        discs[move.destination] = std::move(disc);
        ++m_mechanics.m_moves;
        if (m_mechanics.Takes(Fault::CrashAfterMove)) throw Crash();
        if (m_mechanics.Takes(Fault::CrashAtArrival)) {
            m_mechanics.m_ghost = move.source;
            m_mechanics.m_destination = move.destination;
            throw Crash();
        }
        if (m_mechanics.Takes(Fault::AfterMove)) throw Refuse(Code::DeviceTrouble, {"the cable is out"});
    }

    SideReading ReadSide(int32_t drive) override {
        if (m_mechanics.Takes(Fault::Reading)) throw Refuse(Code::DeviceTrouble, {"the drive is dead"});
        return SideUp(drive);
    }

    SideChange FormatSide(int32_t drive, const SideFormat& format) override {
        SideReading written = Recorded(format.label);
        written.isSequential = format.isSequential;
        written.finalization = embedded::Finalization::NotFinalized;
        return Write(drive, written);
    }
    SideChange EraseSide(int32_t drive) override { return Write(drive, Blank()); }
    SideChange FinalizeSide(int32_t drive) override {
        SideReading closed = SideUp(drive);
        closed.finalization = embedded::Finalization::Closed;
        return Write(drive, closed);
    }

    bool CanWrite(int32_t /*drive*/, uint32_t mediumType) override { return mediumType == kDvdRam; }

  private:
    ElementState StateOf(ElementKind kind, uint16_t address) const {
        ElementState state;
        state.kind = kind;
        state.address = address;
        const auto found = m_mechanics.m_discs.find(address);
        if (found == m_mechanics.m_discs.end()) return state;
        state.isFull = true;
        state.tag = found->second.tag;
        state.isInverted = found->second.isUpsideDown;
        if (kind == ElementKind::Drive) state.source = found->second.home;
        return state;
    }

    SideReading& SideUp(int32_t drive) {
        Disc& disc = m_mechanics.m_discs.at(static_cast<uint16_t>(kFirstDrive + drive));
        return disc.sides.at(disc.isUpsideDown && disc.sides.size() > 1 ? 1 : 0);
    }

    SideChange Write(int32_t drive, const SideReading& reading) {
        if (m_mechanics.Takes(Fault::WritingStuck)) return {SideAfter::Unknown, "the drive stopped"};
        if (m_mechanics.Takes(Fault::WritingBad)) return {SideAfter::Bad, "the medium is worn out"};
        SideUp(drive) = reading;
        return {};
    }

    Mechanics& m_mechanics;
};

bool Mechanics::Takes(Fault fault) {
    if (m_fault != fault || m_othersFirst-- > 0) return false;
    m_fault = Fault::None;
    return true;
}

SideReading Mechanics::Blank() {
    SideReading reading;
    reading.mediumType = kDvdRam;
    reading.total = 4'700'000'000;
    reading.free = reading.total;
    return reading;
}

SideReading Mechanics::Recorded(const std::string& label) {
    SideReading reading = Blank();
    reading.content = Content::FileSystem;
    reading.fileSystem = "UDF";
    reading.label = label;
    reading.uuid = "uuid of " + label;
    return reading;
}

std::unique_ptr<embedded::PhysicalJukebox> Mechanics::Open() {
    return std::make_unique<Robot>(*this);
}

}  // namespace embedded_test
