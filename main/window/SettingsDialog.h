// The settings an adviser manages: each product's data and core folder, kept
// in Tessary's own settings ("Products/<product>/DataDir", "CoreDir"; the
// products' configurations are only read), and the client-file key, kept in
// the system keyring and never in Tessary.conf.
#pragma once

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <array>

#include "import/ImportSession.h"
#include "import/KeyStore.h"
#include "window/MessageDialog.h"

namespace tessary {

class TdlgSettings : public TdlgMsg {
    Q_OBJECT
public:
    // overrides: the folders this run was started with, which beat the
    // settings until the next start.
    explicit TdlgSettings(TFolderOverrides overrides = {}, double zoom = 1.0, QWidget* parent = nullptr);

    struct TFolderRow {
        QLineEdit* edit;     // edDataDirMD, edCoreDirMD, ...
        QPushButton* browse; // btnDataDirMD, ...
        QLabel* state;       // lblDataDirMD, ...: what was found there
        QString initial;     // the text shown at opening, kept when unchanged
    };
    struct TProductRows {
        TFolderRow data;
        TFolderRow core;
    };
    std::array<TProductRows, 3> products; // by product kind

    QLabel* overridesLabel;       // lblOverrides: this run's options beat the folders below
    QLineEdit* keyEdit;           // edKey: masked; stored in the keyring at OK
    QLabel* keyringLabel;         // lblKeyring: what the keyring holds, or that there is none
    QPushButton* forgetKeyButton; // btnForgetKey
    QLabel* oldKeyLabel;          // lblOldKey: a key still in Tessary.conf
    QPushButton* moveKeyButton;   // btnMoveKey
    QPushButton* testKeyButton;   // btnTestKey
    QLabel* testLabel;            // lblTest
    QPushButton* okButton;        // hbtOK
    QPushButton* cancelButton;    // hbtCancel

    // The live lines under the folders, at once (they follow typing after a pause).
    void RefreshStates();
    // The folder a row stands for: its text expanded, else the product's configuration.
    QString EffectiveFolder(int kind, bool core) const;

public slots:
    void hbtOKClick();
    void btnTestKeyClick();
    void btnMoveKeyClick();
    void btnForgetKeyClick();

private:
    void BuildProduct(int kind, QGridLayout* grid, int row);
    void Browse(TFolderRow& row, const QString& title);
    void RefreshKeyring();
    void ShowKeyringLine(const QString& text, bool problem);
    QString SettingsKey(int kind, bool core) const;
    static QString ClientFilesText(int files, int locked);

    TFolderOverrides overrides_;
    TKeyStore store_;
    bool keyringReached_ = false;
    QTimer refreshTimer_;
};

} // namespace tessary
