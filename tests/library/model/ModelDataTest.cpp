#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>

#include "KvErrors.h"
#include "KvSettings.h"
#include "ModelTestUtil.h"
#include "files/KvFnBufFile.h"
#include "items/KvFnClassRegistry.h"
#include "items/KvFnPortfolio.h"

using namespace kvtest;
namespace D = kv::DemoEntry;

namespace {

bool Contains(const std::vector<std::uint8_t>& hay, const std::string& needle) {
    return std::search(hay.begin(), hay.end(), needle.begin(), needle.end()) != hay.end();
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
    FillEveryRecord(*original, *s.entries);
    original->Save(layout);
    EXPECT_FALSE(fs::exists(dir.File("~FinItems.dat")));

    auto loaded = s.NewModel(kind, path);
    loaded->Load();
    EXPECT_EQ(Dump(*loaded), Dump(*original));
    EXPECT_EQ(loaded->Layout(), layout);
    EXPECT_EQ(loaded->Version(), kv::kCurrentFileVersion);
    EXPECT_EQ(loaded->HighestItemID(), 106);
    EXPECT_EQ(loaded->GetParticipantByID(1)->BenefKey, 1);
    const kv::TFinItem* nested = loaded->Get(1)->Children[0]->Children[0].get();
    EXPECT_EQ(nested->Parent, loaded->Get(1)->Children[0].get());
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

// Every class with a property table, its settings absent and given as their
// defaults in spellings no writer would choose. Loaded while the planning date
// and the fees setting differ from anything stored, the items keep exactly the
// strings stored, and saving gives the bytes back.
TEST(SettingsAsRead, DefaultsAbsentOrPresentAreSavedAsStored) {
    struct Case { std::int32_t classNo; std::vector<std::string> defaults; };
    const Case cases[] = {
        {4, {"RATE=-1.0", "StatementDate=0", "AddFeesTaxDed=00", "AddFeesFlat=1", "DEDUCTFEEFROMACC=No",
             "NOWVAL=0e0", "CURHOLD=", "Allocation=0;;;0", "IsBankingAccount=x"}},
        {69, {"LiquidateInYear=-1", "TransferFromTrust=0", "TransInACB=-0"}},
        {50, {"RRSPTYPE=0", "lstRRSPUnusedLimit=", "UnlockAge=-1", "Province=-1", "TransFromPension=0", "PBSA=No"}},
        {147, {"SavedContributions="}},
        {224, {"ContributionsToDate=0.0", "WDMethod=0"}},
        {46, {"CONTYPE=-1", "CPPVAL=1e2", "INCFINAL=1.0", "BenIndTypes="}},
        {30, {"CreatedTabPartyID=-1", "SCH1=0.00", "AutoWDLastYear=-1"}},
        {20, {"ASSETAUTOWD=0"}},
        {192, {"PortID=-1", "TransferDate=0"}},
        {175, {"Month=12"}},
        {124, {"Month=1", "Day=01", "MaxVal=0"}},
        {140, {"ShareCount=0", "AsCommon=0"}},
        {84, {"CorpID=0", "SharesHeld=.0"}},
        {162, {"BenefKey=0", "CapitalPercent=0"}},
    };
    TempDir dir;
    Surroundings s(0, dir);
    const std::string path = dir.File("FinItems.dat");
    {
        auto m = s.NewModel(0, path);
        std::int32_t id = 0;
        for (const Case& c : cases)
            for (bool present : {false, true}) {
                kv::TEntry& e = s.entries->AddEntry(90000 + ++id, c.classNo, "class", 1);
                auto item = kv::ItemClassByNumber(c.classNo).Create(&e, m.get(), id);
                if (present)
                    for (const std::string& p : c.defaults) item->SpecProps.Add(p);
                item->DecodeSpecProps();
                m->Add(std::move(item));
            }
        m->Save();
    }
    const auto stored = ReadBytes(path);
    s.settings->PlanningDate = 46000.5;
    s.settings->DefaultFeesTaxDeductible = 1;
    auto m = s.NewModel(0, path);
    m->Load();
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_TRUE(m->Get(int(2 * i))->SpecProps.Lines().empty()) << cases[i].classNo;
        EXPECT_EQ(m->Get(int(2 * i + 1))->SpecProps.Lines(), cases[i].defaults);
    }
    m->Save();
    EXPECT_EQ(ReadBytes(path), stored);
}

// What the program changed is what saving writes, and only that; a query
// writes nothing. A portfolio's allocation lives in "Allocation".
TEST(SettingsAsRead, SavingWritesWhatTheProgramChanged) {
    TempDir dir;
    Surroundings s(0, dir);
    const std::string path = dir.File("FinItems.dat");
    auto m = s.NewModel(0, path);
    AddItem(*m, nullptr, s.Entry(D::RRSP), 1, "RRSP", 10)->SpecProps.Add("RRSPTYPE=1");
    AddItem(*m, nullptr, s.Entry(D::NonReg), 2, "Cash", 10)->SpecProps.Add("RATE=5.50");
    m->Get(1)->SpecProps.Add("UnGain=2.50");
    for (const auto& item : m->Items()) item->DecodeSpecProps();
    m->Save();
    m = s.NewModel(0, path);
    m->Load();
    auto& rrsp = dynamic_cast<kv::TRRSP&>(*m->Get(0));
    auto& cash = dynamic_cast<kv::TPortfolio&>(*m->Get(1));
    EXPECT_EQ(cash.Allocation, nullptr);
    EXPECT_EQ(cash.GetNowValue(false), 0);
    EXPECT_EQ(cash.SpecProps.Lines(), (std::vector<std::string>{"RATE=5.50", "UnGain=2.50"}));
    rrsp.RRSPType = 2;
    cash.Rate = -1;
    cash.StatementDate = 45000.5;
    cash.Allocation = std::make_unique<kv::TPortAllocation>(0x1E240);
    cash.Allocation->Name = "Core";
    cash.Allocation->Kind = 2;
    cash.Allocation->Reference = 1003;
    m->Save();
    m = s.NewModel(0, path);
    m->Load();
    EXPECT_EQ(m->Get(0)->SpecProps.Lines(), std::vector<std::string>{"RRSPTYPE=2"});
    EXPECT_EQ(m->Get(1)->SpecProps.Lines(),
              (std::vector<std::string>{"UnGain=2.50", "StatementDate=45000.5", "Allocation=0001E240;Core;;000003EB;0;0;2;0"}));
    EXPECT_EQ(dynamic_cast<kv::TPortfolio&>(*m->Get(1)).Allocation->GetFullName(), "Library Model: Balanced, Core");
}

// Report comments keep their places, empty ones included; only the first
// "RptComments" text is the setting, and only it is rewritten.
TEST(ReportComments, TextFormAndWhatSavingWrites) {
    for (const char* value : {"a", "a;;b", ";", "x;", " spaced ; out "}) {
        const auto comments = kv::DecodeRptComments(value);
        EXPECT_EQ(comments.size(), std::size_t(std::count(value, value + std::strlen(value), ';') + 1)) << value;
        EXPECT_EQ(kv::EncodeRptComments(comments), value);
    }
    EXPECT_TRUE(kv::DecodeRptComments("").empty());
    for (const char* bad : {"a;b", "a\nb", "a\rb"})
        EXPECT_THROW(kv::EncodeRptComments({{"ok"}, {bad}}), kv::EKvError) << bad;

    TempDir dir;
    Surroundings s(0, dir);
    const std::string path = dir.File("FinItems.dat");
    auto m = s.NewModel(0, path);
    m->Texts = {"CGRate=0.5", "RptComments=old", "RptComments=second"};
    m->SetRptComments({{"Income"}, {""}, {"Estate"}});
    m->SetSetting("JointPA", "1");
    m->Save();
    m = s.NewModel(0, path);
    m->Load();
    EXPECT_EQ(m->Texts, (std::vector<std::string>{"CGRate=0.5", "RptComments=Income;;Estate", "RptComments=second",
                                                  "JointPA=1"}));
    EXPECT_EQ(m->RptComments(), (kv::TRptComments{{"Income"}, {""}, {"Estate"}}));
    EXPECT_EQ(m->Setting("JointPA"), "1");
}

// The language chooses the texts items make, never the names the file holds.
TEST(ModelLanguage, ChoosesMadeTextsAndLeavesStoredNames) {
    TempDir dir;
    Surroundings s(0, dir);
    const std::string path = dir.File("FinItems.dat");
    auto m = s.NewModel(0, path);
    AddItem(*m, nullptr, s.Entry(D::TFSA), 1, "TFSA", 10);
    auto* rrsp = AddItem(*m, nullptr, s.Entry(D::RRSP), 2, "Mine", 10);
    rrsp->SpecProps.Add("RRSPTYPE=2");
    rrsp->DecodeSpecProps();
    AddItem(*m, rrsp, s.Entry(D::RRSPContrib), 3, "Amount", 0);
    AddItem(*m, rrsp, s.Entry(D::RRSPContribRate), 4, "Rate", 0);
    m->Save();
    const auto stored = ReadBytes(path);

    s.settings->French = true;
    m = s.NewModel(0, path);
    m->SetLanguage(false);
    m->Load();
    EXPECT_TRUE(m->French());
    EXPECT_EQ(m->Get(0)->ClassGroupName(), "CELIs");
    m->Save();
    EXPECT_EQ(ReadBytes(path), stored);

    auto& spousal = dynamic_cast<kv::TRRSP&>(*m->Get(1));
    for (bool french : {true, false}) {
        m->SetLanguage(french);
        spousal.SetDefConNames();
        EXPECT_EQ(spousal.Children[0]->Name, french ? "Contributions du conjoint en Mine" : "Spousal Mine contributions");
        EXPECT_EQ(spousal.Children[1]->Name, french ? "Contributions du conjoint en %" : "Spousal % contributions");
        EXPECT_EQ(m->Get(0)->ClassGroupName(), french ? "CELIs" : "TFSAs");
    }
}

class ModelFile : public ::testing::Test {
protected:
    std::unique_ptr<kv::TModelData> Saved(std::uint8_t kind, kv::TFileLayout layout, std::int32_t version) {
        auto m = s.NewModel(kind, path);
        FillEveryRecord(*m, *s.entries);
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
    FillEveryRecord(*m, *s.entries);
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
    EXPECT_THROW(Loaded(), kv::EKeyMissing);
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
    FillEveryRecord(*m, *s.entries);
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
        EXPECT_THROW(Loaded(), kv::EFileStructure) << "count " << int(wrong);
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

} // namespace
