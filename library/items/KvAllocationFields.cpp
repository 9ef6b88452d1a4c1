#include "items/KvAllocationFields.h"

#include <cmath>

#include "decl/KvModelFormat.h"

namespace kv::fields {

std::string JoinFields(const std::vector<std::string>& f) {
    std::string out;
    for (std::size_t i = 0; i < f.size(); ++i) {
        if (i) out += ';';
        for (char ch : f[i]) {
            if (ch == ';' || ch == '\\') out += '\\';
            out += ch;
        }
    }
    return out;
}

std::vector<std::string> SplitFields(std::string_view t) {
    std::vector<std::string> out(1);
    for (std::size_t i = 0; i < t.size(); ++i) {
        const char ch = t[i];
        if (ch == '\\' && i + 1 < t.size() && (t[i + 1] == ';' || t[i + 1] == '\\')) {
            out.back() += t[++i];
        } else if (ch == ';') {
            out.emplace_back();
        } else {
            out.back() += ch;
        }
    }
    return out;
}

std::string_view FieldAt(const std::vector<std::string>& f, std::size_t i) {
    return i < f.size() ? std::string_view(f[i]) : std::string_view();
}

std::int32_t IntAt(const std::vector<std::string>& f, std::size_t i, std::int32_t def) {
    return ModelTextToIntDef(FieldAt(f, i), def);
}

double FloatAt(const std::vector<std::string>& f, std::size_t i, double def) {
    return ModelTextToFloatDef(FieldAt(f, i), def);
}

double Pos(double v) { return std::isfinite(v) && v > 0 ? v : 0.0; }
bool NeedsZero(double v) { return !(v >= 0) || !std::isfinite(v); }

} // namespace kv::fields
