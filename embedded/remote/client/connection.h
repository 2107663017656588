#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "embedded/remote/process/ssh_process.h"
#include "embedded/remote/protocol/frame.h"
#include "embedded/remote/protocol/messages.h"
#include "embedded/remote/servers/server_list.h"

namespace embedded::remote {

// The words that ssh is started with for a place.
std::vector<std::string> SshArguments(const Place& place);

// A connection with the other side of a server. Every function may throw a Refusal: then the connection is
// over. None waits longer than the limits of the protocol allow.
class Connection {
  public:
    // Starts ssh and says hello, without waiting for an answer.
    explicit Connection(const KnownServer& server);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() = default;

    // What the other side said first; refuses one that this release does not understand.
    const Hello& GetGreeting();

    // Sends the request and waits for its answer, which may be a failure. The request gets its number here.
    Answer Ask(Request request);

    // Sends a look that is likely to be asked next, so that the other side works on it meanwhile. When the
    // next request is another one, the answer is dropped first.
    void AskEarly(Request request);

    // The same for the last request; ssh is over afterwards.
    Answer AskLast(Request request);

  private:
    using Clock = std::chrono::steady_clock;

    struct Early {
        Request request;
        Clock::time_point time;
    };

    void Number(Request& request) { request.number = ++m_lastRequest; }
    // The answer of the early request if that is this request.
    std::optional<Answer> TakeEarly(const Request& request);
    void Send(const json& message);
    Answer Await(uint64_t number);
    json NextMessage(std::chrono::milliseconds limit);
    [[noreturn]] void GiveUp(Transfer result);
    void Understand(const Hello& greeting) const;

    KnownServer m_server;
    std::unique_ptr<SshProcess> m_ssh;
    FrameReader m_reader;
    std::optional<Hello> m_greeting;
    uint64_t m_lastRequest = 0;
    std::optional<Early> m_early;
};

}  // namespace embedded::remote
