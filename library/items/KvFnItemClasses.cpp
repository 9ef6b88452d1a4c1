#include "items/KvFnItemClasses.h"

namespace kv {

KV_PLAIN_ITEM_CLASSES(KV_ITEM_CLASS_DEFINE)

} // namespace kv
