#include "embedded/sessions/observer.h"

#include <optional>
#include <thread>

#include "embedded/model/refusal.h"
#include "embedded/simulated/faults.h"

namespace embedded {
namespace {

// A call from its start to its entry in the journal.
class Observation {
  public:
    Observation(Connection& connection, uint64_t session, const CallInfo& call)
        : m_connection(connection), m_start(std::chrono::steady_clock::now()) {
        m_entry.call = call;
        m_entry.argument = call.item.text;
        m_entry.call.item.text = "";
        m_entry.session = session;
        m_entry.time = std::chrono::system_clock::now();
    }

    void ApplyFaultsOfFarm(const CallInfo& call) { Apply(FindEffect(call)); }

    // The same, but a fault that cannot be counted does not happen.
    void ApplyFaultsThatCount(const CallInfo& call) {
        FaultEffect effect;
        try {
            effect = FindEffect(call);
        } catch (const Refusal& refusal) {
            if (!IsWriteFailure(refusal)) throw;
            MarkUnrecordedCalls(m_connection.GetDatabase());
        }
        Apply(effect);
    }

    JournalEntry Succeeded(ChangeMade change) {
        m_entry.change = std::move(change.words);
        m_entry.medium = change.medium;
        return Ended();
    }

    JournalEntry Failed(const Refusal& refusal) {
        m_entry.change.clear();
        m_entry.medium.reset();
        m_entry.succeeded = false;
        m_entry.code = refusal.GetCode();
        m_entry.text = refusal.GetText();
        return Ended();
    }

  private:
    FaultEffect FindEffect(const CallInfo& call) {
        FaultEffect effect;
        if (m_connection.GetState().faultCount == 0) return effect;
        m_connection.RefreshAgain();
        if (!HasFaults(m_connection.GetView().database, call.function)) return effect;
        m_connection.Change([&](Database& database) { effect = ApplyFaults(database, call); });
        return effect;
    }

    void Apply(const FaultEffect& effect) {
        if (effect.delay.count() > 0) {
            std::this_thread::sleep_for(effect.delay);
            m_connection.StartWaiting();
        }
        if (effect.refusal.has_value()) throw Refusal(*effect.refusal);
    }

    JournalEntry Ended() {
        m_entry.duration = std::chrono::steady_clock::now() - m_start;
        return m_entry;
    }

    Connection& m_connection;
    std::chrono::steady_clock::time_point m_start;
    JournalEntry m_entry;
};

}  // namespace

void ObserveLook(Connection& connection, CallRecorder& recorder, uint64_t session, const CallInfo& call,
                 const Look& look) {
    Observation observation(connection, session, call);
    try {
        observation.ApplyFaultsThatCount(call);
        connection.RefreshAgain();
        look(connection.GetView());
    } catch (const Refusal& refusal) {
        recorder.Keep(observation.Failed(refusal));
        recorder.WriteWhenDue();
        throw;
    }
    recorder.Keep(observation.Succeeded(std::string()));
    recorder.WriteWhenDue();
}

void ObserveChange(Connection& connection, CallRecorder& recorder, uint64_t session, const CallInfo& call,
                   const Change& change, const Preparation& prepare) {
    Observation observation(connection, session, call);
    try {
        observation.ApplyFaultsOfFarm(call);
        if (prepare) {
            prepare();
            connection.StartWaiting();
        }
        connection.Change(
            [&](Database& database) { recorder.WriteIn(database, observation.Succeeded(change(database))); });
        recorder.Forget();
    } catch (const Refusal& refusal) {
        recorder.Keep(observation.Failed(refusal));
        recorder.Write();
        throw;
    }
}

}  // namespace embedded
