#include "embedded/sessions/session.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

#include "embedded/catalogue/service_state.h"
#include "embedded/farms/servers.h"
#include "embedded/mechanics/jukebox_module.h"
#include "embedded/model/refusal.h"
#include "embedded/platform/platform.h"
#include "embedded/simulated/mechanics/simulated_mechanics.h"
#include "embedded/simulated/real_time.h"

namespace embedded {
namespace {

std::unique_ptr<Database> Open(const std::string& server) {
    std::unique_ptr<Database> database = OpenServer(server);
    // The file's time tells when the server was last used; looks leave no other trace.
    std::error_code ignored;
    std::filesystem::last_write_time(database->GetFile(), std::filesystem::file_time_type::clock::now(),
                                     ignored);
    return database;
}

}  // namespace

Session::Session(const std::string& server, uint64_t handle)
    : m_server(server), m_handle(handle), m_connection(Open(server)) {
    m_epoch = m_connection.Refresh().epoch;
    if (m_connection.GetState().isAttached && m_connection.GetState().isRunning) {
        m_attached = Attach();
        m_attached->LookAtAll();
    }
    Read({"KrvSessionCreate", WithText({}, m_server.c_str())}, [](const View&) {});
}

// The farm's looks and changes go through the session's connection.
std::unique_ptr<AttachedFarm> Session::Attach() {
    FarmAccess access;
    access.file = m_connection.GetDatabase().GetFile();
    access.look = [this](const FarmAccess::Work& work) {
        m_connection.Refresh();
        work(m_connection.GetView().database);
    };
    access.change = [this](const FarmAccess::Work& work) {
        m_connection.StartWaiting();
        m_connection.Change(work);
    };
    return std::make_unique<AttachedFarm>(std::move(access), ModuleOpener(m_server));
}

void Session::RequireRunning() const {
    const ServiceState& state = m_connection.GetState();
    if (!state.isRunning) throw Refuse(Code::ServiceStopped, {m_server});
    if (state.epoch != m_epoch) throw Refuse(Code::SessionEnded, {m_server});
}

void Session::Write(const CallInfo& call, const Change& change) {
    const std::scoped_lock lock(m_mutex);
    std::optional<std::chrono::system_clock::time_point> end;
    const std::optional<ChangeNumber> number = std::exchange(m_nextNumber, std::nullopt);
    const auto work = [&](Database& database) {
        RequireRunning();
        ChangeMade made = change(database);
        if (made.medium.has_value() && m_connection.GetState().isRealTime) {
            end = OccupyJukebox(database, call, *made.medium);
        }
        if (number.has_value()) KeepChangeNumber(database, *number);
        return made;
    };
    const bool isObserved = IsObserved(m_connection.Refresh());
    m_connection.StartWaiting();
    if (isObserved) {
        ObserveChange(m_connection, m_recorder, m_handle, call, work);
    } else {
        m_connection.Change([&](Database& database) { (void)work(database); });
    }
    if (end.has_value()) std::this_thread::sleep_until(*end);
}

void Session::Operate(const CallInfo& call, const Preparing& prepare) {
    std::optional<Refusal> refusal;
    const auto take = [&refusal](CallOutcome outcome) {
        refusal = std::move(outcome.refusal);
        return std::move(outcome.change);
    };
    if (m_attached == nullptr) {
        Write(call, [&](Database& database) { return take(RunSimulated(database, *prepare())); });
    } else {
        OperateAttached(call, prepare, take);
    }
    if (refusal.has_value()) throw Refusal(*refusal);
}

void Session::OperateAttached(const CallInfo& call, const Preparing& prepare, const Taking& take) {
    const std::scoped_lock lock(m_mutex);
    const std::optional<ChangeNumber> number = std::exchange(m_nextNumber, std::nullopt);
    m_attached->SetPrecondition([number](Database& database) {
        if (number.has_value()) RequireNewNumber(database, *number);
    });
    Recording record;
    const auto move = [&] {
        m_connection.Refresh();
        RequireRunning();
        record = m_attached->Do(prepare());
    };
    // What has been moved is recorded even when the service was stopped meanwhile.
    const auto finish = [&](Database& database) {
        ChangeMade made = take(record(database));
        if (number.has_value()) KeepChangeNumber(database, *number);
        return made;
    };
    m_connection.Refresh();
    m_connection.StartWaiting();
    ObserveChange(m_connection, m_recorder, m_handle, call, finish, move);
}

void Session::Close(const CallInfo& call) {
    const std::scoped_lock lock(m_mutex);
    // A caller that has waited in vain for ten seconds does not wait for the journal too.
    if (m_connection.GetDatabase().HasGivenUp() || m_connection.GetDatabase().IsReadOnly()) return;
    const bool isObserved = IsObserved(m_connection.Refresh());
    m_connection.StartWaiting();
    if (isObserved) ObserveLook(m_connection, m_recorder, m_handle, call, [](const View&) {});
    m_recorder.Write();
}

KrvSession SessionHandle(uint32_t number) {
    return KrvSession{ProcessId()} << 32U | number;
}

void StartServer(const std::string& server, const CallInfo& call, const std::optional<ChangeNumber>& number) {
    Connection connection(Open(server));
    const auto work = [&number](Database& database) {
        ChangeMade made = StartService(database);
        if (number.has_value()) KeepChangeNumber(database, *number);
        return made;
    };
    if (IsObserved(connection.Refresh())) {
        CallRecorder recorder(connection);
        ObserveChange(connection, recorder, 0, call, work);
    } else {
        connection.Change([&work](Database& database) { (void)work(database); });
    }
}

}  // namespace embedded
