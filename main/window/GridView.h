// A grid on screen: a table view over a TGrid, the state the calculation and
// the command line share.
#pragma once

#include <QAbstractTableModel>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QValidator>
#include <functional>
#include <map>
#include <string_view>
#include <vector>

#include "format/GridFormat.h"
#include "core/Grid.h"
#include "format/Export.h"

namespace tessary {

class TGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    TGridModel(TGrid& grid, GridKind kind, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    // A typed number of a value cell; false when the text is not one.
    bool ReadTyped(const QString& text, double& number) const;
    // Empties a cell (value and row object), as Delete does.
    void ClearCell(const QModelIndex& index);
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    TGrid& Grid() { return grid_; }
    const TGrid& Grid() const { return grid_; }
    GridKind Kind() const { return kind_; }

    // The grid was changed behind the model's back (calculation, buttons).
    void Refresh();

    // Called after a cell edit has been stored (the "edit cell done" event).
    std::function<void(int col, int row)> onEditDone;
    // Called when a combo choice set a row object (index is 0-based).
    std::function<void(int row, int index)> onComboChange;

    // Labels offered by the combo editor of column 0; empty: no combo.
    std::vector<std::string_view> comboItems;

    // Both input grids: a cell is editable when its row >= 1 and its column < 4.
    bool readOnly = false;

private:
    TGrid& grid_;
    GridKind kind_;
    QLocale locale_;
};

// Accepts what ReadTyped reads (and an empty text); anything else is
// Intermediate, so that Enter and Tab do not take it.
class TTypedNumberValidator : public QValidator {
    Q_OBJECT
public:
    TTypedNumberValidator(const TGridModel& model, QObject* parent) : QValidator(parent), model_(model) {}
    State validate(QString& input, int& pos) const override;

private:
    const TGridModel& model_;
};

// Column 0 edits with a drop-down list (no free text); value cells with a
// line that refuses what is not a number.
class TComboDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
};

class TGridView : public QTableView {
    Q_OBJECT
public:
    TGridView(TGrid& grid, GridKind kind, QWidget* parent = nullptr);

    TGridModel* GridModel() const { return model_; }
    TGrid& Grid() { return model_->Grid(); }

    // Re-reads cells, merges and column widths from the grid.
    void Refresh();

    // The smallest rectangle around the selected cells; the whole grid when none is selected.
    TCellRange SelectedRange() const;

    // Enter after an edit in the last row asks for a new row here (input grids).
    std::function<void()> onAppendRow;

    // Column 0 takes the width the other columns leave.
    bool stretchFirstColumn = false;

    // The fixed rows and column 0, drawn over the scrolled cells so that they stay.
    QTableView* FrozenRows() const { return frozenRows_; }
    QTableView* FrozenColumn() const { return frozenCol_; }
    // At least as wide as the widest realistic text of the column
    // ($99,999,999, the longest class name) in the current language.
    int FittingWidth(int col) const;

protected:
    void scrollContentsBy(int dx, int dy) override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    bool focusNextPrevChild(bool next) override;

private:
    void ApplyWidths();
    QTableView* MakeFrozenView(const char* name);
    // Places the frozen views and gives them the main view's widths, heights and offsets.
    void SyncFrozen();
    int FixedHeight() const;
    TGridModel* model_;
    QTableView* frozenCol_ = nullptr;
    QTableView* frozenRows_ = nullptr;
    QTableView* frozenCorner_ = nullptr;
    // Widths the user dragged, by column; they win over the grid's.
    std::map<int, int> userWidths_;
    int dragColumn_ = -1;
    int dragStartX_ = 0, dragStartWidth_ = 0;
};

} // namespace tessary
