#include "catalogue/KvFnModels.h"

#include <cstring>

#include "KvErrors.h"
#include "KvSettings.h"
#include "catalogue/KvCatalogueText.h"
#include "catalogue/KvFnProjHdr.h"
#include "catalogue/KvIdentText.h"
#include "decl/KvModelFormat.h"
#include "files/KvAnsi.h"
#include "files/KvFnBufFile.h"

namespace kv {

namespace {

constexpr std::size_t TokensOffset = 0;
constexpr std::size_t Name2Offset = 201;
constexpr std::size_t FolderNoOffset = 460;
constexpr std::size_t Key1Offset = 464;
constexpr std::size_t Key2Offset = 468;
constexpr std::size_t Key3Offset = 472;
constexpr std::size_t Byte476Offset = 476;
constexpr std::size_t Words480Offset = 480;
constexpr std::size_t Int488Offset = 488;
constexpr std::size_t Int492Offset = 492;
constexpr std::size_t BlockOffset = 496;
static_assert(BlockOffset + TModel::BlockSize + 2 == TModel::RecordSize);

using Record = std::array<std::uint8_t, TModel::RecordSize>;

bool ReadsSecondID(std::uint8_t kind) { return kind == 0 || kind == 4; }

std::int32_t GetInt(const Record& r, std::size_t offset) {
    std::uint32_t v = 0;
    for (int i = 3; i >= 0; --i) v = v << 8 | r[offset + std::size_t(i)];
    return static_cast<std::int32_t>(v);
}

void PutInt(Record& r, std::size_t offset, std::uint32_t v) {
    for (int i = 0; i < 4; ++i) r[offset + std::size_t(i)] = std::uint8_t(v >> (8 * i));
}

// The length byte is not trusted: the text never reaches past its slot. Like
// the other texts of the library it ends at a zero byte.
std::string_view SlotText(const Record& r, std::size_t offset, std::size_t slot) {
    std::size_t n = std::min<std::size_t>(r[offset], slot - 1);
    const char* p = reinterpret_cast<const char*>(r.data() + offset + 1);
    if (const void* zero = std::memchr(p, 0, n)) n = std::size_t(static_cast<const char*>(zero) - p);
    return {p, n};
}

void PutSlotText(Record& r, std::size_t offset, std::size_t slot, std::string_view ansi, const char* what) {
    if (ansi.size() > slot - 1)
        throw EKvError(std::string(what) + " is too long for its " + std::to_string(slot - 1) + "-byte slot (" +
                       std::to_string(ansi.size()) + " bytes)");
    r[offset] = std::uint8_t(ansi.size());
    std::memcpy(r.data() + offset + 1, ansi.data(), ansi.size());
}

// Cut to at most max characters of UTF-8 (whole characters only).
std::string CutCharacters(std::string s, std::size_t max) {
    std::size_t chars = 0;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if ((static_cast<unsigned char>(s[i]) & 0xC0) != 0x80 && chars++ == max) {
            s.resize(i);
            break;
        }
    }
    return s;
}

TModel DecodeRecord(const Record& r, std::uint8_t kind, const std::string* key) {
    TModel m;
    std::string tokensAnsi(SlotText(r, TokensOffset, TModel::TokensSlot));
    std::string name2Ansi(SlotText(r, Name2Offset, TModel::Name2Slot));
    if (key) {
        tokensAnsi = catalogue::DecipherStripped(tokensAnsi, *key);
        name2Ansi = catalogue::DecipherStripped(name2Ansi, *key);
    }
    const std::vector<std::string_view> tokens = SplitTokens(tokensAnsi);
    m.Name = CutCharacters(AnsiToUtf8(TokenAt(tokens, 0)), TModel::NameMax);
    m.ID = IdentTextToInt(TokenAt(tokens, 1));
    if (m.ID == 0) m.ID = SubstituteID(m.Name);
    m.Number3 = ModelTextToIntDef(TokenAt(tokens, 2), 0);
    m.Number4 = ModelTextToIntDef(TokenAt(tokens, 3), 0);
    if (ReadsSecondID(kind)) {
        m.ID2 = IdentTextToInt(TokenAt(tokens, 4));
        if (m.ID2 == 0) m.ID2 = SubstituteID(m.Name);
    }
    m.Name2 = AnsiToUtf8(name2Ansi);
    m.FolderNo = GetInt(r, FolderNoOffset);
    m.KeyValue1 = GetInt(r, Key1Offset);
    m.KeyValue2 = r[Key2Offset];
    m.KeyValue3 = GetInt(r, Key3Offset);
    m.Byte476 = r[Byte476Offset];
    m.Words480[0] = static_cast<std::uint32_t>(GetInt(r, Words480Offset));
    m.Words480[1] = static_cast<std::uint32_t>(GetInt(r, Words480Offset + 4));
    m.Int488 = GetInt(r, Int488Offset);
    m.Int492 = GetInt(r, Int492Offset);
    std::memcpy(m.Block.data(), r.data() + BlockOffset, TModel::BlockSize);
    return m;
}

Record EncodeRecord(const TModel& m, std::uint8_t kind, const std::string* key, std::int32_t index) {
    Record r{};
    const std::string name = CutCharacters(m.Name, TModel::NameMax);
    std::vector<std::string> tokens{name, IntToIdentUtf8(m.ID), IntToModelText(m.Number3), IntToModelText(m.Number4)};
    if (ReadsSecondID(kind)) tokens.push_back(IntToIdentUtf8(m.ID2));
    const std::string what = "The solution record " + std::to_string(index + 1) + " (\"" + name + "\")";
    const std::string text = JoinTokens(tokens);
    if (key) {
        PutSlotText(r, TokensOffset, TModel::TokensSlot,
                    catalogue::EncipherForSlot(text, *key, TModel::TokensSlot - 1, what), what.c_str());
        PutSlotText(r, Name2Offset, TModel::Name2Slot,
                    catalogue::EncipherForSlot(m.Name2, *key, TModel::Name2Slot - 1, what + ", second name,"),
                    what.c_str());
    } else {
        PutSlotText(r, TokensOffset, TModel::TokensSlot, Utf8ToAnsi(text), what.c_str());
        PutSlotText(r, Name2Offset, TModel::Name2Slot, Utf8ToAnsi(m.Name2), (what + ", second name,").c_str());
    }
    PutInt(r, FolderNoOffset, static_cast<std::uint32_t>(m.FolderNo));
    PutInt(r, Key1Offset, static_cast<std::uint32_t>(m.KeyValue1));
    r[Key2Offset] = m.KeyValue2;
    PutInt(r, Key3Offset, static_cast<std::uint32_t>(m.KeyValue3));
    r[Byte476Offset] = m.Byte476;
    PutInt(r, Words480Offset, m.Words480[0]);
    PutInt(r, Words480Offset + 4, m.Words480[1]);
    PutInt(r, Int488Offset, static_cast<std::uint32_t>(m.Int488));
    PutInt(r, Int492Offset, static_cast<std::uint32_t>(m.Int492));
    std::memcpy(r.data() + BlockOffset, m.Block.data(), TModel::BlockSize);
    return r;
}

} // namespace

TModels::TModels(std::string baseDir, std::string listName, std::string folder, const TLibrarySettings& settings)
    : baseDir_(WithTrailingSlash(std::move(baseDir))), listName_(std::move(listName)),
      folder_(WithTrailingSlash(std::move(folder))), settings_(&settings) {}

void TModels::ReadData(TBufReadFile& reader, std::uint8_t kind) {
    Clear();
    SelectedIndex = reader.ReadInt();
    std::int32_t count = reader.ReadInt();
    HasStoredNumber = count == -1;
    if (HasStoredNumber) {
        StoredNumber = reader.ReadInt();
        count = reader.ReadInt();
    }
    if (count <= 0) return;
    const std::int64_t left = std::int64_t(reader.Size()) - reader.Position();
    if (std::int64_t(count) > left / TModel::RecordSize)
        throw EReadError("Unexpected end of file " + reader.FileName() + " at offset " +
                         std::to_string(reader.Position()) + ": " + std::to_string(count) + " solution records of " +
                         std::to_string(TModel::RecordSize) + " bytes announced, " + std::to_string(left) +
                         " bytes left");
    std::string key;
    if (Enciphered) key = RunTimeKey(*settings_, ClientName, KeySeed);
    reader.ChargeEach(std::uint64_t(count), sizeof(std::unique_ptr<TModel>) + sizeof(TModel));
    items_.reserve(std::size_t(count));
    Record r;
    for (std::int32_t i = 0; i < count; ++i) {
        reader.ReadData(r.data(), TModel::RecordSize);
        items_.push_back(std::make_unique<TModel>(DecodeRecord(r, kind, Enciphered ? &key : nullptr)));
    }
}

void TModels::SaveData(TBufWriteFile& writer, std::uint8_t kind) const {
    std::string key;
    if (Enciphered && !items_.empty()) key = RunTimeKey(*settings_, ClientName, KeySeed);
    std::vector<Record> records;
    records.reserve(items_.size());
    for (std::size_t i = 0; i < items_.size(); ++i)
        records.push_back(EncodeRecord(*items_[i], kind, Enciphered ? &key : nullptr, std::int32_t(i)));
    writer.WriteInt(SelectedIndex < 0 ? 0 : SelectedIndex);
    if (HasStoredNumber) {
        writer.WriteInt(-1);
        writer.WriteInt(StoredNumber);
    }
    writer.WriteInt(Count());
    for (const Record& r : records) writer.WriteData(r.data(), TModel::RecordSize);
}

TModel& TModels::Add(TModel model) {
    items_.push_back(std::make_unique<TModel>(std::move(model)));
    return *items_.back();
}

TModel* TModels::Find(std::int32_t index) const noexcept {
    if (index < 0 || index >= Count()) return nullptr;
    return items_[std::size_t(index)].get();
}

TModel& TModels::Get(std::int32_t index) const {
    TModel* m = Find(index);
    if (!m) throw EListError(index);
    return *m;
}

std::int32_t TModels::FindModelIndex(std::int32_t value1, std::uint8_t value2, std::int32_t value3) const noexcept {
    for (std::int32_t i = 0; i < Count(); ++i) {
        const TModel& m = *items_[std::size_t(i)];
        if (m.KeyValue1 == value1 && m.KeyValue2 == value2 && m.KeyValue3 == value3) return i;
    }
    return -1;
}

std::string TModels::DirName(std::int32_t index) const {
    const TModel& m = Get(index);
    return m.FolderNo == 0 ? listName_ : listName_ + std::to_string(m.FolderNo);
}

std::string TModels::Path(std::int32_t index) const { return baseDir_ + folder_ + DirName(index) + "/"; }

std::string TModels::AliasName() const {
    return "MD" + listName_ + (SecondIndex == 0 ? std::string() : std::to_string(SecondIndex));
}

std::string TModels::DisplayName(std::int32_t index) const {
    const TModel& m = Get(index);
    if (HideNames && !settings_->ShowHiddenNames) return "*Solution #" + std::to_string(index + 1) + "*";
    return m.Name;
}

std::int32_t TModels::FindByDisplayName(const std::string& name) const {
    for (std::int32_t i = 0; i < Count(); ++i)
        if (DisplayName(i) == name) return i;
    return -1;
}

} // namespace kv
