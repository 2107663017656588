// The binary interface's own rules: contexts, sizes, pointers, constant arguments.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

// A well-formed call of each function but KrvSessionCreate and KrvServiceStart.
struct FunctionCall {
    const char* name;
    KrvBool (*call)(KrvCallContext*);
};

template <typename Key>
Key MyBoxKey() {
    Key key{};
    std::memset(&key, 0xFF, sizeof(key));
    key.size = sizeof(key);
    key.jukeboxId = 8;
    return key;
}

template <typename Record>
Record Prepared() {
    Record record{};
    record.size = sizeof(record);
    return record;
}

// A key with every number that it has set to the first one.
template <>
SlotKey MyBoxKey<SlotKey>() {
    return {sizeof(SlotKey), 8, 0, 0};
}
template <>
SideKey MyBoxKey<SideKey>() {
    return {sizeof(SideKey), 8, 0, 0, 0};
}
template <>
MagazineKey MyBoxKey<MagazineKey>() {
    return {sizeof(MagazineKey), 8, 0};
}
template <>
DriveKey MyBoxKey<DriveKey>() {
    return {sizeof(DriveKey), 8, 0};
}

template <typename Key, typename Record, KrvBool (*Function)(KrvCallContext*, const Key*, Record*)>
KrvBool CallGet(KrvCallContext* context) {
    const Key key = MyBoxKey<Key>();
    auto record = Prepared<Record>();
    return Function(context, &key, &record);
}

template <typename Key, KrvBool (*Function)(KrvCallContext*, const Key*)>
KrvBool CallAct(KrvCallContext* context) {
    const Key key = MyBoxKey<Key>();
    return Function(context, &key);
}

std::vector<FunctionCall> LookCalls() {
    return {
        {"KrvGetNextJukebox",
         [](KrvCallContext* context) {
             uint32_t next = 0;
             return KrvGetNextJukebox(context, 0, &next);
         }},
        {"KrvGetJukebox", &CallGet<JukeboxKey, JukeboxRecord, &KrvGetJukebox>},
        {"KrvGetMagazine", &CallGet<MagazineKey, MagazineRecord, &KrvGetMagazine>},
        {"KrvGetDrive", &CallGet<DriveKey, DriveRecord, &KrvGetDrive>},
        {"KrvGetSlot", &CallGet<SlotKey, SlotRecord, &KrvGetSlot>},
        {"KrvGetSide", &CallGet<SideKey, SideRecord, &KrvGetSide>},
        {"KrvGetNextVolume",
         [](KrvCallContext* context) {
             uint32_t next = 0;
             return KrvGetNextVolume(context, 0, &next);
         }},
        {"KrvVolumeDetail",
         [](KrvCallContext* context) {
             auto record = Prepared<VolumeRecord>();
             return KrvVolumeDetail(context, 33, &record);
         }},
        {"KrvVolumeAspects",
         [](KrvCallContext* context) {
             uint32_t size = 0;
             return KrvVolumeAspects(context, 33, nullptr, 0, &size);
         }},
        {"KrvVolumeLocations",
         [](KrvCallContext* context) {
             auto location = Prepared<SideKey>();
             uint32_t count = 0;
             return KrvVolumeLocations(context, 33, &location, 1, &count);
         }},
    };
}

std::vector<FunctionCall> ActCalls() {
    return {
        {"KrvVolumeSetAspects",
         [](KrvCallContext* context) { return KrvVolumeSetAspects(context, 33, "new\\name", 1); }},
        {"KrvVolumeActivate",
         [](KrvCallContext* context) { return KrvVolumeActivate(context, 33, nullptr); }},
        {"KrvVolumeDeactivate", [](KrvCallContext* context) { return KrvVolumeDeactivate(context, 33); }},
        {"KrvVolumeErase", &CallAct<SideKey, &KrvVolumeErase>},
        {"KrvVolumeFormat",
         [](KrvCallContext* context) {
             const auto key = MyBoxKey<SideKey>();
             const auto options = Prepared<FormatOptions>();
             return KrvVolumeFormat(context, &key, &options);
         }},
        {"KrvVolumeFinalize",
         [](KrvCallContext* context) {
             const SideKey writeOnce{sizeof(SideKey), 8, 0, 1, 2};
             return KrvVolumeFinalize(context, &writeOnce);
         }},
        {"KrvMediaExport", &CallAct<SlotKey, &KrvMediaExport>},
        {"KrvMediaImport",
         [](KrvCallContext* context) {
             const SlotKey empty{sizeof(SlotKey), 29, 1, 2};
             return KrvMediaImport(context, &empty);
         }},
        {"KrvMediaScan",
         [](KrvCallContext* context) {
             const SideKey full{sizeof(SideKey), 8, 0, 2, 2};
             return KrvMediaScan(context, &full);
         }},
        {"KrvDeactivateJukebox", &CallAct<JukeboxKey, &KrvDeactivateJukebox>},
        {"KrvActivateJukebox", &CallAct<JukeboxKey, &KrvActivateJukebox>},
        {"KrvDeactivateMagazine", &CallAct<MagazineKey, &KrvDeactivateMagazine>},
        {"KrvActivateMagazine", &CallAct<MagazineKey, &KrvActivateMagazine>},
        {"KrvDeactivateDrive", &CallAct<DriveKey, &KrvDeactivateDrive>},
        {"KrvActivateDrive", &CallAct<DriveKey, &KrvActivateDrive>},
        {"KrvJukeboxSetName",
         [](KrvCallContext* context) {
             const auto key = MyBoxKey<JukeboxKey>();
             return KrvJukeboxSetName(context, &key, "New name");
         }},
        {"KrvServiceStop", &KrvServiceStop},
        {"KrvServiceRestart", &KrvServiceRestart},
    };
}

std::vector<FunctionCall> SessionCalls() {
    std::vector<FunctionCall> calls = LookCalls();
    const std::vector<FunctionCall> acting = ActCalls();
    calls.insert(calls.end(), acting.begin(), acting.end());
    return calls;
}

class CallContract : public FarmFixture {};

TEST_F(CallContract, EveryFunctionSucceedsOnAWellFormedCall) {
    for (const FunctionCall& function : SessionCalls()) {
        ASSERT_TRUE(StartService(".").ok);
        const Client client;
        Context context(client.GetSession());
        const Outcome outcome = context.Result(function.call(context.Get()));
        EXPECT_TRUE(outcome.ok) << function.name << ": " << Describe(outcome);
        EXPECT_EQ(outcome.code, 0) << function.name;
        EXPECT_EQ(outcome.text, "") << function.name;
    }
}

TEST_F(CallContract, EveryFunctionNeedsASession) {
    for (const FunctionCall& function : SessionCalls()) {
        for (const KrvSession session : {KrvSession{0}, KrvSession{1}, ~KrvSession{0}}) {
            Context context(session);
            EXPECT_EQ(Describe(context.Result(function.call(context.Get()))),
                      "1001: Session " + std::to_string(session) + " does not exist.")
                << function.name;
        }
    }
}

TEST_F(CallContract, HeadOfAnotherSizeIsRefused) {
    const Client client;
    for (const FunctionCall& function : SessionCalls()) {
        Context context(client.GetSession());
        context.Get()->headSize = 25;
        EXPECT_EQ(Describe(context.Result(function.call(context.Get()))),
                  std::string("1000: The call of ") + function.name +
                      " is not valid: the context's head has size 25, not 24.");
    }
}

TEST_F(CallContract, WithoutRoomForTheErrorTheCallFailsAndWritesNothing) {
    const Client client;
    for (const FunctionCall& function : SessionCalls()) {
        EXPECT_EQ(function.call(nullptr), 0) << function.name;
        Context noPart(client.GetSession());
        noPart.Get()->errorInfo = nullptr;
        EXPECT_EQ(function.call(noPart.Get()), 0) << function.name;
        Context otherSize(client.GetSession());
        otherSize.Get()->error.size = 1028;
        EXPECT_EQ(function.call(otherSize.Get()), 0) << function.name;
        EXPECT_EQ(otherSize.Get()->error.code, 0) << function.name;
    }
}

struct BadCall {
    const char* name;
    std::function<KrvBool(KrvCallContext*)> call;
    const char* text;
};

template <typename Record>
Record WrongSize() {
    Record record{};
    record.size = sizeof(Record) - 1;
    return record;
}

// Each record of another size: the key, then the result.
template <typename Key, typename Record>
void AddGet(std::vector<BadCall>& calls, KrvBool (*function)(KrvCallContext*, const Key*, Record*),
            const char* keyText, const char* recordText) {
    calls.push_back({"key size",
                     [function](KrvCallContext* context) {
                         const auto key = WrongSize<Key>();
                         auto record = Prepared<Record>();
                         return function(context, &key, &record);
                     },
                     keyText});
    calls.push_back({"record size",
                     [function](KrvCallContext* context) {
                         const auto key = MyBoxKey<Key>();
                         auto record = WrongSize<Record>();
                         return function(context, &key, &record);
                     },
                     recordText});
    calls.push_back({"no key",
                     [function](KrvCallContext* context) {
                         auto record = Prepared<Record>();
                         return function(context, nullptr, &record);
                     },
                     "the key is missing"});
    calls.push_back({"no record",
                     [function](KrvCallContext* context) {
                         const auto key = MyBoxKey<Key>();
                         return function(context, &key, nullptr);
                     },
                     "the record is missing"});
}

template <typename Key>
void AddAct(std::vector<BadCall>& calls, KrvBool (*function)(KrvCallContext*, const Key*),
            const char* keyText) {
    calls.push_back({"key size",
                     [function](KrvCallContext* context) {
                         const auto key = WrongSize<Key>();
                         return function(context, &key);
                     },
                     keyText});
    calls.push_back({"no key", [function](KrvCallContext* context) { return function(context, nullptr); },
                     "the key is missing"});
}

std::vector<BadCall> CallsWithRecords() {
    std::vector<BadCall> calls;
    AddGet(calls, &KrvGetJukebox, "the key has size 7, not 8", "the record has size 119, not 120");
    AddGet(calls, &KrvGetMagazine, "the key has size 11, not 12", "the record has size 11, not 12");
    AddGet(calls, &KrvGetDrive, "the key has size 11, not 12", "the record has size 71, not 72");
    AddGet(calls, &KrvGetSlot, "the key has size 15, not 16", "the record has size 11, not 12");
    AddGet(calls, &KrvGetSide, "the key has size 19, not 20", "the record has size 19, not 20");
    AddAct(calls, &KrvVolumeErase, "the key has size 19, not 20");
    AddAct(calls, &KrvVolumeFinalize, "the key has size 19, not 20");
    AddAct(calls, &KrvMediaImport, "the key has size 15, not 16");
    AddAct(calls, &KrvMediaExport, "the key has size 15, not 16");
    AddAct(calls, &KrvMediaScan, "the key has size 19, not 20");
    AddAct(calls, &KrvActivateJukebox, "the key has size 7, not 8");
    AddAct(calls, &KrvDeactivateJukebox, "the key has size 7, not 8");
    AddAct(calls, &KrvActivateMagazine, "the key has size 11, not 12");
    AddAct(calls, &KrvDeactivateMagazine, "the key has size 11, not 12");
    AddAct(calls, &KrvActivateDrive, "the key has size 11, not 12");
    AddAct(calls, &KrvDeactivateDrive, "the key has size 11, not 12");
    return calls;
}

void AddVolumeCalls(std::vector<BadCall>& calls) {
    calls.push_back({"KrvVolumeDetail",
                     [](KrvCallContext* context) {
                         auto record = WrongSize<VolumeRecord>();
                         return KrvVolumeDetail(context, 33, &record);
                     },
                     "the record has size 335, not 336"});
    calls.push_back({"KrvVolumeDetail",
                     [](KrvCallContext* context) { return KrvVolumeDetail(context, 33, nullptr); },
                     "the record is missing"});
    calls.push_back(
        {"KrvVolumeAspects",
         [](KrvCallContext* context) { return KrvVolumeAspects(context, 33, nullptr, 0, nullptr); },
         "the required size is missing"});
    calls.push_back({"KrvVolumeAspects",
                     [](KrvCallContext* context) {
                         uint32_t size = 0;
                         return KrvVolumeAspects(context, 33, nullptr, 1, &size);
                     },
                     "the buffer is missing"});
    calls.push_back({"KrvVolumeLocations",
                     [](KrvCallContext* context) {
                         auto location = WrongSize<SideKey>();
                         uint32_t count = 0;
                         return KrvVolumeLocations(context, 33, &location, 1, &count);
                     },
                     "the location has size 19, not 20"});
    calls.push_back({"KrvVolumeLocations",
                     [](KrvCallContext* context) {
                         auto location = Prepared<SideKey>();
                         uint32_t count = 0;
                         return KrvVolumeLocations(context, 33, &location, 2, &count);
                     },
                     "the fourth argument has a value that is not allowed"});
    calls.push_back({"KrvVolumeSetAspects",
                     [](KrvCallContext* context) { return KrvVolumeSetAspects(context, 33, nullptr, 1); },
                     "the text is missing"});
    calls.push_back({"KrvVolumeSetAspects",
                     [](KrvCallContext* context) { return KrvVolumeSetAspects(context, 33, "x", 0); },
                     "the fourth argument has a value that is not allowed"});
    calls.push_back({"KrvVolumeActivate",
                     [](KrvCallContext* context) { return KrvVolumeActivate(context, 33, context); },
                     "the third argument has a value that is not allowed"});
}

void AddFormatCalls(std::vector<BadCall>& calls) {
    calls.push_back({"KrvVolumeFormat",
                     [](KrvCallContext* context) {
                         const auto key = MyBoxKey<SideKey>();
                         const auto options = WrongSize<FormatOptions>();
                         return KrvVolumeFormat(context, &key, &options);
                     },
                     "the options record has size 283, not 284"});
    calls.push_back({"KrvVolumeFormat",
                     [](KrvCallContext* context) {
                         const auto key = MyBoxKey<SideKey>();
                         auto options = Prepared<FormatOptions>();
                         std::memset(options.label, 'x', sizeof(options.label));
                         return KrvVolumeFormat(context, &key, &options);
                     },
                     "the label has a value that is not allowed"});
    calls.push_back({"KrvVolumeFormat",
                     [](KrvCallContext* context) {
                         const auto key = MyBoxKey<SideKey>();
                         auto options = Prepared<FormatOptions>();
                         options.alwaysZero = 1;
                         return KrvVolumeFormat(context, &key, &options);
                     },
                     "the field at 268 has a value that is not allowed"});
}

TEST_F(CallContract, MalformedCallIsRefusedInWords) {
    Client client;
    std::vector<BadCall> calls = CallsWithRecords();
    AddVolumeCalls(calls);
    AddFormatCalls(calls);
    for (const BadCall& bad : calls) {
        Context context(client.GetSession());
        const Outcome outcome = context.Result(bad.call(context.Get()));
        EXPECT_FALSE(outcome.ok) << bad.name;
        EXPECT_EQ(outcome.code, 1000) << bad.name;
        EXPECT_TRUE(outcome.text.starts_with("The call of Krv")) << outcome.text;
        EXPECT_TRUE(outcome.text.ends_with(" is not valid: " + std::string(bad.text) + ".")) << outcome.text;
    }
    EXPECT_EQ(client.LabelOf(33), "Sales 2004");
}

TEST_F(CallContract, SessionFunctionsNeedTheirPointers) {
    Context noName;
    KrvSession session = 0;
    EXPECT_EQ(Describe(noName.Result(KrvSessionCreate(noName.Get(), nullptr, &session))),
              "1000: The call of KrvSessionCreate is not valid: the server name is missing.");
    Context noSession;
    EXPECT_EQ(Describe(noSession.Result(KrvSessionCreate(noSession.Get(), ".", nullptr))),
              "1000: The call of KrvSessionCreate is not valid: the session handle is missing.");
    Context noServer;
    EXPECT_EQ(Describe(noServer.Result(KrvServiceStart(noServer.Get(), nullptr))),
              "1000: The call of KrvServiceStart is not valid: the server name is missing.");
}

TEST_F(CallContract, FailureTextIsCutToItsField) {
    Client client;
    const std::string directory(1023, 'd');
    ASSERT_TRUE(client.SetDirectory(33, directory).ok);
    const Outcome taken = client.SetDirectory(34, directory);
    EXPECT_EQ(taken.code, 1224);
    EXPECT_EQ(taken.text, ("Directory name \"" + directory).substr(0, 1023));
}

}  // namespace
}  // namespace embedded_test
