// The class registry: which class an item record becomes, by the class number
// its chart-of-accounts entry carries.
#pragma once

#include <cstdint>

#include "items/KvFnFinItems.h"

namespace kv {

inline constexpr int kClassRegistryRows = 252;

// Numbers 1..251 index the table; 0 and any other number give TFinItem.
const TFinItemClass& ItemClassByNumber(std::int32_t number);

// The lowest row holding the class, or -1.
std::int32_t ItemClassNumber(const TFinItemClass& itemClass);

} // namespace kv
