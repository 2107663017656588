#include "embedded/attached/changer/drive_matching.h"

#include <algorithm>
#include <string_view>

namespace embedded::attached {
namespace {

constexpr size_t kVendor = 8;
constexpr size_t kProduct = 16;

std::string Trimmed(std::string_view text) {
    constexpr std::string_view kPadding(" \0", 2);
    const size_t first = text.find_first_not_of(kPadding);
    if (first == std::string_view::npos) return "";
    return std::string(text.substr(first, text.find_last_not_of(kPadding) + 1 - first));
}

// Vendor, product and serial number at the places where the identifiers of changers have them: 8 and 16
// characters, then the rest.
std::string FullName(const Identity& identity) {
    std::string name = identity.inquiry.vendor;
    name.resize(kVendor, ' ');
    name += identity.inquiry.product;
    name.resize(kVendor + kProduct, ' ');
    return name + identity.serialNumber;
}

// The same text out of an identifier, whose serial number may stand at the right end of its field.
std::string Normalized(const DriveIdentifier& identifier) {
    const std::string text(identifier.bytes.begin(), identifier.bytes.end());
    if (text.size() <= kVendor + kProduct) return Trimmed(text);
    return text.substr(0, kVendor + kProduct) + Trimmed(std::string_view(text).substr(kVendor + kProduct));
}

Evidence EvidenceFor(const DriveIdentifier& identifier, const Identity& identity) {
    const bool hasDesignator = std::ranges::any_of(identity.designators, [&](const Designator& designator) {
        return designator.association != 1 && !designator.bytes.empty() &&
               designator.bytes == identifier.bytes;
    });
    const std::string given = Normalized(identifier);
    const bool hasSerialNumber = !identity.serialNumber.empty();
    if (identifier.isCut) {
        const bool fits =
            hasSerialNumber && given.size() >= kVendor + kProduct && FullName(identity).starts_with(given);
        return fits ? Evidence::PartOfIdentifier : Evidence::None;
    }
    if (hasDesignator || (hasSerialNumber && given == FullName(identity))) return Evidence::Identifier;
    if (hasSerialNumber && given == identity.serialNumber) return Evidence::SerialNumber;
    return Evidence::None;
}

// Several ways to one drive, as far as can be told.
bool AreTheSame(const Identity& one, const Identity& other) {
    return FullName(one) == FullName(other) && one.designators == other.designators;
}

// Matches the drive elements of one changer. `isTaken` says which candidates any changer has.
class Matcher {
  public:
    Matcher(const std::vector<Element>& elements, const std::vector<Identity>& candidates,
            std::vector<bool>& isTaken)
        : m_elements(elements), m_candidates(candidates), m_matches(elements.size()), m_isTaken(isTaken) {}

    const std::vector<DriveMatch>& GetMatches() const { return m_matches; }

    void MatchWhole() {
        std::vector<bool> isFree(m_candidates.size(), true);
        for (const Evidence evidence : {Evidence::Identifier, Evidence::SerialNumber}) {
            for (size_t i = 0; i < m_elements.size(); ++i) {
                if (IsOpen(i)) Assign(i, evidence, Find(i, evidence, isFree));
            }
            for (const DriveMatch& match : m_matches) {
                for (const size_t drive : match.drives)
                    isFree[drive] = false;
            }
        }
    }

    // A part of an identifier proves something only when it fits one drive that no changer has, and when no
    // other identifier is incomplete.
    void MatchPart() {
        std::vector<size_t> parts;
        for (size_t i = 0; i < m_elements.size(); ++i) {
            if (IsOpen(i) && m_elements[i].driveIdentifier->isCut) parts.push_back(i);
        }
        if (parts.size() != 1) return;
        std::vector<bool> isFree = m_isTaken;
        isFree.flip();
        Assign(parts.front(), Evidence::PartOfIdentifier,
               Find(parts.front(), Evidence::PartOfIdentifier, isFree));
    }

  private:
    std::vector<size_t> Find(size_t element, Evidence evidence, const std::vector<bool>& isFree) const {
        std::vector<size_t> found;
        for (size_t i = 0; i < m_candidates.size(); ++i) {
            const bool fits = EvidenceFor(*m_elements[element].driveIdentifier, m_candidates[i]) == evidence;
            if (isFree[i] && fits) found.push_back(i);
        }
        return found;
    }

    bool IsOpen(size_t element) const {
        const auto& identifier = m_elements[element].driveIdentifier;
        if (!identifier || m_matches[element].evidence != Evidence::None) return false;
        return std::ranges::count(m_elements, identifier, &Element::driveIdentifier) == 1;
    }

    void Assign(size_t element, Evidence evidence, const std::vector<size_t>& found) {
        const bool isOneDrive = std::ranges::all_of(
            found, [&](size_t i) { return AreTheSame(m_candidates[i], m_candidates[found.front()]); });
        if (found.empty() || !isOneDrive) return;
        for (const size_t i : found)
            m_isTaken[i] = true;
        m_matches[element] = {evidence, found};
    }

    const std::vector<Element>& m_elements;
    const std::vector<Identity>& m_candidates;
    std::vector<DriveMatch> m_matches;
    std::vector<bool>& m_isTaken;
};

}  // namespace

const char* NameOf(Evidence evidence) {
    switch (evidence) {
        case Evidence::Identifier:
            return "identifier";
        case Evidence::SerialNumber:
            return "serial number";
        case Evidence::PartOfIdentifier:
            return "part of identifier";
        case Evidence::Loading:
            return "loading a disc";
        case Evidence::None:
            break;
    }
    return "-";
}

std::vector<std::vector<DriveMatch>> MatchDrives(const std::vector<std::vector<Element>>& changers,
                                                 const std::vector<Identity>& candidates) {
    std::vector<bool> isTaken(candidates.size());
    std::vector<Matcher> matchers;
    matchers.reserve(changers.size());
    for (const auto& elements : changers)
        matchers.emplace_back(elements, candidates, isTaken);
    for (Matcher& matcher : matchers)
        matcher.MatchWhole();
    for (Matcher& matcher : matchers)
        matcher.MatchPart();
    std::vector<std::vector<DriveMatch>> matches;
    matches.reserve(matchers.size());
    for (const Matcher& matcher : matchers)
        matches.push_back(matcher.GetMatches());
    return matches;
}

}  // namespace embedded::attached
