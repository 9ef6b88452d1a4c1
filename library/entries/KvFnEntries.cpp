#include "entries/KvFnEntries.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <unordered_set>

#include "decl/KvModelFormat.h"
#include "files/KvFnBufFile.h"

namespace kv {

namespace {

constexpr std::array<std::string_view, EntryGrpCount> GrpCodes = {
    "HOME",      "REALEST", "VACATION", "VEHICLE", "VESSEL", "PERSPROP", "EDUCATION", "GIFT",   "OTHERASSET",
    "GCVEHICLE", "WILLTR",  "ENTERT",   "TOYS",    "DONAT",  "PLCON",    "HOBB",      "EDUCWE", "LESSN",
    "CAMP",      "GIFTWE",  "PPCON",    "TFSACON", "BASIC",  "LIFEINS",  "OTHEREXP",  "ESTATE",
};

// Deeper than any real chart; keeps a hostile file from exhausting the stack.
constexpr int MaxTreeDepth = 64;

// Smallest number of bytes each record can take, so that a count can be
// checked against what is left before anything is reserved.
constexpr std::uint64_t MinAccBytes = 11 + 4;
constexpr std::uint64_t MinTypeBytes = 1 + 1 + 1 + 1;
constexpr std::uint64_t MinEntryBytes = 6 * 4 + 3 * 4 + 2 + 4 + 1 + 4 + 1 + 1 + 4 + 8 + 1 + 2 + 1 + 2 + 4;
constexpr std::uint64_t ExtraIntsBytes = 4 * 4;
constexpr std::uint64_t MinNodeBytes = 4 + 1;
constexpr std::uint64_t MinValBytes = 1 + 1 + 1 + 4;
constexpr std::uint64_t MinShortStrBytes = 1;
constexpr std::uint64_t MinFrenchBytes = 4 + 1;

constexpr std::uint8_t NoType = 255;

// What one element of a hash index takes: its node and its share of buckets.
constexpr std::uint64_t HashEntryBytes = 48;
// Per account: its object, its slot, its entry in the code index and, for a
// top-level one, its name in the group list.
constexpr std::uint64_t AccBytes = sizeof(std::unique_ptr<TAcc>) + sizeof(TAcc) + HashEntryBytes + sizeof(std::string);
// Per entry: its object, its slot and its entries in the two indexes.
constexpr std::uint64_t EntryBytes = sizeof(std::unique_ptr<TEntry>) + sizeof(TEntry) + 2 * HashEntryBytes;

[[noreturn]] void ThrowStructure(const std::string& path) { throw EFileStructure(path); }

// A count below 1 is an empty section, as a counted loop that never runs.
std::size_t ReadCount(TBufReadFile& r, std::uint64_t minBytes, const std::string&) {
    const std::int32_t n = r.ReadInt();
    if (n <= 0) return 0;
    const std::uint64_t left = std::uint64_t(r.Size() - r.Position());
    if (std::uint64_t(n) * minBytes > left)
        throw EReadError("Unexpected end of file " + r.FileName() + " at offset " + std::to_string(r.Position()));
    return std::size_t(n);
}

std::string_view Trim(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

} // namespace

std::string_view EntryGrpCode(TEntryGrp grp) {
    const auto i = std::size_t(grp);
    return i < GrpCodes.size() ? GrpCodes[i] : std::string_view();
}

TEntryGrps ParseEntryGrps(std::string_view list) {
    TEntryGrps grps;
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        const std::string_view code = Trim(list.substr(0, comma));
        for (std::size_t i = 0; i < GrpCodes.size(); ++i)
            if (GrpCodes[i] == code) grps.set(i);
        if (comma == std::string_view::npos) break;
        list.remove_prefix(comma + 1);
    }
    return grps;
}

std::int32_t ExpectedEntriesVersion(std::uint8_t product) {
    // Day numbers of the last format change of each product's chart.
    switch (product) {
        case 0:
        case 4: return 45017; // 1 April 2023
        case 1: return 44927; // 1 January 2023
        case 2: return 44986; // 1 March 2023
        default: return 0;
    }
}

// ---------------------------------------------------------------- TEntry

std::string TEntry::SpecProp(std::string_view name) const {
    for (const std::string& line : SpecProps)
        if (line.size() > name.size() && line[name.size()] == '=' && line.starts_with(name))
            return line.substr(name.size() + 1);
    return {};
}

bool TEntry::HasSpecProp(std::string_view name) const {
    for (const std::string& line : SpecProps)
        if (line.size() > name.size() && line[name.size()] == '=' && line.starts_with(name)) return true;
    return false;
}

void TEntry::DecodeGroups() { Groups = ParseEntryGrps(SpecProp("EGRP")); }

bool TEntry::CanAddChild(const TEntry* child) const {
    if (!child) return false;
    // Only the parent chain is walked, and only as deep as a chart can be, so
    // a hostile file cannot make each attach cost the whole chain.
    int steps = 0;
    for (const TEntry* a = this; a; a = a->Parent) {
        if (a == child || ++steps > MaxTreeDepth) return false;
    }
    return true;
}

void TEntry::AddChild(TEntry* child) {
    if (!CanAddChild(child))
        throw EKvError("Entry " + std::to_string(child ? child->EntryID : 0) + " cannot be placed under entry " +
                       std::to_string(EntryID));
    // An entry attached again keeps its place among its former parent's
    // children; only its parent changes, as in the planning products.
    Children.push_back(child);
    child->Parent = this;
}

int TEntry::Level() const {
    int level = 0;
    for (const TEntry* a = Parent; a; a = a->Parent) ++level;
    return level;
}

bool TEntry::ParentOf(const TEntry* aEntry) const {
    if (!aEntry) return false;
    // Iterative, and each entry once: an entry attached twice stands under two
    // parents, and stale child links may even loop.
    std::vector<const TEntry*> todo{this};
    std::unordered_set<const TEntry*> seen{this};
    while (!todo.empty()) {
        const TEntry* e = todo.back();
        todo.pop_back();
        if (e->EntryID == aEntry->EntryID) return true;
        for (const TEntry* c : e->Children)
            if (seen.insert(c).second) todo.push_back(c);
    }
    return false;
}

int TAcc::AccLevel() const {
    int level = 0;
    for (const TAcc* a = Parent; a; a = a->Parent) ++level;
    return level;
}

const TAcc* TAcc::TopAcc() const {
    const TAcc* a = this;
    while (a->Parent) a = a->Parent;
    return a;
}

std::uint32_t TAcc::GetColor() const {
    for (const TAcc* a = this; a; a = a->Parent) {
        std::int32_t c = 0;
        if (TryModelTextToInt(a->Texts[10], c) && c >= 0 && c <= 0xFFFFFF) return std::uint32_t(c);
    }
    return DefColor(AccLevel());
}

std::uint32_t TAcc::DefColor(int level) {
    static constexpr std::array<std::uint32_t, 4> palette = {0x1F4E79, 0x2E75B6, 0x9DC3E6, 0xDEEBF7};
    return level < 0 ? palette[0] : palette[std::size_t(level) % palette.size()];
}

// ---------------------------------------------------------------- TEntries

TEntries::TEntries(std::uint8_t product, std::string fileName) : FProduct(product), FFileName(std::move(fileName)) {
    FFrenchFileName = (std::filesystem::path(FFileName).parent_path() / "French.dat").string();
}

TEntries::~TEntries() = default;

void TEntries::Clear() {
    FVersion = 0;
    FHasVersion = false;
    ssFrTaxLabels.clear();
    ssEnTaxLabels.clear();
    lEntries.clear();
    FFirstTreeCount = 0;
    FByID.clear();
    FByClassNo.clear();
    lEntriesByID.clear();
    lEntryTypes.clear();
    lAccGroups.clear();
    ssAccGroups.clear();
    lEntryVals.clear();
    lGroups.clear();
    FGroupIndex.fill(0);
}

void TEntries::Load(bool showError) {
    TBufReadFile r(FFileName, true);
    Load(r, showError);
}

void TEntries::Load(TBufReadFile& reader, bool showError) {
    Clear();
    try {
        ReadEntries(reader);
        LinkAccounts();
        LoadFrench();
    } catch (...) {
        Clear();
        throw;
    }
    CheckVersion(showError);
}

void TEntries::Corrupt() const { ThrowStructure(FFileName); }

void TEntries::ReadEntries(TBufReadFile& r) {
    // 1. accounts
    std::size_t n = ReadCount(r, MinAccBytes, FFileName);
    r.ChargeEach(n, AccBytes);
    lAccGroups.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        auto acc = std::make_unique<TAcc>();
        for (std::string& t : acc->Texts) r.ReadShortStr(t);
        r.ReadStr(acc->Note);
        lAccGroups.push_back(std::move(acc));
    }

    // 2. entry types
    n = ReadCount(r, MinTypeBytes, FFileName);
    r.ChargeEach(n, sizeof(std::unique_ptr<TEntryType>) + sizeof(TEntryType));
    lEntryTypes.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        auto t = std::make_unique<TEntryType>();
        r.ReadByte(t->Code);
        r.ReadShortStr(t->Name);
        r.ReadByte(t->Code2);
        r.ReadBoolean(t->Flag);
        lEntryTypes.push_back(std::move(t));
    }

    // 3. entries
    const std::uint64_t minEntry = MinEntryBytes + (EntriesHaveExtraInts(FProduct) ? ExtraIntsBytes : 0);
    n = ReadCount(r, minEntry, FFileName);
    r.ChargeEach(n, EntryBytes);
    lEntriesByID.reserve(n);
    FByID.reserve(n);
    FByClassNo.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        auto e = std::make_unique<TEntry>();
        ReadEntry(r, *e);
        TEntry& ref = *e;
        lEntriesByID.push_back(std::move(e));
        IndexEntry(ref);
    }

    // 4. and 5. the two tree sections
    ReadTreeSection(r);
    FFirstTreeCount = lEntries.size();
    ReadTreeSection(r);

    // 6. entry values
    n = ReadCount(r, MinValBytes, FFileName);
    r.ChargeEach(n, sizeof(TEntryVal));
    lEntryVals.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        TEntryVal v;
        r.ReadByte(v.Kind);
        r.ReadShortStr(v.Name);
        r.ReadShortStr(v.Text);
        r.ReadInt(v.Value);
        lEntryVals.push_back(std::move(v));
    }

    // 7. English tax labels
    n = ReadCount(r, MinShortStrBytes, FFileName);
    r.ChargeEach(n, sizeof(std::string));
    r.Reserve(ssEnTaxLabels, n);
    for (std::size_t i = 0; i < n; ++i) ssEnTaxLabels.push_back(r.ReadShortStr());

    // 8. older files end here; bytes after the version belong to newer writers
    if (!r.Eof()) {
        r.ReadInt(FVersion);
        FHasVersion = true;
    }
}

void TEntries::ReadEntry(TBufReadFile& r, TEntry& e) {
    r.ReadInt(e.ItemClassNo);
    r.ReadInt(e.EntryID);
    for (std::int32_t& k : e.TreeKeys) r.ReadInt(k);
    for (std::int32_t& v : e.Ints) r.ReadInt(v);
    r.ReadByte(e.GroupID);
    r.ReadByte(e.Byte2);
    r.ReadData(e.Data4.data(), std::int32_t(e.Data4.size()));
    r.ReadData(&e.Data1, 1);
    r.ReadInt(e.Int1);
    r.ReadData(&e.Data2, 1);
    r.ReadBoolean(e.Flag);
    r.ReadInt(e.Int2);
    r.ReadDouble(e.Double1);
    const std::uint8_t type = r.ReadByte();
    if (type != NoType) {
        // A type the list does not hold means the record is out of step with
        // the file, not merely untyped.
        if (type >= lEntryTypes.size()) Corrupt();
        e.EntryType = lEntryTypes[type].get();
    }
    r.ReadShortStr(e.Name);
    r.ReadShortStr(e.FrenchName);
    r.ReadStrX(e.LongText);
    r.ReadShortStr(e.Name2);
    r.ReadShortStr(e.FrenchName2);
    if (EntriesHaveExtraInts(FProduct))
        for (std::int32_t& v : e.ExtraInts) r.ReadInt(v);
    const std::size_t m = ReadCount(r, MinShortStrBytes, FFileName);
    r.ChargeEach(m, sizeof(std::string));
    r.Reserve(e.SpecProps, m);
    for (std::size_t i = 0; i < m; ++i) e.SpecProps.push_back(r.ReadShortStr());
    e.DecodeGroups();
}

void TEntries::ReadTreeSection(TBufReadFile& r) {
    const std::size_t n = ReadCount(r, MinNodeBytes, FFileName);
    r.ChargeEach(n, 3 * sizeof(TEntry*)); // a list slot, while the list grows
    lEntries.reserve(lEntries.size() + n);
    for (std::size_t i = 0; i < n; ++i) lEntries.push_back(ReadTreeNode(r, 0));
}

TEntry* TEntries::ReadTreeNode(TBufReadFile& r, int depth) {
    if (depth >= MaxTreeDepth) Corrupt();
    const std::int32_t pos = r.ReadInt();
    const std::uint8_t children = r.ReadByte();
    if (pos < 0 || std::size_t(pos) >= lEntriesByID.size()) Corrupt();
    TEntry* e = lEntriesByID[std::size_t(pos)].get();
    r.ChargeEach(children, 3 * sizeof(TEntry*));
    for (std::uint8_t i = 0; i < children; ++i) {
        TEntry* child = ReadTreeNode(r, depth + 1);
        if (!e->CanAddChild(child)) Corrupt();
        e->AddChild(child);
    }
    return e;
}

void TEntries::LoadFrench() {
    std::error_code ec;
    if (!std::filesystem::exists(FFrenchFileName, ec)) return;
    TBufReadFile r(FFrenchFileName, true);
    const std::size_t n = ReadCount(r, MinFrenchBytes, FFrenchFileName);
    for (std::size_t i = 0; i < n; ++i) {
        const std::int32_t id = r.ReadInt();
        std::string name = r.ReadShortStr();
        if (TEntry* e = GetEntryByID(id)) e->FrenchName = std::move(name);
    }
    if (r.Eof()) return;
    const std::size_t m = ReadCount(r, MinShortStrBytes, FFrenchFileName);
    r.ChargeEach(m, sizeof(std::string));
    r.Reserve(ssFrTaxLabels, m);
    for (std::size_t i = 0; i < m; ++i) ssFrTaxLabels.push_back(r.ReadShortStr());
}

void TEntries::CheckVersion(bool showError) const {
    const std::int32_t expected = ExpectedEntriesVersion(FProduct);
    if (!showError || FVersion == expected) return;
    throw EEntriesVersion(FFileName + "\rWrong " + std::filesystem::path(FFileName).filename().string() +
                          " version.\rVersion " + std::to_string(FVersion) + ", expected " + std::to_string(expected) +
                          ".");
}

void TEntries::IndexEntry(TEntry& e) {
    FByID.emplace(e.EntryID, &e);
    FByClassNo.emplace(e.ItemClassNo, &e);
    std::int16_t& slot = FGroupIndex[e.GroupID];
    if (slot == 0) {
        auto g = std::make_unique<TEntryGroup>();
        g->ID = e.GroupID;
        lGroups.push_back(std::move(g));
        slot = std::int16_t(lGroups.size());
    }
}

void TEntries::LinkAccounts() {
    std::unordered_map<std::string_view, const TAcc*> byCode;
    byCode.reserve(lAccGroups.size());
    for (const auto& a : lAccGroups) byCode.emplace(a->Code(), a.get());
    ssAccGroups.clear();
    for (const auto& a : lAccGroups) {
        // The parent's code is strictly shorter, so parents can never loop.
        a->Parent = nullptr;
        std::string_view code = a->Code();
        for (std::size_t dot = code.rfind('.'); dot != std::string_view::npos; dot = code.rfind('.')) {
            code = code.substr(0, dot);
            if (auto it = byCode.find(code); it != byCode.end()) {
                a->Parent = it->second;
                break;
            }
        }
        if (!a->Parent) ssAccGroups.push_back(a->Name());
    }
}

TEntry* TEntries::GetEntryByID(std::int32_t entryID) const {
    const auto it = FByID.find(entryID);
    return it == FByID.end() ? nullptr : it->second;
}

TEntry* TEntries::GetEntryByFIClassNo(std::int32_t itemClassNo) const {
    const auto it = FByClassNo.find(itemClassNo);
    return it == FByClassNo.end() ? nullptr : it->second;
}

TEntry* TEntries::GetRootEntry(std::int32_t value) const {
    for (TEntry* e : lEntries)
        if (e->TreeKeys[0] == value && e->TreeKeys[1] == -1 && e->TreeKeys[2] == -1 && e->TreeKeys[3] == -1) return e;
    return nullptr;
}

std::string TEntries::GetEntryName(std::int32_t entryID, const std::string& defName) const {
    const TEntry* e = GetEntryByID(entryID);
    return e ? e->Name : defName;
}

TEntryGroup* TEntries::FindGroup(std::uint8_t id) {
    const std::int16_t slot = FGroupIndex[id];
    return slot ? lGroups[std::size_t(slot - 1)].get() : nullptr;
}

const TEntryGroup* TEntries::FindGroup(std::uint8_t id) const {
    const std::int16_t slot = FGroupIndex[id];
    return slot ? lGroups[std::size_t(slot - 1)].get() : nullptr;
}

void TEntries::ClearGroupValues() {
    for (auto& g : lGroups) g->Value = 0;
}

// ---------------------------------------------------------------- building

TAcc& TEntries::AddAcc(std::array<std::string, 11> texts, std::string note) {
    auto a = std::make_unique<TAcc>();
    a->Texts = std::move(texts);
    a->Note = std::move(note);
    lAccGroups.push_back(std::move(a));
    return *lAccGroups.back();
}

TEntryType& TEntries::AddEntryType(std::uint8_t code, std::string name, std::uint8_t code2, bool flag) {
    // Index 255 is "no type" on disk.
    if (lEntryTypes.size() >= NoType) throw EKvError("Too many entry types");
    auto t = std::make_unique<TEntryType>();
    t->Code = code;
    t->Name = std::move(name);
    t->Code2 = code2;
    t->Flag = flag;
    lEntryTypes.push_back(std::move(t));
    return *lEntryTypes.back();
}

TEntry& TEntries::AddEntry(std::unique_ptr<TEntry> entry) {
    entry->DecodeGroups();
    TEntry& ref = *entry;
    lEntriesByID.push_back(std::move(entry));
    IndexEntry(ref);
    return ref;
}

TEntry& TEntries::AddEntry(std::int32_t entryID, std::int32_t itemClassNo, std::string name, std::uint8_t groupID) {
    auto e = std::make_unique<TEntry>();
    e->EntryID = entryID;
    e->ItemClassNo = itemClassNo;
    e->Name = std::move(name);
    e->GroupID = groupID;
    return AddEntry(std::move(e));
}

void TEntries::AddRootNode(TEntry& entry, bool secondTree) {
    if (secondTree) {
        lEntries.push_back(&entry);
    } else {
        lEntries.insert(lEntries.begin() + std::ptrdiff_t(FFirstTreeCount), &entry);
        ++FFirstTreeCount;
    }
}

void TEntries::AddEntryVal(TEntryVal val) { lEntryVals.push_back(std::move(val)); }
void TEntries::AddEnTaxLabel(std::string label) { ssEnTaxLabels.push_back(std::move(label)); }
void TEntries::AddFrTaxLabel(std::string label) { ssFrTaxLabels.push_back(std::move(label)); }

// ---------------------------------------------------------------- writing

namespace {

std::int32_t CountOf(std::size_t n) {
    if (n > std::size_t(INT32_MAX)) throw EKvError("List too long to save");
    return std::int32_t(n);
}

void WriteNode(TBufWriteFile& w, const TEntry& e, const std::unordered_map<const TEntry*, std::int32_t>& pos,
               int depth) {
    if (depth >= MaxTreeDepth) throw EKvError("Entry tree deeper than " + std::to_string(MaxTreeDepth) + " levels");
    const auto it = pos.find(&e);
    if (it == pos.end()) throw EKvError("Entry " + std::to_string(e.EntryID) + " is not in the chart");
    if (e.Children.size() > 255) throw EKvError("Entry " + std::to_string(e.EntryID) + " has more than 255 children");
    w.WriteInt(it->second);
    w.WriteByte(std::uint8_t(e.Children.size()));
    for (const TEntry* c : e.Children) WriteNode(w, *c, pos, depth + 1);
}

} // namespace

void TEntries::Save(const std::string& path) const {
    TBufWriteFile w(path);
    Save(w);
    w.Close();
}

void TEntries::Save(TBufWriteFile& w) const {
    w.WriteInt(CountOf(lAccGroups.size()));
    for (const auto& a : lAccGroups) {
        for (const std::string& t : a->Texts) w.WriteShortStr(t);
        w.WriteStr(a->Note);
    }

    std::unordered_map<const TEntryType*, std::uint8_t> typeIndex;
    w.WriteInt(CountOf(lEntryTypes.size()));
    for (std::size_t i = 0; i < lEntryTypes.size(); ++i) {
        const TEntryType& t = *lEntryTypes[i];
        typeIndex.emplace(&t, std::uint8_t(i));
        w.WriteByte(t.Code);
        w.WriteShortStr(t.Name);
        w.WriteByte(t.Code2);
        w.WriteBoolean(t.Flag);
    }

    std::unordered_map<const TEntry*, std::int32_t> pos;
    pos.reserve(lEntriesByID.size());
    w.WriteInt(CountOf(lEntriesByID.size()));
    for (std::size_t i = 0; i < lEntriesByID.size(); ++i) {
        const TEntry& e = *lEntriesByID[i];
        pos.emplace(&e, std::int32_t(i));
        w.WriteInt(e.ItemClassNo);
        w.WriteInt(e.EntryID);
        for (std::int32_t k : e.TreeKeys) w.WriteInt(k);
        for (std::int32_t v : e.Ints) w.WriteInt(v);
        w.WriteByte(e.GroupID);
        w.WriteByte(e.Byte2);
        w.WriteData(e.Data4.data(), std::int32_t(e.Data4.size()));
        w.WriteData(&e.Data1, 1);
        w.WriteInt(e.Int1);
        w.WriteData(&e.Data2, 1);
        w.WriteBoolean(e.Flag);
        w.WriteInt(e.Int2);
        w.WriteDouble(e.Double1);
        if (e.EntryType) {
            const auto it = typeIndex.find(e.EntryType);
            if (it == typeIndex.end())
                throw EKvError("Entry " + std::to_string(e.EntryID) + " has a type that is not in the chart");
            w.WriteByte(it->second);
        } else {
            w.WriteByte(NoType);
        }
        w.WriteShortStr(e.Name);
        w.WriteShortStr(e.FrenchName);
        w.WriteStrX(e.LongText);
        w.WriteShortStr(e.Name2);
        w.WriteShortStr(e.FrenchName2);
        if (EntriesHaveExtraInts(FProduct))
            for (std::int32_t v : e.ExtraInts) w.WriteInt(v);
        w.WriteInt(CountOf(e.SpecProps.size()));
        for (const std::string& s : e.SpecProps) w.WriteShortStr(s);
    }

    const std::size_t first = std::min(FFirstTreeCount, lEntries.size());
    w.WriteInt(CountOf(first));
    for (std::size_t i = 0; i < first; ++i) WriteNode(w, *lEntries[i], pos, 0);
    w.WriteInt(CountOf(lEntries.size() - first));
    for (std::size_t i = first; i < lEntries.size(); ++i) WriteNode(w, *lEntries[i], pos, 0);

    w.WriteInt(CountOf(lEntryVals.size()));
    for (const TEntryVal& v : lEntryVals) {
        w.WriteByte(v.Kind);
        w.WriteShortStr(v.Name);
        w.WriteShortStr(v.Text);
        w.WriteInt(v.Value);
    }

    w.WriteInt(CountOf(ssEnTaxLabels.size()));
    for (const std::string& s : ssEnTaxLabels) w.WriteShortStr(s);

    if (FHasVersion) w.WriteInt(FVersion);
}

void TEntries::SaveFrench(const std::string& path) const {
    TBufWriteFile w(path);
    std::int32_t n = 0;
    for (const auto& e : lEntriesByID)
        if (!e->FrenchName.empty()) ++n;
    w.WriteInt(n);
    for (const auto& e : lEntriesByID)
        if (!e->FrenchName.empty()) {
            w.WriteInt(e->EntryID);
            w.WriteShortStr(e->FrenchName);
        }
    w.WriteInt(CountOf(ssFrTaxLabels.size()));
    for (const std::string& s : ssFrTaxLabels) w.WriteShortStr(s);
    w.Close();
}

} // namespace kv
