// The program-wide list of asset classes: six classes, seven sub-classes
// each, and third-level entries under some sub-classes. A constant table;
// docs/formats/allocation.md lists it in full.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kv {

inline constexpr int kAlcClsCount = 6;
inline constexpr int kAlcSubClsCount = 7;

// One third-level entry below a sub-class.
struct TAlcSubCls2 {
    std::string_view Name;
};

struct TAlcSubCls {
    std::string_view Name;
    std::span<const TAlcSubCls2> Entries; // empty: the sub-class has no third level
    int Count() const { return static_cast<int>(Entries.size()); }
};

struct TAlcCls {
    std::int32_t Code; // 1..6, the allocator's asset-class code
    std::string_view Name;
    std::span<const TAlcSubCls> SubClasses; // always kAlcSubClsCount of them
    bool IsEquity() const { return Code >= 3 && Code <= 6; }
};

// The six classes in their fixed order (index = code - 1).
std::span<const TAlcCls> AlcClasses();

// Throw EListError for an index outside the table.
const TAlcCls& AlcCls(int cls);
const TAlcSubCls& AlcSubCls(int cls, int sub);
const TAlcSubCls2& AlcSubCls2(int cls, int sub, int entry);

// Third-level entries under a sub-class (0 when none); throws like AlcSubCls.
int AlcSubCls2Count(int cls, int sub);
// Third-level entries of the whole table.
int AlcSubCls2Total();

// Position of a class's or sub-class's name, -1 when absent. Exact match.
int AlcClsIndexOf(std::string_view name);
int AlcSubClsIndexOf(int cls, std::string_view name);

} // namespace kv
