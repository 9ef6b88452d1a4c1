#include "items/KvPortAllocation.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <utility>

#include "KvErrors.h"
#include "catalogue/KvIdentText.h"
#include "decl/KvDayNumbers.h"
#include "decl/KvModelFormat.h"
#include "items/KvAllocationFields.h"
#include "items/KvAllocationYears.h"

namespace kv {

using fields::FieldAt;
using fields::FloatAt;
using fields::IntAt;
using fields::JoinFields;
using fields::SplitFields;

namespace {

std::string Pad(std::int64_t v, int width) {
    std::string s = std::to_string(v < 0 ? -v : v);
    if (static_cast<int>(s.size()) < width) s.insert(0, std::size_t(width) - s.size(), '0');
    return v < 0 ? "-" + s : s;
}

constexpr std::array<std::string_view, 6> kKindLabels{"Custom",
                                                      "Model Portfolio",
                                                      "Library Model",
                                                      "Client Holdings",
                                                      "Separately Managed Account",
                                                      "Fees by Asset Class"};

constexpr std::array<TLibModel, 6> kLibModels{{
    {1001, "Conservative Income", {0.30, 0.50, 0.08, 0.06, 0.00, 0.06}},
    {1002, "Balanced Income", {0.15, 0.45, 0.15, 0.12, 0.03, 0.10}},
    {1003, "Balanced", {0.10, 0.35, 0.20, 0.17, 0.05, 0.13}},
    {1004, "Balanced Growth", {0.05, 0.25, 0.25, 0.22, 0.08, 0.15}},
    {1005, "Growth", {0.05, 0.15, 0.30, 0.25, 0.10, 0.15}},
    {1006, "Maximum Growth", {0.00, 0.00, 0.35, 0.30, 0.15, 0.20}},
}};

} // namespace

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
        if (ch >= '0' && ch <= '9')
            d = unsigned(ch - '0');
        else if (ch >= 'A' && ch <= 'F')
            d = unsigned(ch - 'A' + 10);
        else if (ch >= 'a' && ch <= 'f')
            d = unsigned(ch - 'a' + 10);
        else
            return false;
        u = (u << 4) | d;
    }
    id = static_cast<std::int32_t>(u);
    return true;
}

std::string DateTimeToText(double dateTime) {
    // Outside years 1..9999 the text would be meaningless; such values read as 0.
    if (!std::isfinite(dateTime) || dateTime < -693593 || dateTime >= 2958466) dateTime = 0;
    const TCivilDateTime t = DateTimeOfDayNumber(dateTime);
    const std::int64_t ms = t.Millisecond;
    return Pad(t.Date.Year, 4) + "-" + Pad(t.Date.Month, 2) + "-" + Pad(t.Date.Day, 2) + " " + Pad(ms / 3600000, 2) +
           ":" + Pad(ms / 60000 % 60, 2) + ":" + Pad(ms / 1000 % 60, 2) + "." + Pad(ms % 1000, 3);
}

double NowDateTime() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t t = std::chrono::system_clock::to_time_t(now);
    std::tm lt{};
    localtime_r(&t, &lt);
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    const std::int64_t days = DayNumberOfDate(lt.tm_year + 1900, unsigned(lt.tm_mon + 1), unsigned(lt.tm_mday));
    const double secs = lt.tm_hour * 3600.0 + lt.tm_min * 60.0 + lt.tm_sec + double(ms) / 1000.0;
    return double(days) + secs / 86400.0;
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
    for (int c = 0; c < kAlcClsCount; ++c)
        fee += total * fields::Pos(year.GetClsShare(c)) * FeeRates[std::size_t(c)] / 100;
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

} // namespace kv
