#include "core/Vocabulary.h"

namespace tessary {

namespace {
template <std::size_t N>
std::string_view LabelOf(const std::array<std::string_view, N>& table, std::int64_t code) {
    if (code < 1 || code > static_cast<std::int64_t>(N)) return {};
    return table[static_cast<std::size_t>(code - 1)];
}

template <std::size_t N>
int CodeOf(const std::array<std::string_view, N>& table, std::string_view label) {
    for (std::size_t i = 0; i < N; ++i)
        if (table[i] == label) return static_cast<int>(i + 1);
    return 0;
}
} // namespace

std::string_view AccountKindLabel(std::int64_t kind) { return LabelOf(kAccountKindLabels, kind); }
std::string_view AccountTypeLabel(std::int64_t code) { return LabelOf(kAccountTypeLabels, code); }
std::string_view AssetClassLabel(std::int64_t code) { return LabelOf(kAssetClassLabels, code); }

int AccountKindOf(std::string_view label) { return CodeOf(kAccountKindLabels, label); }
int AssetClassOf(std::string_view label) { return CodeOf(kAssetClassLabels, label); }

bool IsPreferredClass(std::intptr_t code) {
    auto low = static_cast<std::uint8_t>(code & 0xFF);
    return low >= 3 && low <= 6;
}

} // namespace tessary
