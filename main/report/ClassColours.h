// One colour per asset class, the same in the window's chart, the report and
// anything else that shows classes side by side.
#pragma once

#include <QColor>
#include <array>
#include <cstdint>
#include <string_view>

#include "core/Vocabulary.h"

namespace tessary {

// Indexed by class code − 1 (the order of kAssetClassLabels). Fixed income in
// blues, equities in warm and distinct hues, so both groups read at a glance.
inline constexpr std::array<std::uint32_t, 6> kClassColourRgb = {
    0x8EC1E6, // Short-Term Fixed
    0x2B5C8A, // Mid/Long-Term Fixed
    0xC8372D, // Equities Canada
    0xE8912D, // Equities U.S.
    0x3E9A5B, // Equities Emerging Markets
    0x7A4FA3, // Equities Global
};

// For a row whose class is unknown.
inline constexpr std::uint32_t kUnknownClassRgb = 0x9A9A9A;

inline QColor ClassColour(std::intptr_t code) {
    if (code < 1 || code > static_cast<std::intptr_t>(kClassColourRgb.size())) return QColor::fromRgb(kUnknownClassRgb);
    return QColor::fromRgb(kClassColourRgb[static_cast<std::size_t>(code - 1)]);
}

// The result grid names its rows by label only.
inline QColor ClassColourOfLabel(std::string_view label) { return ClassColour(AssetClassOf(label)); }

} // namespace tessary
