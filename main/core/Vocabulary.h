// The allocator's fixed vocabularies: account kinds (rows of the accounts grid),
// account-type codes (result headers) and asset classes (rows of the classes grid).
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tessary {

inline constexpr std::array<std::string_view, 5> kAccountKindLabels = {"Non-Reg.", "TFSAs", "RRSPs/RRIFs", "LIRAs/LIFs",
                                                                       "DCPs/LRIFs"};

inline constexpr std::array<std::string_view, 7> kAccountTypeLabels = {
    "MD Taxable", "BS Taxable", "QR Taxable", "TFSAs", "RRSPs/RRIFs", "LIRAs/LIFs", "DCPs/LRIFs"};

inline constexpr std::array<std::string_view, 6> kAssetClassLabels = {
    "Short-Term Fixed", "Mid/Long-Term Fixed",       "Equities Canada",
    "Equities U.S.",    "Equities Emerging Markets", "Equities Global"};

// Product columns of the accounts grid.
inline constexpr std::array<std::string_view, 3> kProductColumns = {"MD", "BS", "QR"};

// Label of a 1-based code, or empty text for a code outside the table.
std::string_view AccountKindLabel(std::int64_t kind);
std::string_view AccountTypeLabel(std::int64_t code);
std::string_view AssetClassLabel(std::int64_t code);

// 1-based code of a label (exact match), or 0 when it is none of them.
int AccountKindOf(std::string_view label);
int AssetClassOf(std::string_view label);

// The equity classes 3..6 are placed first; only the low byte of the code counts.
bool IsPreferredClass(std::intptr_t code);

} // namespace tessary
