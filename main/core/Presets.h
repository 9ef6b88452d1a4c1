// Named target mixes that fill the classes grid.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/Grid.h"

namespace tessary {

struct TTargetPreset {
    std::string Name;
    std::array<double, 6> Percent{}; // by asset-class code 1..6
};

// Conservative, Balanced, Growth, All equity: each totals 100.
const std::vector<TTargetPreset>& BuiltInPresets();

// Replaces the classes grid's body rows with one row per class of a nonzero
// share (label, class code as row object, percent).
void ApplyPreset(const TTargetPreset& preset, TGrid& grdClasses);

// The classes grid as a preset: percentages summed by class code; rows
// without a class code are left out.
TTargetPreset PresetFromGrid(std::string name, const TGrid& grdClasses);

// Stored form in the settings: six numbers joined by ";" in class-code order.
std::string EncodePreset(const TTargetPreset& preset);
// Nothing for anything but six finite numbers from 0 to 100.
std::optional<TTargetPreset> DecodePreset(std::string name, std::string_view text);

} // namespace tessary
