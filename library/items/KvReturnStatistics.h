// The capital-market assumptions by asset class (mean yearly return, its
// standard deviation and the correlation between classes) that an
// allocation's expected growth, its risk and its random yearly returns are
// computed from (TLibAllocYear::CalcGrowth, CalcStDAlloc, GetStDev and
// GetRandRates are defined in KvReturnStatistics.cpp).
#pragma once

#include <array>

#include "decl/KvAlcClasses.h"

namespace kv {

// Capital-market assumptions by class: mean yearly return and standard
// deviation, and the correlation between classes.
struct TClsStats {
    std::array<double, kAlcClsCount> Mean;
    std::array<double, kAlcClsCount> StDev;
    std::array<std::array<double, kAlcClsCount>, kAlcClsCount> Correl;
};
const TClsStats& ClsStats();

} // namespace kv
