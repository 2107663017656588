#include "tests/unit/attached/model/model_changer.h"

#include <algorithm>

#include "tests/unit/attached/hex.h"

namespace embedded::attached {
namespace {

constexpr SenseCode kUnknownChangerCommand{0x5, 0x20, 0x00};
constexpr SenseCode kNoElement{0x5, 0x21, 0x01};
constexpr SenseCode kUnknownField{0x5, 0x24, 0x00};
constexpr SenseCode kDestinationFull{0x5, 0x3B, 0x0D};
constexpr SenseCode kSourceEmpty{0x5, 0x3B, 0x0E};

uint64_t NumberAt(Bytes bytes, size_t at, size_t length) {
    uint64_t number = 0;
    for (const uint8_t byte : bytes.subspan(at, length))
        number = number << 8 | byte;
    return number;
}

void Append(std::vector<uint8_t>& bytes, size_t length, uint64_t value) {
    for (size_t i = length; i > 0; --i)
        bytes.push_back(static_cast<uint8_t>(value >> (8 * (i - 1))));
}

Completion Answered(const Command& command, const std::vector<uint8_t>& answer = {}) {
    Completion completion;
    completion.transferred = std::min(command.dataIn.size(), answer.size());
    std::copy_n(answer.begin(), completion.transferred, command.dataIn.begin());
    if (!command.dataOut.empty()) completion.transferred = command.dataOut.size();
    return completion;
}

Completion Refused(const SenseCode& code) {
    Completion completion;
    completion.status = scsi_status::kCheckCondition;
    completion.sense = Hex("70 00 x17");
    completion.sense[2] = code.key;
    completion.sense[7] = 10;
    completion.sense[12] = code.asc;
    completion.sense[13] = code.ascq;
    return completion;
}

Completion Conflict() {
    Completion completion;
    completion.status = scsi_status::kReservationConflict;
    return completion;
}

}  // namespace

Result<Nothing> ModelChanger::Reconnect() {
    m_isConnected = true;
    return Nothing();
}

Result<Completion> ModelChanger::Send(const Command& command) {
    std::ranges::fill(command.dataIn, uint8_t{0});
    const uint8_t code = command.cdb[0];
    commands.push_back(code);
    limits[code] = command.timeLimit;
    if (becomingReady > 0 && code != 0x12) {
        --becomingReady;
        return Refused({0x2, 0x04, 0x01});
    }
    if (!attentions.empty() && code != 0x12) {
        const SenseCode attention = attentions.front();
        attentions.pop_front();
        return Refused(attention);
    }
    const bool isMove = code == 0xA5;
    Completion completion = Carry(command);
    if (isMove && lostMove.has_value()) {
        m_isConnected = false;
        return *std::exchange(lostMove, std::nullopt);
    }
    return completion;
}

bool ModelChanger::IsElement(uint16_t address) {
    return address == kPicker || address == kMailSlot || (address >= kDrive && address < kDrive + kDrives) ||
           (address >= kSlot && address < kSlot + kSlots);
}

Completion ModelChanger::Carry(const Command& command) {
    const Bytes cdb = command.cdb;
    switch (cdb[0]) {
        case 0x00:
        case 0x07:
            return Answered(command);
        case 0x12:
            return Answered(command, GetInquiry(cdb));
        case 0x1A: {
            const Answer page = GetModePage(cdb[2] & 0x3F);
            return page.empty() ? Refused(kUnknownField) : Answered(command, page);
        }
        case 0xA5:
            return Move(cdb);
        case 0xB8:
            return Answered(command, GetElements(cdb));
        case 0x5E:
            if (!knowsReservations) return Refused(kUnknownChangerCommand);
            return Answered(command, GetReservation());
        case 0x5F:
            return knowsReservations ? Reserve(command) : Refused(kUnknownChangerCommand);
        default:
            return Refused(kUnknownChangerCommand);
    }
}

// SMC-3, 6.6: the picker may be 0, which leaves the choice to the changer.
Completion ModelChanger::Move(Bytes cdb) {
    const auto picker = static_cast<uint16_t>(NumberAt(cdb, 2, 2));
    const auto source = static_cast<uint16_t>(NumberAt(cdb, 4, 2));
    const auto destination = static_cast<uint16_t>(NumberAt(cdb, 6, 2));
    const bool turns = (cdb[10] & 1) != 0;
    if ((picker != 0 && picker != kPicker) || !IsElement(source) || !IsElement(destination))
        return Refused(kNoElement);
    if (onMove) onMove(source, destination, turns);
    if (!moveFailures.empty()) {
        const SenseCode failure = moveFailures.front();
        moveFailures.pop_front();
        return Refused(failure);
    }
    if (!media.contains(source)) return Refused(kSourceEmpty);
    if (media.contains(destination)) return Refused(kDestinationFull);
    Medium medium = media.extract(source).mapped();
    medium.isInverted = turns;
    medium.source = source;
    media[destination] = std::move(medium);
    return Answered({cdb, {}, {}, {}});
}

// SPC-4, 6.17. Only what one other host could have left is told apart.
Completion ModelChanger::Reserve(const Command& command) {
    const unsigned action = command.cdb[1] & 0x1FU;
    const uint64_t ownKey = NumberAt(command.dataOut, 0, 8);
    const uint64_t newKey = NumberAt(command.dataOut, 8, 8);
    if (action == 0x00 || action == 0x06) {
        if (action == 0x00 && ownKey != m_registered) return Conflict();
        m_registered = newKey;
        return Answered(command);
    }
    if (ownKey != m_registered || (action == 0x01 && otherHost != 0)) return Conflict();
    if (action == 0x01) m_holder = ownKey;
    if (action == 0x02) m_holder = 0;
    return Answered(command);
}

ModelChanger::Answer ModelChanger::GetReservation() const {
    const uint64_t holder = otherHost != 0 ? otherHost : m_holder;
    if (holder == 0) return Hex("00 00 00 01 00 00 00 00");
    Answer answer = Hex("00 00 00 01 00 00 00 10");
    Append(answer, 8, holder);
    return Joined({answer, Hex("00 00 00 00 00 01 00 00")});
}

// The standard data, or vital product data page 80h; no other page is there.
ModelChanger::Answer ModelChanger::GetInquiry(Bytes cdb) const {
    if (cdb[1] == 0) return Joined({Hex("08 80 05 02 1F 00 00 00"), Padded("MODEL", 28)});
    if (cdb[2] != 0x80) return Hex("08 00 00 00");
    return Joined({{0x08, 0x80, 0x00, static_cast<uint8_t>(serialNumber.size())},
                   Padded(serialNumber, serialNumber.size())});
}

// SMC-3, 7.3.3 to 7.3.5, behind a mode parameter header.
ModelChanger::Answer ModelChanger::GetModePage(uint8_t page) const {
    Answer content;
    if (page == 0x1D) {
        content = Hex("1D 12");
        for (const auto& [first, count] :
             {std::pair<int, int>(kPicker, 1), std::pair<int, int>(kSlot, kSlots),
              std::pair<int, int>(kMailSlot, 1), std::pair<int, int>(kDrive, kDrives)}) {
            Append(content, 2, static_cast<uint64_t>(first));
            Append(content, 2, static_cast<uint64_t>(count));
        }
        Append(content, 2, 0);
    }
    if (page == 0x1E) content = Hex("1E 02 01 00");
    if (content.empty()) return {};
    Answer answer = Hex("00 00 00 00");
    answer[0] = static_cast<uint8_t>(content.size() + 3);
    answer.insert(answer.end(), content.begin(), content.end());
    return answer;
}

// SMC-3, 6.10, with volume tags.
ModelChanger::Answer ModelChanger::GetElements(Bytes cdb) const {
    constexpr size_t kDescriptor = 52;
    static const std::map<unsigned, std::pair<uint16_t, uint16_t>> kRanges{
        {1, {kPicker, 1}}, {2, {kSlot, kSlots}}, {3, {kMailSlot, 1}}, {4, {kDrive, kDrives}}};
    const auto [first, count] = kRanges.at(cdb[1] & 0x0FU);
    const auto start = std::max(first, static_cast<uint16_t>(NumberAt(cdb, 2, 2)));
    std::vector<Answer> descriptors;
    for (uint32_t address = start; address < uint32_t{first} + count; ++address)
        descriptors.push_back(DescribeElement(static_cast<uint16_t>(address)));
    Answer answer;
    Append(answer, 2, start);
    Append(answer, 2, descriptors.size());
    Append(answer, 4, 8 + descriptors.size() * kDescriptor);
    answer.push_back(cdb[1] & 0x0F);
    answer.push_back(0x80);
    Append(answer, 2, kDescriptor);
    Append(answer, 4, descriptors.size() * kDescriptor);
    for (const Answer& descriptor : descriptors)
        answer.insert(answer.end(), descriptor.begin(), descriptor.end());
    return answer;
}

ModelChanger::Answer ModelChanger::DescribeElement(uint16_t address) const {
    Answer answer;
    Append(answer, 2, address);
    const auto found = media.find(address);
    const bool isFull = found != media.end();
    const auto fault = stuck.find(address);
    unsigned flags = isFull ? 0x01 : 0;
    if (fault != stuck.end()) flags |= 0x04;
    if (!outOfReach.contains(address)) flags |= 0x08;
    answer.push_back(static_cast<uint8_t>(flags));
    answer.push_back(0);
    answer.push_back(fault != stuck.end() ? fault->second.asc : 0);
    answer.push_back(fault != stuck.end() ? fault->second.ascq : 0);
    Append(answer, 3, 0);
    const bool hasSource = isFull && found->second.source.has_value();
    answer.push_back(
        static_cast<uint8_t>((hasSource ? 0x80 : 0) | (isFull && found->second.isInverted ? 0x40 : 0)));
    Append(answer, 2, hasSource ? *found->second.source : 0);
    return Joined({answer, Padded(isFull ? found->second.tag : "", 32), Hex("00 x8")});
}

}  // namespace embedded::attached
