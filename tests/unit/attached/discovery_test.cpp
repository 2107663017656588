// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include "embedded/attached/discovery/discovery.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>

#include "embedded/attached/discovery/sysfs.h"
#include "tests/unit/attached/scripted_device.h"

namespace embedded::attached {
namespace {

// A made list of devices, as the kernel shows it.
class SysfsTest : public testing::Test {
  protected:
    SysfsTest() { std::filesystem::remove_all(m_root); }
    ~SysfsTest() override { std::filesystem::remove_all(m_root); }

    void Add(const std::string& name, const std::string& type, const std::string& block = "",
             const std::string& removable = "") {
        const auto device = m_root / "class/scsi_generic" / name / "device";
        std::filesystem::create_directories(device);
        std::ofstream(device / "type") << type << '\n';
        if (block.empty()) return;
        std::filesystem::create_directories(device / "block" / block);
        std::ofstream(device / "block" / block / "removable") << removable << '\n';
    }

    const std::filesystem::path m_root =
        testing::TempDir() + "sysfs-" + testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST_F(SysfsTest, ListsChangersAndDrivesInTheOrderOfTheirNumbers) {
    Add("sg10", "5", "sr1", "1");
    Add("sg2", "8");
    Add("sg3", "7", "sdc", "1");
    EXPECT_EQ(
        ListLocalDevices(m_root),
        (std::vector<LocalDevice>{{"/dev/sg2", ""}, {"/dev/sg3", "/dev/sdc"}, {"/dev/sg10", "/dev/sr1"}}));
}

TEST_F(SysfsTest, LeavesOutWhatIsNoneOfThem) {
    Add("sg0", "0", "sda", "0");
    Add("sg1", "1");
    Add("sg4", "0", "sdb", "1");
    Add("sgx", "8");
    Add("sg5", "no number");
    EXPECT_EQ(ListLocalDevices(m_root), (std::vector<LocalDevice>{{"/dev/sg4", "/dev/sdb"}}));
}

TEST_F(SysfsTest, FindsNothingOnAMachineWithoutScsi) {
    EXPECT_TRUE(ListLocalDevices(m_root).empty());
}

std::vector<uint8_t> InquiryOf(uint8_t type, const char* product) {
    return Joined(
        {{type}, Hex("80 05 02 1F 00 00 00"), Padded("MAKER", 8), Padded(product, 16), Padded("1.0", 4)});
}

class DiscoveryTest : public testing::Test {
  protected:
    // A device whose transport plays what Script() is told.
    ScriptedTransport& Add(const std::string& address) {
        auto transport = std::make_unique<ScriptedTransport>(address);
        ScriptedTransport& script = *transport;
        m_transports[address] = std::move(transport);
        m_places.push_back({address, ""});
        return script;
    }

    static void Answer(ScriptedTransport& script, const char* cdb, std::vector<uint8_t> answer) {
        script.Play({Hex(cdb), std::move(answer), 0, {}, {}, {}});
    }

    void AddDrive(const std::string& address, const std::string& serialNumber) {
        ScriptedTransport& script = Add(address);
        Answer(script, "12 00 00 00 60 00", InquiryOf(0x05, "BD WRITER"));
        Answer(script, "12 01 80 04 00 00", Joined({Hex("05 80 00 0A"), Padded(serialNumber, 10)}));
        Answer(script, "12 01 83 04 00 00", Hex("05 83 00 00"));
    }

    // With one drive element, at 256, whose identifier is a serial number of ten characters.
    void AddChanger(const std::string& address, const std::string& driveSerialNumber) {
        ScriptedTransport& script = Add(address);
        Answer(script, "12 00 00 00 60 00", InquiryOf(0x08, "TOWER"));
        Answer(script, "12 01 80 04 00 00", Hex("08 80 00 02 54 31"));
        Answer(script, "12 01 83 04 00 00", Hex("08 83 00 00"));
        Answer(script, "1A 08 1D 00 FF 00",
               Hex("17 00 00 00 1D 12 00 01 00 01 04 00 00 08 00 00 00 00 01 00 00 01 00 00"));
        Answer(script, "1A 08 1E 00 FF 00", Hex("07 00 00 00 1E 02 00 00"));
        Answer(script, "1A 08 1F 00 FF 00", Joined({Hex("17 00 00 00 1F 12 0E 00"), Hex("00 x16")}));
        Answer(script, "B8 14 01 00 00 01 01 00 FF 00 00 00",
               Joined({Hex("01 00 00 01 00 00 00 22 04 00 00 1A 00 00 00 1A 01 00 08 00 00 x8 02 00 00 0A"),
                       Padded(driveSerialNumber, 10)}));
    }

    Findings Discover() {
        const Opener open = [this](const std::string& address) -> Result<std::unique_ptr<Transport>> {
            auto& transport = m_transports[address];
            if (!transport) return Error{ErrorKind::NotPermitted, address + " may not be opened", {}};
            return std::move(transport);
        };
        return attached::Discover(m_places, open, m_waiting);
    }

    std::map<std::string, std::unique_ptr<Transport>> m_transports;
    std::vector<Place> m_places;
    TimelessWaiting m_waiting;
};

TEST_F(DiscoveryTest, TellsWhichDriveBelongsToWhichElement) {
    AddDrive("/dev/sg1", "OTHER");
    AddChanger("/dev/sg2", "SER-7");
    AddDrive("/dev/sg3", "SER-7");
    const Findings findings = Discover();
    EXPECT_TRUE(findings.problems.empty());
    ASSERT_EQ(findings.changers.size(), 1U);
    const FoundChanger& changer = findings.changers[0];
    EXPECT_EQ(changer.device.place.address, "/dev/sg2");
    EXPECT_EQ(changer.device.identity.GetModel(), "MAKER TOWER 1.0");
    EXPECT_EQ(changer.device.identity.serialNumber, "T1");
    EXPECT_EQ(changer.geometry.addresses.slots.count, 8);
    ASSERT_EQ(changer.drives.size(), 1U);
    EXPECT_EQ(changer.drives[0].element.address, 256);
    EXPECT_EQ(changer.drives[0].evidence, Evidence::SerialNumber);
    EXPECT_EQ(changer.drives[0].drives.at(0).place.address, "/dev/sg3");
    ASSERT_EQ(findings.loneDrives.size(), 1U);
    EXPECT_EQ(findings.loneDrives[0].place.address, "/dev/sg1");
}

TEST_F(DiscoveryTest, GoesOnAfterADeviceThatCannotBeAsked) {
    m_places.push_back({"/dev/sg0", ""});
    Add("/dev/sg1");
    AddChanger("/dev/sg2", "SER-7");
    const Findings findings = Discover();
    ASSERT_EQ(findings.problems.size(), 2U);
    EXPECT_EQ(findings.problems[0].text, "/dev/sg0 may not be opened");
    ASSERT_EQ(findings.changers.size(), 1U);
    EXPECT_EQ(findings.changers[0].drives[0].evidence, Evidence::None);
}

TEST_F(DiscoveryTest, LeavesOutUnitsThatAreNotThere) {
    ScriptedTransport& script = Add("/dev/sg1");
    Answer(script, "12 00 00 00 60 00", InquiryOf(0x28, "NOTHING"));
    Answer(script, "12 01 80 04 00 00", Hex("28 80 00 00"));
    Answer(script, "12 01 83 04 00 00", Hex("28 83 00 00"));
    const Findings findings = Discover();
    EXPECT_TRUE(findings.changers.empty());
    EXPECT_TRUE(findings.loneDrives.empty());
    EXPECT_TRUE(findings.problems.empty());
}

}  // namespace
}  // namespace embedded::attached
