#include "items/KvFnClassRegistry.h"

#include "items/KvFnItemClasses.h"
#include "items/KvClassRegistryRows.h"

namespace kv {

namespace {
#define KV_REGISTRY_ROW(n, Name) &Name::Class,
constinit const TFinItemClass* const kRegistry[kClassRegistryRows] = {KV_CLASS_REGISTRY_ROWS(KV_REGISTRY_ROW)};
#undef KV_REGISTRY_ROW
} // namespace

const TFinItemClass& ItemClassByNumber(std::int32_t number) {
    if (number < 1 || number >= kClassRegistryRows) return TFinItem::Class;
    return *kRegistry[number];
}

std::int32_t ItemClassNumber(const TFinItemClass& itemClass) {
    for (int i = 0; i < kClassRegistryRows; ++i)
        if (kRegistry[i] == &itemClass) return i;
    return -1;
}

} // namespace kv
