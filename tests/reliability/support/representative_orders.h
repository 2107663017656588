#pragma once

#include <iosfwd>
#include <span>

#include "tests/reliability/support/order.h"

namespace krvcmd::reliability {

struct NamedOrder {
    const char* name;  // as part of a test's name
    Order order;
};

// For messages.
void PrintTo(const NamedOrder& order, std::ostream* stream);

// Every command in every form of address that it knows, for the small farm (small_farm.h).
std::span<const NamedOrder> RepresentativeOrders();

}  // namespace krvcmd::reliability
