// Parties of a solution: persons, corporations, trusts, joint ventures and
// persons of a corporate plan, and the share entries that tie them to items.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "parties/KvShareAgreement.h"
#include "parties/KvUIDLink.h"

namespace kv {

class TBufReadFile;
class TBufWriteFile;
class TParticipant;

// Enciphered texts as they were stored. Every writing draws a fresh salt, so
// a text the program did not change is written back in the bytes it was read
// in; otherwise no enciphered file could be saved unchanged.
class TCipherMemo {
public:
    void Clear() {
        slots_.clear();
        Key.clear();
    }
    void Remember(bool padded, const std::string& plain, std::string stored);
    // A stored form of that text not yet used since Rewind, or null.
    const std::string* Take(bool padded, const std::string& plain);
    // Each save starts over, so a model can be saved twice alike.
    void Rewind();
    std::string Key; // the key the texts were read with; another key uses none

private:
    struct TSlot {
        std::vector<std::string> Stored;
        std::size_t Next = 0;
    };
    std::unordered_map<std::string, TSlot> slots_;
};

// File versions are day numbers since 30 December 1899.
inline constexpr std::int32_t kVersionPropArrays = 38956; // 27 August 2006: property arrays
inline constexpr std::int32_t kVersionEnciphered = 42969; // 22 August 2017: enciphered names

// How a record is stored: what the model knows while reading or writing one.
struct TRecordContext {
    std::uint8_t Kind = 0;           // product kind of the client file
    std::int32_t Version = 0;        // file version (day number)
    bool Sectioned = true;           // sectioned or older sequential layout
    bool EncipherNames = false;      // names and texts stored enciphered
    std::string Key;                 // run-time key when EncipherNames
    std::string Path;                // for error messages
    TCipherMemo* Memo = nullptr;     // enciphered texts as read, and reused on writing
    bool KeepUnknownEntries = false; // items under entries the chart lacks are kept
};

using TPropArrays = std::vector<std::vector<std::string>>;

class TParty {
public:
    explicit TParty(std::int32_t id = 0) : ID(id), BenefKey(id) {}
    virtual ~TParty() = default;
    virtual const char* ClassName() const { return "TParty"; }

    std::int32_t ID;
    std::int32_t BenefKey; // by which trust items name their beneficiary
    std::uint8_t Role = 0; // 1 the persons imported; 2 dependants; 10/20 not real parties
    std::uint8_t PartyType = 0;
    std::string FirstName, LastName;
    double BirthDate = 0;
    bool NamesEnciphered = false; // copy of the model's flag

    const std::string& GetFirstName() const { return FirstName; }
    void SetFirstName(std::string s) { FirstName = std::move(s); }
    const std::string& GetLastName() const { return LastName; }
    void SetLastName(std::string s) { LastName = std::move(s); }
    // "First Last"; either alone when the other is empty.
    std::string FullName() const;
    // "Last, First"; either alone when the other is empty.
    std::string FullNameLastFirst() const;
    bool IsRealParty() const { return Role != 10 && Role != 20; }

    // Ages count completed years; a birthday on 29 February falls on
    // 28 February in other years. An unset birth date (0) is 30 December 1899.
    std::int32_t LifeExpectancy = 90; // age up to which the plan runs
    std::int32_t BirthYear() const;
    std::int32_t AgeInYear(std::int32_t year) const { return year - BirthYear(); }
    std::int32_t AgeInDate(double date) const;
    double BirthdayInYear(std::int32_t year) const; // day number
    std::int32_t LifeExpYear() const { return YearAtAge(LifeExpectancy); }
    std::int32_t YearAtAge(std::int32_t age) const { return BirthYear() + age; }
    // The party record of the parties section; a bare party writes as a
    // participant with default fields.
    void Encode(TBufWriteFile& w, const TRecordContext& ctx) const;
    static std::unique_ptr<TParticipant> Decode(TBufReadFile& r, const TRecordContext& ctx);
};

class TParticipant : public TParty {
public:
    using TParty::TParty;
    const char* ClassName() const override { return "TParticipant"; }

    std::uint8_t TaxStatus = 0;
    std::string ThirdName;
    // Fields 9 to 15 of the party record: the file format leaves these
    // unnamed; they are kept to be written back.
    std::uint8_t Code9 = 0;
    std::string Text10;
    bool Flag11 = false;
    double Date12 = 0;
    bool Flags13[3] = {false, false, false};
    std::uint8_t Code14 = 0;
    std::string Texts15[2];
    std::string OldTail;    // files before the property arrays
    TPropArrays Props;      // property arrays as read
    bool PropsRead = false; // Props came from a file: written back as they are

    void SetTaxStatus(std::uint8_t s) { TaxStatus = s; }

    // Each class reads and writes its own positions of the arrays; unknown
    // positions are carried as read.
    // Takes the arrays over: a copy would double what the party record costs.
    virtual void DecodeProps(TPropArrays props);
    virtual TPropArrays EncodeProps() const;
    // Rows and row-1 length the writer guarantees (a corporation writes 30).
    virtual std::size_t MinPropRow1() const { return 0; }

    std::uint32_t Color = 0; // 0xRRGGBB, for charts of the plan
    TUIDLinks UIDLinks;      // the same person in other client files
    bool LinkedToUID(const TUIDLink& link) const { return IndexOfLink(UIDLinks, link) >= 0; }
};

// The colour of the n-th participant of a solution: a fixed palette, repeated.
void SetDefParticipantColor(TParticipant& p, int index);

class TCorporation : public TParticipant {
public:
    using TParticipant::TParticipant;
    const char* ClassName() const override { return "TCorporation"; }
    std::size_t MinPropRow1() const override { return 30; }

    // Their positions in the property arrays are not fixed, so they are not
    // stored: a file keeps those positions as read.
    std::vector<TCrpShAgr> ShareAgreements;
    std::int32_t YearEndMonth = 12; // last month of the financial year
    std::int32_t WindUpYear = 0;    // 0: the corporation is not wound up
    bool ActiveIn(std::int32_t year) const { return WindUpYear == 0 || year <= WindUpYear; }
};

class TTrust : public TCorporation {
public:
    using TCorporation::TCorporation;
    const char* ClassName() const override { return "TTrust"; }

    std::int32_t CreationYear = 0;
    bool GraduatedRate = false; // a graduated-rate estate
    bool LifeInterest = false;  // alter-ego, joint-partner or spousal trust
    // Taxes at graduated rates: a graduated-rate estate in its first 36 months.
    bool GraduatedRateIn(std::int32_t year) const { return GraduatedRate && year - CreationYear < 3; }
    // Deemed disposition every 21 years, the first one at the life
    // interest's end (0 when it has none).
    std::int32_t NextDeemedDispositionYear(std::int32_t year, std::int32_t lifeInterestEnd) const;
};

class TJointVenture : public TParticipant {
public:
    using TParticipant::TParticipant;
    const char* ClassName() const override { return "TJointVenture"; }
};

class TCorpParticipant : public TParticipant {
public:
    using TParticipant::TParticipant;
    const char* ClassName() const override { return "TCorpParticipant"; }
    std::vector<std::int32_t> EmployedBy; // corporations that employ the person
    bool IsEmployedBy(std::int32_t corpID) const;
    void AddEmployer(std::int32_t corpID);
    void RemEmployer(std::int32_t corpID);
};

// The class a party record becomes, by its role and type codes (role 60
// makes a corporate participant only in a trust client file).
std::unique_ptr<TParticipant> CreateParty(std::uint8_t kind, std::int32_t id, std::uint8_t role,
                                          std::uint8_t partyType);

// Throws the truncated-file error unless n more bytes are left; counts are
// checked with it before anything is allocated for them.
void RequireLeft(const TBufReadFile& r, std::uint64_t n);

// One party record of the parties section.
std::unique_ptr<TParticipant> ReadPartyRecord(TBufReadFile& r, const TRecordContext& ctx);
void WritePartyRecord(TBufWriteFile& w, const TParticipant& p, const TRecordContext& ctx);

// Names: enciphered with padding in files that encipher them, else short strings.
std::string ReadName(TBufReadFile& r, const TRecordContext& ctx);
void WriteName(TBufWriteFile& w, const std::string& name, const TRecordContext& ctx);
// Texts: enciphered without padding in files that encipher them, else long strings.
std::string ReadText(TBufReadFile& r, const TRecordContext& ctx);
void WriteText(TBufWriteFile& w, const std::string& text, const TRecordContext& ctx);

// One share entry of an ownership list (party and code), or one payer of a
// payment (party and share).
struct TPayer {
    TParty* Party = nullptr;  // null when the identifier names no party
    std::int32_t PartyID = 0; // as stored, so an unknown party survives a save
    double Code = 0;
};

class TSharesList {
public:
    std::vector<TPayer> Items;

    int Count() const { return static_cast<int>(Items.size()); }
    bool Empty() const { return Items.empty(); }
    void AddShare(TParty* party, std::int32_t partyID, double code) { Items.push_back({party, partyID, code}); }
    const TPayer* FindByPartyID(std::int32_t id) const;
    void DeleteParty(std::int32_t id);
    double Sum() const;

    // These read Code as a share, a fraction of 1; the ownership test reads
    // the same field as flag bits, so they serve payer and share lists only.
    void Delete(int pos);
    int Find(const TParty* party) const; // position, -1 when absent
    // True when no party is listed twice, every share lies in 0..1 and the
    // shares total 1 within 0.0001 (an empty list is valid).
    bool Validate() const;
    void SetEqualShares();
    // Repairs the shares to total 1: non-finite and negative ones become 0, a
    // zero total becomes equal shares, any other total is scaled. True when
    // nothing needed repair.
    bool FixShares();
    // As FixShares, keeping the share of one party (capped at 1) and scaling
    // the others into what is left.
    bool FixSharesExcept(std::int32_t partyID);
    // Takes the shares of the parties both lists hold; others get 0.
    void CopySharesFrom(const TSharesList& other);
    double ShareVal(std::int32_t partyID, double value) const;
    double JointShareVal(std::int32_t partyID1, std::int32_t partyID2, double value) const;
    bool OwnedByJoint() const { return ShareCount() > 1; }
    // The last life-expectancy year among the owners, 0 without owners.
    std::int32_t LastLifeExp() const;
    // The owner with the largest share, the first one on a tie.
    TParty* GetPrincParty() const;
    // How many owners hold that largest share.
    int PrincPartyCountByShare() const;
    int ShareCount() const; // entries with a share above 0
    // "id:share,id:share" in model-file numbers; Find resolves parties.
    std::string AsString() const;
    bool SetAsString(const std::string& text, TParty* (*resolve)(std::int32_t, const void*) = nullptr,
                     const void* ctx = nullptr);
    void Assign(const TSharesList& other) { Items = other.Items; }
    // Per party the sum of both lists' shares, in order of first appearance.
    void SumLists(const TSharesList& a, const TSharesList& b);
    static int CompareByPartyId(const TPayer& a, const TPayer& b);
    void SortByPartyId();
};

} // namespace kv
