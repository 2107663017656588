#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "krvcmd/service/sdk/call.h"
#include "krvcmd/service/sdk/krv_sdk.h"
#include "krvcmd/service/sdk/records.h"

namespace {

void Require(const krvcmd::Status& status, const char* call) {
    if (status.IsOk()) return;
    (void)std::fprintf(stderr, "%s: code %d\n", call, status.Code());
    std::exit(1);
}

// By then the walk has been read ahead twice, and the third row is on its way.
constexpr int kChangeAfter = 200;

}  // namespace

// Walks over the volumes of a server and disables one of them on the way: walk_and_change SERVER VOLUME.
// Prints the ID and the state of each volume.
int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const auto changed = static_cast<uint32_t>(std::stoul(argv[2]));
    KrvSession session = 0;
    Require(krvcmd::CallInSession(0, KrvSessionCreate, argv[1], &session), "KrvSessionCreate");
    uint32_t volume = 0;
    for (int met = 1;; ++met) {
        Require(krvcmd::CallInSession(session, KrvGetNextVolume, volume, &volume), "KrvGetNextVolume");
        if (volume == 0) break;
        if (met == kChangeAfter)
            Require(krvcmd::CallInSession(session, KrvVolumeDeactivate, changed), "disable");
        VolumeRecord record;
        krvcmd::Preset(record);
        Require(krvcmd::CallInSession(session, KrvVolumeDetail, volume, &record), "KrvVolumeDetail");
        std::printf("%u %u\n", volume, record.state);
    }
    Require(krvcmd::CallInSession(session, KrvSessionClose), "KrvSessionClose");
    return 0;
}
