// Renders the import screenshots of docs/screenshots/ from the real window and
// dialog over freshly written demo client files:
//   tessary-shots OUTDIR CLASSES.csv
// and of the settings dialog in the current language:
//   tessary-shots --settings OUTDIR
#include <QApplication>
#include <QFile>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdio>

#include "cli/Commands.h"
#include "demo/DemoData.h"
#include "window/ImportDialog.h"
#include "window/Language.h"
#include "window/MainWindow.h"
#include "window/SettingsDialog.h"

using namespace tessary;

namespace {

void Pick(QComboBox* c, const QString& text) {
    const int i = c->findText(text);
    if (i < 0) throw std::runtime_error("no item " + text.toStdString());
    c->setCurrentIndex(i);
    emit c->activated(i);
}

// The window with the dialog drawn where it stands over it.
QImage Composite(TForm1& form, QWidget& dialog) {
    QImage image = form.grab().toImage();
    QPainter p(&image);
    p.drawPixmap(dialog.geometry().topLeft() - form.geometry().topLeft(), dialog.grab());
    return image;
}

// Runs one import through the real button; `drive` works the modal dialog.
void Import(TForm1& form, const std::function<void(TdlgFromFile&)>& drive) {
    QTimer::singleShot(50, [&] {
        auto* dlg = qobject_cast<TdlgFromFile*>(QApplication::activeModalWidget());
        if (!dlg) {
            std::fprintf(stderr, "tessary-shots: the import dialog did not open\n");
            QApplication::exit(1);
            return;
        }
        drive(*dlg);
    });
    form.btnImpClick();
}

// The settings dialog over the demo folders, Tessary's own choices filled
// in, the demo key typed and tried.
int SettingsShot(const QString& out) {
    QTemporaryDir root;
    const QString demo = root.path() + "/demo";
    WriteDemoData(QFile::encodeName(demo).toStdString());
    {
        QSettings settings = ProgramSettings();
        for (const char* product : {"Meridel", "Basalto", "Quorren"}) {
            const QString base = demo + "/" + QLatin1String(product);
            settings.setValue(QStringLiteral("Products/%1/DataDir").arg(QLatin1String(product)), base + "/Data");
            settings.setValue(QStringLiteral("Products/%1/CoreDir").arg(QLatin1String(product)),
                              base + (product[0] == 'B' ? "" : "/Core"));
        }
    }
    TdlgSettings dlg;
    dlg.show();
    if (!QTest::qWaitForWindowExposed(&dlg)) return 1;
    dlg.keyEdit->setText(QString::fromLatin1(kDemoClientKey));
    dlg.btnTestKeyClick();
    QTest::qWait(100);
    const QString file =
        out + (CurrentLanguage() == TLanguage::French ? "/settings-dialog-fr.png" : "/settings-dialog.png");
    if (!dlg.grab().save(file, "PNG")) {
        std::fprintf(stderr, "tessary-shots: cannot write %s\n", qPrintable(file));
        return 1;
    }
    ProgramSettings().remove(QStringLiteral("Products"));
    std::printf("wrote %s\n", qPrintable(file));
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc == 3 && QByteArray(argv[1]) == "--settings") {
        ApplyLanguage(StartLanguage());
        return SettingsShot(QString::fromLocal8Bit(argv[2]));
    }
    if (argc != 3) {
        std::fprintf(stderr, "usage: tessary-shots OUTDIR CLASSES.csv\n");
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    ApplyLanguage(StartLanguage());
    try {
        QTemporaryDir root;
        const QString demo = root.path() + "/demo";
        WriteDemoData(QFile::encodeName(demo).toStdString());
        kv::TLibrarySettings settings = TodaysLibrarySettings();
        ApplyClientKey(settings, QString::fromLatin1(kDemoClientKey));

        TForm1 form;
        TFolderOverrides folders;
        folders.DataRoot = demo;
        form.SetImportFolders(folders);
        form.SetImportSettings(settings);
        form.LoadInputs({}, ReadWholeFile(QString::fromLocal8Bit(argv[2])));
        form.show();
        if (!QTest::qWaitForWindowExposed(&form)) throw std::runtime_error("the window was not shown");

        bool saved = false;
        Import(form, [&](TdlgFromFile& d) {
            d.productBsRadio->click();
            Pick(d.holderCombo, QStringLiteral("Paul Côté"));
            QTest::qWait(100);
            saved = Composite(form, d).save(out + "/import-dialog.png", "PNG");
            d.okButton->click();
        });
        Import(form, [](TdlgFromFile& d) {
            Pick(d.fileCombo, QStringLiteral("Tremblay"));
            Pick(d.partyCombo, QStringLiteral("Marie Tremblay"));
            d.okButton->click();
        });
        form.btnCalculateClick();
        QTest::qWait(100);
        saved = form.grab().save(out + "/main-window-after-import.png", "PNG") && saved;

        // Without a key the protected file is listed last, locked, and says why.
        qunsetenv("TESSARY_CLIENT_KEY");
        form.SetImportSettings(TodaysLibrarySettings());
        Import(form, [&](TdlgFromFile& d) {
            d.fileCombo->setCurrentIndex(d.fileCombo->count() - 1);
            emit d.fileCombo->activated(d.fileCombo->count() - 1);
            QTest::qWait(100);
            saved = Composite(form, d).save(out + "/import-dialog-locked.png", "PNG") && saved;
            d.cancelButton->click();
        });
        if (!saved) throw std::runtime_error("cannot write the screenshots into " + out.toStdString());
    } catch (const std::exception& e) {
        std::fprintf(stderr, "tessary-shots: %s\n", e.what());
        return 1;
    }
    std::printf("wrote %s/import-dialog.png, %s/main-window-after-import.png and %s/import-dialog-locked.png\n",
                argv[1], argv[1], argv[1]);
    return 0;
}
