#pragma once

#include <string>
#include <vector>

#include "embedded/attached/scsi/cdb.h"

namespace embedded::attached {

// SMC-3, 6.4 and 6.5: the changer looks at its elements itself. Takes up to minutes.
Cdb InitializeElementStatus();
Cdb InitializeElementStatus(uint16_t first, uint16_t count);

// Element types (SMC-3, table 3).
enum class ElementType : uint8_t { Picker = 1, Slot = 2, MailSlot = 3, Drive = 4 };

// "slot", "mail slot", "drive" or "picker".
const char* NameOf(ElementType type);

// What is asked of READ ELEMENT STATUS (SMC-3, 6.10). All elements of a type that have the address `first` or
// a higher one, `count` of them at most.
struct ElementQuery {
    ElementType type = ElementType::Slot;
    uint16_t first = 0;
    uint16_t count = 0xFFFF;
    bool wantsVolumeTags = true;
    bool wantsDriveIdentifiers = false;
    uint32_t allocation = 0xFF00;  // bytes that there is room for
};
Cdb ReadElementStatus(const ElementQuery& query);

// How a changer names a drive; a designator as on page 83h.
struct DriveIdentifier {
    uint8_t codeSet = 0;
    uint8_t type = 0;
    std::vector<uint8_t> bytes;
    bool isCut = false;  // the answer ended before the identifier did

    bool operator==(const DriveIdentifier&) const = default;
};

struct Element {
    ElementType type = ElementType::Slot;
    uint16_t address = 0;
    bool isFull = false;
    bool isAccessible = false;  // the picker can reach it; some changers never say so
    bool isException = false;   // something is wrong: see asc and ascq
    uint8_t asc = 0;
    uint8_t ascq = 0;
    bool wasPutByOperator = false;   // mail slots only
    bool isInverted = false;         // the medium was turned over on its last move
    std::optional<uint16_t> source;  // the slot that the medium came from
    std::string volumeTag;           // as the device sent it, without padding
    std::optional<DriveIdentifier> driveIdentifier;

    bool operator==(const Element&) const = default;
};

// Elements stand in the order in which the changer reports them.
struct ElementReport {
    std::vector<Element> elements;
    bool isWhole = true;  // false: there is more than the allocation length left room for
};

// Some changers end an answer up to 8 bytes before the end of its last element; what is missing there reads
// as zero.
Result<ElementReport> DecodeElementStatus(Bytes answer, const ElementQuery& query);

}  // namespace embedded::attached
