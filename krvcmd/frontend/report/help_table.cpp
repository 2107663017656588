#include "krvcmd/frontend/report/help_table.h"

#include <array>
#include <cstddef>

#include "krvcmd/frontend/grammar/command_grammar.h"

// Scripts and manuals quote these texts: "one ore more" and the "media to import" of export stay as they are.

namespace krvcmd {

namespace help_text {

constexpr std::string_view kUsage = "[CmdLine] [<common options>] [<command> [<parameter>]]\n";

constexpr std::string_view kIntroduction =
    "\n"
    "This is the command line interface to the [ProductName] service. It can be used to "
    "import, export and format media and to query information about media managed by "
    "[ProductName].\n"
    "\n"
    "Jukeboxes and volumes can be addressed using their unique ID. When specifying an ID it "
    "must be prepended using the @-sign. Additionally, jukeboxes can be addressed using "
    "their name and volumes can be addressed by their location (jukebox, magazine, slot, "
    "side).\n"
    "Magazines, slots and drives will be addressed by their number starting with 1. Slots "
    "can be specified using either the number within the jukebox or in the magazine, by "
    "specifying or omitting the magazine number.\n"
    "You can address multiple slots with one command by separating them with a comma or by "
    "specifying a range of slots: S1,5,7 or S1-5. You can omit the slot number to perform an "
    "operation for all slots in a magazine. Also, an operation will be performed for all "
    "slots in a jukebox, if you omit both, the magazine and the slot number.\n";

constexpr std::string_view kExamples =
    "\n"
    "Examples:\n"
    "J @11 M 3 S3-5\n"
    "J my_box M3 S 3\n"
    "J @11 S 33\n"
    "V @517\n"
    "\n";

constexpr std::string_view kAbbreviationNote =
    "All key words can be abbreviated as long as they remain unique. For example, you can "
    "specify 'juke' rather than 'jukebox', but you cannot use 'qu' for 'query' because it "
    "cannot be distinguished from 'quiet'.\n"
    "\n";

constexpr std::string_view kHelpOnHelp =
    "display all available commands and options:\n"
    "[CmdLine] help\n"
    "\n"
    "display detailed help for a command:\n"
    "[CmdLine] help <command>\n";

constexpr std::string_view kColumnIdentifiers =
    "Following column identifiers can be used to specify columns of the table and the sort order. "
    "For example, to display IDs, location and labels of all volumes, sorted by label and volumes "
    "with identical labels sorted by magazine/slot number:\n"
    "query volumes columns=ILl sort=lms\n"
    "\n"
    "and sorted in reverse order:\n"
    "query volumes columns=ILl sort=-lms\n"
    "\n";

}  // namespace help_text

namespace {

// The legend of the commands that take jukeboxes, slots and volumes.
constexpr std::string_view kItemLegend =
    "    <jukebox>: <name> | @<ID>\n"
    "    <volume>:  @<ID>\n"
    "    <nr>:      positive integer\n";

// ---- service -----------------------------------------------------------------------------

constexpr std::string_view kServiceDescription = "Start, stop or restart [ProductName] service.\n";

constexpr std::string_view kServiceSyntax =
    "    [CmdLine] service start\n"
    "    [CmdLine] service stop\n"
    "    [CmdLine] service restart\n";

constexpr std::string_view kServiceExample =
    "    [CmdLine] service start\n"
    "    [CmdLine] quiet server=my_server restart\n"
    "    [CmdLine] quiet server=\"sales server\" stop\n";

// ---- import ------------------------------------------------------------------------------

constexpr std::string_view kImportDescription =
    "Import one ore more media into the addressed jukebox, magazine or slot. Slots may be "
    "addressed by their absolute slot number omitting the magazine number. Jukeboxes without "
    "magazines use this addressing scheme. Note, that addressing slots by their absolute "
    "slot number fails in case magazines are not present. The parameter 'repeat' specifies "
    "the number of media to import. In case a magazine is addressed without the repeat "
    "parameter, a bulk import (with scanning) to the magazine is invoked.\n";

constexpr std::string_view kImportSyntax =
    "    [CmdLine] import J <jukebox> [M <nr> [S <nr>]] [repeat = <nr>]\n"
    "    [CmdLine] import J <jukebox> [S <nr>] [repeat = <nr>]\n";

constexpr std::string_view kImportLegend =
    "    <jukebox>: <name> | @<ID>\n"
    "    <nr>:      positive integer\n";

constexpr std::string_view kImportExample =
    "    [CmdLine] import J @29 M2 S 1 repeat=3\n"
    "    [CmdLine] quiet server=\"My Server\" import J my_box S1 repeat 3\n"
    "    [CmdLine] import J @29 M 2\n";

// ---- export ------------------------------------------------------------------------------

constexpr std::string_view kExportDescription =
    "Export one ore more media from the addressed jukebox, magazine or slot. Additionally, "
    "it's possible to specify a volume to be exported. Slots may be addressed by their "
    "absolute slot number omitting the magazine number. Jukeboxes without magazines use this "
    "addressing scheme. Note, that addressing slots by their absolute slot number fails in "
    "case magazines are not present. The parameter 'repeat' specifies the number of media to "
    "import. In case a magazine is addressed without the repeat parameter, a bulk export is "
    "invoked.\n";

constexpr std::string_view kExportSyntax =
    "    [CmdLine] export J <jukebox> [M <nr> [S <nr>]] [repeat = <nr>]\n"
    "    [CmdLine] export J <jukebox> [S <nr>] [repeat = <nr>]\n"
    "    [CmdLine] export V <volume>\n";

constexpr std::string_view kExportExample =
    "    [CmdLine] export J @29 M 2 S1 repeat 3\n"
    "    [CmdLine] quiet server \"My Server\" export J \"My Box\" S1 repeat=3\n"
    "    [CmdLine] export J @29 M2\n"
    "    [CmdLine] export V @33\n";

// ---- scan --------------------------------------------------------------------------------

constexpr std::string_view kScanDescription =
    "Scan one ore more media of the addressed jukebox, magazine or slot. Additionally, it's "
    "possible to specify a volume to be scanned. Slots may be addressed by their absolute "
    "slot number omitting the magazine number. Jukeboxes without magazines use this "
    "addressing scheme. Note, that addressing slots by their absolute slot number fails in "
    "case magazines are not present.\n";

constexpr std::string_view kScanSyntax =
    "    [CmdLine] scan J <jukebox> [M <nr> [S <nr>]]\n"
    "    [CmdLine] scan J <jukebox> [S <nr>]\n"
    "    [CmdLine] scan V <volume>\n";

constexpr std::string_view kScanExample =
    "    [CmdLine] scan J @29 M2 S1\n"
    "    [CmdLine] quiet server \"My Server\" scan J \"My Box\" S 1\n"
    "    [CmdLine] scan J @29 M2\n"
    "    [CmdLine] scan V @33\n";

// ---- format ------------------------------------------------------------------------------

constexpr std::string_view kFormatDescription =
    "Format one ore more media of the addressed jukebox, magazine or slot. Additionally, "
    "it's possible to specify a volume to be formatted. Slots may be addressed by their "
    "absolute slot number omitting the magazine number. Jukeboxes without magazines use this "
    "addressing scheme. Note, that addressing slots by their absolute slot number fails in "
    "case magazines are not present.\n"
    "By default, random access media (DVD-RAM, MO/RW, ...) will be formatted using a random "
    "access file system. The option sequential can be used to format these media using a "
    "sequential/write-once file system.\n"
    "The option finalize can be specified to finalize and close media which have been "
    "formatted with a sequential file system.\n"
    "When specifying erase the volume will only be erased and not formatted with a file "
    "system.\n";

constexpr std::string_view kFormatSyntax =
    "    [CmdLine] format J <jukebox> [M <nr>] [S <nr>] erase\n"
    "    [CmdLine] format J <jukebox> [M <nr>] [S <nr>] finalize\n"
    "    [CmdLine] format J <jukebox> [M <nr>] [S <nr> [.A | .B]] \n"
    "        [label=<label>] [certify] [sequential]\n"
    "    [CmdLine] format V <volume>\n";

constexpr std::string_view kFormatLegend =
    "    <jukebox>: <name> | @<ID>\n"
    "    <volume>:  @<ID>\n"
    "    <nr>:      positive integer\n"
    "    <label>:   string\n";

constexpr std::string_view kFormatExample =
    "    [CmdLine] server MyServer format V@33 label=\"Sales 2005\"\n";

// ---- enable ------------------------------------------------------------------------------

constexpr std::string_view kEnableDescription =
    "Following items may be enabled: Jukeboxes, magazines, drives or volumes. In case a slot "
    "is addressed, the volume(s) within the slot is enabled.\n";

constexpr std::string_view kEnableSyntax =
    "    [CmdLine] enable J <jukebox> [M <nr> [S <nr>]]\n"
    "    [CmdLine] enable J <jukebox> [S <nr>]\n"
    "    [CmdLine] enable D <nr>\n"
    "    [CmdLine] enable V <volume>\n";

constexpr std::string_view kEnableExample = "    [CmdLine] enable J @31\n";

// ---- disable -----------------------------------------------------------------------------

constexpr std::string_view kDisableDescription =
    "Following items may be disabled: Jukeboxes, magazines, drives or volumes. In case a "
    "slot is addressed, the volume(s) within the slot is disabled.\n";

constexpr std::string_view kDisableSyntax =
    "    [CmdLine] disable J <jukebox> [M <nr> [S <nr>]]\n"
    "    [CmdLine] disable J <jukebox> [S <nr>]\n"
    "    [CmdLine] disable D <nr>\n"
    "    [CmdLine] disable V <volume>\n";

constexpr std::string_view kDisableExample = "    [CmdLine] disable J @31\n";

// ---- name --------------------------------------------------------------------------------

constexpr std::string_view kNameDescription =
    "The name of jukeboxes or volumes may be renamed. Renaming a volume causes the file "
    "system to modify the path the volume is visible under.\n";

constexpr std::string_view kNameSyntax =
    "    [CmdLine] name J <jukebox> <new_name>\n"
    "    [CmdLine] name V <volume> <new_name>\n";

constexpr std::string_view kNameLegend =
    "    <jukebox>:  <name> | @<ID>\n"
    "    <volume>:   @<ID>\n"
    "    <new_name>: string\n";

constexpr std::string_view kNameExample =
    "    [CmdLine] name J @31 \"My New Jukebox Name\"\n"
    "    [CmdLine] name V @273 \"dir1/volume273\"\n";

// ---- query -------------------------------------------------------------------------------

constexpr std::string_view kQueryDescription =
    "Query information about jukeboxes, magazines, slots, drives or volumes.\n";

constexpr std::string_view kQuerySyntax =
    "    [CmdLine] query jukeboxes [J <jukebox>]\n"
    "    [CmdLine] query magazines [J <jukebox> [M <nr>]]\n"
    "    [CmdLine] query drives [J <jukebox>]\n"
    "    [CmdLine] query slots [J <jukebox> [M <nr> [S <nr> [.A|.B]]] | [S <nr> [.A|.B]]]\n"
    "    [CmdLine] query volumes [J <jukebox> [M <nr> [S <nr> [.A|.B]]] | [S <nr> [.A|.B]]]\n"
    "         [columns=<col>] [sort=<sort>] [width=<nr>] [notable] [separator=<sep>]\n";

constexpr std::string_view kQueryLegend =
    "    <jukebox>:  <name> | @<ID>\n"
    "    <nr>:       positive integer\n"
    "    <volume>:   @<ID>\n"
    "    <col>:      string\n"
    "    <sort>:     string\n"
    "    <sep>:      string\n";

constexpr std::string_view kQueryExample =
    "    [CmdLine] query volumes col=ILl sort=lms\n"
    "    [CmdLine] query drives J@8\n"
    "    [CmdLine] query magazine J@8 M1\n"
    "    [CmdLine] query slots J@8 M1 sort=-sa\n"
    "    [CmdLine] query volumes J MyBox M1 col=ILl sort=lms sep=,\n";

// ---- The table -----------------------------------------------------------------------------

// The options and "help" itself are skipped: no word selects them.
enum class Node { Skipped, OfTopLevelTable };

struct EntryTexts {
    Node node = Node::Skipped;
    std::string_view description;
    std::string_view syntax;
    std::string_view legend;
    std::string_view example;
};

// In the order of the grammar's top-level table.
constexpr EntryTexts kTexts[] = {
    /* quiet   */ {},
    /* server  */ {},
    /* help    */ {Node::Skipped, "usage/help output", {}, {}, {}},
    /* ?       */ {Node::OfTopLevelTable, "usage/help output", {}, {}, {}},
    /* service */ {Node::OfTopLevelTable, kServiceDescription, kServiceSyntax, {}, kServiceExample},
    /* import  */ {Node::OfTopLevelTable, kImportDescription, kImportSyntax, kImportLegend, kImportExample},
    /* export  */ {Node::OfTopLevelTable, kExportDescription, kExportSyntax, kItemLegend, kExportExample},
    /* scan    */ {Node::OfTopLevelTable, kScanDescription, kScanSyntax, kItemLegend, kScanExample},
    /* format  */ {Node::OfTopLevelTable, kFormatDescription, kFormatSyntax, kFormatLegend, kFormatExample},
    /* enable  */ {Node::OfTopLevelTable, kEnableDescription, kEnableSyntax, kItemLegend, kEnableExample},
    /* disable */ {Node::OfTopLevelTable, kDisableDescription, kDisableSyntax, kItemLegend, kDisableExample},
    /* name    */ {Node::OfTopLevelTable, kNameDescription, kNameSyntax, kNameLegend, kNameExample},
    /* query   */ {Node::OfTopLevelTable, kQueryDescription, kQuerySyntax, kQueryLegend, kQueryExample},
};

std::array<HelpEntry, std::size(kTexts)> JoinWithGrammar() {
    std::array<HelpEntry, std::size(kTexts)> entries;
    const KeywordNode::Table topLevel = CommandGrammar::TopLevel();
    for (size_t i = 0; i < entries.size(); ++i) {
        const EntryTexts& texts = kTexts[i];
        const KeywordNode* node = texts.node == Node::OfTopLevelTable ? topLevel[i] : nullptr;
        entries[i] = {node, texts.description, texts.syntax, texts.legend, texts.example};
    }
    return entries;
}

}  // namespace

std::span<const HelpEntry> HelpTable() {
    static const std::array<HelpEntry, std::size(kTexts)> entries = JoinWithGrammar();
    return entries;
}

}  // namespace krvcmd
