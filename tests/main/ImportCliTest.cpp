// The command line's import commands over the demo client files written into
// a temporary folder, and over the product configuration read from a private
// settings folder.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QFileInfo>
#include <QJsonObject>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <map>

#include "TestFiles.h"
#include "cli/Commands.h"
#include "demo/DemoData.h"

using namespace tessary;

namespace {

QString gRootPath;   // the demo data root, written once

QString Root() { return gRootPath; }

CliOutput RunDemo(QStringList args) {
    args << QStringLiteral("--data-root") << Root();
    return RunCli(args);
}

// Every file under a folder with its bytes: what "nothing written" compares.
std::map<std::string, std::string> Snapshot(const QString& dir) {
    return kvtest::TreeDigest(QFile::encodeName(dir).toStdString());
}

struct TDocRow {
    QString product, file, solution, party, holder;
    std::vector<std::pair<int, int>> entries;
};

// The expected results documented beside the demo data.
std::vector<TDocRow> DocumentedImports() {
    QFile doc(QStringLiteral(TESSARY_DEMO_DOC));
    EXPECT_TRUE(doc.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString text = QString::fromUtf8(doc.readAll());
    const qsizetype from = text.indexOf(QStringLiteral("<!-- import-results:begin -->"));
    const qsizetype to = text.indexOf(QStringLiteral("<!-- import-results:end -->"));
    std::vector<TDocRow> rows;
    if (from < 0 || to < from) return rows;
    const QStringList lines = text.mid(from, to - from).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const QStringList cells = line.split(QLatin1Char('|'));
        if (cells.size() < 8 || cells[1].trimmed() == QLatin1String("Product") || cells[1].startsWith(QLatin1String("---")))
            continue;
        TDocRow row{cells[1].trimmed(), cells[2].trimmed(), cells[3].trimmed(), cells[4].trimmed(), cells[5].trimmed(), {}};
        if (row.product.startsWith(QLatin1Char('-'))) continue;
        if (row.holder == QStringLiteral("\u2014")) row.holder.clear();
        for (const QString& pair : cells[6].split(QLatin1Char(','), Qt::SkipEmptyParts)) {
            const QStringList kv = pair.split(QLatin1Char(':'));
            row.entries.push_back({kv.value(0).trimmed().toInt(), kv.value(1).trimmed().toInt()});
        }
        rows.push_back(row);
    }
    return rows;
}

TEST(ImportCli, EveryDocumentedImportGivesItsResultList) {
    const auto rows = DocumentedImports();
    ASSERT_GE(rows.size(), 14u);
    for (const TDocRow& row : rows) {
        QStringList args{"import", "--product", row.product, "--file", row.file, "--solution", row.solution,
                         "--party", row.party, "--key", QString::fromLatin1(kDemoClientKey), "--json"};
        if (!row.holder.isEmpty()) args << "--holder" << row.holder;
        const CliOutput out = RunDemo(args);
        SCOPED_TRACE((row.file + " / " + row.party + " / " + row.holder).toStdString());
        ASSERT_EQ(out.exitCode, 0) << out.err.toStdString();
        const QJsonObject o = QJsonDocument::fromJson(out.out.toUtf8()).object();
        EXPECT_EQ(o.value("column").toInt(), row.product == "Meridel" ? 1 : row.product == "Basalto" ? 2 : 3);
        const QJsonArray entries = o.value("entries").toArray();
        ASSERT_EQ(entries.size(), static_cast<qsizetype>(row.entries.size())) << out.out.toStdString();
        for (qsizetype i = 0; i < entries.size(); ++i) {
            EXPECT_EQ(entries[i].toObject().value("kind").toInt(), row.entries[i].first);
            EXPECT_EQ(entries[i].toObject().value("amount").toInteger(), row.entries[i].second);
        }
    }
}

TEST(ImportCli, ListsInTheDialogsOrder) {
    struct Case { QStringList args; QStringList lines; };
    const QString key = QString::fromLatin1(kDemoClientKey);
    const Case cases[] = {
        {{"files", "--product", "BS"}, {"Côté Holdings"}},
        {{"files", "--product", "qr"}, {"Fiducie familiale Roy"}},
        {{"solutions", "--product", "MD", "--file", "Tremblay", "--key", key}, {"Current plan", "Retirement at 60"}},
        {{"parties", "--product", "Quorren", "--file", "Fiducie familiale Roy", "--solution", "Current plan"},
         {"Fiducie familiale Roy", "All Beneficiaries", "Isabelle Roy", "Mathieu Roy", "Camille Roy"}},
    };
    for (const Case& c : cases) {
        const CliOutput out = RunDemo(c.args);
        ASSERT_EQ(out.exitCode, 0) << c.args.join(' ').toStdString() << ": " << out.err.toStdString();
        EXPECT_EQ(out.out, c.lines.join('\n') + '\n') << c.args.join(' ').toStdString();
    }
    // The Meridel files are ordered by their rendered dates, newest text first.
    const CliOutput md = RunDemo({"files", "--product", "MD", "--key", key});
    ASSERT_EQ(md.exitCode, 0) << md.err.toStdString();
    QStringList all = md.out.split('\n', Qt::SkipEmptyParts);
    EXPECT_EQ(all.size(), 3);
    // Without a key the protected file goes to standard error, the others keep their order.
    const CliOutput locked = RunDemo({"files", "--product", "MD"});
    EXPECT_EQ(locked.exitCode, 0);
    all.removeAll("Gagnon");
    EXPECT_EQ(locked.out, all.join('\n') + '\n');
    EXPECT_EQ(locked.err.count('\n'), 1);
    EXPECT_TRUE(locked.err.contains("\"md_db3_Gagnon\" is protected")) << locked.err.toStdString();
}

TEST(ImportCli, FailuresNameTheFileAndTheProblem) {
    struct Case { QStringList args; const char* mention; };
    const Case cases[] = {
        {{"solutions", "--product", "MD", "--file", "Gagnon"},
         "\"Gagnon\" is protected"},
        {{"files", "--product", "MD", "--key", "wrong"}, "Invalid data"},
        {{"files", "--product", "XX"}, "XX"},
        {{"solutions", "--product", "BS", "--file", "Nobody"}, "Nobody"},
        {{"parties", "--product", "BS", "--file", "Côté Holdings", "--solution", "Later"}, "Later"},
        {{"import", "--product", "BS", "--file", "Côté Holdings", "--solution", "Current plan", "--party", "Paul Côté"},
         "Paul Côté"},
        {{"import", "--product", "BS", "--file", "Côté Holdings", "--solution", "Current plan", "--party",
          "Côté Holdings Inc.", "--holder", "Nobody"},
         "Nobody"},
        {{"import", "--product", "BS", "--file", "Côté Holdings", "--solution", "Current plan"}, "--party"},
        {{"parties", "--product", "BS", "--file", "Côté Holdings", "--solution", "Current plan", "--core-dir",
          "/nonexistent-core"},
         "/nonexistent-core/Entries.dat"},
        {{"inspect", Root() + "/Meridel/Data/md_db9/Main/FinItems.dat"}, "md_db9/Main/FinItems.dat"},
        {{"inspect", Root() + "/Meridel/Data/md_db3_Gagnon/Main/FinItems.dat"}, "Client file \"Gagnon\" is protected"},
        {{"inspect", Root() + "/Meridel/Data/md_db3_Gagnon/Main/FinItems.dat", "--key", "wrong"}, "Invalid data"},
        {{"inspect", Root() + "/Basalto/Data/bs_db1_Côté Holdings/Main/FinItems.dat", "--core-dir", "/nonexistent-core"},
         "/nonexistent-core/Entries.dat"},
        {{"inspect", Root() + "/Quorren/Core/Entries.dat", "--roundtrip"}, "Entries.dat"},
        {{"inspect"}, "FILE"},
    };
    const auto before = Snapshot(Root());
    for (const Case& c : cases) {
        qunsetenv("TESSARY_CLIENT_KEY");
        const CliOutput out = c.args.first() == "inspect" ? RunCli(c.args) : RunDemo(c.args);
        EXPECT_NE(out.exitCode, 0) << c.args.join(' ').toStdString();
        EXPECT_TRUE(out.err.contains(QString::fromUtf8(c.mention))) << out.err.toStdString();
        EXPECT_EQ(out.err.count('\n'), 1) << out.err.toStdString();
    }
    EXPECT_EQ(Snapshot(Root()), before);
}

// Every demo model saved as loaded gives its file back (the sequential one as
// a model), and only the system's temporary folder is written.
TEST(InspectCli, DemoFilesComeBackFromASave) {
    const auto before = Snapshot(Root());
    QDirIterator it(Root(), {"FinItems.dat"}, QDir::Files, QDirIterator::Subdirectories);
    int files = 0;
    while (it.hasNext()) {
        const QString path = it.next();
        const QString core = Root() + "/" + QDir(Root()).relativeFilePath(path).section('/', 0, 0) + "/Core";
        const CliOutput out = RunCli({"inspect", path, "--core-dir", core, "--key", kDemoClientKey, "--roundtrip"});
        EXPECT_EQ(out.out, "identical\n") << path.toStdString() << out.err.toStdString();
        EXPECT_EQ(out.exitCode, 0);
        ++files;
    }
    EXPECT_EQ(files, 6);
    EXPECT_EQ(Snapshot(Root()), before);
}

TEST(InspectCli, ACorruptByteIsWhereTheSavedFileDiffers) {
    QTemporaryDir tmp;
    const QString client = tmp.filePath("md_db1_Tremblay");
    QDir().mkpath(client + "/Main");
    QFile::copy(Root() + "/Meridel/Data/md_db1_Tremblay/Models.dat", client + "/Models.dat");
    const QString path = client + "/Main/FinItems.dat";
    QFile f(Root() + "/Meridel/Data/md_db1_Tremblay/Main/FinItems.dat");
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    QByteArray b = f.readAll();
    // The first party's boolean after its names, birth date, byte and text:
    // any non-zero byte reads true and is written back as 1.
    qint32 at = 0;
    memcpy(&at, b.constData() + 28 + 2 * 20 + 4, 4);   // section 3's offset in the directory
    at += 4 + 4 + 3;
    for (int text = 0; text < 3; ++text) at += 1 + quint8(b[at]);
    at += 4 + 1;
    at += 1 + quint8(b[at]);
    b[at] = 2;
    QFile out(path);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(b);
    out.close();
    const CliOutput r = RunCli({"inspect", path, "--core-dir", Root() + "/Meridel/Core", "--roundtrip"});
    EXPECT_EQ(r.out, QStringLiteral("differs at byte %1\n").arg(at)) << r.err.toStdString();
    EXPECT_EQ(r.exitCode, 1);
}

TEST(InspectCli, ShowsWhatTheLibraryRead) {
    const QString tremblay = Root() + "/Meridel/Data/md_db1_Tremblay/Main/FinItems.dat";
    const CliOutput json = RunCli({"inspect", tremblay, "--core-dir", Root() + "/Meridel/Core", "--json"});
    ASSERT_EQ(json.exitCode, 0) << json.err.toStdString();
    const QJsonObject o = QJsonDocument::fromJson(json.out.toUtf8()).object();
    EXPECT_EQ(o.value("parties").toArray().size(), 3);
    const QJsonObject rrsp = o.value("items").toArray()[8].toObject();
    EXPECT_EQ(rrsp.value("class").toString(), "TRRSP");
    EXPECT_EQ(rrsp.value("props").toArray(), (QJsonArray{"OwnerID=2", "RRSPTYPE=1"}));
    EXPECT_EQ(o.value("items").toArray()[0].toObject().value("children").toArray()[0].toObject().value("id"), 102);
    // Without a chart the items stay, as plain items under their entry numbers.
    const CliOutput plain = RunCli({"inspect", tremblay});
    ASSERT_EQ(plain.exitCode, 0) << plain.err.toStdString();
    EXPECT_TRUE(plain.out.contains("Chart of accounts: none")) << plain.out.toStdString();
    EXPECT_TRUE(plain.out.contains("  110 TFinItem entry 1239 (not in the chart) name \"Luc - locked-in RRSP\""));
    const CliOutput models = RunCli({"inspect", Root() + "/Quorren/Data/qr_db1_Fiducie familiale Roy/Models.dat"});
    EXPECT_TRUE(models.out.contains("Main solutions: 1\n  \"Current plan\"")) << models.out.toStdString();
    const CliOutput entries = RunCli({"inspect", Root() + "/Basalto/Core/Entries.dat", "--json"});
    EXPECT_EQ(QJsonDocument::fromJson(entries.out.toUtf8()).object().value("kind").toInt(), 1);
}

TEST(ImportCli, ConfiguredFoldersComeFromTheProductSettings) {
    // %NAME% references in the configured folders are expanded from the environment.
    qputenv("TESSARY_TEST_DEMO_ROOT", Root().toUtf8());
    {
        QSettings s(QSettings::NativeFormat, QSettings::UserScope, "Torvane Labs Inc.", "Quorren");
        s.setValue("1.0/DataDir", "%TESSARY_TEST_DEMO_ROOT%/Quorren/Data");
        s.setValue("1.0/CoreDir", "%TESSARY_TEST_DEMO_ROOT%/Quorren/Core");
    }
    const CliOutput out = RunCli({"import", "--product", "QR", "--file", "Fiducie familiale Roy", "--solution",
                                  "Current plan", "--party", "Fiducie familiale Roy", "--holder", "Camille Roy", "--json"});
    ASSERT_EQ(out.exitCode, 0) << out.err.toStdString();
    // The same import as through --data-root: the figures are checked there.
    EXPECT_EQ(out.out, RunDemo({"import", "--product", "QR", "--file", "Fiducie familiale Roy", "--solution", "Current plan",
                                "--party", "Fiducie familiale Roy", "--holder", "Camille Roy", "--json"}).out);

    // An unconfigured product lists nothing, as the dialog does.
    const CliOutput none = RunCli({"files", "--product", "BS"});
    EXPECT_EQ(none.exitCode, 0) << none.err.toStdString();
    EXPECT_EQ(none.out, "");
    const CliOutput named = RunCli({"solutions", "--product", "BS", "--file", "Côté Holdings"});
    EXPECT_NE(named.exitCode, 0);
    EXPECT_TRUE(named.err.contains("Basalto")) << named.err.toStdString();
}

TEST(ImportCli, ClientKeyOptionThenEnvironmentThenSettings) {
    const QStringList args{"files", "--product", "MD"};
    {
        QSettings s(QSettings::NativeFormat, QSettings::UserScope, "Torvane Labs Inc.", "Tessary");
        s.setValue("Keys/ClientFileKey", QString::fromLatin1(kDemoClientKey));
    }
    qunsetenv("TESSARY_CLIENT_KEY");
    // Read with the key, the protected file is listed too.
    EXPECT_TRUE(RunDemo(args).out.contains("Gagnon")) << RunDemo(args).err.toStdString();
    qputenv("TESSARY_CLIENT_KEY", "wrong");
    EXPECT_TRUE(RunDemo(args).err.contains("Invalid data"));
    EXPECT_TRUE(RunDemo(QStringList(args) << "--key" << QString::fromLatin1(kDemoClientKey)).out.contains("Gagnon"));
    qunsetenv("TESSARY_CLIENT_KEY");
    // Nor the user's keyring: no secret service answers here.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/tessary-bus");
    QSettings(QSettings::NativeFormat, QSettings::UserScope, "Torvane Labs Inc.", "Tessary").remove("Keys");
}

struct TRun {
    int exitCode = -1;
    QByteArray out, err;
};

// The real program, with the key on standard input when one is given.
TRun RunProgram(const QString& program, const QStringList& args, const QByteArray& input = {}) {
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    // Else the window's toolkit adds a line about it to standard error.
    static QTemporaryDir runtime;
    env.insert("XDG_RUNTIME_DIR", runtime.path());
    p.setProcessEnvironment(env);
    p.start(QStringLiteral(TESSARY_BIN_DIR) + "/" + program, args);
    p.write(input);
    p.closeWriteChannel();
    if (!p.waitForFinished(30000)) return {};
    return {p.exitCode(), p.readAllStandardOutput(), p.readAllStandardError()};
}

// A key file or standard input keeps the key out of the process list and
// imports as the option does; neither is ever echoed.
TEST(ImportCli, KeyFileAndStandardInputGiveWhatKeyGives) {
    const QString key = QString::fromLatin1(kDemoClientKey);
    const QStringList import{"import", "--product", "MD", "--file", "Gagnon", "--solution", "Current plan",
                             "--party", "Julie Gagnon", "--data-root", Root(), "--json"};
    QTemporaryDir tmp;
    const QString keyFile = tmp.filePath("key"), emptyFile = tmp.filePath("empty"), missing = tmp.filePath("none");
    QFile f(keyFile);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(key.toUtf8() + "\r\nnot the key\n");
    f.close();
    QFile(emptyFile).open(QIODevice::WriteOnly);

    const TRun reference = RunProgram("tessary-cli", QStringList(import) << "--key" << key);
    ASSERT_EQ(reference.exitCode, 0) << reference.err.toStdString();
    ASSERT_TRUE(reference.out.contains("entries"));
    struct Case {
        QStringList args;
        QByteArray input;
    };
    const Case same[] = {
        {{"--key-file", keyFile}, {}},
        {{"--key", "-"}, key.toUtf8() + "\n"},
        {{"--key", "-"}, key.toUtf8()},
    };
    for (const Case& c : same) {
        SCOPED_TRACE(c.args.join(' ').toStdString());
        const TRun run = RunProgram("tessary-cli", QStringList(import) << c.args, c.input);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.out, reference.out);
        EXPECT_EQ(run.err, "");
    }
    const CliOutput inspect = RunCli({"inspect", Root() + "/Meridel/Data/md_db3_Gagnon/Main/FinItems.dat",
                                      "--key-file", keyFile});
    EXPECT_EQ(inspect.exitCode, 0) << inspect.err.toStdString();

    const Case failing[] = {
        {{"--key-file", missing}, {}},
        {{"--key-file", emptyFile}, {}},
        {{"--key", "-"}, {}},
        {{"--key-file", keyFile, "--key", key}, {}},
    };
    for (const QString program : {"tessary-cli", "tessary"}) {
        if (!QFile::exists(QStringLiteral(TESSARY_BIN_DIR) + "/" + program)) continue; // built without the window
        for (const Case& c : failing) {
            SCOPED_TRACE((program + " " + c.args.join(' ')).toStdString());
            const TRun run = RunProgram(program, program == "tessary" ? c.args : QStringList(import) << c.args, c.input);
            EXPECT_NE(run.exitCode, 0);
            EXPECT_EQ(run.err.count('\n'), 1) << run.err.toStdString();
            EXPECT_TRUE(run.err.contains(c.args.size() > 2 ? QByteArray("Choose one of --key and --key-file")
                                         : c.args[1] == "-" ? QByteArray("Standard input")
                                                            : c.args[1].toUtf8()))
                << run.err.toStdString();
            EXPECT_FALSE(run.err.contains(key.toUtf8()));
        }
    }
}

TEST(ImportCli, DemoDataRefusesAFolderInUse) {
    const CliOutput out = RunCli({"demo-data", Root()});
    EXPECT_NE(out.exitCode, 0);
    QTemporaryDir fresh;
    const QString target = fresh.filePath("new");
    const CliOutput made = RunCli({"demo-data", target});
    EXPECT_EQ(made.exitCode, 0) << made.err.toStdString();
    EXPECT_TRUE(QFile::exists(target + "/Quorren/Core/Entries.dat"));
}

} // namespace

int main(int argc, char** argv) {
    // Settings go to a private folder, never to the user's own configuration.
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    qunsetenv("TESSARY_CLIENT_KEY");
    QCoreApplication app(argc, argv);
    QTemporaryDir root;
    gRootPath = root.path() + "/demo";
    WriteDemoData(QFile::encodeName(gRootPath).toStdString());
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
