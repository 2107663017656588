// Whatever the other side of a connection sends. The first byte chooses what reads it.
#include <string>

#include "embedded/remote/protocol/ahead.h"
#include "embedded/remote/protocol/fields.h"
#include "embedded/remote/protocol/frame.h"
#include "embedded/remote/protocol/limits.h"
#include "embedded/remote/protocol/messages.h"
#include "embedded/remote/protocol/sequence.h"
#include "tests/fuzz/fuzz_target.h"

namespace krvcmd::fuzz {
namespace {

using namespace embedded::remote;

void TryAhead(const json& message) {
    const Ahead ahead = AheadFrom(message);
    const Ahead same = AheadFrom(DecodeCbor(EncodeCbor(ToMessage(ahead))));
    Require(same.volumes.size() == ahead.volumes.size() && same.sides.size() == ahead.sides.size(),
            "what was read ahead can be sent on");
}

void TryRecords(const json& message) {
    FieldReader fields(message);
    const auto record = Take<JukeboxRecord>(fields);
    Require(record.size == sizeof(record), "a record has its size");
}

// A byte string on its own, whatever names it.
void TrySequence(const json& message) {
    SequenceReader fields(embedded::remote::TextOf(message));
    const auto record = Take<VolumeRecord>(fields);
    Require(record.size == sizeof(record), "a record has its size");
    SequenceWriter written;
    Put(written, record);
    const json again = std::move(written).Take();
    SequenceReader same(embedded::remote::TextOf(again));
    Require(Take<VolumeRecord>(same).totalCapacity == record.totalCapacity && same.IsAtEnd(),
            "a record can be sent on");
}

void TryRequest(const json& message) {
    const Request request = RequestFrom(message);
    const Request same = RequestFrom(DecodeCbor(EncodeCbor(ToMessage(request))));
    Require(
        same.function == request.function && same.arguments == request.arguments && same.from == request.from,
        "a request can be sent on");
}

void TryAnswer(const json& message) {
    (void)AnswerFrom(message);
}

void TryHello(const json& message) {
    (void)HelloFrom(message);
}

constexpr void (*kReaders[])(const json&) = {TryAhead,  TryRecords, TryRequest,
                                             TryAnswer, TryHello,   TrySequence};

}  // namespace
}  // namespace krvcmd::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace krvcmd::fuzz;
    if (size == 0) return 0;
    const auto read = kReaders[data[0] % std::size(kReaders)];
    FrameReader reader(embedded::remote::kLongestRequest);
    reader.Append(TextOf(data + 1, size - 1));
    try {
        while (const auto message = reader.Next())
            read(*message);
    } catch (const ProtocolFailure& failure) {
        Require(failure.what()[0] != '\0', "a refusal is told in words");
    }
    return 0;
}
