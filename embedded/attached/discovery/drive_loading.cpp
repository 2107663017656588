#include "embedded/attached/discovery/drive_loading.h"

#include <algorithm>

#include "embedded/attached/scsi/medium_control.h"
#include "embedded/attached/scsi/sense.h"

namespace embedded::attached {
namespace {

using std::chrono::milliseconds;

// How long one look at a drive may take, and the pause between two looks at all of them.
constexpr milliseconds kLook{5'000};
constexpr milliseconds kPause{500};

// A drive that nobody knows the place of.
struct Candidate {
    std::unique_ptr<Device> device;
    size_t number = 0;  // among the lone drives
};

bool HoldsNothing(const Result<Nothing>& ready) {
    constexpr uint8_t kNoMedium = 0x3A;
    return !ready && ready.GetError().sense && ready.GetError().sense->asc == kNoMedium;
}

class Loader {
  public:
    Loader(Findings& findings, FoundChanger& changer, const Opener& open, const LoadingLimits& limits,
           Waiting& waiting)
        : m_findings(findings), m_changer(changer), m_open(open), m_limits(limits), m_waiting(waiting) {}

    Result<Nothing> Run() {
        auto device = Open(m_changer.device.place.address);
        if (!device) return device.GetError();
        m_robot = std::move(*device);
        for (FoundDriveElement& element : m_changer.drives) {
            if (!element.drives.empty()) continue;
            auto told = Tell(element);
            if (!told) return told;
        }
        return Nothing();
    }

  private:
    Result<std::unique_ptr<Device>> Open(const std::string& address) {
        auto transport = m_open(address);
        if (!transport) return transport.GetError();
        return std::make_unique<Device>(std::move(*transport), address, m_waiting);
    }

    Result<Nothing> Tell(FoundDriveElement& element) {
        const auto slot = FindDisc(element.element.address);
        if (!slot) return slot.GetError();
        auto candidates = OpenEmptyDrives();
        if (!candidates) return candidates.GetError();
        if (candidates->empty()) return Problem("there is no empty drive left that could be in it", element);
        const uint16_t drive = element.element.address;
        auto loaded = Carry({0, *slot, drive, Turning::Keep});
        if (!loaded) return loaded;
        Candidate* const found = WaitForDisc(*candidates);
        auto returned = Return({0, drive, *slot, Turning::Keep}, found);
        if (!returned) return returned;
        if (found == nullptr) return Problem("no drive became ready with a disc in it", element);
        const auto lone = m_findings.loneDrives.begin() + static_cast<ptrdiff_t>(found->number);
        element.drives.push_back(std::move(*lone));
        element.evidence = Evidence::Loading;
        m_findings.loneDrives.erase(lone);
        return Nothing();
    }

    Error Problem(const std::string& text, const FoundDriveElement& element) const {
        return {ErrorKind::NotFound,
                m_robot->GetName() + ": which drive is in element " +
                    std::to_string(element.element.address) + " is not known: " + text,
                {}};
    }

    // The slot of a disc, when the drive element is empty.
    Result<uint16_t> FindDisc(uint16_t drive) {
        const auto inventory = ReadInventory(*m_robot, m_changer.geometry);
        if (!inventory) return inventory.GetError();
        const auto element = std::ranges::find(inventory->drives, drive, &Element::address);
        const auto isUsable = [](const Element& slot) { return slot.isFull && !slot.isException; };
        const auto slot = std::ranges::find_if(inventory->slots, isUsable);
        const std::string place = m_robot->GetName() + ": drive element " + std::to_string(drive);
        if (element == inventory->drives.end() || element->isFull)
            return Error{ErrorKind::Refused, place + " holds a disc; take it out first", {}};
        if (slot == inventory->slots.end())
            return Error{ErrorKind::Refused, place + " cannot be loaded: no slot holds a disc", {}};
        return slot->address;
    }

    Result<std::vector<Candidate>> OpenEmptyDrives() {
        std::vector<Candidate> candidates;
        for (size_t i = 0; i < m_findings.loneDrives.size(); ++i) {
            auto device = Open(m_findings.loneDrives[i].place.address);
            if (!device) return device.GetError();
            if (HoldsNothing((*device)->WaitUntilReady(kLook))) candidates.push_back({std::move(*device), i});
        }
        return candidates;
    }

    Candidate* WaitForDisc(std::vector<Candidate>& candidates) {
        const Waiting::Instant deadline = m_waiting.Now() + m_limits.ready;
        while (true) {
            for (Candidate& candidate : candidates) {
                if (candidate.device->WaitUntilReady(kLook)) return &candidate;
            }
            if (m_waiting.Now() + kPause >= deadline) return nullptr;
            m_waiting.Pause(kPause);
        }
    }

    // A unit attention says that something else has changed; the command was not carried out.
    Result<Nothing> Carry(const Move& move) {
        const Cdb cdb = MoveMedium(move);
        auto done = m_robot->Do(cdb, m_limits.move);
        if (!done && done.GetError().kind == ErrorKind::Attention) done = m_robot->Do(cdb, m_limits.move);
        return done;
    }

    // Some drives hold on to a disc until they are told to give it away.
    Result<Nothing> Return(const Move& home, const Candidate* drive) {
        auto moved = Carry(home);
        if (moved || drive == nullptr) return moved;
        const auto ejected =
            drive->device->Do(StartStopUnit(UnitAction::Eject, Answer::WhenDone), m_limits.move);
        return ejected ? Carry(home) : moved;
    }

    Findings& m_findings;
    FoundChanger& m_changer;
    const Opener& m_open;
    LoadingLimits m_limits;
    Waiting& m_waiting;
    std::unique_ptr<Device> m_robot;
};

}  // namespace

Result<Nothing> FindDrivesByLoading(Findings& findings, FoundChanger& changer, const Opener& open,
                                    const LoadingLimits& limits, Waiting& waiting) {
    return Loader(findings, changer, open, limits, waiting).Run();
}

}  // namespace embedded::attached
