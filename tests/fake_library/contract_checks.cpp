#include "tests/fake_library/contract_checks.h"

#include <algorithm>
#include <cstring>

namespace krvfake {
namespace {

template <typename Block>
void ExpectZero(const Block& block, const char* what, Complaints& complaints) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(&block);
    if (std::any_of(bytes, bytes + sizeof(Block), [](unsigned char byte) { return byte != 0; })) {
        complaints.push_back(std::string(what) + " is not all zero");
    }
}

}  // namespace

void Expect(int64_t value, int64_t expected, const char* what, Complaints& complaints) {
    if (value == expected) return;
    complaints.push_back(std::string(what) + " is " + std::to_string(value) + ", not " +
                         std::to_string(expected));
}

void CheckContext(const KrvCallContext& context, KrvSession expectedSession, Complaints& complaints) {
    Expect(context.headSize, 24, "context.headSize", complaints);
    if (context.errorInfo != &context.error) {
        complaints.emplace_back("context.errorInfo is not the error part of the same context");
    }
    Expect(context.error.size, 1032, "context.error.size", complaints);
    Expect(context.error.code, 0, "context.error.code", complaints);
    ExpectZero(context.error.text, "context.error.text", complaints);
    if (context.session != expectedSession) {
        complaints.emplace_back(expectedSession == 0 ? "context.session is set, but no session exists"
                                                     : "context.session is not the open session");
    }
}

void CheckPresets(const JukeboxRecord& record, Complaints& complaints) {
    Expect(record.size, 120, "record.size", complaints);
    ExpectZero(record.identity, "record.identity", complaints);
    Expect(record.enabled, 0, "record.enabled", complaints);
    Expect(record.doubleSided, 0, "record.doubleSided", complaints);
    Expect(record.driveCount, -1, "record.driveCount", complaints);
    Expect(record.magazineCount, -1, "record.magazineCount", complaints);
}

void CheckPresets(const MagazineRecord& record, Complaints& complaints) {
    Expect(record.size, 12, "record.size", complaints);
    Expect(record.slotCount, -1, "record.slotCount", complaints);
    Expect(record.present, 0, "record.present", complaints);
}

void CheckPresets(const DriveRecord& record, Complaints& complaints) {
    Expect(record.size, 72, "record.size", complaints);
    ExpectZero(record.identity, "record.identity", complaints);
    Expect(record.enabled, 0, "record.enabled", complaints);
    ExpectZero(record.libraryValue1, "record.libraryValue1", complaints);
    ExpectZero(record.libraryValue2, "record.libraryValue2", complaints);
}

void CheckPresets(const SlotRecord& record, Complaints& complaints) {
    Expect(record.size, 12, "record.size", complaints);
    Expect(record.state, 0, "record.state", complaints);
    Expect(record.mediumCode, 254, "record.mediumCode", complaints);
}

void CheckPresets(const SideRecord& record, Complaints& complaints) {
    Expect(record.size, 20, "record.size", complaints);
    Expect(record.state, 0, "record.state", complaints);
    Expect(record.mediumCode, 254, "record.mediumCode", complaints);
    Expect(record.finalization, 0, "record.finalization", complaints);
    Expect(record.volumeId, -1, "record.volumeId", complaints);
}

void CheckPresets(const VolumeRecord& record, Complaints& complaints) {
    Expect(record.size, 336, "record.size", complaints);
    Expect(record.type, 0, "record.type", complaints);
    Expect(record.libraryValue1, -1, "record.libraryValue1", complaints);
    ExpectZero(record.fileSystem, "record.fileSystem", complaints);
    ExpectZero(record.label, "record.label", complaints);
    ExpectZero(record.totalCapacity, "record.totalCapacity", complaints);
    ExpectZero(record.freeCapacity, "record.freeCapacity", complaints);
    Expect(record.libraryValue2, 0, "record.libraryValue2", complaints);
    ExpectZero(record.reserved, "record.reserved", complaints);
}

void CheckLocationPresets(const SideKey* locations, uint32_t room, Complaints& complaints) {
    if (locations == nullptr) {
        complaints.emplace_back("the location array is null");
        return;
    }
    for (uint32_t i = 0; i < room; ++i) {
        const SideKey& key = locations[i];
        const bool fieldsUnset =
            key.jukeboxId == -1 && key.magazine == -1 && key.slot == -1 && key.side == -1;
        if (key.size == sizeof(SideKey) && fieldsUnset) continue;
        complaints.push_back("locations[" + std::to_string(i) + "] is not preset to size 20 and -1");
        return;
    }
}

void CheckFormatOptions(const FormatOptions& options, Complaints& complaints) {
    Expect(options.size, 284, "options.size", complaints);
    const char* const end = options.label + sizeof(options.label);
    const char* const nul = std::find(options.label, end, '\0');
    if (nul == end) complaints.emplace_back("options.label has no NUL");
    if (std::any_of(nul, end, [](char byte) { return byte != '\0'; })) {
        complaints.emplace_back("options.label is not zero behind its text");
    }
    if (options.certify > 1) complaints.emplace_back("options.certify is neither 0 nor 1");
    if (options.sequential > 1) complaints.emplace_back("options.sequential is neither 0 nor 1");
    Expect(options.alwaysZero, 0, "options.alwaysZero", complaints);
    ExpectZero(options.reserved, "options.reserved", complaints);
}

}  // namespace krvfake
