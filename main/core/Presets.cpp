#include "core/Presets.h"

#include <charconv>
#include <cmath>

#include "core/Totals.h"
#include "core/Vocabulary.h"

namespace tessary {

const std::vector<TTargetPreset>& BuiltInPresets() {
    // Short-term, mid/long-term, Canada, U.S., emerging, global.
    static const std::vector<TTargetPreset> presets = {
        {"Conservative", {30, 40, 12, 10, 2, 6}},
        {"Balanced", {10, 30, 24, 18, 4, 14}},
        {"Growth", {5, 15, 32, 26, 7, 15}},
        {"All equity", {0, 0, 40, 32, 8, 20}},
    };
    return presets;
}

void ApplyPreset(const TTargetPreset& preset, TGrid& grdClasses) {
    ClearBodyRows(grdClasses);
    for (std::size_t i = 0; i < preset.Percent.size(); ++i) {
        if (preset.Percent[i] == 0) continue;
        const int r = grdClasses.AddRow();
        grdClasses.SetText(0, r, std::string(kAssetClassLabels[i]));
        grdClasses.SetObject(0, r, static_cast<std::intptr_t>(i + 1));
        grdClasses.SetFloat(1, r, preset.Percent[i]);
    }
}

TTargetPreset PresetFromGrid(std::string name, const TGrid& grdClasses) {
    TTargetPreset p{std::move(name), {}};
    for (int r = grdClasses.FixedRows(); r < grdClasses.RowCount(); ++r) {
        const std::intptr_t code = grdClasses.Object(0, r);
        if (code < 1 || code > 6) continue;
        const double v = grdClasses.Float(1, r);
        if (std::isfinite(v)) p.Percent[static_cast<std::size_t>(code - 1)] += v;
    }
    return p;
}

std::string EncodePreset(const TTargetPreset& preset) {
    std::string out;
    for (std::size_t i = 0; i < preset.Percent.size(); ++i) {
        if (i) out += ';';
        char buf[32];
        const auto res = std::to_chars(buf, buf + sizeof buf, preset.Percent[i]);
        out.append(buf, res.ptr);
    }
    return out;
}

std::optional<TTargetPreset> DecodePreset(std::string name, std::string_view text) {
    TTargetPreset p{std::move(name), {}};
    std::size_t i = 0;
    while (true) {
        const std::size_t end = std::min(text.find(';'), text.size());
        if (i >= p.Percent.size()) return std::nullopt;
        const std::string_view part = text.substr(0, end);
        double v = 0;
        const auto res = std::from_chars(part.data(), part.data() + part.size(), v);
        if (part.empty() || res.ec != std::errc() || res.ptr != part.data() + part.size() || !std::isfinite(v) ||
            v < 0 || v > 100)
            return std::nullopt;
        p.Percent[i++] = v;
        if (end == text.size()) break;
        text.remove_prefix(end + 1);
    }
    if (i != p.Percent.size()) return std::nullopt;
    return p;
}

} // namespace tessary
