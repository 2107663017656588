#pragma once

#include "embedded/attached/disc/disc.h"
#include "embedded/attached/disc/medium.h"
#include "embedded/attached/scsi/disc_writing.h"

namespace embedded::attached {

// One change of the disc in a drive: carries out commands that write, and knows what has become of the side
// when one fails.
class DiscChange {
  public:
    // Everything outlives the change.
    DiscChange(Device& drive, const DiscLimits& limits, const DiscProgress& progress)
        : m_drive(drive), m_limits(limits), m_progress(progress) {}

    Device& GetDrive() { return m_drive; }
    const DiscLimits& GetLimits() const { return m_limits; }

    // The medium, once the drive is ready.
    Result<Medium> ReadReadyMedium();

    // The same; refused when the drive cannot write it.
    Result<Medium> ReadWritableMedium();

    // A command that changes the disc.
    Result<Nothing> Do(const Cdb& cdb, std::chrono::milliseconds limit, Bytes dataOut = {});

    // The same for one that the drive answers at once: waits until it has done, and tells how far it is.
    Result<Nothing> DoAndWait(const Cdb& cdb, std::chrono::milliseconds limit, DiscStep step,
                              Bytes dataOut = {});

    // Sets how sequential media are written, where a mode page says so.
    Result<Nothing> SetNextSession(const Medium& medium, bool isAllowed);

    // BLANK, for media that have it.
    Result<Nothing> BlankMedium(const Medium& medium, EraseExtent extent);

    // Closes the last track when it is open.
    Result<Nothing> CloseOpenTrack();

    // Closes the last session, or in the same way the whole disc.
    Result<Nothing> CloseSession(CloseFunction function = CloseFunction::Session);

    void Tell(DiscStep step, uint64_t part, uint64_t whole) const;

    // An error that begins with the name of the drive.
    Error Refuse(const std::string& text) const;

    // The disc does not hold what was written.
    Error Condemn(const std::string& text);

    ChangeResult Finish(const Result<Nothing>& result) const;

  private:
    // `limit`: of a drive that does not tell how far it is.
    Result<Nothing> WaitUntilDone(std::chrono::milliseconds limit, DiscStep step);

    Device& m_drive;
    const DiscLimits& m_limits;
    const DiscProgress& m_progress;
    bool m_isTouched = false;
    bool m_isBad = false;
};

}  // namespace embedded::attached
