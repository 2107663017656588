#include "krvcmd/commands/base/command.h"

#include <utility>

#include "krvcmd/frontend/base/memory_guard.h"
#include "krvcmd/frontend/report/result_line.h"
#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/access/session.h"
#include "krvcmd/service/interrupt/interrupt.h"

namespace krvcmd {
namespace {

// Closes the session at the end of its scope.
class SessionCloser {
  public:
    SessionCloser() = default;
    SessionCloser(const SessionCloser&) = delete;
    SessionCloser& operator=(const SessionCloser&) = delete;
    ~SessionCloser() { CloseSession(); }
};

}  // namespace

Status CCommand::ParseOptions() {
    return {};
}

Status CCommand::Run() {
    return {};
}

void CCommand::Validate() {}

void CCommand::AfterParse() {
    Validate();
}

Status CCommand::Initialize(const std::vector<Parameter>& options, const std::vector<Parameter>& parameters,
                            Ostrel::UI::Console::COutputObject& writer) {
    m_options = &options;
    m_parameters = &parameters;
    m_writer = &writer;
    Status status = ParseCommonOptions();
    if (status.IsOk()) status = ReadItemAddress(parameters, m_addressKind, m_addresses);
    if (status.IsOk()) status = ParseOptions();
    if (status.IsOk()) AfterParse();
    return status;
}

Status CCommand::ParseCommonOptions() {
    Status status;
    for (const Parameter& option : *m_options) {
        if (option.node->keyword == "quiet") {
            m_quiet = true;
        } else if (option.node->keyword == "server") {
            m_hasServer = true;
            m_serverName = option.text;
        } else if (option.node->keyword == "yes") {
            m_yes = true;
        } else {
            status = Status::SystemError(os_code::kInvalidCommandLine);
        }
    }
    return status;
}

Status CCommand::Execute() {
    return RunAndClose(StartSession());
}

Status CCommand::RunAndClose(Status started) {
    const SessionCloser closer;
    // Also after a failed session attempt: the banner stands above the command's output and any error
    // message.
    const Status banner = StartOutput();
    const Status result = started.IsOk() ? RunGuarded(banner) : std::move(started);
    return FirstError(result, banner);
}

Status CCommand::StartSession() const {
    return GuardMemory([this] { return OpenSession(ServerName()); });
}

Status CCommand::StartOutput() const {
    BannerFlags& flags = GetBannerFlags();
    if (m_quiet) flags.quiet = true;
    return GuardMemory([&] { return PrintBanner(flags, Writer()); });
}

Status CCommand::RunGuarded(const Status& banner) {
    if (banner.Code() == os_code::kOutOfMemory) return banner;
    Status status = GuardMemory([this] { return Run(); });
    if (InterruptRequested()) return Status::SystemError(os_code::kInterrupted);
    return status;
}

Status CCommand::ResolveAddressedJukebox(int32_t& jukeboxId) const {
    jukeboxId = -1;
    if (m_addressKind == AddressKind::Volumes) return {};
    return ResolveJukebox(m_addresses.Front(), jukeboxId);
}

Status CCommand::GetIntParameter(std::string_view name, int32_t& value) const {
    Status status = Status::SystemError(os_code::kNoSuchItem);
    for (const Parameter& parameter : Parameters()) {
        if (parameter.node->keyword != name || parameter.ranges.empty()) continue;
        value = parameter.ranges.front().from;
        status = {};
    }
    return status;
}

bool CCommand::HasParameter(std::string_view name) const {
    return FindParameter(Parameters(), name) != nullptr;
}

Status CCommand::GetStringParameter(std::string_view name, std::string& value, bool& given) const {
    value.clear();
    given = false;
    for (const Parameter& parameter : Parameters()) {
        const bool isFreeText = name.empty() && parameter.node->IsPlaceholder();
        if (!isFreeText && parameter.node->keyword != name) continue;
        value = parameter.text;
        given = true;
    }
    return given ? Status() : Status::SystemError(os_code::kNoSuchItem);
}

}  // namespace krvcmd
