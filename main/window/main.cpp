// tessary: the allocator's window.
#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QTimer>
#include <cstdio>
#include <cstring>

#include "cli/Commands.h"
#include "window/Language.h"
#include "window/MainWindow.h"
#include "window/WindowLog.h"

int main(int argc, char** argv) {
    // Before the application: asking the version needs no display.
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--version") == 0) {
            std::printf("tessary %s\n", TESSARY_VERSION);
            return 0;
        }
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Torvane Labs Inc."));
    QApplication::setApplicationName(QStringLiteral("Tessary"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Splits a client's invested money over asset classes."));
    parser.addHelpOption();
    parser.addOption({QStringLiteral("version"), QStringLiteral("Print the version and quit.")});
    parser.addOption({QStringLiteral("accounts"), QStringLiteral("Fill the accounts grid from a CSV file."),
                      QStringLiteral("file")});
    parser.addOption(
        {QStringLiteral("classes"), QStringLiteral("Fill the targets grid from a CSV file."), QStringLiteral("file")});
    parser.addOption({QStringLiteral("calculate"), QStringLiteral("Calculate once the grids are filled.")});
    parser.addOption({QStringLiteral("holdings"),
                      QStringLiteral("Fill the holdings of the trades page from a CSV file "
                                     "(account type,class,amount)."),
                      QStringLiteral("file")});
    parser.addOption(
        {QStringLiteral("band"), QStringLiteral("The trades' band in percentage points."), QStringLiteral("points")});
    parser.addOption({QStringLiteral("no-sell-taxable"), QStringLiteral("No sales in taxable accounts.")});
    parser.addOption({QStringLiteral("trades"), QStringLiteral("Start on the trades page.")});
    parser.addOption({QStringLiteral("screenshot"), QStringLiteral("Render the window to a PNG file and quit."),
                      QStringLiteral("file")});
    parser.addOption({QStringLiteral("data-root"),
                      QStringLiteral("Import from DIR/<product>/Data and DIR/<product>/Core instead of the "
                                     "products' configured folders."),
                      QStringLiteral("dir")});
    parser.addOption({QStringLiteral("key"),
                      QStringLiteral("Client-file key for protected client files; \"-\" reads it from standard input."),
                      QStringLiteral("key")});
    parser.addOption({QStringLiteral("key-file"), QStringLiteral("File whose first line is the client-file key."),
                      QStringLiteral("file")});
    parser.addPositionalArgument(QStringLiteral("worksheet"), QStringLiteral("A .tessary worksheet to open."),
                                 QStringLiteral("[worksheet]"));
    parser.process(app);
    // The run's library settings: today's date; the key is read when an import first needs it.
    kv::TLibrarySettings settings = tessary::TodaysLibrarySettings();
    QString keyOption;
    try {
        keyOption = tessary::KeyOption(parser);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "tessary: %s\n", e.what());
        return 1;
    }
    tessary::ApplyLanguage(tessary::StartLanguage());

    tessary::TForm1 form;
    tessary::TFolderOverrides folders;
    folders.DataRoot = parser.value(QStringLiteral("data-root"));
    form.SetImportFolders(folders);
    form.SetImportSettings(settings);
    form.SetClientKeyOption(keyOption);
    try {
        const QString accounts = parser.value(QStringLiteral("accounts"));
        const QString classes = parser.value(QStringLiteral("classes"));
        if (!accounts.isEmpty() || !classes.isEmpty())
            form.LoadInputs(accounts.isEmpty() ? QByteArray() : tessary::ReadWholeFile(accounts),
                            classes.isEmpty() ? QByteArray() : tessary::ReadWholeFile(classes));
    } catch (const std::exception& e) {
        qCCritical(tessary::lcWindow).noquote() << e.what();
        return 1;
    }
    // A worksheet that cannot be read is reported in the window, which then starts empty.
    if (!parser.positionalArguments().isEmpty()) form.Document().OpenWorksheet(parser.positionalArguments().first());
    if (parser.isSet(QStringLiteral("holdings")) &&
        !form.tradesPage->LoadHoldingsCsv(parser.value(QStringLiteral("holdings"))))
        return 1;
    if (parser.isSet(QStringLiteral("band")))
        form.tradesPage->bandEdit->setValue(parser.value(QStringLiteral("band")).toDouble());
    form.tradesPage->noSellCheck->setChecked(parser.isSet(QStringLiteral("no-sell-taxable")));
    if (parser.isSet(QStringLiteral("calculate"))) form.btnCalculateClick();
    if (parser.isSet(QStringLiteral("trades"))) form.ShowTradesPage(true);
    form.show();

    const QString shot = parser.value(QStringLiteral("screenshot"));
    if (!shot.isEmpty()) {
        QTimer::singleShot(300, &form, [&form, shot] {
            const bool ok = form.grab().save(shot, "PNG");
            if (!ok) qCCritical(tessary::lcWindow).noquote() << "cannot write" << shot;
            QApplication::exit(ok ? 0 : 1);
        });
    }
    return app.exec();
}
