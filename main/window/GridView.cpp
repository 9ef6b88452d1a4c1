#include "window/GridView.h"

#include "core/Vocabulary.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QLineEdit>
#include <QToolTip>
#include <QPalette>

namespace tessary {

namespace {
constexpr int kRowObjectRole = Qt::UserRole + 1;
constexpr int kComboIndexRole = Qt::UserRole + 2;

Qt::Alignment ToQt(CellAlign align) {
    switch (align) {
        case CellAlign::Left: return Qt::AlignLeft | Qt::AlignVCenter;
        case CellAlign::Centre: return Qt::AlignCenter;
        case CellAlign::Right: return Qt::AlignRight | Qt::AlignVCenter;
    }
    return Qt::AlignLeft | Qt::AlignVCenter;
}
} // namespace

TGridModel::TGridModel(TGrid& grid, GridKind kind, QObject* parent)
    : QAbstractTableModel(parent), grid_(grid), kind_(kind), locale_(AppLocale()) {}

int TGridModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : grid_.RowCount(); }
int TGridModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : grid_.ColCount(); }

QVariant TGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const int c = index.column(), r = index.row();
    const bool fixed = r < grid_.FixedRows() || c < grid_.FixedCols();
    switch (role) {
        case Qt::DisplayRole: return DisplayText(grid_, kind_, c, r, locale_);
        case Qt::EditRole: {
            const TCell& cell = grid_.Cell(c, r);
            if (const auto* d = std::get_if<double>(&cell.value)) return locale_.toString(*d, 'g', 15);
            return QString::fromStdString(grid_.Text(c, r));
        }
        case Qt::ToolTipRole: {
            // Labels can be wider than their column, French ones often are.
            if (std::holds_alternative<double>(grid_.Cell(c, r).value)) return {};
            const QString text = DisplayText(grid_, kind_, c, r, locale_);
            if (text.isEmpty()) return {};
            return text;
        }
        case Qt::TextAlignmentRole: return QVariant::fromValue(ToQt(DisplayAlign(kind_, c, r)));
        case Qt::BackgroundRole:
            if (fixed) return QColor(0xEE, 0xF1, 0xF5);
            return {};
        case Qt::FontRole:
            if (r < grid_.FixedRows()) {
                QFont f;
                f.setBold(true);
                return f;
            }
            return {};
        case kRowObjectRole: return QVariant::fromValue<qlonglong>(grid_.Object(c, r));
        case kComboIndexRole: {
            QStringList items;
            for (auto s : comboItems) items << VocabularyText(std::string(s));
            return items;
        }
        default: return {};
    }
}

bool TGridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid()) return false;
    const int c = index.column(), r = index.row();
    if (role == kComboIndexRole) {
        const int i = value.toInt();
        if (i < 0 || i >= static_cast<int>(comboItems.size())) return false;
        grid_.SetText(c, r, std::string(comboItems[static_cast<std::size_t>(i)]));
        if (onComboChange) onComboChange(r, i);
    } else if (role == Qt::EditRole) {
        const QString text = value.toString().trimmed();
        double number = 0;
        if (c > 0 && !text.isEmpty()) {
            // Text that only looks like a number would silently count as 0.
            if (!ReadTyped(text, number)) return false;
            grid_.SetFloat(c, r, number);
        } else {
            grid_.SetText(c, r, text.toStdString());
        }
    } else {
        return false;
    }
    if (onEditDone) onEditDone(c, r);
    // Totals may have changed anywhere in the grid.
    emit dataChanged(this->index(0, 0), this->index(rowCount() - 1, columnCount() - 1));
    return true;
}

bool TGridModel::ReadTyped(const QString& text, double& number) const {
    return ParseTypedNumber(text, locale_, kind_ == GridKind::Classes ? QChar(u'%') : QChar(u'$'), number);
}

void TGridModel::ClearCell(const QModelIndex& index) {
    if (!index.isValid()) return;
    grid_.ClearCell(index.column(), index.row());
    if (onEditDone) onEditDone(index.column(), index.row());
    emit dataChanged(this->index(0, 0), this->index(rowCount() - 1, columnCount() - 1));
}

Qt::ItemFlags TGridModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (!readOnly && index.row() >= 1 && index.column() < 4) f |= Qt::ItemIsEditable;
    return f;
}

void TGridModel::Refresh() {
    beginResetModel();
    locale_ = AppLocale(); // the language may have changed
    endResetModel();
}

QWidget* TComboDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                      const QModelIndex& index) const {
    const QStringList items = index.data(kComboIndexRole).toStringList();
    if (index.column() > 0) {
        const auto* model = qobject_cast<const TGridModel*>(index.model());
        auto* edit = new QLineEdit(parent);
        edit->setObjectName(QStringLiteral("edtNumber"));
        if (model) edit->setValidator(new TTypedNumberValidator(*model, edit));
        // Enter does not take a refused text; the frame and the tip say why.
        connect(edit, &QLineEdit::textChanged, edit, [edit] {
            const bool refused = !edit->hasAcceptableInput();
            edit->setProperty("refused", refused);
            edit->setStyleSheet(refused ? QStringLiteral("QLineEdit { border: 2px solid #C62828; }") : QString());
            edit->setToolTip(refused ? TComboDelegate::tr("Not a number: type an amount such as 250000, "
                                                          "$250,000 or 250 000 $")
                                     : QString());
            if (refused)
                QToolTip::showText(edit->mapToGlobal(QPoint(0, edit->height())), edit->toolTip(), edit);
            else
                QToolTip::hideText();
        });
        return edit;
    }
    if (items.isEmpty()) return QStyledItemDelegate::createEditor(parent, option, index);
    auto* combo = new QComboBox(parent);
    combo->setEditable(false);
    combo->clear();
    combo->addItems(items);
    // A choice is stored at once, as the original sets the row object on change.
    connect(combo, &QComboBox::activated, this,
            [this, combo] { emit const_cast<TComboDelegate*>(this)->commitData(combo); });
    return combo;
}

void TComboDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        combo->setCurrentIndex(combo->findText(index.data(Qt::EditRole).toString()));
        return;
    }
    QStyledItemDelegate::setEditorData(editor, index);
}

void TComboDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const {
    // Leaving a refused text (focus elsewhere) keeps the cell as it was.
    if (auto* edit = qobject_cast<QLineEdit*>(editor); edit && !edit->hasAcceptableInput()) return;
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        if (combo->currentIndex() >= 0) model->setData(index, combo->currentIndex(), kComboIndexRole);
        return;
    }
    QStyledItemDelegate::setModelData(editor, model, index);
}

QValidator::State TTypedNumberValidator::validate(QString& input, int&) const {
    double ignored = 0;
    if (input.trimmed().isEmpty() || model_.ReadTyped(input, ignored)) return Acceptable;
    return Intermediate;
}

TGridView::TGridView(TGrid& grid, GridKind kind, QWidget* parent)
    : QTableView(parent), model_(new TGridModel(grid, kind, this)) {
    setModel(model_);
    setItemDelegate(new TComboDelegate(this));
    horizontalHeader()->hide();
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(8);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectItems);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::AnyKeyPressed | QAbstractItemView::SelectedClicked);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    // Children of the viewport, created before any editor, so that editors open above them.
    frozenCol_ = MakeFrozenView("frozenColumn");
    frozenRows_ = MakeFrozenView("frozenRows");
    frozenCorner_ = MakeFrozenView("frozenCorner");
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, &TGridView::SyncFrozen);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, &TGridView::SyncFrozen);
    connect(verticalHeader(), &QHeaderView::sectionResized, this, &TGridView::SyncFrozen);
    Refresh();
}

QTableView* TGridView::MakeFrozenView(const char* name) {
    auto* v = new QTableView(viewport());
    v->setObjectName(QString::fromLatin1(name));
    v->setProperty("frozen", true);
    v->setModel(model_);
    v->setSelectionModel(selectionModel());
    v->horizontalHeader()->hide();
    v->verticalHeader()->hide();
    v->verticalHeader()->setMinimumSectionSize(8);
    v->setFrameShape(QFrame::NoFrame);
    v->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    v->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    v->setHorizontalScrollMode(horizontalScrollMode());
    v->setVerticalScrollMode(verticalScrollMode());
    v->setFocusPolicy(Qt::NoFocus);
    // The shared current cell must not scroll them to itself.
    v->setAutoScroll(false);
    v->setEditTriggers(QAbstractItemView::NoEditTriggers);
    v->setWordWrap(false);
    v->setMouseTracking(true);
    v->viewport()->installEventFilter(this);
    // Editing happens in this view, whose editors know how to commit and move on.
    connect(v, &QTableView::pressed, this, [this](const QModelIndex& i) {
        setFocus();
        setCurrentIndex(i);
    });
    connect(v, &QTableView::doubleClicked, this, [this](const QModelIndex& i) { edit(i); });
    return v;
}

void TGridView::Refresh() {
    model_->Refresh();
    const TGrid& g = model_->Grid();
    for (QTableView* v : {static_cast<QTableView*>(this), frozenCol_, frozenRows_, frozenCorner_}) {
        v->clearSpans();
        for (const TMerge& m : g.Merges()) v->setSpan(m.row, m.col, m.rows, m.cols);
    }
    ApplyWidths();
}

int TGridView::FittingWidth(int col) const {
    const QLocale locale = AppLocale();
    QStringList samples;
    auto labels = [&](auto list) {
        for (auto s : list) samples << VocabularyText(std::string(s));
    };
    const GridKind kind = model_->Kind();
    const QString money = FormatMoney(99999999, locale);
    if (col == 0) {
        if (kind == GridKind::Accounts)
            labels(kAccountKindLabels);
        else
            labels(kAssetClassLabels);
    } else if (kind == GridKind::Accounts && col == 4) {
        samples << FormatMoney(999999999, locale); // three columns of $99,999,999
    } else if (kind == GridKind::Accounts || (kind == GridKind::Result && col % 2 == 0)) {
        samples << money;
    } else {
        samples << QStringLiteral("100");
    }
    const TGrid& g = model_->Grid();
    const QFontMetrics fm(font());
    QFont bold = font();
    bold.setBold(true);
    const QFontMetrics bm(bold);
    // Room for the cell's margins and the grid line.
    const int pad = 2 * (style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1) + 2;
    int width = 0;
    for (const QString& s : samples) width = std::max(width, fm.horizontalAdvance(s));
    for (int r = 0; r < g.FixedRows(); ++r) {
        const TMerge* m = g.MergeAt(col, r);
        if (!m || m->cols == 1) width = std::max(width, bm.horizontalAdvance(DisplayText(g, kind, col, r, locale)));
    }
    return width + pad;
}

void TGridView::ApplyWidths() {
    const TGrid& g = model_->Grid();
    std::vector<int> widths;
    for (int c = 0; c < g.ColCount(); ++c) {
        const auto user = userWidths_.find(c);
        widths.push_back(user != userWidths_.end() ? user->second : std::max(g.ColWidth(c), FittingWidth(c)));
    }
    if (stretchFirstColumn && !widths.empty() && !userWidths_.count(0)) {
        // Column 0 takes what the others leave; they give up width beyond their fit
        // before its names would be cut.
        int others = 0;
        for (std::size_t c = 1; c < widths.size(); ++c) others += widths[c];
        int deficit = FittingWidth(0) + others - viewport()->width();
        for (int c = static_cast<int>(widths.size()) - 1; c >= 1 && deficit > 0; --c) {
            if (userWidths_.count(c)) continue;
            const int give = std::min(deficit, std::max(0, widths[static_cast<std::size_t>(c)] - FittingWidth(c)));
            widths[static_cast<std::size_t>(c)] -= give;
            others -= give;
            deficit -= give;
        }
        widths[0] = std::max(FittingWidth(0), viewport()->width() - others);
    }
    for (std::size_t c = 0; c < widths.size(); ++c) setColumnWidth(static_cast<int>(c), widths[c]);
    SyncFrozen();
}

int TGridView::FixedHeight() const {
    int h = 0;
    for (int r = 0; r < std::min(model_->Grid().FixedRows(), model_->rowCount()); ++r) h += rowHeight(r);
    return h;
}

void TGridView::SyncFrozen() {
    if (!frozenRows_) return;
    const int cols = model_->columnCount(), rows = model_->rowCount();
    const int fixedRows = std::min(model_->Grid().FixedRows(), rows);
    for (QTableView* v : {frozenCol_, frozenRows_, frozenCorner_}) {
        v->setFont(font());
        v->setShowGrid(showGrid());
        for (int c = 0; c < cols; ++c) v->setColumnWidth(c, columnWidth(c));
        for (int r = 0; r < rows; ++r) v->setRowHeight(r, rowHeight(r));
    }
    const int headerHeight = FixedHeight();
    const int col0 = cols > 0 ? columnWidth(0) : 0;
    const int w = viewport()->width(), h = viewport()->height();
    frozenCol_->setGeometry(0, 0, std::min(col0, w), h);
    frozenRows_->setGeometry(0, 0, w, std::min(headerHeight, h));
    frozenCorner_->setGeometry(0, 0, std::min(col0, w), std::min(headerHeight, h));
    frozenCol_->setVisible(cols > 0);
    frozenRows_->setVisible(fixedRows > 0);
    frozenCorner_->setVisible(cols > 0 && fixedRows > 0);
    frozenCol_->verticalScrollBar()->setValue(verticalScrollBar()->value());
    frozenRows_->horizontalScrollBar()->setValue(horizontalScrollBar()->value());
    frozenRows_->verticalScrollBar()->setValue(0);
    frozenCol_->horizontalScrollBar()->setValue(0);
    frozenCorner_->horizontalScrollBar()->setValue(0);
    frozenCorner_->verticalScrollBar()->setValue(0);
    frozenCol_->raise();
    frozenRows_->raise();
    frozenCorner_->raise();
    // An open editor stays on top of them.
    if (QWidget* editor = indexWidget(currentIndex())) editor->raise();
    for (QWidget* child : viewport()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        if (!child->property("frozen").toBool() && child->isVisible()) child->raise();
}

void TGridView::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    SyncFrozen();
}

void TGridView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    QTableView::scrollTo(index, hint);
    if (!index.isValid()) return;
    // A cell that landed under the frozen rows or column is scrolled out from under them.
    const QRect cell = visualRect(index);
    const int col0 = columnWidth(0);
    if (index.column() > 0 && cell.left() < col0)
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - (col0 - cell.left()));
    if (index.row() >= model_->Grid().FixedRows() && cell.top() < FixedHeight())
        verticalScrollBar()->setValue(verticalScrollBar()->value() -
                                      (verticalScrollMode() == ScrollPerItem ? 1 : FixedHeight() - cell.top()));
}

void TGridView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange) ApplyWidths();
}

bool TGridView::eventFilter(QObject* watched, QEvent* event) {
    // The frozen header rows take the place of a header: their column borders can be dragged.
    auto* header = frozenRows_ && watched == frozenRows_->viewport()       ? frozenRows_
                   : frozenCorner_ && watched == frozenCorner_->viewport() ? frozenCorner_
                                                                           : nullptr;
    if (!header) return QTableView::eventFilter(watched, event);
    auto* widget = static_cast<QWidget*>(watched);
    auto borderAt = [header](int x) {
        const int c = header->columnAt(x);
        if (c < 0) return -1;
        const int left = header->columnViewportPosition(c), right = left + header->columnWidth(c);
        if (std::abs(x - right) <= 4) return c;
        if (c > 0 && std::abs(x - left) <= 4) return c - 1;
        return -1;
    };
    switch (event->type()) {
        case QEvent::MouseMove: {
            auto* e = static_cast<QMouseEvent*>(event);
            const int x = e->position().toPoint().x();
            if (dragColumn_ >= 0) {
                const int width = std::max(16, dragStartWidth_ + x - dragStartX_);
                userWidths_[dragColumn_] = width;
                setColumnWidth(dragColumn_, width);
                return true;
            }
            if (borderAt(x) >= 0)
                widget->setCursor(Qt::SplitHCursor);
            else
                widget->unsetCursor();
            break;
        }
        case QEvent::MouseButtonPress: {
            auto* e = static_cast<QMouseEvent*>(event);
            const int x = e->position().toPoint().x();
            const int c = e->button() == Qt::LeftButton ? borderAt(x) : -1;
            if (c < 0) break;
            dragColumn_ = c;
            dragStartX_ = x;
            dragStartWidth_ = columnWidth(c);
            return true;
        }
        case QEvent::MouseButtonRelease:
            if (dragColumn_ >= 0) {
                dragColumn_ = -1;
                return true;
            }
            break;
        default: break;
    }
    return QTableView::eventFilter(watched, event);
}

void TGridView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    ApplyWidths();
}

TCellRange TGridView::SelectedRange() const {
    const QModelIndexList cells = selectionModel() ? selectionModel()->selectedIndexes() : QModelIndexList();
    if (cells.isEmpty()) return WholeGrid(model_->Grid());
    TCellRange r{cells.first().column(), cells.first().row(), cells.first().column(), cells.first().row()};
    for (const QModelIndex& i : cells) {
        r.left = std::min(r.left, i.column());
        r.right = std::max(r.right, i.column());
        r.top = std::min(r.top, i.row());
        r.bottom = std::max(r.bottom, i.row());
    }
    return r;
}

void TGridView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    const QModelIndex cur = currentIndex();
    const bool last = cur.row() == model_->rowCount() - 1 && cur.column() == model_->columnCount() - 1;
    const bool first = cur.row() <= model_->Grid().FixedRows() && cur.column() == 0;
    if ((hint == QAbstractItemDelegate::EditNextItem && last) ||
        (hint == QAbstractItemDelegate::EditPreviousItem && first)) {
        // Tab leaves the grid after its last cell instead of wrapping round.
        QTableView::closeEditor(editor, QAbstractItemDelegate::NoHint);
        QWidget::focusNextPrevChild(hint == QAbstractItemDelegate::EditNextItem);
        return;
    }
    QTableView::closeEditor(editor, hint);
    // Enter takes the value and moves down, so that a column is typed row after row.
    if (hint != QAbstractItemDelegate::SubmitModelCache || !cur.isValid()) return;
    if (cur.row() + 1 == model_->rowCount() && onAppendRow) onAppendRow();
    if (cur.row() + 1 < model_->rowCount()) setCurrentIndex(model_->index(cur.row() + 1, cur.column()));
}

bool TGridView::focusNextPrevChild(bool next) {
    const QModelIndex cur = currentIndex();
    const bool last = cur.row() == model_->rowCount() - 1 && cur.column() == model_->columnCount() - 1;
    const bool first = !cur.isValid() || (cur.row() <= model_->Grid().FixedRows() && cur.column() == 0);
    if (state() != EditingState && (next ? last : first)) return QWidget::focusNextPrevChild(next);
    return QTableView::focusNextPrevChild(next);
}

void TGridView::keyPressEvent(QKeyEvent* event) {
    // Tab-separated text pastes into a spreadsheet cell by cell.
    if (event->matches(QKeySequence::Copy) && state() != EditingState) {
        QApplication::clipboard()->setText(GridAsTsv(model_->Grid(), model_->Kind(), SelectedRange()));
        return;
    }
    // Enter moves down, as in a spreadsheet.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && state() != EditingState &&
        event->modifiers() == Qt::NoModifier) {
        const QModelIndex cur = currentIndex();
        if (cur.isValid() && cur.row() + 1 < model_->rowCount()) {
            setCurrentIndex(model_->index(cur.row() + 1, cur.column()));
            return;
        }
    }
    // Delete empties the current cell where it could be typed into.
    if (event->key() == Qt::Key_Delete && state() != EditingState && event->modifiers() == Qt::NoModifier) {
        const QModelIndex cur = currentIndex();
        if (cur.isValid() && (model_->flags(cur) & Qt::ItemIsEditable)) {
            model_->ClearCell(cur);
            return;
        }
    }
    QTableView::keyPressEvent(event);
}

} // namespace tessary
