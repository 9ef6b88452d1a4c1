// Every reader over damaged copies of real client files: the demo data root
// and a balance file, written at test time, then truncated at every offset
// and at random ones, with every 4 bytes overwritten by hostile counts, and
// with random bytes flipped. Each copy must load or fail with one of the
// library's errors, no single allocation may exceed the file's size plus a
// small constant, and the read may not hold more than 16 times the bytes of
// the files it reads plus a few MiB at once. Time is bounded by the ctest
// timeout.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <typeinfo>
#include <vector>

#include "AllocLimit.h"
#include "BalanceFixture.h"
#include "KvErrors.h"
#include "KvSettings.h"
#include "TestFiles.h"
#include "catalogue/KvFnModels.h"
#include "catalogue/KvFnProjHdr.h"
#include "demo/DemoData.h"
#include "demo/DemoChart.h"
#include "entries/KvFnEntries.h"
#include "items/KvFnPortfolio.h"
#include "items/KvBalance.h"
#include "model/KvFnModelData.h"
#include "items/KvFnClassRegistry.h"
#include "model/KvFnOwnership.h"
#include "parties/KvFnParty.h"

namespace fs = std::filesystem;

namespace {

// The library settings every reader loads with: the demo's client-file key.
const kv::TLibrarySettings kDemoSettings{.ClientFileKey = tessary::kDemoClientKey};

// Room for the reader's own bookkeeping beside a buffer of the file's size.
constexpr std::size_t kSlack = 64 * 1024;
// The rule for the whole of a read: what it holds at once stays within this
// many times the bytes of the files it reads, plus a few MiB.
constexpr std::size_t kPeakFactor = 16;
constexpr std::size_t kPeakSlack = std::size_t(4) << 20;

std::uint64_t BytesUnder(const fs::path& dir) {
    std::uint64_t n = 0;
    for (const auto& e : fs::recursive_directory_iterator(dir))
        if (e.is_regular_file()) n += e.file_size();
    return n;
}

std::uint64_t PeakBound(std::uint64_t fileBytes) { return kPeakFactor * fileBytes + kPeakSlack; }

using kvtest::Bytes;
using kvtest::ReadBytes;
using kvtest::WriteBytes;

fs::path MakeTempDir(const char* stem) {
    std::string tmpl = (fs::temp_directory_path() / (std::string(stem) + "-XXXXXX")).string();
    if (!::mkdtemp(tmpl.data())) throw std::runtime_error("mkdtemp failed");
    return tmpl;
}

// The demo data root and a balance file, written once for the whole binary.
struct Corpus {
    fs::path Root = MakeTempDir("tessary-hostile");
    fs::path Demo = Root / "demo";
    fs::path Balance = Root / "balance.bal";

    Corpus() {
        tessary::WriteDemoData(Demo.string());
        kv::TBalance b;
        kvtest::FillBalance(b);
        b.Save(Balance.string());
    }
    ~Corpus() {
        std::error_code ec;
        fs::remove_all(Root, ec);
    }
};

const Corpus& TheCorpus() {
    static const Corpus c;
    return c;
}

// One reader over one fixture file. The damaged copy is written to
// Dir / Target; Prepare puts the fixture's companions beside it.
struct Reader {
    std::string Name;
    fs::path Fixture;
    fs::path Target;                                   // relative to the work folder
    std::function<void(const fs::path& dir)> Prepare;  // may be empty
    std::function<void(const fs::path& dir)> Load;
    int Stride = 1;                                    // >1: the file deciphers texts, each load is dear
};

// Client-file header and both solution lists, walked as the import lists them.
Reader ModelsReader(const char* name, std::uint8_t kind, const char* product, const char* folder, int stride = 1) {
    const fs::path fixture = TheCorpus().Demo / product / "Data" / folder / kv::ModelsFileName;
    return {name, fixture, fs::path(folder) / kv::ModelsFileName,
            nullptr,
            [kind, folder = std::string(folder)](const fs::path& dir) {
                kv::TProjHdr hdr(kind, kv::ModelsFileName, folder, dir.string(), kDemoSettings);
                kv::TModelLists lists = hdr.Load(true);
                for (std::int32_t i = 0; i < lists.Main->Count(); ++i) (void)lists.Main->DisplayName(i);
            },
            stride};
}

Reader EntriesReader(const char* name, std::uint8_t kind, const char* product) {
    const fs::path core = TheCorpus().Demo / product / "Core";
    return {name, core / "Entries.dat", "Entries.dat", nullptr,
            [kind](const fs::path& dir) {
                kv::TEntries chart(kind, (dir / "Entries.dat").string());
                chart.Load(true);
            }};
}

Reader FrenchReader(const char* name, std::uint8_t kind, const char* product) {
    const fs::path core = TheCorpus().Demo / product / "Core";
    return {name, core / "French.dat", "French.dat",
            [core](const fs::path& dir) {
                fs::copy_file(core / "Entries.dat", dir / "Entries.dat", fs::copy_options::overwrite_existing);
            },
            [kind](const fs::path& dir) {
                kv::TEntries chart(kind, (dir / "Entries.dat").string());
                chart.Load(true);
            }};
}

// A solution with the chart and the solution list the import would use; then
// the import's lookups over what loaded.
Reader FinItemsReader(const char* name, std::uint8_t kind, const char* product, const char* folder,
                      int stride = 1) {
    const fs::path data = TheCorpus().Demo / product / "Data";
    struct Context {
        std::unique_ptr<kv::TEntries> Chart;
        std::unique_ptr<kv::TModels> List;
    };
    auto ctx = std::make_shared<Context>();
    kv::TProjHdr hdr(kind, kv::ModelsFileName, folder, data.string(), kDemoSettings);
    ctx->List = std::move(hdr.Load(true).Main);
    ctx->Chart = kv::MakeDemoChart(kind, (TheCorpus().Demo / product / "Core" / "Entries.dat").string());
    return {name, data / folder / "Main" / "FinItems.dat", "FinItems.dat", nullptr,
            [kind, ctx](const fs::path& dir) {
                kv::TModelData m(kind, &ctx->List->Get(0), ctx->List.get(), ctx->List.get(), nullptr,
                                 (dir / "FinItems.dat").string(), ctx->Chart.get(), kDemoSettings);
                m.Load();
                for (const auto& p : m.Participants()) {
                    kv::TItemRefs accounts;
                    kv::FindByEntryIDOwned(m, &accounts, kv::kImportEntryIDs, 0, p->ID);
                    for (const auto& h : m.Participants()) {
                        (void)kv::GetProcCommonSharesOwned(m, p->ID, h->ID);
                        (void)kv::GetPartyTrustBenefCapitalPercent(m, h->BenefKey, p->ID);
                    }
                }
            },
            stride};
}

Reader BalanceReader() {
    struct Context {
        kv::TModelData Model{0, nullptr, nullptr, nullptr, nullptr, "/nonexistent/FinItems.dat", nullptr, kDemoSettings};
    };
    auto ctx = std::make_shared<Context>();
    for (std::int32_t id : {1, 2}) ctx->Model.AddParticipant(kv::CreateParty(0, id, 1, 0));
    return {"balance", TheCorpus().Balance, "balance.bal", nullptr, [ctx](const fs::path& dir) {
                kv::TBalance b(&ctx->Model);
                b.Load((dir / "balance.bal").string());
                for (int i = 0; i < b.Count(); ++i) (void)b.AccountTotal(b.GetAccount(i).Key);
            }};
}

std::vector<Reader> Readers() {
    return {
        ModelsReader("models_md", 0, "Meridel", "md_db1_Tremblay"),
        ModelsReader("models_md_protected", 0, "Meridel", "md_db3_Gagnon", 3),
        ModelsReader("models_bs", 1, "Basalto", "bs_db1_Côté Holdings"),
        EntriesReader("entries_md", 0, "Meridel"),
        EntriesReader("entries_bs", 1, "Basalto"),
        FrenchReader("french_md", 0, "Meridel"),
        FinItemsReader("finitems_md_sectioned", 0, "Meridel", "md_db1_Tremblay"),
        FinItemsReader("finitems_md_sequential", 0, "Meridel", "md_db2_Nguyen"),
        FinItemsReader("finitems_md_enciphered", 0, "Meridel", "md_db3_Gagnon", 7),
        FinItemsReader("finitems_bs", 1, "Basalto", "bs_db1_Côté Holdings"),
        FinItemsReader("finitems_qr", 2, "Quorren", "qr_db1_Fiducie familiale Roy"),
        BalanceReader(),
    };
}

// Test names; the readers themselves (and the corpus) are made on first use,
// not while the tests are being listed.
const char* const kReaderNames[] = {
    "models_md", "models_md_protected", "models_bs", "entries_md", "entries_bs", "french_md",
    "finitems_md_sectioned", "finitems_md_sequential", "finitems_md_enciphered", "finitems_bs", "finitems_qr",
    "balance",
};

const Reader& ReaderNamed(const std::string& name) {
    static const std::vector<Reader> readers = Readers();
    for (const Reader& r : readers)
        if (r.Name == name) return r;
    throw std::logic_error("no reader " + name);
}

// Loads each damaged copy and collects what went wrong.
class Runner {
public:
    explicit Runner(const Reader& r) : reader_(r), dir_(MakeTempDir("tessary-hostile-case")) {
        fs::create_directories((dir_ / reader_.Target).parent_path());
        if (reader_.Prepare) reader_.Prepare(dir_);
    }
    ~Runner() {
        std::error_code ec;
        fs::remove_all(dir_, ec);
    }

    // Returns true when the copy loaded.
    bool Run(const Bytes& bytes, const std::string& what) {
        WriteBytes(dir_ / reader_.Target, bytes);
        ++runs_;
        kvtest::ResetAllocationCounts();
        bool loaded = false;
        try {
            reader_.Load(dir_);
            loaded = true;
        } catch (const kv::EKvError& e) {
            if (std::strlen(e.what()) == 0) Fail(what, "an error without a message");
        } catch (const std::exception& e) {
            Fail(what, std::string("not a library error: ") + typeid(e).name() + ": " + e.what());
        } catch (...) {
            Fail(what, "an exception of unknown type");
        }
        const std::size_t largest = lastLargest_ = kvtest::LargestAllocation();
        const std::size_t peak = lastPeak_ = kvtest::PeakLiveGrowth();
        if (largest > bytes.size() + kSlack)
            Fail(what, "an allocation of " + std::to_string(largest) + " bytes for a file of " +
                           std::to_string(bytes.size()));
        const std::uint64_t read = BytesUnder(dir_);
        if (peak > PeakBound(read))
            Fail(what, std::to_string(peak) + " bytes live at once for " + std::to_string(read) + " bytes of files");
        return loaded;
    }

    int Runs() const { return runs_; }
    std::size_t LastLargest() const { return lastLargest_; }
    std::size_t LastPeak() const { return lastPeak_; }
    const std::vector<std::string>& Failures() const { return failures_; }

private:
    void Fail(const std::string& what, const std::string& why) {
        if (failures_.size() < 20) failures_.push_back(reader_.Name + ", " + what + ": " + why);
    }

    const Reader& reader_;
    fs::path dir_;
    int runs_ = 0;
    std::size_t lastLargest_ = 0;
    std::size_t lastPeak_ = 0;
    std::vector<std::string> failures_;
};

std::string Joined(const std::vector<std::string>& lines) {
    std::string out;
    for (const auto& l : lines) out += l + "\n";
    return out;
}

std::mt19937 Rng(const Reader& r, std::uint32_t salt) {
    std::seed_seq seq(r.Name.begin(), r.Name.end());
    std::mt19937 rng(seq);
    rng.discard(salt);
    return rng;
}

class HostileFiles : public ::testing::TestWithParam<const char*> {
protected:
    const Reader& TheReader() const { return ReaderNamed(GetParam()); }
};

TEST_P(HostileFiles, FixtureLoadsUndamaged) {
    const Reader& r = TheReader();
    Runner run(r);
    const Bytes good = ReadBytes(r.Fixture);
    ASSERT_FALSE(good.empty());
    EXPECT_TRUE(run.Run(good, "undamaged"));
    // The whole file is read into one block: the count sees the reader's requests.
    EXPECT_GE(run.LastLargest(), good.size());
    EXPECT_TRUE(run.Failures().empty()) << Joined(run.Failures());
}

TEST_P(HostileFiles, TruncatedAnywhere) {
    const Reader& r = TheReader();
    Runner run(r);
    const Bytes good = ReadBytes(r.Fixture);
    std::vector<std::size_t> cuts;
    for (std::size_t n = 0; n < good.size(); n += std::size_t(r.Stride)) cuts.push_back(n);
    auto rng = Rng(r, 1);
    std::uniform_int_distribution<std::size_t> anywhere(0, good.size() - 1);
    for (int i = 0; i < 50; ++i) cuts.push_back(anywhere(rng));
    for (std::size_t n : cuts)
        run.Run(Bytes(good.begin(), good.begin() + std::ptrdiff_t(n)), "cut at " + std::to_string(n));
    EXPECT_TRUE(run.Failures().empty()) << Joined(run.Failures());
}

TEST_P(HostileFiles, HostileCountsAnywhere) {
    const Reader& r = TheReader();
    Runner run(r);
    const Bytes good = ReadBytes(r.Fixture);
    for (std::size_t at = 0; at + 4 <= good.size(); at += std::size_t(r.Stride)) {
        const std::int32_t pastEnd = static_cast<std::int32_t>(good.size() - at - 4 + 1);
        for (std::int32_t count : {-1, 0x7FFFFFFF, pastEnd}) {
            Bytes bad = good;
            std::memcpy(bad.data() + at, &count, 4);   // little-endian, as the files
            run.Run(bad, "count " + std::to_string(count) + " at " + std::to_string(at));
        }
    }
    EXPECT_GT(run.Runs(), 0);
    EXPECT_TRUE(run.Failures().empty()) << Joined(run.Failures());
}

TEST_P(HostileFiles, RandomBytesFlipped) {
    const Reader& r = TheReader();
    Runner run(r);
    const Bytes good = ReadBytes(r.Fixture);
    auto rng = Rng(r, 2);
    std::uniform_int_distribution<std::size_t> where(0, good.size() - 1);
    std::uniform_int_distribution<int> howMany(1, 8), value(0, 255);
    const int copies = 400 / r.Stride;
    for (int i = 0; i < copies; ++i) {
        Bytes bad = good;
        std::string what = "flipped";
        for (int k = howMany(rng); k > 0; --k) {
            const std::size_t at = where(rng);
            bad[at] = static_cast<std::uint8_t>(value(rng));
            what += " " + std::to_string(at);
        }
        run.Run(bad, what);
    }
    EXPECT_TRUE(run.Failures().empty()) << Joined(run.Failures());
}

// Inputs the fuzz targets found, kept as real files under tests/data/hostile:
// each must load, with no sanitizer finding on the way.
TEST(Findings, LoadWithoutError) {
    // A section length near 2^63 overflowed the end of section sum; it now
    // counts as no length, and the solution loads.
    for (const auto& [file, kind] : {std::pair{"finitems-qr-section-length-overflow.dat", std::uint8_t(2)}}) {
        auto chart = kv::MakeDemoChart(kind, "/nonexistent/Entries.dat");
        kv::TModelData m(kind, nullptr, nullptr, nullptr, nullptr,
                         std::string(TESSARY_TEST_DATA) + "/hostile/" + file, chart.get(), kDemoSettings);
        EXPECT_NO_THROW(m.Load()) << file;
    }
}

INSTANTIATE_TEST_SUITE_P(Readers, HostileFiles, ::testing::ValuesIn(kReaderNames),
                         [](const auto& info) { return std::string(info.param); });

// Small files whose counts call for many small elements, each far larger in
// memory than on disk, written by the library's own writers. Each must load
// or be refused naming its file, within the same bound as the table above.
struct Oversized {
    const char* Name;
    const char* File;       // the file under test, in the case's folder
    bool Refused;           // the outcome: refused, or loaded within the bound
    // Writes the file into the folder and returns its load.
    std::function<std::function<void()>(const fs::path& dir)> Make;
};

void PrintTo(const Oversized& c, std::ostream* os) { *os << c.Name; }

// Enough elements that a reader charging less than their memory size would
// pass the bound by far, few enough to keep the test quick.
constexpr std::size_t kMany = std::size_t(4) << 20;

std::function<void()> LoadEntries(const fs::path& path) {
    return [path] {
        kv::TEntries chart(0, path.string());
        chart.Load(false);
    };
}

// A personal solution beside its chart, built by fill and saved.
std::function<void()> Solution(const fs::path& dir, const std::function<void(kv::TModelData&, kv::TEntries&)>& fill) {
    auto chart = std::shared_ptr<kv::TEntries>(kv::MakeDemoChart(0, "/nonexistent/Entries.dat"));
    const std::string path = (dir / "FinItems.dat").string();
    {
        kv::TModelData m(0, nullptr, nullptr, nullptr, nullptr, path, chart.get(), kDemoSettings);
        m.AddParticipant(kv::CreateParty(0, 1, 1, 0));
        fill(m, *chart);
        m.Save();
    }
    return [chart, path] {
        kv::TModelData m(0, nullptr, nullptr, nullptr, nullptr, path, chart.get(), kDemoSettings);
        m.Load();
    };
}

std::unique_ptr<kv::TFinItem> Item(kv::TModelData& m, kv::TEntries& chart, std::int32_t entryID, std::int32_t id) {
    const kv::TEntry* e = chart.GetEntryByID(entryID);
    return kv::ItemClassByNumber(e->ItemClassNo).Create(e, &m, id);
}

const Oversized kOversized[] = {
    {"entries_empty_tax_labels", "Entries.dat", true, [](const fs::path& dir) {
         const fs::path path = dir / "Entries.dat";
         auto chart = kv::MakeDemoChart(0, path.string());
         for (std::size_t i = 0; i < kMany; ++i) chart->AddEnTaxLabel("");
         chart->Save(path.string());
         return LoadEntries(path);
     }},
    {"entries_empty_properties", "Entries.dat", true, [](const fs::path& dir) {
         const fs::path path = dir / "Entries.dat";
         auto chart = kv::MakeDemoChart(0, path.string());
         chart->GetEntryByID(kv::DemoEntry::NonReg)->SpecProps.assign(kMany, "");
         chart->Save(path.string());
         return LoadEntries(path);
     }},
    {"finitems_empty_property_rows", "FinItems.dat", true, [](const fs::path& dir) {
         return Solution(dir, [](kv::TModelData& m, kv::TEntries&) {
             m.GetParticipantByID(1)->Props.resize(kMany);
         });
     }},
    {"finitems_empty_strategy_values", "FinItems.dat", true, [](const fs::path& dir) {
         return Solution(dir, [](kv::TModelData& m, kv::TEntries&) { m.Strategy().Values.assign(kMany, ""); });
     }},
    {"finitems_empty_settings_texts", "FinItems.dat", true, [](const fs::path& dir) {
         return Solution(dir, [](kv::TModelData& m, kv::TEntries&) { m.Texts.assign(kMany / 4, ""); });
     }},
    {"finitems_empty_typed_records", "FinItems.dat", true, [](const fs::path& dir) {
         return Solution(dir, [](kv::TModelData& m, kv::TEntries&) { m.TypedRecords.resize(kMany / 4); });
     }},
    {"finitems_empty_todo", "FinItems.dat", true, [](const fs::path& dir) {
         return Solution(dir, [](kv::TModelData& m, kv::TEntries&) { m.ToDo.resize(kMany / 16); });
     }},
    {"finitems_empty_residences", "FinItems.dat", false, [](const fs::path& dir) {
         return Solution(dir, [](kv::TModelData& m, kv::TEntries&) { m.Residences.resize(kMany / 8); });
     }},
    {"finitems_bare_items", "FinItems.dat", false, [](const fs::path& dir) {
         return Solution(dir, [](kv::TModelData& m, kv::TEntries& chart) {
             for (std::int32_t id = 1; id <= std::int32_t(kMany / 32); ++id)
                 m.Add(Item(m, chart, kv::DemoEntry::NonReg, id));
         });
     }},
    {"finitems_bare_children", "FinItems.dat", false, [](const fs::path& dir) {
         return Solution(dir, [](kv::TModelData& m, kv::TEntries& chart) {
             kv::TFinItem* top = m.Add(Item(m, chart, kv::DemoEntry::NonReg, 1));
             for (std::int32_t id = 2; id <= std::int32_t(kMany / 32); ++id)
                 top->AddChild(Item(m, chart, kv::DemoEntry::BankAccount, id));
         });
     }},
    {"finitems_empty_pays", "FinItems.dat", false, [](const fs::path& dir) {
         return Solution(dir, [](kv::TModelData& m, kv::TEntries& chart) {
             kv::TFinItem* item = m.Add(Item(m, chart, kv::DemoEntry::NonReg, 1));
             item->Pays.resize(kMany / 32);
         });
     }},
    {"finitems_owners", "FinItems.dat", false, [](const fs::path& dir) {
         return Solution(dir, [](kv::TModelData& m, kv::TEntries& chart) {
             for (std::int32_t id = 1; id <= std::int32_t(kMany / 1024); ++id) {
                 kv::TFinItem* item = m.Add(Item(m, chart, kv::DemoEntry::NonReg, id));
                 item->Shares = std::make_unique<kv::TSharesList>();
                 for (int k = 0; k < 254; ++k) item->Shares->AddShare(nullptr, k, 1);
             }
         });
     }},
    {"finitems_many_properties", "FinItems.dat", true, [](const fs::path& dir) {
         return Solution(dir, [](kv::TModelData& m, kv::TEntries& chart) {
             kv::TFinItem* item = m.Add(Item(m, chart, kv::DemoEntry::NonReg, 1));
             for (std::size_t k = 0; k < kMany / 8; ++k) item->SpecProps.Add(std::to_string(k));
         });
     }},
    {"finitems_empty_year_list", "FinItems.dat", false, [](const fs::path& dir) {
         return Solution(dir, [](kv::TModelData& m, kv::TEntries& chart) {
             kv::TFinItem* item = m.Add(Item(m, chart, kv::DemoEntry::RRSP, 1));
             std::string list;
             for (std::size_t k = 0; k < kMany / 2; ++k) list += "0:,";
             item->SpecProps.Add("lstRRSPUnusedLimit=" + list);
         });
     }},
    {"balance_empty_dates", "balance.bal", false, [](const fs::path& dir) {
         const std::string path = (dir / "balance.bal").string();
         {
             kv::TBalance b;
             auto& cash = b.Add("Cash");
             for (std::size_t k = 0; k < kMany / 8; ++k) cash.Append(std::make_unique<kv::TAccountDate>(double(k)));
             b.Save(path);
         }
         return std::function<void()>([path] {
             kv::TBalance b;
             b.Load(path);
         });
     }},
    {"models_empty_texts", "md_db1_Big/Models.dat", false, [](const fs::path& dir) {
         kv::TProjHdr hdr(0, kv::ModelsFileName, "md_db1_Big", dir.string(), kDemoSettings);
         hdr.Name = "Big";
         hdr.Texts.assign(kMany / 2, "");
         kv::TProjHdrLst(dir.string(), "", 0, kDemoSettings).SaveOne(hdr, kv::TModels(dir.string(), "Main", "md_db1_Big", kDemoSettings),
                                                     kv::TModels(dir.string(), "Needs", "md_db1_Big", kDemoSettings));
         return std::function<void()>([dir] {
             kv::TProjHdr h(0, kv::ModelsFileName, "md_db1_Big", dir.string(), kDemoSettings);
             (void)h.Load(true);
         });
     }},
};

class SmallFileLargeModel : public ::testing::TestWithParam<Oversized> {};

TEST_P(SmallFileLargeModel, LoadsOrIsRefusedWithinTheBound) {
    const Oversized& c = GetParam();
    const fs::path dir = MakeTempDir("tessary-oversized");
    const std::function<void()> load = c.Make(dir);
    const std::uint64_t bytes = BytesUnder(dir);
    const std::string file = (dir / c.File).string();
    std::string error;
    kvtest::ResetAllocationCounts();
    try {
        load();
    } catch (const kv::EKvError& e) {
        error = e.what();
    }
    const std::size_t peak = kvtest::PeakLiveGrowth();
    fs::remove_all(dir);
    EXPECT_LE(peak, PeakBound(bytes)) << bytes << " bytes of files";
    if (c.Refused)
        EXPECT_NE(error.find(file), std::string::npos) << "refusal: \"" << error << "\"";
    else
        EXPECT_EQ(error, "");
}

INSTANTIATE_TEST_SUITE_P(Counts, SmallFileLargeModel, ::testing::ValuesIn(kOversized),
                         [](const auto& info) { return std::string(info.param.Name); });

// Listing a data directory reads the two header records of each client file,
// not the file: a sparse one of several GiB lists in a few MiB.
TEST(ClientListing, ReadsOnlyTheHeaderOfAHugeClientFile) {
    const fs::path dir = MakeTempDir("tessary-sparse");
    {
        kv::TProjHdr hdr(0, kv::ModelsFileName, "md_db1_Big", dir.string(), kDemoSettings);
        hdr.Name = "Big";
        kv::TProjHdrLst(dir.string(), "", 0, kDemoSettings).SaveOne(hdr, kv::TModels(dir.string(), "Main", "md_db1_Big", kDemoSettings),
                                                     kv::TModels(dir.string(), "Needs", "md_db1_Big", kDemoSettings));
    }
    const fs::path models = dir / "md_db1_Big" / kv::ModelsFileName;
    fs::resize_file(models, std::uintmax_t(3) << 30);
    kv::TProjHdrLst list(dir.string(), "", 0, kDemoSettings);
    kvtest::ResetAllocationCounts();
    list.Load(false);
    const std::size_t peak = kvtest::PeakLiveGrowth();
    fs::remove_all(dir);
    ASSERT_EQ(list.Count(), 1);
    EXPECT_EQ(list.Get(0).Name, "Big");
    EXPECT_LE(peak, kPeakSlack);
}

} // namespace
