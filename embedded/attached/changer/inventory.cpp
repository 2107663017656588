#include "embedded/attached/changer/inventory.h"

#include <algorithm>
#include <map>

#include "embedded/attached/scsi/sense.h"

namespace embedded::attached {
namespace {

// Elements asked for at once. With the largest descriptors that are in use, of some 150 bytes, the answer
// stays below what every host adapter carries at once.
constexpr uint16_t kPageSize = 256;

// Reads the elements of one type, always from the lowest address on that it does not know yet.
class ElementReader {
  public:
    ElementReader(Device& changer, ElementType type, const ElementRange& range)
        : m_changer(changer), m_range(range), m_next(range.first) {
        m_query.type = type;
        m_query.wantsDriveIdentifiers = type == ElementType::Drive;
    }

    Result<std::vector<Element>> Read() {
        while (m_next < End()) {
            const auto report = Ask();
            if (!report) return report.GetError();
            const auto taken = Take(*report);
            if (!taken) return taken.GetError();
        }
        std::vector<Element> elements;
        elements.reserve(m_known.size());
        for (auto& [address, element] : m_known)
            elements.push_back(std::move(element));
        return elements;
    }

  private:
    uint32_t End() const { return uint32_t{m_range.first} + m_range.count; }

    Result<ElementReport> Ask() {
        m_query.first = static_cast<uint16_t>(m_next);
        m_query.count = static_cast<uint16_t>(std::min<uint32_t>(kPageSize, End() - m_next));
        auto answer = m_changer.Ask(ReadElementStatus(m_query), m_query.allocation);
        if (!answer && m_query.wantsDriveIdentifiers && IsFieldRefused(answer.GetError())) {
            // Changers of an older standard do not know that drives can be identified.
            m_query.wantsDriveIdentifiers = false;
            answer = m_changer.Ask(ReadElementStatus(m_query), m_query.allocation);
        }
        if (!answer) return answer.GetError();
        auto report = DecodeElementStatus(*answer, m_query);
        if (!report) return m_changer.Named(report.GetError());
        if (report->elements.empty() && !report->isWhole) {
            return m_changer.Named(BadAnswer(kReadElementStatus, "has no room for a single element"));
        }
        return report;
    }

    static bool IsFieldRefused(const Error& error) {
        constexpr uint8_t kInvalidField = 0x24;
        return error.sense && error.sense->key == sense_key::kIllegalRequest &&
               error.sense->asc == kInvalidField;
    }

    Result<Nothing> Take(const ElementReport& report) {
        std::vector<uint16_t> addresses;
        for (const Element& element : report.elements) {
            if (!m_range.Contains(element.address)) return Stray(element);
            addresses.push_back(element.address);
            m_known.insert_or_assign(element.address, element);
        }
        std::ranges::sort(addresses);
        if (const auto twice = std::ranges::adjacent_find(addresses); twice != addresses.end()) {
            return m_changer.Named(
                BadAnswer(kReadElementStatus, "names element " + std::to_string(*twice) + " twice"));
        }
        Advance(addresses);
        return Nothing();
    }

    Error Stray(const Element& element) const {
        return m_changer.Named(BadAnswer(
            kReadElementStatus, "names " + std::string(NameOf(element.type)) + " " +
                                    std::to_string(element.address) + ", but the changer's own range is " +
                                    std::to_string(m_range.first) + " to " + std::to_string(End() - 1)));
    }

    // The answer begins with the lowest address from the one that was asked for, so those below it do not
    // exist.
    void Advance(const std::vector<uint16_t>& addresses) {
        const auto first = std::ranges::lower_bound(addresses, m_next);
        m_next = first == addresses.end() ? End() : *first;
        while (m_next < End() && m_known.contains(static_cast<uint16_t>(m_next)))
            ++m_next;
    }

    Device& m_changer;
    ElementRange m_range;
    ElementQuery m_query;
    uint32_t m_next;
    std::map<uint16_t, Element> m_known;
};

}  // namespace

Result<std::vector<Element>> ReadElements(Device& changer, ElementType type, const ElementRange& range) {
    return ElementReader(changer, type, range).Read();
}

Result<Inventory> ReadInventory(Device& changer, const Geometry& geometry) {
    Inventory inventory;
    struct Part {
        ElementType type;
        std::vector<Element>& elements;
    };
    for (const Part& part :
         {Part{ElementType::Picker, inventory.pickers}, Part{ElementType::Slot, inventory.slots},
          Part{ElementType::MailSlot, inventory.mailSlots}, Part{ElementType::Drive, inventory.drives}}) {
        auto elements = ReadElements(changer, part.type, geometry.RangeOf(part.type));
        if (!elements) return elements.GetError();
        part.elements = std::move(*elements);
    }
    return inventory;
}

}  // namespace embedded::attached
