#include "krvcmd/frontend/parsing/item_address.h"

#include <utility>

namespace krvcmd {
namespace {

Status InvalidAddress() {
    return Status::SystemError(os_code::kInvalidCommandLine);
}

// The address parameters of a command line; null where absent.
struct AddressParameters {
    const Parameter* jukebox;
    const Parameter* magazine;
    const Parameter* slot;
    const Parameter* sideA;
    const Parameter* sideB;
    const Parameter* drive;
    const Parameter* volume;

    bool HasAnySide() const { return sideA != nullptr || sideB != nullptr; }

    // Both sides together count as no side at all.
    bool HasOneSide() const { return (sideA != nullptr) != (sideB != nullptr); }

    bool HasMediumPart() const { return magazine != nullptr || slot != nullptr || HasAnySide(); }
};

bool IsMultiple(const Parameter* parameter) {
    return parameter != nullptr && parameter->IsMultiple();
}

Status ChooseKind(const AddressParameters& given, AddressKind& kind) {
    if (given.jukebox == nullptr) {
        if (given.HasMediumPart() || given.drive != nullptr) return InvalidAddress();
        kind = given.volume != nullptr ? AddressKind::Volumes : AddressKind::None;
        return {};
    }
    if (given.volume != nullptr) return InvalidAddress();
    if (given.drive != nullptr) {
        if (given.HasMediumPart()) return InvalidAddress();
        kind = AddressKind::Drive;
        return {};
    }
    if (given.HasOneSide()) {
        if (given.slot == nullptr) return InvalidAddress();
        kind = AddressKind::SlotSide;
        return {};
    }
    if (given.slot != nullptr) {
        kind = AddressKind::Slots;
    } else {
        kind = given.magazine != nullptr ? AddressKind::Magazine : AddressKind::Jukebox;
    }
    return {};
}

// A narrower part of an address needs single numbers in the wider ones.
bool HasListWhereSingleIsNeeded(const AddressParameters& given) {
    if (given.HasAnySide() &&
        (IsMultiple(given.slot) || IsMultiple(given.magazine) || IsMultiple(given.jukebox))) {
        return true;
    }
    if (given.slot != nullptr && (IsMultiple(given.magazine) || IsMultiple(given.jukebox))) return true;
    if (given.magazine != nullptr && IsMultiple(given.jukebox)) return true;
    return given.drive != nullptr && IsMultiple(given.jukebox);
}

// Where one number counts, a list counts with its first.
std::optional<int32_t> FirstNumber(const Parameter* parameter) {
    if (parameter == nullptr || parameter->ranges.empty()) return std::nullopt;
    return parameter->ranges.front().from;
}

// The one place where a number of the command line becomes an index.
int32_t ZeroBased(int32_t number) {
    return number - 1;
}

std::optional<int32_t> FirstIndex(const Parameter* parameter) {
    const std::optional<int32_t> number = FirstNumber(parameter);
    return number.has_value() ? std::optional(ZeroBased(*number)) : std::nullopt;
}

ItemAddressList ListEntries(const AddressParameters& given, AddressKind kind) {
    ItemAddress common;
    if (given.jukebox != nullptr) {
        common.jukeboxId = FirstNumber(given.jukebox).value_or(common.jukeboxId);
        common.jukeboxName = given.jukebox->text;
    }
    common.magazine = FirstIndex(given.magazine);
    common.slot = FirstIndex(given.slot);
    common.drive = FirstIndex(given.drive);
    if (given.HasOneSide()) common.side = given.sideA != nullptr ? 0 : 1;

    const auto setSlot = [](ItemAddress& entry, int32_t number) { entry.slot = ZeroBased(number); };
    const auto setMagazine = [](ItemAddress& entry, int32_t number) { entry.magazine = ZeroBased(number); };
    const auto setVolume = [](ItemAddress& entry, int32_t id) { entry.volumeId = id; };
    switch (kind) {
        case AddressKind::None:
            return {};
        case AddressKind::Volumes:
            return {common, setVolume, given.volume->ranges};
        case AddressKind::SlotSide:
        case AddressKind::Slots:
            return {common, setSlot, given.slot->ranges};
        case AddressKind::Magazine:
            return {common, setMagazine, given.magazine->ranges};
        case AddressKind::Jukebox:
        case AddressKind::Drive:
            return {common, [](ItemAddress&, int32_t) {}, {NumberRange{}}};
    }
    return {};  // GCOVR_EXCL_LINE: every kind has a case
}

}  // namespace

ItemAddressList::ItemAddressList(ItemAddress common, SetNumber setNumber, std::vector<NumberRange> numbers)
    : m_common(std::move(common)), m_setNumber(setNumber), m_numbers(std::move(numbers)) {}

ItemAddressList::Iterator::Iterator(const ItemAddressList& list) : m_list(&list) {
    if (!list.m_numbers.empty()) m_number = list.m_numbers.front().from;
    SkipEmptyRanges();
}

ItemAddress ItemAddressList::Iterator::operator*() const {
    ItemAddress entry = m_list->m_common;
    m_list->m_setNumber(entry, static_cast<int32_t>(m_number));
    return entry;
}

ItemAddressList::Iterator& ItemAddressList::Iterator::operator++() {
    ++m_number;
    SkipEmptyRanges();
    return *this;
}

bool ItemAddressList::Iterator::operator==(std::default_sentinel_t) const {
    return m_range == m_list->m_numbers.size();
}

void ItemAddressList::Iterator::SkipEmptyRanges() {
    const std::vector<NumberRange>& numbers = m_list->m_numbers;
    while (m_range < numbers.size() && m_number > numbers[m_range].to) {
        ++m_range;
        if (m_range < numbers.size()) m_number = numbers[m_range].from;
    }
}

Status ReadItemAddress(const std::vector<Parameter>& parameters, AddressKind& kind,
                       ItemAddressList& addresses) {
    const AddressParameters given{
        FindParameter(parameters, "J"),  FindParameter(parameters, "M"),  FindParameter(parameters, "S"),
        FindParameter(parameters, ".A"), FindParameter(parameters, ".B"), FindParameter(parameters, "D"),
        FindParameter(parameters, "V"),
    };
    if (Status status = ChooseKind(given, kind); !status.IsOk()) return status;
    if (HasListWhereSingleIsNeeded(given)) return InvalidAddress();
    addresses = ListEntries(given, kind);
    return {};
}

}  // namespace krvcmd
