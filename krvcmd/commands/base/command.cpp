#include "krvcmd/commands/base/command.h"

#include "krvcmd/frontend/base/memory_guard.h"
#include "krvcmd/frontend/report/result_line.h"
#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/access/session.h"
#include "krvcmd/service/interrupt/interrupt.h"

namespace krvcmd {

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

Status CCommand::Initialize(const std::vector<Parameter>& options, const std::vector<Parameter>& parameters) {
    m_options = &options;
    m_parameters = &parameters;
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
    Status status = StartSession();
    // After the session attempt, whatever its outcome: the banner stands above the command's own
    // output and above any error message.
    const Status banner = StartOutput();
    if (status.IsOk()) status = RunGuarded(banner);
    CloseSession();
    return FirstError(status, banner);
}

Status CCommand::StartSession() const {
    return GuardMemory([this] { return OpenSession(ServerName()); });
}

Status CCommand::StartOutput() const {
    BannerFlags& flags = GetBannerFlags();
    if (m_quiet) flags.quiet = true;
    return GuardMemory([&flags] { return PrintBanner(flags); });
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

Status CCommand::HasParameter(std::string_view name, bool& present) const {
    present = FindParameter(Parameters(), name) != nullptr;
    return present ? Status() : Status::SystemError(os_code::kNoSuchItem);
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
