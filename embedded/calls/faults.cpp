#include "embedded/calls/faults.h"

#include <algorithm>
#include <vector>

#include "embedded/rules/lookup.h"
#include "embedded/store/rows.h"

namespace embedded {
namespace {

struct Fault {
    int64_t id = 0;
    Item item;
    int64_t skip = 0;              // matching calls that pass first
    std::optional<int64_t> times;  // nothing: for ever
    double probability = 1;
    int64_t seed = 0;
    std::optional<int32_t> code;  // nothing: it only delays
    std::string text;
    std::chrono::milliseconds delay{0};
    int64_t matched = 0;
    int64_t fired = 0;
};

std::optional<int64_t> Optional(const Rows& rows, int column) {
    return rows.IsNull(column) ? std::nullopt : std::optional<int64_t>(rows.Integer(column));
}

std::vector<Fault> FaultsOf(Database& database, const char* function) {
    std::vector<Fault> faults;
    Rows rows(database, Sql::FaultsOfFunction, function);
    while (rows.Next()) {
        Fault fault;
        fault.id = rows.Integer(0);
        fault.item = {Optional(rows, 1), Optional(rows, 2), Optional(rows, 3),
                      Optional(rows, 4), Optional(rows, 5), Optional(rows, 6)};
        fault.skip = rows.Integer(7);
        fault.times = Optional(rows, 8);
        fault.probability = rows.Real(9);
        fault.seed = rows.Integer(10);
        if (!rows.IsNull(11)) fault.code = rows.Number(11);
        fault.text = rows.Text(12);
        fault.delay = std::chrono::milliseconds(rows.Integer(13));
        fault.matched = rows.Integer(14);
        fault.fired = rows.Integer(15);
        faults.push_back(std::move(fault));
    }
    std::ranges::sort(faults, {}, &Fault::id);
    return faults;
}

// Whether the volume is on the side, or on either side of the medium, that the call names.
bool IsVolumeThere(Database& database, int64_t volume, const Item& item) {
    if (!item.jukebox.has_value() || !item.slot.has_value()) return false;
    Rows places(database, Sql::Locations, volume);
    while (places.Next()) {
        const bool isSameSide = !item.side.has_value() || *item.side == 2 || *item.side == places.Integer(3);
        if (places.Integer(0) == *item.jukebox && item.magazine.value_or(0) == places.Integer(1) &&
            places.Integer(2) == *item.slot && isSameSide) {
            return true;
        }
    }
    return false;
}

bool IsNumberMet(const std::optional<int64_t>& wanted, const std::optional<int64_t>& given) {
    return !wanted.has_value() || wanted == given;
}

// Side 2 of a call stands for both sides.
bool IsSideMet(const std::optional<int64_t>& wanted, const std::optional<int64_t>& given) {
    return IsNumberMet(wanted, given) || given == 2;
}

bool IsMet(Database& database, const Fault& fault, const Item& item) {
    const Item& wanted = fault.item;
    if (!IsNumberMet(wanted.jukebox, item.jukebox) || !IsNumberMet(wanted.magazine, item.magazine) ||
        !IsNumberMet(wanted.slot, item.slot) || !IsNumberMet(wanted.drive, item.drive) ||
        !IsSideMet(wanted.side, item.side)) {
        return false;
    }
    return IsNumberMet(wanted.volume, item.volume) || IsVolumeThere(database, *wanted.volume, item);
}

}  // namespace

bool StrikesByChance(double probability, int64_t seed, int64_t call) {
    // A mixing of the two numbers that spreads over all values; the upper 53 bits fill a fraction.
    auto mixed = static_cast<uint64_t>(seed) + static_cast<uint64_t>(call) * 0x9E3779B97F4A7C15U;
    mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
    mixed ^= mixed >> 31U;
    constexpr double kScale = 1.0 / 9007199254740992.0;
    return static_cast<double>(mixed >> 11U) * kScale < probability;
}

bool HasFaults(Database& database, const char* function) {
    Rows rows(database, Sql::FaultsOfFunction, function);
    return rows.Next();
}

FaultEffect ApplyFaults(Database& database, const CallInfo& call) {
    FaultEffect effect;
    for (Fault& fault : FaultsOf(database, call.function)) {
        if (!IsMet(database, fault, call.item)) continue;
        ++fault.matched;
        const bool isUsedUp = fault.times.has_value() && fault.fired >= *fault.times;
        const bool strikes = fault.matched > fault.skip && !isUsedUp &&
                             StrikesByChance(fault.probability, fault.seed, fault.matched);
        if (strikes) {
            ++fault.fired;
            effect.delay += fault.delay;
            if (fault.code.has_value() && !effect.refusal.has_value()) {
                effect.refusal.emplace(*fault.code, fault.text);
            }
        }
        Run(database, Sql::CountFault, fault.id, fault.matched, fault.fired);
    }
    return effect;
}

}  // namespace embedded
