// The chart of accounts of a planning product ("Entries.dat"): every kind of
// financial entry a plan can hold, with its item class number, type, place in
// the entry tree and special properties, plus the account list. Loaded once
// from the product's core folder, then only queried.
//
// The byte layout, the French.dat format and the expected versions are
// described in docs/formats/entries.md.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "KvErrors.h"

namespace kv {

class TBufReadFile;
class TBufWriteFile;

// Entry groups, in the order the program has always numbered them.
enum class TEntryGrp : std::uint8_t {
    EGRP_HOME,
    EGRP_REALEST,
    EGRP_VACATION,
    EGRP_VEHICLE,
    EGRP_VESSEL,
    EGRP_PERSPROP,
    EGRP_EDUCATION,
    EGRP_GIFT,
    EGRP_OTHERASSET,
    EGRP_GCVEHICLE,
    EGRP_WILLTR,
    EGRP_ENTERT,
    EGRP_TOYS,
    EGRP_DONAT,
    EGRP_PLCON,
    EGRP_HOBB,
    EGRP_EDUCWE,
    EGRP_LESSN,
    EGRP_CAMP,
    EGRP_GIFTWE,
    EGRP_PPCON,
    EGRP_TFSACON,
    EGRP_BASIC,
    EGRP_LIFEINS,
    EGRP_OTHEREXP,
    EGRP_ESTATE,
};
inline constexpr std::size_t EntryGrpCount = 26;
using TEntryGrps = std::bitset<EntryGrpCount>;

// The code of a group as it appears in "EGRP=": the member name without "EGRP_".
std::string_view EntryGrpCode(TEntryGrp grp);
// Parses a ","-separated list of codes; blanks around a code are ignored, and
// so are codes no member has (newer products know more groups).
TEntryGrps ParseEntryGrps(std::string_view list);

// The product kinds whose entry records carry four more integers.
constexpr bool EntriesHaveExtraInts(std::uint8_t product) { return product == 0 || product == 4; }
// The version this build expects in "Entries.dat" of a product kind; 0 for a
// kind outside the table (0, 1, 2, 4), which a file without a version matches.
std::int32_t ExpectedEntriesVersion(std::uint8_t product);

struct TEntryType {
    std::uint8_t Code = 0;
    std::string Name;
    std::uint8_t Code2 = 0; // unnamed in the file format; kept to be written back
    bool Flag = false;
};

// One group of the chart: every distinct group identifier of the entries has
// one. Value is 0 until a client model stores one.
struct TEntryGroup {
    std::uint8_t ID = 0;
    std::int32_t Value = 0;
};

class TEntry {
public:
    // Six Int: class number, identity, then the tree keys.
    std::int32_t ItemClassNo = 0;
    std::int32_t EntryID = 0;
    std::array<std::int32_t, 4> TreeKeys{-1, -1, -1, -1};
    // The three Int after the tree keys; Ints[0] is the kind code.
    std::array<std::int32_t, 3> Ints{};
    // The two bytes after them; the first is the group identifier.
    std::uint8_t GroupID = 0;
    // Byte2 to Double1, LongText, Name2 and FrenchName2: the file format
    // leaves these unnamed; they are kept to be written back.
    std::uint8_t Byte2 = 0;
    std::array<std::uint8_t, 4> Data4{};
    std::uint8_t Data1 = 0;
    std::int32_t Int1 = 0;
    std::uint8_t Data2 = 0;
    bool Flag = false;
    std::int32_t Int2 = 0;
    double Double1 = 0;
    // Byte 255 on disk is "no type".
    const TEntryType* EntryType = nullptr;
    std::string Name;
    std::string FrenchName;
    std::string LongText; // StrX
    std::string Name2;
    std::string FrenchName2;
    // Present on disk only for product kinds 0 and 4; zero otherwise.
    std::array<std::int32_t, 4> ExtraInts{};
    // "name=value" lines as stored; names are case-sensitive.
    std::vector<std::string> SpecProps;
    // Decoded from the "EGRP" special property (DecodeGroups).
    TEntryGrps Groups;

    // Non-owning: entries are owned by TEntries.
    TEntry* Parent = nullptr;
    std::vector<TEntry*> Children; // file order

    // The value investment accounts link child items by (kinds -35, -36, -37,
    // -42): taken to be the first of the three Int after the tree keys.
    std::int32_t KindCode() const { return Ints[0]; }

    // Value of the first line "name=..."; empty when there is none.
    std::string SpecProp(std::string_view name) const;
    bool HasSpecProp(std::string_view name) const;
    // Sets Groups from the "EGRP" special property.
    void DecodeGroups();
    bool InGroup(TEntryGrp grp) const { return Groups.test(std::size_t(grp)); }

    // An entry hangs under one parent only, and never under itself or one of
    // its descendants: otherwise Level and ParentOf would never end.
    bool CanAddChild(const TEntry* child) const;
    // Appends child and sets its Parent; throws EKvError when CanAddChild is false.
    void AddChild(TEntry* child);
    // Steps up to the root; 0 for a root.
    int Level() const;
    // True when aEntry's EntryID is this entry's or any descendant's.
    bool ParentOf(const TEntry* aEntry) const;
};

// An account: eleven ShortStr and one Str, carried as read. The program reads
// Texts[0] as the account code, dotted by level ("4", "4.10", "4.10.2"),
// Texts[1] as its name and Texts[10] as its colour (decimal 0xRRGGBB, empty
// for the default); Note is the Str.
class TAcc {
public:
    std::array<std::string, 11> Texts;
    std::string Note;

    // Set at load: the account whose code is the longest dotted prefix of this
    // one's that the list holds; none for a top account.
    const TAcc* Parent = nullptr;

    const std::string& Code() const { return Texts[0]; }
    const std::string& Name() const { return Texts[1]; }
    // Steps up to the top account; 0 for a top account.
    int AccLevel() const;
    const TAcc* TopAcc() const;
    // The account's own colour, else its parent's, else DefColor of its level.
    std::uint32_t GetColor() const;
    // Default colour of a level: a fixed palette, repeating after its end.
    static std::uint32_t DefColor(int level);
};

struct TEntryVal {
    std::uint8_t Kind = 0;
    std::string Name;
    std::string Text;
    std::int32_t Value = 0;
};

// The accounts of the chart, in file order (the order reports list them in).
class TAccList : public std::vector<std::unique_ptr<TAcc>> {
public:
    const TAcc* FindByCode(const std::string& code) const;
    // The account's position, -1 when the chart lacks it.
    int GetAccOrder(const std::string& code) const;
    // The accounts below that one at any depth, in chart order.
    std::vector<const TAcc*> ListSubAccounts(const std::string& code) const;
    // Chart order; codes the chart lacks go last, in their order.
    void SortByAccountsOrder(std::vector<std::string>& codes) const;
};

class TEntryVals : public std::vector<TEntryVal> {
public:
    // The first value of that kind and name, or nullptr.
    const TEntryVal* Find(std::uint8_t kind, const std::string& name) const;
    std::int32_t ValueOf(std::uint8_t kind, const std::string& name, std::int32_t def) const;
};

class TEntries {
public:
    // fileName: full path of "Entries.dat"; French.dat is looked for beside it.
    TEntries(std::uint8_t product, std::string fileName);
    ~TEntries();
    TEntries(const TEntries&) = delete;
    TEntries& operator=(const TEntries&) = delete;

    // Reads the file (anything held before is dropped), then French.dat when
    // present, then checks the version: with showError a difference raises
    // EEntriesVersion, without it the file is accepted. Damaged files raise
    // EReadError (too short) or EFileStructure (inconsistent); both leave the
    // object empty. Missing or unreadable files raise EInOutError.
    void Load(bool showError);
    // The same over a reader that already holds the file's bytes.
    void Load(TBufReadFile& reader, bool showError);
    void Clear();

    // First entry of the file with that value, or nullptr. O(1).
    TEntry* GetEntryByID(std::int32_t entryID) const;
    TEntry* GetEntryByFIClassNo(std::int32_t itemClassNo) const;
    // First top-level entry whose first tree key is value and whose other
    // three are -1, or nullptr.
    TEntry* GetRootEntry(std::int32_t value) const;
    std::string GetEntryName(std::int32_t entryID, const std::string& defName) const;

    // The group of that identifier, or nullptr when no entry uses it.
    TEntryGroup* FindGroup(std::uint8_t id);
    const TEntryGroup* FindGroup(std::uint8_t id) const;
    TEntryGroup* GroupOf(const TEntry& entry) { return FindGroup(entry.GroupID); }
    // Groups in order of first use by the entries.
    const std::vector<std::unique_ptr<TEntryGroup>>& Groups() const { return lGroups; }
    void ClearGroupValues();

    std::uint8_t Product() const { return FProduct; }
    const std::string& FileName() const { return FFileName; }
    const std::string& FrenchFileName() const { return FFrenchFileName; }
    // 0 until read, and for a file that ends after the tax labels.
    std::int32_t Version() const { return FVersion; }
    bool HasVersion() const { return FHasVersion; }

    const std::vector<std::unique_ptr<TEntryType>>& EntryTypes() const { return lEntryTypes; }
    // Top-level nodes of both tree sections: the first FirstTreeCount() from
    // the first section, the rest from the second.
    const std::vector<TEntry*>& Entries() const { return lEntries; }
    std::size_t FirstTreeCount() const { return FFirstTreeCount; }
    // Every entry, in file order.
    const std::vector<std::unique_ptr<TEntry>>& EntriesByID() const { return lEntriesByID; }
    const std::vector<std::unique_ptr<TAcc>>& AccGroups() const { return lAccGroups; }
    // Names of the top accounts, in file order.
    const std::vector<std::string>& AccGroupNames() const { return ssAccGroups; }
    const std::vector<TEntryVal>& EntryVals() const { return lEntryVals; }
    const std::vector<std::string>& EnTaxLabels() const { return ssEnTaxLabels; }
    const std::vector<std::string>& FrTaxLabels() const { return ssFrTaxLabels; }

    // Building a chart for fixtures and demo data; Save writes exactly the
    // layout Load reads, for this object's product kind.
    TAcc& AddAcc(std::array<std::string, 11> texts, std::string note = {});
    TEntryType& AddEntryType(std::uint8_t code, std::string name, std::uint8_t code2 = 0, bool flag = false);
    // Takes ownership, decodes its groups and indexes it; returns the entry.
    TEntry& AddEntry(std::unique_ptr<TEntry> entry);
    TEntry& AddEntry(std::int32_t entryID, std::int32_t itemClassNo, std::string name, std::uint8_t groupID = 1);
    // Appends a top-level node to the first (secondTree false) or the second tree section.
    void AddRootNode(TEntry& entry, bool secondTree = false);
    void AddEntryVal(TEntryVal val);
    void AddEnTaxLabel(std::string label);
    void AddFrTaxLabel(std::string label);
    void SetVersion(std::int32_t version) {
        FVersion = version;
        FHasVersion = true;
    }
    void ClearVersion() {
        FVersion = 0;
        FHasVersion = false;
    }
    // Resolves account parents and the account-group names (done by Load).
    void LinkAccounts();
    // The account groups as Load leaves them: parents and top-account names.
    void LoadAccGroups() { LinkAccounts(); }
    const TAccList& AccList() const { return lAccGroups; }

    void Save(const std::string& path) const;
    void Save(TBufWriteFile& writer) const;
    // French names and French tax labels in the French.dat format.
    void SaveFrench(const std::string& path) const;

private:
    void ReadEntries(TBufReadFile& r);
    void ReadEntry(TBufReadFile& r, TEntry& e);
    void ReadTreeSection(TBufReadFile& r);
    TEntry* ReadTreeNode(TBufReadFile& r, int depth);
    void LoadFrench();
    void CheckVersion(bool showError) const;
    void IndexEntry(TEntry& e);
    [[noreturn]] void Corrupt() const;

    std::uint8_t FProduct;
    std::string FFileName;
    std::int32_t FVersion = 0;
    bool FHasVersion = false;
    std::string FFrenchFileName;
    std::vector<std::string> ssFrTaxLabels;
    std::vector<std::string> ssEnTaxLabels;
    std::vector<std::unique_ptr<TEntryType>> lEntryTypes;
    std::vector<TEntry*> lEntries;
    std::size_t FFirstTreeCount = 0;
    std::vector<std::unique_ptr<TEntry>> lEntriesByID;
    TAccList lAccGroups;
    std::vector<std::string> ssAccGroups;
    TEntryVals lEntryVals;

    std::vector<std::unique_ptr<TEntryGroup>> lGroups;
    std::array<std::int16_t, 256> FGroupIndex{}; // position in lGroups + 1; 0 = none
    std::unordered_map<std::int32_t, TEntry*> FByID;
    std::unordered_map<std::int32_t, TEntry*> FByClassNo;
};

} // namespace kv
