#include "catalogue/KvFnProjHdr.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <unordered_map>
#include <unordered_set>

#include <fcntl.h>

#include "KvSettings.h"
#include "catalogue/KvCatalogueText.h"
#include "catalogue/KvIdentText.h"
#include "decl/KvModelFormat.h"
#include "files/KvAnsi.h"
#include "files/KvFnBufFile.h"

namespace fs = std::filesystem;

namespace kv {

std::string KindPrefix(std::uint8_t kind) {
    switch (kind) {
        case 1: return "bs_";
        case 2: return "qr_";
        default: return "md_";
    }
}

std::string WithTrailingSlash(std::string dir) {
    if (!dir.empty() && dir.back() != '/') dir += '/';
    return dir;
}

// ---------------------------------------------------------------- TProjHdr

namespace {

std::uint8_t FlagToken(std::string_view token, std::uint8_t def) {
    if (token.empty()) return def;
    return static_cast<std::uint8_t>(ModelTextToIntDef(token, def));
}

std::string Deciphered(std::string_view token, const std::string& key) {
    return AnsiToUtf8(catalogue::DecipherStripped(Utf8ToAnsi(token), key));
}

} // namespace

TProjHdr::TProjHdr(std::uint8_t kind, std::string fileName, std::string folder, std::string baseDir,
                   const TLibrarySettings& settings)
    : FileName(std::move(fileName)), BaseDir(WithTrailingSlash(std::move(baseDir))),
      Folder(WithTrailingSlash(std::move(folder))), Kind(kind), settings_(&settings) {
    HeaderPath = BaseDir + Folder + FileName;
}

std::string TProjHdr::Key() const {
    // Named by its path here: the client's name may be empty or shared.
    if (KeySeed.size() > MaxKeySeedBytes) throw KeySeedTooLong(HeaderPath, KeySeed.size());
    return RunTimeKey(*settings_, Name, KeySeed);
}

namespace {

// No header record comes near this; a longer one is damage, and the listing
// then never reads more than this of a file however large it is.
constexpr std::int32_t kMaxHeaderRecord = 1 << 20;
constexpr std::uint64_t kMaxHeaderBytes = 1 + 255 + 4 + std::uint64_t(kMaxHeaderRecord);
// Enough for the two records of every genuine header at the first read.
constexpr std::uint64_t kHeaderProbe = 64 * 1024;

} // namespace

void TProjHdr::ReadHeaderRecords(TBufReadFile& reader) {
    const std::string record1 = reader.ReadShortStr();
    const std::vector<std::string_view> t1 = SplitTokens(record1);
    Name = std::string(TokenAt(t1, 0));
    ID = IdentUtf8ToInt(TokenAt(t1, 1));
    if (ID == 0) ID = SubstituteID(HeaderPath);

    const std::int32_t at = reader.Position();
    if (reader.ReadInt() > kMaxHeaderRecord) throw EFileStructure(HeaderPath);
    reader.SetPosition(at);
    const std::string record2 = reader.ReadStr();
    const std::vector<std::string_view> t = SplitTokens(record2);
    Date = 0;
    if (!TryModelTextToFloat(TokenAt(t, 2), Date) || !std::isfinite(Date)) Date = 0;
    FlagA = FlagToken(TokenAt(t, 3), 0);
    Number = ModelTextToFloatDef(TokenAt(t, 4), 0);
    Text3 = std::string(TokenAt(t, 5));
    // Flag B follows flag A only when its token is empty.
    FlagB = TokenAt(t, 6).empty() ? (FlagA != 0 ? 1 : 0) : FlagToken(TokenAt(t, 6), 0);
    FlagC = FlagToken(TokenAt(t, 7), 0);
    FlagD = FlagToken(TokenAt(t, 8), 0);
    FlagE = FlagToken(TokenAt(t, 9), 0);
    FlagF = FlagToken(TokenAt(t, 10), 1);
    FlagG = FlagToken(TokenAt(t, 11), 0);
    HideNamesFlag = FlagToken(TokenAt(t, 12), 0);
    KeySeed = std::string(TokenAt(t, 13));
    ProtectionFlag = FlagToken(TokenAt(t, 14), 0);
    Text4 = std::string(TokenAt(t, 15));
    Integer = ModelTextToIntDef(TokenAt(t, 16), -1);
    if (IsProtected()) {
        const std::string key = Key();
        Text1 = Deciphered(TokenAt(t, 0), key);
        Text2 = Deciphered(TokenAt(t, 1), key);
    } else {
        Text1 = std::string(TokenAt(t, 0));
        Text2 = std::string(TokenAt(t, 1));
    }
}

void TProjHdr::ReadTrailing(TBufReadFile& reader) {
    Pairs.clear();
    Texts.clear();
    ReportSettings = {};
    LastText.clear();
    TrailingSections = 0;
    if (reader.Eof()) return;
    const std::uint8_t pairs = reader.ReadByte();
    reader.ChargeEach(pairs, sizeof(Pairs[0]));
    for (int i = 0; i < pairs; ++i) {
        std::string a = reader.ReadShortStr();
        Pairs.emplace_back(std::move(a), reader.ReadShortStr());
    }
    ++TrailingSections;
    if (reader.Eof()) return;
    const std::int32_t texts = reader.ReadInt();
    if (texts > 0) {
        const std::int64_t left = std::int64_t(reader.Size()) - reader.Position();
        if (texts > left / 4)
            throw EReadError("Unexpected end of file " + reader.FileName() + " at offset " +
                             std::to_string(reader.Position()) + ": " + std::to_string(texts) + " texts announced, " +
                             std::to_string(left) + " bytes left");
        reader.ChargeEach(std::uint64_t(texts), sizeof(std::string));
        reader.Reserve(Texts, std::size_t(texts));
        for (std::int32_t i = 0; i < texts; ++i) Texts.push_back(reader.ReadStr());
    }
    ++TrailingSections;
    if (reader.Eof()) return;
    for (std::string& s : ReportSettings) s = reader.ReadStr();
    ++TrailingSections;
    if (reader.Eof()) return;
    LastText = reader.ReadStr();
    ++TrailingSections;
}

void TProjHdr::LoadHeader() {
    // Only the first records are read: listing a data directory must not cost
    // the size of every client file, which may be anything.
    TBufReadFile probe = TBufReadFile::Prefix(HeaderPath, kHeaderProbe);
    if (probe.FileSize() > probe.Size() && probe.Size() >= 1) {
        // The probe may have cut the second record; its length says how much to read.
        const std::uint64_t at = 1 + std::uint64_t(probe.ReadByte());
        if (at + 4 <= std::uint64_t(probe.Size())) {
            probe.SetPosition(std::int32_t(at));
            const std::int64_t length = probe.ReadInt();
            const std::uint64_t need = at + 4 + std::uint64_t(std::clamp<std::int64_t>(length, 0, kMaxHeaderRecord));
            if (need > std::uint64_t(probe.Size()))
                probe = TBufReadFile::Prefix(HeaderPath, std::min(need, kMaxHeaderBytes));
        }
        probe.SetPosition(0);
    }
    ReadHeaderRecords(probe);
}

TModelLists TProjHdr::Load(bool loadModels) {
    try {
        return LoadFrom(loadModels);
    } catch (const EInvalidDataIn&) {
        throw;
    } catch (const EInvalidData&) {
        throw EInvalidDataIn(HeaderPath); // a solution record's text as much as the header's
    }
}

TModelLists TProjHdr::LoadFrom(bool loadModels) {
    if (!loadModels) {
        LoadHeader();
        return {};
    }
    TBufReadFile reader(HeaderPath, true);
    ReadHeaderRecords(reader);
    TModelLists lists;
    for (auto [list, name] : {std::pair{&lists.Main, "Main"}, std::pair{&lists.Needs, "Needs"}}) {
        *list = std::make_unique<TModels>(BaseDir, name, Folder, *settings_);
        TModels& m = **list;
        m.HideNames = HideNames();
        m.Enciphered = IsProtected();
        m.KeySeed = KeySeed;
        m.ClientName = Name;
        m.ReadData(reader, Kind);
    }
    ReadTrailing(reader);
    return lists;
}

void TProjHdr::LoadReportSettings() { (void)Load(true); }

void TProjHdr::Save(const TModels& main, const TModels& needs) const {
    const std::string record1 = JoinTokens(std::vector<std::string>{Name, IntToIdentUtf8(ID)});
    if (Utf8ToAnsi(record1).size() > 255)
        throw EKvError("The client file's name \"" + Name +
                       "\" is too long to be stored (at most 255 bytes with its identifier)");
    std::string text1 = Text1, text2 = Text2;
    if (IsProtected()) {
        const std::string key = Key();
        text1 = catalogue::EncipherForSlot(Text1, key, catalogue::Unlimited, "Text 1 of the client file's header");
        text2 = catalogue::EncipherForSlot(Text2, key, catalogue::Unlimited, "Text 2 of the client file's header");
    }
    const std::string record2 = JoinTokens(std::vector<std::string>{
        text1, text2, Date == 0 ? std::string() : FloatToModelText(Date), IntToModelText(FlagA),
        FloatToModelText(Number), Text3, IntToModelText(FlagB), IntToModelText(FlagC), IntToModelText(FlagD),
        IntToModelText(FlagE), IntToModelText(FlagF), IntToModelText(FlagG), IntToModelText(HideNamesFlag), KeySeed,
        IntToModelText(ProtectionFlag), Text4, IntToModelText(Integer)});
    if (TrailingSections >= 1) {
        if (Pairs.size() > 255) throw EKvError("At most 255 text pairs can be stored in a client file's header");
        for (const auto& [a, b] : Pairs)
            if (Utf8ToAnsi(a).size() > 255 || Utf8ToAnsi(b).size() > 255)
                throw EKvError("A text pair of the client file's header is longer than 255 bytes");
    }

    // Written beside the file and moved over it, so that a failure leaves the
    // previous file as it was.
    const std::string temp = HeaderPath + ".new";
    try {
        TBufWriteFile w(temp);
        w.WriteShortStr(record1);
        w.WriteStr(record2);
        main.SaveData(w, Kind);
        needs.SaveData(w, Kind);
        if (TrailingSections >= 1) {
            w.WriteByte(std::uint8_t(Pairs.size()));
            for (const auto& [a, b] : Pairs) {
                w.WriteShortStr(a);
                w.WriteShortStr(b);
            }
        }
        if (TrailingSections >= 2) {
            w.WriteInt(std::int32_t(Texts.size()));
            for (const std::string& s : Texts) w.WriteStr(s);
        }
        if (TrailingSections >= 3)
            for (const std::string& s : ReportSettings) w.WriteStr(s);
        if (TrailingSections >= 4) w.WriteStr(LastText);
        w.Close();
    } catch (...) {
        std::error_code ec;
        fs::remove(temp, ec);
        throw;
    }
    std::error_code ec;
    fs::rename(temp, HeaderPath, ec);
    if (ec) {
        fs::remove(temp, ec);
        throw EInOutError("Cannot write file \"" + HeaderPath + "\": " + ec.message());
    }
}

// ---------------------------------------------------------------- TProjHdrLst

namespace {

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; }

std::string LowerAscii(std::string_view s) {
    std::string r(s);
    for (char& c : r) c = LowerAscii(c);
    return r;
}

// '*' any run, '?' one byte, everything else itself with ASCII case ignored.
bool WildcardMatch(std::string_view pattern, std::string_view name) {
    std::size_t p = 0, n = 0, star = std::string_view::npos, mark = 0;
    while (n < name.size()) {
        if (p < pattern.size() && (pattern[p] == '?' || LowerAscii(pattern[p]) == LowerAscii(name[n]))) {
            ++p;
            ++n;
        } else if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            mark = n;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            n = ++mark;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') ++p;
    return p == pattern.size();
}

// One listing of a directory, kept up to date with the renames the scan makes
// itself, so that no step lists the directory again. An entry also keeps the
// header read from its folder, for the last step.
class TDirTable {
public:
    struct Entry {
        std::string name;
        std::string lower;
        bool isDir = false;
        bool locked = false; // protected and no key: step 4 must not read it again
        std::unique_ptr<TProjHdr> hdr;
    };

    explicit TDirTable(const std::string& dir) {
        if (dir.empty()) return;
        std::error_code ec;
        fs::directory_iterator it(dir, ec);
        for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
            std::error_code ec2;
            Entry e;
            e.name = it->path().filename().string();
            e.lower = LowerAscii(e.name);
            e.isDir = it->is_directory(ec2);
            entries_.push_back(std::move(e));
        }
    }

    // Indices of the sub-directories matching pattern, in listing order. They
    // stay valid until the next call.
    std::vector<std::size_t> Dirs(std::string_view pattern) {
        Sort();
        std::vector<std::size_t> dirs;
        for (std::size_t i = 0; i < entries_.size(); ++i)
            if (entries_[i].isDir && WildcardMatch(pattern, entries_[i].name)) dirs.push_back(i);
        return dirs;
    }
    Entry& operator[](std::size_t i) { return entries_[i]; }

    // An entry of this name, ASCII case ignored (files count as well).
    bool Taken(const std::string& name) {
        BuildLower();
        return lowerCount_.count(LowerAscii(name)) != 0;
    }
    bool IsDir(const std::string& name) {
        Sort();
        const std::string lower = LowerAscii(name);
        auto it = std::lower_bound(entries_.begin(), entries_.end(), std::pair{&lower, &name},
                                   [](const Entry& e, const auto& key) { return Less(e, *key.first, *key.second); });
        return it != entries_.end() && it->name == name && it->isDir;
    }
    std::vector<std::string> LowerNames() const {
        std::vector<std::string> names;
        for (const Entry& e : entries_) names.push_back(e.lower);
        return names;
    }
    void Rename(std::size_t i, const std::string& to) {
        Entry& e = entries_[i];
        if (lowerBuilt_) {
            if (auto l = lowerCount_.find(e.lower); l != lowerCount_.end() && --l->second == 0) lowerCount_.erase(l);
            ++lowerCount_[LowerAscii(to)];
        }
        e.name = to;
        e.lower = LowerAscii(to);
        e.hdr.reset();
        sorted_ = false;
    }

private:
    // Listing order: ASCII case ignored (letters lowered, as strcasecmp), then
    // the bytes, so that names equal but for case still have one fixed order.
    static bool Less(const Entry& e, const std::string& lower, const std::string& name) {
        const int c = e.lower.compare(lower);
        return c != 0 ? c < 0 : e.name < name;
    }
    void Sort() {
        if (sorted_) return;
        std::sort(entries_.begin(), entries_.end(),
                  [](const Entry& a, const Entry& b) { return Less(a, b.lower, b.name); });
        sorted_ = true;
    }
    void BuildLower() {
        if (lowerBuilt_) return;
        for (const Entry& e : entries_) ++lowerCount_[e.lower];
        lowerBuilt_ = true;
    }

    std::vector<Entry> entries_;
    bool sorted_ = false;
    std::unordered_map<std::string, int> lowerCount_; // built on first use
    bool lowerBuilt_ = false;
};

bool IsDirectory(const std::string& path) {
    std::error_code ec;
    return fs::is_directory(path, ec);
}

// Never replaces what is at to; false when nothing was moved.
bool RenameNoReplace(const std::string& from, const std::string& to) {
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != ENOSYS && errno != EINVAL) return false;
#endif
    // Without the kernel's guarantee a folder created between the test and the
    // move could still be replaced, but only if it is empty.
    std::error_code ec;
    if (fs::symlink_status(to, ec).type() != fs::file_type::not_found || ec) return false;
    return std::rename(from.c_str(), to.c_str()) == 0;
}

bool ContainsDb(std::string_view name) { return LowerAscii(name).find("_db") != std::string::npos; }

// The folder is shared with the products on Windows and may be copied to
// any system: each character that some platform refuses in a file name, and
// each control character (U+0000-U+001F, U+007F-U+009F), becomes one "_".
std::string FolderSafe(std::string_view name) {
    std::string out;
    out.reserve(name.size());
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto c = static_cast<unsigned char>(name[i]);
        if (c < 0x20 || c == 0x7F || std::string_view("\\/:*?\"<>|").find(char(c)) != std::string_view::npos) {
            out += '_';
        } else if (c == 0xC2 && i + 1 < name.size() && static_cast<unsigned char>(name[i + 1]) >= 0x80 &&
                   static_cast<unsigned char>(name[i + 1]) <= 0x9F) {
            out += '_'; // U+0080-U+009F in UTF-8
            ++i;
        } else {
            out += char(c);
        }
    }
    return out;
}

} // namespace

TProjHdrLst::TProjHdrLst(std::string dataDir, std::string altDir, std::uint8_t kind, const TLibrarySettings& settings)
    : dataDir_(WithTrailingSlash(std::move(dataDir))), altDir_(WithTrailingSlash(std::move(altDir))),
      prefix_(KindPrefix(kind)), kind_(kind), settings_(&settings) {}

TProjHdr& TProjHdrLst::Get(std::int32_t index) const {
    if (index < 0 || index >= Count()) throw EListError(index);
    return *items_[std::size_t(index)];
}

namespace {

// Where a client folder's header is read: the alternate directory when it
// holds a copy and may be used ("_db" matched with case ignored, like the
// listing), else the data directory when the folder is there; "" for neither.
std::string HeaderBase(const std::string& name, bool inDataDir, const std::string& dataDir, const std::string& altDir,
                       const TLibrarySettings& settings) {
    if (ContainsDb(name) && !altDir.empty() && !settings.ForbidAltDir && IsDirectory(altDir + name)) return altDir;
    return inDataDir ? dataDir : std::string();
}

std::unique_ptr<TProjHdr> ReadFolderHeader(const std::string& name, const std::string& base, std::uint8_t kind,
                                           const TLibrarySettings& settings) {
    auto hdr = std::make_unique<TProjHdr>(kind, ModelsFileName, name, base, settings);
    try {
        hdr->LoadHeader();
    } catch (const EInvalidDataIn&) {
        throw;
    } catch (const EInvalidData&) {
        throw EInvalidDataIn(hdr->HeaderPath);
    }
    return hdr;
}

// Null when the header is protected and no key is configured: one such file
// must not hide the client files that need none.
std::unique_ptr<TProjHdr> ReadUnlessLocked(const std::string& name, const std::string& base, std::uint8_t kind,
                                           const TLibrarySettings& settings) {
    try {
        return ReadFolderHeader(name, base, kind, settings);
    } catch (const EKeyMissing&) {
        return nullptr;
    }
}

} // namespace

void TProjHdrLst::Load(bool includeAlternate) {
    Clear();
    locked_.clear();
    std::vector<std::unique_ptr<TProjHdr>> items; // the list stays empty when a header fails
    TDirTable table(dataDir_);

    // 1. Legacy folders "db*" take the first free "<prefix>db<n>".
    if (RenameFolders) {
        int n = 1; // only grows: every move takes a name and frees none of this form
        const std::vector<std::size_t> dirs = table.Dirs("db*");
        for (auto it = dirs.rbegin(); it != dirs.rend(); ++it) {
            while (table.Taken(prefix_ + "db" + std::to_string(n))) ++n;
            const std::string target = prefix_ + "db" + std::to_string(n);
            if (RenameNoReplace(dataDir_ + table[*it].name, dataDir_ + target)) table.Rename(*it, target);
        }
    }

    // 2. Client folders take their client's name. A header read here is kept
    // for step 4 when its folder keeps its name.
    {
        const std::vector<std::size_t> dirs = table.Dirs(prefix_ + "db*");
        for (auto it = dirs.rbegin(); it != dirs.rend(); ++it) {
            TDirTable::Entry& e = table[*it];
            std::unique_ptr<TProjHdr> hdr =
                ReadUnlessLocked(e.name, HeaderBase(e.name, true, dataDir_, altDir_, *settings_), kind_, *settings_);
            if (!hdr) {
                e.locked = true;
                continue;
            }
            const std::size_t first = e.name.find('_');
            const std::size_t second = e.name.find('_', first + 1);
            const std::string target = e.name.substr(0, second) + "_" + FolderSafe(hdr->Name);
            const bool free = target != e.name && (!table.Taken(target) || LowerAscii(target) == e.lower);
            if (free && RenameFolders && RenameNoReplace(dataDir_ + e.name, dataDir_ + target))
                table.Rename(*it, target);
            else
                e.hdr = std::move(hdr);
        }
    }

    // 3. and 4.
    if (includeAlternate && !altDir_.empty()) {
        TDirTable alt(altDir_);
        for (std::size_t i : alt.Dirs("_db")) {
            const std::string& name = alt[i].name;
            const std::string base = HeaderBase(name, table.IsDir(name), dataDir_, altDir_, *settings_);
            if (base.empty()) continue;
            if (auto hdr = ReadUnlessLocked(name, base, kind_, *settings_))
                items.push_back(std::move(hdr));
            else
                locked_.push_back(name);
        }
    }
    const std::vector<std::size_t> dirs = table.Dirs(prefix_ + "db*");
    items.reserve(items.size() + dirs.size());
    for (std::size_t i : dirs) {
        TDirTable::Entry& e = table[i];
        if (e.locked) {
            locked_.push_back(e.name);
            continue;
        }
        const std::string base = HeaderBase(e.name, true, dataDir_, altDir_, *settings_);
        if (e.hdr && e.hdr->BaseDir == base)
            items.push_back(std::move(e.hdr));
        else if (auto hdr = ReadUnlessLocked(e.name, base, kind_, *settings_))
            items.push_back(std::move(hdr));
        else
            locked_.push_back(e.name);
    }
    items_ = std::move(items);
}

TProjHdr* TProjHdrLst::FindByName(const std::string& name) const noexcept {
    for (const auto& h : items_)
        if (h->Name == name) return h.get();
    return nullptr;
}

std::string TProjHdrLst::NewDirName() const {
    std::unordered_set<std::string> used;
    const std::string lowerPrefix = LowerAscii(prefix_ + "db");
    for (const std::string& entry : TDirTable(dataDir_).LowerNames()) {
        if (entry.compare(0, lowerPrefix.size(), lowerPrefix) != 0) continue;
        const std::size_t bar = entry.find('_', lowerPrefix.size());
        used.insert(
            entry.substr(lowerPrefix.size(), bar == std::string::npos ? std::string::npos : bar - lowerPrefix.size()));
    }
    int n = 1;
    while (used.count(std::to_string(n))) ++n;
    return prefix_ + "db" + std::to_string(n);
}

void TProjHdrLst::SaveOne(const TProjHdr& hdr, const TModels& main, const TModels& needs) const {
    std::error_code ec;
    fs::create_directories(hdr.BaseDir + hdr.Folder, ec);
    if (ec) throw EInOutError("Cannot create folder \"" + hdr.BaseDir + hdr.Folder + "\": " + ec.message());
    hdr.Save(main, needs);
}

} // namespace kv
