#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>

#include "KvErrors.h"
#include "KvSettings.h"
#include "ModelTestUtil.h"
#include "files/KvFnBufFile.h"
#include "items/KvFnClassRegistry.h"

using namespace kvtest;
namespace D = kv::DemoEntry;

namespace {

bool Contains(const std::vector<std::uint8_t>& hay, const std::string& needle) {
    return std::search(hay.begin(), hay.end(), needle.begin(), needle.end()) != hay.end();
}

kv::TFinItem* AddItem(kv::TModelData& m, kv::TFinItem* parent, kv::TEntry* entry, std::int32_t id,
                      const std::string& name, double value) {
    auto item = kv::ItemClassByNumber(entry->ItemClassNo).Create(entry, &m, id);
    item->Name = name;
    item->Value = value;
    if (parent) return parent->AddChild(std::move(item));
    return m.Add(std::move(item));
}

// A solution with every kind of party and item record the reader knows.
void Fill(kv::TModelData& m, Surroundings& s) {
    m.Header.Values[0] = 1.5;
    m.Header.Values[2] = -3;
    m.Header.Title = "Retirement plan";
    m.Header.Text = "first\x01second";
    struct P { std::int32_t id; std::uint8_t role, type; const char* first; const char* last; };
    for (P p : {P{1, 1, 0, "Anne", "Roy"}, P{2, 1, 0, "Marc", "Roy"}, P{3, 2, 0, "Léa", ""},
                P{10, 0, 150, "", "Roy Holdings Inc."}, P{11, 0, 170, "", "Roy Family Trust"},
                P{12, 0, 161, "", "Venture"}, P{13, 40, 0, "Paul", "Côté"}}) {
        auto party = kv::CreateParty(m.Kind(), p.id, p.role, p.type);
        party->FirstName = p.first;
        party->LastName = p.last;
        party->BirthDate = 20000 + p.id;
        party->TaxStatus = 3;
        party->Texts15[1] = "note";
        party->Flags13[2] = true;
        m.AddParticipant(std::move(party));
    }
    m.GetParticipantByID(2)->BenefKey = 77;

    auto* nonReg = AddItem(m, nullptr, s.Entry(D::NonReg), 101, "Joint account", 1000.4);
    nonReg->Shares = std::make_unique<kv::TSharesList>();
    nonReg->Shares->AddShare(m.GetParticipantByID(1), 1, 2);
    nonReg->Shares->AddShare(m.GetParticipantByID(2), 2, 6);
    nonReg->Shares->AddShare(nullptr, 999, 1);   // a party the file does not have
    nonReg->SpecProps.Set("OwnerID", "1");
    nonReg->SpecProps.Set("RATE", "5.5");
    nonReg->Date1 = 45000;
    nonReg->Text = "statement";
    kv::TPay pay(3);
    pay.Value = 250;
    pay.Int1 = 2026;
    pay.Value2 = 0.5;
    pay.Code = 0x0102;
    pay.Text = "monthly";
    pay.Payers.push_back({m.GetParticipantByID(1), 1, 0.6});
    pay.Payers.push_back({m.GetParticipantByID(2), 2, 0.4});
    nonReg->PaysHeader = 7;
    nonReg->AddPay(pay);
    nonReg->AddPay(kv::TPay(4));

    auto* rrsp = AddItem(m, nullptr, s.Entry(D::RRSP), 102, "RRSP", 50000);
    rrsp->SpecProps.Set("RRSPTYPE", "1");
    auto* contrib = AddItem(m, rrsp, s.Entry(D::RRSPContrib), 103, "Contributions", 0);
    contrib->SpecProps.Set("Freq", "12");
    AddItem(m, contrib, s.Entry(D::RRSPWithdraw), 104, "Nested", 1);
    AddItem(m, nullptr, s.Entry(D::TFSA), -105, "TFSA", 20000);
    auto* bank = AddItem(m, nullptr, s.Entry(D::BankAccount), 106, "Chequing", 300);
    bank->Shares = std::make_unique<kv::TSharesList>();   // present but empty

    // The items' settings come from the properties just set.
    std::function<void(kv::TFinItem&)> decode = [&](kv::TFinItem& item) {
        item.DecodeSpecProps();
        for (auto& c : item.Children) decode(*c);
    };
    for (const auto& item : m.Items()) decode(*item);

    m.ToDo.push_back({1, 2, "Call", "Clients", "Ask about | the cottage", 45123.25, true});
    m.Texts = {"CGRate=0.5", "PortGrowCoefs=1;2.5;x", "Other=1"};
    m.Strategy().Values = {"WDORDER=1,2", "MELTDOWN=0"};
    m.TypedRecords.push_back({7, "kept as read"});
    m.Residences.push_back({1, "Home", 650000});
    m.SettingsBlock[0] = 7;
    m.SettingsBlock[kv::kSettingsBlockSize - 1] = 9;
}

struct LayoutCase {
    std::uint8_t kind;
    kv::TFileLayout layout;
};

class RoundTrip : public ::testing::TestWithParam<LayoutCase> {};

TEST_P(RoundTrip, LoadsWhatWasSaved) {
    const auto [kind, layout] = GetParam();
    TempDir dir;
    Surroundings s(kind, dir);
    const std::string path = dir.File("FinItems.dat");
    auto original = s.NewModel(kind, path);
    Fill(*original, s);
    original->Save(layout);
    EXPECT_FALSE(fs::exists(dir.File("~FinItems.dat")));

    auto loaded = s.NewModel(kind, path);
    loaded->Load();
    EXPECT_EQ(Dump(*loaded), Dump(*original));
    EXPECT_EQ(loaded->Layout(), layout);
    EXPECT_EQ(loaded->Version(), kv::kCurrentFileVersion);
    EXPECT_EQ(loaded->HighestItemID(), 106);
    EXPECT_EQ(loaded->GetParticipantByID(2)->BenefKey, 77);
    EXPECT_EQ(loaded->GetParticipantByID(1)->BenefKey, 1);
    EXPECT_DOUBLE_EQ(loaded->SettingFloat("CGRate", 0), 0.5);
    EXPECT_EQ(loaded->SettingFloats("PortGrowCoefs"), (std::vector<double>{1, 2.5, 0}));
    EXPECT_EQ(loaded->Setting("Other"), "");   // not a setting the model takes
    const kv::TFinItem* nested = loaded->Get(1)->Children[0]->Children[0].get();
    EXPECT_EQ(nested->Parent, loaded->Get(1)->Children[0].get());
    EXPECT_EQ(nested->OwnershipList(), nullptr);
    EXPECT_EQ(loaded->Get(0)->Shares->Items[0].Party, loaded->GetParticipantByID(1));

    // Saving what was loaded gives the same bytes again.
    const auto first = ReadBytes(path);
    loaded->Save(layout);
    EXPECT_EQ(ReadBytes(path), first);
}

INSTANTIATE_TEST_SUITE_P(Model, RoundTrip,
                         ::testing::Values(LayoutCase{0, kv::TFileLayout::Sectioned},
                                           LayoutCase{0, kv::TFileLayout::Sequential},
                                           LayoutCase{1, kv::TFileLayout::Sectioned},
                                           LayoutCase{1, kv::TFileLayout::Sequential},
                                           LayoutCase{2, kv::TFileLayout::Sectioned},
                                           LayoutCase{4, kv::TFileLayout::Sequential}));

class ModelFile : public ::testing::Test {
protected:
    std::unique_ptr<kv::TModelData> Saved(std::uint8_t kind, kv::TFileLayout layout, std::int32_t version) {
        auto m = s.NewModel(kind, path);
        Fill(*m, s);
        m->Save(layout, version);
        return m;
    }
    std::unique_ptr<kv::TModelData> Loaded(std::uint8_t kind = 0) {
        auto m = s.NewModel(kind, path);
        m->Load();
        return m;
    }
    TempDir dir;
    Surroundings s{0, dir};
    std::string path = dir.File("FinItems.dat");
};

TEST_F(ModelFile, PartyTailChangesAtTheVersionOfThePropertyArrays) {
    auto m = s.NewModel(0, path);
    Fill(*m, s);
    m->GetParticipantByID(2)->OldTail = "older";
    m->Save(kv::TFileLayout::Sequential, 38955);
    auto old = Loaded();
    EXPECT_EQ(old->GetParticipantByID(2)->OldTail, "older");
    EXPECT_EQ(old->GetParticipantByID(2)->BenefKey, 2);   // no arrays: the identifier
    m->Save(kv::TFileLayout::Sequential, 38956);
    auto current = Loaded();
    EXPECT_EQ(current->GetParticipantByID(2)->OldTail, "");
    EXPECT_EQ(current->GetParticipantByID(2)->BenefKey, 77);
}

// The item count is checked against the smallest record of the layout read:
// in the older layout an item can take 37 bytes, three fewer than sectioned.
TEST_F(ModelFile, ManySmallestItemsLoadInBothLayouts) {
    constexpr int kItems = 5000;   // far more than the sections after them take
    for (auto layout : {kv::TFileLayout::Sectioned, kv::TFileLayout::Sequential}) {
        auto m = s.NewModel(0, path);
        for (int i = 0; i < kItems; ++i) m->Add(std::make_unique<kv::TFinItem>(s.Entry(948), m.get(), i + 1));
        m->Save(layout, 40000);
        const auto smallest = kv::MinItemRecordBytes(layout == kv::TFileLayout::Sectioned);
        EXPECT_LT(std::filesystem::file_size(path), kItems * (smallest + 1)) << int(layout);
        EXPECT_EQ(Loaded()->Count(), kItems) << int(layout);
    }
}

TEST_F(ModelFile, NamesAreEncipheredFromTheirVersionOn) {
    s.models->Enciphered = true;
    s.models->KeySeed = "seed-42";
    s.settings->ClientFileKey = "office key";

    Saved(0, kv::TFileLayout::Sectioned, 42968);
    EXPECT_TRUE(Contains(ReadBytes(path), "Joint account"));
    EXPECT_TRUE(Contains(ReadBytes(path), "Ask about"));

    auto m = Saved(0, kv::TFileLayout::Sectioned, 42969);
    const auto bytes = ReadBytes(path);
    for (const char* plain : {"Joint account", "Anne", "Ask about", "CGRate", "OwnerID"})
        EXPECT_FALSE(Contains(bytes, plain)) << plain;
    EXPECT_EQ(Dump(*Loaded()), Dump(*m));

    s.settings->ClientFileKey = "wrong key";
    EXPECT_THROW(Loaded(), kv::EInvalidData);
    s.settings->ClientFileKey.clear();
    try {
        Loaded();
        FAIL() << "loaded without a key";
    } catch (const kv::EKeyMissing& e) {
        EXPECT_STREQ(e.what(), "Client file \"Test Client\" is protected and no client-file key is configured.");
    }
}

TEST_F(ModelFile, OnlyTheMagicOfTheModelsOwnKindOpensTheSectionedLayout) {
    Saved(1, kv::TFileLayout::Sectioned, kv::kCurrentFileVersion);
    // Read as a personal file, 0xA2 is the version of the older layout.
    auto m = s.NewModel(0, path);
    try {
        m->Load();
    } catch (const kv::EKvError&) {
    }
    EXPECT_EQ(m->Version(), 0xA2);
    EXPECT_EQ(m->Layout(), kv::TFileLayout::Sequential);

    auto seq = Saved(0, kv::TFileLayout::Sequential, 162);
    EXPECT_EQ(Loaded()->Version(), 162);
    EXPECT_THROW(seq->Save(kv::TFileLayout::Sequential, 0xA1), kv::EKvError);
}

// Rewrites a sectioned file: section `section` gets new contents (or extra
// trailing bytes), later sections move, the directory follows.
std::vector<std::uint8_t> Rework(const std::vector<std::uint8_t>& file, int section,
                                 const std::vector<std::uint8_t>* replace, const std::vector<std::uint8_t>& append) {
    struct E { std::int32_t id; std::int64_t off, len; };
    std::int32_t n;
    std::memcpy(&n, &file[8], 4);
    std::vector<E> dir(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        std::memcpy(&dir[i].id, &file[28 + 20 * i], 4);
        std::memcpy(&dir[i].off, &file[28 + 20 * i + 4], 8);
        std::memcpy(&dir[i].len, &file[28 + 20 * i + 12], 8);
    }
    std::vector<std::uint8_t> out(file.begin(), file.begin() + dir[0].off);
    for (E& e : dir) {
        std::vector<std::uint8_t> body(file.begin() + e.off, file.begin() + e.off + e.len);
        if (e.id == section) {
            if (replace) body = *replace;
            body.insert(body.end(), append.begin(), append.end());
        }
        e.off = static_cast<std::int64_t>(out.size());
        e.len = static_cast<std::int64_t>(body.size());
        out.insert(out.end(), body.begin(), body.end());
    }
    for (int i = 0; i < n; ++i) {
        std::memcpy(&out[28 + 20 * i], &dir[i].id, 4);
        std::memcpy(&out[28 + 20 * i + 4], &dir[i].off, 8);
        std::memcpy(&out[28 + 20 * i + 12], &dir[i].len, 8);
    }
    return out;
}

TEST_F(ModelFile, UnknownTrailingBytesOfASectionAreSkipped) {
    auto m = Saved(0, kv::TFileLayout::Sectioned, kv::kCurrentFileVersion);
    const std::vector<std::uint8_t> junk(37, 0xEE);
    for (int section : {1, 3, 4, 5, 6, 7}) {
        WriteBytes(path, Rework(ReadBytes(dir.File("FinItems.dat")), section, nullptr, junk));
        EXPECT_EQ(Dump(*Loaded()), Dump(*m)) << "section " << section;
        m->Save();
    }
}

TEST_F(ModelFile, ASectionMissingFromTheDirectoryIsReadFromWhereTheReaderStands) {
    auto m = Saved(0, kv::TFileLayout::Sectioned, kv::kCurrentFileVersion);
    auto bytes = ReadBytes(path);
    const std::int32_t unknown = 99;
    std::memcpy(&bytes[28 + 20 * 4], &unknown, 4);   // section 5 no longer listed
    WriteBytes(path, bytes);
    EXPECT_EQ(Dump(*Loaded()), Dump(*m));

    // Now with bytes between sections 4 and 5 that only the directory skipped.
    m->Save();
    bytes = Rework(ReadBytes(path), 4, nullptr, std::vector<std::uint8_t>(8, 0));
    std::memcpy(&bytes[28 + 20 * 4], &unknown, 4);
    WriteBytes(path, bytes);
    auto misread = Loaded();
    EXPECT_TRUE(misread->ToDo.empty());   // the zero bytes read as an empty to-do list
}

TEST_F(ModelFile, AnUnknownGroupInSectionTwoTakesOnlyItsByte) {
    Saved(0, kv::TFileLayout::Sectioned, kv::kCurrentFileVersion);
    ASSERT_FALSE(s.entries->Groups().empty());
    const std::uint8_t known = s.entries->Groups().back()->ID;
    const std::uint8_t unknown = 0xF7;
    ASSERT_EQ(s.entries->FindGroup(unknown), nullptr);
    auto section = [](std::initializer_list<std::uint8_t> b) { return std::vector<std::uint8_t>(b); };

    // Known first: both values land where they belong.
    WriteBytes(path, Rework(ReadBytes(path), 2, nullptr, {}));
    auto known1 = section({2, 0, 0, 0, known, 99, 0, 0, 0, unknown, 1, 2, 3, 4});
    WriteBytes(path, Rework(ReadBytes(path), 2, &known1, {}));
    auto m = Loaded();
    EXPECT_EQ(s.entries->FindGroup(known)->Value, 99);
    EXPECT_EQ(m->Participants().size(), 7u);

    // Unknown first: its value's bytes are read as the next record, so the
    // known group never gets 99; the seek to section 3 keeps the rest intact.
    auto unknown1 = section({2, 0, 0, 0, unknown, 0xF8, 0, 0, 0, known, 99, 0, 0, 0});
    WriteBytes(path, Rework(ReadBytes(path), 2, &unknown1, {}));
    m = Loaded();
    EXPECT_EQ(s.entries->FindGroup(known)->Value, 0);
    EXPECT_EQ(m->Participants().size(), 7u);
}

TEST_F(ModelFile, ItemsUnderUnknownEntriesAreDroppedWithTheirChildren) {
    auto m = s.NewModel(0, path);
    Fill(*m, s);
    kv::TEntry ghost;
    ghost.EntryID = 424242;
    auto lost = std::make_unique<kv::TFinItem>(&ghost, m.get(), 900);
    lost->Name = "lost";
    lost->AddChild(std::make_unique<kv::TFinItem>(s.Entry(D::TFSA), m.get(), 901));
    m->Add(std::move(lost));
    m->Get(1)->AddChild(std::make_unique<kv::TFinItem>(&ghost, m.get(), 902));   // RRSP's third child
    m->Get(1)->AddChild(std::make_unique<kv::TFinItem>(s.Entry(D::RRSPFromCorp), m.get(), 903));
    for (auto layout : {kv::TFileLayout::Sectioned, kv::TFileLayout::Sequential}) {
        m->Save(layout);
        auto loaded = Loaded();
        ASSERT_EQ(loaded->Count(), 4) << "top level";
        const auto& rrspChildren = loaded->Get(1)->Children;
        ASSERT_EQ(rrspChildren.size(), 2u);
        EXPECT_EQ(rrspChildren[1]->ID, 903);
        EXPECT_EQ(loaded->HighestItemID(), 903);   // dropped records still count
    }
}

TEST_F(ModelFile, TheRecoveryCopyIsReadWhenTheFileIsMissing) {
    auto m = Saved(0, kv::TFileLayout::Sectioned, kv::kCurrentFileVersion);
    fs::rename(path, dir.File("~FinItems.dat"));
    EXPECT_EQ(Dump(*Loaded()), Dump(*m));
    EXPECT_FALSE(fs::exists(path));   // the import leaves the folder as it is

    auto renaming = s.NewModel(0, path);
    renaming->RecoveryRenames = true;
    renaming->Load();
    EXPECT_TRUE(fs::exists(path));
    EXPECT_FALSE(fs::exists(dir.File("~FinItems.dat")));

    fs::remove(path);
    EXPECT_THROW(Loaded(), kv::EInOutError);
}

TEST_F(ModelFile, AFailedSaveLeavesTheOriginalIntact) {
    auto m = Saved(0, kv::TFileLayout::Sectioned, kv::kCurrentFileVersion);
    const auto before = ReadBytes(path);
    auto* item = m->Get(0);
    for (int i = 0; i < 300; ++i) item->Shares->AddShare(nullptr, 1000 + i, 2);
    EXPECT_THROW(m->Save(), kv::EKvError);
    EXPECT_EQ(ReadBytes(path), before);
}

TEST_F(ModelFile, PropertyCountOfTheOlderLayoutMustMatch) {
    auto m = s.NewModel(0, path);
    // A plain record: its properties are written exactly as given.
    auto* item = m->Add(std::make_unique<kv::TFinItem>(s.Entry(D::NonReg), m.get(), 1));
    item->SpecProps.Set("RATE", "5");
    item->SpecProps.Set("NOWVAL", "7");
    m->Save(kv::TFileLayout::Sequential, 40000);
    auto bytes = ReadBytes(path);
    // The N byte stands right before the first property string ("\x06RATE=5").
    const std::string first = "\x06RATE=5";
    auto at = std::search(bytes.begin(), bytes.end(), first.begin(), first.end());
    ASSERT_NE(at, bytes.end());
    ASSERT_EQ(*(at - 1), 2);
    for (std::uint8_t wrong : {1, 3, 0}) {
        *(at - 1) = wrong;
        WriteBytes(path, bytes);
        try {
            Loaded();
            FAIL() << "count " << int(wrong);
        } catch (const kv::EFileStructure& e) {
            EXPECT_EQ(std::string(e.what()), "Error in file structure " + path);
        }
    }
}

TEST_F(ModelFile, PropertyStringsTheOlderLayoutCannotTellApartAreRefused) {
    auto m = s.NewModel(0, path);
    auto* item = AddItem(*m, nullptr, s.Entry(D::NonReg), 1, "A", 1);
    item->SpecProps.Add("ab");   // too short for the look-ahead
    EXPECT_THROW(m->Save(kv::TFileLayout::Sequential, 40000), kv::EKvError);
    EXPECT_NO_THROW(m->Save(kv::TFileLayout::Sectioned));
}

TEST_F(ModelFile, DeepChildrenAreAStructureErrorNotAStackOverflow) {
    auto m = s.NewModel(0, path);
    kv::TFinItem* parent = AddItem(*m, nullptr, s.Entry(D::NonReg), 1, "root", 0);
    for (int i = 0; i < kv::kMaxItemDepth + 5; ++i) parent = AddItem(*m, parent, s.Entry(D::NonReg), 2 + i, "x", 0);
    m->Save();
    EXPECT_THROW(Loaded(), kv::EFileStructure);
}

TEST_F(ModelFile, EveryTruncationFailsWithALibraryError) {
    for (auto layout : {kv::TFileLayout::Sectioned, kv::TFileLayout::Sequential}) {
        Saved(0, layout, kv::kCurrentFileVersion);
        const auto full = ReadBytes(path);
        for (std::size_t n = 0; n < full.size(); ++n) {
            auto r = kv::TBufReadFile::FromBytes({full.begin(), full.begin() + static_cast<long>(n)}, path);
            auto m = s.NewModel(0, path);
            EXPECT_THROW(m->Load(r), kv::EKvError) << "length " << n;
        }
    }
}

TEST_F(ModelFile, BogusCountsFailBeforeAllocating) {
    auto m = Saved(0, kv::TFileLayout::Sectioned, kv::kCurrentFileVersion);
    const auto good = ReadBytes(path);
    std::int64_t off3;
    std::memcpy(&off3, &good[28 + 20 * 2 + 4], 8);   // section 3 starts with the party count
    for (std::int32_t bogus : {0x7FFFFFFF, 0x10000000, 1000000}) {
        auto bytes = good;
        std::memcpy(&bytes[static_cast<std::size_t>(off3)], &bogus, 4);
        WriteBytes(path, bytes);
        EXPECT_THROW(Loaded(), kv::EReadError) << bogus;
    }
    auto bytes = good;
    const std::int32_t hugeDir = 0x7FFFFFFF;
    std::memcpy(&bytes[8], &hugeDir, 4);
    WriteBytes(path, bytes);
    EXPECT_THROW(Loaded(), kv::EReadError);
}

} // namespace
