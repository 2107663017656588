#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "embedded/attached/transport/transport.h"

namespace embedded::attached {

// A changer in memory, with a picker that turns media, a mail slot, two drives and four slots: enough of
// SMC-3 and SPC-4 to look at its elements, to move media and to reserve it. What goes wrong is set in the
// public members.
class ModelChanger : public Transport {
  public:
    static constexpr uint16_t kPicker = 1;
    static constexpr uint16_t kDrive = 256;
    static constexpr uint16_t kDrives = 2;
    static constexpr uint16_t kMailSlot = 768;
    static constexpr uint16_t kSlot = 1024;
    static constexpr uint16_t kSlots = 4;

    struct Medium {
        std::string tag;
        bool isInverted = false;
        std::optional<uint16_t> source;
    };
    std::map<uint16_t, Medium> media;  // by element
    std::string serialNumber = "CHG-1";

    // What goes wrong.
    std::deque<SenseCode> attentions;     // reported by the next commands but INQUIRY, which they stop
    std::deque<SenseCode> moveFailures;   // of the next moves, which do not happen
    std::optional<Error> lostMove;        // of the next move, which happens
    int becomingReady = 0;                // so many commands fail with 2/04/01
    std::map<uint16_t, SenseCode> stuck;  // elements with the exception bit
    std::set<uint16_t> outOfReach;        // elements without the access bit
    bool knowsReservations = true;
    uint64_t otherHost = 0;  // has reserved the changer; 0: none has

    // Called before every move.
    std::function<void(uint16_t source, uint16_t destination, bool turns)> onMove;

    // The operation codes of all commands, and the time limit that each was last given.
    std::vector<uint8_t> commands;
    std::map<uint8_t, std::chrono::milliseconds> limits;

    // Whose reservation it is; 0: nobody's.
    uint64_t GetHolder() const { return m_holder; }

    Result<Completion> Send(const Command& command) override;
    bool IsConnected() const override { return m_isConnected; }
    Result<Nothing> Reconnect() override;
    std::string GetAddress() const override { return "changer"; }

  private:
    using Answer = std::vector<uint8_t>;

    static bool IsElement(uint16_t address);

    Completion Carry(const Command& command);
    Completion Move(Bytes cdb);
    Completion Reserve(const Command& command);
    Answer GetInquiry(Bytes cdb) const;
    Answer GetModePage(uint8_t page) const;
    Answer GetElements(Bytes cdb) const;
    Answer DescribeElement(uint16_t address) const;
    Answer GetReservation() const;

    bool m_isConnected = true;
    uint64_t m_registered = 0;
    uint64_t m_holder = 0;
};

}  // namespace embedded::attached
