#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "embedded/jukebox/physical_jukebox.h"

namespace embedded_test {

// A jukebox in memory: a picker, a mail slot, a drive or more, and slots. It turns media over, does what it
// is told at once, and fails where a test says so. It outlives the services that work with it.
class Mechanics {
  public:
    static constexpr uint16_t kPicker = 1;
    static constexpr uint16_t kFirstDrive = 256;
    static constexpr uint16_t kMailSlot = 768;
    static constexpr uint16_t kFirstSlot = 1024;
    static constexpr uint32_t kDvdRam = 12;  // the type of its discs

    struct Disc {
        std::string tag;
        std::vector<embedded::SideReading> sides;
        bool isUpsideDown = false;
        uint16_t home = 0;  // where it was before it came into a drive
    };

    enum class Fault {
        None,
        BeforeMove,       // refused, and nothing is moved
        AfterMove,        // moved, but the answer is lost
        CrashBeforeMove,  // the process ends
        CrashAfterMove,
        CrashInFlight,   // the process ends; the disc arrives some looks later
        CrashAtArrival,  // the process ends; the next look sees the disc in both places
        Reading,         // the drive cannot read
        WritingStuck,    // the drive stops within a write: nobody knows what is on the side
        WritingBad,      // the medium takes no data
        OtherHost,       // another host holds the changer
    };

    // Stands for the end of a process: nothing of the service catches it.
    struct Crash {};

    explicit Mechanics(int32_t drives) : m_driveCount(drives) {}

    // A side that holds a file system, and one that holds nothing.
    static embedded::SideReading Recorded(const std::string& label);
    static embedded::SideReading Blank();

    void Put(uint16_t element, Disc disc) { m_discs[element] = std::move(disc); }
    // What is in this element stays there: every move from it fails.
    void Jam(uint16_t element) { m_jammed.insert(element); }
    // An operation of this kind fails: the next one, or one that comes after `others` others.
    void Fail(Fault fault, int others = 0) {
        m_fault = fault;
        m_othersFirst = others;
    }
    // Called before every move.
    void OnMove(std::function<void()> hook) { m_onMove = std::move(hook); }

    const std::map<uint16_t, Disc>& GetDiscs() const { return m_discs; }
    bool IsHeld() const { return m_isHeld; }
    int GetMoves() const { return m_moves; }

    std::unique_ptr<embedded::PhysicalJukebox> Open();

  private:
    class Robot;
    class Grip;

    bool Takes(Fault fault);

    int32_t m_driveCount;
    std::map<uint16_t, Disc> m_discs;
    std::set<uint16_t> m_jammed;
    std::optional<Disc> m_inFlight;
    uint16_t m_destination = 0;  // of the disc in flight
    int m_looksInFlight = 0;
    uint16_t m_ghost = 0;  // an element that the next look sees as it was
    Fault m_fault = Fault::None;
    int m_othersFirst = 0;
    std::function<void()> m_onMove;
    bool m_isHeld = false;
    int m_moves = 0;
};

}  // namespace embedded_test
