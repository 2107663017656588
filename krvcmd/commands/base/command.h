#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "krvcmd/console/writer/output_object.h"
#include "krvcmd/frontend/base/status.h"
#include "krvcmd/frontend/parsing/item_address.h"
#include "krvcmd/frontend/parsing/parameter_list.h"

namespace krvcmd {

// What all commands share: the common options, the addressed items, and the fixed order of parsing, session
// and work. A command never prints its own success or failure: it returns a Status, which the driver reports.
class CCommand {
  public:
    CCommand() = default;
    CCommand(const CCommand&) = delete;
    CCommand& operator=(const CCommand&) = delete;
    virtual ~CCommand() = default;

    // Reads the command's own options from the parameters into members.
    virtual Status ParseOptions();

    // The command's work, called with the session open.
    virtual Status Run();

    // Opens the session, prints the banner, calls Run, and closes the session whatever happened.
    // Called at most once, after a successful Initialize.
    virtual Status Execute();

    // A hook without effect in every class.
    virtual void Validate();

    // Calls Validate.
    virtual void AfterParse();

    // Takes over the parsed line and the writer of the run; all three must outlive the command. System error
    // 22 for an option that is no common option, or for an address that addresses nothing.
    Status Initialize(const std::vector<Parameter>& options, const std::vector<Parameter>& parameters,
                      Ostrel::UI::Console::COutputObject& writer);

    // The look-ups below search the parameters for a keyword as the grammar spells it. The last match counts;
    // without one a Status is system error 2.

    // The first number of the match; `value` stays as it is without one.
    Status GetIntParameter(std::string_view name, int32_t& value) const;

    bool HasParameter(std::string_view name) const;

    // The text of the match and whether there is one; an empty text without one. An empty name matches the
    // free-text parameter, whose keyword begins with "<".
    Status GetStringParameter(std::string_view name, std::string& value, bool& given) const;

  protected:
    const std::vector<Parameter>& Parameters() const { return *m_parameters; }
    AddressKind Kind() const { return m_addressKind; }
    const ItemAddressList& Addresses() const { return m_addresses; }
    Ostrel::UI::Console::COutputObject& Writer() const { return *m_writer; }

    // The value of the "server" option, else "." (the local machine).
    std::string ServerName() const { return m_hasServer ? m_serverName : "."; }

    // Opens the session on the server that the line names.
    Status StartSession() const;

    // All of Execute that follows the session attempt, whose result is `started`: banner, Run, and closing
    // the session, also one that was not opened.
    Status RunAndClose(Status started);

    // Finds the jukebox that the first entry names; it serves for all entries. A volume address
    // names none: success, and `jukeboxId` is -1. The address must not be empty.
    Status ResolveAddressedJukebox(int32_t& jukeboxId) const;

    // True when the line addresses nothing, or only with reversed ranges.
    bool AddressesNothing() const { return m_addressKind == AddressKind::None || m_addresses.IsEmpty(); }

  private:
    Status ParseCommonOptions();

    // Sets the quiet banner flag when the option was given, then prints the banner.
    Status StartOutput() const;

    // Calls Run, with memory that runs out turned into a Status and an interruption into system error 4.
    // `banner` is the result of StartOutput: the work is done although the banner could not be written, but
    // not when there was no memory for it.
    Status RunGuarded(const Status& banner);

    const std::vector<Parameter>* m_options = nullptr;
    const std::vector<Parameter>* m_parameters = nullptr;
    Ostrel::UI::Console::COutputObject* m_writer = nullptr;
    bool m_quiet = false;
    bool m_yes = false;  // recorded; no command reads it
    bool m_hasServer = false;
    std::string m_serverName;
    AddressKind m_addressKind = AddressKind::None;
    ItemAddressList m_addresses;
};

}  // namespace krvcmd
