#include "parties/KvFnParty.h"

#include <algorithm>

#include "KvErrors.h"
#include "decl/KvModelFormat.h"
#include "files/KvFnBufFile.h"

namespace kv {

namespace {
std::string Joined(const std::string& a, const std::string& sep, const std::string& b) {
    if (a.empty()) return b;
    if (b.empty()) return a;
    return a + sep + b;
}
} // namespace

std::string TParty::FullName() const { return Joined(FirstName, " ", LastName); }
std::string TParty::FullNameLastFirst() const { return Joined(LastName, ", ", FirstName); }

namespace {
std::int32_t BenefKeyOf(const TPropArrays& props, std::int32_t id) {
    std::int32_t key = id;
    if (!props.empty() && !props[0].empty()) TryModelTextToInt(props[0][0], key);
    return key;
}
} // namespace

void TParticipant::DecodeProps(TPropArrays props) {
    Props = std::move(props);
    PropsRead = true;
    BenefKey = BenefKeyOf(Props, ID);
}

TPropArrays TParticipant::EncodeProps() const {
    if (PropsRead && BenefKey == BenefKeyOf(Props, ID)) return Props;
    TPropArrays out = Props;
    if (out.size() < 3) out.resize(3);
    if (out[0].empty()) out[0].resize(1);
    out[0][0] = IntToModelText(BenefKey);
    if (out[1].size() < MinPropRow1()) out[1].resize(MinPropRow1());
    return out;
}

bool TCorpParticipant::IsEmployedBy(std::int32_t corpID) const {
    return std::find(EmployedBy.begin(), EmployedBy.end(), corpID) != EmployedBy.end();
}

void TCorpParticipant::AddEmployer(std::int32_t corpID) {
    if (!IsEmployedBy(corpID)) EmployedBy.push_back(corpID);
}

void TCorpParticipant::RemEmployer(std::int32_t corpID) { std::erase(EmployedBy, corpID); }

std::unique_ptr<TParticipant> CreateParty(std::uint8_t kind, std::int32_t id, std::uint8_t role,
                                          std::uint8_t partyType) {
    std::unique_ptr<TParticipant> p;
    if (role == 40 || (role == 60 && kind == 2))
        p = std::make_unique<TCorpParticipant>(id);
    else if (partyType == 150)
        p = std::make_unique<TCorporation>(id);
    else if (partyType == 160 || partyType == 161)
        p = std::make_unique<TJointVenture>(id);
    else if (partyType == 170)
        p = std::make_unique<TTrust>(id);
    else
        p = std::make_unique<TParticipant>(id);
    p->Role = role;
    p->PartyType = partyType;
    return p;
}

void TCipherMemo::Remember(bool padded, const std::string& plain, std::string stored) {
    slots_[(padded ? "1" : "0") + plain].Stored.push_back(std::move(stored));
}

const std::string* TCipherMemo::Take(bool padded, const std::string& plain) {
    auto it = slots_.find((padded ? "1" : "0") + plain);
    if (it == slots_.end() || it->second.Next >= it->second.Stored.size()) return nullptr;
    return &it->second.Stored[it->second.Next++];
}

void TCipherMemo::Rewind() {
    for (auto& [text, slot] : slots_) slot.Next = 0;
}

namespace {

std::string ReadEnciphered(TBufReadFile& r, const TRecordContext& ctx, bool padded) {
    const std::int32_t start = r.Position();
    std::string plain = r.ReadEncryptStr(ctx.Key, padded);
    if (ctx.Memo) {
        const std::int32_t end = r.Position();
        std::string stored(std::size_t(end - start - 4), '\0');
        r.Charge(stored.size() + plain.size() + 96);
        r.SetPosition(start + 4);
        r.ReadData(stored.data(), std::int32_t(stored.size()));
        ctx.Memo->Remember(padded, plain, std::move(stored));
    }
    return plain;
}

void WriteEnciphered(TBufWriteFile& w, const std::string& plain, const TRecordContext& ctx, bool padded) {
    const std::string* stored = ctx.Memo && ctx.Memo->Key == ctx.Key ? ctx.Memo->Take(padded, plain) : nullptr;
    if (!stored) return w.WriteEncryptStr(plain, ctx.Key, padded);
    w.WriteInt(std::int32_t(stored->size()));
    w.WriteData(stored->data(), std::int32_t(stored->size()));
}

} // namespace

std::string ReadName(TBufReadFile& r, const TRecordContext& ctx) {
    return ctx.EncipherNames ? ReadEnciphered(r, ctx, true) : r.ReadShortStr();
}

void WriteName(TBufWriteFile& w, const std::string& name, const TRecordContext& ctx) {
    if (ctx.EncipherNames)
        WriteEnciphered(w, name, ctx, true);
    else
        w.WriteShortStr(name);
}

std::string ReadText(TBufReadFile& r, const TRecordContext& ctx) {
    return ctx.EncipherNames ? ReadEnciphered(r, ctx, false) : r.ReadStr();
}

void WriteText(TBufWriteFile& w, const std::string& text, const TRecordContext& ctx) {
    if (ctx.EncipherNames)
        WriteEnciphered(w, text, ctx, false);
    else
        w.WriteStr(text);
}

void RequireLeft(const TBufReadFile& r, std::uint64_t n) {
    const std::int64_t left = std::int64_t(r.Size()) - r.Position();
    if (left < 0 || n > static_cast<std::uint64_t>(left))
        throw EReadError("Unexpected end of file " + r.FileName() + " at offset " + std::to_string(r.Position()));
}

namespace {

// What a party record costs: the largest party class, its slot in the list and
// its entry in the model's index by identifier.
constexpr std::uint64_t kPartyBytes = std::max({sizeof(TParticipant), sizeof(TCorporation), sizeof(TTrust),
                                                sizeof(TJointVenture), sizeof(TCorpParticipant)}) +
                                      sizeof(std::unique_ptr<TParticipant>) + 48;

} // namespace

std::unique_ptr<TParticipant> ReadPartyRecord(TBufReadFile& r, const TRecordContext& ctx) {
    r.Charge(kPartyBytes);
    const std::int32_t id = r.ReadInt();
    const std::uint8_t role = r.ReadByte();
    const std::uint8_t type = r.ReadByte();
    auto p = CreateParty(ctx.Kind, id, role, type);
    p->NamesEnciphered = ctx.EncipherNames;
    p->TaxStatus = r.ReadByte();
    p->FirstName = ReadName(r, ctx);
    p->LastName = ReadName(r, ctx);
    p->ThirdName = r.ReadShortStr();
    p->BirthDate = r.ReadDate();
    p->Code9 = r.ReadByte();
    p->Text10 = r.ReadShortStr();
    p->Flag11 = r.ReadBoolean();
    p->Date12 = r.ReadDate();
    for (bool& b : p->Flags13) b = r.ReadBoolean();
    p->Code14 = r.ReadByte();
    for (std::string& s : p->Texts15) s = r.ReadShortStr();
    if (ctx.Version < kVersionPropArrays) {
        p->OldTail = r.ReadShortStr();
        p->BenefKey = id;
    } else {
        const std::uint32_t rows = r.ReadNumX();
        RequireLeft(r, rows); // every row takes at least one byte
        r.ChargeEach(rows, sizeof(TPropArrays::value_type));
        TPropArrays props(rows);
        for (auto& row : props) r.ReadStringsX(row);
        p->DecodeProps(std::move(props));
    }
    return p;
}

void WritePartyRecord(TBufWriteFile& w, const TParticipant& p, const TRecordContext& ctx) {
    w.WriteInt(p.ID);
    w.WriteByte(p.Role);
    w.WriteByte(p.PartyType);
    w.WriteByte(p.TaxStatus);
    WriteName(w, p.FirstName, ctx);
    WriteName(w, p.LastName, ctx);
    w.WriteShortStr(p.ThirdName);
    w.WriteDate(p.BirthDate);
    w.WriteByte(p.Code9);
    w.WriteShortStr(p.Text10);
    w.WriteBoolean(p.Flag11);
    w.WriteDate(p.Date12);
    for (bool b : p.Flags13) w.WriteBoolean(b);
    w.WriteByte(p.Code14);
    for (const std::string& s : p.Texts15) w.WriteShortStr(s);
    if (ctx.Version < kVersionPropArrays) {
        w.WriteShortStr(p.OldTail);
    } else {
        const TPropArrays props = p.EncodeProps();
        w.WriteNumX(static_cast<std::uint32_t>(props.size()));
        for (const auto& row : props) w.WriteStringsX(row);
    }
}

const TPayer* TSharesList::FindByPartyID(std::int32_t id) const {
    for (const TPayer& p : Items)
        if (p.PartyID == id) return &p;
    return nullptr;
}

void TSharesList::DeleteParty(std::int32_t id) {
    std::erase_if(Items, [id](const TPayer& p) { return p.PartyID == id; });
}

double TSharesList::Sum() const {
    double s = 0;
    for (const TPayer& p : Items) s += p.Code;
    return s;
}

} // namespace kv
