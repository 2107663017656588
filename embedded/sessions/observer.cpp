#include "embedded/sessions/observer.h"

#include <optional>
#include <thread>

#include "embedded/journal/journal.h"
#include "embedded/model/refusal.h"
#include "embedded/simulated/faults.h"

namespace embedded {
namespace {

class Observation {
  public:
    Observation(Connection& connection, uint64_t session, const CallInfo& call)
        : m_connection(connection), m_start(std::chrono::steady_clock::now()) {
        m_entry.call = call;
        m_entry.session = session;
        m_entry.time = std::chrono::system_clock::now();
    }

    void Run(const std::function<void()>& work) {
        std::optional<Refusal> refusal;
        try {
            ApplyFaultsOfFarm();
            work();
        } catch (const Refusal& caught) {
            refusal = caught;
            m_entry.succeeded = false;
            m_entry.code = caught.GetCode();
            m_entry.text = caught.GetText();
            m_entry.change.clear();
        }
        if (!m_isWritten && m_connection.GetState().journalLimit > 0) {
            m_connection.Change([&](Database& database) { Write(database); });
        }
        if (refusal.has_value()) throw Refusal(*refusal);
    }

    // Inside the transaction of the change.
    void WriteWith(Database& database, std::string change) {
        m_entry.change = std::move(change);
        Write(database);
        m_isWritten = true;
    }

  private:
    void ApplyFaultsOfFarm() {
        if (m_connection.GetState().faultCount == 0) return;
        m_connection.RefreshAgain();
        if (!HasFaults(m_connection.GetView().database, m_entry.call.function)) return;
        FaultEffect effect;
        m_connection.Change([&](Database& database) { effect = ApplyFaults(database, m_entry.call); });
        if (effect.delay.count() > 0) {
            std::this_thread::sleep_for(effect.delay);
            m_connection.StartWaiting();
        }
        if (effect.refusal.has_value()) throw Refusal(*effect.refusal);
    }

    void Write(Database& database) {
        m_entry.duration = std::chrono::steady_clock::now() - m_start;
        const int64_t limit = m_connection.GetState().journalLimit;
        if (limit > 0) WriteJournal(database, limit, m_entry);
    }

    Connection& m_connection;
    std::chrono::steady_clock::time_point m_start;
    JournalEntry m_entry;
    bool m_isWritten = false;
};

}  // namespace

void ObserveLook(Connection& connection, uint64_t session, const CallInfo& call, const Look& look) {
    Observation observation(connection, session, call);
    observation.Run([&] {
        connection.RefreshAgain();
        look(connection.GetView());
    });
}

void ObserveChange(Connection& connection, uint64_t session, const CallInfo& call, const Change& change) {
    Observation observation(connection, session, call);
    observation.Run([&] {
        connection.Change([&](Database& database) { observation.WriteWith(database, change(database)); });
    });
}

}  // namespace embedded
