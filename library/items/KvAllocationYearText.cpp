// The text forms of TLibAllocYear: the current form, the four older versions
// and the CSV rows (docs/formats/allocation.md).
#include "items/KvAllocationYears.h"

#include <string>

#include "KvErrors.h"
#include "decl/KvModelFormat.h"

namespace kv {

namespace {

struct TLayout {
    std::int32_t Version = 0;
    bool Prefix = false;     // the version as the first field
    bool Subs = true;        // sub-class level present
    bool Percent = false;    // values written as percentages
    bool Entries34 = true;   // third level of classes 3 and 4
    bool EntriesRest = true; // third level of the other classes
    bool EntriesFor(int cls) const { return (cls == 3 || cls == 4) ? Entries34 : EntriesRest; }
};

bool LayoutOf(std::int32_t v, TLayout& l) {
    l = TLayout{};
    l.Version = v;
    switch (v) {
        case TLibAllocYear::kVersionCurrent: return true;
        case TLibAllocYear::kVersion200507: l.Subs = false; [[fallthrough]];
        case TLibAllocYear::kVersion200803: l.Entries34 = false; [[fallthrough]];
        case TLibAllocYear::kVersion201202: l.EntriesRest = false; [[fallthrough]];
        case TLibAllocYear::kVersion201304: l.Percent = true; [[fallthrough]];
        case TLibAllocYear::kVersion201404: l.Prefix = true; return true;
        default: return false;
    }
}

// Walks a delimited text field by field without copying it.
class TFieldCursor {
public:
    TFieldCursor(std::string_view text, char sep) : text_(text), sep_(sep) {}
    bool AtEnd() const { return done_; }
    std::string_view Next() {
        if (done_) return {};
        const std::size_t p = text_.find(sep_, pos_);
        std::string_view f;
        if (p == std::string_view::npos) {
            f = text_.substr(pos_);
            done_ = true;
        } else {
            f = text_.substr(pos_, p - pos_);
            pos_ = p + 1;
        }
        return f;
    }

private:
    std::string_view text_;
    char sep_;
    std::size_t pos_ = 0;
    bool done_ = false;
};

std::string_view Trim(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
    if (s.size() >= 2 && s.front() == '"' && s.back() == '"') s = s.substr(1, s.size() - 2);
    return s;
}

} // namespace

std::string TLibAllocYear::Encode() const { return EncodeAs(kVersionCurrent); }

std::string TLibAllocYear::EncodeAs(std::int32_t version) const {
    TLayout l;
    if (!LayoutOf(version, l)) throw EKvError("Unknown allocation text version " + std::to_string(version));
    const double k = l.Percent ? 100.0 : 1.0;
    std::string out;
    auto put = [&](double v) {
        if (!out.empty()) out += ';';
        out += FloatToModelText(v * k);
    };
    if (l.Prefix) out = std::to_string(version);
    for (int c = 0; c < ClsCount; ++c) {
        put(cls_[c]);
        // A first field that reads as a version number would select that
        // version on reading; ".0" keeps it a plain share.
        if (c == 0 && !l.Prefix) {
            TLayout probe;
            std::int32_t v = 0;
            if (TryModelTextToInt(out, v) && v != kVersionCurrent && LayoutOf(v, probe)) out += ".0";
        }
        if (!l.Subs) continue;
        const auto& list = lists_[ListOfCls(c)];
        for (int s = 0; s < SubClsCount; ++s) {
            const int cnt = counts_[c][s];
            if (cnt > 0 && l.EntriesFor(c)) {
                const int first = FirstPos(c, s);
                for (int e = 0; e < cnt; ++e) put(Entry(list, first + e));
            } else {
                put(sub_[c][s]);
            }
        }
    }
    return out;
}

bool TLibAllocYear::Decode(std::string_view text) {
    ClearValues();
    TLayout l;
    LayoutOf(kVersionCurrent, l);
    TFieldCursor cur(text, ';');
    {
        TFieldCursor probe(text, ';');
        std::int32_t v = 0;
        if (TryModelTextToInt(probe.Next(), v) && v != kVersionCurrent && LayoutOf(v, l))
            cur.Next();
        else
            LayoutOf(kVersionCurrent, l);
    }
    const double k = l.Percent ? 100.0 : 1.0;
    bool ok = true;
    auto next = [&]() -> double {
        if (cur.AtEnd()) {
            ok = false;
            return 0;
        }
        double v = 0;
        if (!TryModelTextToFloat(cur.Next(), v)) {
            ok = false;
            return 0;
        }
        return v / k;
    };
    for (int c = 0; c < ClsCount; ++c) {
        cls_[c] = next();
        if (!l.Subs) continue;
        auto& list = lists_[ListOfCls(c)];
        for (int s = 0; s < SubClsCount; ++s) {
            const int cnt = counts_[c][s];
            if (cnt > 0 && l.EntriesFor(c)) {
                const int first = FirstPos(c, s);
                double sum = 0;
                for (int e = 0; e < cnt; ++e) {
                    const double v = next();
                    PutEntry(list, first + e, v);
                    sum += v;
                }
                sub_[c][s] = sum;
            } else {
                sub_[c][s] = next();
            }
        }
    }
    return ok && cur.AtEnd();
}

int TLibAllocYear::DecodeCSV(std::string_view text) {
    ClearValues();
    std::array<std::array<bool, SubClsCount>, ClsCount> fromEntries{};
    int applied = 0;
    TFieldCursor lines(text, '\n');
    while (!lines.AtEnd()) {
        TFieldCursor row(lines.Next(), ',');
        std::string_view f[4];
        int nf = 0;
        while (!row.AtEnd() && nf < 5) {
            const std::string_view v = Trim(row.Next());
            if (nf < 4) f[nf] = v;
            ++nf;
        }
        if (nf != 4) continue;
        std::int32_t c = 0, s = -1, e = -1;
        double pct = 0;
        if (!TryModelTextToInt(f[0], c) || c < 0 || c >= ClsCount) continue;
        if (!f[1].empty() && (!TryModelTextToInt(f[1], s) || s < 0 || s >= SubClsCount)) continue;
        if (!f[2].empty() && (s < 0 || !TryModelTextToInt(f[2], e) || e < 0 || e >= counts_[c][s])) continue;
        if (!TryModelTextToFloat(f[3], pct)) continue;
        const double share = pct / 100;
        if (s < 0) {
            cls_[c] = share;
        } else if (e < 0) {
            sub_[c][s] = share;
        } else {
            PutEntry(lists_[ListOfCls(c)], FirstPos(c, s) + e, share);
            fromEntries[c][s] = true;
        }
        ++applied;
    }
    for (int c = 0; c < ClsCount; ++c)
        for (int s = 0; s < SubClsCount; ++s) {
            if (!fromEntries[c][s]) continue;
            const auto& list = lists_[ListOfCls(c)];
            const int first = FirstPos(c, s);
            double sum = 0;
            for (int e = 0; e < counts_[c][s]; ++e) sum += Entry(list, first + e);
            sub_[c][s] = sum;
        }
    return applied;
}

} // namespace kv
