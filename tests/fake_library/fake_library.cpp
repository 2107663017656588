#include "tests/fake_library/fake_library.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <limits>
#include <thread>
#include <utility>

namespace krvfake {
namespace {

constexpr KrvSession kFirstSession = 0x4B52'5600'0000'0001;

}  // namespace

Occurrence Occurrence::From(int n) {
    return {n, std::numeric_limits<int>::max()};
}

FakeLibrary& FakeLibrary::Instance() {
    struct Prepared : FakeLibrary {
        Prepared() { Prepare(*this); }
    };
    static Prepared library;
    return library;
}

FakeLibrary::FakeLibrary() {
    Reset();
}

void FakeLibrary::Reset() {
    m_farm.Clear();
    m_answers = std::make_unique<FarmAnswers>(m_farm);
    m_entries.clear();
    m_calls.clear();
    m_sink = [this](const std::string& line) { m_calls.push_back(line); };
    m_sessionIsOpen = false;
}

void FakeLibrary::Generate(const GeneratedSize& size) {
    m_answers = std::make_unique<GeneratedAnswers>(size);
}

void FakeLibrary::FailCall(std::string_view function, Occurrence occurrence, Failure failure,
                           Outputs outputs) {
    m_entries.push_back({std::string(function), occurrence, true, std::move(failure), outputs, 0, 0});
}

void FakeLibrary::DelayCall(std::string_view function, Occurrence occurrence, uint32_t milliseconds) {
    m_entries.push_back({std::string(function), occurrence, false, {}, Outputs::LeftAlone, milliseconds, 0});
}

std::vector<std::string> FakeLibrary::Errors() const {
    std::vector<std::string> errors;
    std::copy_if(m_calls.begin(), m_calls.end(), std::back_inserter(errors),
                 [](const std::string& line) { return line.starts_with("ERROR "); });
    return errors;
}

KrvSession FakeLibrary::OpenSession() {
    m_session = m_session == 0 ? kFirstSession : m_session + 1;
    m_sessionIsOpen = true;
    return m_session;
}

FakeLibrary::Intervention FakeLibrary::Begin(const KrvCallContext* context, const std::string& function,
                                             const std::string& arguments,
                                             const std::function<void(Complaints&)>& check) {
    const std::string line = function + arguments;
    if (m_sink) {
        m_sink(line);
        Complaints complaints;
        CheckContext(*context, ExpectedSession(*context), complaints);
        check(complaints);
        const std::string prefix = "ERROR " + function + ": ";
        for (const std::string& complaint : complaints)
            m_sink(std::string(prefix).append(complaint));
    }
    Intervention intervention = NextIntervention(function, line);
    if (intervention.delayMilliseconds > 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(intervention.delayMilliseconds));
    }
    return intervention;
}

FakeLibrary::Intervention FakeLibrary::NextIntervention(const std::string& function,
                                                        const std::string& line) {
    Intervention result;
    for (Entry& entry : m_entries) {
        if (entry.function != "*" && entry.function != function && entry.function != line) continue;
        ++entry.seen;
        if (entry.seen < entry.occurrence.first || entry.seen > entry.occurrence.last) continue;
        if (result.delayMilliseconds == 0) result.delayMilliseconds = entry.delayMilliseconds;
        if (result.fails || !entry.fails) continue;
        result.fails = true;
        result.failure = entry.failure;
        result.outputs = entry.outputs;
    }
    return result;
}

KrvSession FakeLibrary::ExpectedSession(const KrvCallContext& context) const {
    if (m_sessionIsOpen) return m_session;
    // After a close the caller's variable may still hold the closed session.
    return context.session == m_session ? m_session : 0;
}

KrvBool FakeLibrary::Finish(KrvCallContext* context, const Answer& answer) {
    if (!answer) return 1;
    context->errorInfo->code = answer->code;
    FillText(context->errorInfo->text, answer->text);
    return 0;
}

}  // namespace krvfake
