// Full imports (every product, client file, solution, party and holder)
// through the import session must leave the client files as they were: every
// byte and every name, apart from the documented renaming of a legacy client
// folder, which a read-only data directory silently refuses.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "KvSettings.h"
#include "TestFiles.h"
#include "catalogue/KvFnModels.h"
#include "demo/DemoData.h"
#include "import/ImportSession.h"
#include "model/KvFnModelData.h"
#include "parties/KvFnParty.h"

namespace fs = std::filesystem;

namespace {

using Snapshot = std::map<std::string, std::string>;
constexpr auto Take = kvtest::TreeDigest;

// Every file and folder read-only (true) or writable again (false).
void SetWritable(const fs::path& root, bool writable) {
    const auto perms = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    const auto opt = writable ? fs::perm_options::add : fs::perm_options::remove;
    for (const auto& e : fs::recursive_directory_iterator(root)) fs::permissions(e.path(), perms, opt);
    fs::permissions(root, perms, opt);
}

class TempTree {
public:
    TempTree() {
        std::string tmpl = (fs::temp_directory_path() / "tessary-nowrites-XXXXXX").string();
        if (!::mkdtemp(tmpl.data())) throw std::runtime_error("mkdtemp failed");
        root_ = tmpl;
    }
    ~TempTree() {
        std::error_code ec;
        SetWritable(root_, true);
        fs::remove_all(root_, ec);
    }
    const fs::path& Root() const { return root_; }

private:
    fs::path root_;
};

// The demo data root, with a legacy client-folder name that a scan renames
// and a solution kept only as its "~" recovery copy.
fs::path WriteTree(const fs::path& root) {
    const fs::path demo = root / "demo";
    tessary::WriteDemoData(demo.string());
    const fs::path md = demo / "Meridel" / "Data";
    fs::rename(md / "md_db2_Nguyen", md / "md_db2");
    const fs::path main1 = md / "md_db1_Tremblay" / "Main1";
    fs::rename(main1 / "FinItems.dat", main1 / "~FinItems.dat");
    return demo;
}

// Everything the import can be asked for, as "product/file/solution/party/holder: kind=amount ...".
std::vector<std::string> ImportEverything(const fs::path& demo) {
    std::vector<std::string> lines;
    tessary::TImportSession session({QString::fromStdString(demo.string()), {}, {}});
    session.Settings().ClientFileKey = tessary::kDemoClientKey;
    for (std::uint8_t kind : {0, 1, 2}) {
        session.ChooseProduct(kind);
        for (int f = 0; f < session.FileCount(); ++f) {
            session.ChooseFile(f);
            for (int s = 0; s < session.Solutions()->Count(); ++s) {
                session.ChooseSolution(s);
                std::vector<const kv::TParticipant*> holders = {nullptr};
                holders.insert(holders.end(), session.Holders().begin(), session.Holders().end());
                for (const kv::TParticipant* party : session.Parties())
                    for (const kv::TParticipant* holder : holders) {
                        std::string line = std::to_string(kind) + "/" + session.FileNames()[f].toStdString() + "/" +
                                           std::to_string(s) + "/" + party->FullName() + "/" +
                                           (holder ? holder->FullName() : "all") + ":";
                        for (const auto& e : session.Collect(party, holder))
                            line += " " + e.KindText + "=" + std::to_string(e.Amount);
                        lines.push_back(line);
                    }
            }
        }
    }
    return lines;
}

TEST(NoWrites, FullImportChangesNoByteAndOnlyTheLegacyFolderName) {
    TempTree tree;
    const fs::path demo = WriteTree(tree.Root());
    const Snapshot before = Take(demo);

    const auto imported = ImportEverything(demo);
    ASSERT_GE(imported.size(), 10u);

    // The scan gives the legacy folder its client name; nothing else moves.
    Snapshot expected;
    const std::string legacy = "Meridel/Data/md_db2", renamed = "Meridel/Data/md_db2_Nguyen";
    for (const auto& [path, sum] : before)
        expected[path.rfind(legacy, 0) == 0 ? renamed + path.substr(legacy.size()) : path] = sum;
    EXPECT_EQ(Take(demo), expected);
}

// Root ignores permissions: then the import runs in a child process that has
// given them up (as "nobody") and sends its lines back. Empty optional: the
// child could not drop root.
std::optional<std::vector<std::string>> ImportWithoutRoot(const fs::path& demo) {
    if (::geteuid() != 0) return ImportEverything(demo);
    int fds[2];
    if (::pipe(fds) != 0) throw std::runtime_error("pipe failed");
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(fds[0]);
        if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(77);
        try {
            std::string out;
            for (const auto& line : ImportEverything(demo)) out += line + "\n";
            for (std::size_t done = 0; done < out.size();) {
                const ssize_t n = ::write(fds[1], out.data() + done, out.size() - done);
                if (n <= 0) ::_exit(2);
                done += std::size_t(n);
            }
        } catch (const std::exception& e) {
            std::fprintf(stderr, "import failed: %s\n", e.what());
            ::_exit(1);
        }
        ::_exit(0);
    }
    ::close(fds[1]);
    std::string text;
    char buf[4096];
    for (ssize_t n; (n = ::read(fds[0], buf, sizeof buf)) > 0;) text.append(buf, std::size_t(n));
    ::close(fds[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 77) return std::nullopt;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error("the import failed in the child");
    std::vector<std::string> lines;
    for (std::size_t start = 0, end; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
        lines.push_back(text.substr(start, end - start));
    return lines;
}

TEST(NoWrites, ReadOnlyDataImportsAlikeAndStaysUnchanged) {
    TempTree writableTree, readOnlyTree;
    const auto expected = ImportEverything(WriteTree(writableTree.Root()));

    const fs::path demo = WriteTree(readOnlyTree.Root());
    SetWritable(readOnlyTree.Root(), false);
    fs::permissions(readOnlyTree.Root(), fs::perms::others_read | fs::perms::others_exec, fs::perm_options::add);
    const Snapshot before = Take(demo);

    const auto imported = ImportWithoutRoot(demo);
    if (!imported) GTEST_SKIP() << "cannot give up root to test permissions";
    // The legacy folder keeps its name, and the import is the same.
    EXPECT_EQ(*imported, expected);
    EXPECT_EQ(Take(demo), before);
}

} // namespace
