#include "items/KvBalance.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <ostream>
#include <set>

#include "KvErrors.h"
#include "decl/KvDayNumbers.h"
#include "decl/KvModelFormat.h"
#include "files/KvFnBufFile.h"
#include "items/KvFnFinItems.h"
#include "parties/KvFnParty.h"

namespace kv {

namespace {

// 1 January of year 1 and 31 December 9999 as day counts.
constexpr double kFirstDay = -693593;
constexpr double kLastDay = 2958465;

using L = TBalanceListKind;

constexpr std::array<TBalanceListInfo, kBalanceListCount> kLists{{
    // Four party lists.
    {L::Parties, "Owners"},
    {L::Parties, "Persons"},
    {L::Parties, "Corporations"},
    {L::Parties, "Trusts"},
    // One item list.
    {L::Items, "Portfolios"},
    // One party list.
    {L::Parties, "Beneficiaries"},
    // One item list.
    {L::Items, "Insurance policies"},
    // Eleven party lists: parties with income of each kind.
    {L::Parties, "Employment income"},
    {L::Parties, "Pension income"},
    {L::Parties, "Eligible dividends"},
    {L::Parties, "Other dividends"},
    {L::Parties, "Interest income"},
    {L::Parties, "Capital gains"},
    {L::Parties, "Rental income"},
    {L::Parties, "Business income"},
    {L::Parties, "Government benefits"},
    {L::Parties, "Registered plan withdrawals"},
    {L::Parties, "Other income"},
    // Sixteen party lists: parties with each tax amount or credit.
    {L::Parties, "Federal tax"},
    {L::Parties, "Provincial tax"},
    {L::Parties, "Pension plan contributions"},
    {L::Parties, "Employment insurance premiums"},
    {L::Parties, "Old age security recovery"},
    {L::Parties, "Minimum tax"},
    {L::Parties, "Foreign tax credit"},
    {L::Parties, "Dividend tax credit"},
    {L::Parties, "Donations credit"},
    {L::Parties, "Medical expenses credit"},
    {L::Parties, "Tuition credit"},
    {L::Parties, "Pension income credit"},
    {L::Parties, "Age credit"},
    {L::Parties, "Disability credit"},
    {L::Parties, "Transfers between spouses"},
    {L::Parties, "Tax instalments"},
}};

// Smallest size of one record in the file, to test a count before anything
// is reserved for it.
constexpr std::uint64_t kMinParty = 1 + 4;
constexpr std::uint64_t kMinItem = 4;
constexpr std::uint64_t kMinAccount = 1 + 4 + 4;
constexpr std::uint64_t kMinDate = 4 + 4 + 4;
constexpr std::uint64_t kMinVal = 4 + 8;
constexpr std::uint64_t kMinFinVal = 4 + 8 + 4;

std::size_t ReadCount(TBufReadFile& r, std::uint64_t minSize) {
    const std::int32_t n = r.ReadInt();
    if (n < 0) throw EFileStructure(r.FileName());
    const std::int64_t left = std::int64_t(r.Size()) - r.Position();
    if (left < 0 || std::uint64_t(n) * minSize > std::uint64_t(left))
        throw EReadError("Unexpected end of file " + r.FileName() + " at offset " + std::to_string(r.Position()));
    return std::size_t(n);
}

// Memory charged per record beside the record: a list grown one record at a
// time holds its old and new storage while it moves, three times its size at
// worst; the account index keeps a node and a copy of the key.
constexpr std::uint64_t kGrownSlot = 3;
constexpr std::uint64_t kIndexNodeBytes = 64 + sizeof(std::string);

std::string Num(double v) { return FloatToModelText(v); }

} // namespace

std::int32_t YearOfDate(double date) {
    if (!std::isfinite(date) || date < kFirstDay || date >= kLastDay + 1) return 0;
    return static_cast<std::int32_t>(DateOfDayNumber(static_cast<std::int64_t>(std::floor(date))).Year);
}

double DateOfYear(std::int32_t year) {
    const std::int32_t y = std::clamp<std::int32_t>(year, 1, 9999);
    return double(DayNumberOfDate(y, 1, 1));
}

const std::array<TBalanceListInfo, kBalanceListCount>& BalanceLists() { return kLists; }

// ---------------------------------------------------------------------------
// TAccountDate

TAccountDate::TAccountDate(double date) : Date(date), Year(YearOfDate(date)) {}

TAccountVal& TAccountDate::Add(std::int32_t entryID, double value) {
    Vals.push_back({entryID, value, -1});
    return Vals.back();
}

TFinItemVal& TAccountDate::AddFinItem(std::int32_t itemID, double value, std::int32_t int2) {
    FinItems.push_back({itemID, value, int2});
    return FinItems.back();
}

TAccountVal* TAccountDate::Find(std::int32_t entryID) {
    for (auto& v : Vals)
        if (v.EntryID == entryID) return &v;
    return nullptr;
}

const TAccountVal* TAccountDate::Find(std::int32_t entryID) const {
    for (const auto& v : Vals)
        if (v.EntryID == entryID) return &v;
    return nullptr;
}

double TAccountDate::FindVal(std::int32_t entryID) const {
    double s = 0;
    for (const auto& v : Vals)
        if (v.EntryID == entryID) s += v.Value;
    return s;
}

double TAccountDate::SumVal() const {
    double s = 0;
    for (const auto& v : Vals) s += v.Value;
    return s;
}

void TAccountDate::SetVal(std::int32_t entryID, double value) {
    if (TAccountVal* v = Find(entryID))
        v->Value = value;
    else
        Add(entryID, value);
}

double TAccountDate::SumFinVals() const {
    double s = 0;
    for (const auto& v : FinItems) s += v.Value;
    return s;
}

const TAccountVal& TAccountDate::GetAccountVal(int index) const {
    if (index < 0 || index >= Count()) throw EListError(index);
    return Vals[std::size_t(index)];
}

void TAccountDate::SetAccountVal(int index, const TAccountVal& v) {
    if (index < 0 || index >= Count()) throw EListError(index);
    Vals[std::size_t(index)] = v;
}

const TFinItemVal& TAccountDate::GetFinItemVal(int index) const {
    if (index < 0 || index >= FinItemCount()) throw EListError(index);
    return FinItems[std::size_t(index)];
}

void TAccountDate::SetFinItemVal(int index, const TFinItemVal& v) {
    if (index < 0 || index >= FinItemCount()) throw EListError(index);
    FinItems[std::size_t(index)] = v;
}

void TAccountDate::ClearFinItemSums() {
    for (auto& v : FinItems) v.Value = 0;
}

void TAccountDate::Assign(const TAccountDate& other) {
    if (this == &other) return;
    Date = other.Date;
    Year = other.Year;
    Vals = other.Vals;
    FinItems = other.FinItems;
}

// ---------------------------------------------------------------------------
// TAccount

TAccountDate& TAccount::GetAccountDate(int index) {
    if (index < 0 || index >= Count()) throw EListError(index);
    return *dates_[std::size_t(index)];
}

const TAccountDate& TAccount::GetAccountDate(int index) const {
    if (index < 0 || index >= Count()) throw EListError(index);
    return *dates_[std::size_t(index)];
}

TAccountDate* TAccount::Find(double date) {
    for (auto& d : dates_)
        if (d->Date == date) return d.get();
    return nullptr;
}

TAccountDate* TAccount::FindYear(std::int32_t year) {
    for (auto& d : dates_)
        if (d->Year == year) return d.get();
    return nullptr;
}

const TAccountDate* TAccount::FindLastOfYear(std::int32_t year) const {
    for (auto it = dates_.rbegin(); it != dates_.rend(); ++it)
        if ((*it)->Year == year) return it->get();
    return nullptr;
}

TAccountDate& TAccount::FindOrAdd(double date) {
    if (TAccountDate* d = Find(date)) return *d;
    // After every entry of an earlier or equal date; a NaN date goes last.
    auto pos = std::find_if(dates_.begin(), dates_.end(), [date](const auto& d) { return d->Date > date; });
    return **dates_.insert(pos, std::make_unique<TAccountDate>(date));
}

TAccountDate& TAccount::Append(std::unique_ptr<TAccountDate> d) {
    dates_.push_back(std::move(d));
    return *dates_.back();
}

std::vector<std::int32_t> TAccount::Years() const {
    std::set<std::int32_t> ys;
    for (const auto& d : dates_) ys.insert(d->Year);
    return {ys.begin(), ys.end()};
}

// ---------------------------------------------------------------------------
// TCGManager

void TCGManager::Add(std::int32_t year, double amount) {
    if (amount >= 0)
        Gains.PutVal(year, Gains.GetVal(year) + amount);
    else
        Losses.PutVal(year, Losses.GetVal(year) - amount);
}

double TCGManager::LossCarriedInto(std::int32_t year) const {
    std::set<std::int32_t> years;
    for (int i = 0; i < Gains.Count(); ++i) years.insert(Gains.Items(i).Ind);
    for (int i = 0; i < Losses.Count(); ++i) years.insert(Losses.Items(i).Ind);
    double pool = 0;
    for (std::int32_t y : years) {
        if (y >= year) break;
        const double net = NetGain(y);
        if (net < 0)
            pool -= net;
        else
            pool = std::max(0.0, pool - net);
    }
    return pool;
}

double TCGManager::TaxableGain(std::int32_t year) const { return std::max(0.0, NetGain(year) - LossCarriedInto(year)); }

// ---------------------------------------------------------------------------
// TBalance

struct TBalance::TContent {
    double Date = 0;
    std::int32_t FirstYear = 0;
    std::array<TList, kBalanceListCount> Lists;
    std::vector<std::unique_ptr<TAccount>> Accounts;
};

TBalance::TBalance(TItemOwner* model) : model_(model) {}

TBalance::~TBalance() = default;

TAccount& TBalance::GetAccount(int index) {
    if (index < 0 || index >= Count()) throw EListError(index);
    return *accounts_[std::size_t(index)];
}

const TAccount& TBalance::GetAccount(int index) const {
    if (index < 0 || index >= Count()) throw EListError(index);
    return *accounts_[std::size_t(index)];
}

TAccount& TBalance::Add(const std::string& key, const std::string& text) {
    accounts_.push_back(std::make_unique<TAccount>(key, text));
    index_.try_emplace(key, accounts_.back().get());
    return *accounts_.back();
}

TAccount* TBalance::Find(std::string_view key) {
    const auto it = index_.find(std::string(key));
    return it == index_.end() ? nullptr : it->second;
}

const TAccount* TBalance::Find(std::string_view key) const {
    const auto it = index_.find(std::string(key));
    return it == index_.end() ? nullptr : it->second;
}

TAccount& TBalance::FindOrAdd(const std::string& key) {
    if (TAccount* a = Find(key)) return *a;
    return Add(key);
}

TAccount& TBalance::ClearOrAdd(const std::string& key) {
    if (TAccount* a = Find(key)) {
        a->Clear();
        return *a;
    }
    return Add(key);
}

TAccountDate* TBalance::FindAccountDate(std::string_view key, double date) {
    TAccount* a = Find(key);
    return a ? a->Find(date) : nullptr;
}

void TBalance::Clear() {
    accounts_.clear();
    index_.clear();
    for (auto& l : lists_) {
        l.Parties.clear();
        l.Items.clear();
    }
    cgManagers_.clear();
}

std::vector<TBalanceParty>& TBalance::Parties(int list) {
    if (list < 0 || list >= kBalanceListCount || kLists[std::size_t(list)].Kind != L::Parties) throw EListError(list);
    return lists_[std::size_t(list)].Parties;
}

const std::vector<TBalanceParty>& TBalance::Parties(int list) const {
    return const_cast<TBalance*>(this)->Parties(list);
}

std::vector<TBalanceItem>& TBalance::Items(int list) {
    if (list < 0 || list >= kBalanceListCount || kLists[std::size_t(list)].Kind != L::Items) throw EListError(list);
    return lists_[std::size_t(list)].Items;
}

const std::vector<TBalanceItem>& TBalance::Items(int list) const { return const_cast<TBalance*>(this)->Items(list); }

TBalanceParty& TBalance::AddParty(int list, TParticipant& party, std::string name) {
    auto& l = Parties(list);
    l.push_back({name.empty() ? party.FullName() : std::move(name), &party, party.ID});
    return l.back();
}

TBalanceParty& TBalance::AddPartyID(int list, std::int32_t partyID, std::string name) {
    auto& l = Parties(list);
    l.push_back({std::move(name), model_ ? model_->GetParticipantByID(partyID) : nullptr, partyID});
    return l.back();
}

TCGManager& TBalance::GetCGManager(std::int32_t partyID) {
    auto& m = cgManagers_[partyID];
    if (!m) m = std::make_unique<TCGManager>(partyID);
    return *m;
}

const TCGManager* TBalance::FindCGManager(std::int32_t partyID) const {
    const auto it = cgManagers_.find(partyID);
    return it == cgManagers_.end() ? nullptr : it->second.get();
}

void TBalance::Save(const std::string& fileName) const {
    TBufWriteFile w(fileName);
    Save(w);
    w.Close();
}

void TBalance::Save(TBufWriteFile& w) const {
    w.WriteDateTime(Date);
    w.WriteInt(FirstYear);
    for (int i = 0; i < kBalanceListCount; ++i) {
        const TList& l = lists_[std::size_t(i)];
        if (kLists[std::size_t(i)].Kind == L::Parties) {
            w.WriteInt(static_cast<std::int32_t>(l.Parties.size()));
            for (const auto& p : l.Parties) {
                w.WriteShortStr(p.Name);
                w.WriteInt(p.Party ? p.Party->ID : p.PartyID);
            }
        } else {
            w.WriteInt(static_cast<std::int32_t>(l.Items.size()));
            for (const auto& it : l.Items) w.WriteInt(it.ID);
        }
    }
    w.WriteInt(static_cast<std::int32_t>(accounts_.size()));
    for (const auto& a : accounts_) {
        w.WriteShortStr(a->Key);
        w.WriteStr(a->Text);
        w.WriteInt(a->Count());
        for (int i = 0; i < a->Count(); ++i) {
            const TAccountDate& d = a->GetAccountDate(i);
            w.WriteInt(d.Year);
            w.WriteInt(d.Count());
            for (const auto& v : d.Vals) {
                w.WriteInt(v.EntryID);
                w.WriteDouble(v.Value);
            }
            w.WriteInt(d.FinItemCount());
            for (const auto& v : d.FinItems) {
                w.WriteInt(v.ItemID);
                w.WriteDouble(v.Value);
                w.WriteInt(v.Int2);
            }
        }
    }
}

void TBalance::Load(const std::string& fileName) {
    TBufReadFile r(fileName);
    Load(r);
}

void TBalance::Load(TBufReadFile& r) {
    TContent c;
    c.Date = r.ReadDateTime();
    c.FirstYear = r.ReadInt();
    for (int i = 0; i < kBalanceListCount; ++i) {
        TList& l = c.Lists[std::size_t(i)];
        if (kLists[std::size_t(i)].Kind == L::Parties) {
            const std::size_t n = ReadCount(r, kMinParty);
            r.ChargeEach(n, sizeof(TBalanceParty));
            r.Reserve(l.Parties, n);
            for (std::size_t k = 0; k < n; ++k) {
                TBalanceParty p;
                p.Name = r.ReadShortStr();
                p.PartyID = r.ReadInt();
                p.Party = model_ ? model_->GetParticipantByID(p.PartyID) : nullptr;
                l.Parties.push_back(std::move(p));
            }
        } else {
            const std::size_t n = ReadCount(r, kMinItem);
            r.ChargeEach(n, sizeof(l.Items[0]));
            r.Reserve(l.Items, n);
            for (std::size_t k = 0; k < n; ++k) l.Items.push_back({r.ReadInt()});
        }
    }
    const std::size_t na = ReadCount(r, kMinAccount);
    r.ChargeEach(na, sizeof(std::unique_ptr<TAccount>) + sizeof(TAccount) + kIndexNodeBytes);
    r.Reserve(c.Accounts, na);
    for (std::size_t k = 0; k < na; ++k) {
        std::string key = r.ReadShortStr();
        r.Charge(key.capacity() > 15 ? key.capacity() + 1 : 0); // the index's copy
        std::string text = r.ReadStr();
        auto a = std::make_unique<TAccount>(std::move(key), std::move(text));
        const std::size_t nd = ReadCount(r, kMinDate);
        for (std::size_t j = 0; j < nd; ++j) {
            r.Charge(sizeof(TAccountDate) + kGrownSlot * sizeof(std::unique_ptr<TAccountDate>));
            const std::int32_t year = r.ReadInt();
            auto d = std::make_unique<TAccountDate>(DateOfYear(year));
            d->Year = year;
            const std::size_t nv = ReadCount(r, kMinVal);
            r.ChargeEach(nv, sizeof(TAccountVal));
            r.Reserve(d->Vals, nv);
            for (std::size_t i = 0; i < nv; ++i) {
                TAccountVal v;
                v.EntryID = r.ReadInt();
                v.Value = r.ReadDouble();
                d->Vals.push_back(v);
            }
            const std::size_t nf = ReadCount(r, kMinFinVal);
            r.ChargeEach(nf, sizeof(TFinItemVal));
            r.Reserve(d->FinItems, nf);
            for (std::size_t i = 0; i < nf; ++i) {
                TFinItemVal v;
                v.ItemID = r.ReadInt();
                v.Value = r.ReadDouble();
                v.Int2 = r.ReadInt();
                d->FinItems.push_back(v);
            }
            a->Append(std::move(d));
        }
        c.Accounts.push_back(std::move(a));
    }
    Take(std::move(c));
}

void TBalance::Take(TContent&& c) {
    Date = c.Date;
    FirstYear = c.FirstYear;
    lists_ = std::move(c.Lists);
    accounts_ = std::move(c.Accounts);
    index_.clear();
    for (const auto& a : accounts_) index_.try_emplace(a->Key, a.get());
    cgManagers_.clear();
}

// ---------------------------------------------------------------------------
// Queries

double TBalance::FindVal(std::string_view key, std::int32_t year, std::int32_t entryID) const {
    const TAccount* a = Find(key);
    const TAccountDate* d = a ? a->FindLastOfYear(year) : nullptr;
    return d ? d->FindVal(entryID) : 0.0;
}

double TBalance::FindValSumm(std::string_view key, std::int32_t year) const {
    const TAccount* a = Find(key);
    const TAccountDate* d = a ? a->FindLastOfYear(year) : nullptr;
    return d ? d->SumVal() : 0.0;
}

double TBalance::FindValX(std::string_view key, std::int32_t year, std::int32_t entryID) const {
    const TAccount* a = Find(key);
    if (!a) return 0;
    std::int32_t best = 0;
    bool found = false;
    for (std::int32_t y : a->Years())
        if (y <= year) {
            best = y;
            found = true;
        }
    return found ? a->FindLastOfYear(best)->FindVal(entryID) : 0.0;
}

double TBalance::AccountTotal(std::string_view key) const { return AccountTotalFromYear(key, INT32_MIN); }

double TBalance::AccountTotalFromYear(std::string_view key, std::int32_t year) const {
    const TAccount* a = Find(key);
    if (!a) return 0;
    double s = 0;
    for (std::int32_t y : a->Years())
        if (y >= year) s += a->FindLastOfYear(y)->SumVal();
    return s;
}

double TBalance::AccountMax(std::string_view key, std::int32_t* year) const {
    const TAccount* a = Find(key);
    double best = 0;
    std::int32_t at = -1;
    if (a)
        for (std::int32_t y : a->Years()) {
            const double v = a->FindLastOfYear(y)->SumVal();
            if (at == -1 || v > best) {
                best = v;
                at = y;
            }
        }
    if (year) *year = at;
    return best;
}

double TBalance::AccountMin(std::string_view key, std::int32_t* year) const {
    const TAccount* a = Find(key);
    double best = 0;
    std::int32_t at = -1;
    if (a)
        for (std::int32_t y : a->Years()) {
            const double v = a->FindLastOfYear(y)->SumVal();
            if (at == -1 || v < best) {
                best = v;
                at = y;
            }
        }
    if (year) *year = at;
    return best;
}

std::int32_t TBalance::FirstAccountNegativeYear(std::string_view key, std::int32_t fromYear) const {
    const TAccount* a = Find(key);
    if (!a) return -1;
    for (std::int32_t y : a->Years())
        if (y >= fromYear && a->FindLastOfYear(y)->SumVal() < 0) return y;
    return -1;
}

std::int32_t TBalance::FirstAccountSumNegativeYear(const std::vector<std::string>& keys, std::int32_t fromYear) const {
    std::vector<const TAccount*> accs;
    std::set<std::int32_t> years;
    for (const auto& k : keys)
        if (const TAccount* a = Find(k)) {
            accs.push_back(a);
            for (std::int32_t y : a->Years()) years.insert(y);
        }
    for (std::int32_t y : years) {
        if (y < fromYear) continue;
        double s = 0;
        for (const TAccount* a : accs)
            if (const TAccountDate* d = a->FindLastOfYear(y)) s += d->SumVal();
        if (s < 0) return y;
    }
    return -1;
}

std::vector<std::int32_t> TBalance::ListAllE() const {
    std::set<std::int32_t> ids;
    for (const auto& a : accounts_)
        for (int i = 0; i < a->Count(); ++i)
            for (const auto& v : a->GetAccountDate(i).Vals) ids.insert(v.EntryID);
    return {ids.begin(), ids.end()};
}

std::vector<std::string> TBalance::ListPopulatedAccounts() const {
    std::vector<std::string> keys;
    for (const auto& a : accounts_) {
        bool populated = false;
        for (int i = 0; i < a->Count() && !populated; ++i) {
            const TAccountDate& d = a->GetAccountDate(i);
            for (const auto& v : d.Vals) populated = populated || std::fabs(v.Value) > 0;
            for (const auto& v : d.FinItems) populated = populated || std::fabs(v.Value) > 0;
        }
        if (populated) keys.push_back(a->Key);
    }
    return keys;
}

std::vector<std::int32_t> TBalance::ListAccountItems(std::string_view key) const {
    std::set<std::int32_t> ids;
    if (const TAccount* a = Find(key))
        for (int i = 0; i < a->Count(); ++i)
            for (const auto& v : a->GetAccountDate(i).FinItems) ids.insert(v.ItemID);
    return {ids.begin(), ids.end()};
}

std::vector<std::string> TBalance::ExploreAccount(std::string_view key) const {
    std::vector<std::string> lines;
    if (const TAccount* a = Find(key))
        for (int i = 0; i < a->Count(); ++i) {
            const TAccountDate& d = a->GetAccountDate(i);
            lines.push_back(std::to_string(d.Year) + " " + Num(d.SumVal()) + " (" + std::to_string(d.Count()) +
                            " values, " + std::to_string(d.FinItemCount()) + " items)");
        }
    return lines;
}

std::vector<std::string> TBalance::ExploreEntry(std::int32_t entryID) const {
    std::vector<std::string> lines;
    for (const auto& a : accounts_)
        for (int i = 0; i < a->Count(); ++i) {
            const TAccountDate& d = a->GetAccountDate(i);
            for (const auto& v : d.Vals)
                if (v.EntryID == entryID) lines.push_back(a->Key + " " + std::to_string(d.Year) + " " + Num(v.Value));
        }
    return lines;
}

void TBalance::Print(std::ostream& os) const {
    os << "Balance " << Num(Date) << " first year " << FirstYear << '\n';
    for (int i = 0; i < kBalanceListCount; ++i) {
        const TList& l = lists_[std::size_t(i)];
        const bool parties = kLists[std::size_t(i)].Kind == L::Parties;
        const std::size_t n = parties ? l.Parties.size() : l.Items.size();
        if (n == 0) continue;
        os << "List " << i << ' ' << kLists[std::size_t(i)].Name << ": " << n << '\n';
        if (parties)
            for (const auto& p : l.Parties)
                os << "  " << (p.Party ? p.Party->ID : p.PartyID) << ' ' << p.Name << (p.Party ? "" : " (unresolved)")
                   << '\n';
        else
            for (const auto& it : l.Items) os << "  " << it.ID << '\n';
    }
    for (const auto& a : accounts_) {
        os << "Account " << a->Key << " \"" << a->Text << "\": " << a->Count() << " dated entries\n";
        for (int i = 0; i < a->Count(); ++i) {
            const TAccountDate& d = a->GetAccountDate(i);
            os << "  " << d.Year << ": sum " << Num(d.SumVal()) << '\n';
            for (const auto& v : d.Vals) os << "    E " << v.EntryID << " = " << Num(v.Value) << '\n';
            for (const auto& v : d.FinItems)
                os << "    I " << v.ItemID << " = " << Num(v.Value) << " (" << v.Int2 << ")\n";
        }
    }
}

} // namespace kv
