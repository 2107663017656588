#include "embedded/attached/scsi/disc_writing.h"

namespace embedded::attached {

Cdb CloseTrackSession(CloseFunction function, uint16_t track, Answer answer) {
    return Cdb(kCloseTrackSession)
        .Put8(1, answer == Answer::AtOnce ? 1 : 0)
        .Put8(2, static_cast<uint8_t>(function))
        .Put16(4, track);
}

Cdb Blank(BlankExtent extent, Answer answer) {
    constexpr unsigned kImmediate = 0x10;
    return Cdb(kBlank).Put8(1, (answer == Answer::AtOnce ? kImmediate : 0) | static_cast<unsigned>(extent));
}

Cdb FormatUnit() {
    return Cdb(kFormatUnit);
}

Cdb FormatUnitAs() {
    constexpr unsigned kHasParameters = 0x10;
    constexpr unsigned kFormatCode = 0x01;
    return Cdb(kFormatUnit).Put8(1, kHasParameters | kFormatCode);
}

std::array<uint8_t, 12> FormatParameters(const FormatCapacities::Choice& choice, Answer answer) {
    constexpr uint8_t kOptionsAreValid = 0x80;
    constexpr uint8_t kImmediate = 0x02;
    constexpr uint16_t kDescriptor = 8;
    std::array<uint8_t, 12> parameters{};
    BigEndianWriter writer(parameters);
    writer.Put8(1, answer == Answer::AtOnce ? kOptionsAreValid | kImmediate : kOptionsAreValid);
    writer.Put16(2, kDescriptor);
    writer.Put32(4, choice.blocks);
    writer.Put8(8, static_cast<uint8_t>(choice.type << 2));
    writer.Put24(9, choice.parameter);
    return parameters;
}

}  // namespace embedded::attached
