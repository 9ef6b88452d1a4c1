// The second page of the window: today's holdings (asset class by account
// type, as the result grid lays them out), the band and the no-sales option,
// and the trades that take the holdings to the plan of the result grid.
#pragma once

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QWidget>
#include <functional>
#include <vector>

#include "core/Grid.h"
#include "core/Rebalance.h"
#include "window/NoticeLine.h"

namespace tessary {

class TTradesPage : public QWidget {
    Q_OBJECT
public:
    // input: the holdings and options the worksheet keeps; result: the plan.
    TTradesPage(TTradesInput& input, const TGrid& result, QWidget* parent);

    // The grids' text and row height, as the window's own grids have them.
    void SetGridFont(const QFont& font, int rowHeight);
    // The trades anew from the plan and the input as they stand.
    void Recompute();
    // After the input was replaced as a whole (a worksheet opened, New).
    void ShowInput();
    // A holdings CSV as tessary-cli rebalance reads it; replaces the holdings.
    bool LoadHoldingsCsv(const QString& path);
    // Tab-separated cells pasted from the current holdings cell on.
    void PasteHoldings(const QString& text);

    const std::vector<TAccountTrades>& Trades() const { return trades_; }
    QStringList Notices() const { return noticeLine->Notices(); }

    // Replaceable for tests; by default dialogs.
    std::function<QString(bool save, const QString& caption, const QString& filter)> ChooseFile;
    std::function<void(const QString& message)> ShowError;

    QLabel* holdingsLabel;
    QTableWidget* holdingsGrid; // grdHoldings
    QPushButton* loadButton;    // btnLoadHoldings
    QPushButton* clearButton;   // btnClearHoldings
    QLabel* bandLabel;
    QDoubleSpinBox* bandEdit; // edtBand
    QCheckBox* noSellCheck;   // cbNoSellTaxable
    TNoticeLine* noticeLine;
    QLabel* tradesLabel;
    QTableWidget* tradesGrid;  // grdTrades
    QPushButton* copyButton;   // btnCopyTrades
    QPushButton* exportButton; // btnExportTrades

public slots:
    void CopyTrades();
    void ExportTradesCsv();
    void LoadHoldingsClick();

signals:
    // Holdings or options edited: the worksheet changed.
    void inputChanged();

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Retranslate();
    void FillHoldings();
    void FillTrades();
    // The holdings from the cells; a cell that is no amount is marked and left out.
    void ReadHoldingsCells();
    void HoldingsEdited();
    void Fail(const QString& message);

    TTradesInput& input_;
    const TGrid& result_;
    std::vector<TAccountTrades> trades_;
    bool hasPlan_ = false;
    bool filling_ = false;
};

} // namespace tessary
