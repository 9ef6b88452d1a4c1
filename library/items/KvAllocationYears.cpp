#include "items/KvAllocationYears.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <numbers>
#include <random>
#include <utility>

#include "KvErrors.h"
#include "catalogue/KvIdentText.h"
#include "decl/KvModelFormat.h"

namespace kv {

namespace {

// Day number of 1 January 1970 counted from 30 December 1899.
constexpr std::int64_t kUnixEpochDay = 25569;

// Howard Hinnant's civil-date conversions, days counted from 1 January 1970.
void CivilFromDays(std::int64_t z, std::int64_t& y, unsigned& m, unsigned& d) {
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = doy - (153 * mp + 2) / 5 + 1;
    m = mp < 10 ? mp + 3 : mp - 9;
    y = static_cast<std::int64_t>(yoe) + era * 400 + (m <= 2);
}

std::int64_t DaysFromCivil(std::int64_t y, unsigned m, unsigned d) {
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

std::string Pad(std::int64_t v, int width) {
    std::string s = std::to_string(v < 0 ? -v : v);
    if (static_cast<int>(s.size()) < width) s.insert(0, std::size_t(width) - s.size(), '0');
    return v < 0 ? "-" + s : s;
}

// ";"-joined texts with "\;" and "\\" inside a text.
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

// Negative, NaN and infinite shares count as 0 in every total.
double Pos(double v) { return std::isfinite(v) && v > 0 ? v : 0.0; }
bool NeedsZero(double v) { return !(v >= 0) || !std::isfinite(v); }

constexpr std::array<std::string_view, 6> kKindLabels{
    "Custom", "Model Portfolio", "Library Model", "Client Holdings", "Separately Managed Account",
    "Fees by Asset Class"};

constexpr std::array<TLibModel, 6> kLibModels{{
    {1001, "Conservative Income", {0.30, 0.50, 0.08, 0.06, 0.00, 0.06}},
    {1002, "Balanced Income", {0.15, 0.45, 0.15, 0.12, 0.03, 0.10}},
    {1003, "Balanced", {0.10, 0.35, 0.20, 0.17, 0.05, 0.13}},
    {1004, "Balanced Growth", {0.05, 0.25, 0.25, 0.22, 0.08, 0.15}},
    {1005, "Growth", {0.05, 0.15, 0.30, 0.25, 0.10, 0.15}},
    {1006, "Maximum Growth", {0.00, 0.00, 0.35, 0.30, 0.15, 0.20}},
}};

constexpr TClsStats kStats{
    {0.020, 0.035, 0.065, 0.070, 0.080, 0.068},
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

// ---------------------------------------------------------------------------

double RoundShare(double x, int places) {
    const double scale = std::pow(10.0, places);
    const double y = x * scale;
    const double whole = std::trunc(y);
    const double frac = y - whole;
    // Half to even on a fraction below one: only a fraction beyond one half moves.
    const double step = frac > 0.5 ? 1.0 : frac < -0.5 ? -1.0 : 0.0;
    return (whole + step) / scale;
}

std::string UniqueIDToText(std::int32_t id) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    const auto u = static_cast<std::uint32_t>(id);
    std::string s(8, '0');
    for (int i = 0; i < 8; ++i) s[std::size_t(7 - i)] = kHex[(u >> (4 * i)) & 0xF];
    return s;
}

bool TryTextToUniqueID(std::string_view text, std::int32_t& id) {
    if (text.empty() || text.size() > 8) return false;
    std::uint32_t u = 0;
    for (char ch : text) {
        unsigned d;
        if (ch >= '0' && ch <= '9') d = unsigned(ch - '0');
        else if (ch >= 'A' && ch <= 'F') d = unsigned(ch - 'A' + 10);
        else if (ch >= 'a' && ch <= 'f') d = unsigned(ch - 'a' + 10);
        else return false;
        u = (u << 4) | d;
    }
    id = static_cast<std::int32_t>(u);
    return true;
}

std::string DateTimeToText(double dateTime) {
    // Outside years 1..9999 the text would be meaningless; such values read as 0.
    if (!std::isfinite(dateTime) || dateTime < -693593 || dateTime >= 2958466) dateTime = 0;
    auto days = static_cast<std::int64_t>(std::floor(dateTime));
    auto ms = static_cast<std::int64_t>(std::llround((dateTime - double(days)) * 86400000.0));
    if (ms >= 86400000) {
        ++days;
        ms -= 86400000;
    }
    std::int64_t y;
    unsigned m, d;
    CivilFromDays(days - kUnixEpochDay, y, m, d);
    return Pad(y, 4) + "-" + Pad(m, 2) + "-" + Pad(d, 2) + " " + Pad(ms / 3600000, 2) + ":" +
           Pad(ms / 60000 % 60, 2) + ":" + Pad(ms / 1000 % 60, 2) + "." + Pad(ms % 1000, 3);
}

double NowDateTime() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t t = std::chrono::system_clock::to_time_t(now);
    std::tm lt{};
    localtime_r(&t, &lt);
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    const std::int64_t days = DaysFromCivil(lt.tm_year + 1900, unsigned(lt.tm_mon + 1), unsigned(lt.tm_mday));
    const double secs = lt.tm_hour * 3600.0 + lt.tm_min * 60.0 + lt.tm_sec + double(ms) / 1000.0;
    return double(days + kUnixEpochDay) + secs / 86400.0;
}

std::span<const std::string_view> AllocKindLabels() { return kKindLabels; }

std::string_view AllocKindLabel(std::int32_t kind) {
    if (kind < 0 || kind >= static_cast<std::int32_t>(kKindLabels.size())) return "Allocation";
    return kKindLabels[std::size_t(kind)];
}

std::span<const TLibModel> LibModels() { return kLibModels; }

const TLibModel* FindLibModel(std::int32_t id) {
    for (const auto& m : kLibModels)
        if (m.ID == id) return &m;
    return nullptr;
}

// ---------------------------------------------------------------------------
// TPortAllocation and variants

TPortAllocation::TPortAllocation() : ID(IDFromDateTime(NowDateTime())) {}

TPortAllocation::TPortAllocation(std::int32_t id) : ID(id) {}

std::int32_t TPortAllocation::IDFromDateTime(double dateTime) { return SubstituteID(DateTimeToText(dateTime)); }

std::string TPortAllocation::GetAsString() const {
    std::vector<std::string> f;
    WriteFields(f);
    return JoinFields(f);
}

void TPortAllocation::SetAsString(std::string_view text) {
    const std::vector<std::string> f = SplitFields(text);
    std::size_t pos = 0;
    ReadFields(f, pos);
}

std::unique_ptr<TPortAllocation> TPortAllocation::Clone() const {
    return std::unique_ptr<TPortAllocation>(new TPortAllocation(*this));
}

std::string TPortAllocation::GetFullName() const {
    std::string s(AllocKindLabel(Kind));
    s += ": ";
    if (Kind == kAllocKindLibrary) {
        const TLibModel* m = FindLibModel(Reference);
        s += m ? std::string(m->Name) : std::string("Unknown model");
        s += ", ";
    }
    return s + Name;
}

void TPortAllocation::WriteFields(std::vector<std::string>& f) const {
    f.push_back(UniqueIDToText(ID));
    f.push_back(Name);
    f.push_back(Text);
    f.push_back(UniqueIDToText(Reference));
    for (std::int32_t v : {Flag1, Flag2, Kind, Flag4}) f.push_back(IntToModelText(v));
}

void TPortAllocation::ReadFields(const std::vector<std::string>& f, std::size_t& pos) {
    const std::size_t p = pos;
    ID = 0;
    TryTextToUniqueID(FieldAt(f, p), ID);
    Name = std::string(FieldAt(f, p + 1));
    Text = std::string(FieldAt(f, p + 2));
    SavedText = Text;
    Reference = 0;
    TryTextToUniqueID(FieldAt(f, p + 3), Reference);
    Flag1 = IntAt(f, p + 4, 0);
    Flag2 = IntAt(f, p + 5, 1);
    Kind = IntAt(f, p + 6, 1);
    Flag4 = IntAt(f, p + 7, 0);
    pos = p + 8;
}

std::unique_ptr<TPortAllocation> TCHPortAllocation::Clone() const {
    return std::unique_ptr<TPortAllocation>(new TCHPortAllocation(*this));
}

double TCHPortAllocation::ClsValue(int cls) const {
    double s = 0;
    for (const auto& h : Holdings)
        if (h.Cls == cls) s += h.Value;
    return s;
}

void TCHPortAllocation::WriteFields(std::vector<std::string>& f) const {
    TPortAllocation::WriteFields(f);
    f.push_back(IntToModelText(static_cast<std::int32_t>(Holdings.size())));
    for (const auto& h : Holdings) {
        f.push_back(h.Symbol);
        f.push_back(IntToModelText(h.Cls));
        f.push_back(IntToModelText(h.SubCls));
        f.push_back(IntToModelText(h.SubCls2));
        f.push_back(FloatToModelText(h.Value));
    }
}

void TCHPortAllocation::ReadFields(const std::vector<std::string>& f, std::size_t& pos) {
    TPortAllocation::ReadFields(f, pos);
    const std::int32_t stated = IntAt(f, pos, 0);
    ++pos;
    // Never more holdings than the text has fields for.
    const std::size_t left = pos < f.size() ? (f.size() - pos) / 5 : 0;
    const std::size_t n = stated > 0 ? std::min<std::size_t>(std::size_t(stated), left) : 0;
    Holdings.clear();
    Holdings.reserve(n);
    for (std::size_t i = 0; i < n; ++i, pos += 5) {
        THolding h;
        h.Symbol = f[pos];
        h.Cls = IntAt(f, pos + 1, 0);
        h.SubCls = IntAt(f, pos + 2, 0);
        h.SubCls2 = IntAt(f, pos + 3, -1);
        h.Value = FloatAt(f, pos + 4, 0);
        Holdings.push_back(std::move(h));
    }
}

std::unique_ptr<TPortAllocation> TPAClass::Clone() const {
    return std::unique_ptr<TPortAllocation>(new TPAClass(*this));
}

void TPAClass::WriteFields(std::vector<std::string>& f) const {
    TPortAllocation::WriteFields(f);
    for (double v : ClsShares) f.push_back(FloatToModelText(v));
}

void TPAClass::ReadFields(const std::vector<std::string>& f, std::size_t& pos) {
    TPortAllocation::ReadFields(f, pos);
    for (double& v : ClsShares) v = FloatAt(f, pos++, 0);
}

std::unique_ptr<TPortAllocation> TPASMAClass::Clone() const {
    return std::unique_ptr<TPortAllocation>(new TPASMAClass(*this));
}

void TPASMAClass::WriteFields(std::vector<std::string>& f) const {
    TPAClass::WriteFields(f);
    f.push_back(Manager);
    f.push_back(FloatToModelText(FeeRate));
    f.push_back(FloatToModelText(MinAccount));
}

void TPASMAClass::ReadFields(const std::vector<std::string>& f, std::size_t& pos) {
    TPAClass::ReadFields(f, pos);
    Manager = std::string(FieldAt(f, pos));
    FeeRate = FloatAt(f, pos + 1, 0);
    MinAccount = FloatAt(f, pos + 2, 0);
    pos += 3;
}

std::unique_ptr<TPortAllocation> TFeesAssetClassesPr::Clone() const {
    return std::unique_ptr<TPortAllocation>(new TFeesAssetClassesPr(*this));
}

double TFeesAssetClassesPr::AnnualFee(const TLibAllocYear& year, double total) const {
    double fee = 0;
    for (int c = 0; c < kAlcClsCount; ++c) fee += total * Pos(year.GetClsShare(c)) * FeeRates[std::size_t(c)] / 100;
    return fee;
}

void TFeesAssetClassesPr::WriteFields(std::vector<std::string>& f) const {
    TPortAllocation::WriteFields(f);
    for (double v : FeeRates) f.push_back(FloatToModelText(v));
}

void TFeesAssetClassesPr::ReadFields(const std::vector<std::string>& f, std::size_t& pos) {
    TPortAllocation::ReadFields(f, pos);
    for (double& v : FeeRates) v = FloatAt(f, pos++, 0);
}

TPortAllocation* TPortAllocList::Get(int index) const {
    if (index < 0 || index >= Count()) throw EListError(index);
    return items_[std::size_t(index)].get();
}

void TPortAllocList::Put(int index, std::unique_ptr<TPortAllocation> item) {
    if (index < 0 || index >= Count()) throw EListError(index);
    items_[std::size_t(index)] = std::move(item);
}

TPortAllocation* TPortAllocList::Add(std::unique_ptr<TPortAllocation> item) {
    items_.push_back(std::move(item));
    return items_.back().get();
}

void TPortAllocList::Delete(int index) {
    if (index < 0 || index >= Count()) throw EListError(index);
    items_.erase(items_.begin() + index);
}

int TPortAllocList::IndexOfID(std::int32_t id) const {
    for (int i = 0; i < Count(); ++i)
        if (items_[std::size_t(i)] && items_[std::size_t(i)]->ID == id) return i;
    return -1;
}

TPortAllocation* TPortAllocList::FindByID(std::int32_t id) const {
    const int i = IndexOfID(id);
    return i < 0 ? nullptr : items_[std::size_t(i)].get();
}

// ---------------------------------------------------------------------------
// Sub-class records

std::string TAssetSubClassHdr::GetAsString() const {
    std::vector<std::string> f;
    WriteFields(f);
    return JoinFields(f);
}

void TAssetSubClassHdr::SetAsString(std::string_view text) {
    const std::vector<std::string> f = SplitFields(text);
    std::size_t pos = 0;
    ReadFields(f, pos);
}

std::unique_ptr<TAssetSubClassHdr> TAssetSubClassHdr::Clone() const {
    return std::unique_ptr<TAssetSubClassHdr>(new TAssetSubClassHdr(*this));
}

void TAssetSubClassHdr::WriteFields(std::vector<std::string>& f) const {
    f.push_back(IntToModelText(Cls));
    f.push_back(IntToModelText(SubCls));
    f.push_back(Name);
}

void TAssetSubClassHdr::ReadFields(const std::vector<std::string>& f, std::size_t& pos) {
    Cls = IntAt(f, pos, 0);
    SubCls = IntAt(f, pos + 1, 0);
    Name = std::string(FieldAt(f, pos + 2));
    pos += 3;
}

std::unique_ptr<TAssetSubClassHdr> TAssetSubClass::Clone() const {
    return std::unique_ptr<TAssetSubClassHdr>(new TAssetSubClass(*this));
}

void TAssetSubClass::WriteFields(std::vector<std::string>& f) const {
    TAssetSubClassHdr::WriteFields(f);
    f.push_back(IntToModelText(SubCls2));
    f.push_back(FloatToModelText(Share));
}

void TAssetSubClass::ReadFields(const std::vector<std::string>& f, std::size_t& pos) {
    TAssetSubClassHdr::ReadFields(f, pos);
    SubCls2 = IntAt(f, pos, -1);
    Share = FloatAt(f, pos + 1, 0);
    pos += 2;
}

std::unique_ptr<TAssetSubClassHdr> TLibAssetSubClass::Clone() const {
    return std::unique_ptr<TAssetSubClassHdr>(new TLibAssetSubClass(*this));
}

double TLibAssetSubClass::CompoundReturn(std::int32_t fromYear, std::int32_t toYear) const {
    double g = 1;
    for (int i = 0; i < Returns.Count(); ++i) {
        const auto& e = Returns.Items(i);
        if (e.Ind >= fromYear && e.Ind <= toYear) g *= 1 + e.Val;
    }
    return g - 1;
}

void TLibAssetSubClass::WriteFields(std::vector<std::string>& f) const {
    TAssetSubClass::WriteFields(f);
    f.push_back(FloatToModelText(NAV));
    f.push_back(Returns.GetAsString());
}

void TLibAssetSubClass::ReadFields(const std::vector<std::string>& f, std::size_t& pos) {
    TAssetSubClass::ReadFields(f, pos);
    NAV = FloatAt(f, pos, 0);
    Returns.SetAsString(FieldAt(f, pos + 1));
    pos += 2;
}

// ---------------------------------------------------------------------------
// TLibAllocYear

const TClsStats& ClsStats() { return kStats; }

TLibAllocYear::TLibAllocYear() {
    for (int c = 0; c < ClsCount; ++c)
        for (int s = 0; s < SubClsCount; ++s) counts_[c][s] = AlcSubCls2Count(c, s);
    SizeListsToTotal();
}

void TLibAllocYear::CheckCls(int cls) const {
    if (cls < 0 || cls >= ClsCount) throw EListError(cls);
}

void TLibAllocYear::CheckSub(int cls, int sub) const {
    CheckCls(cls);
    if (sub < 0 || sub >= SubClsCount) throw EListError(sub);
}

void TLibAllocYear::CheckEntry(int cls, int sub, int entry) const {
    CheckSub(cls, sub);
    if (entry < 0 || entry >= counts_[cls][sub]) throw EListError(entry);
}

void TLibAllocYear::SizeListsToTotal() {
    const auto n = std::size_t(SubCls2Total());
    for (auto& l : lists_) l.resize(n, 0.0);
    for (auto& l : vals_.Lists) l.resize(n, 0.0);
}

void TLibAllocYear::ClearValues() {
    cls_ = {};
    sub_ = {};
    vals_ = TAmounts{};
    for (auto& l : lists_) l.clear();
    SizeListsToTotal();
}

int TLibAllocYear::FirstPos(int cls, int sub) const {
    int pos = 0;
    if (ListOfCls(cls) == kListCommon)
        for (int c = 0; c < cls; ++c)
            if (ListOfCls(c) == kListCommon)
                for (int s = 0; s < SubClsCount; ++s) pos += counts_[c][s];
    for (int s = 0; s < sub; ++s) pos += counts_[cls][s];
    return pos;
}

double TLibAllocYear::Entry(const std::vector<double>& list, int pos) const {
    return pos >= 0 && std::size_t(pos) < list.size() ? list[std::size_t(pos)] : 0.0;
}

void TLibAllocYear::PutEntry(std::vector<double>& list, int pos, double v) {
    if (std::size_t(pos) >= list.size()) list.resize(std::size_t(pos) + 1, 0.0);
    list[std::size_t(pos)] = v;
}

double TLibAllocYear::GetClsShare(int cls) const {
    CheckCls(cls);
    return cls_[cls];
}

void TLibAllocYear::SetClsShare(int cls, double share) {
    CheckCls(cls);
    cls_[cls] = share;
}

double TLibAllocYear::GetSubClsShare(int cls, int sub) const {
    CheckSub(cls, sub);
    return sub_[cls][sub];
}

void TLibAllocYear::SetSubClsShare(int cls, int sub, double share) {
    CheckSub(cls, sub);
    sub_[cls][sub] = share;
}

double TLibAllocYear::GetSubCls2Share(int cls, int sub, int entry) const {
    CheckEntry(cls, sub, entry);
    return Entry(lists_[ListOfCls(cls)], FirstPos(cls, sub) + entry);
}

void TLibAllocYear::SetSubCls2Share(int cls, int sub, int entry, double share) {
    CheckEntry(cls, sub, entry);
    PutEntry(lists_[ListOfCls(cls)], FirstPos(cls, sub) + entry, share);
}

int TLibAllocYear::GetSubCls2Count(int cls, int sub) const {
    CheckSub(cls, sub);
    return counts_[cls][sub];
}

void TLibAllocYear::SetSubCls2Count(int cls, int sub, int count) {
    CheckSub(cls, sub);
    if (count < 0 || count > MaxSubCls2Count) throw EListError(count);
    counts_[cls][sub] = count;
}

int TLibAllocYear::SubCls2Total() const {
    int n = 0;
    for (const auto& row : counts_)
        for (int v : row) n += v;
    return n;
}

int TLibAllocYear::SubCls2Pos(int cls, int sub, int entry) const {
    CheckEntry(cls, sub, entry);
    return FirstPos(cls, sub) + entry;
}

const std::vector<double>& TLibAllocYear::SubCls2List(TSubCls2List list) const {
    if (list < 0 || list > 2) throw EListError(list);
    return lists_[list];
}

void TLibAllocYear::SetSubCls2List(TSubCls2List list, std::vector<double> shares) {
    if (list < 0 || list > 2) throw EListError(list);
    lists_[list] = std::move(shares);
}

double TLibAllocYear::GetClsVal(int cls) const {
    CheckCls(cls);
    double v = 0;
    for (int s = 0; s < SubClsCount; ++s) v += GetSubClsVal(cls, s);
    return v;
}

double TLibAllocYear::GetSubClsVal(int cls, int sub) const {
    CheckSub(cls, sub);
    const int n = counts_[cls][sub];
    if (n == 0) return vals_.Sub[cls][sub];
    const auto& list = vals_.Lists[ListOfCls(cls)];
    const int first = FirstPos(cls, sub);
    double v = 0;
    for (int e = 0; e < n; ++e) v += Entry(list, first + e);
    return v;
}

void TLibAllocYear::SetSubClsVal(int cls, int sub, double value) {
    CheckSub(cls, sub);
    const int n = counts_[cls][sub];
    if (n == 0) {
        vals_.Sub[cls][sub] = value;
        return;
    }
    const auto& shares = lists_[ListOfCls(cls)];
    auto& list = vals_.Lists[ListOfCls(cls)];
    const int first = FirstPos(cls, sub);
    double total = 0;
    for (int e = 0; e < n; ++e) total += Pos(Entry(shares, first + e));
    for (int e = 0; e < n; ++e) {
        const double part = total > 0 ? value * Pos(Entry(shares, first + e)) / total : (e == 0 ? value : 0.0);
        PutEntry(list, first + e, part);
    }
}

double TLibAllocYear::GetSubCls2Val(int cls, int sub, int entry) const {
    CheckEntry(cls, sub, entry);
    return Entry(vals_.Lists[ListOfCls(cls)], FirstPos(cls, sub) + entry);
}

void TLibAllocYear::SetSubCls2Val(int cls, int sub, int entry, double value) {
    CheckEntry(cls, sub, entry);
    PutEntry(vals_.Lists[ListOfCls(cls)], FirstPos(cls, sub) + entry, value);
}

double TLibAllocYear::GetTotalVal() const {
    double v = 0;
    for (int c = 0; c < ClsCount; ++c) v += GetClsVal(c);
    return v;
}

bool TLibAllocYear::SharesOK() const {
    double t = 0;
    for (double v : cls_) t += Pos(v);
    double r = RoundShare(t);
    if (r != 0 && r != 1) return false;
    for (int c = 0; c < ClsCount; ++c) {
        t = 0;
        for (double v : sub_[c]) t += Pos(v);
        r = RoundShare(t);
        if (r != 0 && r != 1) return false;
    }
    for (int c = 0; c < ClsCount; ++c) {
        const auto& list = lists_[ListOfCls(c)];
        for (int s = 0; s < SubClsCount; ++s) {
            const int n = counts_[c][s];
            if (n == 0) continue;
            const double own = RoundShare(Pos(sub_[c][s]));
            const int first = FirstPos(c, s);
            double u = 0;
            for (int e = 0; e < n; ++e) u += Pos(Entry(list, first + e));
            const double ru = RoundShare(u);
            if (ru != 0 && ru != own) return false;
        }
    }
    return true;
}

bool TLibAllocYear::FixShares() {
    bool ok = true;

    // 1. Every list to the grand total of the counts.
    const auto n = std::size_t(SubCls2Total());
    for (auto& l : lists_)
        if (l.size() != n) {
            l.resize(n, 0.0);
            ok = false;
        }

    // 2.-4. Classes.
    double total = 0;
    std::array<double, ClsCount> pct{};
    for (int c = 0; c < ClsCount; ++c) {
        if (NeedsZero(cls_[c])) {
            cls_[c] = 0;
            ok = false;
        }
        total += cls_[c];
        pct[c] = cls_[c] * 100;
    }
    const double rt = RoundShare(total);
    if (rt == 0) {
        cls_[0] = 1;
        ok = false;
    } else if (rt != 1) {
        for (int c = 0; c < ClsCount; ++c) cls_[c] = pct[c] / 100;
        ok = false;
    }

    // 5. Sub-classes.
    for (int c = 0; c < ClsCount; ++c) {
        const double share = cls_[c];
        auto& row = sub_[c];
        double t = 0;
        TSubRow sp{};
        for (int s = 0; s < SubClsCount; ++s) {
            if (NeedsZero(row[s])) {
                row[s] = 0;
                ok = false;
            }
            t += row[s];
            sp[s] = row[s] * 100;
        }
        t = RoundShare(t);
        if (share == 0 && t != 0) {
            row.fill(0);
            ok = false;
        } else if (share > 0 && t == 0) {
            row[0] = 1;
            ok = false;
        } else if (t > 0 && t != 1) {
            for (int s = 0; s < SubClsCount; ++s) row[s] = sp[s] / 100;
            ok = false;
        }
    }

    // 6. Third level.
    for (int c = 0; c < ClsCount; ++c) {
        auto& list = lists_[ListOfCls(c)];
        for (int s = 0; s < SubClsCount; ++s) {
            const int cnt = counts_[c][s];
            if (cnt == 0) continue;
            const std::size_t first = std::size_t(FirstPos(c, s));
            const double own = RoundShare(sub_[c][s]);
            if (own == 0) {
                for (int e = 0; e < cnt; ++e) {
                    double& v = list[first + std::size_t(e)];
                    if (v != 0) ok = false;
                    v = 0;
                }
                continue;
            }
            double u = 0;
            std::vector<double> ep(std::size_t(cnt), 0.0);
            for (int e = 0; e < cnt; ++e) {
                double& v = list[first + std::size_t(e)];
                if (NeedsZero(v)) {
                    v = 0;
                    ok = false;
                }
                u += v;
                ep[std::size_t(e)] = v * 100 / own;
            }
            u = RoundShare(u);
            if (u == 0) {
                list[first] = own;
                ok = false;
            } else if (u != own) {
                for (int e = 0; e < cnt; ++e) list[first + std::size_t(e)] = ep[std::size_t(e)] * own / 100;
                ok = false;
            }
        }
    }

    // 7. Amounts laid out afresh over the repaired lists.
    if (!ok) RebuildAmounts();
    return ok;
}

void TLibAllocYear::RebuildAmounts() {
    TAmounts fresh;
    for (int l = 0; l < 3; ++l) fresh.Lists[l].assign(lists_[l].size(), 0.0);
    for (int c = 0; c < ClsCount; ++c) {
        const int l = ListOfCls(c);
        for (int s = 0; s < SubClsCount; ++s) {
            const int cnt = counts_[c][s];
            if (cnt == 0) {
                fresh.Sub[c][s] = vals_.Sub[c][s];
                continue;
            }
            const int first = FirstPos(c, s);
            for (int e = 0; e < cnt; ++e) {
                const auto pos = std::size_t(first + e);
                if (pos < fresh.Lists[l].size()) fresh.Lists[l][pos] = Entry(vals_.Lists[l], first + e);
            }
        }
    }
    vals_ = std::move(fresh);
}

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
    case TLibAllocYear::kVersionCurrent:
        return true;
    case TLibAllocYear::kVersion200507:
        l.Subs = false;
        [[fallthrough]];
    case TLibAllocYear::kVersion200803:
        l.Entries34 = false;
        [[fallthrough]];
    case TLibAllocYear::kVersion201202:
        l.EntriesRest = false;
        [[fallthrough]];
    case TLibAllocYear::kVersion201304:
        l.Percent = true;
        [[fallthrough]];
    case TLibAllocYear::kVersion201404:
        l.Prefix = true;
        return true;
    default:
        return false;
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
        if (TryModelTextToInt(probe.Next(), v) && v != kVersionCurrent && LayoutOf(v, l)) cur.Next();
        else LayoutOf(kVersionCurrent, l);
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

TLibAllocYear TLibAllocYear::GetEvenlyAllocation() {
    static constexpr std::array<int, ClsCount> kAll{0, 1, 2, 3, 4, 5};
    return GetEvenlyAllocation(kAll);
}

TLibAllocYear TLibAllocYear::GetEvenlyAllocation(std::span<const int> classes) {
    TLibAllocYear y;
    std::array<bool, ClsCount> chosen{};
    int m = 0;
    for (int c : classes) {
        y.CheckCls(c);
        if (!chosen[c]) ++m;
        chosen[c] = true;
    }
    for (int c = 0; c < ClsCount; ++c) {
        if (!chosen[c]) continue;
        y.cls_[c] = 1.0 / m;
        for (int s = 0; s < SubClsCount; ++s) {
            const double share = 1.0 / SubClsCount;
            y.sub_[c][s] = share;
            const int cnt = y.counts_[c][s];
            for (int e = 0; e < cnt; ++e) y.SetSubCls2Share(c, s, e, share / cnt);
        }
    }
    return y;
}

void TLibAllocYear::CalcAlloc(double total) {
    for (int l = 0; l < 3; ++l) vals_.Lists[l].assign(lists_[l].size(), 0.0);
    for (int c = 0; c < ClsCount; ++c) {
        const auto& shares = lists_[ListOfCls(c)];
        auto& amounts = vals_.Lists[ListOfCls(c)];
        for (int s = 0; s < SubClsCount; ++s) {
            const int cnt = counts_[c][s];
            if (cnt == 0) {
                vals_.Sub[c][s] = total * cls_[c] * sub_[c][s];
                continue;
            }
            vals_.Sub[c][s] = 0;
            const int first = FirstPos(c, s);
            for (int e = 0; e < cnt; ++e) PutEntry(amounts, first + e, total * cls_[c] * Entry(shares, first + e));
        }
    }
}

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
            const double u1 = 1.0 - uniform();   // (0, 1]: the logarithm stays finite
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
