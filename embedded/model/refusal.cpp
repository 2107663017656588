#include "embedded/model/refusal.h"

#include <utility>

namespace embedded {
namespace {

// clang-format off
constexpr CodeInfo kCodes[] = {
    {Code::SideUnreadable, "<side> cannot be read.",
     "Looking at, scanning, erasing or formatting a bad side; a look fills the record all the same."},
    {Code::AlreadySo, "<item> is already <state>.",
     "Import to a full magazine or jukebox, export from an empty one, when no slot is named."},
    {Code::StoppedByOperator, "The call for <item> was stopped by the operator.",
     "Never by the rules of this page; a fault may ask for it."},
    {Code::NoLocation, "Volume <id> is in no jukebox.",
     "Asking where a volume lies that is in no slot of a present magazine."},
    {Code::NoMedium, "There is no medium in <place>.",
     "Import with an empty import station; export, scan, format, erase or finalize of an empty slot."},
    {Code::SlotNotUsable, "<place> is <state>.",
     "A slot that is not present, in a magazine that is not present, or (for import) occupied."},

    {Code::InvalidCall, "The call of <function> is not valid: <reason>.",
     "A missing pointer, a record of another size, a constant argument with another value."},
    {Code::NoSession, "Session <number> does not exist.",
     "A handle that was never given out or is closed."},
    {Code::SessionEnded, "The session with server \"<server>\" ended when the service was started again.",
     "A session that was opened before the last start or restart."},
    {Code::OutOfMemory, "There is not enough memory for the call of <function>.",
     "The process cannot get the memory that a call needs."},
    {Code::InternalFailure, "The call of <function> failed: <reason>.",
     "A failure of the simulated service itself."},
    {Code::NotANumberedItem, "<item> is missing in the call of <function>.",
     "A key without the number that the function needs."},

    {Code::UnknownServer, "Server \"<server>\" is not known.",
     "A session with, or a start of, a server that has no farm."},
    {Code::ServiceStopped, "The service on server \"<server>\" is stopped.",
     "Everything but a start while the service is stopped."},
    {Code::InvalidServerName, "Server name \"<server>\" is not valid: it has <length> bytes, 1 to 64 are allowed.",
     "An empty or overlong server name."},

    {Code::NoStateFolder, "The folder for the farms, \"<folder>\", cannot be used: <reason>.",
     "No home folder, the folder cannot be created, or `KRVSIM_HOME` is relative or does not exist."},
    {Code::CannotOpenFile, "The farm file \"<file>\" cannot be opened: <reason>.",
     "No permission, or the path is no file."},
    {Code::NotAFarm, "The file \"<file>\" is not a farm of the simulated service.",
     "A file that is no database, or the database of another program."},
    {Code::NewerFarm, "The farm file \"<file>\" has version <version>, this program knows versions up to <known>.",
     "A farm of a later release; it is never rewritten."},
    {Code::FarmLocked, "The farm file \"<file>\" has been locked by another process for 10 seconds.",
     "Another process holds a lock and does not go on."},
    {Code::DiskFull, "The farm file \"<file>\" cannot grow: <reason>.",
     "No room for a change; nothing of the change remains."},
    {Code::FarmReadOnly, "The farm file \"<file>\" cannot be written: <reason>.",
     "A read-only file, folder or disk."},
    {Code::FarmDamaged,
     "The farm file \"<file>\" cannot be used: <reason>; krvsim restore or krvsim remove --farm helps.",
     "A damaged file or a failing disk."},

    {Code::SshNotStarted, "Server \"<server>\" cannot be reached: ssh cannot be started: <reason>.",
     "This machine has no ssh, or it cannot be run."},
    {Code::HostUnknown, R"(Server "<server>" cannot be reached: host "<host>" is not known: <reason>.)",
     "The name of a server's host has no address."},
    {Code::HostUnreachable, R"(Server "<server>" cannot be reached: host "<host>" does not let ssh in: <reason>.)",
     "The connection with a server's host is refused, cut off, or takes too long."},
    {Code::HostKeyNotTrusted, R"(Server "<server>" cannot be reached: the key of host "<host>" is not trusted: <reason>.)",
     "A host that ssh does not know, or that has another key than before."},
    {Code::LoginRefused, R"(Server "<server>" cannot be reached: host "<host>" refuses the login: <reason>.)",
     "A wrong key, or a password would be needed."},
    {Code::NoAdministrationTool, R"(Server "<server>" cannot be reached: host "<host>" cannot run krvadm serve: <reason>.)",
     "The host has no `krvadm`, or it cannot be run."},
    {Code::SshFailed, "Server \"<server>\" cannot be reached: ssh failed: <reason>.",
     "Any other failure of ssh."},
    {Code::NotTheProtocol, "Server \"<server>\" does not speak the protocol: <reason>.",
     "What the other side sends is not what `krvadm serve` sends."},
    {Code::OtherSideTooOld, "Server \"<server>\" must be updated: its release <release> speaks versions of the protocol up to <version>, this one needs at least <lowest>.",
     "The server's release is too old for this one."},
    {Code::ThisSideTooOld, "This machine's krvcmd must be updated: it speaks versions of the protocol up to <version>, server \"<server>\" with release <release> needs at least <lowest>.",
     "This release is too old for the server's."},
    {Code::ConnectionLost, "The connection with server \"<server>\" is lost: <reason>.",
     "The connection ended while no change was being made."},
    {Code::ServerSilent, "Server \"<server>\" has given no sign of life for <seconds> seconds.",
     "The host or its `krvadm serve` does not go on."},
    {Code::LostButMade, "The connection with server \"<server>\" was lost, but the change was made: <reason>.",
     "The connection ended during a change, and another one could ask."},
    {Code::LostNotMade, "The connection with server \"<server>\" was lost, and the change was not made: <reason>.",
     "The connection ended during a change, and another one could ask. The change will not be made later either."},
    {Code::LostInDoubt, "The connection with server \"<server>\" was lost, and it is not known whether the change was made: <reason>.",
     "The connection ended during a change, and no other could ask."},
    {Code::ServedReadOnly, "Server \"<server>\" is served for reading only.",
     "A change through `krvadm serve --read-only`."},
    {Code::InvalidServerList, "The list of servers \"<file>\" cannot be used: <reason>.",
     "A `servers.toml` that is invalid or cannot be read."},

    {Code::NoJukebox, "There is no jukebox with ID <id>.", "A jukebox ID that names no jukebox."},
    {Code::NoMagazine, "Jukebox \"<jukebox>\" has no magazine <number>.", "A magazine number beyond the last one."},
    {Code::NoDrive, "Jukebox \"<jukebox>\" has no drive <number>.", "A drive number beyond the last one."},
    {Code::NoSlot, "Magazine <magazine> of jukebox \"<jukebox>\" has no slot <slot>.", "A slot number beyond the last one."},
    {Code::NoAbsoluteSlot, "Slot <slot> of jukebox \"<jukebox>\" cannot be reached by its absolute number.",
     "Beyond the last slot, or behind a magazine that is missing or has no slots."},
    {Code::NoVolume, "There is no volume with ID <id>.", "A volume ID that names no volume."},
    {Code::NoSuchSide, "<place> has no side <side>.",
     "A side other than A or B, or side B of a single-sided medium where one is needed."},

    {Code::JukeboxDisabled, "Jukebox \"<jukebox>\" is disabled, its media cannot be moved.",
     "Import, export, scan, format, erase and finalize in a disabled jukebox."},
    {Code::MediumReadOnly, "The <type> medium in <place> is read-only.", "Format of a read-only medium."},
    {Code::MediumFinalized, "<side> is finalized.", "Format of a finalized side."},
    {Code::MediumClosed, "<side> is closed.", "Format of a closed side."},
    {Code::AlreadyRecorded, "<side> is on a write-once medium and is already recorded.",
     "Format of a write-once side that holds a file system."},
    {Code::NotRewritable, "The <type> medium in <place> is not rewritable.", "Erase of any other medium."},
    {Code::NotSequential, "The medium in <place> has no sequential file system to close.",
     "Finalize of a blank medium or of one with a random-access file system."},
    {Code::PartOfSeveral, "<side> is part of volume <id>, which lies on several sides.",
     "Format or erase of one part of a mirror or a volume set."},
    {Code::MailSlotsFull, "Every mail slot of jukebox \"<jukebox>\" is full; take the exported media out.",
     "Export from a real jukebox without a free mail slot."},
    {Code::NoMailSlots, "Jukebox \"<jukebox>\" has no mail slots.",
     "Import to, or export from, a real jukebox that has none."},
    {Code::NoUsableDrive, "Jukebox \"<jukebox>\" has no drive that can be used: <reason>.",
     "Scan in a real jukebox whose drives are all disabled, unknown or taken."},
    {Code::CannotWriteHere, "Media of jukebox \"<jukebox>\" cannot be written: <reason>.",
     "Format, erase and finalize in a real jukebox whose drive does not write this kind of medium."},

    {Code::NameEmpty, "The new name of jukebox \"<jukebox>\" is empty.", "Renaming a jukebox to nothing."},
    {Code::NameTooLong, "The new name of jukebox \"<jukebox>\" has <length> bytes, at most 51 are allowed.",
     "A jukebox name that does not fit its record."},
    {Code::DirectoryEmpty, "The new directory name of volume <id> is empty.", "Setting an empty directory name."},
    {Code::DirectoryTooLong, "The new directory name of volume <id> has <length> bytes, at most 1023 are allowed.",
     "An overlong directory name."},
    {Code::DirectoryTaken, "Directory name \"<directory>\" belongs to volume <id> already.",
     "Each directory name is given once in a service."},

    {Code::DeviceTrouble, "<reason>.", "A real changer or drive that does not answer or cannot do what it is asked."},
    {Code::RobotBusy, "The robot of jukebox \"<jukebox>\" has been busy for <minutes> minutes.",
     "Another process moves media of a real jukebox and does not end."},
    {Code::NoJukeboxModule, "Server \"<server>\" is attached to real jukeboxes, which cannot be reached: <reason>.",
     "The module `libkrvJukebox64.so` is missing beside the client library, or the system is not Linux."},
    {Code::NotSimulated, "Server \"<server>\" is attached to real jukeboxes; this works on simulated ones only.",
     "Faults, loading and replacing of an attached farm with krvsim."},
    {Code::UnexpectedPlace, "The medium is not in <place> after its move.",
     "A real changer that reports success but not the move."},
};
// clang-format on

const CodeInfo& InfoOf(Code code) {
    for (const CodeInfo& info : kCodes) {
        if (info.code == code) return info;
    }
    return kCodes[0];
}

// The text with its first letter as a capital: a value may open the sentence.
std::string AsSentence(std::string text) {
    if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') {
        text.front() = static_cast<char>(text.front() - 'a' + 'A');
    }
    return text;
}

}  // namespace

std::span<const CodeInfo> AllCodes() {
    return kCodes;
}

Refusal Refuse(Code code, std::initializer_list<std::string_view> values) {
    std::string text;
    std::string_view rest = InfoOf(code).text;
    for (const std::string_view value : values) {
        const size_t open = rest.find('<');
        const size_t close = rest.find('>');
        if (close == std::string_view::npos) break;
        text += rest.substr(0, open);
        text += value;
        rest.remove_prefix(close + 1);
    }
    text += rest;
    return {static_cast<int32_t>(code), AsSentence(std::move(text))};
}

}  // namespace embedded
