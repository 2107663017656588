#include "embedded/catalogue/service_state.h"

#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr Sql kServiceState = R"sql(
    SELECT running, epoch, journal_limit, fault_count, real_time <> '', kind FROM server WHERE id = 1
)sql";

constexpr Sql kStart = R"sql(UPDATE server SET running = 1, epoch = epoch + 1 WHERE id = 1)sql";
constexpr Sql kStop = R"sql(UPDATE server SET running = 0 WHERE id = 1)sql";

}  // namespace

ServiceState ReadServiceState(Database& database) {
    ServiceState state;
    Statement row(database, kServiceState);
    if (row.Next())
        row >> state.isRunning >> state.epoch >> state.journalLimit >> state.faultCount >> state.isRealTime >>
            state.isAttached;
    return state;
}

std::string StartService(Database& database) {
    if (ReadServiceState(database).isRunning) return {};
    Run(database, kStart);
    return "service started";
}

std::string StopService(Database& database) {
    if (!ReadServiceState(database).isRunning) return {};
    Run(database, kStop);
    return "service stopped";
}

std::string RestartService(Database& database) {
    Run(database, kStart);
    return "service restarted";
}

}  // namespace embedded
