#include "embedded/simulated/faults.h"

#include <algorithm>
#include <vector>

#include "embedded/catalogue/items.h"
#include "embedded/model/random.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr Sql kFaultsOfFunction = R"sql(
    SELECT id, function, jukebox, magazine, slot, side, drive, volume, skip, times, probability, seed,
        code, text, delay, matched, fired
    FROM fault WHERE function IN (?1, '*')
)sql";

constexpr Sql kHasFaults = R"sql(SELECT 1 FROM fault WHERE function IN (?1, '*') LIMIT 1)sql";

constexpr Sql kCountCall = R"sql(UPDATE fault SET matched = ?2, fired = ?3 WHERE id = ?1)sql";

std::vector<Fault> FaultsOf(Database& database, const char* function) {
    std::vector<Fault> faults;
    Statement row(database, kFaultsOfFunction, function);
    while (row.Next())
        faults.push_back(ReadFault(row));
    std::ranges::sort(faults, {}, &Fault::id);
    return faults;
}

// Whether the volume is on the side, or on either side of the medium, that the call names.
bool IsVolumeThere(Database& database, int64_t volume, const Item& item) {
    if (!item.jukebox.has_value() || !item.slot.has_value()) return false;
    return std::ranges::any_of(FindLocations(database, volume), [&](const SideKey& place) {
        const bool isSameSide = !item.side.has_value() || *item.side == 2 || *item.side == place.side;
        return place.jukeboxId == *item.jukebox && place.magazine == item.magazine.value_or(0) &&
               place.slot == *item.slot && isSameSide;
    });
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

Fault ReadFault(Statement& row) {
    Fault fault;
    row >> fault.id >> fault.function;
    fault.item = ReadItem(row);
    row >> fault.skip >> fault.times >> fault.probability >> fault.seed >> fault.code >> fault.text;
    fault.delay = std::chrono::milliseconds(row.Read<int64_t>());
    row >> fault.matched >> fault.fired;
    return fault;
}

// The upper 53 bits of a random number fill a fraction.
bool StrikesByChance(double probability, int64_t seed, int64_t call) {
    constexpr double kScale = 1.0 / 9007199254740992.0;
    const uint64_t number = Random(seed).Nth(static_cast<uint64_t>(call));
    return static_cast<double>(number >> 11U) * kScale < probability;
}

bool HasFaults(Database& database, const char* function) {
    return FindValue<int64_t>(database, kHasFaults, function).has_value();
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
        Run(database, kCountCall, fault.id, fault.matched, fault.fired);
    }
    return effect;
}

}  // namespace embedded
