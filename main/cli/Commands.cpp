#include "cli/Commands.h"

#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <functional>
#include <map>

#include "cli/GridFormat.h"
#include "core/Allocation.h"
#include "core/CsvInput.h"
#include "core/Totals.h"

namespace tessary {

QByteArray ReadWholeFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw CliError(QStringLiteral("Cannot read \"%1\": %2").arg(path, file.errorString()).toStdString());
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw CliError(QStringLiteral("Cannot read \"%1\": %2").arg(path, file.errorString()).toStdString());
    return bytes;
}

QString AllocateCommand(const QString& accountsCsv, const QString& classesCsv, bool json) {
    const QByteArray accountsText = ReadWholeFile(accountsCsv);
    const QByteArray classesText = ReadWholeFile(classesCsv);

    TGrid accounts = MakeAccountsGrid();
    TGrid classes = MakeClassesGrid();
    TGrid result = MakeResultGrid();
    LoadAccountsCsv(std::string_view(accountsText.constData(), static_cast<std::size_t>(accountsText.size())), accounts);
    LoadClassesCsv(std::string_view(classesText.constData(), static_cast<std::size_t>(classesText.size())), classes);

    CalculateAllocation(accounts, classes, result, kDesignAddAccWidth);

    if (json) return QString::fromUtf8(GridToJson(result).toJson(QJsonDocument::Compact)) + QLatin1Char('\n');
    return FormatGridText(result, GridKind::Result, AppLocale());
}

namespace {

using Command = std::function<QString(const QStringList&)>;

// Parses the options of one command; usage errors become CliError.
void Parse(QCommandLineParser& parser, const QStringList& args) {
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    if (!parser.parse(args)) throw CliError(parser.errorText().toStdString());
    if (!parser.positionalArguments().isEmpty())
        throw CliError(QStringLiteral("Unexpected argument \"%1\"").arg(parser.positionalArguments().first()).toStdString());
}

QString Required(const QCommandLineParser& parser, const QString& name) {
    QString value = parser.value(name);
    if (value.isEmpty()) throw CliError(QStringLiteral("Missing option --%1").arg(name).toStdString());
    return value;
}

QString RunAllocate(const QStringList& args) {
    QCommandLineParser parser;
    parser.addOption({QStringLiteral("accounts"), QStringLiteral("Accounts CSV: label,MD,BS,QR."), QStringLiteral("file")});
    parser.addOption({QStringLiteral("classes"), QStringLiteral("Targets CSV: label,percent."), QStringLiteral("file")});
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print the result grid as JSON.")});
    Parse(parser, args);
    return AllocateCommand(Required(parser, QStringLiteral("accounts")), Required(parser, QStringLiteral("classes")),
                           parser.isSet(QStringLiteral("json")));
}

const std::map<QString, Command>& Commands() {
    static const std::map<QString, Command> commands = {
        {QStringLiteral("allocate"), RunAllocate},
    };
    return commands;
}

QString Usage() {
    return QStringLiteral(
        "Usage: tessary-cli <command> [options]\n"
        "Commands:\n"
        "  allocate --accounts A.csv --classes C.csv [--json]\n"
        "      Splits the accounts over the asset classes and prints the result grid.\n");
}

} // namespace

CliOutput RunCli(const QStringList& args) {
    CliOutput result;
    if (args.isEmpty() || args.first() == QLatin1String("--help") || args.first() == QLatin1String("-h")) {
        result.out = Usage();
        result.exitCode = args.isEmpty() ? 2 : 0;
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
        result.out = it->second(parserArgs);
    } catch (const std::exception& e) {
        result.err = QStringLiteral("tessary-cli: ") + QString::fromUtf8(e.what()).simplified() + QLatin1Char('\n');
        result.exitCode = 1;
    }
    return result;
}

} // namespace tessary
