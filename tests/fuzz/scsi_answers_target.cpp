// What a hostile device could answer, to every decoder. The first byte chooses the decoder.
#include <array>
#include <vector>

#include "embedded/attached/scsi/capacity.h"
#include "embedded/attached/scsi/disc_information.h"
#include "embedded/attached/scsi/element_status.h"
#include "embedded/attached/scsi/inquiry.h"
#include "embedded/attached/scsi/mode_pages.h"
#include "embedded/attached/scsi/report_luns.h"
#include "embedded/attached/scsi/reservation.h"
#include "embedded/attached/scsi/sense.h"
#include "embedded/attached/scsi/sense_meanings.h"
#include "tests/fuzz/fuzz_target.h"

namespace krvcmd::fuzz {
namespace {

using namespace embedded::attached;

// A refusal is told in words, without anything that a terminal would obey.
template <typename Value>
bool IsAccepted(const Result<Value>& result) {
    if (result) return true;
    const std::string& text = result.GetError().text;
    Require(result.GetError().kind == ErrorKind::BadAnswer, "an answer is refused as a bad one");
    Require(!text.empty() && !text.ends_with('.'), "a refusal is told in words");
    for (const char c : text)
        Require(c >= ' ' && c <= '~', "a refusal can be printed");
    return false;
}

void TrySense(Bytes answer) {
    const auto sense = DecodeSense(answer);
    if (!sense) return;
    Require(sense->code.key < 16, "a sense key has four bits");
    Require(!SenseSentence("it", sense->code).empty(), "sense data have a meaning");
}

void TryInquiry(Bytes answer) {
    (void)IsAccepted(DecodeInquiry(answer));
}

void TrySerialNumber(Bytes answer) {
    const auto serialNumber = DecodeSerialNumber(answer);
    if (IsAccepted(serialNumber))
        Require(serialNumber->size() <= answer.size(), "a serial number comes out of the answer");
}

void TryIdentification(Bytes answer) {
    const auto designators = DecodeIdentification(answer);
    if (!IsAccepted(designators)) return;
    size_t bytes = 0;
    for (const Designator& designator : *designators)
        bytes += designator.bytes.size();
    Require(bytes <= answer.size(), "designators come out of the answer");
}

void TryModePages(Bytes answer) {
    for (const uint8_t page : {kElementAddressPage, kTransportGeometryPage, kDeviceCapabilitiesPage}) {
        for (const auto& data : {DecodeModeSense6(answer, page), DecodeModeSense10(answer, page)}) {
            if (!IsAccepted(data)) continue;
            const auto addresses = DecodeElementAddresses(data->page);
            if (IsAccepted(addresses)) {
                Require(
                    addresses->slots.first + addresses->slots.count <= 0x10000 || addresses->slots.count == 0,
                    "addresses have 16 bits");
            }
            (void)IsAccepted(DecodeTurnsMedia(data->page));
            (void)IsAccepted(DecodeCapabilities(data->page));
        }
    }
}

void TryElementStatus(Bytes answer) {
    for (const ElementType type : {ElementType::Slot, ElementType::Drive}) {
        for (const uint32_t allocation : {uint32_t{0xFF00}, static_cast<uint32_t>(answer.size())}) {
            const auto report = DecodeElementStatus(answer, {type, 0, 0xFFFF, true, true, allocation});
            if (!IsAccepted(report)) continue;
            Require(report->elements.size() * 12 <= answer.size() + 12,
                    "every element comes out of the answer");
            for (const Element& element : report->elements) {
                Require(element.volumeTag.size() <= 32, "a volume tag has 32 bytes at most");
                Require(element.type == type, "an element has the type that was asked for");
            }
        }
    }
}

void TryReportLuns(Bytes answer) {
    const auto list = DecodeReportLuns(answer);
    if (IsAccepted(list))
        Require(list->luns.size() * 8 <= answer.size(), "every unit comes out of the answer");
}

void TryDisc(Bytes answer) {
    const auto configuration = DecodeConfiguration(answer);
    if (IsAccepted(configuration)) {
        Require(configuration->supportedProfiles.size() * 4 <= answer.size(),
                "every profile comes out of the answer");
    }
    (void)IsAccepted(DecodeDiscInformation(answer));
    (void)IsAccepted(DecodeTrackInformation(answer));
}

void TryCapacities(Bytes answer) {
    const auto capacity = DecodeCapacity10(answer);
    if (IsAccepted(capacity)) Require(capacity->blockSize > 0, "blocks have a size");
    const auto large = DecodeCapacity16(answer);
    if (IsAccepted(large)) Require(large->blockSize > 0, "blocks have a size");
    const auto formats = DecodeFormatCapacities(answer);
    if (IsAccepted(formats))
        Require(formats->choices.size() * 8 <= answer.size(), "every format comes out of the answer");
}

void TryReservations(Bytes answer) {
    const auto keys = DecodeKeys(answer);
    if (IsAccepted(keys))
        Require(keys->keys.size() * 8 <= answer.size(), "every key comes out of the answer");
    (void)IsAccepted(DecodeReservation(answer));
}

constexpr std::array kDecoders{TrySense,      TryInquiry,       TrySerialNumber, TryIdentification,
                               TryModePages,  TryElementStatus, TryReportLuns,   TryDisc,
                               TryCapacities, TryReservations};

}  // namespace
}  // namespace krvcmd::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    // Memory of its own, without anything behind the end.
    const std::vector<uint8_t> answer(data + 1, data + size);
    krvcmd::fuzz::kDecoders[data[0] % krvcmd::fuzz::kDecoders.size()](answer);
    return 0;
}
