#pragma once

#include <cstdint>
#include <exception>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "krvcmd/service/sdk/codes.h"

namespace embedded {

// Every code that the embedded service answers. On POSIX a program's exit status is the low 8 bits of a code;
// with none of these it looks like success or like one of krvcmd's own codes.
enum class Code : int32_t {
    // These have a meaning for every caller of the client library, whichever service answers.
    SideUnreadable = krvcmd::service_code::kSideUnreadable,
    AlreadySo = krvcmd::service_code::kAlreadyDone,
    StoppedByOperator = krvcmd::service_code::kStoppedByOperator,
    NoLocation = krvcmd::service_code::kNoLocation,
    NoMedium = krvcmd::service_code::kNoMedium,
    SlotNotUsable = krvcmd::service_code::kSlotNotUsable,

    InvalidCall = 1000,
    NoSession = 1001,
    SessionEnded = 1002,
    OutOfMemory = 1003,
    InternalFailure = 1004,
    NotANumberedItem = 1005,

    UnknownServer = 1010,
    ServiceStopped = 1011,
    InvalidServerName = 1012,

    NoStateFolder = 1060,
    CannotOpenFile = 1061,
    NotAFarm = 1062,
    NewerFarm = 1063,
    FarmLocked = 1064,
    DiskFull = 1065,
    FarmReadOnly = 1066,
    FarmDamaged = 1067,

    SshNotStarted = 1080,
    HostUnknown = 1081,
    HostUnreachable = 1082,
    HostKeyNotTrusted = 1083,
    LoginRefused = 1084,
    NoAdministrationTool = 1085,
    SshFailed = 1086,
    NotTheProtocol = 1087,
    OtherSideTooOld = 1088,
    ThisSideTooOld = 1089,
    ConnectionLost = 1090,
    ServerSilent = 1091,
    LostButMade = 1092,
    LostNotMade = 1093,
    LostInDoubt = 1094,
    ServedReadOnly = 1095,
    InvalidServerList = 1096,

    NoJukebox = 1100,
    NoMagazine = 1101,
    NoDrive = 1102,
    NoSlot = 1103,
    NoAbsoluteSlot = 1104,
    NoVolume = 1105,
    NoSuchSide = 1106,

    JukeboxDisabled = 1200,
    MediumReadOnly = 1201,
    MediumFinalized = 1202,
    MediumClosed = 1203,
    AlreadyRecorded = 1204,
    NotRewritable = 1205,
    NotSequential = 1206,
    PartOfSeveral = 1207,
    MailSlotsFull = 1208,
    NoMailSlots = 1209,
    NoUsableDrive = 1210,
    CannotWriteHere = 1211,

    NameEmpty = 1220,
    NameTooLong = 1221,
    DirectoryEmpty = 1222,
    DirectoryTooLong = 1223,
    DirectoryTaken = 1224,

    DeviceTrouble = 1240,
    RobotBusy = 1241,
    NoJukeboxModule = 1242,
    NotSimulated = 1243,
    UnexpectedPlace = 1244,
};

// One row of the table of codes; docs/simulated-service.md shows the same table, and a test compares both.
struct CodeInfo {
    Code code;
    const char* text;     // one sentence; each <word> stands for a value
    const char* meaning;  // when it is answered
};

std::span<const CodeInfo> AllCodes();

// How the embedded service says no. A refusal is thrown, because it must undo a half-done change on its way
// out, whatever depth it comes from. The entry points of the library catch every refusal and write it into
// the caller's context; none crosses the binary interface.
class Refusal : public std::exception {
  public:
    Refusal(int32_t code, std::string text) : m_code(code), m_text(std::move(text)) {}

    int32_t GetCode() const { return m_code; }
    const std::string& GetText() const { return m_text; }
    const char* what() const noexcept override { return m_text.c_str(); }

  private:
    int32_t m_code;
    std::string m_text;
};

// The refusal of a code; the values replace the <words> of its text one after the other.
Refusal Refuse(Code code, std::initializer_list<std::string_view> values);

}  // namespace embedded
