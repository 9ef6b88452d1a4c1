// Financial items: the base every item class shares (base record, ownership,
// special properties, payments, children) and the item class metadata.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "KvSettings.h"
#include "parties/KvFnParty.h"

namespace kv {

class TEntries;
class TEntry;
class TFinItem;
class TParticipant;

using TFinItemList = std::vector<std::unique_ptr<TFinItem>>;

// What an item sees of the model it belongs to. The model container sits
// above the items and implements it, so items never include the container.
class TItemOwner {
public:
    virtual TEntries* Entries() const = 0;
    virtual TParticipant* GetParticipantByID(std::int32_t id) const = 0;
    virtual const std::vector<std::unique_ptr<TParticipant>>& Participants() const = 0;
    virtual const TFinItemList& Items() const = 0;
    virtual void RaiseHighestItemID(std::int32_t id) = 0;
    // The settings the model was made with (planning date, language, flags).
    virtual const TLibrarySettings& Settings() const = 0;
    // Language of the texts items make (group names, line names); a model
    // may differ from its settings after SetLanguage.
    virtual bool French() const { return Settings().French; }

protected:
    ~TItemOwner() = default;
};

// The class of an item, as a value: name, base class and constructor. Every
// item class has one constant instance, so the class registry is a table of
// addresses and "derives from" walks the Parent chain.
struct TFinItemClass {
    const char* Name;
    const TFinItemClass* Parent;
    std::unique_ptr<TFinItem> (*Create)(const TEntry* entry, TItemOwner* model, std::int32_t id);
    std::size_t Size; // of an object, charged against a reader's memory budget

    bool InheritsFrom(const TFinItemClass& other) const {
        for (const TFinItemClass* c = this; c; c = c->Parent)
            if (c == &other) return true;
        return false;
    }
};

template <class T>
std::unique_ptr<TFinItem> CreateItemOf(const TEntry* entry, TItemOwner* model, std::int32_t id) {
    return std::make_unique<T>(entry, model, id);
}

// Declares the class metadata of an item class inside its class body.
#define KV_ITEM_CLASS_BODY(Name, Base) \
public: \
    using Base::Base; \
    static const ::kv::TFinItemClass Class; \
    const ::kv::TFinItemClass& ClassType() const override { return Class; }

// Defines it, in one .cpp file.
#define KV_ITEM_CLASS_DEFINE(Name, Base) \
    constinit const ::kv::TFinItemClass Name::Class{#Name, &Base::Class, &::kv::CreateItemOf<Name>, sizeof(Name)};

// Special properties: "name=value" strings without duplicates. Names are
// case-sensitive; a string without "=" is kept but has no name; of two
// strings with the same name the first is the value read.
class TSpecProps {
public:
    // Adds the string unless an equal one is held; true when added.
    bool Add(std::string line);
    // The same for a string read from a file: one not added is remembered in
    // its place, so that properties left unchanged are written as they were
    // stored, repetitions included.
    bool AddRead(std::string line);
    // What a writer stores: the strings with those repetitions, until the
    // program changes the set.
    std::vector<std::string> StoredLines() const;
    void Clear() {
        lines_.clear();
        index_.clear();
        dropped_.reset();
    }
    int Count() const { return static_cast<int>(lines_.size()); }
    const std::vector<std::string>& Lines() const { return lines_; }

    std::optional<std::string_view> Get(std::string_view name) const;
    std::string GetText(std::string_view name, std::string_view def = {}) const;
    // A missing or unreadable value takes the default.
    std::int32_t GetInt(std::string_view name, std::int32_t def) const;
    double GetFloat(std::string_view name, double def) const;
    // True exactly when the stored text equals the literal ("1" or "Yes").
    bool GetFlag(std::string_view name, std::string_view literal) const;
    bool Has(std::string_view name) const { return Get(name).has_value(); }

    // Replaces the first string of that name, or appends one.
    void Set(std::string_view name, std::string_view value);
    void SetInt(std::string_view name, std::int32_t value);
    void SetFloat(std::string_view name, double value);
    void Remove(std::string_view name);

private:
    bool Holds(const std::string& line);
    void Push(std::string line);

    std::vector<std::string> lines_;
    // Place among the stored strings, and text; allocated only when there are
    // such strings, as every item carries this object.
    std::unique_ptr<std::vector<std::pair<std::size_t, std::string>>> dropped_;
    // Kept only for long lists, so a file with many strings cannot make the
    // duplicate test quadratic.
    std::unordered_set<std::string> index_;

public:
    static constexpr std::size_t kIndexFrom = 32;
};

// One payment of an item, with its payers.
struct TPay {
    explicit TPay(std::int32_t kind = 0) : Kind(kind) {}
    std::int32_t Kind;
    // Int1 and Value2: the file format leaves these unnamed (a value child's
    // pays keep the year in Int1); they are kept to be written back.
    double Value = 0;
    std::int32_t Int1 = 0;
    double Value2 = 0;
    std::uint16_t Code = 0; // two bytes kept together
    std::string Text;
    std::vector<TPayer> Payers; // party and share
};

// The payments of an item, in file order.
class TPaysList : public std::vector<TPay> {
public:
    // Sum of the values of the payments of that kind.
    double Total(std::int32_t kind) const;
    // The first payment of that kind, or nullptr.
    const TPay* ByKind(std::int32_t kind) const;
    // The part of the payments of that kind that a party pays, by its shares.
    double PartyTotal(std::int32_t kind, std::int32_t partyID) const;
};

class TFinItem {
public:
    TFinItem(const TEntry* entry, TItemOwner* model, std::int32_t id);
    virtual ~TFinItem();
    TFinItem(const TFinItem&) = delete;
    TFinItem& operator=(const TFinItem&) = delete;

    static const TFinItemClass Class;
    virtual const TFinItemClass& ClassType() const { return Class; }
    bool InheritsFrom(const TFinItemClass& c) const { return ClassType().InheritsFrom(c); }

    // Base record.
    const TEntry* Entry;
    TItemOwner* Model;
    std::int32_t ID;
    std::int32_t StoredEntryID = 0; // as read; EntryID() when the chart lacks the entry
    std::string Name;
    // Date1, Date2, Code and Text: the file format leaves these unnamed; they
    // are kept to be written back.
    double Date1 = 0, Date2 = 0;
    double Value = 0;
    std::uint8_t Code = 0;
    std::string Text;
    std::unique_ptr<TSharesList> Shares; // null: the record gives none
    TSpecProps SpecProps;
    std::int32_t PaysHeader = 0; // the integer stored before the payments
    TPaysList Pays;
    TFinItem* Parent = nullptr;
    TFinItemList Children;

    std::int32_t EntryID() const;
    // The settings of the item's model; the defaults for an item without one.
    const TLibrarySettings& Settings() const;
    // The model's language; English for an item without a model.
    bool French() const { return Model && Model->French(); }
    // The entry's name in that language (the English one where the chart
    // gives no French name); empty without an entry.
    std::string EntryName() const;

    // The item's own ownership list or, while that is null or empty, the one of
    // the nearest ancestor that has entries (possibly null or empty).
    const TSharesList* OwnershipList() const;

    // Special property "OwnerID"; none when the item has no such property.
    virtual std::optional<std::int32_t> OwnerPartyID() const;
    // Special property "isExclude" equal to "1".
    virtual bool IsExclude() const;
    // The item's own joint test (the lookups the import makes never ask it).
    virtual bool IsJoint() const { return false; }
    // Share items give their share class.
    virtual const TFinItem* ShareClass() const { return nullptr; }

    // Life-cycle hooks: after the payments are in; after the item and its
    // parent link are complete; settings from and to the special properties.
    virtual void AfterRead();
    virtual void AfterLoaded() {}
    virtual void DecodeSpecProps() {}
    virtual void EncodeSpecProps() {}

    // The value child: the first child whose entry has the kind code
    // kValueChildKind; its pays hold one value per year (Int1 = year).
    const TFinItem* ValueChild() const;
    // The value child's pay for the year, 0 when there is none.
    virtual double ValueInYear(std::int32_t year) const;
    // The value of a year among an item's pays (Int1 = year), 0 when none.
    double PayValueOfYear(std::int32_t year) const;
    // Plural label of the item's group: its entry's name.
    virtual std::string ClassGroupName() const;
    // Whether the item's panel shows in a display mode.
    virtual bool ShowForMode(int mode) const;

    void AddPay(TPay pay) { Pays.push_back(std::move(pay)); }
    void SetParent(TFinItem* parent) { Parent = parent; }
    TFinItem* AddChild(std::unique_ptr<TFinItem> child);
};

// The fewest bytes an item record takes in a layout, for checking counts.
std::uint64_t MinItemRecordBytes(bool sectioned);

// Reads one item record with its children. Returns null when the record names
// an entry the chart of accounts does not have (the record is still read in full).
std::unique_ptr<TFinItem> ReadItemRecord(TBufReadFile& r, TItemOwner& model, const TRecordContext& ctx,
                                         TFinItem* parent, int depth);
void WriteItemRecord(TBufWriteFile& w, TFinItem& item, const TRecordContext& ctx);

// Kind code of the entry of an item's value child.
inline constexpr std::int32_t kValueChildKind = -1;

// Children deeper than this make a file structure error rather than a stack overflow.
inline constexpr int kMaxItemDepth = 64;

} // namespace kv
