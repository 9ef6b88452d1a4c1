// Number text of model files: special properties, value-list text forms and
// header tokens. Every machine must read what any other wrote, so the format
// is fixed and never follows the user's locale.
//
// Floats are written as the shortest text that reads back to the same double:
// "." as the decimal separator, no grouping, a leading "-" when negative
// (also for -0), and an exponent when that is shorter ("1e-05", "1e+20").
// Non-finite values are written "nan", "inf" and "-inf"; a NaN's sign and
// payload are not kept.
//
// Reading accepts decimal and exponent forms in either letter case ("1E20",
// ".5", "5."), and "nan", "inf", "infinity" in any letter case with an optional
// leading "-", so texts of older writers read as well. It rejects a leading
// "+", any space (leading, trailing or inside), an empty text, trailing junk,
// and a finite number outside the range of a double, including one that would
// underflow to zero. The whole text must be consumed.
//
// Integers are plain decimal with an optional leading "-"; leading zeros are
// accepted, "+" and spaces are not, and a value outside 32 bits is rejected.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

std::string FloatToModelText(double Value);
std::string IntToModelText(int32_t Value);

// On failure Value is left unchanged.
bool TryModelTextToFloat(std::string_view Text, double& Value);
bool TryModelTextToInt(std::string_view Text, int32_t& Value);

double ModelTextToFloatDef(std::string_view Text, double Default);
int32_t ModelTextToIntDef(std::string_view Text, int32_t Default);

} // namespace kv
