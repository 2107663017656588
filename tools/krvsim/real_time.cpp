#include "embedded/simulated/real_time.h"

#include "embedded/farms/servers.h"
#include "embedded/store/statement.h"
#include "tools/common/command_line.h"
#include "tools/journal/call_times.h"
#include "tools/krvsim/tool.h"

namespace embedded::tools {
namespace {

enum class RealTimeTask { Show, SwitchOn, SwitchOff };

struct RealTimeOptions {
    std::string server = ".";
    RealTimeTask task = RealTimeTask::Show;
    std::string profile;
};

void RealTime(const RealTimeOptions& options, const Streams& streams) {
    const std::unique_ptr<Database> database = OpenSimulatedServer(options.server);
    if (options.task != RealTimeTask::Show) {
        const std::string profile =
            options.task == RealTimeTask::SwitchOn ? RealTimeProfile(options.profile) : std::string();
        InTransaction(*database, [&] { SetRealTime(*database, profile); });
    }
    const bool isOn = !ReadRealTime(*database).empty();
    streams.out << "Calls to server \"" << options.server << "\" take "
                << (isOn ? "as long as on real jukeboxes" : "no time") << ".\n";
}

}  // namespace

void AddRealTime(CommandLine& line) {
    const auto [app, options] =
        line.Add(line.GetTool(), "real-time", "Let calls take as long as on real jukeboxes.", RealTime);
    AddServerOption(app, options.server);
    const auto addTask = [&command = app, &chosen = options](const char* name, RealTimeTask task,
                                                             const char* description) {
        return command.add_flag_callback(
            name, [&chosen, task] { chosen.task = task; }, description);
    };
    CLI::Option* on =
        addTask("--on", RealTimeTask::SwitchOn, "calls that move media or work on them take their time");
    addTask("--off", RealTimeTask::SwitchOff, "calls answer at once")->excludes(on);
    app.add_option("--profile", options.profile,
                   "durations of the jukeboxes: small, large or a file; by default as many slots demand")
        ->needs(on);
}

}  // namespace embedded::tools
