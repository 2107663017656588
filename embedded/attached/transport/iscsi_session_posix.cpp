#include "embedded/attached/transport/iscsi_session.h"

#include <iscsi/iscsi.h>
#include <iscsi/scsi-lowlevel.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>

#include "embedded/attached/base/device_text.h"

namespace embedded::attached {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// Login status classes and details (RFC 7143, 11.13.5).
constexpr int kAuthenticationFailure = 0x0201;
constexpr int kAuthorizationFailure = 0x0202;
constexpr int kTargetNotFound = 0x0203;
constexpr int kTargetRemoved = 0x0204;

constexpr milliseconds kLogoutLimit{2'000};

std::string SecondsText(milliseconds limit) {
    const int64_t seconds = std::max<int64_t>(1, (limit.count() + 500) / 1000);
    return std::to_string(seconds) + (seconds == 1 ? " second" : " seconds");
}

// The name under which targets know this host.
std::string InitiatorName() {
    std::array<char, 256> host{};
    if (gethostname(host.data(), host.size() - 1) != 0) return "iqn.2026-11.local.krvcmd";
    std::string name = host.data();
    std::ranges::transform(name, name.begin(), [](char c) -> char {
        if (c >= 'A' && c <= 'Z') return static_cast<char>(c - 'A' + 'a');
        const bool isAllowed = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.';
        return isAllowed ? c : '-';
    });
    return "iqn.2026-11.local.krvcmd:" + name;
}

// The number in the last "(...)" of a message of libiscsi, which tells error numbers in no other way.
int NumberIn(const std::string& message) {
    const size_t open = message.rfind('(');
    int number = 0;
    if (open != std::string::npos) {
        std::from_chars(message.data() + open + 1, message.data() + message.size(), number);
    }
    return number;
}

Error OutOfMemory() {
    return {ErrorKind::Refused, "there is not enough memory for an iSCSI connection", {}};
}

// The numeric addresses of a host, with the port, as libiscsi wants them.
Result<std::vector<std::string>> Resolve(const IscsiPortal& portal) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* first = nullptr;
    const int failure = getaddrinfo(portal.host.c_str(), nullptr, &hints, &first);
    if (failure == EAI_AGAIN) {
        return Error{ErrorKind::Unreachable,
                     "the name server does not answer for " + portal.host + "; try again later",
                     {}};
    }
    if (failure != 0) {
        return Error{ErrorKind::NotFound, "there is no host called " + portal.host + "; check the name", {}};
    }
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(first, freeaddrinfo);
    std::vector<std::string> addresses;
    for (const addrinfo* info = first; info != nullptr; info = info->ai_next) {
        std::array<char, NI_MAXHOST> text{};
        if (getnameinfo(info->ai_addr, info->ai_addrlen, text.data(), text.size(), nullptr, 0,
                        NI_NUMERICHOST) != 0)
            continue;
        addresses.push_back(IscsiPortal{text.data(), portal.port}.GetText());
    }
    return addresses;
}

}  // namespace

// What a callback of libiscsi is told to fill; the answer to one request.
struct IscsiSession::Outcome {
    bool isDone = false;
    int status = SCSI_STATUS_CANCELLED;
    std::string message;               // libiscsi's own, of failures
    std::vector<IscsiTarget> targets;  // of ListTargets()

    static void Note(iscsi_context* context, int status, void* /*data*/, void* self) {
        auto& outcome = *static_cast<Outcome*>(self);
        // A connection tells of its end as well, after it has told that it is there.
        if (outcome.isDone) return;
        outcome.isDone = true;
        outcome.status = status;
        if (status != SCSI_STATUS_GOOD) outcome.message = iscsi_get_error(context);
    }

    static void NoteTargets(iscsi_context* context, int status, void* data, void* self) {
        auto& outcome = *static_cast<Outcome*>(self);
        Note(context, status, data, self);
        if (status != SCSI_STATUS_GOOD) return;
        for (auto* found = static_cast<iscsi_discovery_address*>(data); found != nullptr;
             found = found->next) {
            IscsiTarget target{found->target_name, {}};
            for (const auto* way = found->portals; way != nullptr; way = way->next) {
                const std::string text = way->portal;
                // Behind the comma stands the number of the portal group.
                const auto portal = ParseIscsiPortal(text.substr(0, text.find(',')));
                if (portal) target.portals.push_back(*portal);
            }
            outcome.targets.push_back(std::move(target));
        }
    }

    static void Ignore(iscsi_context* /*context*/, int /*status*/, void* /*data*/, void* /*self*/) {}
};

void IscsiSession::ContextDeleter::operator()(iscsi_context* context) const {
    iscsi_destroy_context(context);
}

IscsiSession::IscsiSession(IscsiPortal portal, std::string target, const IscsiLimits& limits)
    : m_portal(std::move(portal)), m_target(std::move(target)), m_limits(limits) {}

Result<std::unique_ptr<IscsiSession>> IscsiSession::Open(const IscsiPortal& portal, const std::string& target,
                                                         const IscsiLogin& login, const IscsiLimits& limits) {
    std::unique_ptr<IscsiSession> session(new IscsiSession(portal, target, limits));
    const Instant deadline = steady_clock::now() + limits.connect;
    const auto connected = session->Connect(deadline, login);
    if (!connected) return connected.GetError();
    const auto loggedIn = session->LogIn(deadline, login);
    if (!loggedIn) return loggedIn.GetError();
    return session;
}

IscsiSession::~IscsiSession() {
    if (IsConnected()) LogOut();
}

// What is asked of every context: the session's kind, the login, and no reconnecting of its own.
void IscsiSession::CreateContext(const IscsiLogin& login) {
    const std::string initiator = login.initiator.empty() ? InitiatorName() : login.initiator;
    m_context.reset(iscsi_create_context(initiator.c_str()));
    if (!m_context) return;
    const bool isDiscovery = m_target.empty();
    iscsi_set_session_type(m_context.get(), isDiscovery ? ISCSI_SESSION_DISCOVERY : ISCSI_SESSION_NORMAL);
    if (!isDiscovery) iscsi_set_targetname(m_context.get(), m_target.c_str());
    iscsi_set_header_digest(m_context.get(), ISCSI_HEADER_DIGEST_NONE_CRC32C);
    iscsi_set_noautoreconnect(m_context.get(), 1);
    if (!login.user.empty()) {
        iscsi_set_initiator_username_pwd(m_context.get(), login.user.c_str(), login.secret.c_str());
    }
}

Result<Nothing> IscsiSession::Connect(Instant deadline, const IscsiLogin& login) {
    const auto addresses = Resolve(m_portal);
    if (!addresses) return addresses.GetError();
    Result<Nothing> connected =
        Error{ErrorKind::NotFound, "the host " + m_portal.host + " has no address", {}};
    for (const std::string& address : *addresses) {
        CreateContext(login);
        if (!m_context) return OutOfMemory();
        connected = ConnectTo(address, deadline);
        if (connected) break;
    }
    return connected;
}

Result<Nothing> IscsiSession::ConnectTo(const std::string& numericPortal, Instant deadline) {
    const std::string portal = m_portal.GetText();
    m_connection = std::make_unique<Outcome>();
    Outcome& outcome = *m_connection;
    Ending ending = Ending::Lost;
    if (iscsi_connect_async(m_context.get(), numericPortal.c_str(), Outcome::Note, &outcome) == 0) {
        ending = Run(outcome, deadline, Pings::No);
    } else {
        outcome.message = iscsi_get_error(m_context.get());
    }
    if (ending == Ending::Done && outcome.status == SCSI_STATUS_GOOD) return Nothing();
    m_context.reset();
    if (ending == Ending::TimedOut) {
        return Error{ErrorKind::TimedOut,
                     portal + " does not answer within " + SecondsText(m_limits.connect) +
                         "; check the address and the network",
                     {}};
    }
    const int number = NumberIn(outcome.message);
    if (number == ECONNREFUSED) {
        return Error{ErrorKind::Unreachable,
                     portal + " refuses the connection; check the port, and that the target is running",
                     {}};
    }
    return Error{
        ErrorKind::Unreachable,
        portal + " cannot be reached" + (number != 0 ? std::string(": ") + std::strerror(number) : ""),
        {}};
}

Result<Nothing> IscsiSession::LogIn(Instant deadline, const IscsiLogin& login) {
    Outcome outcome;
    if (iscsi_login_async(m_context.get(), Outcome::Note, &outcome) != 0)
        return Drop(Ending::Lost, m_limits.connect);
    const Ending ending = Run(outcome, deadline, Pings::No);
    if (ending == Ending::Done && outcome.status == SCSI_STATUS_GOOD) return Nothing();
    const std::string message = outcome.message;
    const std::string redirected = Printable(iscsi_get_target_address(m_context.get()));
    Error dropped = Drop(ending, m_limits.connect);
    if (ending != Ending::Done) return dropped;
    if (outcome.status == SCSI_STATUS_REDIRECT) {
        return Error{
            ErrorKind::Unreachable, Peer() + " has moved to " + redirected + "; use that address", {}};
    }
    switch (NumberIn(message)) {
        case kAuthenticationFailure:
            return Error{ErrorKind::NotPermitted,
                         Peer() + (login.user.empty() ? " asks for a user and a secret"
                                                      : " does not accept the user or the secret"),
                         {}};
        case kAuthorizationFailure:
            return Error{ErrorKind::NotPermitted,
                         Peer() + " does not let this host in; allow its initiator name there",
                         {}};
        case kTargetNotFound:
        case kTargetRemoved:
            return Error{ErrorKind::NotFound,
                         "there is no target " + Printable(m_target) + " at " + m_portal.GetText() +
                             ", or not for this host",
                         {}};
        default:
            return Error{ErrorKind::Unreachable, Peer() + " refuses the login: " + Printable(message), {}};
    }
}

void IscsiSession::LogOut() {
    Outcome outcome;
    if (iscsi_logout_async(m_context.get(), Outcome::Note, &outcome) == 0) {
        (void)Run(outcome, steady_clock::now() + kLogoutLimit, Pings::No);
    }
    // While the outcome is still there to be filled.
    m_context.reset();
}

bool IscsiSession::IsClosedByPeer() const {
    char byte = 0;
    return recv(iscsi_get_fd(m_context.get()), &byte, 1, MSG_PEEK | MSG_DONTWAIT) == 0;
}

bool IscsiSession::IsConnected() const {
    return m_context && iscsi_get_fd(m_context.get()) >= 0 && !IsClosedByPeer();
}

// Serves the connection until the outcome is there, or until something speaks against waiting on.
IscsiSession::Ending IscsiSession::Run(const Outcome& outcome, Instant deadline, Pings pings) {
    iscsi_context* const context = m_context.get();
    Instant heard = steady_clock::now();
    Instant pinged = heard;
    while (!outcome.isDone) {
        const Instant now = steady_clock::now();
        if (now >= deadline) return Ending::TimedOut;
        Instant wake = deadline;
        if (pings == Pings::Yes) {
            if (now - heard >= m_limits.silence) return Ending::Silent;
            if (now - std::max(heard, pinged) >= m_limits.ping) {
                if (iscsi_nop_out_async(context, Outcome::Ignore, nullptr, 0, nullptr) != 0)
                    return Ending::Lost;
                pinged = now;
            }
            wake = std::min({wake, heard + m_limits.silence, std::max(heard, pinged) + m_limits.ping});
        }
        pollfd waiting{iscsi_get_fd(context), static_cast<short>(iscsi_which_events(context)), 0};
        if (waiting.fd < 0) return Ending::Lost;
        const auto pause = std::chrono::ceil<milliseconds>(wake - now).count();
        const int ready = poll(&waiting, 1, static_cast<int>(std::clamp<int64_t>(pause, 0, 60'000)));
        if (ready < 0 && errno != EINTR) return Ending::Lost;
        if (ready <= 0) continue;
        if ((waiting.revents & POLLIN) != 0) {
            if (IsClosedByPeer()) return Ending::Lost;
            heard = steady_clock::now();
        }
        if (iscsi_service(context, waiting.revents) != 0 && !outcome.isDone) return Ending::Lost;
    }
    return Ending::Done;
}

// Gives the connection up, which ends whatever the target still does for it.
Error IscsiSession::Drop(Ending ending, milliseconds limit) {
    m_context.reset();
    switch (ending) {
        case Ending::TimedOut:
            return {ErrorKind::TimedOut, Peer() + " did not answer within " + SecondsText(limit), {}};
        case Ending::Silent:
            return {ErrorKind::Lost,
                    Peer() + " has given no sign of life for " + SecondsText(m_limits.silence) +
                        "; check its power and the network",
                    {}};
        case Ending::Done:
        case Ending::Lost:
            break;
    }
    return {ErrorKind::Lost, "the connection to " + Peer() + " is lost; check its power and the network", {}};
}

Result<Completion> IscsiSession::Send(uint16_t lun, const Command& command) {
    std::ranges::fill(command.dataIn, uint8_t{0});
    if (!IsConnected()) return Drop(Ending::Lost, command.timeLimit);
    int direction = SCSI_XFER_NONE;
    if (!command.dataIn.empty()) direction = SCSI_XFER_READ;
    if (!command.dataOut.empty()) direction = SCSI_XFER_WRITE;
    const size_t length = std::max(command.dataIn.size(), command.dataOut.size());
    // libiscsi copies the command block and reads what is sent, but takes pointers to what it could change.
    auto* const cdb = const_cast<uint8_t*>(command.cdb.data());
    auto* const sent = const_cast<uint8_t*>(command.dataOut.data());
    const std::unique_ptr<scsi_task, decltype(&scsi_free_scsi_task)> task(
        scsi_create_task(static_cast<int>(command.cdb.size()), cdb, direction, static_cast<int>(length)),
        scsi_free_scsi_task);
    if (!task) return OutOfMemory();
    if (direction == SCSI_XFER_READ) {
        scsi_task_add_data_in_buffer(task.get(), static_cast<int>(length), command.dataIn.data());
    } else if (direction == SCSI_XFER_WRITE) {
        scsi_task_add_data_out_buffer(task.get(), static_cast<int>(length), sent);
    }
    Outcome outcome;
    Ending ending = Ending::Lost;
    if (iscsi_scsi_command_async(m_context.get(), lun, task.get(), Outcome::Note, nullptr, &outcome) == 0) {
        ending = Run(outcome, steady_clock::now() + command.timeLimit, Pings::Yes);
    }
    constexpr int kHighestStatus = 0xFF;
    if (ending != Ending::Done || outcome.status > kHighestStatus) return Drop(ending, command.timeLimit);
    Completion completion;
    completion.status = static_cast<uint8_t>(outcome.status);
    const size_t residual = task->residual_status == SCSI_RESIDUAL_UNDERFLOW ? task->residual : 0;
    completion.transferred = length - std::min(residual, length);
    // The sense data have their length in front of them.
    if (outcome.status == SCSI_STATUS_CHECK_CONDITION && task->datain.size > 2) {
        BigEndianReader reader(Bytes(task->datain.data, static_cast<size_t>(task->datain.size)));
        const Bytes sense = reader.GetBytes(2, reader.Get16(0));
        completion.sense.assign(sense.begin(), sense.end());
    }
    return completion;
}

Result<std::vector<IscsiTarget>> IscsiSession::ListTargets() {
    if (!IsConnected()) return Drop(Ending::Lost, m_limits.connect);
    Outcome outcome;
    Ending ending = Ending::Lost;
    if (iscsi_discovery_async(m_context.get(), Outcome::NoteTargets, &outcome) == 0) {
        ending = Run(outcome, steady_clock::now() + m_limits.connect, Pings::No);
    }
    if (ending == Ending::Done && outcome.status == SCSI_STATUS_GOOD) return outcome.targets;
    return Drop(ending, m_limits.connect);
}

}  // namespace embedded::attached
