#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/remote/protocol/cbor.h"

namespace embedded::remote {

// The messages of docs/remote-protocol.md. Every From throws a ProtocolFailure for a message that is another
// one or not complete; fields that it does not know are passed over.

// The versions of the protocol that this release speaks.
inline constexpr uint32_t kLowestVersion = 1;
inline constexpr uint32_t kHighestVersion = 1;

// The server's side reads ahead when it is asked to.
inline constexpr const char* kReadsAhead = "ahead";

// What each side says first.
struct Hello {
    uint32_t lowest = kLowestVersion;
    uint32_t highest = kHighestVersion;
    std::string release;
    std::vector<std::string> features;
};
// Of this program.
Hello OwnHello();
json ToMessage(const Hello& hello);
Hello HelloFrom(const json& message);

// A request beside the functions of the client library: was this change made? From then on it never is.
inline constexpr const char* kSettle = "Settle";

struct Request {
    uint64_t number = 0;   // the answer repeats it
    std::string function;  // of the client library, or kSettle
    json::array_t arguments;
    uint32_t ahead = 0;   // how many items may be read ahead
    json::array_t from;   // of a change: where that begins, a slot's fields or a volume's ID
    uint64_t change = 0;  // the number of the change, from 1; 0 = no change
};
json ToMessage(const Request& request);
Request RequestFrom(const json& message);

struct Failure {
    int32_t code = 0;
    std::string text;
};

struct Answer {
    uint64_t number = 0;
    bool isWorking = false;  // only a sign of life: the answer follows
    std::optional<Failure> failure;
    json result = json::array();
    json ahead;                                   // null when nothing was read ahead
    std::chrono::steady_clock::time_point asked;  // known to the asking side only; not in the message
};
json ToMessage(Answer answer);
Answer AnswerFrom(json message);

}  // namespace embedded::remote
