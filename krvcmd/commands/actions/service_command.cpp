#include "krvcmd/commands/actions/service_command.h"

#include "krvcmd/service/access/session.h"

namespace krvcmd {

Status CService::ParseOptions() {
    (void)HasParameter("start", m_start);
    (void)HasParameter("stop", m_stop);
    (void)HasParameter("restart", m_restart);
    const int given = int{m_start} + int{m_stop} + int{m_restart};
    return given == 1 ? Status() : Status::SystemError(os_code::kInvalidCommandLine);
}

Status CService::Execute() {
    Status status;
    if (!m_start) status = StartSession();
    const Status banner = StartOutput();
    if (status.IsOk()) status = RunGuarded(banner);
    // Also for "start", which has no session to close.
    CloseSession();
    return FirstError(status, banner);
}

Status CService::Run() {
    if (m_restart) return RestartService();
    if (m_stop) return StopService();
    if (m_start) return StartService(ServerName());
    return Status::SystemError(os_code::kInvalidCommandLine);
}

}  // namespace krvcmd
