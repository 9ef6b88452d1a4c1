#include "items/KvFnItemClasses.h"

namespace kv {

KV_ITEM_CLASSES(KV_ITEM_CLASS_DEFINE)

} // namespace kv
