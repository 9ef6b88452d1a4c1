#include "window/TradesPage.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMessageBox>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "core/Notices.h"
#include "core/Vocabulary.h"
#include "format/Export.h"
#include "format/GridFormat.h"
#include "format/TradesFormat.h"

namespace tessary {

namespace {

const QColor kBuy(0x1B, 0x7F, 0x3B);
const QColor kSell(0xB3, 0x26, 0x1E);
const QColor kAccountFill(0xEE, 0xF0, 0xF3);
const QColor kBadCell(0xF8, 0xD7, 0xD4);

// Money as typed or pasted: "250000", "$250,000", "1 234,50 $", "(1,234)".
bool ParseAmount(QString text, const QLocale& locale, double& value) {
    text = text.trimmed();
    const bool parenthesised = text.startsWith(QLatin1Char('(')) && text.endsWith(QLatin1Char(')'));
    if (parenthesised) text = text.mid(1, text.size() - 2);
    text.remove(locale.currencySymbol());
    text.remove(QLatin1Char('$'));
    text.remove(QRegularExpression(QStringLiteral("[\\s\\x{00A0}\\x{202F}]")));
    if (text.isEmpty()) return false;
    bool ok = false;
    value = locale.toDouble(text, &ok);
    if (!ok) value = QLocale::c().toDouble(QString(text).remove(QLatin1Char(',')), &ok);
    if (!ok || !std::isfinite(value)) return false;
    if (parenthesised) value = -value;
    return true;
}

QTableWidgetItem* Item(const QString& text, Qt::Alignment align = Qt::AlignRight | Qt::AlignVCenter) {
    auto* item = new QTableWidgetItem(text);
    item->setTextAlignment(align);
    return item;
}

} // namespace

TTradesPage::TTradesPage(TTradesInput& input, const TGrid& result, QWidget* parent)
    : QWidget(parent), input_(input), result_(result) {
    setObjectName(QStringLiteral("pgTrades"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("#pgTrades { background: white; }"));

    holdingsLabel = new QLabel(this);
    holdingsGrid = new QTableWidget(kAssetClassCount, kAccountTypeCount, this);
    holdingsGrid->setObjectName(QStringLiteral("grdHoldings"));
    holdingsGrid->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    holdingsGrid->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    holdingsGrid->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    holdingsGrid->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    holdingsGrid->installEventFilter(this);
    loadButton = new QPushButton(this);
    loadButton->setObjectName(QStringLiteral("btnLoadHoldings"));
    clearButton = new QPushButton(this);
    clearButton->setObjectName(QStringLiteral("btnClearHoldings"));

    bandLabel = new QLabel(this);
    bandEdit = new QDoubleSpinBox(this);
    bandEdit->setObjectName(QStringLiteral("edtBand"));
    bandEdit->setRange(0, 100);
    bandEdit->setDecimals(1);
    bandEdit->setSingleStep(0.5);
    bandLabel->setBuddy(bandEdit);
    noSellCheck = new QCheckBox(this);
    noSellCheck->setObjectName(QStringLiteral("cbNoSellTaxable"));
    noticeLine = new TNoticeLine(this);
    noticeLine->setObjectName(QStringLiteral("lblTradesNotices"));

    tradesLabel = new QLabel(this);
    tradesGrid = new QTableWidget(0, 5, this);
    tradesGrid->setObjectName(QStringLiteral("grdTrades"));
    tradesGrid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tradesGrid->verticalHeader()->hide();
    tradesGrid->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    tradesGrid->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    tradesGrid->setWordWrap(false);
    tradesGrid->installEventFilter(this);
    copyButton = new QPushButton(this);
    copyButton->setObjectName(QStringLiteral("btnCopyTrades"));
    exportButton = new QPushButton(this);
    exportButton->setObjectName(QStringLiteral("btnExportTrades"));

    auto* top = new QHBoxLayout;
    top->addWidget(holdingsLabel);
    top->addStretch();
    top->addWidget(loadButton);
    top->addWidget(clearButton);
    auto* options = new QHBoxLayout;
    options->addWidget(bandLabel);
    options->addWidget(bandEdit);
    options->addSpacing(16);
    options->addWidget(noSellCheck);
    options->addStretch();
    auto* tradesTop = new QHBoxLayout;
    tradesTop->addWidget(tradesLabel);
    tradesTop->addWidget(noticeLine, 1);
    tradesTop->addWidget(copyButton);
    tradesTop->addWidget(exportButton);
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->addLayout(top);
    page->addWidget(holdingsGrid);
    page->addLayout(options);
    page->addLayout(tradesTop);
    page->addWidget(tradesGrid, 1);

    connect(holdingsGrid, &QTableWidget::itemChanged, this, [this] {
        if (!filling_) HoldingsEdited();
    });
    // Enter moves down, as in the window's other grids: a column of amounts is typed in one go.
    connect(holdingsGrid->itemDelegate(), &QAbstractItemDelegate::closeEditor, this,
            [this](QWidget*, QAbstractItemDelegate::EndEditHint hint) {
                if (hint != QAbstractItemDelegate::SubmitModelCache) return;
                const int row = std::min(holdingsGrid->currentRow() + 1, holdingsGrid->rowCount() - 1);
                holdingsGrid->setCurrentCell(row, holdingsGrid->currentColumn());
            });
    connect(bandEdit, &QDoubleSpinBox::valueChanged, this, [this](double v) {
        if (filling_) return;
        input_.Options.BandPercent = v;
        Recompute();
        emit inputChanged();
    });
    connect(noSellCheck, &QCheckBox::toggled, this, [this](bool on) {
        if (filling_) return;
        input_.Options.NoSellTaxable = on;
        Recompute();
        emit inputChanged();
    });
    connect(loadButton, &QPushButton::clicked, this, &TTradesPage::LoadHoldingsClick);
    connect(clearButton, &QPushButton::clicked, this, [this] {
        input_.Holdings = {};
        FillHoldings();
        Recompute();
        emit inputChanged();
    });
    connect(copyButton, &QPushButton::clicked, this, &TTradesPage::CopyTrades);
    connect(exportButton, &QPushButton::clicked, this, &TTradesPage::ExportTradesCsv);

    Retranslate();
    ShowInput();
}

void TTradesPage::SetGridFont(const QFont& font, int rowHeight) {
    for (QTableWidget* g : {holdingsGrid, tradesGrid}) {
        g->setFont(font);
        g->verticalHeader()->setMinimumSectionSize(rowHeight);
        g->verticalHeader()->setDefaultSectionSize(rowHeight);
    }
    holdingsGrid->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    // Exactly its six rows: no empty band under them.
    holdingsGrid->setFixedHeight(holdingsGrid->horizontalHeader()->sizeHint().height() + kAssetClassCount * rowHeight +
                                 2 * holdingsGrid->frameWidth());
}

void TTradesPage::Retranslate() {
    holdingsLabel->setText(tr("Holdings today"));
    holdingsGrid->setAccessibleName(tr("Holdings today"));
    holdingsGrid->setToolTip(tr("Type amounts, or paste cells copied from a spreadsheet (Ctrl+V)"));
    loadButton->setText(tr("Load CSV..."));
    loadButton->setToolTip(tr("Holdings from a CSV file: account type, class, amount"));
    clearButton->setText(tr("Clear"));
    clearButton->setAccessibleName(tr("Clear holdings"));
    bandLabel->setText(tr("Band (percentage points):"));
    bandEdit->setAccessibleName(tr("Band in percentage points"));
    bandEdit->setToolTip(tr("Trades no larger than this share of the account are skipped"));
    noSellCheck->setText(tr("No sales in taxable accounts"));
    tradesLabel->setText(tr("Trades"));
    tradesGrid->setAccessibleName(tr("Trades"));
    copyButton->setText(tr("Copy"));
    copyButton->setToolTip(tr("Copy the trades for a spreadsheet (Ctrl+C)"));
    exportButton->setText(tr("Export CSV..."));
    QStringList types, classes;
    // Two lines where a label has two words: seven columns share the width.
    for (int t = 1; t <= kAccountTypeCount; ++t)
        types << VocabularyText(std::string(AccountTypeLabel(t))).replace(QLatin1Char(' '), QLatin1Char('\n'));
    for (int c = 1; c <= kAssetClassCount; ++c) classes << VocabularyText(std::string(AssetClassLabel(c)));
    holdingsGrid->setHorizontalHeaderLabels(types);
    holdingsGrid->setVerticalHeaderLabels(classes);
    const QStringList headers = TradesHeaders();
    tradesGrid->setHorizontalHeaderLabels({headers[1], headers[2], headers[3], headers[4], headers[5]});
    // New texts, new widths: the notice line is elided to what is left, now rather than later.
    if (layout()) layout()->activate();
}

void TTradesPage::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        Retranslate();
        FillHoldings();
        FillTrades();
    }
}

void TTradesPage::ShowInput() {
    // Holdings replaced as a whole: nothing typed before is kept, marked or not.
    filling_ = true;
    holdingsGrid->clearContents();
    bandEdit->setValue(input_.Options.BandPercent);
    noSellCheck->setChecked(input_.Options.NoSellTaxable);
    filling_ = false;
    FillHoldings();
    Recompute();
}

void TTradesPage::FillHoldings() {
    filling_ = true;
    const QLocale locale = AppLocale();
    for (int c = 1; c <= kAssetClassCount; ++c)
        for (int t = 1; t <= kAccountTypeCount; ++t) {
            QTableWidgetItem* item = holdingsGrid->item(c - 1, t - 1);
            // A cell marked as no amount keeps what was typed, for correcting.
            if (item && item->data(Qt::UserRole).toBool()) continue;
            holdingsGrid->setItem(
                c - 1, t - 1,
                Item(input_.Holdings.Named(t, c) ? FormatMoney(input_.Holdings.Get(t, c), locale) : QString()));
        }
    filling_ = false;
}

void TTradesPage::ReadHoldingsCells() {
    const QLocale locale = AppLocale();
    TClassAmounts holdings;
    filling_ = true;
    for (int r = 0; r < holdingsGrid->rowCount(); ++r)
        for (int c = 0; c < holdingsGrid->columnCount(); ++c) {
            QTableWidgetItem* item = holdingsGrid->item(r, c);
            if (!item || item->text().trimmed().isEmpty()) {
                if (item) item->setData(Qt::UserRole, false), item->setBackground(QBrush());
                continue;
            }
            double value = 0;
            const bool ok = ParseAmount(item->text(), locale, value);
            item->setData(Qt::UserRole, !ok);
            item->setBackground(ok ? QBrush() : QBrush(kBadCell));
            item->setToolTip(ok ? QString() : tr("Not an amount: left out"));
            if (ok) holdings.Add(c + 1, r + 1, value);
        }
    filling_ = false;
    input_.Holdings = holdings;
}

void TTradesPage::PasteHoldings(const QString& text) {
    QStringList lines = text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty()) lines.removeLast();
    const int top = std::max(0, holdingsGrid->currentRow()), left = std::max(0, holdingsGrid->currentColumn());
    filling_ = true;
    for (int i = 0; i < lines.size() && top + i < holdingsGrid->rowCount(); ++i) {
        QString line = lines[i];
        if (line.endsWith(QLatin1Char('\r'))) line.chop(1);
        const QStringList fields = line.split(QLatin1Char('\t'));
        for (int j = 0; j < fields.size() && left + j < holdingsGrid->columnCount(); ++j) {
            QTableWidgetItem* item = Item(fields[j].trimmed());
            holdingsGrid->setItem(top + i, left + j, item);
        }
    }
    filling_ = false;
    HoldingsEdited();
}

void TTradesPage::HoldingsEdited() {
    ReadHoldingsCells();
    FillHoldings();
    Recompute();
    emit inputChanged();
}

bool TTradesPage::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (watched == holdingsGrid && key->matches(QKeySequence::Paste)) {
            PasteHoldings(QApplication::clipboard()->text());
            return true;
        }
        // While a cell is edited its editor gets the keys, not the grid.
        if (watched == holdingsGrid && (key->key() == Qt::Key_Delete || key->key() == Qt::Key_Backspace)) {
            filling_ = true;
            for (QTableWidgetItem* item : holdingsGrid->selectedItems()) item->setText(QString());
            filling_ = false;
            HoldingsEdited();
            return true;
        }
        if (watched == tradesGrid && key->matches(QKeySequence::Copy)) {
            CopyTrades();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void TTradesPage::Recompute() {
    trades_.clear();
    hasPlan_ = false;
    std::vector<TNotice> notices;
    try {
        const TTargets targets = ReadTargets(result_);
        hasPlan_ = !targets.AccountTypes.empty();
        if (hasPlan_) {
            trades_ = Rebalance(targets, input_.Holdings, input_.Options);
            notices = TradesNotices(&targets, trades_, input_.Options);
        }
    } catch (const ERebalanceInput&) {
        notices = TradesNotices(nullptr, {}, input_.Options);
    }
    noticeLine->ShowNotices(notices);
    FillTrades();
}

void TTradesPage::FillTrades() {
    tradesGrid->clearContents();
    if (!hasPlan_) {
        tradesGrid->setRowCount(1);
        tradesGrid->setItem(
            0, 0, Item(tr("No plan yet: press Calculate on the allocation page."), Qt::AlignLeft | Qt::AlignVCenter));
        return;
    }
    const QLocale locale = AppLocale();
    const std::vector<TTradesRow> rows = TradesRows(trades_);
    tradesGrid->setRowCount(static_cast<int>(rows.size()));
    for (int r = 0; r < static_cast<int>(rows.size()); ++r) {
        const TTradesRow& row = rows[static_cast<std::size_t>(r)];
        using Kind = TTradesRow::Kind;
        const bool heading = row.kind == Kind::Account || row.kind == Kind::Total;
        auto money = [&](const std::optional<double>& v) { return v ? FormatMoney(*v, locale) : QString(); };
        auto signedMoney = [&](const std::optional<double>& v, const QString& sign) {
            return v && RoundHalfEven(*v) != 0 ? sign + money(v) : money(v);
        };
        QTableWidgetItem* cells[] = {
            Item(heading ? row.account : QStringLiteral("    ") + row.item, Qt::AlignLeft | Qt::AlignVCenter),
            Item(money(row.current)), Item(money(row.target)),
            // A sign as well as a colour, for those who do not see the colours apart.
            Item(signedMoney(row.buy, QStringLiteral("+"))), Item(signedMoney(row.sell, QStringLiteral("\u2212")))};
        cells[3]->setForeground(kBuy);
        cells[4]->setForeground(kSell);
        for (int c = 0; c < 5; ++c) {
            if (heading) {
                QFont f = tradesGrid->font();
                f.setBold(true);
                cells[c]->setFont(f);
                cells[c]->setBackground(kAccountFill);
            }
            tradesGrid->setItem(r, c, cells[c]);
        }
    }
}

void TTradesPage::CopyTrades() { QApplication::clipboard()->setText(TradesAsTsv(trades_)); }

void TTradesPage::Fail(const QString& message) {
    if (ShowError)
        ShowError(message);
    else
        QMessageBox::warning(window(), QStringLiteral("Tessary"), message);
}

void TTradesPage::ExportTradesCsv() {
    const QString caption = tr("Export Trades to CSV"), filter = tr("CSV files (*.csv)");
    QString path =
        ChooseFile ? ChooseFile(true, caption, filter)
                   : QFileDialog::getSaveFileName(this, caption, QDir::home().filePath(tr("trades") + ".csv"), filter);
    if (path.isEmpty()) return;
    if (QFileInfo(path).suffix().isEmpty()) path += QStringLiteral(".csv");
    try {
        SaveCsv(path, TradesAsCsv(trades_));
    } catch (const std::exception& e) {
        Fail(QString::fromStdString(e.what()));
    }
}

void TTradesPage::LoadHoldingsClick() {
    const QString caption = tr("Load Holdings"), filter = tr("CSV files (*.csv)");
    const QString path = ChooseFile ? ChooseFile(false, caption, filter)
                                    : QFileDialog::getOpenFileName(this, caption, QDir::homePath(), filter);
    if (!path.isEmpty()) LoadHoldingsCsv(path);
}

bool TTradesPage::LoadHoldingsCsv(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        Fail(tr("Cannot open \"%1\": %2").arg(path, file.errorString()));
        return false;
    }
    try {
        input_.Holdings = ParseHoldingsCsv(file.readAll().toStdString(), QFileInfo(path).fileName().toStdString());
    } catch (const ERebalanceInput& e) {
        // The reason names the line; it stays in English, as the command line's.
        Fail(tr("The holdings were not loaded: %1").arg(QString::fromStdString(e.what())));
        return false;
    }
    ShowInput();
    emit inputChanged();
    return true;
}

} // namespace tessary
