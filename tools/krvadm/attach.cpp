#include <algorithm>
#include <deque>
#include <filesystem>
#include <random>

#include "embedded/attached/base/device_text.h"
#include "embedded/attached/discovery/discovery.h"
#include "embedded/attached/discovery/drive_loading.h"
#include "embedded/attached/discovery/portal.h"
#include "embedded/attached/discovery/sysfs.h"
#include "embedded/attached/transport/open_transport.h"
#include "embedded/catalogue/attachment.h"
#include "embedded/farms/farm_writer.h"
#include "embedded/farms/servers.h"
#include "embedded/store/farm_file.h"
#include "embedded/store/statement.h"
#include "krvcmd/service/sdk/krv_sdk.h"
#include "tools/common/plain_text.h"
#include "tools/krvadm/attached_server.h"
#include "tools/krvadm/common_options.h"
#include "tools/krvadm/credentials.h"
#include "tools/krvadm/limits.h"
#include "tools/krvadm/magazines.h"

namespace embedded::tools {
namespace {

using attached::ElementRange;
using attached::FoundChanger;
using attached::FoundDevice;
using attached::FoundDriveElement;

struct AttachOptions {
    std::string server;
    std::string changer;
    std::vector<std::string> drives;
    std::string magazines;
    std::string name;
    std::string credentials;
    bool loadsDiscs = false;
    std::vector<std::string> limits;  // NAME=SECONDS
};

struct DetachOptions {
    std::string server;
    std::string jukebox;
};

constexpr size_t kMaxName = sizeof(JukeboxRecord::name) - 1;
constexpr size_t kVendor = 8;
constexpr size_t kProduct = 16;
constexpr size_t kRevision = 4;

// Where the drives of a changer may be, when nobody says it: behind the same portal, or at this machine.
std::vector<attached::Place> PlacesAround(const std::string& changer, const attached::IscsiLogin& login) {
    std::vector<attached::Place> places;
    if (!changer.starts_with("iscsi:")) {
        for (const attached::LocalDevice& device : attached::ListLocalDevices("/sys"))
            places.push_back({device.address, device.blockNode});
        return places;
    }
    const auto address = attached::ParseIscsiAddress(changer);
    if (!address) throw UsageFailure("--changer: " + address.GetError().text);
    const auto units = attached::ListPortalUnits(address->portal, login, attached::IscsiLimits());
    if (!units) throw ToolFailure(units.GetError().text);
    for (const attached::IscsiAddress& unit : units->units) {
        if (unit.target == address->target) places.push_back({unit.GetText(), ""});
    }
    return places;
}

// The changer and the drives that belong to it.
FoundChanger Examine(const AttachOptions& options, const attached::IscsiLogin& login) {
    std::vector<attached::Place> places;
    if (options.drives.empty()) {
        places = PlacesAround(options.changer, login);
    } else {
        for (const std::string& drive : options.drives)
            places.push_back({drive, ""});
    }
    std::erase_if(places, [&](const attached::Place& place) { return place.address == options.changer; });
    places.insert(places.begin(), {options.changer, ""});
    const auto open = [&login](const std::string& address) {
        return attached::OpenTransport(address, login);
    };
    attached::Findings findings = attached::Discover(places, open);
    const auto changer = std::ranges::find_if(findings.changers, [&](const FoundChanger& found) {
        return found.device.place.address == options.changer;
    });
    if (!findings.problems.empty() && (changer == findings.changers.end() || !options.drives.empty())) {
        throw ToolFailure(findings.problems.front().text);
    }
    if (changer == findings.changers.end()) throw ToolFailure(options.changer + " is no changer");
    if (options.loadsDiscs) {
        const TimeLimits limits = WithLimits(TimeLimits(), options.limits);
        const auto found =
            attached::FindDrivesByLoading(findings, *changer, open, {limits.move, limits.ready});
        if (!found) throw ToolFailure(found.GetError().text);
    }
    // Drives that nothing tells apart are taken in the order in which they were given.
    if (options.drives.empty()) return std::move(*changer);
    for (FoundDriveElement& element : changer->drives) {
        if (!element.drives.empty() || findings.loneDrives.empty()) continue;
        element.drives.push_back(findings.loneDrives.front());
        findings.loneDrives.erase(findings.loneDrives.begin());
    }
    return std::move(*changer);
}

FarmDevice DeviceOf(const FoundDevice& device) {
    const auto& inquiry = device.identity.inquiry;
    return {attached::Printable(inquiry.vendor).substr(0, kVendor),
            attached::Printable(inquiry.product).substr(0, kProduct),
            attached::Printable(inquiry.revision).substr(0, kRevision),
            {0, 0, 0}};
}

// Other hosts have other keys; 0 would be none.
int64_t NewReservationKey() {
    std::random_device random;
    std::uniform_int_distribution<int64_t> keys(1);
    return keys(random);
}

// What is going to be in the catalogue.
struct Attachment {
    FarmJukebox jukebox;
    JukeboxAddress address;
    ElementMap elements;
};

std::vector<uint16_t> AddressesIn(const ElementRange& range) {
    std::vector<uint16_t> addresses;
    for (uint32_t i = 0; i < range.count; ++i)
        addresses.push_back(static_cast<uint16_t>(range.first + i));
    return addresses;
}

// With sizes, the magazines have all slots that the changer counts; without them, a magazine ends where the
// changer tells of no slot.
std::vector<std::vector<uint16_t>> MagazinesOf(const AttachOptions& options, const FoundChanger& changer,
                                               const attached::IscsiLogin& login) {
    const ElementRange& range = changer.geometry.addresses.slots;
    if (!options.magazines.empty())
        return DivideIntoMagazines(AddressesIn(range), ParseMagazines(options.magazines));
    auto transport = attached::OpenTransport(options.changer, login);
    if (!transport) throw ToolFailure(transport.GetError().text);
    attached::Device device(std::move(*transport), options.changer);
    const auto slots = attached::ReadElements(device, attached::ElementType::Slot, range);
    if (!slots) throw ToolFailure(slots.GetError().text);
    std::vector<uint16_t> addresses;
    for (const attached::Element& slot : *slots)
        addresses.push_back(slot.address);
    return DivideIntoMagazines(addresses, {});
}

Attachment Plan(const AttachOptions& options) {
    const std::string credentials =
        options.credentials.empty() ? "" : std::filesystem::absolute(options.credentials).string();
    const attached::IscsiLogin login = ReadCredentials(credentials);
    const FoundChanger changer = Examine(options, login);
    Attachment plan;
    plan.elements.pickers = AddressesIn(changer.geometry.addresses.pickers);
    plan.elements.mailSlots = AddressesIn(changer.geometry.addresses.mailSlots);
    plan.elements.magazines = MagazinesOf(options, changer, login);
    FarmJukebox& jukebox = plan.jukebox;
    jukebox.name =
        options.name.empty() ? attached::Printable(changer.device.identity.inquiry.product) : options.name;
    jukebox.doubleSided = changer.geometry.turnsMedia;
    jukebox.changer = DeviceOf(changer.device);
    plan.address.name = jukebox.name;
    plan.address.changer = {options.changer, changer.device.identity.serialNumber};
    plan.address.credentials = credentials;
    plan.address.reservationKey = NewReservationKey();
    plan.address.limits = WithLimits(TimeLimits(), options.limits);
    for (const auto& slots : plan.elements.magazines) {
        FarmMagazine& magazine = jukebox.magazines.emplace_back();
        magazine.slotCount = static_cast<int32_t>(slots.size());
    }
    for (const FoundDriveElement& element : changer.drives) {
        plan.elements.drives.push_back(element.element.address);
        FarmDrive& drive = jukebox.drives.emplace_back();
        DeviceAddress& address = plan.address.drives.emplace_back();
        if (element.drives.empty()) continue;
        const FoundDevice& found = element.drives.front();
        drive.device = DeviceOf(found);
        address = {found.place.address, found.identity.serialNumber};
    }
    return plan;
}

void AddToCatalogue(Database& database, const Attachment& plan, FarmWriter& writer) {
    FarmJukebox jukebox = plan.jukebox;
    jukebox.id = FindValue<int32_t>(database, "SELECT max(id) + 1 FROM jukebox").value_or(1);
    if (FindValue<int32_t>(database, "SELECT id FROM jukebox WHERE name = ?1", jukebox.name)) {
        throw ToolFailure("there is a jukebox \"" + jukebox.name + "\" already; choose another --name");
    }
    if (FindValue<int32_t>(database, "SELECT jukebox FROM changer WHERE address = ?1",
                           plan.address.changer.address)) {
        throw ToolFailure(plan.address.changer.address + " is attached already");
    }
    writer.AddJukebox(jukebox);
    RecordAttachment(database, jukebox.id, plan.address, plan.elements);
}

void WriteAttachment(const AttachOptions& options, const Attachment& plan) {
    const bool isNew = CreateSharedFarm(options.server, [&](Database& database) {
        FarmWriter writer(database, options.server);
        AddToCatalogue(database, plan, writer);
        writer.Finish(true, 0);
    });
    if (isNew) return;
    const std::unique_ptr<Database> database = OpenServer(options.server);
    database->StartWaiting();
    InTransaction(*database, [&] {
        if (!FindValue<bool>(*database, "SELECT kind FROM server").value_or(false)) {
            throw ToolFailure("server \"" + options.server +
                              "\" has a simulated farm; choose another server");
        }
        FarmWriter writer(*database);
        AddToCatalogue(*database, plan, writer);
    });
}

void Attach(const AttachOptions& options, const Streams& streams) {
    if (options.name.size() > kMaxName) {
        throw UsageFailure("--name: has " + std::to_string(options.name.size()) + " bytes, at most " +
                           std::to_string(kMaxName) + " are allowed");
    }
    (void)WithLimits(TimeLimits(), options.limits);  // refused before anything is asked
    const Attachment plan = Plan(options);
    WriteAttachment(options, plan);
    AttachedServer(options.server).GetFarm().LookAtAll();
    size_t slots = 0;
    for (const auto& magazine : plan.elements.magazines)
        slots += magazine.size();
    streams.out << "Server \"" << options.server << "\" has jukebox \"" << plan.jukebox.name
                << "\": " << Counted(std::ssize(plan.elements.magazines), "magazine", "magazines") << ", "
                << Counted(static_cast<int64_t>(slots), "slot", "slots") << ", "
                << Counted(std::ssize(plan.elements.mailSlots), "mail slot", "mail slots") << ", "
                << Counted(std::ssize(plan.elements.drives), "drive", "drives") << ".\n";
    for (size_t i = 0; i < plan.address.drives.size(); ++i) {
        if (!plan.address.drives[i].address.empty()) continue;
        streams.err << "krvadm: warning: it is not known which device drive " << i + 1
                    << " is; attach the jukebox again with --drive to use it\n";
    }
}

void Detach(const DetachOptions& options, const Streams& streams) {
    AttachedServer server(options.server);
    const auto jukeboxes = server.FindJukeboxes(options.jukebox);
    Database& database = server.GetDatabase();
    std::deque<RobotLock> locks;
    for (const int32_t jukebox : jukeboxes) {
        if (!locks.emplace_back(database.GetFile(), jukebox).Try()) {
            throw ToolFailure("jukebox " + std::to_string(jukebox) + " is moving media; try again later");
        }
    }
    InTransaction(database, [&] {
        for (const int32_t jukebox : jukeboxes)
            RemoveAttachedJukebox(database, jukebox);
    });
    streams.out << "Detached " << Counted(std::ssize(jukeboxes), "jukebox", "jukeboxes")
                << "; the volumes stay in the catalogue.\n";
}

void AddAttachItself(CommandLine& line) {
    const auto [app, options] =
        line.Add(line.GetTool(), "attach", "Make a changer a jukebox of a server.", Attach);
    app.add_option("--server", options.server, "server; a new one, or one that has real jukeboxes")
        ->required();
    app.add_option("--changer", options.changer, "/dev/sgN or iscsi://HOST:PORT/TARGET/LUN")->required();
    app.add_option("--drive", options.drives,
                   "address of a drive; without it, the drives that the changer names are looked for")
        ->allow_extra_args(false)
        ->take_all();
    AddLoading(app, options.loadsDiscs);
    app.add_option(
        "--magazines", options.magazines,
        "magazines and their slots, such as 4x25; without it, gaps in the addresses of the slots tell");
    app.add_option("--name", options.name, "name of the jukebox; without it, that of its model");
    app.add_option("--limit", options.limits, "NAME=SECONDS, a time limit as krvadm limits shows them")
        ->allow_extra_args(false)
        ->take_all();
    AddCredentials(app, options.credentials);
}

void AddDetach(CommandLine& line) {
    const auto [app, options] =
        line.Add(line.GetTool(), "detach", "Take jukeboxes away from a server; volumes stay known.", Detach);
    app.add_option("--server", options.server, "server")->required();
    app.add_option("--jukebox,-J", options.jukebox, "only this jukebox, by name or as @ID");
}

}  // namespace

void AddAttach(CommandLine& line) {
    AddAttachItself(line);
    AddDetach(line);
}

}  // namespace embedded::tools
