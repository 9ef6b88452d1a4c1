#include "items/KvReturnStatistics.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <string>

#include "KvErrors.h"
#include "items/KvAllocationFields.h"
#include "items/KvAllocationYears.h"

namespace kv {

using fields::Pos;

namespace {

constexpr TClsStats kStats{{0.020, 0.035, 0.065, 0.070, 0.080, 0.068},
                           {0.010, 0.050, 0.150, 0.160, 0.220, 0.150},
                           {{
                               {1.00, 0.50, 0.00, 0.00, 0.00, 0.00},
                               {0.50, 1.00, 0.10, 0.10, 0.00, 0.10},
                               {0.00, 0.10, 1.00, 0.70, 0.60, 0.75},
                               {0.00, 0.10, 0.70, 1.00, 0.60, 0.90},
                               {0.00, 0.00, 0.60, 0.60, 1.00, 0.70},
                               {0.00, 0.10, 0.75, 0.90, 0.70, 1.00},
                           }}};

using TMatrix = std::array<std::array<double, kAlcClsCount>, kAlcClsCount>;

// Lower factor of the correlation matrix, for drawing correlated returns.
const TMatrix& CorrelFactor() {
    static const TMatrix l = [] {
        TMatrix f{};
        for (int i = 0; i < kAlcClsCount; ++i)
            for (int j = 0; j <= i; ++j) {
                double s = kStats.Correl[i][j];
                for (int k = 0; k < j; ++k) s -= f[i][k] * f[j][k];
                f[i][j] = i == j ? std::sqrt(s) : s / f[j][j];
            }
        return f;
    }();
    return l;
}

} // namespace

const TClsStats& ClsStats() { return kStats; }

double TLibAllocYear::CalcGrowth() const { return CalcGrowth(kStats.Mean); }

double TLibAllocYear::CalcGrowth(const std::array<double, kAlcClsCount>& clsReturns) const {
    double g = 0;
    for (int c = 0; c < ClsCount; ++c) g += Pos(cls_[c]) * clsReturns[c];
    return g;
}

double TLibAllocYear::CalcStDAlloc() const {
    double var = 0;
    for (int i = 0; i < ClsCount; ++i)
        for (int j = 0; j < ClsCount; ++j)
            var += Pos(cls_[i]) * Pos(cls_[j]) * kStats.Correl[i][j] * kStats.StDev[i] * kStats.StDev[j];
    return std::sqrt(std::max(var, 0.0));
}

double TLibAllocYear::GetStDev(int cls) {
    if (cls < 0 || cls >= ClsCount) throw EListError(cls);
    return kStats.StDev[cls];
}

std::vector<double> TLibAllocYear::GetRandRates(std::uint64_t seed, int years) const {
    if (years <= 0) return {};
    if (years > 100000) throw EKvError("Too many years of random rates: " + std::to_string(years));
    std::mt19937_64 gen(seed);
    // 53 random bits a draw, so the sequence does not depend on the library's distributions.
    auto uniform = [&gen] { return double(gen() >> 11) * 0x1.0p-53; };
    const TMatrix& low = CorrelFactor();
    std::vector<double> rates;
    rates.reserve(std::size_t(years));
    for (int y = 0; y < years; ++y) {
        std::array<double, ClsCount> z{};
        for (int i = 0; i < ClsCount; i += 2) {
            const double u1 = 1.0 - uniform(); // (0, 1]: the logarithm stays finite
            const double u2 = uniform();
            const double r = std::sqrt(-2.0 * std::log(u1));
            z[i] = r * std::cos(2 * std::numbers::pi * u2);
            z[i + 1] = r * std::sin(2 * std::numbers::pi * u2);
        }
        std::array<double, ClsCount> ret{};
        for (int i = 0; i < ClsCount; ++i) {
            double eps = 0;
            for (int k = 0; k <= i; ++k) eps += low[i][k] * z[k];
            ret[i] = kStats.Mean[i] + kStats.StDev[i] * eps;
        }
        rates.push_back(CalcGrowth(ret));
    }
    return rates;
}

} // namespace kv
