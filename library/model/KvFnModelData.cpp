#include "model/KvFnModelData.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <optional>
#include <system_error>

#include "KvErrors.h"
#include "KvSettings.h"
#include "catalogue/KvFnModels.h"
#include "catalogue/KvFnProjHdr.h"
#include "decl/KvModelFormat.h"
#include "entries/KvFnEntries.h"
#include "files/KvFnBufFile.h"

namespace fs = std::filesystem;

namespace kv {

namespace {

constexpr std::int32_t kHeaderSize = 28;
constexpr std::int32_t kDirEntrySize = 20;
constexpr int kSectionCount = 9;
constexpr int kMaxSmallLists = 3;
constexpr std::uint16_t kMaxSmallRecords = 1000;

// Smallest stored sizes, for checking counts before allocating.
constexpr std::uint64_t kMinPartyBytes = 4 + 1 + 1 + 1 + 1 + 1 + 1 + 4 + 1 + 1 + 1 + 4 + 3 + 1 + 2 + 1;
constexpr std::uint64_t kMinToDoBytes = 4 + 4 + 1 + 1 + 4 + 8 + 1;
constexpr std::uint64_t kMinResidenceBytes = 4 + 1 + 8;

// A list filled one record at a time holds its old and its new storage while
// it grows: three times its size at worst.
template <class T>
constexpr std::uint64_t kGrownBytes = 3 * sizeof(T);

struct TDirEntry {
    std::int32_t ID;
    std::int64_t Offset;
    std::int64_t Length;
};

std::string TildePath(const std::string& path) {
    const fs::path p(path);
    std::string name = "~";
    name += p.filename().string();
    return (p.parent_path() / name).string();
}

std::unique_ptr<TStrategy> MakeStrategy(std::uint8_t kind) {
    if (kind == 0) return std::make_unique<TStrategy>();
    if (kind == 1) return std::make_unique<TStrategyBS>();
    return std::make_unique<TStrategyQR>();
}

} // namespace

std::int32_t SectionedMagic(std::uint8_t kind) {
    switch (kind) {
        case 0: return 0xA1;
        case 1: return 0xA2;
        case 2: return 0xA3;
        case 4: return 0xA4;
        default: return 0xA1; // read like a personal file, as the other kinds are
    }
}

TModelData::TModelData(std::uint8_t kind, const TModel* model, TModels* models, TModels* flagModels, void* owner,
                       std::string path, TEntries* entries, const TLibrarySettings& settings)
    : kind_(kind), path_(std::move(path)), model_(model), models_(models), flagModels_(flagModels), owner_(owner),
      entries_(entries), librarySettings_(&settings), namesEncrypted_(flagModels && flagModels->Enciphered),
      strategy_(MakeStrategy(kind)), french_(settings.French) {
    for (auto& b : balances_) b = std::make_unique<TBalance>(this);
}

TModelData::~TModelData() = default;

void TModelData::Put(int index, std::unique_ptr<TFinItem> item) {
    items_.at(static_cast<std::size_t>(index)) = std::move(item);
}

TFinItem* TModelData::Add(std::unique_ptr<TFinItem> item) {
    RaiseHighestItemID(item->ID);
    items_.push_back(std::move(item));
    return items_.back().get();
}

void TModelData::Clear() {
    items_.clear();
    highestItemID_ = 0;
}

TParticipant* TModelData::AddParticipant(std::unique_ptr<TParticipant> party) {
    party->NamesEnciphered = namesEncrypted_;
    participantIndex_.emplace(party->ID, party.get());
    SetDefParticipantColor(*party, static_cast<int>(participants_.size()));
    participants_.push_back(std::move(party));
    return participants_.back().get();
}

TParticipant* TModelData::GetParticipantByID(std::int32_t id) const {
    auto it = participantIndex_.find(id);
    return it == participantIndex_.end() ? nullptr : it->second;
}

TParticipant* TModelData::GetParticipantByName(const std::string& fullName) const {
    for (const auto& p : participants_)
        if (p->FullName() == fullName) return p.get();
    return nullptr;
}

std::string TModelData::GetParticipantNameByID(std::int32_t id) const {
    const TParticipant* p = GetParticipantByID(id);
    return p ? p->FullName() : std::string();
}

TParticipant* TModelData::PrincParty() const {
    for (const auto& p : participants_)
        if (p->Role == 1) return p.get();
    return nullptr;
}

void TModelData::RaiseHighestItemID(std::int32_t id) {
    const std::int64_t a = std::llabs(static_cast<std::int64_t>(id));
    highestItemID_ =
        static_cast<std::int32_t>(std::max<std::int64_t>(highestItemID_, std::min<std::int64_t>(a, INT32_MAX)));
}

std::string TModelData::IdentifyingText() const { return path_; }

TRecordContext TModelData::Context(std::int32_t version, bool sectioned) const {
    TRecordContext ctx;
    ctx.Kind = kind_;
    ctx.Version = version;
    ctx.Sectioned = sectioned;
    ctx.Path = path_;
    ctx.EncipherNames = namesEncrypted_ && version >= kVersionEnciphered;
    ctx.Memo = &cipherMemo_;
    ctx.KeepUnknownEntries = KeepUnknownEntries;
    if (ctx.EncipherNames) {
        const TModels* list = flagModels_ ? flagModels_ : models_;
        ctx.Key = RunTimeKey(*librarySettings_, list && !list->ClientName.empty() ? list->ClientName : path_,
                             list ? list->KeySeed : "");
    }
    return ctx;
}

void TModelData::Load(std::uint8_t flag) {
    std::string readPath = path_;
    std::error_code ec;
    if (!fs::exists(path_, ec)) {
        const std::string tilde = TildePath(path_);
        if (fs::exists(tilde, ec)) {
            if (RecoveryRenames) {
                fs::rename(tilde, path_, ec);
                if (ec) readPath = tilde;
            } else {
                readPath = tilde;
            }
        }
    }
    TBufReadFile r(readPath, true);
    Load(r, flag);
}

void TModelData::Load(TBufReadFile& r, std::uint8_t flag) {
    readPath_ = r.FileName().empty() ? path_ : r.FileName();
    for (auto& c : Counters) c = 0;
    ClearParticipants();
    Clear();
    ToDo.clear();
    Texts.clear();
    TypedRecords.clear();
    SmallLists.clear();
    Residences.clear();
    settings_.clear();
    cipherMemo_.Clear();
    image_ = {};
    groupRecords_.reset();
    smallListsRead_ = -1;

    r.SetPosition(0);
    const std::int32_t magic = r.ReadInt();
    const bool sectioned = magic == SectionedMagic(kind_) && (kind_ <= 2 || kind_ == 4);
    try {
        ReadSections(r, sectioned, flag);
    } catch (const EInvalidDataIn&) {
        throw;
    } catch (const EInvalidData&) {
        throw EInvalidDataIn(ReadPath()); // a wrong key: say which file
    }
    CurrentIndex = -1;
    SetLanguage(Settings().French);
}

void TModelData::ReadSections(TBufReadFile& r, bool sectioned, std::uint8_t) {
    std::vector<TDirEntry> dir;
    if (sectioned) {
        r.SetPosition(0);
        r.ReadInt(); // magic
        version_ = r.ReadInt();
        const std::int32_t entries = r.ReadInt();
        r.SetPosition(kHeaderSize);
        // A count below 1 is an empty directory: every section is then read in
        // sequence from here.
        if (entries > 0) {
            RequireLeft(r, std::uint64_t(entries) * kDirEntrySize);
            r.ChargeEach(std::uint64_t(entries), sizeof(TDirEntry));
        }
        dir.reserve(static_cast<std::size_t>(std::max(entries, 0)));
        for (std::int32_t i = 0; i < entries; ++i) {
            TDirEntry e{};
            e.ID = r.ReadInt();
            r.ReadData(&e.Offset, 8);
            r.ReadData(&e.Length, 8);
            dir.push_back(e);
        }
        layout_ = TFileLayout::Sectioned;
    } else {
        // The older layout starts with its version.
        r.SetPosition(0);
        version_ = r.ReadInt();
        layout_ = TFileLayout::Sequential;
    }

    TRecordContext ctx = Context(version_, sectioned);
    ctx.Path = ReadPath(); // damage is reported in the file actually read
    cipherMemo_.Key = ctx.Key;
    const std::int64_t fileEnd = r.Size();
    std::int64_t sectionEnd = fileEnd;

    // Where each section's known fields began and ended, and whether the
    // directory placed it, for saving the file as it lay.
    std::array<std::int64_t, kSectionCount + 1> knownStart{}, knownEnd{};
    std::array<const TDirEntry*, kSectionCount + 1> placed{};
    int current = 0;

    // Seeks to a section found in the directory; a missing one is read from
    // where the reader stands.
    auto enter = [&](int id) {
        if (current) knownEnd[std::size_t(current)] = r.Position();
        current = id;
        sectionEnd = fileEnd;
        for (const TDirEntry& e : dir) {
            if (e.ID != id) continue;
            if (e.Offset < 0) break;
            if (e.Offset > std::numeric_limits<std::int32_t>::max()) throw EFileStructure(ReadPath());
            r.SetPosition(static_cast<std::int32_t>(e.Offset));
            placed[std::size_t(id)] = &e;
            // A length near 2^63 must not overflow the sum.
            if (e.Length >= 0 && e.Length <= fileEnd - e.Offset) sectionEnd = e.Offset + e.Length;
            break;
        }
        knownStart[std::size_t(id)] = r.Position();
    };
    auto count = [&](std::uint64_t minBytes) {
        const std::int32_t n = r.ReadInt();
        if (n > 0) RequireLeft(r, std::uint64_t(n) * minBytes);
        return n;
    };

    enter(1);
    for (double& v : Header.Values) v = r.ReadDouble();
    Header.Title = r.ReadShortStr();
    Header.Text = r.ReadStr();
    Header.Date = sectioned ? r.ReadDate() : 0;

    enter(2);
    if (entries_) entries_->ClearGroupValues();
    groupRecords_.emplace();
    for (std::int32_t i = 0, n = count(1); i < n; ++i) {
        const std::uint8_t groupID = r.ReadByte();
        r.Charge(kGrownBytes<std::uint8_t>);
        groupRecords_->push_back(groupID);
        // A group the chart does not have takes only its byte: the next record
        // starts four bytes early, as in the planning products.
        if (TEntryGroup* g = entries_ ? entries_->FindGroup(groupID) : nullptr) g->Value = r.ReadInt();
    }

    enter(3);
    for (std::int32_t i = 0, n = count(kMinPartyBytes); i < n; ++i) AddParticipant(ReadPartyRecord(r, ctx));

    enter(4);
    highestItemID_ = 0;
    for (std::int32_t i = 0, n = count(MinItemRecordBytes(sectioned)); i < n; ++i)
        if (auto item = ReadItemRecord(r, *this, ctx, nullptr, 0)) items_.push_back(std::move(item));

    enter(5);
    for (std::int32_t i = 0, n = count(kMinToDoBytes); i < n; ++i) {
        r.Charge(kGrownBytes<TToDoData>);
        TToDoData t;
        t.ID = r.ReadInt();
        t.Kind = r.ReadInt();
        t.Title = r.ReadShortStr();
        t.Category = r.ReadShortStr();
        t.Text = ReadText(r, ctx);
        t.Due = r.ReadDateTime();
        t.Done = r.ReadBoolean();
        ToDo.push_back(std::move(t));
    }

    enter(6);
    for (std::int32_t i = 0, n = count(4); i < n; ++i) {
        r.Charge(kGrownBytes<std::string>);
        Texts.push_back(ReadText(r, ctx));
    }
    TakeSettings();

    enter(7);
    r.ReadStringsX(strategy_->Values);

    enter(8);
    const std::uint32_t typed = r.ReadNumX();
    RequireLeft(r, std::uint64_t(typed) * 5);
    for (std::uint32_t i = 0; i < typed; ++i) {
        r.Charge(kGrownBytes<TTypedRecord>);
        TTypedRecord t;
        t.ClassCode = r.ReadByte();
        t.Data = r.ReadStr();
        TypedRecords.push_back(std::move(t));
    }
    for (int list = 0; list < kMaxSmallLists && r.Position() < sectionEnd && !r.Eof(); ++list) {
        const std::uint16_t n = r.ReadWord();
        if (n > kMaxSmallRecords) throw EFileStructure(ReadPath());
        std::vector<TSmallRecord> records(n);
        for (TSmallRecord& s : records) {
            s.Code = r.ReadByte();
            if (s.Code < 100) {
                s.Words[0] = r.ReadLongWord();
                s.Words[1] = r.ReadLongWord();
            }
        }
        SmallLists.push_back(std::move(records));
    }
    smallListsRead_ = static_cast<int>(SmallLists.size());

    enter(9);
    for (std::int32_t i = 0, n = count(kMinResidenceBytes); i < n; ++i) {
        r.Charge(kGrownBytes<TResidenceRecord>);
        TResidenceRecord res;
        res.ID = r.ReadInt();
        res.Name = r.ReadShortStr();
        res.Value = r.ReadDouble();
        Residences.push_back(std::move(res));
    }
    r.ReadData(SettingsBlock.data(), kSettingsBlockSize);
    knownEnd[kSectionCount] = r.Position();

    if (!sectioned || dir.empty()) return;
    // Only a file whose nine sections the directory places, apart from one
    // another and from the header, is kept as it lay; any other is saved
    // in the layout Save makes of a new model.
    const std::int64_t headerEnd = kHeaderSize + std::int64_t(dir.size()) * kDirEntrySize;
    std::vector<int> order;
    for (int id = 1; id <= kSectionCount; ++id) {
        const TDirEntry* e = placed[std::size_t(id)];
        if (!e || e->Offset < headerEnd || e->Length < knownEnd[std::size_t(id)] - e->Offset ||
            e->Length > fileEnd - e->Offset)
            return;
        order.push_back(id);
    }
    std::sort(order.begin(), order.end(),
              [&](int a, int b) { return placed[std::size_t(a)]->Offset < placed[std::size_t(b)]->Offset; });
    TSectionedImage image;
    r.SetPosition(12);
    r.ReadData(image.Reserved.data(), 16);
    for (const TDirEntry& e : dir) image.Dir.push_back({e.ID, e.Offset, e.Length});
    std::int64_t at = headerEnd;
    auto carry = [&](std::int64_t to) {
        if (to <= at) return;
        r.Charge(std::uint64_t(to - at));
        std::string bytes(std::size_t(to - at), '\0');
        r.SetPosition(static_cast<std::int32_t>(at));
        r.ReadData(bytes.data(), static_cast<std::int32_t>(bytes.size()));
        image.Pieces.push_back({0, at, std::move(bytes)});
    };
    for (int id : order) {
        const TDirEntry& e = *placed[std::size_t(id)];
        if (e.Offset < at) return; // overlapping sections
        carry(e.Offset);
        image.Pieces.push_back({id, e.Offset, {}});
        at = knownEnd[std::size_t(id)];
        image.Tail[std::size_t(id)] = e.Offset + e.Length - at;
        carry(e.Offset + e.Length); // fields a newer writer appended
        at = e.Offset + e.Length;
    }
    carry(fileEnd);
    image.Valid = true;
    image_ = std::move(image);
}

void TModelData::TakeSettings() {
    static const char* const kNames[] = {
        "CGRate",  "GovInflRate", "PrescribedRate",           "SBDLIMIT",   "FTXB", "FTXNB", "PortGrowCoefs", "InsHdrs",
        "JointPA", "QuickPlan",   "OptimizeWDCombinedIncome", "RptComments"};
    settings_.clear();
    for (const std::string& line : Texts) {
        const auto eq = line.find('=');
        if (eq == std::string::npos) continue;
        const std::string name = line.substr(0, eq);
        if (std::find(std::begin(kNames), std::end(kNames), name) == std::end(kNames)) continue;
        settings_.emplace(name, line.substr(eq + 1)); // the first line of a name counts
    }
}

void TModelData::SetSetting(const std::string& name, const std::string& value) {
    const std::string prefix = name + "=";
    auto it = std::find_if(Texts.begin(), Texts.end(), [&](const std::string& t) { return t.starts_with(prefix); });
    if (it == Texts.end())
        Texts.push_back(prefix + value);
    else
        *it = prefix + value;
    TakeSettings();
}

std::string TModelData::Setting(const std::string& name) const {
    auto it = settings_.find(name);
    return it == settings_.end() ? std::string() : it->second;
}

double TModelData::SettingFloat(const std::string& name, double def) const {
    return ModelTextToFloatDef(Setting(name), def);
}

std::vector<double> TModelData::SettingFloats(const std::string& name) const {
    std::vector<double> out;
    const std::string text = Setting(name);
    std::size_t start = 0;
    while (start <= text.size() && !text.empty()) {
        const auto end = text.find(';', start);
        const std::string piece = text.substr(start, end == std::string::npos ? std::string::npos : end - start);
        out.push_back(ModelTextToFloatDef(piece, 0));
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return out;
}

void TModelData::WriteSection(TBufWriteFile& w, int section, const TRecordContext& ctx) {
    switch (section) {
        case 1:
            for (double v : Header.Values) w.WriteDouble(v);
            w.WriteShortStr(Header.Title);
            w.WriteStr(Header.Text);
            if (ctx.Sectioned) w.WriteDate(Header.Date);
            break;
        case 2: {
            // A model read from a file writes its records as read (with the
            // values they hold now), then any group given a value since.
            std::vector<const TEntryGroup*> groups;
            if (entries_)
                for (const auto& g : entries_->Groups())
                    if (!groupRecords_ || (g->Value != 0 && std::find(groupRecords_->begin(), groupRecords_->end(),
                                                                      g->ID) == groupRecords_->end()))
                        groups.push_back(g.get());
            const std::size_t read = groupRecords_ ? groupRecords_->size() : 0;
            w.WriteInt(static_cast<std::int32_t>(read + groups.size()));
            if (groupRecords_)
                for (std::uint8_t id : *groupRecords_) {
                    w.WriteByte(id);
                    if (const TEntryGroup* g = entries_ ? entries_->FindGroup(id) : nullptr) w.WriteInt(g->Value);
                }
            for (const TEntryGroup* g : groups) {
                w.WriteByte(g->ID);
                w.WriteInt(g->Value);
            }
            break;
        }
        case 3:
            w.WriteInt(static_cast<std::int32_t>(participants_.size()));
            for (const auto& p : participants_) WritePartyRecord(w, *p, ctx);
            break;
        case 4:
            w.WriteInt(static_cast<std::int32_t>(items_.size()));
            for (const auto& item : items_) WriteItemRecord(w, *item, ctx);
            break;
        case 5:
            w.WriteInt(static_cast<std::int32_t>(ToDo.size()));
            for (const TToDoData& t : ToDo) {
                w.WriteInt(t.ID);
                w.WriteInt(t.Kind);
                w.WriteShortStr(t.Title);
                w.WriteShortStr(t.Category);
                WriteText(w, t.Text, ctx);
                w.WriteDateTime(t.Due);
                w.WriteBoolean(t.Done);
            }
            break;
        case 6:
            w.WriteInt(static_cast<std::int32_t>(Texts.size()));
            for (const std::string& t : Texts) WriteText(w, t, ctx);
            break;
        case 7: w.WriteStringsX(strategy_->Values); break;
        case 8: {
            w.WriteNumX(static_cast<std::uint32_t>(TypedRecords.size()));
            for (const TTypedRecord& t : TypedRecords) {
                w.WriteByte(t.ClassCode);
                w.WriteStr(t.Data);
            }
            // Three lists in the older layout, where the next section follows at
            // once and a reader takes whatever comes next for a list; in the
            // sectioned one as many as were read (three for a new model).
            const int lists = ctx.Sectioned && smallListsRead_ >= 0 ? smallListsRead_ : kMaxSmallLists;
            for (int list = 0; list < lists; ++list) {
                static const std::vector<TSmallRecord> kNone;
                const auto& records = list < static_cast<int>(SmallLists.size()) ? SmallLists[list] : kNone;
                if (records.size() > kMaxSmallRecords) throw EKvError("Too many records in a list of " + path_);
                w.WriteWord(static_cast<std::uint16_t>(records.size()));
                for (const TSmallRecord& s : records) {
                    w.WriteByte(s.Code);
                    if (s.Code < 100) {
                        w.WriteLongWord(s.Words[0]);
                        w.WriteLongWord(s.Words[1]);
                    }
                }
            }
            break;
        }
        case 9:
            w.WriteInt(static_cast<std::int32_t>(Residences.size()));
            for (const TResidenceRecord& res : Residences) {
                w.WriteInt(res.ID);
                w.WriteShortStr(res.Name);
                w.WriteDouble(res.Value);
            }
            w.WriteData(SettingsBlock.data(), kSettingsBlockSize);
            break;
        default: break;
    }
}

void TModelData::WriteSectioned(TBufWriteFile& w, std::int32_t version, const TRecordContext& ctx) {
    w.WriteInt(SectionedMagic(kind_));
    w.WriteInt(version);
    w.WriteInt(kSectionCount);
    const std::uint8_t reserved[16] = {};
    w.WriteData(reserved, sizeof reserved);
    const std::uint8_t emptyDir[kSectionCount * kDirEntrySize] = {};
    w.WriteData(emptyDir, sizeof emptyDir);
    TDirEntry dir[kSectionCount];
    for (int s = 1; s <= kSectionCount; ++s) {
        const std::int64_t start = w.Position();
        WriteSection(w, s, ctx);
        dir[s - 1] = {s, start, w.Position() - start};
    }
    const std::int64_t end = w.Position();
    w.SetPosition(kHeaderSize);
    for (const TDirEntry& e : dir) {
        w.WriteInt(e.ID);
        w.WriteData(&e.Offset, 8);
        w.WriteData(&e.Length, 8);
    }
    w.SetPosition(end);
}

void TModelData::WriteImage(TBufWriteFile& w, std::int32_t version, const TRecordContext& ctx) {
    const auto& dir = image_.Dir;
    w.WriteInt(SectionedMagic(kind_));
    w.WriteInt(version);
    w.WriteInt(static_cast<std::int32_t>(dir.size()));
    w.WriteData(image_.Reserved.data(), 16);
    const std::int64_t headerEnd = kHeaderSize + std::int64_t(dir.size()) * kDirEntrySize;
    w.WriteData(std::vector<std::uint8_t>(std::size_t(headerEnd - kHeaderSize)).data(),
                static_cast<std::int32_t>(headerEnd - kHeaderSize));
    std::array<std::int64_t, kSectionCount + 1> start{}, length{};
    std::vector<std::pair<std::int64_t, std::int64_t>> moved; // a piece's old and new offset
    for (const auto& piece : image_.Pieces) {
        const std::int64_t at = w.Position();
        moved.emplace_back(piece.Offset, at);
        if (piece.Section == 0) {
            w.WriteData(piece.Bytes.data(), static_cast<std::int32_t>(piece.Bytes.size()));
            continue;
        }
        WriteSection(w, piece.Section, ctx);
        start[std::size_t(piece.Section)] = at;
        length[std::size_t(piece.Section)] = w.Position() - at + image_.Tail[std::size_t(piece.Section)];
    }
    const std::int64_t end = w.Position();
    w.SetPosition(kHeaderSize);
    std::array<bool, kSectionCount + 1> done{};
    for (const auto& e : dir) {
        std::int64_t offset = e.Offset, len = e.Length;
        if (e.ID >= 1 && e.ID <= kSectionCount && !done[std::size_t(e.ID)]) {
            done[std::size_t(e.ID)] = true;
            offset = start[std::size_t(e.ID)];
            len = length[std::size_t(e.ID)];
        } else if (offset >= headerEnd) {
            // Other entries follow the bytes they pointed at.
            for (const auto& [from, to] : moved)
                if (from <= e.Offset) offset = to + (e.Offset - from);
        }
        w.WriteInt(e.ID);
        w.WriteData(&offset, 8);
        w.WriteData(&len, 8);
    }
    w.SetPosition(end);
}

void TModelData::Save(TFileLayout layout, std::int32_t version) { SaveAs(path_, layout, version); }

void TModelData::SaveAs(const std::string& path, TFileLayout layout, std::int32_t version) {
    const bool sectioned = layout == TFileLayout::Sectioned;
    if (!sectioned && version == SectionedMagic(kind_))
        throw EKvError(
            std::string("Version ").append(std::to_string(version)).append(" would read as the sectioned layout"));
    TRecordContext ctx = Context(version, sectioned);
    ctx.Path = path;
    cipherMemo_.Rewind();
    const std::string tmp = TildePath(path);
    {
        TBufWriteFile w(tmp);
        if (sectioned && image_.Valid) {
            WriteImage(w, version, ctx);
        } else if (sectioned) {
            WriteSectioned(w, version, ctx);
        } else {
            w.WriteInt(version);
            for (int s = 1; s <= kSectionCount; ++s) WriteSection(w, s, ctx);
        }
        w.Close();
    }
    std::error_code ec;
    fs::rename(tmp, path, ec);
    if (ec) throw EInOutError("Cannot replace " + path + ": " + ec.message());
    if (path != path_) return;
    version_ = version;
    layout_ = layout;
}

} // namespace kv
