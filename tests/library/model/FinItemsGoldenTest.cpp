// "FinItems.dat" laid out byte by byte from the record layouts, never through
// the library's writers, so that a misreading the reader shares with the
// writer still fails here. Each file is loaded through TModelData from disk.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include "KvSettings.h"
#include "ModelTestUtil.h"
#include "files/KvFnCipher.h"
#include "items/KvFnPortfolio.h"

using namespace kvtest;
namespace D = kv::DemoEntry;

namespace {

// Client-file key: configured part + the header's key seed = "secret", the key
// of the cipher vectors below.
const char* const kConfiguredKey = "sec";
const char* const kKeySeed = "ret";

// Names enciphered with key "secret" by the original cipher library (vectors
// 13, 14, 2, 9, 11 and 3 of the cipher set); the first two carry the writer's
// padding behind a "|". Plain files store the text itself.
struct Name {
    std::string ansi;     // Windows-1252 bytes of the plain text
    std::string cipher;   // base-64 of salt, ciphertext and MAC
};
const Name kJeanLuc{"Jean-Luc",
                    "hhnmkUmnbGQGpXh8p+PlA0FbAYkV6WVbCoZqeuQD3jQnvqzw60klg+5EVruf+oJJMCfgrAWYEXze6pAMlZZ/WNMUPqOcpjxHl9b4"
                    "56IY3AQEezQflq/IhdQ4Zr/KCnrfIU8fzjDWpxRZGqQTYB4YkXWvlVBUkFz8Ht3f8TevqPzFllzHaK0HefslaZTyTICAIpA="};
const Name kEmpty{"", "zkWuLduFMBBmJ1I0JAyIVWo7ceGwca/rY0xt3eKtcCNsZRqRorMaKBG8Xg=="};
const Name kJohn{"John Q. Public!", "rA8JwPi/XnpLBj2GMlXxbSI+eo4je/YHHHIZG1loqE9LDUdsR8PUVflq5dUp9p0="};
const Name kMueller{"M\xfcller & S\xf6hne \x96 1 000 \x80",
                    "CyJ90jgjSgsaKWBdKFfqBv/a/ahqQyY35uVg0vqD1s+VY/BBRjLzibbSq0jqqRtpPxXcTkFAkoE="};
// Eleven characters or more are never padded, yet a reader cuts at the "|".
const Name kSmith{"Smith|Jones & Partners", "E6N+ia8tWihFwwweiVyoyqxVKzfNKBLR7OzbWSf/c1zs24vEqtNR2ljR+HrRWLrdv4Hn9zWf"};
const Name kDigits{"0123456789ABCDEF", "zvf8E6OBgJNv+iY1SJCId43YzweXi/FdfGArobWTtlABdhu6Ie+DJwdFJx2qDPny"};

constexpr std::int32_t kValueEntry = 5555;   // a value child's entry (kind code -1)

// Names and texts stored plainly or enciphered.
struct Out : ByteWriter {
    bool enciphered = false;

    void Name(const ::Name& n) { enciphered ? Str(n.cipher) : Short(n.ansi); }
    // Unpadded enciphered texts: the cipher itself is covered by its vectors.
    void Text(const std::string& s) {
        static const std::uint8_t salt[kv::SaltSize] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
        Str(enciphered ? kv::EncipherBytes(s, std::string(kConfiguredKey) + kKeySeed, salt) : s);
    }
};

void Party(Out& o, std::int32_t id, std::uint8_t role, std::uint8_t type, const Name& first, const Name& last,
           std::int32_t born, const std::vector<std::vector<std::string>>& rows) {
    o.I32(id); o.U8(role); o.U8(type); o.U8(3);   // tax status
    o.Name(first); o.Name(last);
    o.Short("third"); o.I32(born); o.U8(9); o.Short("t10"); o.U8(1); o.I32(43000);
    o.U8(0); o.U8(1); o.U8(0); o.U8(14); o.Short("s15a"); o.Short("s15b");
    o.NumX(std::uint32_t(rows.size()));
    for (const auto& row : rows) {
        o.NumX(std::uint32_t(row.size()));
        for (const auto& s : row) o.StrX(s);
    }
}

void Props(Out& o, bool sectioned, const std::vector<std::string>& props) {
    if (sectioned) {
        o.I32(std::int32_t(props.size()));
        for (const auto& p : props) o.Text(p);
    } else {   // the reader finds their end by looking ahead at the payment count
        o.U8(std::uint8_t(props.size()));
        for (const auto& p : props) o.Short(p);
    }
}

void Pay(Out& o, double value, std::int32_t kind, std::int32_t year, double value2, std::uint8_t lo,
         std::uint8_t hi, const std::string& text, const std::vector<std::pair<std::int32_t, double>>& payers) {
    o.F64(value); o.I32(kind); o.I32(year); o.F64(value2); o.U8(lo); o.U8(hi); o.Str(text);
    o.I32(std::int32_t(payers.size()));
    for (auto [id, share] : payers) { o.I32(id); o.F64(share); }
}

// An RRSP owned by parties 1, 2 and an unknown 999, with two payments and a
// value child that holds one payment of its own.
void Items(Out& o, bool sectioned) {
    o.I32(1);
    o.I32(D::RRSP); o.I32(17); o.Name(kSmith);
    o.I32(45000); o.I32(46000); o.F64(123456.78); o.U8(7); o.StrX("statement");
    o.U8(3);
    o.I32(1); o.U8(2);
    o.I32(2); o.U8(4);
    o.I32(999); o.U8(1);
    Props(o, sectioned, {"RRSPTYPE=1", "OwnerID=2", "Zeta=unknown", "RRSPTYPE=1"});
    o.I32(2); o.I32(7);
    Pay(o, 1500.5, 3, 2026, 0.25, 0x02, 0x01, "monthly", {{1, 0.6}, {2, 0.4}});
    Pay(o, 2000, 4, 2027, 0, 0xFF, 0x00, "", {{2, 1.0}});
    o.I32(1);
    o.I32(kValueEntry); o.I32(-205); o.Name(kDigits);
    o.I32(0); o.I32(0); o.F64(0); o.U8(0); o.StrX("");
    o.U8(255);   // no ownership list of its own
    Props(o, sectioned, {});
    o.I32(1); o.I32(0);
    Pay(o, 123456.78, 1, 2026, 0, 0, 0, "value", {});
    o.I32(0);   // the child has no children
}

// Sections 1..9; the older layout has no date in section 1.
std::vector<std::vector<std::uint8_t>> Sections(bool sectioned, bool enciphered) {
    std::vector<std::vector<std::uint8_t>> s(9);
    auto build = [&](int id, auto&& fill) {
        Out o;
        o.enciphered = enciphered;
        fill(o);
        s[std::size_t(id - 1)] = std::move(o.b);
    };
    build(1, [&](Out& o) {
        o.F64(1.5); o.F64(0); o.F64(-3); o.Short("Retirement plan"); o.Str("Plan notes");
        if (sectioned) o.I32(45123);
    });
    build(2, [&](Out& o) { o.I32(2); o.U8(2); o.I32(31560); o.U8(1); o.I32(-42); });
    build(3, [&](Out& o) {
        o.I32(2);
        Party(o, 1, 1, 0, kJeanLuc, kEmpty, 22000, {});
        Party(o, 2, 1, 150, kJohn, kMueller, 23000, {{"77", "x"}, {}});
    });
    build(4, [&](Out& o) {
        Items(o, sectioned);
        if (sectioned) o.I32(0x5A5A5A5A);   // appended by a newer writer: skipped
    });
    build(5, [&](Out& o) {
        o.I32(1); o.I32(5); o.I32(2); o.Short("Call client"); o.Short("Review"); o.Text("Bring statements");
        o.F64(45200.5); o.U8(1);
    });
    build(6, [&](Out& o) { o.I32(2); o.Text("CGRate=66.67"); o.Text("Other=x"); });
    build(7, [&](Out& o) { o.NumX(1); o.StrX("Order=RRSP;TFSA"); });
    build(8, [&](Out& o) {
        o.NumX(1); o.U8(9); o.Str("typed data");
        o.U16(1); o.U8(5); o.I32(11); o.I32(12);
        o.U16(1); o.U8(150);   // codes from 100 on carry no words
        o.U16(0);
    });
    build(9, [&](Out& o) {
        o.I32(1); o.I32(3); o.Short("Home"); o.F64(650000);
        for (int i = 0; i < 1048; ++i) o.U8(std::uint8_t(i * 7));
    });
    return s;
}

// Magic, version, directory count, 16 reserved bytes, the directory, then the
// sections stored last to first so that only the directory can find them.
std::vector<std::uint8_t> SectionedFile(std::int32_t version, bool enciphered) {
    const auto sections = Sections(true, enciphered);
    Out o;
    o.I32(0xA1); o.I32(version); o.I32(10);
    for (int i = 0; i < 16; ++i) o.U8(0);
    std::int64_t at = 28 + 10 * 20;
    std::vector<std::int64_t> offset(9);
    for (int id = 9; id >= 1; --id) {
        offset[std::size_t(id - 1)] = at;
        at += std::int64_t(sections[std::size_t(id - 1)].size());
    }
    o.I32(42); o.I64(0); o.I64(4);   // a section this reader does not know
    for (int id = 1; id <= 9; ++id) {
        o.I32(id); o.I64(offset[std::size_t(id - 1)]); o.I64(std::int64_t(sections[std::size_t(id - 1)].size()));
    }
    for (int id = 9; id >= 1; --id) o.Raw(sections[std::size_t(id - 1)].data(), sections[std::size_t(id - 1)].size());
    return o.b;
}

std::vector<std::uint8_t> SequentialFile(std::int32_t version, bool enciphered) {
    Out o;
    o.I32(version);
    for (const auto& s : Sections(false, enciphered)) o.Raw(s.data(), s.size());
    return o.b;
}

struct Case {
    const char* label;
    bool sectioned;
    std::int32_t version;
    bool flag;         // the solution list's names-encrypted flag
    bool enciphered;   // what the flag and the version make of it
};

void PrintTo(const Case& c, std::ostream* os) { *os << c.label; }

const Case kCases[] = {
    {"sectioned, plain without the flag", true, 42969, false, false},
    {"sectioned, enciphered", true, 42969, true, true},
    {"sequential, plain before 22 August 2017", false, 42968, true, false},
    {"sequential, enciphered", false, 42969, true, true},
};

// The case's file on disk, with the chart entry, key and list flag it needs.
class FinItemsGolden : public ::testing::TestWithParam<Case> {
protected:
    void SetUp() override {
        const Case& c = GetParam();
        s.settings->ClientFileKey = kConfiguredKey;
        s.entries->AddEntry(kValueEntry, 0, "Values", 1).Ints[0] = kv::kValueChildKind;
        s.models->Enciphered = c.flag;
        s.models->KeySeed = kKeySeed;
        WriteBytes(path, c.sectioned ? SectionedFile(c.version, c.enciphered) : SequentialFile(c.version, c.enciphered));
    }
    TempDir dir;
    Surroundings s{0, dir};
    const std::string path = dir.File("FinItems.dat");
};

TEST_P(FinItemsGolden, ReadsEveryFieldAsLaidOut) {
    const Case& c = GetParam();

    auto m = s.NewModel(0, path);
    ASSERT_NO_THROW(m->Load()) << c.label;

    EXPECT_EQ(m->Layout(), c.sectioned ? kv::TFileLayout::Sectioned : kv::TFileLayout::Sequential);
    EXPECT_EQ(m->Version(), c.version);
    EXPECT_EQ(std::tuple(m->Header.Values[0], m->Header.Values[2], m->Header.Title, m->Header.Text, m->Header.Date),
              std::tuple(1.5, -3.0, "Retirement plan", "Plan notes", c.sectioned ? 45123.0 : 0.0));
    EXPECT_EQ(s.entries->FindGroup(2)->Value, 31560);
    EXPECT_EQ(s.entries->FindGroup(1)->Value, -42);

    ASSERT_EQ(m->Participants().size(), 2u);
    const kv::TParticipant& p1 = *m->Participants()[0];
    const kv::TParticipant& p2 = *m->Participants()[1];
    EXPECT_STREQ(p1.ClassName(), "TParticipant");
    EXPECT_EQ(p1.ID, 1);
    EXPECT_EQ(p1.FirstName, "Jean-Luc");   // padding cut
    EXPECT_EQ(p1.LastName, "");
    EXPECT_EQ(p1.BenefKey, 1);              // no property arrays: its identifier
    EXPECT_EQ(p1.BirthDate, 22000);
    EXPECT_STREQ(p2.ClassName(), "TCorporation");
    EXPECT_EQ(p2.FullName(), "John Q. Public! M\xC3\xBCller & S\xC3\xB6hne \xE2\x80\x93 1 000 \xE2\x82\xAC");
    EXPECT_EQ(p2.BenefKey, 77);             // row 0, position 0
    EXPECT_EQ(std::tuple(p2.ThirdName, p2.Date12, p2.Code14, p2.Texts15[1]), std::tuple("third", 43000.0, 14, "s15b"));
    EXPECT_TRUE(p2.Flag11 && p2.Flags13[1] && !p2.Flags13[2]);

    ASSERT_EQ(m->Count(), 1);
    const auto* rrsp = dynamic_cast<const kv::TRRSP*>(m->Get(0));
    ASSERT_NE(rrsp, nullptr);
    EXPECT_EQ(rrsp->ID, 17);
    EXPECT_EQ(rrsp->Name, c.enciphered ? "Smith" : "Smith|Jones & Partners");
    EXPECT_EQ(std::tuple(rrsp->Date1, rrsp->Date2, rrsp->Value, rrsp->Code, rrsp->Text),
              std::tuple(45000.0, 46000.0, 123456.78, 7, "statement"));
    ASSERT_TRUE(rrsp->Shares);
    ASSERT_EQ(rrsp->Shares->Count(), 3);
    EXPECT_EQ(rrsp->Shares->Items[0].Party, m->GetParticipantByID(1));
    EXPECT_EQ(rrsp->Shares->Items[0].Code, 2);
    EXPECT_EQ(rrsp->Shares->Items[1].Party, &p2);
    EXPECT_EQ(rrsp->Shares->Items[1].Code, 4);
    EXPECT_EQ(rrsp->Shares->Items[2].Party, nullptr);
    EXPECT_EQ(rrsp->Shares->Items[2].PartyID, 999);
    EXPECT_EQ(rrsp->SpecProps.Lines(), (std::vector<std::string>{"RRSPTYPE=1", "OwnerID=2", "Zeta=unknown"}));
    EXPECT_EQ(rrsp->Kind(), kv::TRRSPKind::LockedIn);
    EXPECT_EQ(kv::AccountKindOf(*rrsp), kv::TAccountKind::LIRA);
    EXPECT_EQ(rrsp->OwnerPartyID(), 2);

    EXPECT_EQ(rrsp->PaysHeader, 7);
    ASSERT_EQ(rrsp->Pays.size(), 2u);
    const kv::TPay& a = rrsp->Pays[0];
    const kv::TPay& b = rrsp->Pays[1];
    EXPECT_EQ(std::tuple(a.Value, a.Kind, a.Int1, a.Value2, a.Code, a.Text),
              std::tuple(1500.5, 3, 2026, 0.25, 0x0102, "monthly"));
    ASSERT_EQ(a.Payers.size(), 2u);
    EXPECT_EQ(a.Payers[0].Party, m->GetParticipantByID(1));
    EXPECT_EQ(a.Payers[0].Code, 0.6);
    EXPECT_EQ(a.Payers[1].PartyID, 2);
    EXPECT_EQ(a.Payers[1].Code, 0.4);
    EXPECT_EQ(std::tuple(b.Value, b.Kind, b.Int1, b.Code, b.Text), std::tuple(2000.0, 4, 2027, 0x00FF, ""));
    ASSERT_EQ(b.Payers.size(), 1u);
    EXPECT_EQ(b.Payers[0].Party, &p2);
    EXPECT_EQ(b.Payers[0].Code, 1.0);

    ASSERT_EQ(rrsp->Children.size(), 1u);
    const kv::TFinItem& child = *rrsp->Children[0];
    EXPECT_EQ(child.ID, -205);
    EXPECT_EQ(child.Name, "0123456789ABCDEF");
    EXPECT_EQ(child.Parent, rrsp);
    EXPECT_EQ(child.Shares, nullptr);
    EXPECT_EQ(child.OwnershipList(), rrsp->Shares.get());
    EXPECT_EQ(rrsp->ValueChild(), &child);
    EXPECT_EQ(rrsp->ValueInYear(2026), 123456.78);
    EXPECT_EQ(rrsp->Parent, nullptr);
    EXPECT_EQ(m->HighestItemID(), 205);

    ASSERT_EQ(m->ToDo.size(), 1u);
    const auto& t = m->ToDo[0];
    EXPECT_EQ(std::tuple(t.ID, t.Kind, t.Title, t.Category, t.Text, t.Due, t.Done),
              std::tuple(5, 2, "Call client", "Review", "Bring statements", 45200.5, true));
    EXPECT_EQ(m->Texts, (std::vector<std::string>{"CGRate=66.67", "Other=x"}));
    EXPECT_EQ(m->SettingFloat("CGRate", 0), 66.67);
    EXPECT_EQ(m->Strategy().Values, std::vector<std::string>{"Order=RRSP;TFSA"});
    ASSERT_EQ(m->TypedRecords.size(), 1u);
    EXPECT_EQ(std::tuple(m->TypedRecords[0].ClassCode, m->TypedRecords[0].Data), std::tuple(9, "typed data"));
    ASSERT_EQ(m->SmallLists.size(), 3u);
    ASSERT_EQ(m->SmallLists[0].size(), 1u);
    EXPECT_EQ(m->SmallLists[0][0].Code, 5);
    EXPECT_EQ(m->SmallLists[0][0].Words[1], 12u);
    ASSERT_EQ(m->SmallLists[1].size(), 1u);
    EXPECT_EQ(m->SmallLists[1][0].Code, 150);
    EXPECT_TRUE(m->SmallLists[2].empty());
    ASSERT_EQ(m->Residences.size(), 1u);
    EXPECT_EQ(std::tuple(m->Residences[0].ID, m->Residences[0].Name, m->Residences[0].Value),
              std::tuple(3, "Home", 650000.0));
    EXPECT_EQ(m->SettingsBlock[1], 7);
    EXPECT_EQ(m->SettingsBlock[1047], std::uint8_t(1047 * 7));
}

// Saving what was read: a sectioned file comes back byte for byte (its
// reversed sections, unknown directory entry, appended bytes and enciphered
// texts included); a sequential one is saved sectioned, and that copy loads
// to the same model and saves again to the same bytes.
TEST_P(FinItemsGolden, SavesWhatItRead) {
    const Case& c = GetParam();
    auto m = s.NewModel(0, path);
    m->Load();
    // Reading leaves the item's decoded settings, and a query, out of its properties.
    auto* rrsp = dynamic_cast<kv::TRRSP*>(m->Get(0));
    ASSERT_NE(rrsp, nullptr);
    EXPECT_EQ(rrsp->GetNowValue(false), 0);

    const std::string first = dir.File("first.dat"), second = dir.File("second.dat");
    m->SaveAs(first, kv::TFileLayout::Sectioned, c.version);
    EXPECT_EQ(ReadBytes(first) == ReadBytes(path), c.sectioned);
    auto copy = s.NewModel(0, first);
    copy->Load();
    EXPECT_EQ(Dump(*copy), Dump(*m));
    copy->SaveAs(second, kv::TFileLayout::Sectioned, c.version);
    EXPECT_EQ(ReadBytes(second), ReadBytes(first));
}

INSTANTIATE_TEST_SUITE_P(Layouts, FinItemsGolden, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.sectioned ? "Sectioned" : "Sequential") +
                                                       (info.param.enciphered ? "Enciphered" : "Plain"); });

} // namespace
