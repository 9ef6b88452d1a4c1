// Every item class of the class registry.
#pragma once

#include "items/KvFnFinItems.h"
#include "items/KvFnPortfolio.h"
#include "items/KvFnShareItems.h"
#include "items/KvItemClassList.h"

namespace kv {

#define KV_DECLARE_ITEM_CLASS(Name, Base) \
    class Name : public Base { \
        KV_ITEM_CLASS_BODY(Name, Base) \
    };
KV_PLAIN_ITEM_CLASSES(KV_DECLARE_ITEM_CLASS)
#undef KV_DECLARE_ITEM_CLASS

} // namespace kv
