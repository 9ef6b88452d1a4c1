// Growth of the client-file list with the number of client folders when their
// header dates are crafted against the list's quicksort (McIlroy's adversary,
// run against the original algorithm): 4,000 and 40,000 folders in the same
// run, beside listing and reading the same folders raw. The original's
// quadratic sort took 31 times as long for ten times the folders.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <numeric>
#include <pthread.h>
#include <fcntl.h>
#include <unistd.h>
#include <string>
#include <vector>

#include "OriginalQuicksort.h"
#include "catalogue/KvCatalogueFixture.h"
#include "import/ImportSession.h"

namespace fs = std::filesystem;

namespace {

// Rank of the item at each list position that makes the original pointer
// sort take its longest.
std::vector<int> KillerRanksOnThisStack(int n) {
    std::vector<int> key = kvtest::AdversaryKeys(n, [n](std::vector<int>& items, auto compare) {
        if (n > 1) kvtest::OriginalPointerSort(items, 0, n - 1, compare);
    });
    int solid = static_cast<int>(std::count_if(key.begin(), key.end(), [n](int k) { return k < n; }));
    for (int& k : key)
        if (k == n) k = solid++; // never compared while undecided
    return key;
}

// The original recurses once per element on this input: a thread with room.
std::vector<int> KillerRanks(int n) {
    struct Job {
        int n;
        std::vector<int> ranks;
    } job{n, {}};
    pthread_attr_t attr;
    pthread_attr_init(&attr);
    pthread_attr_setstacksize(&attr, std::size_t(1) << 30);
    pthread_t thread;
    if (pthread_create(
            &thread, &attr,
            [](void* p) -> void* {
                auto* j = static_cast<Job*>(p);
                j->ranks = KillerRanksOnThisStack(j->n);
                return nullptr;
            },
            &job) == 0)
        pthread_join(thread, nullptr);
    else
        job.ranks = KillerRanksOnThisStack(n);
    pthread_attr_destroy(&attr);
    return job.ranks;
}

// A data directory of n client folders, listed in folder order, whose dates
// the list compares in the killer's order.
struct Folder {
    fs::path Dir;
    explicit Folder(int n) {
        char tmpl[] = "/tmp/tessary-bench-listing-XXXXXX";
        Dir = mkdtemp(tmpl);
        // Dates ordered as the list orders them (latest rendered text first).
        std::vector<double> dates(static_cast<std::size_t>(n));
        std::vector<QString> texts(dates.size());
        const QLocale locale = QLocale::system();
        for (int i = 0; i < n; ++i) {
            dates[std::size_t(i)] = 40000 + i * 0.37;
            texts[std::size_t(i)] = tessary::RenderHeaderDate(dates[std::size_t(i)], locale);
        }
        std::vector<int> order(dates.size());
        std::iota(order.begin(), order.end(), 0);
        std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
            return texts[std::size_t(a)].localeAwareCompare(texts[std::size_t(b)]) > 0;
        });
        const std::vector<int> rank = KillerRanks(n);
        for (int j = 0; j < n; ++j) {
            char name[32];
            std::snprintf(name, sizeof name, "Client %06d", j);
            kv::TClientFileSpec clientFile;
            clientFile.Name = name;
            clientFile.ID = 1 + j;
            clientFile.Solutions = 1;
            clientFile.TrailingSections = false;
            clientFile.Date = dates[std::size_t(order[std::size_t(rank[std::size_t(j)])])];
            char folder[48];
            std::snprintf(folder, sizeof folder, "md_db%06d_%s", j + 1, name);
            kv::WriteClientFolder(Dir.string(), folder, 0, clientFile);
        }
    }
    ~Folder() {
        std::error_code ec;
        fs::remove_all(Dir, ec);
    }
};

const Folder& FolderOf(int n) {
    static std::map<int, std::unique_ptr<Folder>> folders;
    auto& f = folders[n];
    if (!f) f = std::make_unique<Folder>(n);
    return *f;
}

void BM_ListAdversarialFolders(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const Folder& folder = FolderOf(n);
    for (auto _ : state) {
        tessary::TFolderOverrides o;
        o.DataDir = QString::fromStdString(folder.Dir.string());
        tessary::TImportSession session(o);
        session.ChooseProduct(0);
        if (session.FileCount() != n) state.SkipWithError("not every client folder was listed");
        benchmark::DoNotOptimize(session.File(0));
    }
}
BENCHMARK(BM_ListAdversarialFolders)->Arg(4000)->Arg(40000)->Unit(benchmark::kMillisecond)->UseRealTime();

// The file system's part, as the raw baseline: list the folders and read
// every "Models.dat" once (it grows faster than n itself with the folder's size).
void BM_RawListAndReadFolders(benchmark::State& state) {
    const Folder& folder = FolderOf(static_cast<int>(state.range(0)));
    std::vector<char> buffer(1 << 16);
    for (auto _ : state) {
        std::int64_t total = 0;
        for (const auto& e : fs::directory_iterator(folder.Dir)) {
            const int fd = ::open((e.path() / "Models.dat").c_str(), O_RDONLY | O_CLOEXEC);
            if (fd < 0) continue;
            for (ssize_t r; (r = ::read(fd, buffer.data(), buffer.size())) > 0;) total += r;
            ::close(fd);
        }
        benchmark::DoNotOptimize(total);
    }
}
BENCHMARK(BM_RawListAndReadFolders)->Arg(4000)->Arg(40000)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
