#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "embedded/attached/scsi/inquiry.h"
#include "embedded/attached/transport/transport.h"

namespace embedded::attached {

// A drive with a disc in it, in memory: enough of MMC-6 and SBC-3 to write discs and to close, blank and
// format them. What it is and what goes wrong is set in the public members before a test begins.
class ModelDrive : public Transport {
  public:
    // What is in the drive.
    DeviceType type = DeviceType::Optical;
    uint16_t profile = 0;    // MMC-6, table 95
    uint8_t mediumType = 0;  // of mode data
    uint32_t blockSize = 2048;
    uint32_t capacity = 2'295'104;  // blocks
    bool isWriteProtected = false;
    bool isFormatted = true;             // of random-access media
    std::vector<uint8_t> formats{0x00};  // format types that the drive offers
    bool isAudio = false;
    bool isDamaged = false;

    // The disc: its blocks, and for sequential media where the next one goes and where sessions begin.
    std::map<uint64_t, std::vector<uint8_t>> blocks;
    uint32_t nextWritable = 0;
    std::vector<uint32_t> sessions;  // starts of the closed ones
    bool hasOpenTrack = false;
    bool isSessionOpen = false;
    bool isClosed = false;
    std::vector<uint8_t> writeParameters;  // mode page 05h

    // What goes wrong.
    int becomingReady = 0;  // so many commands fail with 2/04/01
    int busyPolls = 0;      // so often REQUEST SENSE says that a long command is running
    bool tellsProgress = true;
    uint16_t progressPerPoll = 0;  // from one half on, in 65536ths
    bool readsClosedSessionsOnly = false;
    std::set<uint64_t> unwritable;  // these blocks fail to be written
    std::set<uint64_t> unreadable;
    std::set<uint64_t> altered;  // these read back otherwise
    bool isCopyProtected = false;
    size_t loseAtWrite = 0;                        // this WRITE, counted from 1, ends the connection
    std::map<uint8_t, std::vector<uint8_t>> lies;  // answers by operation code
    std::map<uint8_t, SenseCode> failures;         // by operation code

    // Commands that change something, in words.
    std::vector<std::string> changes;

    explicit ModelDrive(std::string address) : m_address(std::move(address)) { ResetParameters(); }

    // A disc whose sessions are these images, one behind the other from these blocks on.
    void Hold(uint32_t start, const std::vector<uint8_t>& image);

    Result<Completion> Send(const Command& command) override;
    bool IsConnected() const override { return m_isConnected; }
    Result<Nothing> Reconnect() override;
    std::string GetAddress() const override { return m_address; }

  private:
    using Answer = std::vector<uint8_t>;

    void ResetParameters();
    bool IsSequential() const;
    bool IsReadOnly() const;
    bool IsBlank() const { return sessions.empty() && !isSessionOpen; }
    uint32_t GetLastBlock() const;
    size_t GetTrackCount() const;

    Completion Good(const Command& command, const Answer& answer = {}) const;
    static Completion Fail(const SenseCode& code);
    void Start() { m_busy = busyPolls; }

    Completion Carry(const Command& command);
    Completion Sense(const Command& command);
    Completion Read(const Command& command);
    Completion Write(const Command& command);
    Completion Format(const Command& command);
    Completion Blank(const Command& command);
    Completion Close(const Command& command);
    Completion SelectMode(const Command& command);

    Answer GetInquiry() const;
    Answer GetConfiguration() const;
    Answer GetDiscInformation() const;
    Answer GetTrackInformation(size_t track) const;
    Answer GetFormatCapacities() const;
    Answer GetMode10() const;

    std::string m_address;
    bool m_isConnected = true;
    size_t m_writes = 0;
    int m_busy = 0;
    uint16_t m_progress = 0x8000;
};

}  // namespace embedded::attached
