#include <cstdlib>
#include <cstring>
#include <memory>
#include <tuple>
#include <vector>

#include "krvcmd/service/sdk/krv_sdk.h"
#include "tests/fuzz/bytes_reader.h"
#include "tests/fuzz/farm_invariants.h"
#include "tests/fuzz/scratch_folder.h"

namespace krvcmd::fuzz {
namespace {

// Makes the arguments of the calls from the input.
class Arguments {
  public:
    Arguments(BytesReader& bytes, KrvSession session) : m_bytes(bytes), m_session(session) {}

    // A number that exists in the demonstration farm, or any other.
    int32_t Number() {
        constexpr int32_t kNumbers[] = {0,  1,   2,   3,   4,   5, 8,  11, 29, 31,
                                        33, 273, 300, 310, 517, 9, 12, -1, 6,  7};
        const auto choice = m_bytes.Take<uint8_t>();
        return choice < std::size(kNumbers) * 12 ? kNumbers[choice % std::size(kNumbers)]
                                                 : m_bytes.Take<int32_t>();
    }

    uint32_t Id() { return static_cast<uint32_t>(Number()); }

    // Mostly the size that the record must have.
    uint32_t SizeOf(size_t size) { return IsOdd() ? m_bytes.Take<uint32_t>() : static_cast<uint32_t>(size); }

    JukeboxKey Jukebox() { return {SizeOf(sizeof(JukeboxKey)), Number()}; }
    MagazineKey Magazine() { return {SizeOf(sizeof(MagazineKey)), Number(), Number()}; }
    DriveKey Drive() { return {SizeOf(sizeof(DriveKey)), Number(), Number()}; }
    SlotKey Slot() { return {SizeOf(sizeof(SlotKey)), Number(), Number(), Number()}; }
    SideKey Side() { return {SizeOf(sizeof(SideKey)), Number(), Number(), Number(), Number()}; }

    template <class Record>
    Record* Out(Record& record) {
        std::memset(&record, 0, sizeof record);
        record.size = SizeOf(sizeof(Record));
        return OrNull(&record);
    }

    template <class Value>
    Value* OrNull(Value* value) {
        return IsOdd() ? nullptr : value;
    }

    std::string Text() { return std::string(m_bytes.TakeText(255)).c_str(); }

    bool IsOdd() { return m_bytes.Take<uint8_t>() % 16 == 15; }

    BytesReader& Bytes() { return m_bytes; }
    KrvSession Session() const { return m_session; }

  private:
    BytesReader& m_bytes;
    KrvSession m_session;
};

// A context whose error part may be too small; it is exactly as long as its size field says.
class HostileContext {
  public:
    explicit HostileContext(Arguments& arguments) {
        constexpr size_t kSizes[] = {sizeof(KrvErrorInfo), 0, 4, 8, 9, 12, 40, 1031};
        const bool isOdd = arguments.IsOdd();
        m_errorSize = isOdd ? kSizes[arguments.Bytes().Take<uint8_t>() % std::size(kSizes)] : kSizes[0];
        m_error = std::make_unique<char[]>(std::max<size_t>(m_errorSize, sizeof(uint32_t)));
        const auto size = static_cast<uint32_t>(m_errorSize);
        std::memcpy(m_error.get(), &size, sizeof size);
        m_context.headSize = isOdd ? arguments.Bytes().Take<uint32_t>() : 24;
        m_context.session = arguments.IsOdd() ? arguments.Bytes().Take<uint64_t>() : arguments.Session();
        m_context.errorInfo = arguments.OrNull(reinterpret_cast<KrvErrorInfo*>(m_error.get()));
    }

    KrvCallContext* Get() { return &m_context; }

    void Check(KrvBool result) const {
        Require(result == 0 || result == 1, "a call answers yes or no");
        if (result == 1 || m_context.errorInfo == nullptr || m_errorSize != sizeof(KrvErrorInfo)) return;
        if (m_context.headSize != 24) return;
        const KrvErrorInfo& error = *m_context.errorInfo;
        Require(error.code != 0, "a refusal has a code");
        Require(error.text[0] != '\0', "a refusal has a text");
        Require(std::memchr(error.text, '\0', sizeof error.text) != nullptr, "the text has an end");
    }

  private:
    KrvCallContext m_context{};
    size_t m_errorSize;
    std::unique_ptr<char[]> m_error;
};

// Braces: every compiler evaluates the arguments in order.
template <class Function, class... Rest>
KrvBool Invoke(Function function, KrvCallContext* context, const std::tuple<Rest...>& rest) {
    return std::apply([&](Rest... each) { return function(context, each...); }, rest);
}

KrvBool Look(uint8_t function, KrvCallContext* context, Arguments& arguments) {
    uint32_t next = 0;
    JukeboxRecord jukebox;
    MagazineRecord magazine;
    DriveRecord drive;
    SlotRecord slot;
    SideRecord side;
    VolumeRecord volume;
    const JukeboxKey jukeboxKey = arguments.Jukebox();
    const MagazineKey magazineKey = arguments.Magazine();
    const DriveKey driveKey = arguments.Drive();
    const SlotKey slotKey = arguments.Slot();
    const SideKey sideKey = arguments.Side();
    switch (function) {
        case 0:
            return Invoke(KrvGetNextJukebox, context, std::tuple{arguments.Id(), arguments.OrNull(&next)});
        case 1:
            return Invoke(KrvGetJukebox, context,
                          std::tuple{arguments.OrNull(&jukeboxKey), arguments.Out(jukebox)});
        case 2:
            return Invoke(KrvGetMagazine, context,
                          std::tuple{arguments.OrNull(&magazineKey), arguments.Out(magazine)});
        case 3:
            return Invoke(KrvGetDrive, context,
                          std::tuple{arguments.OrNull(&driveKey), arguments.Out(drive)});
        case 4:
            return Invoke(KrvGetSlot, context, std::tuple{arguments.OrNull(&slotKey), arguments.Out(slot)});
        case 5:
            return Invoke(KrvGetSide, context, std::tuple{arguments.OrNull(&sideKey), arguments.Out(side)});
        case 6:
            return Invoke(KrvGetNextVolume, context, std::tuple{arguments.Id(), arguments.OrNull(&next)});
        default:
            return Invoke(KrvVolumeDetail, context, std::tuple{arguments.Id(), arguments.Out(volume)});
    }
}

KrvBool ReadAspects(KrvCallContext* context, Arguments& arguments) {
    const uint32_t size = arguments.Bytes().Take<uint8_t>();
    const auto buffer = std::make_unique<char[]>(size);
    uint32_t required = arguments.Bytes().Take<uint8_t>();
    return Invoke(KrvVolumeAspects, context,
                  std::tuple{arguments.Id(), size == 0 ? arguments.OrNull(buffer.get()) : buffer.get(), size,
                             arguments.OrNull(&required)});
}

KrvBool ReadLocations(KrvCallContext* context, Arguments& arguments) {
    uint32_t count = arguments.Bytes().Take<uint8_t>() % 6;
    const size_t room = std::max<uint32_t>(1, count);
    const auto keys = std::make_unique<SideKey[]>(room);
    for (size_t i = 0; i < room; ++i)
        keys[i] = arguments.Side();
    const uint32_t always1 = arguments.IsOdd() ? arguments.Id() : 1;
    return Invoke(
        KrvVolumeLocations, context,
        std::tuple{arguments.Id(), arguments.OrNull(keys.get()), always1, arguments.OrNull(&count)});
}

KrvBool ChangeVolume(uint8_t function, KrvCallContext* context, Arguments& arguments) {
    const SideKey side = arguments.Side();
    const std::string text = arguments.Text();
    FormatOptions options;
    switch (function) {
        case 0:
            return Invoke(KrvVolumeSetAspects, context,
                          std::tuple{arguments.Id(), arguments.OrNull(text.c_str()),
                                     arguments.IsOdd() ? arguments.Id() : 1U});
        case 1:
            return Invoke(
                KrvVolumeActivate, context,
                std::tuple{arguments.Id(), static_cast<const void*>(arguments.IsOdd() ? &options : nullptr)});
        case 2:
            return Invoke(KrvVolumeDeactivate, context, std::tuple{arguments.Id()});
        case 3:
            return Invoke(KrvVolumeErase, context, std::tuple{arguments.OrNull(&side)});
        case 4:
            return Invoke(KrvVolumeFinalize, context, std::tuple{arguments.OrNull(&side)});
        default:
            break;
    }
    FormatOptions* const given = arguments.Out(options);
    // A label that fills its field has no terminator.
    std::memcpy(options.label, text.data(), text.size());
    if (arguments.IsOdd()) std::memset(options.label, 'x', sizeof options.label);
    options.certify = arguments.Bytes().Take<uint8_t>() % 2;
    options.sequential = arguments.Bytes().Take<uint8_t>() % 3;
    options.alwaysZero = arguments.IsOdd() ? 1 : 0;
    return Invoke(KrvVolumeFormat, context, std::tuple{arguments.OrNull(&side), given});
}

KrvBool ChangeItem(uint8_t function, KrvCallContext* context, Arguments& arguments) {
    const JukeboxKey jukebox = arguments.Jukebox();
    const MagazineKey magazine = arguments.Magazine();
    const DriveKey drive = arguments.Drive();
    const SlotKey slot = arguments.Slot();
    const SideKey side = arguments.Side();
    const std::string text = arguments.Text();
    switch (function) {
        case 0:
            return Invoke(KrvMediaImport, context, std::tuple{arguments.OrNull(&slot)});
        case 1:
            return Invoke(KrvMediaExport, context, std::tuple{arguments.OrNull(&slot)});
        case 2:
            return Invoke(KrvMediaScan, context, std::tuple{arguments.OrNull(&side)});
        case 3:
            return Invoke(KrvActivateJukebox, context, std::tuple{arguments.OrNull(&jukebox)});
        case 4:
            return Invoke(KrvDeactivateJukebox, context, std::tuple{arguments.OrNull(&jukebox)});
        case 5:
            return Invoke(KrvActivateMagazine, context, std::tuple{arguments.OrNull(&magazine)});
        case 6:
            return Invoke(KrvDeactivateMagazine, context, std::tuple{arguments.OrNull(&magazine)});
        case 7:
            return Invoke(KrvActivateDrive, context, std::tuple{arguments.OrNull(&drive)});
        case 8:
            return Invoke(KrvDeactivateDrive, context, std::tuple{arguments.OrNull(&drive)});
        default:
            return Invoke(KrvJukeboxSetName, context,
                          std::tuple{arguments.OrNull(&jukebox), arguments.OrNull(text.c_str())});
    }
}

KrvBool ControlService(uint8_t function, KrvCallContext* context, Arguments& arguments) {
    const std::string server = arguments.IsOdd() ? arguments.Text() : ".";
    KrvSession session = 0;
    switch (function) {
        case 0:
            return Invoke(KrvServiceStart, context, std::tuple{arguments.OrNull(server.c_str())});
        case 1:
            return Invoke(KrvServiceStop, context, std::tuple{});
        case 2:
            return Invoke(KrvServiceRestart, context, std::tuple{});
        case 3:
            return Invoke(KrvSessionClose, context, std::tuple{});
        default:
            break;
    }
    const KrvBool result = Invoke(KrvSessionCreate, context,
                                  std::tuple{arguments.OrNull(server.c_str()), arguments.OrNull(&session)});
    // No later call would close it.
    if (session != 0) CloseSession(session);
    return result;
}

void MakeCall(Arguments& arguments) {
    HostileContext context(arguments);
    const uint8_t function = arguments.Bytes().Take<uint8_t>() % 31;
    KrvBool result = 0;
    if (function < 8) {
        result = Look(function, context.Get(), arguments);
    } else if (function == 8) {
        result = ReadAspects(context.Get(), arguments);
    } else if (function == 9) {
        result = ReadLocations(context.Get(), arguments);
    } else if (function < 16) {
        result = ChangeVolume(function - 10, context.Get(), arguments);
    } else if (function < 26) {
        result = ChangeItem(function - 16, context.Get(), arguments);
    } else {
        result = ControlService(function - 26, context.Get(), arguments);
    }
    context.Check(result);
}

// The demonstration farm, which the service makes on first contact.
ScratchFolder& NewFarm() {
    static ScratchFolder folder;
    static const bool isReady = [] {
        Require(setenv("KRVSIM_HOME", folder.Path().c_str(), 1) == 0, "the environment can be set");
        CloseSession(OpenSession());
        folder.Remember();
        return true;
    }();
    Require(isReady, "the demonstration farm is made");
    return folder;
}

}  // namespace

}  // namespace krvcmd::fuzz

// Calls the 31 functions of the embedded service one after the other with random arguments: keys of any size
// and number, contexts with little space, invalid sessions, null pointers. Every execution starts with a new
// demonstration farm.
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace krvcmd::fuzz;
    NewFarm().Restore();
    const KrvSession session = OpenSession();
    BytesReader bytes(data, size);
    Arguments arguments(bytes, session);
    constexpr int kMostCalls = 40;
    for (int calls = 0; calls < kMostCalls && !bytes.AtEnd(); ++calls)
        MakeCall(arguments);
    TryToCloseSession(session);
    CheckFarm();
    return 0;
}
