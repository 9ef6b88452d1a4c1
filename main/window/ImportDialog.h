// The import dialog: product, client file, solution, party and holder.
#pragma once

#include <QComboBox>
#include <QDialog>

#include "window/MessageDialog.h"
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <functional>
#include <memory>
#include <vector>

#include "core/ImportMerge.h"
#include "import/ImportSession.h"
#include "window/Chrome.h"

namespace tessary {

class TdlgFromFile : public TdlgMsg {
    Q_OBJECT
public:
    // zoom: the main window's, so both look alike; settings: the library
    // settings of the dialog's import session.
    explicit TdlgFromFile(TFolderOverrides folders = {}, double zoom = 1.0, QWidget* parent = nullptr,
                          kv::TLibrarySettings settings = TodaysLibrarySettings());
    ~TdlgFromFile() override;

    // Stores the mode (1: the model's identifying text) and hides the party lists.
    void Init(int mode);

    std::uint8_t Kind() const { return session_.Kind(); }
    TImportSession& Session() { return session_; }
    // The result list that hbtYesClick fills.
    const std::vector<TImportEntry>& Result() const { return result_; }
    const QStringList& ResultTexts() const { return resultTexts_; }
    // A loading error raised before the dialog was shown, waiting to be shown with it.
    QString PendingError() const { return pendingError_; }

    // How a loading error is shown; a message box unless replaced (tests do).
    std::function<void(const QString&)> ShowError;
    // The --key option of this run, which beats a key stored in the settings.
    QString ClientKeyOption;

    // Widgets; each carries its design name (the comment) as objectName.
    TCaptionBar* captionBar;      // pnCaption
    QLabel* captionLabel;         // lblCaptionBar
    QRadioButton* productMdRadio; // cbMD
    QRadioButton* productBsRadio; // cbBS
    QRadioButton* productQrRadio; // cbQR
    QLabel* fileLabel;            // lblBSFile
    QComboBox* fileCombo;         // cmbFile
    QLabel* solutionLabel;        // lblBSSolution
    QComboBox* solutionCombo;     // cmbSolution
    QLabel* partyLabel;           // Label1
    QComboBox* partyCombo;        // cmbParty
    QLabel* holderLabel;          // Label2
    QComboBox* holderCombo;       // cmbImpParty
    QLabel* statusLabel;          // lblStatus: why the lists are empty or a file is locked
    QPushButton* settingsButton;  // btnSettings: offered when a folder or the key is missing
    QPushButton* okButton;        // hbtYes
    QPushButton* cancelButton;    // hbtNo

public slots:
    void cbMDClick();
    void cmbFileChange();
    void cmbSolutionChange();
    void hbtYesClick();
    // The settings dialog; the lists are read anew after it.
    void btnSettingsClick();

signals:
    // The settings dialog was confirmed: folders or the stored key may differ.
    void SettingsChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void Report(const std::exception& e);
    void ClearPartyLists();
    void ApplyPartyLabels();
    // Says a state of the data folder or of the chosen file; "" hides the line.
    void ShowStatus(const QString& text, bool offerSettings = false);
    void ShowFolderState(const QString& dataDir);
    QString LockedText(const QString& folder) const;
    void PlaceButtons();

    TImportSession session_;
    std::vector<TImportEntry> result_;
    QStringList resultTexts_; // mode 1
    QString pendingError_;
    double zoom_;
    QPoint dragOffset_;
    bool dragging_ = false;
};

} // namespace tessary
