#include "embedded/jukebox/time_limits.h"

namespace embedded {
namespace {

constexpr TimeLimitInfo kTimeLimits[] = {
    {"move", &TimeLimits::move, "one move of the robot"},
    {"inventory", &TimeLimits::inventory, "the changer looks at all its elements"},
    {"eject", &TimeLimits::eject, "a drive gives its disc away"},
    {"ready", &TimeLimits::ready, "a drive makes a loaded disc ready"},
    {"look", &TimeLimits::look, "any command that only asks for something"},
    {"read", &TimeLimits::read, "one read of up to 64 KiB"},
    {"write", &TimeLimits::write, "one write of up to 64 KiB"},
    {"flush", &TimeLimits::flush, "a drive empties its buffer"},
    {"close", &TimeLimits::close, "a drive closes a track or a session, without telling how far it is"},
    {"blank", &TimeLimits::blank, "a drive erases a disc, without telling how far it is"},
    {"format", &TimeLimits::format, "a drive formats a disc, without telling how far it is"},
    {"standstill", &TimeLimits::standstill, "a drive tells how far it is and gets no further"},
};

}  // namespace

std::span<const TimeLimitInfo> AllTimeLimits() {
    return kTimeLimits;
}

}  // namespace embedded
