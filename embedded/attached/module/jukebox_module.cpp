#include "embedded/attached/jukebox/scsi_jukebox.h"

// The only function that the module exports; the caller owns what it returns. Module and client library are
// made together and share their C++ interface, so a Refusal may leave it.
extern "C" __attribute__((visibility("default"))) embedded::PhysicalJukebox* KrvOpenJukebox(
    const embedded::JukeboxAddress& address) {
    return embedded::attached::OpenScsiJukebox(address).release();
}
