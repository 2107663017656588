#include "krvcmd/commands/actions/service_command.h"

#include "krvcmd/service/access/session.h"

namespace krvcmd {

Status CService::ParseOptions() {
    m_start = HasParameter("start");
    m_stop = HasParameter("stop");
    m_restart = HasParameter("restart");
    const int given = int{m_start} + int{m_stop} + int{m_restart};
    return given == 1 ? Status() : Status::SystemError(os_code::kInvalidCommandLine);
}

Status CService::Execute() {
    return RunAndClose(m_start ? Status() : StartSession());
}

Status CService::Run() {
    if (m_restart) return RestartService();
    if (m_stop) return StopService();
    if (m_start) return StartService(ServerName());
    return Status::SystemError(os_code::kInvalidCommandLine);  // GCOVR_EXCL_LINE: ParseOptions refuses this
}

}  // namespace krvcmd
