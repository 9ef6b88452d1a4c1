#include "window/GridView.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
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
    case Qt::DisplayRole:
        return DisplayText(grid_, kind_, c, r, locale_);
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
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(ToQt(DisplayAlign(kind_, c, r)));
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
    case kRowObjectRole:
        return QVariant::fromValue<qlonglong>(grid_.Object(c, r));
    case kComboIndexRole: {
        QStringList items;
        for (auto s : comboItems) items << VocabularyText(std::string(s));
        return items;
    }
    default:
        return {};
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
    locale_ = AppLocale();   // the language may have changed
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
    connect(combo, &QComboBox::activated, this, [this, combo] {
        emit const_cast<TComboDelegate*>(this)->commitData(combo);
    });
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
    Refresh();
}

void TGridView::Refresh() {
    model_->Refresh();
    clearSpans();
    const TGrid& g = model_->Grid();
    for (const TMerge& m : g.Merges()) setSpan(m.row, m.col, m.rows, m.cols);
    ApplyWidths();
}

void TGridView::ApplyWidths() {
    const TGrid& g = model_->Grid();
    int others = 0;
    for (int c = 0; c < g.ColCount(); ++c) {
        setColumnWidth(c, g.ColWidth(c));
        if (c > 0) others += g.ColWidth(c);
    }
    if (stretchFirstColumn && g.ColCount() > 0) {
        const int room = viewport()->width() - others;
        setColumnWidth(0, std::max(g.ColWidth(0), room));
    }
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
    if ((hint == QAbstractItemDelegate::EditNextItem && last) || (hint == QAbstractItemDelegate::EditPreviousItem && first)) {
        // Tab leaves the grid after its last cell instead of wrapping round.
        QTableView::closeEditor(editor, QAbstractItemDelegate::NoHint);
        QWidget::focusNextPrevChild(hint == QAbstractItemDelegate::EditNextItem);
        return;
    }
    QTableView::closeEditor(editor, hint);
    // Enter takes the value and moves down, so that a column is typed row after row.
    if (hint == QAbstractItemDelegate::SubmitModelCache && cur.isValid() && cur.row() + 1 < model_->rowCount())
        setCurrentIndex(model_->index(cur.row() + 1, cur.column()));
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
