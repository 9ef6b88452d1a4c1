#include "items/KvFnFinItems.h"

#include <algorithm>
#include <cstdlib>

#include "KvErrors.h"
#include "KvSettings.h"
#include "decl/KvModelFormat.h"
#include "entries/KvFnEntries.h"
#include "files/KvAnsi.h"
#include "files/KvFnBufFile.h"
#include "items/KvFnClassRegistry.h"

namespace kv {

constinit const TFinItemClass TFinItem::Class{"TFinItem", nullptr, &CreateItemOf<TFinItem>, sizeof(TFinItem)};

namespace {

std::string_view NameOf(std::string_view line) {
    const auto eq = line.find('=');
    return eq == std::string_view::npos ? std::string_view() : line.substr(0, eq);
}

// Smallest stored sizes, for checking counts against the bytes left before
// anything is allocated for them.
constexpr std::uint64_t kMinOwnerBytes = 5;
constexpr std::uint64_t kMinPayBytes = 8 + 4 + 4 + 8 + 2 + 4 + 4;
constexpr std::uint64_t kMinPayerBytes = 4 + 8;

// Memory charged per element beside the element itself: a list grown by
// doubling holds its old and its new storage while it moves, three times its
// size at worst; a string of the duplicate index of a long property list takes
// a hash node, its bucket and a copy of its text.
constexpr std::uint64_t kGrownSlot = 3;
constexpr std::uint64_t kIndexNodeBytes = 96;

std::uint64_t TextBytes(const std::string& s) { return s.capacity() > 15 ? s.capacity() + 1 : 0; }

// Charged once a string is kept: a repeated one costs nothing.
void AddProperty(TBufReadFile& r, TSpecProps& props, std::string line) {
    const std::uint64_t text = TextBytes(line);
    if (!props.AddRead(std::move(line))) {
        r.Charge(kGrownSlot * sizeof(std::pair<std::size_t, std::string>) + text);
        return;
    }
    r.Charge(kGrownSlot * sizeof(std::string));
    if (std::size_t(props.Count()) <= TSpecProps::kIndexFrom) return;
    r.Charge(kIndexNodeBytes + text);
    if (std::size_t(props.Count()) == TSpecProps::kIndexFrom + 1) // the index was made of the lines before
        for (int i = 0; i < int(TSpecProps::kIndexFrom); ++i)
            r.Charge(kIndexNodeBytes + TextBytes(props.Lines()[std::size_t(i)]));
}

// The older layout ends its property strings where the next four bytes, as a
// signed integer, fall below 1000: a short string's length byte and first
// three characters make such a number, the payment count never does.
bool NextIsPropertyString(TBufReadFile& r) {
    const std::int32_t at = r.Position();
    const std::int32_t v = r.ReadInt();
    r.SetPosition(at);
    return v >= 1000;
}

bool StoresInOlderLayout(const std::string& ansiLine) {
    if (ansiLine.size() < 3 || ansiLine.size() > 255) return false;
    const auto b = [&](std::size_t i) { return static_cast<std::uint8_t>(ansiLine[i]); };
    const std::int32_t v = static_cast<std::int32_t>(std::uint32_t(ansiLine.size()) | std::uint32_t(b(0)) << 8 |
                                                     std::uint32_t(b(1)) << 16 | std::uint32_t(b(2)) << 24);
    return v >= 1000;
}

} // namespace

bool TSpecProps::Holds(const std::string& line) {
    if (lines_.size() < kIndexFrom) return std::find(lines_.begin(), lines_.end(), line) != lines_.end();
    if (index_.empty()) index_.insert(lines_.begin(), lines_.end());
    return index_.contains(line);
}

void TSpecProps::Push(std::string line) {
    if (lines_.size() >= kIndexFrom) index_.insert(line); // Holds made the index
    lines_.push_back(std::move(line));
}

bool TSpecProps::Add(std::string line) {
    if (Holds(line)) return false;
    Push(std::move(line));
    return true;
}

bool TSpecProps::AddRead(std::string line) {
    if (!Holds(line)) {
        Push(std::move(line));
        return true;
    }
    if (!dropped_) dropped_ = std::make_unique<std::vector<std::pair<std::size_t, std::string>>>();
    dropped_->emplace_back(lines_.size() + dropped_->size(), std::move(line));
    return false;
}

std::vector<std::string> TSpecProps::StoredLines() const {
    if (!dropped_) return lines_;
    std::vector<std::string> out;
    out.reserve(lines_.size() + dropped_->size());
    auto next = dropped_->begin();
    for (const std::string& line : lines_) {
        for (; next != dropped_->end() && next->first == out.size(); ++next) out.push_back(next->second);
        out.push_back(line);
    }
    for (; next != dropped_->end(); ++next) out.push_back(next->second);
    return out;
}

std::optional<std::string_view> TSpecProps::Get(std::string_view name) const {
    // A line's name ends at its first "=", so a name holding one never matches.
    if (name.empty() || name.find('=') != std::string_view::npos) return std::nullopt;
    for (const std::string& line : lines_)
        if (line.size() > name.size() && line[name.size()] == '=' && std::string_view(line).starts_with(name))
            return std::string_view(line).substr(name.size() + 1);
    return std::nullopt;
}

std::string TSpecProps::GetText(std::string_view name, std::string_view def) const {
    auto v = Get(name);
    return std::string(v ? *v : def);
}

std::int32_t TSpecProps::GetInt(std::string_view name, std::int32_t def) const {
    auto v = Get(name);
    std::int32_t out = def;
    if (v && TryModelTextToInt(*v, out)) return out;
    return def;
}

double TSpecProps::GetFloat(std::string_view name, double def) const {
    auto v = Get(name);
    double out = def;
    if (v && TryModelTextToFloat(*v, out)) return out;
    return def;
}

bool TSpecProps::GetFlag(std::string_view name, std::string_view literal) const {
    auto v = Get(name);
    return v && *v == literal;
}

void TSpecProps::Set(std::string_view name, std::string_view value) {
    std::string line = std::string(name) + "=" + std::string(value);
    for (std::string& l : lines_)
        if (NameOf(l) == name) {
            l = std::move(line);
            index_.clear();
            dropped_.reset();
            return;
        }
    dropped_.reset();
    Add(std::move(line));
}

void TSpecProps::SetInt(std::string_view name, std::int32_t value) { Set(name, IntToModelText(value)); }
void TSpecProps::SetFloat(std::string_view name, double value) { Set(name, FloatToModelText(value)); }

void TSpecProps::Remove(std::string_view name) {
    if (std::erase_if(lines_, [name](const std::string& l) { return NameOf(l) == name; }) == 0) return;
    index_.clear();
    dropped_.reset();
}

TFinItem::TFinItem(const TEntry* entry, TItemOwner* model, std::int32_t id) : Entry(entry), Model(model), ID(id) {}

TFinItem::~TFinItem() = default;

const TLibrarySettings& TFinItem::Settings() const { return Model ? Model->Settings() : kDefaultLibrarySettings; }

std::int32_t TFinItem::EntryID() const { return Entry ? Entry->EntryID : StoredEntryID; }

const TSharesList* TFinItem::OwnershipList() const {
    const TFinItem* item = this;
    while ((!item->Shares || item->Shares->Empty()) && item->Parent) item = item->Parent;
    return item->Shares.get();
}

std::optional<std::int32_t> TFinItem::OwnerPartyID() const {
    auto v = SpecProps.Get("OwnerID");
    std::int32_t id = 0;
    if (v && TryModelTextToInt(*v, id)) return id;
    return std::nullopt;
}

bool TFinItem::IsExclude() const { return SpecProps.GetFlag("isExclude", "1"); }

void TFinItem::AfterRead() { DecodeSpecProps(); }

const TFinItem* TFinItem::ValueChild() const {
    for (const auto& c : Children)
        if (c->Entry && c->Entry->KindCode() == kValueChildKind) return c.get();
    return nullptr;
}

double TFinItem::PayValueOfYear(std::int32_t year) const {
    for (const TPay& p : Pays)
        if (p.Int1 == year) return p.Value;
    return 0;
}

double TFinItem::ValueInYear(std::int32_t year) const {
    const TFinItem* child = ValueChild();
    return child ? child->PayValueOfYear(year) : 0;
}

std::string TFinItem::EntryName() const {
    if (!Entry) return {};
    return French() && !Entry->FrenchName.empty() ? Entry->FrenchName : Entry->Name;
}

std::string TFinItem::ClassGroupName() const { return EntryName(); }

bool TFinItem::ShowForMode(int) const { return true; }

TFinItem* TFinItem::AddChild(std::unique_ptr<TFinItem> child) {
    child->SetParent(this);
    Children.push_back(std::move(child));
    return Children.back().get();
}

std::uint64_t MinItemRecordBytes(bool sectioned) {
    // entry, id, name, two dates, value, code, text, owner count, property
    // count (a byte in the older layout), pays, children
    const std::uint64_t propertyCount = sectioned ? 4 : 1;
    return 4 + 4 + 1 + 4 + 4 + 8 + 1 + 1 + 1 + propertyCount + 4 + 4;
}

std::unique_ptr<TFinItem> ReadItemRecord(TBufReadFile& r, TItemOwner& model, const TRecordContext& ctx,
                                         TFinItem* parent, int depth) {
    if (depth > kMaxItemDepth) throw EFileStructure(ctx.Path);

    const std::int32_t entryID = r.ReadInt();
    const std::int32_t id = r.ReadInt();
    const TEntry* entry = model.Entries() ? model.Entries()->GetEntryByID(entryID) : nullptr;
    const TFinItemClass& cls = entry ? ItemClassByNumber(entry->ItemClassNo) : TFinItem::Class;
    r.Charge(cls.Size + kGrownSlot * sizeof(std::unique_ptr<TFinItem>));
    std::unique_ptr<TFinItem> item = cls.Create(entry, &model, id);
    item->StoredEntryID = entryID;
    model.RaiseHighestItemID(id);

    item->Name = ReadName(r, ctx);
    item->Date1 = r.ReadDate();
    item->Date2 = r.ReadDate();
    item->Value = r.ReadDouble();
    item->Code = r.ReadByte();
    item->Text = r.ReadStrX();

    const std::uint8_t owners = r.ReadByte();
    if (owners < 255) {
        RequireLeft(r, owners * kMinOwnerBytes);
        r.Charge(sizeof(TSharesList) + kGrownSlot * owners * sizeof(TPayer));
        item->Shares = std::make_unique<TSharesList>();
        for (int i = 0; i < owners; ++i) {
            const std::int32_t partyID = r.ReadInt();
            const std::uint8_t code = r.ReadByte();
            item->Shares->AddShare(model.GetParticipantByID(partyID), partyID, code);
        }
    }

    item->SpecProps.Clear();
    if (ctx.Sectioned) {
        const std::int32_t count = r.ReadInt();
        if (count > 0) RequireLeft(r, std::uint64_t(count) * 4);
        for (std::int32_t i = 0; i < count; ++i) AddProperty(r, item->SpecProps, ReadText(r, ctx));
    } else {
        const std::uint8_t expected = r.ReadByte();
        int read = 0;
        while (NextIsPropertyString(r)) {
            if (++read > 254) throw EFileStructure(ctx.Path);
            AddProperty(r, item->SpecProps, r.ReadShortStr());
        }
        if (read != expected) throw EFileStructure(ctx.Path);
    }

    const std::int32_t pays = r.ReadInt();
    if (pays > 0) {
        item->PaysHeader = r.ReadInt();
        RequireLeft(r, std::uint64_t(pays) * kMinPayBytes);
        r.ChargeEach(std::uint64_t(pays), sizeof(TPay));
        r.Reserve(item->Pays, static_cast<std::size_t>(pays));
        for (std::int32_t i = 0; i < pays; ++i) {
            const double value = r.ReadDouble();
            TPay pay(r.ReadInt());
            pay.Value = value;
            pay.Int1 = r.ReadInt();
            pay.Value2 = r.ReadDouble();
            const std::uint8_t lo = r.ReadByte();
            const std::uint8_t hi = r.ReadByte();
            pay.Code = static_cast<std::uint16_t>(lo | hi << 8);
            pay.Text = r.ReadStr();
            const std::int32_t payers = r.ReadInt();
            if (payers > 0) {
                RequireLeft(r, std::uint64_t(payers) * kMinPayerBytes);
                r.ChargeEach(std::uint64_t(payers), sizeof(TPayer));
                r.Reserve(pay.Payers, static_cast<std::size_t>(payers));
            }
            for (std::int32_t k = 0; k < payers; ++k) {
                const std::int32_t partyID = r.ReadInt();
                const double share = r.ReadDouble();
                pay.Payers.push_back({model.GetParticipantByID(partyID), partyID, share});
            }
            item->AddPay(std::move(pay));
        }
    }

    item->AfterRead();

    const std::int32_t children = r.ReadInt();
    if (children > 0) RequireLeft(r, std::uint64_t(children) * MinItemRecordBytes(ctx.Sectioned));
    for (std::int32_t i = 0; i < children; ++i) {
        std::unique_ptr<TFinItem> child = ReadItemRecord(r, model, ctx, item.get(), depth + 1);
        if (child) item->Children.push_back(std::move(child));
    }

    if (!entry && !ctx.KeepUnknownEntries) return nullptr; // read in full, then dropped with its children
    item->SetParent(parent);
    item->AfterLoaded();
    return item;
}

void WriteItemRecord(TBufWriteFile& w, TFinItem& item, const TRecordContext& ctx) {
    item.EncodeSpecProps();
    w.WriteInt(item.EntryID());
    w.WriteInt(item.ID);
    WriteName(w, item.Name, ctx);
    w.WriteDate(item.Date1);
    w.WriteDate(item.Date2);
    w.WriteDouble(item.Value);
    w.WriteByte(item.Code);
    w.WriteStrX(item.Text);

    if (!item.Shares) {
        w.WriteByte(255);
    } else {
        if (item.Shares->Count() > 254) throw EKvError("Item \"" + item.Name + "\" has more than 254 owners");
        w.WriteByte(static_cast<std::uint8_t>(item.Shares->Count()));
        for (const TPayer& p : item.Shares->Items) {
            w.WriteInt(p.PartyID);
            w.WriteByte(static_cast<std::uint8_t>(p.Code));
        }
    }

    const std::vector<std::string> lines = item.SpecProps.StoredLines();
    if (ctx.Sectioned) {
        w.WriteInt(static_cast<std::int32_t>(lines.size()));
        for (const std::string& l : lines) WriteText(w, l, ctx);
    } else {
        // Only strings the look-ahead recognises can be stored in the older layout.
        if (lines.size() > 254)
            throw EKvError("Item \"" + item.Name + "\" has too many properties for the older layout");
        for (const std::string& l : lines)
            if (!StoresInOlderLayout(Utf8ToAnsi(l)))
                throw EKvError("Property \"" + l + "\" cannot be stored in the older layout");
        w.WriteByte(static_cast<std::uint8_t>(lines.size()));
        for (const std::string& l : lines) w.WriteShortStr(l);
    }

    w.WriteInt(static_cast<std::int32_t>(item.Pays.size()));
    if (!item.Pays.empty()) {
        w.WriteInt(item.PaysHeader);
        for (const TPay& pay : item.Pays) {
            w.WriteDouble(pay.Value);
            w.WriteInt(pay.Kind);
            w.WriteInt(pay.Int1);
            w.WriteDouble(pay.Value2);
            w.WriteByte(static_cast<std::uint8_t>(pay.Code & 0xFF));
            w.WriteByte(static_cast<std::uint8_t>(pay.Code >> 8));
            w.WriteStr(pay.Text);
            w.WriteInt(static_cast<std::int32_t>(pay.Payers.size()));
            for (const TPayer& p : pay.Payers) {
                w.WriteInt(p.PartyID);
                w.WriteDouble(p.Code);
            }
        }
    }

    w.WriteInt(static_cast<std::int32_t>(item.Children.size()));
    for (auto& child : item.Children) WriteItemRecord(w, *child, ctx);
}

} // namespace kv
