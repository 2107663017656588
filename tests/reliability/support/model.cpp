#include "tests/reliability/support/model.h"

#include <algorithm>
#include <string_view>

#include "tests/reliability/support/model_library.h"
#include "tests/reliability/support/model_query.h"
#include "tests/reliability/support/model_walk.h"

namespace krvcmd::reliability {
namespace {

enum class Form { Nothing, Volumes, SlotSide, Slots, Magazine, Jukebox, Drive, Refused };

bool IsMultiple(const std::vector<Numbers>& list) {
    return list.size() > 1 || (list.size() == 1 && list.front().isRange);
}

Form FormOf(const CommandSpec& command) {
    const bool magazine = !command.magazines.empty();
    const bool slot = !command.slots.empty();
    const bool anySide = command.sideA || command.sideB;
    const bool oneSide = command.sideA != command.sideB;
    const bool inner = magazine || slot || anySide;
    const bool volumes = !command.volumes.empty();
    if (!command.HasJukebox()) {
        if (inner || command.drive) return Form::Refused;
        return volumes ? Form::Volumes : Form::Nothing;
    }
    if (volumes) return Form::Refused;
    if (command.drive) return inner ? Form::Refused : Form::Drive;
    if (anySide && (IsMultiple(command.slots) || IsMultiple(command.magazines))) return Form::Refused;
    if (slot && IsMultiple(command.magazines)) return Form::Refused;
    if (oneSide) return slot ? Form::SlotSide : Form::Refused;
    if (slot) return Form::Slots;
    return magazine ? Form::Magazine : Form::Jukebox;
}

bool IsKnownTo(std::string_view letters, std::string_view word) {
    return word.find_first_not_of(letters) == std::string_view::npos;
}

// Whether all column and sort letters are known.
bool HasGoodLetters(const CommandSpec& command) {
    constexpr std::string_view kColumns = "SDMIJNLmdsaCRPFnlvftxXzyYo";
    constexpr std::string_view kSort = "SDMIJNLmdsaCRPFnlvftxXzyYo+-";
    return IsKnownTo(kColumns, command.columns.value_or("")) && IsKnownTo(kSort, command.sort.value_or(""));
}

class Run {
  public:
    explicit Run(const CommandSpec& command)
        : m_command(command), m_form(FormOf(command)), m_query(m_library, command) {}

    Expected CarryOut() {
        Expected expected;
        expected.endsBeforeTheSession = m_form == Form::Refused;
        if (expected.endsBeforeTheSession) {
            expected.result = Result::System(22);
            return expected;
        }
        expected.quiet = m_command.quiet || m_command.notable;
        if (m_command.verb != Verb::Start) expected.result = m_library.Open(Server());
        if (expected.result.IsOk()) expected.result = Work();
        (void)m_library.Call(KrvSessionClose);
        expected.rows = m_query.Rows();
        return expected;
    }

  private:
    std::string Server() const { return m_command.server.empty() ? "." : m_command.server; }

    Result Work() {
        switch (m_command.verb) {
            case Verb::Start:
                return m_library.Call(KrvServiceStart, Server().c_str());
            case Verb::Stop:
                return m_library.Call(KrvServiceStop);
            case Verb::Restart:
                return m_library.Call(KrvServiceRestart);
            default:
                break;
        }
        if (m_form == Form::Nothing) return m_command.verb == Verb::Query ? Query() : Result();
        if (IsEmptyAddress()) return {};
        if (m_form != Form::Volumes || m_command.verb == Verb::Import) {
            if (Result result = ResolveJukebox(); !result.IsOk()) return result;
        }
        switch (m_command.verb) {
            case Verb::Query:
                return Query();
            case Verb::Enable:
            case Verb::Disable:
                return ForEntries(
                    [this](const Place& place, int32_t volume) { return Switch(place, volume); }, true);
            case Verb::Name:
                return ForEntries([this](const Place&, int32_t volume) { return Rename(volume); }, false);
            default:
                break;
        }
        if (m_form == Form::Drive) return {};
        return ForEntries([this](const Place& place, int32_t volume) { return WalkEntry(place, volume); },
                          false);
    }

    // The list with one entry for each of its numbers; null when there is a single entry.
    const std::vector<Numbers>* EntryNumbers() const {
        if (m_form == Form::Volumes) return &m_command.volumes;
        if (m_form == Form::Slots || m_form == Form::SlotSide) return &m_command.slots;
        return m_form == Form::Magazine ? &m_command.magazines : nullptr;
    }

    // Whether every range of the list is reversed.
    bool IsEmptyAddress() const {
        const std::vector<Numbers>* list = EntryNumbers();
        return list != nullptr && std::all_of(list->begin(), list->end(), [](const Numbers& numbers) {
                   return numbers.from > numbers.to;
               });
    }

    template <class Handle>
    Result ForEntries(Handle handle, bool stopsAtFailure) {
        const std::vector<Numbers>* list = EntryNumbers();
        Place place{m_jukebox, -1, -1, -1};
        if (!m_command.magazines.empty()) place.magazine = m_command.magazines.front().from;
        if (m_command.sideA != m_command.sideB) place.side = m_command.sideA ? 0 : 1;
        if (list == nullptr) return handle(place, -1);
        Result result;
        for (const Numbers& numbers : *list) {
            for (int64_t number = numbers.from; number <= numbers.to; ++number) {
                const auto entry = static_cast<int32_t>(number);
                if (m_form == Form::Magazine) place.magazine = entry;
                if (list == &m_command.slots) place.slot = entry;
                result = handle(place, entry);
                if (stopsAtFailure && result.code != 0) return result;
            }
        }
        return result;
    }

    Result ResolveJukebox() {
        if (m_command.jukeboxId && *m_command.jukeboxId >= 1) {
            JukeboxRecord record;
            m_jukebox = *m_command.jukeboxId;
            return m_library.Jukebox(m_jukebox, record);
        }
        uint32_t id = 0;
        while (!m_command.jukeboxName.empty()) {
            uint32_t next = 0;
            if (!m_library.Call(KrvGetNextJukebox, id, &next).IsOk()) break;
            if (static_cast<int32_t>(next) < 1) break;
            id = next;
            JukeboxRecord record;
            if (!m_library.Jukebox(static_cast<int32_t>(id), record).IsOk()) continue;
            if (std::string(record.name, strnlen(record.name, sizeof record.name)) != m_command.jukeboxName) {
                continue;
            }
            m_jukebox = static_cast<int32_t>(id);
            return {};
        }
        return Result::System(6);
    }

    Result Query() {
        if (m_command.object == Object::None || !HasGoodLetters(m_command)) return Result::System(22);
        return m_query.Gather(m_jukebox);
    }

    Result WalkEntry(const Place& place, int32_t volume) {
        const SlotWork work = [this](const Place& at) {
            if (m_command.verb == Verb::Scan) return ScanMedium(m_library, at);
            if (m_command.verb == Verb::Format) return FormatMedium(m_library, m_command, at);
            return MoveMedium(m_library, m_command.verb, at);
        };
        if (m_form == Form::Volumes) return WorkOnVolume(m_library, volume, work);
        const bool repeats = m_command.verb == Verb::Import || m_command.verb == Verb::Export;
        const WalkRules rules{repeats ? m_command.repeat.value_or(0) : 0, m_command.verb == Verb::Import};
        return WalkSlots(m_library, rules, place, work);
    }

    Result Switch(const Place& place, int32_t volume) {
        const bool enable = m_command.verb == Verb::Enable;
        const JukeboxKey jukebox{8, m_jukebox};
        const MagazineKey magazine{12, m_jukebox, place.magazine - 1};
        const DriveKey drive{12, m_jukebox, m_command.drive.value_or(0) - 1};
        switch (m_form) {
            case Form::Jukebox:
                return m_library.Call(enable ? KrvActivateJukebox : KrvDeactivateJukebox, &jukebox);
            case Form::Magazine:
                return m_library.Call(enable ? KrvActivateMagazine : KrvDeactivateMagazine, &magazine);
            case Form::Drive:
                return m_library.Call(enable ? KrvActivateDrive : KrvDeactivateDrive, &drive);
            case Form::Volumes:
                return SwitchVolume(m_library, enable, volume);
            default:
                return SwitchVolumesInSlot(m_library, enable, place);
        }
    }

    Result Rename(int32_t volume) {
        const std::string name = m_command.newName.value_or("");
        if (m_form == Form::Volumes) {
            return m_library.Call(KrvVolumeSetAspects, static_cast<uint32_t>(volume), name.c_str(), 1U);
        }
        if (m_form != Form::Jukebox) return Result::System(22);
        const JukeboxKey key{8, m_jukebox};
        return m_library.Call(KrvJukeboxSetName, &key, name.c_str());
    }

    ModelLibrary m_library;
    const CommandSpec& m_command;
    Form m_form;
    int32_t m_jukebox = -1;
    ModelQuery m_query;
};

}  // namespace

Expected CarryOut(const CommandSpec& command) {
    return Run(command).CarryOut();
}

}  // namespace krvcmd::reliability
