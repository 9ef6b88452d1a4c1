// Balances: the values of a model's accounts year by year, each account a
// list of dated entries, each dated entry the values of chart-of-accounts
// entries and of financial items. Saved to a file of its own; the layout is
// in docs/formats/balance.md.
//
// Year queries work on the "year value" of an account: the sum of the entry
// values (SumVal) of the account's LAST dated entry of that year in list
// order. A year the account has no dated entry for has no year value; the
// queries below say what they make of that.
#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "decl/KvValueLists.h"

namespace kv {

class TBufReadFile;
class TBufWriteFile;
class TItemOwner;
class TParticipant;

// Year of a day count since 30 December 1899; 0 for a value that is not
// finite or lies outside years 1..9999.
std::int32_t YearOfDate(double date);
// Day count of 1 January of a year (years outside 1..9999 are clamped).
double DateOfYear(std::int32_t year);

struct TAccountVal {
    std::int32_t EntryID = 0;
    double Value = 0;
    double Value2 = -1; // unnamed in the file format, kept to be written back; -1: not set
};

struct TFinItemVal {
    std::int32_t ItemID = 0;
    double Value = 0;
    std::int32_t Int2 = 0; // unnamed in the file format; kept to be written back
};

class TAccountDate {
public:
    // The year is taken from the date.
    explicit TAccountDate(double date = 0);
    TAccountDate(const TAccountDate&) = default;
    TAccountDate& operator=(const TAccountDate&) = default;

    double Date;
    std::int32_t Year;
    std::vector<TAccountVal> Vals; // the entry itself
    std::vector<TFinItemVal> FinItems;
    void* Link = nullptr; // not owned, not saved

    int Count() const { return static_cast<int>(Vals.size()); }
    int FinItemCount() const { return static_cast<int>(FinItems.size()); }

    // Appends a value, even for an entry id already held.
    TAccountVal& Add(std::int32_t entryID, double value);
    TFinItemVal& AddFinItem(std::int32_t itemID, double value, std::int32_t int2 = 0);
    // First value of the entry id, or null.
    TAccountVal* Find(std::int32_t entryID);
    const TAccountVal* Find(std::int32_t entryID) const;
    // Sum of all values of the entry id; 0 when none.
    double FindVal(std::int32_t entryID) const;
    // Sum of all values.
    double SumVal() const;
    // Sets the first value of the entry id, adding one when absent.
    void SetVal(std::int32_t entryID, double value);
    // Sum of the item values.
    double SumFinVals() const;
    // By position; EListError outside the list.
    const TAccountVal& GetAccountVal(int index) const;
    void SetAccountVal(int index, const TAccountVal& v);
    const TFinItemVal& GetFinItemVal(int index) const;
    void SetFinItemVal(int index, const TFinItemVal& v);
    // Removes every item value.
    void ClearFinItemVals() { FinItems.clear(); }
    // Keeps the item values but sets each to 0.
    void ClearFinItemSums();
    // Copies date, year and values; the link is not copied.
    void Assign(const TAccountDate& other);
};

class TAccount {
public:
    TAccount(std::string key, std::string text) : Key(std::move(key)), Text(std::move(text)) {}

    std::string Key;
    std::string Text;

    int Count() const { return static_cast<int>(dates_.size()); }
    // EListError outside the list.
    TAccountDate& GetAccountDate(int index);
    const TAccountDate& GetAccountDate(int index) const;
    // First dated entry of exactly that date, or null.
    TAccountDate* Find(double date);
    // First dated entry of that year, or null; FindLastOfYear the last one.
    TAccountDate* FindYear(std::int32_t year);
    const TAccountDate* FindLastOfYear(std::int32_t year) const;
    // The entry of that date, or a new one inserted after every entry of an
    // earlier or equal date.
    TAccountDate& FindOrAdd(double date);
    // Appended as it stands, whatever its date (what Load does).
    TAccountDate& Append(std::unique_ptr<TAccountDate> d);
    void Clear() { dates_.clear(); }

    // Distinct years of the dated entries, ascending.
    std::vector<std::int32_t> Years() const;

private:
    std::vector<std::unique_ptr<TAccountDate>> dates_;
};

// Capital gains of one party: gains and losses by year, and the net losses
// of earlier years carried forward against later gains.
class TCGManager {
public:
    explicit TCGManager(std::int32_t partyID = 0) : PartyID(partyID) {}
    std::int32_t PartyID;
    TIndDblList Gains;
    TIndDblList Losses; // stored positive

    // A negative amount is a loss.
    void Add(std::int32_t year, double amount);
    double NetGain(std::int32_t year) const { return Gains.GetVal(year) - Losses.GetVal(year); }
    // The net gain of the year after the net losses of every earlier year
    // that earlier net gains did not absorb; never below 0.
    double TaxableGain(std::int32_t year) const;
    // Net losses of the years before `year` still unused at its start.
    double LossCarriedInto(std::int32_t year) const;
};

struct TBalanceParty {
    std::string Name;
    TParticipant* Party = nullptr; // null when the model lacks the id (or no model)
    std::int32_t PartyID = 0;      // as read, so an unresolved id is written back
};

struct TBalanceItem {
    std::int32_t ID = 0;
};

enum class TBalanceListKind : std::uint8_t { Parties, Items };

struct TBalanceListInfo {
    TBalanceListKind Kind;
    std::string_view Name;
};

inline constexpr int kBalanceListCount = 34;
// The thirty-four lists in file order: four party lists, an item list, a
// party list, an item list, eleven party lists and sixteen party lists.
const std::array<TBalanceListInfo, kBalanceListCount>& BalanceLists();

class TBalance {
public:
    // The model may be null: ids then stay unresolved.
    explicit TBalance(TItemOwner* model = nullptr);
    ~TBalance();
    TBalance(const TBalance&) = delete;
    TBalance& operator=(const TBalance&) = delete;

    TItemOwner* Model() const { return model_; }

    double Date = 0;            // the balance's date-time
    std::int32_t FirstYear = 0; // header integer: first planning year covered

    // The two dated entries of the current planning date (not saved).
    TAccountDate CurrentDate;
    TAccountDate CurrentDate2;

    // Accounts, in order. Add appends even for a key already held (the
    // dictionary keeps the first account of a key).
    int Count() const { return static_cast<int>(accounts_.size()); }
    TAccount& GetAccount(int index);
    const TAccount& GetAccount(int index) const;
    TAccount& Add(const std::string& key, const std::string& text = {});
    TAccount* Find(std::string_view key);
    const TAccount* Find(std::string_view key) const;
    TAccount& FindOrAdd(const std::string& key);
    // The account with its dated entries removed (text kept), or a new one.
    TAccount& ClearOrAdd(const std::string& key);
    TAccountDate* FindAccountDate(std::string_view key, double date);
    // Accounts, the thirty-four lists and the capital-gains managers.
    void Clear();

    // The thirty-four lists; EListError for an index outside 0..33 or of
    // the other kind.
    std::vector<TBalanceParty>& Parties(int list);
    const std::vector<TBalanceParty>& Parties(int list) const;
    std::vector<TBalanceItem>& Items(int list);
    const std::vector<TBalanceItem>& Items(int list) const;
    TBalanceParty& AddParty(int list, TParticipant& party, std::string name = {});
    TBalanceParty& AddPartyID(int list, std::int32_t partyID, std::string name);

    // Capital-gains managers by party id.
    TCGManager& GetCGManager(std::int32_t partyID);
    const TCGManager* FindCGManager(std::int32_t partyID) const;
    int CGManagerCount() const { return static_cast<int>(cgManagers_.size()); }

    void Save(const std::string& fileName) const;
    void Save(TBufWriteFile& w) const;
    // Resolves party ids through the model when there is one. On any error
    // the balance is left as it was: a truncated file or a count larger than
    // the bytes left raises EReadError, a negative count EFileStructure.
    // Bytes after the accounts are ignored. The capital-gains managers,
    // which the file does not hold, are cleared.
    void Load(const std::string& fileName);
    void Load(TBufReadFile& r);

    // --- Year queries --------------------------------------------------
    // Value of an entry id in the account's last dated entry of the year;
    // 0 when the account, the year or the entry is absent.
    double FindVal(std::string_view key, std::int32_t year, std::int32_t entryID) const;
    // The account's year value; 0 when absent.
    double FindValSumm(std::string_view key, std::int32_t year) const;
    // FindVal of the year or, when the account has no dated entry of that
    // year, of the nearest earlier year it has; 0 when none is earlier.
    double FindValX(std::string_view key, std::int32_t year, std::int32_t entryID) const;
    // Sum of the year values over the account's distinct years.
    double AccountTotal(std::string_view key) const;
    // The same over the years from `year` on.
    double AccountTotalFromYear(std::string_view key, std::int32_t year) const;
    // Largest / smallest year value and its year (the earliest on a tie);
    // 0 and year -1 for an account without dated entries or no account.
    double AccountMax(std::string_view key, std::int32_t* year = nullptr) const;
    double AccountMin(std::string_view key, std::int32_t* year = nullptr) const;
    // First year from `fromYear` on whose year value is below 0; -1 if none.
    std::int32_t FirstAccountNegativeYear(std::string_view key, std::int32_t fromYear = INT32_MIN) const;
    // First year from `fromYear` on, among the years any of the accounts
    // has, where the sum of the accounts' year values (0 for an account
    // without that year) is below 0; -1 if none. Unknown keys count as 0.
    std::int32_t FirstAccountSumNegativeYear(const std::vector<std::string>& keys,
                                             std::int32_t fromYear = INT32_MIN) const;

    // --- Listings -------------------------------------------------------
    // Every entry id used by any account, ascending, once each.
    std::vector<std::int32_t> ListAllE() const;
    // Keys, in account order, of the accounts with some value or item value
    // whose absolute value exceeds 0.
    std::vector<std::string> ListPopulatedAccounts() const;
    // Item ids of an account's item values, ascending, once each.
    std::vector<std::int32_t> ListAccountItems(std::string_view key) const;
    // One line a dated entry of the account, in list order:
    // "<year> <sum> (<n> values, <m> items)".
    std::vector<std::string> ExploreAccount(std::string_view key) const;
    // One line a value of the entry id, accounts and dated entries in
    // order: "<key> <year> <value>".
    std::vector<std::string> ExploreEntry(std::int32_t entryID) const;
    // The whole balance as text; the form is in docs/formats/balance.md.
    void Print(std::ostream& os) const;

private:
    struct TList {
        std::vector<TBalanceParty> Parties;
        std::vector<TBalanceItem> Items;
    };
    struct TContent;
    void Take(TContent&& c);

    TItemOwner* model_;
    std::vector<std::unique_ptr<TAccount>> accounts_;
    std::unordered_map<std::string, TAccount*> index_;
    std::array<TList, kBalanceListCount> lists_;
    std::map<std::int32_t, std::unique_ptr<TCGManager>> cgManagers_;
};

} // namespace kv
