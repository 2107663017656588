#include "embedded/attached/changer/inventory.h"

#include <array>
#include <nlohmann/json.hpp>

#include "embedded/attached/base/device_text.h"
#include "embedded/attached/device/identity.h"
#include "embedded/attached/scsi/sense.h"
#include "embedded/attached/transport/open_transport.h"
#include "tools/common/plain_text.h"
#include "tools/krvadm/attached_server.h"
#include "tools/krvadm/common_options.h"
#include "tools/krvadm/credentials.h"

namespace embedded::tools {
namespace {

using attached::Element;
using attached::Inventory;
using nlohmann::ordered_json;

struct InventoryOptions {
    std::string address;  // /dev/sgN or iscsi://HOST:PORT/TARGET/LUN
    std::string server;   // instead of an address
    std::string jukebox;  // of the server; empty: all of them
    std::string credentials;
    OutputForm form = OutputForm::Table;
};

Inventory Read(const InventoryOptions& options) {
    auto transport = attached::OpenTransport(options.address, ReadCredentials(options.credentials));
    if (!transport) throw ToolFailure(transport.GetError().text);
    attached::Device device(std::move(*transport), options.address);
    const auto identity = attached::ReadIdentity(device);
    if (!identity) throw ToolFailure(identity.GetError().text);
    if (identity->inquiry.type != attached::DeviceType::Changer || identity->inquiry.qualifier != 0) {
        throw ToolFailure(options.address + " is no changer");
    }
    const auto geometry = attached::ReadGeometry(device);
    if (!geometry) throw ToolFailure(geometry.GetError().text);
    auto inventory = attached::ReadInventory(device, *geometry);
    if (!inventory) throw ToolFailure(inventory.GetError().text);
    return std::move(*inventory);
}

// The elements that media are put into; pickers hold one during a move only, and when something went wrong.
std::vector<const Element*> InOrder(const Inventory& inventory) {
    std::vector<const Element*> elements;
    for (const Element& picker : inventory.pickers) {
        if (picker.isFull || picker.isException) elements.push_back(&picker);
    }
    for (const auto* part : {&inventory.mailSlots, &inventory.drives, &inventory.slots}) {
        for (const Element& element : *part)
            elements.push_back(&element);
    }
    return elements;
}

std::string RemarkOf(const Element& element) {
    if (!element.isException) return "";
    // The codes are those of sense data, whose key is that of a device that is not ready.
    return attached::SenseSentence("it", {attached::sense_key::kNotReady, element.asc, element.ascq});
}

void WriteTable(const Inventory& inventory, std::ostream& out) {
    TextTable table({"Element", "Kind", "State", "Volume tag", "Came from", "Remark"});
    for (const Element* element : InOrder(inventory)) {
        table.Add({std::to_string(element->address), NameOf(element->type),
                   element->isFull ? "full" : "empty",
                   element->volumeTag.empty() ? "-" : attached::Printable(element->volumeTag),
                   element->source && element->isFull ? std::to_string(*element->source) : "-",
                   RemarkOf(*element)});
    }
    table.Write(out);
}

void WriteJson(const Inventory& inventory, std::ostream& out) {
    ordered_json json = ordered_json::array();
    for (const Element* element : InOrder(inventory)) {
        ordered_json row = {{"element", element->address},
                            {"kind", NameOf(element->type)},
                            {"full", element->isFull},
                            {"volumeTag", attached::Printable(element->volumeTag)}};
        if (element->source && element->isFull) row["cameFrom"] = *element->source;
        if (element->isException) row["remark"] = RemarkOf(*element);
        json.push_back(std::move(row));
    }
    out << json.dump(2) << '\n';
}

// The changers look at their elements again, barcodes included, and the catalogue follows.
void RenewCatalogue(const InventoryOptions& options, const Streams& streams) {
    AttachedServer server(options.server);
    for (const int32_t jukebox : server.FindJukeboxes(options.jukebox)) {
        server.GetFarm().TakeInventory(jukebox);
        int64_t media = 0;
        for (const ElementState& element : server.GetFarm().Open(jukebox).LookAtElements())
            media += element.isFull ? 1 : 0;
        streams.out << "Jukebox " << jukebox << " has " << Counted(media, "medium", "media") << ".\n";
    }
}

void ShowInventory(const InventoryOptions& options, const Streams& streams) {
    if (!options.server.empty()) return RenewCatalogue(options, streams);
    const Inventory inventory = Read(options);
    if (options.form == OutputForm::Json) {
        WriteJson(inventory, streams.out);
    } else {
        WriteTable(inventory, streams.out);
    }
}

}  // namespace

void AddInventory(CommandLine& line) {
    const auto [app, options] = line.Add(line.GetTool(), "inventory",
                                         "Show what a changer holds, or make it look again.", ShowInventory);
    CLI::Option* address =
        app.add_option("ADDRESS", options.address, "/dev/sgN or iscsi://HOST:PORT/TARGET/LUN");
    CLI::Option* server = app.add_option(
        "--server", options.server,
        "make the jukeboxes of this server look at their elements again, and bring its catalogue up to date");
    server->excludes(address);
    app.add_option("--jukebox,-J", options.jukebox, "only this jukebox, by name or as @ID")->needs(server);
    app.parse_complete_callback([address, server] {
        if (address->empty() && server->empty()) throw CLI::RequiredError("ADDRESS or --server");
    });
    AddCredentials(app, options.credentials);
    AddOutputForm(app, options.form);
}

}  // namespace embedded::tools
