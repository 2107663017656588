#include "tests/unit/attached/model/model_drive.h"

#include <algorithm>

namespace embedded::attached {
namespace {

uint32_t Number(Bytes bytes, size_t at, size_t length) {
    uint32_t number = 0;
    for (const uint8_t byte : bytes.subspan(at, length))
        number = number << 8 | byte;
    return number;
}

void Put(std::vector<uint8_t>& bytes, size_t at, size_t length, uint64_t value) {
    for (size_t i = length; i > 0; --i) {
        bytes[at + i - 1] = static_cast<uint8_t>(value);
        value >>= 8;
    }
}

constexpr SenseCode kBusy{0x2, 0x04, 0x07};
constexpr SenseCode kUnknownCommand{0x5, 0x20, 0x00};
constexpr SenseCode kBadBlock{0x5, 0x21, 0x00};
constexpr SenseCode kNotNextBlock{0x5, 0x21, 0x02};
constexpr SenseCode kBadField{0x5, 0x24, 0x00};
constexpr SenseCode kBadParameter{0x5, 0x26, 0x00};
constexpr SenseCode kWrongMedium{0x5, 0x30, 0x05};
constexpr SenseCode kNotWrittenYet{0x8, 0x00, 0x00};

}  // namespace

void ModelDrive::Hold(uint32_t start, const std::vector<uint8_t>& image) {
    uint32_t block = start;
    for (size_t at = 0; at < image.size(); at += blockSize, ++block) {
        std::vector<uint8_t> bytes(
            image.begin() + static_cast<ptrdiff_t>(at),
            image.begin() + static_cast<ptrdiff_t>(std::min(image.size(), at + blockSize)));
        bytes.resize(blockSize);
        blocks[block] = std::move(bytes);
    }
    nextWritable = block;
    sessions.push_back(start);
}

void ModelDrive::ResetParameters() {
    writeParameters.assign(52, 0);
    writeParameters[0] = 0x85;
    writeParameters[1] = 50;
}

bool ModelDrive::IsSequential() const {
    constexpr std::array<uint16_t, 7> kSequential{0x09, 0x0A, 0x11, 0x14, 0x15, 0x1B, 0x41};
    return std::ranges::find(kSequential, profile) != kSequential.end();
}

bool ModelDrive::IsReadOnly() const {
    return profile == 0x08 || profile == 0x10;
}

uint32_t ModelDrive::GetLastBlock() const {
    if (IsSequential() || IsReadOnly()) return std::max(nextWritable, 1U) - 1;
    return capacity - 1;
}

// An appendable disc has an empty track behind the last closed one.
size_t ModelDrive::GetTrackCount() const {
    return sessions.size() + (isClosed || IsReadOnly() ? 0 : 1);
}

Completion ModelDrive::Good(const Command& command, const Answer& answer) const {
    Completion completion;
    completion.transferred = std::min(command.dataIn.size(), answer.size());
    std::copy_n(answer.begin(), completion.transferred, command.dataIn.begin());
    if (!command.dataOut.empty()) completion.transferred = command.dataOut.size();
    return completion;
}

Completion ModelDrive::Fail(const SenseCode& code) {
    Completion completion;
    completion.status = scsi_status::kCheckCondition;
    completion.sense.assign(18, 0);
    completion.sense[0] = 0x70;
    completion.sense[2] = code.key;
    completion.sense[7] = 10;
    completion.sense[12] = code.asc;
    completion.sense[13] = code.ascq;
    return completion;
}

Result<Nothing> ModelDrive::Reconnect() {
    m_isConnected = true;
    return Nothing();
}

Result<Completion> ModelDrive::Send(const Command& command) {
    std::ranges::fill(command.dataIn, uint8_t{0});
    const uint8_t code = command.cdb[0];
    const bool isWrite = code == 0x2A;
    if (isWrite && ++m_writes == loseAtWrite) {
        m_isConnected = false;
        return Error{ErrorKind::Lost, "the cable is out", {}};
    }
    if (becomingReady > 0 && code != 0x12) {
        --becomingReady;
        return Fail({0x2, 0x04, 0x01});
    }
    if (const auto failure = failures.find(code); failure != failures.end()) return Fail(failure->second);
    if (const auto lie = lies.find(code); lie != lies.end()) return Good(command, lie->second);
    if (code == 0x03) return Sense(command);
    if (m_busy > 0) return Fail(kBusy);
    return Carry(command);
}

Completion ModelDrive::Carry(const Command& command) {
    const Bytes cdb = command.cdb;
    const bool isOptical = type == DeviceType::Optical;
    Answer answer(8);
    switch (cdb[0]) {
        case 0x00:
            return Good(command);
        case 0x12:
            return Good(command, GetInquiry());
        case 0x1A:
            if (isOptical) return Fail(kUnknownCommand);
            return Good(command, {3, mediumType, static_cast<uint8_t>(isWriteProtected ? 0x80 : 0), 0});
        case 0x25:
            Put(answer, 0, 4, GetLastBlock());
            Put(answer, 4, 4, blockSize);
            return Good(command, answer);
        case 0x28:
            return Read(command);
        case 0x2A:
            return Write(command);
        case 0x35:
            changes.emplace_back("SYNCHRONIZE CACHE");
            return Good(command);
        default:
            break;
    }
    if (!isOptical) return Fail(kUnknownCommand);
    switch (cdb[0]) {
        case 0x04:
            return Format(command);
        case 0x23:
            return Good(command, GetFormatCapacities());
        case 0x46:
            return Good(command, GetConfiguration());
        case 0x51:
            return Good(command, GetDiscInformation());
        case 0x52: {
            const size_t track = Number(cdb, 2, 4);
            if (cdb[1] != 1 || track == 0 || track > GetTrackCount()) return Fail(kBadField);
            return Good(command, GetTrackInformation(track));
        }
        case 0x55:
            return SelectMode(command);
        case 0x5A:
            return cdb[2] == 0x05 ? Good(command, GetMode10()) : Fail(kBadField);
        case 0x5B:
            return Close(command);
        case 0xA1:
            return Blank(command);
        default:
            return Fail(kUnknownCommand);
    }
}

Completion ModelDrive::Sense(const Command& command) {
    Answer sense(18);
    sense[0] = 0x70;
    sense[7] = 10;
    if (m_busy > 0) {
        --m_busy;
        sense[2] = kBusy.key;
        sense[12] = kBusy.asc;
        sense[13] = kBusy.ascq;
        // The progress indication, in 65536ths.
        if (tellsProgress) sense[15] = 0x80;
        if (tellsProgress) Put(sense, 16, 2, m_progress);
        m_progress = static_cast<uint16_t>(m_progress + progressPerPoll);
    }
    return Good(command, sense);
}

Completion ModelDrive::Read(const Command& command) {
    const uint32_t first = Number(command.cdb, 2, 4);
    const uint32_t count = Number(command.cdb, 7, 2);
    if (isCopyProtected) return Fail({0x5, 0x6F, 0x01});
    if (first > GetLastBlock() || count > GetLastBlock() - first + 1) return Fail(kBadBlock);
    if (readsClosedSessionsOnly && isSessionOpen) return Fail({0x5, 0x64, 0x00});
    Answer answer;
    for (uint64_t block = first; block < uint64_t{first} + count; ++block) {
        if (unreadable.contains(block)) return Fail({0x3, 0x11, 0x05});
        const auto found = blocks.find(block);
        if (found == blocks.end() && mediumType == 0x02) return Fail(kNotWrittenYet);
        std::vector<uint8_t> bytes = found == blocks.end() ? std::vector<uint8_t>(blockSize) : found->second;
        if (altered.contains(block)) bytes[0] ^= 1;
        answer.insert(answer.end(), bytes.begin(), bytes.end());
    }
    return Good(command, answer);
}

Completion ModelDrive::Write(const Command& command) {
    const uint32_t first = Number(command.cdb, 2, 4);
    const uint32_t count = Number(command.cdb, 7, 2);
    if (command.dataOut.size() != size_t{count} * blockSize) return Fail(kBadField);
    if (IsSequential() && first != nextWritable) return Fail(kNotNextBlock);
    if (!IsSequential() && type == DeviceType::Optical && !isFormatted) return Fail({0x5, 0x30, 0x00});
    if (first >= capacity || count > capacity - first) return Fail(kBadBlock);
    for (uint32_t i = 0; i < count; ++i) {
        const uint64_t block = uint64_t{first} + i;
        if (unwritable.contains(block)) return Fail({0x3, 0x0C, 0x00});
        const auto bytes = command.dataOut.subspan(size_t{i} * blockSize, blockSize);
        blocks[block].assign(bytes.begin(), bytes.end());
    }
    if (IsSequential()) {
        nextWritable = first + count;
        isSessionOpen = true;
        hasOpenTrack = true;
    }
    changes.push_back("WRITE " + std::to_string(first) + "+" + std::to_string(count));
    return Good(command);
}

// MMC-6, 6.4: the format descriptor behind a header whose IMMED bit is set.
Completion ModelDrive::Format(const Command& command) {
    const Bytes list = command.dataOut;
    const bool isWellFormed = command.cdb[1] == 0x11 && list.size() == 12 && list[1] == 0x82 &&
                              Number(list, 2, 2) == 8 && Number(list, 4, 4) == capacity;
    if (!isWellFormed) return Fail(kBadParameter);
    const auto format = static_cast<uint8_t>(list[8] >> 2);
    if (std::ranges::find(formats, format) == formats.end()) return Fail(kBadParameter);
    changes.push_back("FORMAT UNIT as " + std::to_string(format));
    isFormatted = true;
    Start();
    return Good(command);
}

Completion ModelDrive::Blank(const Command& command) {
    if (profile != 0x0A && profile != 0x14) return Fail(kWrongMedium);
    const unsigned extent = command.cdb[1] & 0x07U;
    changes.push_back(extent == 0 ? "BLANK disc" : "BLANK minimally");
    blocks.clear();
    sessions.clear();
    nextWritable = 0;
    isClosed = isSessionOpen = hasOpenTrack = false;
    Start();
    return Good(command);
}

// MMC-6, 6.3. Discs with write parameters are closed for good when these allow no other session.
Completion ModelDrive::Close(const Command& command) {
    if (!IsSequential()) return Fail(kWrongMedium);
    const unsigned function = command.cdb[2] & 0x07U;
    const bool isPlus = profile == 0x1B || profile == 0x41;
    changes.push_back("CLOSE " + std::to_string(function) + " of " +
                      std::to_string(Number(command.cdb, 4, 2)));
    if (function == 1) {
        if (!hasOpenTrack || Number(command.cdb, 4, 2) != GetTrackCount()) return Fail(kBadField);
        hasOpenTrack = false;
    } else if (function == 2 || (function == 6 && isPlus)) {
        if (hasOpenTrack) return Fail({0x5, 0x2C, 0x00});
        if (isSessionOpen) sessions.push_back(sessions.empty() ? 0 : sessions.back());
        isSessionOpen = false;
        isClosed = function == 6 || (!isPlus && (writeParameters[3] & 0xC0U) == 0);
    } else {
        return Fail(kBadField);
    }
    Start();
    return Good(command);
}

Completion ModelDrive::SelectMode(const Command& command) {
    const Bytes list = command.dataOut;
    const bool isWellFormed = command.cdb[1] == 0x10 && list.size() == 8 + writeParameters.size() &&
                              Number(command.cdb, 7, 2) == list.size() && list[8] == 0x05;
    if (!isWellFormed) return Fail(kBadParameter);
    writeParameters.assign(list.begin() + 8, list.end());
    return Good(command);
}

ModelDrive::Answer ModelDrive::GetInquiry() const {
    Answer answer(36, ' ');
    answer[0] = static_cast<uint8_t>(type);
    answer[1] = 0x80;
    answer[2] = 5;
    answer[3] = 2;
    answer[4] = 31;
    return answer;
}

ModelDrive::Answer ModelDrive::GetConfiguration() const {
    Answer answer(16);
    Put(answer, 0, 4, 12);
    Put(answer, 6, 2, profile);
    // The profile list, with this one.
    answer[10] = 0x03;
    answer[11] = 4;
    Put(answer, 12, 2, profile);
    answer[14] = 1;
    return answer;
}

ModelDrive::Answer ModelDrive::GetDiscInformation() const {
    Answer answer(34);
    Put(answer, 0, 2, 32);
    unsigned status = 1;
    if (IsBlank()) status = 0;
    if (isClosed || IsReadOnly()) status = 2;
    unsigned session = isSessionOpen ? 1 : 0;
    if (isClosed || IsReadOnly()) session = 3;
    if (isDamaged) session = 2;
    const bool isErasable = profile == 0x0A || profile == 0x14;
    answer[2] = static_cast<uint8_t>((isErasable ? 0x10U : 0U) | session << 2 | status);
    answer[3] = 1;
    answer[4] = answer[5] = answer[6] = static_cast<uint8_t>(GetTrackCount());
    return answer;
}

ModelDrive::Answer ModelDrive::GetTrackInformation(size_t track) const {
    Answer answer(36);
    Put(answer, 0, 2, 34);
    answer[2] = answer[3] = static_cast<uint8_t>(track);
    answer[5] = static_cast<uint8_t>((isDamaged ? 0x20 : 0) | (isAudio ? 0 : 4));
    const bool isRecorded = track <= sessions.size();
    const bool isOpen = !isRecorded && hasOpenTrack;
    answer[6] = static_cast<uint8_t>((isRecorded || isOpen ? 0 : 0x40) | 1);
    if (isRecorded) {
        Put(answer, 8, 4, sessions[track - 1]);
        Put(answer, 24, 4, nextWritable - sessions[track - 1]);
    } else {
        answer[7] = 1;
        Put(answer, 8, 4, isOpen && sessions.empty() ? 0 : nextWritable);
        Put(answer, 12, 4, nextWritable);
        Put(answer, 16, 4, capacity - nextWritable);
        Put(answer, 24, 4, capacity - nextWritable);
    }
    return answer;
}

ModelDrive::Answer ModelDrive::GetFormatCapacities() const {
    Answer answer(12 + 8 * formats.size());
    answer[3] = static_cast<uint8_t>(answer.size() - 4);
    Put(answer, 4, 4, capacity);
    answer[8] = isFormatted ? 2 : 1;
    Put(answer, 9, 3, blockSize);
    size_t at = 12;
    for (const uint8_t format : formats) {
        Put(answer, at, 4, capacity);
        answer[at + 4] = static_cast<uint8_t>(format << 2);
        at += 8;
    }
    return answer;
}

ModelDrive::Answer ModelDrive::GetMode10() const {
    Answer answer(8);
    Put(answer, 0, 2, 6 + writeParameters.size());
    answer.insert(answer.end(), writeParameters.begin(), writeParameters.end());
    return answer;
}

}  // namespace embedded::attached
