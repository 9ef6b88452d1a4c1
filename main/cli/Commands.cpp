#include "cli/Commands.h"

#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <functional>
#include <cmath>
#include <map>

#include "format/GridFormat.h"
#include "cli/Inspect.h"
#include "core/Allocation.h"
#include "core/CsvInput.h"
#include "core/Vocabulary.h"
#include "core/Totals.h"
#include "demo/DemoData.h"
#include "format/Export.h"
#include "format/TradesFormat.h"
#include "import/ImportSession.h"
#include "model/KvFnModelData.h"
#include "parties/KvFnParty.h"

#include <QJsonArray>
#include <QJsonObject>

namespace tessary {

QByteArray ReadWholeFile(const QString& path) {
    try {
        const std::string bytes = ReadInputFile(QFile::encodeName(path).toStdString());
        return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
    } catch (const EInputFile& e) {
        throw CliError(e.what());
    }
}

void AddKeyOptions(QCommandLineParser& parser) {
    parser.addOption({QStringLiteral("key"), QStringLiteral("Client-file key; \"-\" reads it from standard input."),
                      QStringLiteral("key")});
    parser.addOption({QStringLiteral("key-file"), QStringLiteral("File whose first line is the client-file key."),
                      QStringLiteral("file")});
}

QString KeyOption(const QCommandLineParser& parser) {
    // Which of two keys was meant cannot be guessed.
    if (parser.isSet(QStringLiteral("key")) && parser.isSet(QStringLiteral("key-file")))
        throw CliError("Choose one of --key and --key-file");
    return KeyFromOptions(parser.value(QStringLiteral("key")), parser.value(QStringLiteral("key-file")));
}

namespace {
PdfReportWriter gPdfReportWriter = nullptr;
TradesReportWriter gTradesReportWriter = nullptr;
} // namespace

void SetPdfReportWriter(PdfReportWriter writer) { gPdfReportWriter = writer; }
void SetTradesReportWriter(TradesReportWriter writer) { gTradesReportWriter = writer; }

bool WantsPdf(const QStringList& args) {
    for (const QString& a : args) {
        // QCommandLineParser takes "-pdf" as "--pdf" here, and "--pdf=FILE" too.
        const QString name = a.startsWith(QLatin1String("--")) ? a.mid(2)
                             : a.startsWith(QLatin1Char('-'))  ? a.mid(1)
                                                               : QString();
        if (name == QLatin1String("pdf") || name.startsWith(QLatin1String("pdf="))) return true;
    }
    return false;
}

QString AllocateCommand(const QString& accountsCsv, const QString& classesCsv, bool json) {
    return AllocateCommand(accountsCsv, classesCsv, json ? AllocateOutput::Json : AllocateOutput::Text, QString());
}

void CalculateFromCsv(const QString& accountsCsv, const QString& classesCsv, TGrid& accounts, TGrid& classes,
                      TGrid& result) {
    const QByteArray accountsText = ReadWholeFile(accountsCsv);
    const QByteArray classesText = ReadWholeFile(classesCsv);

    accounts = MakeAccountsGrid();
    classes = MakeClassesGrid();
    result = MakeResultGrid();
    // Only the result is shown: rows that the calculation would drop unseen are not built.
    LoadAccountsCsv(std::string_view(accountsText.constData(), static_cast<std::size_t>(accountsText.size())), accounts,
                    TCsvRows::ForResult);
    LoadClassesCsv(std::string_view(classesText.constData(), static_cast<std::size_t>(classesText.size())), classes,
                   TCsvRows::ForResult);
    if (const std::int64_t cells = ResultCellCount(accounts, classes); cells > kMaxResultCells)
        throw CliError(
            QStringLiteral("The accounts of \"%1\" and the classes of \"%2\" would make a result of %3 cells; "
                           "at most %4 are accepted")
                .arg(accountsCsv, classesCsv)
                .arg(cells)
                .arg(kMaxResultCells)
                .toStdString());

    CalculateAllocation(accounts, classes, result, kDesignAddAccWidth);
}

QString AllocateCommand(const QString& accountsCsv, const QString& classesCsv, AllocateOutput output,
                        const QString& pdfPath) {
    if (!pdfPath.isEmpty() && !gPdfReportWriter) throw CliError("This tessary-cli was built without the PDF report");
    TGrid accounts = MakeAccountsGrid(), classes = MakeClassesGrid(), result = MakeResultGrid();
    CalculateFromCsv(accountsCsv, classesCsv, accounts, classes, result);

    if (!pdfPath.isEmpty()) gPdfReportWriter(pdfPath, accounts, classes, result);
    switch (output) {
        case AllocateOutput::Json:
            return QString::fromUtf8(GridToJson(result).toJson(QJsonDocument::Compact)) + QLatin1Char('\n');
        case AllocateOutput::Csv: return GridAsCsv(result, GridKind::Result);
        case AllocateOutput::Text: break;
    }
    return FormatGridText(result, GridKind::Result, AppLocale());
}

QString RebalanceCommand(const QString& accountsCsv, const QString& classesCsv, const QString& holdingsCsv,
                         const TRebalanceOptions& options, RebalanceOutput output, const QString& pdfPath) {
    if (!pdfPath.isEmpty() && !gTradesReportWriter) throw CliError("This tessary-cli was built without the PDF report");
    TGrid accounts = MakeAccountsGrid(), classes = MakeClassesGrid(), result = MakeResultGrid();
    CalculateFromCsv(accountsCsv, classesCsv, accounts, classes, result);
    const QByteArray holdingsText = ReadWholeFile(holdingsCsv);
    try {
        const TTargets targets = ReadTargets(result);
        const TClassAmounts holdings = ParseHoldingsCsv(
            std::string_view(holdingsText.constData(), std::size_t(holdingsText.size())), holdingsCsv.toStdString());
        const std::vector<TAccountTrades> trades = Rebalance(targets, holdings, options);
        if (!pdfPath.isEmpty()) gTradesReportWriter(pdfPath, accounts, classes, result, {holdings, options});
        if (output == RebalanceOutput::Json)
            return QString::fromUtf8(TradesToJson(trades).toJson(QJsonDocument::Compact)) + QLatin1Char('\n');
        return FormatTradesText(trades, AppLocale());
    } catch (const ERebalanceInput& e) {
        throw CliError(e.what());
    }
}

namespace {

// A command returns its standard output; notes that do not fail it go to
// notes, one line each.
using Command = std::function<QString(const QStringList&, QStringList& notes)>;

// Parses the options of one command; usage errors become CliError.
void Parse(QCommandLineParser& parser, const QStringList& args) {
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    if (!parser.parse(args)) throw CliError(parser.errorText().toStdString());
    if (!parser.positionalArguments().isEmpty())
        throw CliError(
            QStringLiteral("Unexpected argument \"%1\"").arg(parser.positionalArguments().first()).toStdString());
}

QString Required(const QCommandLineParser& parser, const QString& name) {
    QString value = parser.value(name);
    if (value.isEmpty()) throw CliError(QStringLiteral("Missing option --%1").arg(name).toStdString());
    return value;
}

QString RunAllocate(const QStringList& args, QStringList&) {
    QCommandLineParser parser;
    parser.addOption(
        {QStringLiteral("accounts"), QStringLiteral("Accounts CSV: label,MD,BS,QR."), QStringLiteral("file")});
    parser.addOption(
        {QStringLiteral("classes"), QStringLiteral("Targets CSV: label,percent."), QStringLiteral("file")});
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print the result grid as JSON.")});
    parser.addOption({QStringLiteral("csv"), QStringLiteral("Print the result grid as CSV.")});
    parser.addOption(
        {QStringLiteral("pdf"), QStringLiteral("Also write the one-page report."), QStringLiteral("file")});
    Parse(parser, args);
    const bool json = parser.isSet(QStringLiteral("json")), csv = parser.isSet(QStringLiteral("csv"));
    if (json && csv) throw CliError("Choose one of --json and --csv");
    if (parser.isSet(QStringLiteral("pdf")) && parser.value(QStringLiteral("pdf")).isEmpty())
        throw CliError("Missing file name after --pdf");
    return AllocateCommand(Required(parser, QStringLiteral("accounts")), Required(parser, QStringLiteral("classes")),
                           json  ? AllocateOutput::Json
                           : csv ? AllocateOutput::Csv
                                 : AllocateOutput::Text,
                           parser.value(QStringLiteral("pdf")));
}

QString RunRebalance(const QStringList& args, QStringList&) {
    QCommandLineParser parser;
    parser.addOption(
        {QStringLiteral("accounts"), QStringLiteral("Accounts CSV: label,MD,BS,QR."), QStringLiteral("file")});
    parser.addOption(
        {QStringLiteral("classes"), QStringLiteral("Targets CSV: label,percent."), QStringLiteral("file")});
    parser.addOption({QStringLiteral("holdings"), QStringLiteral("Holdings CSV: account type,class,amount."),
                      QStringLiteral("file")});
    parser.addOption({QStringLiteral("band"), QStringLiteral("Skip trades of at most P % of the account's target."),
                      QStringLiteral("P")});
    parser.addOption({QStringLiteral("no-sell-taxable"), QStringLiteral("Invest only new money in taxable accounts.")});
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print the trades as JSON.")});
    parser.addOption(
        {QStringLiteral("pdf"), QStringLiteral("Also write the report with its trades page."), QStringLiteral("file")});
    Parse(parser, args);
    if (parser.isSet(QStringLiteral("pdf")) && parser.value(QStringLiteral("pdf")).isEmpty())
        throw CliError("Missing file name after --pdf");
    TRebalanceOptions options;
    if (parser.isSet(QStringLiteral("band"))) {
        const QString band = parser.value(QStringLiteral("band"));
        double p = 0;
        if (!ParseNumber(band.toStdString(), p) || !std::isfinite(p) || p < 0)
            throw CliError(
                QStringLiteral("--band takes a percentage of 0 or more, not \"%1\"").arg(band).toStdString());
        options.BandPercent = p;
    }
    options.NoSellTaxable = parser.isSet(QStringLiteral("no-sell-taxable"));
    return RebalanceCommand(Required(parser, QStringLiteral("accounts")), Required(parser, QStringLiteral("classes")),
                            Required(parser, QStringLiteral("holdings")), options,
                            parser.isSet(QStringLiteral("json")) ? RebalanceOutput::Json : RebalanceOutput::Text,
                            parser.value(QStringLiteral("pdf")));
}

// Options the import commands share.
void AddImportOptions(QCommandLineParser& parser, bool core) {
    parser.addOption({QStringLiteral("product"), QStringLiteral("MD, BS or QR."), QStringLiteral("product")});
    parser.addOption(
        {QStringLiteral("data-dir"), QStringLiteral("The product's client files."), QStringLiteral("dir")});
    parser.addOption({QStringLiteral("data-root"), QStringLiteral("Folder with <product>/Data and <product>/Core."),
                      QStringLiteral("dir")});
    AddKeyOptions(parser);
    (void)core; // accepted by every command; only the solution steps read it
    parser.addOption({QStringLiteral("core-dir"), QStringLiteral("The product's shared data (Entries.dat)."),
                      QStringLiteral("dir")});
}

// A session that has made the product choice the options name.
std::unique_ptr<TImportSession> OpenSession(const QCommandLineParser& parser) {
    const int kind = ProductKindOf(Required(parser, QStringLiteral("product")));
    if (kind < 0)
        throw CliError(
            QStringLiteral("Unknown product \"%1\" (MD, BS or QR)").arg(parser.value("product")).toStdString());
    kv::TLibrarySettings settings = TodaysLibrarySettings();
    ApplyClientKey(settings, KeyOption(parser));
    TFolderOverrides o;
    o.DataRoot = parser.value(QStringLiteral("data-root"));
    o.DataDir = parser.value(QStringLiteral("data-dir"));
    o.CoreDir = parser.value(QStringLiteral("core-dir"));
    auto session = std::make_unique<TImportSession>(o, std::move(settings));
    session->ChooseProduct(static_cast<std::uint8_t>(kind));
    return session;
}

void ChooseFileNamed(TImportSession& session, const QString& name) {
    if (session.DataDir().isEmpty())
        throw CliError(QStringLiteral("No data directory is configured for %1 (use --data-dir or --data-root)")
                           .arg(ProductKey(session.Kind()))
                           .toStdString());
    int index = session.FindFile(name);
    if (index < 0) index = session.FindFile(UnescapedNameLine(name));
    // Without a key a protected file's name cannot be read, so any of the
    // locked ones may be the one asked for.
    if (index < 0 && !session.LockedFiles().isEmpty())
        throw CliError(QStringLiteral("Client file \"%1\" is protected and no client-file key is configured.")
                           .arg(name)
                           .toStdString());
    if (index < 0)
        throw CliError(QStringLiteral("No client file \"%1\" in %2").arg(name, session.DataDir()).toStdString());
    session.ChooseFile(index);
}

void ChooseSolutionNamed(TImportSession& session, const QString& name) {
    int index = session.FindSolution(name);
    if (index < 0) index = session.FindSolution(UnescapedNameLine(name));
    if (index < 0)
        throw CliError(QStringLiteral("No solution \"%1\" in client file \"%2\"")
                           .arg(name, session.FileNames().value(session.CurrentFile()))
                           .toStdString());
    session.ChooseSolution(index);
}

QString Lines(const QStringList& lines) {
    return lines.isEmpty() ? QString() : lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

// One name a line, with what would break the line escaped.
QString NameLines(QStringList names) {
    for (QString& n : names) n = EscapedNameLine(n);
    return Lines(names);
}

QString RunFiles(const QStringList& args, QStringList& notes) {
    QCommandLineParser parser;
    AddImportOptions(parser, false);
    Parse(parser, args);
    auto session = OpenSession(parser);
    for (const QString& folder : session->LockedFiles())
        notes << QStringLiteral(
                     "Client folder \"%1\" is protected and no client-file key is configured; it is not listed")
                     .arg(EscapedNameLine(folder));
    return NameLines(session->FileNames());
}

QString RunSolutions(const QStringList& args, QStringList&) {
    QCommandLineParser parser;
    AddImportOptions(parser, false);
    parser.addOption({QStringLiteral("file"), QStringLiteral("Client file name."), QStringLiteral("name")});
    Parse(parser, args);
    auto session = OpenSession(parser);
    ChooseFileNamed(*session, Required(parser, QStringLiteral("file")));
    return NameLines(session->SolutionNames());
}

QString RunParties(const QStringList& args, QStringList&) {
    QCommandLineParser parser;
    AddImportOptions(parser, true);
    parser.addOption({QStringLiteral("file"), QStringLiteral("Client file name."), QStringLiteral("name")});
    parser.addOption({QStringLiteral("solution"), QStringLiteral("Solution name."), QStringLiteral("name")});
    Parse(parser, args);
    auto session = OpenSession(parser);
    ChooseFileNamed(*session, Required(parser, QStringLiteral("file")));
    ChooseSolutionNamed(*session, Required(parser, QStringLiteral("solution")));
    QStringList lines;
    for (const kv::TParticipant* p : session->Parties()) lines << PartyName(*p);
    if (session->HolderListShown()) {
        lines << session->HolderFirstText();
        for (const kv::TParticipant* p : session->Holders()) lines << PartyName(*p);
    }
    return NameLines(lines);
}

const kv::TParticipant* FindParty(const std::vector<kv::TParticipant*>& list, const QString& name, const char* what) {
    for (const QString& wanted : {name, UnescapedNameLine(name)})
        for (const kv::TParticipant* p : list)
            if (PartyName(*p) == wanted) return p;
    throw CliError(QStringLiteral("No %1 \"%2\" in the solution").arg(QLatin1String(what), name).toStdString());
}

QString RunImport(const QStringList& args, QStringList&) {
    QCommandLineParser parser;
    AddImportOptions(parser, true);
    parser.addOption({QStringLiteral("file"), QStringLiteral("Client file name."), QStringLiteral("name")});
    parser.addOption({QStringLiteral("solution"), QStringLiteral("Solution name."), QStringLiteral("name")});
    parser.addOption(
        {QStringLiteral("party"), QStringLiteral("Party whose accounts are imported."), QStringLiteral("name")});
    parser.addOption({QStringLiteral("holder"), QStringLiteral("Shareholder or beneficiary."), QStringLiteral("name")});
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print the result as JSON.")});
    Parse(parser, args);
    auto session = OpenSession(parser);
    ChooseFileNamed(*session, Required(parser, QStringLiteral("file")));
    ChooseSolutionNamed(*session, Required(parser, QStringLiteral("solution")));
    const kv::TParticipant* party = FindParty(session->Parties(), Required(parser, QStringLiteral("party")), "party");
    const kv::TParticipant* holder = nullptr;
    const QString holderName = parser.value(QStringLiteral("holder"));
    if (!holderName.isEmpty() && holderName != session->HolderFirstText()) {
        if (!session->HolderListShown()) throw CliError("A holder is chosen only for the BS and QR products");
        holder = FindParty(session->Holders(), holderName, "holder");
    }
    const auto entries = session->Collect(party, holder);
    const int column = TargetColumn(session->Kind());
    if (parser.isSet(QStringLiteral("json"))) {
        QJsonArray list;
        for (const TImportEntry& e : entries) {
            QJsonObject o;
            bool ok = false;
            const int kind = QString::fromStdString(e.KindText).toInt(&ok);
            o.insert(QStringLiteral("kind"), ok ? kind : 1);
            o.insert(QStringLiteral("amount"), e.Amount);
            list.append(o);
        }
        QJsonObject doc;
        doc.insert(QStringLiteral("column"), column);
        doc.insert(QStringLiteral("entries"), list);
        return QString::fromUtf8(QJsonDocument(doc).toJson(QJsonDocument::Compact)) + QLatin1Char('\n');
    }
    QStringList lines;
    lines << QStringLiteral("Column %1 (%2)").arg(column).arg(QString::fromLatin1(kProductColumns[column - 1].data()));
    for (const TImportEntry& e : entries) {
        bool ok = false;
        const int kind = QString::fromStdString(e.KindText).toInt(&ok);
        lines << QStringLiteral("%1\t%2\t%3")
                     .arg(QString::fromStdString(e.KindText), QString::fromUtf8(AccountKindLabel(ok ? kind : 1).data()),
                          QString::number(e.Amount));
    }
    return Lines(lines);
}

QString RunDemoData(const QStringList& args, QStringList&) {
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    if (!parser.parse(args)) throw CliError(parser.errorText().toStdString());
    const QStringList dirs = parser.positionalArguments();
    if (dirs.size() != 1) throw CliError("demo-data needs one folder: tessary-cli demo-data DIR");
    WriteDemoData(QFile::encodeName(dirs.first()).toStdString());
    return QStringLiteral("Demo client files written to %1 (client-file key \"%2\")\n")
        .arg(dirs.first(), QLatin1String(kDemoClientKey));
}

const std::map<QString, Command>& Commands() {
    static const std::map<QString, Command> commands = {
        {QStringLiteral("allocate"), RunAllocate},
        {QStringLiteral("files"), RunFiles},
        {QStringLiteral("solutions"), RunSolutions},
        {QStringLiteral("parties"), RunParties},
        {QStringLiteral("import"), RunImport},
        {QStringLiteral("demo-data"), RunDemoData},
        {QStringLiteral("rebalance"), RunRebalance},
        {QStringLiteral("inspect"), [](const QStringList& args, QStringList&) { return RunInspect(args); }},
    };
    return commands;
}

QString Usage() {
    return QStringLiteral(
        "Usage: tessary-cli <command> [options]   (or --version)\n"
        "Commands:\n"
        "  allocate --accounts A.csv --classes C.csv [--json | --csv] [--pdf FILE]\n"
        "      Splits the accounts over the asset classes and prints the result grid\n"
        "      (--csv: as CSV with the numbers shown); --pdf FILE also writes the report.\n"
        "  rebalance --accounts A.csv --classes C.csv --holdings H.csv [--band P]\n"
        "            [--no-sell-taxable] [--json] [--pdf FILE]\n"
        "      The trades that take today's holdings (rows \"account type,class,amount\")\n"
        "      to the plan, account type by account type; --pdf FILE also writes the\n"
        "      report with its trades page.\n"
        "  files --product MD|BS|QR [--data-dir D]\n"
        "  solutions --product P --file NAME [--data-dir D]\n"
        "  parties --product P --file NAME --solution NAME [--data-dir D] [--core-dir C]\n"
        "      The party list, then for BS and QR the holder list.\n"
        "  import --product P --file NAME --solution NAME --party NAME [--holder NAME]\n"
        "         [--data-dir D] [--core-dir C] [--key-file F | --key - | --key K] [--json]\n"
        "      Lists, and imports from, the client files of Meridel (MD), Basalto (BS) and Quorren (QR).\n"
        "      --data-root R takes the folders R/<product>/Data and R/<product>/Core;\n"
        "      without them, the folders chosen in the window's settings, else the\n"
        "      product's own configuration.\n"
        "      The client-file key: --key-file F (its first line) or --key - (the first\n"
        "      line of standard input) keep it out of the process list; else\n"
        "      TESSARY_CLIENT_KEY, else the system keyring (set in the window's settings).\n"
        "  demo-data DIR\n"
        "      Writes demo client files of the three products into the new folder DIR.\n"
        "  inspect FILE [--core-dir C] [--key-file F | --key - | --key K] [--json] [--roundtrip]\n"
        "      Reads one FinItems.dat, Models.dat or Entries.dat (by name, else by content)\n"
        "      and prints what the library understood; nothing is written beside it.\n"
        "      The chart comes from C or the configured CoreDir (Tessary's, else the\n"
        "      product's); without an Entries.dat there, items show as plain items with\n"
        "      their entry numbers and every group value of the file is taken as the\n"
        "      chart's.\n"
        "      The key seed comes from the Models.dat of FILE's client folder (none: the\n"
        "      file is read as unprotected). --roundtrip saves the model into the system's\n"
        "      temporary folder and prints only \"identical\" or \"differs at byte N\"\n"
        "      (exit 1); a sequential file is saved sectioned, reloaded, saved again, and\n"
        "      the two sectioned copies are compared.\n"
        "files, solutions and parties print one name a line; in a name, a backslash\n"
        "prints as \\\\, a line break as \\n, a carriage return as \\r, a tab as \\t and\n"
        "any other control character as \\xHH. --file, --solution, --party and\n"
        "--holder take a name as it is or as printed.\n");
}

} // namespace

CliOutput RunCli(const QStringList& args) {
    CliOutput result;
    if (args.isEmpty() || args.first() == QLatin1String("--help") || args.first() == QLatin1String("-h")) {
        result.out = Usage();
        result.exitCode = args.isEmpty() ? 2 : 0;
        return result;
    }
    if (args.first() == QLatin1String("--version")) {
        result.out = QStringLiteral("tessary-cli " TESSARY_VERSION "\n");
        return result;
    }
    const auto& commands = Commands();
    auto it = commands.find(args.first());
    if (it == commands.end()) {
        result.err = QStringLiteral("tessary-cli: unknown command \"%1\" (try --help)\n").arg(args.first());
        result.exitCode = 2;
        return result;
    }
    try {
        // QCommandLineParser expects the program name first.
        QStringList parserArgs = args;
        parserArgs[0] = QStringLiteral("tessary-cli ") + args.first();
        QStringList notes;
        result.out = it->second(parserArgs, notes);
        for (const QString& note : notes) result.err += QStringLiteral("tessary-cli: ") + note + QLatin1Char('\n');
    } catch (const CliVerdict& v) {
        result.out = v.out;
        result.exitCode = v.exitCode;
    } catch (const std::exception& e) {
        result.err = QStringLiteral("tessary-cli: ") + QString::fromUtf8(e.what()).simplified() + QLatin1Char('\n');
        result.exitCode = 1;
    }
    return result;
}

} // namespace tessary
