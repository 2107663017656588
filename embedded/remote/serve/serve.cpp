#include "embedded/remote/serve/serve.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "embedded/farms/servers.h"
#include "embedded/mechanics/robot_lock.h"
#include "embedded/model/refusal.h"
#include "embedded/remote/protocol/fields.h"
#include "embedded/remote/protocol/frame.h"
#include "embedded/remote/protocol/limits.h"
#include "embedded/remote/serve/byte_streams.h"
#include "embedded/remote/serve/calls.h"
#include "embedded/store/change_number.h"

namespace embedded::remote {
namespace {

// The way to the caller. While a call is being made, a second thread tells the caller that it goes on.
class Output {
  public:
    explicit Output(int descriptor) : m_descriptor(descriptor), m_signs([this] { GiveSignsOfLife(); }) {}
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output() {
        {
            const std::scoped_lock lock(m_mutex);
            m_isEnding = true;
        }
        m_changed.notify_all();
        m_signs.join();
    }

    void Send(const json& message) {
        const std::scoped_lock lock(m_mutex);
        Write(Framed(message));
    }

    void BeginCall(uint64_t number) {
        const std::scoped_lock lock(m_mutex);
        m_call = number;
        m_isBusy = true;
    }

    void EndCall(Answer answer) {
        const std::string frame = Framed(ToMessage(std::move(answer)));
        const std::scoped_lock lock(m_mutex);
        m_isBusy = false;
        Write(frame);
    }

  private:
    void GiveSignsOfLife() {
        std::unique_lock lock(m_mutex);
        while (!m_isEnding) {
            const auto result = m_changed.wait_for(lock, kSignOfLife);
            if (result != std::cv_status::timeout || !m_isBusy || m_isEnding) continue;
            Answer sign;
            sign.number = m_call;
            sign.isWorking = true;
            try {
                Write(Framed(ToMessage(std::move(sign))));
            } catch (const std::system_error&) {
                return;  // the answer of the call will fail too
            }
        }
    }

    void Write(std::string_view bytes) const { WriteAll(m_descriptor, bytes); }

    int m_descriptor;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    uint64_t m_call = 0;
    bool m_isBusy = false;
    bool m_isEnding = false;
    std::thread m_signs;
};

// The text that names a caller.
std::string TakeCaller(FieldReader& fields) {
    constexpr size_t kLongest = 64;
    std::string caller = fields.Text();
    if (caller.empty() || caller.size() > kLongest)
        throw ProtocolFailure("the caller's own name is not valid");
    return caller;
}

class Server {
  public:
    explicit Server(ServeOptions options) : m_options(std::move(options)) {}

    Answer Handle(const Request& request) {
        Answer answer;
        answer.number = request.number;
        try {
            if (request.function == "KrvSessionCreate") {
                Open(request);
            } else if (request.function == "KrvServiceStart") {
                Start(request);
            } else if (request.function == kSettle) {
                answer.result.push_back(Settle(request));
            } else {
                return Call(request);
            }
        } catch (const Refusal& refusal) {
            answer.failure = {refusal.GetCode(), refusal.GetText()};
        }
        return answer;
    }

    // Uses the time until the next request comes.
    void PrepareNext() {
        if (m_session != nullptr) PrepareNextRow(*m_session, m_rows);
    }

  private:
    bool MayChange() const { return m_options.rights == ServeOptions::Rights::All; }

    // The name of a server that the caller may have; nothing named means the one that is shown, or the
    // machine's own.
    std::string Allowed(const std::string& asked) const {
        if (m_options.only.has_value()) {
            if (asked.empty() || asked == *m_options.only) return *m_options.only;
            throw Refuse(Code::UnknownServer, {asked});
        }
        return asked.empty() ? "." : asked;
    }

    void RequireRights(const std::string& server) const {
        if (!MayChange()) throw Refuse(Code::ServedReadOnly, {server});
    }

    // Opening a demonstration server would make its farm.
    void RequireFarm(const std::string& server) const {
        if (MayChange()) return;
        const std::vector<std::string> servers = ListServers();
        if (std::ranges::find(servers, server) == servers.end()) throw Refuse(Code::UnknownServer, {server});
    }

    void Open(const Request& request) {
        const json arguments(request.arguments);
        FieldReader fields(arguments);
        const std::string asked = fields.Text();
        m_client = TakeCaller(fields);
        if (m_session != nullptr) throw ProtocolFailure("a second session is opened");
        m_server = Allowed(asked);
        RequireFarm(m_server);
        m_session = std::make_unique<LocalSession>(m_server, SessionHandle(1));
    }

    void Start(const Request& request) const {
        const json arguments(request.arguments);
        FieldReader fields(arguments);
        const std::string server = Allowed(fields.Text());
        RequireRights(server);
        std::optional<ChangeNumber> number;
        if (!fields.IsAtEnd()) number = {TakeCaller(fields), request.change};
        StartServer(server, {"KrvServiceStart", WithText({}, server.c_str())}, number);
    }

    bool Settle(const Request& request) const {
        const json arguments(request.arguments);
        FieldReader fields(arguments);
        const std::string server = Allowed(fields.Text());
        const std::string client = TakeCaller(fields);
        const auto number = fields.Number<uint64_t>();
        RequireRights(server);
        const std::unique_ptr<Database> database = OpenServer(server);
        const auto robots = StopRobots(*database);  // a change in progress is recorded first
        database->StartWaiting();
        return SettleChange(*database, {client, number});
    }

    Answer Call(const Request& request) {
        if (m_session == nullptr) throw Refuse(Code::NoSession, {"0"});
        if (IsChange(request.function)) {
            RequireRights(m_server);
            if (request.change > 0) m_session->GetSession().NumberNextChange({m_client, request.change});
        }
        return MakeCall(*m_session, m_rows, request);
    }

    ServeOptions m_options;
    std::string m_client;
    std::string m_server;
    std::unique_ptr<LocalSession> m_session;
    VolumeRows m_rows;
};

// Nothing at the end of the input.
std::optional<json> NextMessage(int input, FrameReader& reader) {
    while (true) {
        if (std::optional<json> message = reader.Next()) return message;
        if (!ReadMore(input, reader)) return std::nullopt;
    }
}

void Answers(int input, Output& output, const ServeOptions& options) {
    FrameReader reader(kLongestRequest);
    const std::optional<json> hello = NextMessage(input, reader);
    if (!hello.has_value()) return;
    (void)HelloFrom(*hello);  // the caller judges whether both understand each other
    Server server(options);
    while (const std::optional<json> message = NextMessage(input, reader)) {
        const Request request = RequestFrom(*message);
        output.BeginCall(request.number);
        output.EndCall(server.Handle(request));
        server.PrepareNext();
    }
}

}  // namespace

void Serve(const ServeOptions& options) {
    PrepareStreams();
    Output out(kStandardOutput);
    out.Send(ToMessage(OwnHello()));
    try {
        Answers(kStandardInput, out, options);
    } catch (const ProtocolFailure& failure) {
        Answer answer;
        answer.failure = {static_cast<int32_t>(Code::NotTheProtocol),
                          Refuse(Code::NotTheProtocol, {"the caller", failure.what()}).GetText()};
        out.EndCall(std::move(answer));
        throw;
    }
}

}  // namespace embedded::remote
