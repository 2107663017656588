#include "embedded/catalogue/reconciliation.h"

#include <algorithm>
#include <map>
#include <set>

namespace embedded {
namespace {

bool IsStorage(ElementKind kind) {
    return kind == ElementKind::Slot || kind == ElementKind::MailSlot;
}

// A barcode that was not read says nothing.
bool MayBeTheSame(const std::string& tag, const std::string& other) {
    return tag.empty() || other.empty() || tag == other;
}

class Reconciler {
  public:
    Reconciler(const KnownJukebox& known, const std::vector<ElementState>& elements, Robot robot)
        : m_known(known), m_robot(robot) {
        for (const ElementState& element : elements)
            m_seen.emplace(element.address, &element);
        for (const KnownElement& element : known.elements)
            m_byAddress.emplace(element.address, &element);
    }

    Reconciliation Run() {
        FollowIntent();
        for (const KnownElement& element : m_known.elements)
            CompareElement(element);
        // A medium whose barcode is seen in a slot is not the one in a drive.
        for (const KnownElement& element : m_known.elements)
            FindMovedMedium(element);
        for (const auto& [address, state] : m_seen) {
            if (!IsStorage(state->kind) && state->isFull) FindLoadedMedium(*state);
        }
        for (const KnownElement& element : m_known.elements)
            FindUnknownMedium(element);
        for (const KnownElement* element : m_displaced)
            m_result.removed.push_back(element->medium);
        return std::move(m_result);
    }

  private:
    const ElementState* Seen(uint16_t address) const {
        const auto found = m_seen.find(address);
        return found == m_seen.end() ? nullptr : found->second;
    }
    bool IsFull(uint16_t address) const {
        const ElementState* state = Seen(address);
        return state != nullptr && state->isFull;
    }

    // Elements that a move in progress may change at any moment.
    bool IsInMotion(uint16_t address) const {
        return m_robot == Robot::Moving && m_known.intent.has_value() &&
               (address == m_known.intent->source || address == m_known.intent->destination);
    }

    // A move that has come to its end.
    void FollowIntent() {
        if (m_robot == Robot::Moving || !m_known.intent.has_value()) return;
        const Intent& intent = *m_known.intent;
        const ElementState* destination = Seen(intent.destination);
        if (destination == nullptr || !destination->isFull || IsFull(intent.source)) return;
        const KnownElement* home = HomeOf(intent.medium);
        if (home == nullptr || home->address == intent.destination ||
            !MayBeTheSame(home->tag, destination->tag)) {
            return;
        }
        m_hasArrived = true;
        if (!IsStorage(destination->kind)) return;
        const bool isExport = destination->kind == ElementKind::MailSlot && home->kind == ElementKind::Slot;
        Put({intent.medium, intent.destination, destination->tag, isExport});
    }

    const KnownElement* HomeOf(int64_t medium) const {
        const auto found = std::ranges::find(m_known.elements, medium, &KnownElement::medium);
        return found == m_known.elements.end() ? nullptr : &*found;
    }

    void CompareElement(const KnownElement& element) {
        if (!IsStorage(element.kind)) return;
        const ElementState* state = Seen(element.address);
        if (state == nullptr) {
            // The medium stays with its magazine, unless it turns up elsewhere.
            if (element.isReported) m_result.disappeared.push_back(element.address);
            if (element.medium != 0) m_absent.push_back(&element);
            return;
        }
        if (!element.isReported) m_result.appeared.push_back(element.address);
        if (element.medium == 0 || m_claimedMedia.contains(element.medium)) return;
        if (IsInMotion(element.address)) {
            m_claimedElements.insert(element.address);
            return;
        }
        const bool stays = state->isFull && MayBeTheSame(element.tag, state->tag) &&
                           !m_claimedElements.contains(element.address);
        if (!stays) {
            m_displaced.push_back(&element);
            return;
        }
        m_claimedElements.insert(element.address);
        if (element.tag.empty() && !state->tag.empty()) {
            m_result.tagged.push_back({element.medium, state->tag});
        }
    }

    void FindMovedMedium(const KnownElement& element) {
        const ElementState* state = UnclaimedMedium(element);
        if (state == nullptr || state->tag.empty()) return;
        for (auto* media : {&m_displaced, &m_absent}) {
            const auto found = std::ranges::find(*media, state->tag, &KnownElement::tag);
            if (found == media->end()) continue;
            Put({(*found)->medium, state->address, state->tag, false});
            media->erase(found);
            return;
        }
    }

    void FindUnknownMedium(const KnownElement& element) {
        const ElementState* state = UnclaimedMedium(element);
        if (state != nullptr) Put({0, state->address, state->tag, false});
    }

    // What is in a slot or mail slot, when that is not accounted for yet.
    const ElementState* UnclaimedMedium(const KnownElement& element) const {
        const ElementState* state = Seen(element.address);
        const bool isOpen = IsStorage(element.kind) && state != nullptr && state->isFull &&
                            !m_claimedElements.contains(element.address) && !IsInMotion(element.address);
        return isOpen ? state : nullptr;
    }

    void Put(Placement placement) {
        m_claimedElements.insert(placement.element);
        if (placement.medium != 0) m_claimedMedia.insert(placement.medium);
        m_result.placed.push_back(std::move(placement));
    }

    void FindLoadedMedium(const ElementState& state) {
        if (IsInMotion(state.address)) return;
        const KnownElement* home = TakeHome(state);
        const bool canReturn =
            home != nullptr && !IsFull(home->address) && !m_claimedElements.contains(home->address);
        const uint16_t slot = canReturn ? home->address : FreeSlot(state.source);
        m_result.loaded.push_back({state.address, slot, state.isInverted});
        if (slot == 0) {
            if (home != nullptr) m_result.removed.push_back(home->medium);
            return;
        }
        m_claimedElements.insert(slot);
        if (canReturn) return;
        Put({home == nullptr ? 0 : home->medium, slot, state.tag, false});
    }

    // The element whose medium is the one in this drive or picker; it is not displaced any more.
    const KnownElement* TakeHome(const ElementState& state) {
        const auto take = [&](const auto& fits) -> const KnownElement* {
            const auto found = std::ranges::find_if(m_displaced, fits);
            if (found == m_displaced.end()) return nullptr;
            const KnownElement* home = *found;
            m_displaced.erase(found);
            return home;
        };
        const auto& intent = m_known.intent;
        const bool isIntended =
            intent.has_value() &&
            (intent->source == state.address || (m_hasArrived && intent->destination == state.address));
        if (isIntended) {
            const auto* home = take([&](const KnownElement* one) {
                return one->medium == intent->medium && MayBeTheSame(one->tag, state.tag);
            });
            if (home != nullptr) return home;
        }
        if (!state.tag.empty()) {
            const auto* home = take([&](const KnownElement* one) { return one->tag == state.tag; });
            if (home != nullptr) return home;
        }
        const auto* origin = take([&](const KnownElement* one) {
            return state.source == one->address && MayBeTheSame(one->tag, state.tag);
        });
        if (origin != nullptr || !state.tag.empty()) return origin;
        return take([](const KnownElement* one) { return one->tag.empty(); });
    }

    // The slot that a medium came from, else the first one that is empty; 0 = there is none.
    uint16_t FreeSlot(std::optional<uint16_t> source) const {
        const auto isFree = [&](const KnownElement& element) {
            return element.kind == ElementKind::Slot && Seen(element.address) != nullptr &&
                   !IsFull(element.address) && !m_claimedElements.contains(element.address) &&
                   !IsInMotion(element.address);
        };
        if (source.has_value()) {
            const auto found = m_byAddress.find(*source);
            if (found != m_byAddress.end() && isFree(*found->second)) return *source;
        }
        const auto free = std::ranges::find_if(m_known.elements, isFree);
        return free == m_known.elements.end() ? uint16_t{0} : free->address;
    }

    const KnownJukebox& m_known;
    Robot m_robot;
    std::map<uint16_t, const ElementState*> m_seen;
    std::map<uint16_t, const KnownElement*> m_byAddress;
    bool m_hasArrived = false;                     // the medium of the intent
    std::vector<const KnownElement*> m_displaced;  // media that are not where the catalogue has them
    std::vector<const KnownElement*> m_absent;     // media whose elements are not there
    std::set<uint16_t> m_claimedElements;
    std::set<int64_t> m_claimedMedia;
    Reconciliation m_result;
};

}  // namespace

Reconciliation Reconcile(const KnownJukebox& known, const std::vector<ElementState>& elements, Robot robot) {
    return Reconciler(known, elements, robot).Run();
}

}  // namespace embedded
