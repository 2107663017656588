#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/fake_library/answers.h"
#include "tests/fake_library/contract_checks.h"
#include "tests/fake_library/farm.h"
#include "tests/fake_library/farm_answers.h"
#include "tests/fake_library/generated_answers.h"

namespace krvfake {

// Which calls of a function a script entry concerns, counted from 1.
struct Occurrence {
    int first = 1;
    int last = 1;

    static Occurrence Nth(int n) { return {n, n}; }
    static Occurrence From(int n);
    static Occurrence Every() { return From(1); }
};

// Whether a call that fails does its work (fills its outputs) all the same.
enum class Outputs : uint8_t { LeftAlone, Filled };

// The client library as tests see it: they build a farm, script what goes wrong, run the code
// under test (which calls the 31 Krv functions) and read what was called.
//
//     FakeLibrary& fake = FakeLibrary::Instance();
//     fake.Reset();
//     fake.GetFarm().AddJukebox(8, "Tower").WithMagazine(3);
//     fake.FailCall("KrvMediaExport", Occurrence::Nth(2), {502, "Slot 2 is not there."});
//     ...
//     EXPECT_THAT(fake.Calls(), ElementsAre("KrvSessionCreate server=\".\"", ...));
//
// A call is one line: the function's name and its decoded arguments, in the order of the
// function's parameters, zero-based, as the library gets them:
//
//     KrvSessionCreate server="."                KrvVolumeAspects V=33 bufferSize=1
//     KrvSessionClose                            KrvVolumeLocations V=33 room=1
//     KrvGetNextJukebox previous=0               KrvVolumeSetAspects V=33 text="dir1/volume273"
//     KrvGetJukebox J=8                          KrvVolumeActivate V=33
//     KrvGetMagazine J=8 M=0                     KrvVolumeErase J=8 M=0 S=2 side=2
//     KrvGetDrive J=8 D=0                        KrvVolumeFormat J=8 M=0 S=2 side=0 label="" certify=0
//     sequential=0 KrvGetSlot J=8 M=0 S=2                     KrvMediaImport J=8 M=0 S=2 KrvGetSide J=8 M=0
//     S=2 side=0              KrvMediaScan J=8 M=0 S=2 side=2 KrvGetNextVolume previous=0 KrvJukeboxSetName
//     J=8 name="New" KrvVolumeDetail V=33                       KrvServiceStart server="."
//
// `room` is the number of elements that the array must have, the larger of 1 and the count that
// the caller passes in.
//
// Whatever the caller hands in wrong (sizes, presets, session, ...) becomes a line of its own
// behind the call, "ERROR <function>: <what>", so that comparing the calls fails.
class FakeLibrary {
  public:
    // The one library of the process.
    static FakeLibrary& Instance();

    FakeLibrary();
    FakeLibrary(const FakeLibrary&) = delete;
    FakeLibrary& operator=(const FakeLibrary&) = delete;

    // An empty farm, nothing scripted, nothing recorded, no session.
    void Reset();

    Farm& GetFarm() { return m_farm; }
    // Answers arithmetically instead of from the farm.
    void Generate(const GeneratedSize& size);

    // ---- What goes wrong. `function` is a function's name, "*" for every function (the calls of
    // all functions are counted together), or a whole call line as above. Of several entries that
    // concern a call the one that was scripted first decides.
    void FailCall(std::string_view function, Occurrence occurrence, Failure failure,
                  Outputs outputs = Outputs::LeftAlone);
    // The call sleeps before it answers; it is recorded before it sleeps.
    void DelayCall(std::string_view function, Occurrence occurrence, uint32_t milliseconds);

    // ---- What was called.
    const std::vector<std::string>& Calls() const { return m_calls; }
    // The ERROR lines of Calls().
    std::vector<std::string> Errors() const;
    void ForgetCalls() { m_calls.clear(); }
    // Lines go here instead of into Calls(). An empty function: nothing is recorded or checked.
    using Sink = std::function<void(const std::string& line)>;
    void RecordTo(Sink sink) { m_sink = std::move(sink); }

    // True while a library call is in progress: for tests that tell the caller's own doings from the
    // library's.
    static bool IsAtWork() { return s_callsInProgress > 0; }

    // ---- For the exported functions.
    // One call: `describe` gives its arguments as text, `check` complains about them, `act` does
    // the work and yields the outcome.
    template <typename Describe, typename Check, typename Act>
    KrvBool Perform(KrvCallContext* context, std::string_view function, Describe describe, Check check,
                    Act act) {
        const AtWork atWork;
        if (!m_sink && m_entries.empty()) return Finish(context, act());
        const Intervention intervention = Begin(context, std::string(function), describe(), check);
        if (!intervention.fails) return Finish(context, act());
        if (intervention.outputs == Outputs::Filled) (void)act();
        return Finish(context, intervention.failure);
    }

    Answers& GetAnswers() { return *m_answers; }
    KrvSession OpenSession();
    void CloseSession() { m_sessionIsOpen = false; }

  private:
    struct AtWork {
        AtWork() { ++s_callsInProgress; }
        ~AtWork() { --s_callsInProgress; }
        AtWork(const AtWork&) = delete;
        AtWork& operator=(const AtWork&) = delete;
    };
    struct Entry {
        std::string function;
        Occurrence occurrence;
        bool fails = false;
        Failure failure;
        Outputs outputs = Outputs::LeftAlone;
        uint32_t delayMilliseconds = 0;
        int seen = 0;
    };
    struct Intervention {
        bool fails = false;
        Failure failure;
        Outputs outputs = Outputs::LeftAlone;
        uint32_t delayMilliseconds = 0;
    };

    Intervention Begin(const KrvCallContext* context, const std::string& function,
                       const std::string& arguments, const std::function<void(Complaints&)>& check);
    Intervention NextIntervention(const std::string& function, const std::string& line);
    KrvSession ExpectedSession(const KrvCallContext& context) const;
    static KrvBool Finish(KrvCallContext* context, const Answer& answer);

    static inline int s_callsInProgress = 0;

    Farm m_farm;
    std::unique_ptr<Answers> m_answers;
    std::vector<Entry> m_entries;
    std::vector<std::string> m_calls;
    Sink m_sink;
    KrvSession m_session = 0;  // the session opened last
    bool m_sessionIsOpen = false;
};

// Prepares the one library when it is made: nothing to do where tests script it in C++, reading
// the script file where it is a library of its own.
void Prepare(FakeLibrary& library);

}  // namespace krvfake
