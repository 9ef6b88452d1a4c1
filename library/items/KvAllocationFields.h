// The ";"-joined field texts that allocation records (KvPortAllocation.h) and
// sub-class records (KvAssetSubClasses.h) are written as, and the share test
// every total of an allocation uses. Internal to the items folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kv::fields {

// ";"-joined texts with "\;" and "\\" inside a text.
std::string JoinFields(const std::vector<std::string>& f);
std::vector<std::string> SplitFields(std::string_view t);
// Field i, or "" past the end.
std::string_view FieldAt(const std::vector<std::string>& f, std::size_t i);
// Field i as a model-file number; def when missing or unreadable.
std::int32_t IntAt(const std::vector<std::string>& f, std::size_t i, std::int32_t def);
double FloatAt(const std::vector<std::string>& f, std::size_t i, double def);

// Negative, NaN and infinite shares count as 0 in every total.
double Pos(double v);
bool NeedsZero(double v);

} // namespace kv::fields
