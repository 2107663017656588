#include "krvcmd/frontend/grammar/command_grammar.h"

namespace krvcmd {
namespace {

using std::string_view;

enum class Dash { No, Yes };

// ---- Forms of values -------------------------------------------------------------------------

//                                    type                idForm            list   range
constexpr ValueSpec kTextValue{ValueSpec::kText, ValueSpec::kPlain, false, false};
constexpr ValueSpec kNumberValue{ValueSpec::kNumber, ValueSpec::kPlain, false, false};
constexpr ValueSpec kNumberListValue{ValueSpec::kNumber, ValueSpec::kPlain, true, true};
constexpr ValueSpec kIdValue{ValueSpec::kNumber, ValueSpec::kId, false, false};
constexpr ValueSpec kIdListValue{ValueSpec::kNumber, ValueSpec::kId, true, true};

constexpr ValueSpec kText[] = {kTextValue};
constexpr ValueSpec kNumber[] = {kNumberValue};
constexpr ValueSpec kNumberList[] = {kNumberListValue};
constexpr ValueSpec kTextOrId[] = {kTextValue, kIdValue};
constexpr ValueSpec kIdList[] = {kIdListValue};
constexpr std::span<const ValueSpec> kNone;

// ---- One line makes one keyword below --------------------------------------------------------

constexpr string_view kEmptyConflict[] = {""};

constexpr KeywordNode Option(string_view keyword, Dash dash, std::span<const ValueSpec> values,
                             string_view help) {
    return {keyword, help, KeywordKind::Option, dash == Dash::Yes, kEmptyConflict, values, {}};
}

constexpr KeywordNode Parameter(string_view keyword, Dash dash, std::span<const ValueSpec> values,
                                string_view help, std::span<const string_view> conflicts = kEmptyConflict) {
    return {keyword, help, KeywordKind::Parameter, dash == Dash::Yes, conflicts, values, {}};
}

constexpr KeywordNode Placeholder(string_view keyword, string_view help) {
    return {keyword, help, KeywordKind::Parameter, false, {}, kText, {}};
}

constexpr KeywordNode Command(string_view keyword, Dash dash, std::span<const string_view> conflicts,
                              KeywordNode::Table children, string_view help) {
    return {keyword, help, KeywordKind::Command, dash == Dash::Yes, conflicts, kNone, children};
}

// ---- Options ---------------------------------------------------------------------------------

// clang-format off
constexpr KeywordNode kQuiet  = Option("quiet",  Dash::Yes, kNone, "quiet mode (suppress banner and success message)");
constexpr KeywordNode kServer = Option("server", Dash::Yes, kText, "specify server name to connect with");

// ---- Parameters ------------------------------------------------------------------------------

constexpr string_view kTiedToSideA[] = {".A"};
constexpr string_view kTiedToSideB[] = {".B"};

constexpr KeywordNode kJ          = Parameter("J",          Dash::No,  kTextOrId,   "jukebox ID or jukebox name, eg. J @17 or J MyBox");
constexpr KeywordNode kM          = Parameter("M",          Dash::No,  kNumberList, "magazine number, eg. M 1 or M1");
constexpr KeywordNode kS          = Parameter("S",          Dash::No,  kNumberList, "slot number in magazine, or absolute slot in jukebox");
constexpr KeywordNode kD          = Parameter("D",          Dash::No,  kNumber,     "drive number, eg. D 1 or D1");
constexpr KeywordNode kV          = Parameter("V",          Dash::No,  kIdList,     "volume ID, eg. V @273");
constexpr KeywordNode kSideA      = Parameter(".A",         Dash::No,  kNone,       "medium side A, eg. S 1 .A", kTiedToSideB);
constexpr KeywordNode kSideB      = Parameter(".B",         Dash::No,  kNone,       "medium side B, eg. S 1 .B", kTiedToSideA);
constexpr KeywordNode kRepeat     = Parameter("repeat",     Dash::No,  kNumber,     "specifies number of repeats, eg. repeat=5");
constexpr KeywordNode kLabel      = Parameter("label",      Dash::No,  kText,       "volume label string");
constexpr KeywordNode kErase      = Parameter("erase",      Dash::No,  kNone,       "erase volume");
constexpr KeywordNode kCertify    = Parameter("certify",    Dash::No,  kNone,       "certify volume");
constexpr KeywordNode kSequential = Parameter("sequential", Dash::No,  kNone,       "sequential");
constexpr KeywordNode kFinalize   = Parameter("finalize",   Dash::No,  kNone,       "finalize volume");
constexpr KeywordNode kColumns    = Parameter("columns",    Dash::No,  kText,       "specify columns to output");
constexpr KeywordNode kSort       = Parameter("sort",       Dash::No,  kText,       "the table row sort sequence");
constexpr KeywordNode kWidth      = Parameter("width",      Dash::No,  kNumber,     "the table width");
constexpr KeywordNode kNotable    = Parameter("notable",    Dash::Yes, kNone,       "unformatted output");
constexpr KeywordNode kSeparator  = Parameter("separator",  Dash::Yes, kText,       "output separator");
constexpr KeywordNode kJukeboxes  = Parameter("jukeboxes",  Dash::Yes, kNone,       "information about jukeboxes");
constexpr KeywordNode kMagazines  = Parameter("magazines",  Dash::Yes, kNone,       "information about magazines");
constexpr KeywordNode kDrives     = Parameter("drives",     Dash::Yes, kNone,       "information about drives");
constexpr KeywordNode kSlots      = Parameter("slots",      Dash::Yes, kNone,       "information about slots");
constexpr KeywordNode kVolumes    = Parameter("volumes",    Dash::Yes, kNone,       "information about volumes");
constexpr KeywordNode kStart      = Parameter("start",      Dash::No,  kNone,       "start service");
constexpr KeywordNode kStop       = Parameter("stop",       Dash::No,  kNone,       "stop service");
constexpr KeywordNode kRestart    = Parameter("restart",    Dash::No,  kNone,       "restart service");

constexpr KeywordNode kAnyCommand = Placeholder("<command>",  "command keyword, to get further information");
constexpr KeywordNode kNewName    = Placeholder("<new name>", "the new name");

// Declared, but offered by no command.
constexpr KeywordNode kYes            = Option("yes", Dash::Yes, kNone, "help - default");
constexpr KeywordNode kRescan         = Parameter("rescan",         Dash::No,  kNone, "reinitialize the slot in the jukebox");
constexpr KeywordNode kConfiguration  = Parameter("configuration",  Dash::No,  kNone, "output configuration");
constexpr KeywordNode kDetectSequence = Parameter("detectsequence", Dash::No,  kNone, "output detect sequence");
constexpr KeywordNode kFilter         = Parameter("filter",         Dash::Yes, kText, "filter table output");

// ---- Commands --------------------------------------------------------------------------------

using Children = const KeywordNode* const[];

constexpr Children kHelpChildren    = {&kAnyCommand};
constexpr Children kServiceChildren = {&kStart, &kStop, &kRestart};
constexpr Children kImportChildren  = {&kJ, &kM, &kS, &kRepeat};
constexpr Children kExportChildren  = {&kJ, &kM, &kS, &kV, &kRepeat};
constexpr Children kScanChildren    = {&kJ, &kM, &kS, &kV};
constexpr Children kFormatChildren  = {&kJ, &kM, &kS, &kSideA, &kSideB, &kV, &kLabel, &kErase, &kCertify, &kSequential, &kFinalize};
constexpr Children kAbleChildren    = {&kJ, &kM, &kD, &kS, &kV};
constexpr Children kNameChildren    = {&kJ, &kV, &kNewName};
constexpr Children kQueryChildren   = {&kJ, &kM, &kS, &kSideA, &kSideB, &kD, &kV, &kColumns, &kSort, &kWidth, &kNotable, &kSeparator,
                                       &kJukeboxes, &kMagazines, &kDrives, &kSlots, &kVolumes};
constexpr Children kDeleteChildren  = {&kV};

constexpr string_view kTiedToHelp[]    = {"help"};
constexpr string_view kTiedToService[] = {"service"};
constexpr string_view kTiedToImport[]  = {"import"};
constexpr string_view kTiedToExport[]  = {"export"};
constexpr string_view kTiedToScan[]    = {"scan"};
constexpr string_view kTiedToFormat[]  = {"format"};
constexpr string_view kTiedToEnable[]  = {"enable"};
constexpr string_view kTiedToDisable[] = {"disable"};
constexpr string_view kTiedToName[]    = {"name"};
constexpr string_view kTiedToQuery[]   = {"query"};
constexpr string_view kTiedToDelete[]  = {"delete"};

constexpr KeywordNode kHelp         = Command("help",    Dash::No,  kTiedToHelp,    kHelpChildren,    "usage/help output");
constexpr KeywordNode kQuestionMark = Command("?",       Dash::Yes, kEmptyConflict, {},               "usage/help output");
constexpr KeywordNode kService      = Command("service", Dash::No,  kTiedToService, kServiceChildren, "start/stop/restart the [ProductName] service");
constexpr KeywordNode kImport       = Command("import",  Dash::No,  kTiedToExport,  kImportChildren,  "import one or more media");
constexpr KeywordNode kExport       = Command("export",  Dash::No,  kTiedToImport,  kExportChildren,  "export one or more media");
constexpr KeywordNode kScan         = Command("scan",    Dash::No,  kTiedToScan,    kScanChildren,    "rescan one or more slots");
constexpr KeywordNode kFormat       = Command("format",  Dash::No,  kTiedToFormat,  kFormatChildren,  "erase/format/finalize one or more volumes");
constexpr KeywordNode kEnable       = Command("enable",  Dash::No,  kTiedToEnable,  kAbleChildren,    "enable jukeboxes, magazines, drives or volumes");
constexpr KeywordNode kDisable      = Command("disable", Dash::No,  kTiedToDisable, kAbleChildren,    "disable jukeboxes, magazines, drives or volumes");
constexpr KeywordNode kName         = Command("name",    Dash::No,  kTiedToName,    kNameChildren,    "rename jukebox or set the directory name for volumes");
constexpr KeywordNode kQuery        = Command("query",   Dash::No,  kTiedToQuery,   kQueryChildren,   "query information");
constexpr KeywordNode kDelete       = Command("delete",  Dash::No,  kTiedToDelete,  kDeleteChildren,  "remove offline volumes from database");

constexpr const KeywordNode* kTopLevel[] = {&kQuiet, &kServer, &kHelp, &kQuestionMark, &kService, &kImport, &kExport,
                                            &kScan, &kFormat, &kEnable, &kDisable, &kName, &kQuery};

constexpr const KeywordNode* kUnreachable[] = {&kYes, &kRescan, &kConfiguration, &kDetectSequence, &kFilter};
// clang-format on

}  // namespace

KeywordNode::Table CommandGrammar::TopLevel() {
    return kTopLevel;
}

const KeywordNode& CommandGrammar::Delete() {
    return kDelete;
}

KeywordNode::Table CommandGrammar::Unreachable() {
    return kUnreachable;
}

}  // namespace krvcmd
