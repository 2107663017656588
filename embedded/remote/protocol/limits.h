#pragma once

#include <chrono>
#include <cstddef>

namespace embedded::remote {

// The longest message to a server's side, and the longest from it, in bytes of CBOR.
inline constexpr size_t kLongestRequest = size_t{64} * 1024;
inline constexpr size_t kLongestAnswer = size_t{16} * 1024 * 1024;

// While a call is being made, the server's side gives a sign of life this often.
inline constexpr std::chrono::seconds kSignOfLife{3};
// Without any for this long, the connection is given up.
inline constexpr std::chrono::seconds kLongestSilence{15};
// How long ssh has to connect, and then the server's side to say its first word.
inline constexpr std::chrono::seconds kConnectTime{10};
inline constexpr std::chrono::seconds kLongestGreeting{25};

}  // namespace embedded::remote
