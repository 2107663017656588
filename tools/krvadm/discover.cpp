#include "embedded/attached/discovery/discovery.h"

#include <nlohmann/json.hpp>

#include "embedded/attached/base/device_text.h"
#include "embedded/attached/discovery/drive_loading.h"
#include "embedded/attached/discovery/portal.h"
#include "embedded/attached/discovery/sysfs.h"
#include "embedded/attached/transport/open_transport.h"
#include "tools/common/plain_text.h"
#include "tools/krvadm/common_options.h"
#include "tools/krvadm/credentials.h"

namespace embedded::tools {
namespace {

using attached::ElementRange;
using attached::Evidence;
using attached::Findings;
using attached::FoundChanger;
using attached::FoundDevice;
using attached::FoundDriveElement;
using nlohmann::ordered_json;

struct Surroundings {
    std::vector<attached::Place> places;
    std::vector<attached::Error> problems;
};

Surroundings PlacesAt(const std::string& text, const attached::IscsiLogin& login) {
    const auto portal = attached::ParseIscsiPortal(text);
    if (!portal) throw UsageFailure("--portal: " + portal.GetError().text);
    auto units = attached::ListPortalUnits(*portal, login, attached::IscsiLimits());
    if (!units) throw ToolFailure(units.GetError().text);
    Surroundings found;
    found.problems = std::move(units->problems);
    for (const attached::IscsiAddress& unit : units->units)
        found.places.push_back({unit.GetText(), ""});
    return found;
}

Surroundings PlacesHere(const std::filesystem::path& sysfs) {
    Surroundings found;
    for (const attached::LocalDevice& device : attached::ListLocalDevices(sysfs)) {
        found.places.push_back({device.address, device.blockNode});
    }
    return found;
}

std::string OrDash(const std::string& text) {
    return text.empty() ? "-" : attached::Printable(text);
}

// "/dev/sg3, /dev/sr0".
std::string PlaceText(const attached::Place& place) {
    return place.blockNode.empty() ? place.address : place.address + ", " + place.blockNode;
}

// "8 (1024 to 1031)".
std::string RangeText(const ElementRange& range) {
    if (range.count == 0) return "none";
    const std::string count = std::to_string(range.count) + " (" + std::to_string(range.first);
    return count + (range.count == 1 ? "" : " to " + std::to_string(range.first + range.count - 1)) + ")";
}

// The addresses of a drive stand on lines of their own: an iSCSI address may be as long as a line.
void WriteDrives(const FoundChanger& changer, std::ostream& out) {
    TextTable table({"  Drive", "Model", "Serial number", "Known by"});
    for (const FoundDriveElement& drive : changer.drives) {
        const std::string element = "  " + std::to_string(drive.element.address);
        if (drive.drives.empty()) {
            table.Add({element, "not found", "-", "-"});
            continue;
        }
        const FoundDevice& device = drive.drives.front();
        table.Add({element, OrDash(device.identity.GetModel()), OrDash(device.identity.serialNumber),
                   NameOf(drive.evidence)});
    }
    table.Write(out);
    for (const FoundDriveElement& drive : changer.drives) {
        for (const FoundDevice& device : drive.drives) {
            out << "  Drive " << drive.element.address << " is " << PlaceText(device.place) << '\n';
        }
    }
}

void WriteChanger(const FoundChanger& changer, std::ostream& out) {
    const attached::ElementAddresses& addresses = changer.geometry.addresses;
    out << "Changer " << PlaceText(changer.device.place) << '\n'
        << "  Model          " << OrDash(changer.device.identity.GetModel()) << '\n'
        << "  Serial number  " << OrDash(changer.device.identity.serialNumber) << '\n'
        << "  Slots          " << RangeText(addresses.slots) << '\n'
        << "  Mail slots     " << RangeText(addresses.mailSlots) << '\n'
        << "  Drives         " << RangeText(addresses.drives) << '\n'
        << "  Turns media    " << (changer.geometry.turnsMedia ? "yes" : "no") << '\n';
    if (!changer.drives.empty()) WriteDrives(changer, out);
}

void WriteTable(const Findings& findings, std::ostream& out) {
    if (findings.changers.empty()) out << "No changer was found.\n";
    for (const FoundChanger& changer : findings.changers) {
        if (&changer != &findings.changers.front()) out << '\n';
        WriteChanger(changer, out);
    }
    if (findings.loneDrives.empty()) return;
    out << "\nDrives that no changer names:\n";
    for (const FoundDevice& drive : findings.loneDrives) {
        out << "  " << PlaceText(drive.place) << ": " << OrDash(drive.identity.GetModel())
            << ", serial number " << OrDash(drive.identity.serialNumber) << '\n';
    }
}

ordered_json ToJson(const FoundDevice& device) {
    ordered_json json = {{"address", device.place.address}};
    if (!device.place.blockNode.empty()) json["blockDevice"] = device.place.blockNode;
    json["vendor"] = attached::Printable(device.identity.inquiry.vendor);
    json["product"] = attached::Printable(device.identity.inquiry.product);
    json["revision"] = attached::Printable(device.identity.inquiry.revision);
    json["serialNumber"] = attached::Printable(device.identity.serialNumber);
    return json;
}

ordered_json ToJson(const ElementRange& range) {
    return {{"first", range.first}, {"count", range.count}};
}

ordered_json ToJson(const FoundChanger& changer) {
    ordered_json json = ToJson(changer.device);
    const attached::ElementAddresses& addresses = changer.geometry.addresses;
    json["elements"] = {{"slots", ToJson(addresses.slots)},
                        {"drives", ToJson(addresses.drives)},
                        {"mailSlots", ToJson(addresses.mailSlots)},
                        {"pickers", ToJson(addresses.pickers)}};
    json["turnsMedia"] = changer.geometry.turnsMedia;
    json["drives"] = ordered_json::array();
    for (const FoundDriveElement& drive : changer.drives) {
        ordered_json devices = ordered_json::array();
        for (const FoundDevice& device : drive.drives)
            devices.push_back(ToJson(device));
        json["drives"].push_back({{"element", drive.element.address},
                                  {"knownBy", drive.evidence == Evidence::None ? "" : NameOf(drive.evidence)},
                                  {"devices", devices}});
    }
    return json;
}

void WriteJson(const Findings& findings, std::ostream& out) {
    ordered_json json = {{"changers", ordered_json::array()}, {"otherDrives", ordered_json::array()}};
    for (const FoundChanger& changer : findings.changers)
        json["changers"].push_back(ToJson(changer));
    for (const FoundDevice& drive : findings.loneDrives)
        json["otherDrives"].push_back(ToJson(drive));
    out << json.dump(2) << '\n';
}

// What could be found is shown even when a part could not be asked.
void ThrowProblems(const std::vector<attached::Error>& problems) {
    if (problems.empty()) return;
    std::string text;
    for (const attached::Error& problem : problems)
        text += problem.text + '\n';
    throw ToolFailure(text + "not every device could be asked");
}

}  // namespace

void Discover(const DiscoverOptions& options, const Streams& streams) {
    const attached::IscsiLogin login = ReadCredentials(options.credentials);
    Surroundings around =
        options.portal.empty() ? PlacesHere(options.sysfs) : PlacesAt(options.portal, login);
    const auto open = [&login](const std::string& address) {
        return attached::OpenTransport(address, login);
    };
    Findings findings = attached::Discover(around.places, open);
    if (options.loadsDiscs) {
        for (FoundChanger& changer : findings.changers) {
            const auto found = attached::FindDrivesByLoading(findings, changer, open);
            if (!found) findings.problems.push_back(found.GetError());
        }
    }
    if (options.form == OutputForm::Json) {
        WriteJson(findings, streams.out);
    } else {
        WriteTable(findings, streams.out);
    }
    around.problems.insert(around.problems.end(), findings.problems.begin(), findings.problems.end());
    ThrowProblems(around.problems);
}

void AddDiscover(CommandLine& line) {
    const auto [app, options] =
        line.Add(line.GetTool(), "discover", "Find changers, and which drives belong to them.", Discover);
    app.add_option("--portal", options.portal,
                   "look at this iSCSI portal, HOST[:PORT], instead of this machine's devices");
    AddLoading(app, options.loadsDiscs);
    AddCredentials(app, options.credentials);
    AddOutputForm(app, options.form);
}

}  // namespace embedded::tools
