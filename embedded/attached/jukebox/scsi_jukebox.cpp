#include "embedded/attached/jukebox/scsi_jukebox.h"

#include <algorithm>

#include "embedded/attached/base/device_text.h"
#include "embedded/attached/changer/changer_reservation.h"
#include "embedded/attached/changer/inventory.h"
#include "embedded/attached/device/identity.h"
#include "embedded/attached/disc/disc.h"
#include "embedded/attached/jukebox/credentials.h"
#include "embedded/attached/scsi/medium_control.h"
#include "embedded/attached/scsi/sense.h"
#include "embedded/attached/scsi/sense_meanings.h"
#include "embedded/attached/transport/open_transport.h"
#include "embedded/model/refusal.h"

namespace embedded::attached {
namespace {

[[noreturn]] void Throw(const Error& error) {
    throw Refuse(Code::DeviceTrouble, {error.text});
}

template <typename Value>
Value Required(Result<Value> result) {
    if (!result) Throw(result.GetError());
    return std::move(*result);
}

// /dev/sg3 may be another device after the next start of the machine.
void RequireSameDevice(Device& device, const DeviceAddress& expected) {
    const Identity identity = Required(ReadIdentity(device));
    if (expected.serialNumber.empty() || identity.serialNumber == expected.serialNumber) return;
    throw Refuse(Code::DeviceTrouble,
                 {device.GetName() + " is no longer at " + expected.address +
                  ": there is a device with the serial number \"" + Printable(identity.serialNumber) +
                  "\" instead of \"" + Printable(expected.serialNumber) + "\"; attach it again"});
}

DiscLimits DiscLimitsOf(const TimeLimits& limits) {
    DiscLimits disc;
    disc.ready = limits.ready;
    disc.look = limits.look;
    disc.read = limits.read;
    disc.write = limits.write;
    disc.synchronize = limits.flush;
    disc.close = limits.close;
    disc.blank = limits.blank;
    disc.format = limits.format;
    disc.standstill = limits.standstill;
    return disc;
}

ElementState StateOf(const Element& element) {
    ElementState state;
    state.kind = static_cast<ElementKind>(element.type);
    state.address = element.address;
    state.isFull = element.isFull;
    state.isInverted = element.isInverted;
    state.tag = element.isFull ? element.volumeTag : "";
    if (element.isFull) state.source = element.source;
    if (element.isException) {
        // The codes are those of sense data, whose key is that of a device that is not ready.
        state.trouble = SenseSentence("it", {sense_key::kNotReady, element.asc, element.ascq});
    }
    return state;
}

// Many changers never say that the robot can reach an element; where one does, those without the bit count. A
// loaded drive has it not, whatever its state.
bool TellsAccess(const Inventory& inventory) {
    return std::ranges::any_of(inventory.slots, &Element::isAccessible);
}

bool IsOutOfReach(const Element& element) {
    const bool isPlaceForMedia = element.type == ElementType::Slot || element.type == ElementType::MailSlot;
    return isPlaceForMedia && !element.isAccessible && !element.isException;
}

class ReservationHold : public Hold {
  public:
    explicit ReservationHold(std::unique_ptr<ChangerReservation> reservation)
        : m_reservation(std::move(reservation)) {}

  private:
    std::unique_ptr<ChangerReservation> m_reservation;
};

class ScsiJukebox : public PhysicalJukebox {
  public:
    ScsiJukebox(const JukeboxAddress& address, TransportOpener open, Waiting& waiting)
        : m_address(address),
          m_open(std::move(open)),
          m_waiting(waiting),
          m_login(Required(ReadCredentials(address.credentials))),
          m_discLimits(DiscLimitsOf(address.limits)),
          m_changer(OpenDevice(address.changer, "The changer of jukebox \"" + address.name + '"')),
          m_geometry(Required(ReadGeometry(*m_changer))),
          m_drives(address.drives.size()) {}

    std::vector<ElementState> LookAtElements() override {
        const Inventory inventory = Required(ReadInventory(*m_changer, m_geometry));
        const bool tellsAccess = TellsAccess(inventory);
        std::vector<ElementState> states;
        for (const auto* part :
             {&inventory.pickers, &inventory.slots, &inventory.mailSlots, &inventory.drives}) {
            for (const Element& element : *part) {
                states.push_back(StateOf(element));
                if (tellsAccess && IsOutOfReach(element))
                    states.back().trouble = "the robot cannot reach it; close what is open";
            }
        }
        return states;
    }

    std::unique_ptr<Hold> KeepOtherHostsAway() override {
        auto reservation =
            Required(ChangerReservation::Take(*m_changer, static_cast<uint64_t>(m_address.reservationKey)));
        if (reservation == nullptr) return nullptr;
        return std::make_unique<ReservationHold>(std::move(reservation));
    }

    void TakeInventory() override {
        // What has changed is seen right after it.
        const TimeLimits::Seconds limit = m_address.limits.inventory;
        auto done = m_changer->Do(InitializeElementStatus(), limit);
        if (!done && done.GetError().kind == ErrorKind::Attention)
            done = m_changer->Do(InitializeElementStatus(), limit);
        (void)Required(std::move(done));
    }

    void MoveMedium(const MediumMove& move) override {
        RequireElement(move.source);
        RequireElement(move.destination);
        Result<Nothing> done = Send(move);
        if (!done && done.GetError().kind == ErrorKind::Attention && IsStillPossible(move)) done = Send(move);
        if (!done && IsHeldByDrive(done.GetError()) && Eject(move.source)) done = Send(move);
        (void)Required(std::move(done));
    }

    SideReading ReadSide(int32_t drive) override {
        const DiscDescription disc = Required(ReadDisc(GetDrive(drive), m_discLimits));
        SideReading reading;
        reading.mediumType = disc.mediumType;
        reading.content = RecordedContent(disc.content);
        reading.finalization = disc.finalization;
        reading.isSequential = disc.isSequential;
        reading.fileSystem = disc.fileSystem;
        reading.label = disc.label;
        reading.uuid = disc.uuid;
        reading.total = disc.totalBytes;
        reading.free = disc.totalBytes - std::min(disc.usedBytes, disc.totalBytes);
        return reading;
    }

    SideChange FormatSide(int32_t drive, const SideFormat& format) override {
        return ChangeOf(FormatDisc(GetDrive(drive), {format.label, "", format.isSequential}, m_discLimits));
    }
    SideChange EraseSide(int32_t drive) override {
        return ChangeOf(EraseDisc(GetDrive(drive), EraseExtent::Whole, m_discLimits));
    }
    SideChange FinalizeSide(int32_t drive) override {
        return ChangeOf(FinalizeDisc(GetDrive(drive), m_discLimits));
    }

    bool CanWrite(int32_t drive, uint32_t mediumType) override {
        const std::vector<uint32_t> types = Required(ReadWritableTypes(GetDrive(drive), m_discLimits));
        return std::ranges::find(types, mediumType) != types.end();
    }

  private:
    std::unique_ptr<Device> OpenDevice(const DeviceAddress& address, std::string name) {
        auto transport = m_open(address.address, m_login);
        if (!transport) Throw({ErrorKind::Unreachable, name + ": " + transport.GetError().text, {}});
        auto device = std::make_unique<Device>(std::move(*transport), std::move(name), m_waiting);
        device->SetUsualLimit(m_address.limits.look);
        RequireSameDevice(*device, address);
        return device;
    }

    static SideChange ChangeOf(const ChangeResult& result) {
        SideChange change;
        change.side = static_cast<embedded::SideAfter>(result.side);
        if (result.error) change.trouble = result.error->text;
        return change;
    }

    void RequireElement(uint16_t address) const {
        const ElementAddresses& known = m_geometry.addresses;
        for (const ElementRange& range : {known.pickers, known.slots, known.mailSlots, known.drives}) {
            if (range.Contains(address)) return;
        }
        throw Refuse(Code::DeviceTrouble,
                     {m_changer->GetName() + " has no element " + std::to_string(address)});
    }

    Result<Nothing> Send(const MediumMove& move) {
        const attached::Turning turning =
            move.turning == embedded::Turning::Invert ? attached::Turning::Invert : attached::Turning::Keep;
        return m_changer->Do(embedded::attached::MoveMedium({0, move.source, move.destination, turning}),
                             m_address.limits.move);
    }

    // After something has changed: whether the source is still full and the destination empty.
    bool IsStillPossible(const MediumMove& move) {
        bool isSourceFull = false;
        bool isDestinationEmpty = false;
        for (const ElementState& element : LookAtElements()) {
            if (element.address == move.source) isSourceFull = element.isFull;
            if (element.address == move.destination) isDestinationEmpty = !element.isFull;
        }
        return isSourceFull && isDestinationEmpty;
    }

    static bool IsHeldByDrive(const Error& error) {
        constexpr uint8_t kLoadOrEjectFailed = 0x53;
        return error.sense && error.sense->asc == kLoadOrEjectFailed;
    }

    // Some drives hold on to a medium until they are told to give it away. False when the element is no drive
    // that can be told.
    bool Eject(uint16_t element) {
        const ElementRange& drives = m_geometry.addresses.drives;
        const auto number = static_cast<size_t>(element - drives.first);
        if (!drives.Contains(element) || number >= m_drives.size()) return false;
        if (m_address.drives[number].address.empty()) return false;
        Device& drive = GetDrive(static_cast<int32_t>(number));
        (void)drive.WaitUntilReady(std::chrono::seconds(1));
        const auto allowed = drive.Do(PreventAllowMediumRemoval(Removal::Allow), drive.GetUsualLimit());
        const auto ejected =
            drive.Do(StartStopUnit(UnitAction::Eject, Answer::WhenDone), m_address.limits.eject);
        return allowed && ejected;
    }

    Device& GetDrive(int32_t number) {
        const auto index = static_cast<size_t>(number);
        const std::string name =
            "Drive " + std::to_string(number + 1) + " of jukebox \"" + m_address.name + '"';
        if (index >= m_drives.size() || m_address.drives[index].address.empty()) {
            throw Refuse(Code::DeviceTrouble, {name + " has no address; attach the jukebox with --drive"});
        }
        auto& drive = m_drives[index];
        if (drive == nullptr) drive = OpenDevice(m_address.drives[index], name);
        return *drive;
    }

    JukeboxAddress m_address;
    TransportOpener m_open;
    Waiting& m_waiting;
    IscsiLogin m_login;
    DiscLimits m_discLimits;
    std::unique_ptr<Device> m_changer;
    Geometry m_geometry;
    std::vector<std::unique_ptr<Device>> m_drives;
};

}  // namespace

std::unique_ptr<PhysicalJukebox> OpenScsiJukebox(const JukeboxAddress& address) {
    return OpenScsiJukeboxWith(address, OpenTransport, RealWaiting());
}

std::unique_ptr<PhysicalJukebox> OpenScsiJukeboxWith(const JukeboxAddress& address, TransportOpener open,
                                                     Waiting& waiting) {
    return std::make_unique<ScsiJukebox>(address, std::move(open), waiting);
}

}  // namespace embedded::attached
