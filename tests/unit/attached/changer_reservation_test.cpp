// Not on Windows: real changers and drives are spoken to by the means of Linux.
// Who may move media in a changer that several hosts reach (SPC-4, 5.13 and 6.16 to 6.17).
#include "embedded/attached/changer/changer_reservation.h"

#include "tests/unit/attached/scripted_device.h"

namespace embedded::attached {
namespace {

constexpr uint64_t kOwnKey = 0x1122334455667788;

// Service actions of PERSISTENT RESERVE OUT; the type is Write Exclusive, the parameters have 24 bytes.
constexpr const char* kRegisterAndIgnore = "5F 06 01 00 00 00 00 00 18 00";
constexpr const char* kReserve = "5F 01 01 00 00 00 00 00 18 00";
constexpr const char* kPreempt = "5F 04 01 00 00 00 00 00 18 00";
constexpr const char* kRelease = "5F 02 01 00 00 00 00 00 18 00";
constexpr const char* kRegister = "5F 00 01 00 00 00 00 00 18 00";
constexpr const char* kReadReservation = "5E 01 00 00 00 00 00 00 18 00";

constexpr const char* kNoKey = "00 00 00 00 00 00 00 00";
constexpr const char* kKey = "11 22 33 44 55 66 77 88";

// Sense data: 5/20/00 and 6/2A/03.
constexpr const char* kInvalidOperationCode = "70 00 05 00 00 00 00 0A 00 00 00 00 20 00 00 00 00 00";
constexpr const char* kReservationsPreempted = "70 00 06 00 00 00 00 0A 00 00 00 00 2A 03 00 00 00 00";

class ChangerReservationTest : public testing::Test {
  protected:
    // A command that is expected with its two keys; further bytes are 0.
    void Takes(const char* cdb, const char* ownKey, const char* newKey, uint8_t status = scsi_status::kGood,
               const char* sense = "") {
        m_script.GetTransport().Play(
            {Hex(cdb), {}, status, Hex(sense), Joined({Hex(ownKey), Hex(newKey), Hex("00 x8")}), {}});
    }
    void Refuses(const char* cdb, const char* ownKey, const char* newKey, const char* sense) {
        Takes(cdb, ownKey, newKey, scsi_status::kCheckCondition, sense);
    }
    void Withdraws() { Takes(kRegister, kKey, kNoKey); }
    void LetsGo() {
        Takes(kRelease, kKey, kNoKey);
        Withdraws();
    }
    // Who has the reservation, with the type Write Exclusive.
    void IsHeldBy(const char* key) {
        m_script.Answers(kReadReservation,
                         Joined({Hex("00 00 00 07 00 00 00 10"), Hex(key), Hex("00 00 00 00 00 01 00 00")}));
    }
    auto Take() { return ChangerReservation::Take(m_script.Get(), kOwnKey); }

    ScriptedDevice m_script{"Tower"};
};

TEST_F(ChangerReservationTest, RegistersAndReservesAndLetsGo) {
    Takes(kRegisterAndIgnore, kNoKey, kKey);
    Takes(kReserve, kKey, kNoKey);
    const auto taken = Take();
    ASSERT_TRUE(taken);
    EXPECT_NE(*taken, nullptr);
    LetsGo();
}

TEST_F(ChangerReservationTest, DoesWithoutWhereTheChangerKnowsNone) {
    Refuses(kRegisterAndIgnore, kNoKey, kKey, kInvalidOperationCode);
    const auto taken = Take();
    ASSERT_TRUE(taken);
    EXPECT_EQ(*taken, nullptr);
}

TEST_F(ChangerReservationTest, SaysThatAnotherHostHasTheChanger) {
    Takes(kRegisterAndIgnore, kNoKey, kKey);
    Takes(kReserve, kKey, kNoKey, scsi_status::kReservationConflict);
    IsHeldBy("99 99 99 99 99 99 99 99");
    Withdraws();
    const auto taken = Take();
    ASSERT_FALSE(taken);
    EXPECT_EQ(taken.GetError().text, "Tower is reserved by another host; end what runs there");
}

TEST_F(ChangerReservationTest, TakesOverWhatADeadProcessHasLeft) {
    Takes(kRegisterAndIgnore, kNoKey, kKey);
    Takes(kReserve, kKey, kNoKey, scsi_status::kReservationConflict);
    IsHeldBy(kKey);
    Takes(kPreempt, kKey, kKey);
    const auto taken = Take();
    ASSERT_TRUE(taken);
    LetsGo();
}

TEST_F(ChangerReservationTest, TriesOnceMoreWhenTheOtherHostHasLetGoMeanwhile) {
    Takes(kRegisterAndIgnore, kNoKey, kKey);
    Takes(kReserve, kKey, kNoKey, scsi_status::kReservationConflict);
    m_script.Answers(kReadReservation, Hex("00 00 00 07 00 00 00 00"));
    Takes(kReserve, kKey, kNoKey);
    const auto taken = Take();
    ASSERT_TRUE(taken);
    LetsGo();
}

TEST_F(ChangerReservationTest, IsNotPutOffByAUnitAttention) {
    Refuses(kRegisterAndIgnore, kNoKey, kKey, kReservationsPreempted);
    Takes(kRegisterAndIgnore, kNoKey, kKey);
    Takes(kReserve, kKey, kNoKey);
    const auto taken = Take();
    ASSERT_TRUE(taken);
    LetsGo();
}

}  // namespace
}  // namespace embedded::attached
