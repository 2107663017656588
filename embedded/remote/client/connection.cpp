#include "embedded/remote/client/connection.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "embedded/model/refusal.h"
#include "embedded/remote/client/ssh_failure.h"
#include "embedded/remote/protocol/limits.h"

namespace embedded::remote {
namespace {

// How long ssh may take to end when nobody needs it any more, and when its end tells why it failed.
constexpr std::chrono::milliseconds kUsualEnd{2000};

std::unique_ptr<SshProcess> StartSsh(const KnownServer& server) {
    try {
        return std::make_unique<SshProcess>(SshArguments(server.place));
    } catch (const std::system_error& failure) {
        throw Refuse(Code::SshNotStarted, {server.name, failure.code().message()});
    }
}

bool IsSameLook(const Request& one, const Request& other) {
    return one.change == 0 && other.change == 0 && one.function == other.function &&
           one.ahead == other.ahead && one.arguments == other.arguments;
}

// The beginning of something that is no message, as far as it can be shown.
std::string Beginning(std::string_view bytes) {
    constexpr size_t kMost = 60;
    std::string text(bytes.substr(0, kMost));
    for (char& c : text) {
        if (c < ' ' || c > '~') c = '.';
    }
    return text;
}

}  // namespace

std::vector<std::string> SshArguments(const Place& place) {
    const auto seconds = [](std::chrono::seconds time) { return std::to_string(time.count()); };
    std::vector<std::string> words{"-T",
                                   "-o",
                                   "BatchMode=yes",
                                   "-o",
                                   "ConnectTimeout=" + seconds(kConnectTime),
                                   "-o",
                                   "ServerAliveInterval=5",
                                   "-o",
                                   "ServerAliveCountMax=3"};
    if (place.port.has_value()) words.insert(words.end(), {"-p", std::to_string(*place.port)});
    if (!place.user.empty()) words.insert(words.end(), {"-l", place.user});
    // Behind "--" nothing is an option; the command is the same for every server.
    words.insert(words.end(), {"--", place.host, "krvadm", "serve"});
    return words;
}

Connection::Connection(const KnownServer& server)
    : m_server(server), m_ssh(StartSsh(server)), m_reader(kLongestAnswer) {
    // When this fails, so does the first question, which finds out why.
    (void)m_ssh->Send(Framed(ToMessage(OwnHello())), kLongestSilence);
}

const Hello& Connection::GetGreeting() {
    if (m_greeting.has_value()) return *m_greeting;
    try {
        m_greeting = HelloFrom(NextMessage(kLongestGreeting));
    } catch (const ProtocolFailure& failure) {
        throw Refuse(Code::NotTheProtocol, {m_server.name, failure.what()});
    }
    Understand(*m_greeting);
    return *m_greeting;
}

void Connection::Understand(const Hello& greeting) const {
    if (greeting.highest < kLowestVersion) {
        throw Refuse(Code::OtherSideTooOld,
                     {m_server.name, Beginning(greeting.release), std::to_string(greeting.highest),
                      std::to_string(kLowestVersion)});
    }
    if (greeting.lowest > kHighestVersion) {
        throw Refuse(Code::ThisSideTooOld, {std::to_string(kHighestVersion), m_server.name,
                                            Beginning(greeting.release), std::to_string(greeting.lowest)});
    }
}

Answer Connection::Ask(Request request) {
    if (std::optional<Answer> answer = TakeEarly(request)) return std::move(*answer);
    Number(request);
    const Clock::time_point now = Clock::now();
    Send(ToMessage(request));
    Answer answer = Await(request.number);
    answer.asked = now;
    return answer;
}

void Connection::AskEarly(Request request) {
    Number(request);
    m_early = {std::move(request), Clock::now()};
    Send(ToMessage(m_early->request));
}

std::optional<Answer> Connection::TakeEarly(const Request& request) {
    if (!m_early.has_value()) return std::nullopt;
    const Early early = *std::exchange(m_early, std::nullopt);
    Answer answer = Await(early.request.number);
    answer.asked = early.time;
    if (!IsSameLook(early.request, request)) return std::nullopt;
    return answer;
}

Answer Connection::AskLast(Request request) {
    (void)TakeEarly(request);
    Number(request);
    Send(ToMessage(request));
    m_ssh->CloseInput();
    Answer answer = Await(request.number);
    (void)m_ssh->Finish(kUsualEnd);
    return answer;
}

void Connection::Send(const json& message) {
    const std::string frame = Framed(message);
    // The other side would end the connection.
    if (frame.size() > kLongestRequest) throw Refuse(Code::InvalidCall, {"a call", "its texts are too long"});
    const Transfer result = m_ssh->Send(frame, kLongestSilence);
    if (result == Transfer::Ended && m_greeting.has_value()) GiveUp(result);
    if (result == Transfer::TimedOut) GiveUp(result);
}

Answer Connection::Await(uint64_t number) {
    (void)GetGreeting();
    try {
        while (true) {
            Answer answer = AnswerFrom(NextMessage(kLongestSilence));
            if (answer.number == 0 && answer.failure.has_value())
                throw Refusal(answer.failure->code, answer.failure->text);
            if (answer.number != number) throw ProtocolFailure("an answer belongs to no question");
            if (!answer.isWorking) return answer;
        }
    } catch (const ProtocolFailure& failure) {
        throw Refuse(Code::NotTheProtocol, {m_server.name, failure.what()});
    }
}

json Connection::NextMessage(std::chrono::milliseconds limit) {
    while (true) {
        try {
            if (std::optional<json> message = m_reader.Next()) return std::move(*message);
        } catch (const ProtocolFailure& failure) {
            if (m_greeting.has_value()) throw;
            throw ProtocolFailure("it begins with \"" + Beginning(m_reader.GetRest()) + "\"");
        }
        std::string bytes;
        const Transfer result = m_ssh->Receive(bytes, limit);
        if (result != Transfer::Done) GiveUp(result);
        m_reader.Append(bytes);
    }
}

void Connection::GiveUp(Transfer result) {
    if (result == Transfer::TimedOut) {
        (void)m_ssh->Finish(std::chrono::milliseconds(0));
        const auto limit = m_greeting.has_value() ? kLongestSilence : kLongestGreeting;
        throw Refuse(Code::ServerSilent, {m_server.name, std::to_string(limit.count())});
    }
    const SshEnd end = m_ssh->Finish(kUsualEnd);
    if (m_greeting.has_value()) throw Refuse(Code::ConnectionLost, {m_server.name, ReasonOf(end)});
    if (m_reader.HasPartialMessage() && end.status == 0) {
        throw Refuse(Code::NotTheProtocol,
                     {m_server.name, "it begins with \"" + Beginning(m_reader.GetRest()) + "\""});
    }
    throw SshFailure(m_server, end);
}

}  // namespace embedded::remote
