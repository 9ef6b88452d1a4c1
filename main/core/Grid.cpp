#include "core/Grid.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace tessary {

namespace {
constexpr int kDefaultColWidth = 64;
const TCell kEmptyCell{};

// Power of ten of the leading significant digit of a plain or exponent number
// text (1 for "5", 0 for "0.5", -1 for "0.05"); only its sign matters to callers.
long long DecimalMagnitude(std::string_view t) {
    long long intDigits = 0, leadingFracZeros = 0;
    bool seenNonZero = false, inFraction = false;
    std::size_t i = 0;
    for (; i < t.size(); ++i) {
        char c = t[i];
        if (c == '.') {
            inFraction = true;
            continue;
        }
        if (c < '0' || c > '9') break;
        if (!inFraction) {
            if (seenNonZero || c != '0') {
                seenNonZero = true;
                ++intDigits;
            }
        } else if (!seenNonZero) {
            if (c == '0')
                ++leadingFracZeros;
            else
                seenNonZero = true;
        }
    }
    long long exponent = 0;
    if (i < t.size() && (t[i] == 'e' || t[i] == 'E')) {
        bool neg = false;
        ++i;
        if (i < t.size() && (t[i] == '+' || t[i] == '-')) neg = t[i++] == '-';
        for (; i < t.size() && t[i] >= '0' && t[i] <= '9'; ++i)
            exponent = std::min<long long>(exponent * 10 + (t[i] - '0'), 1'000'000'000);
        if (neg) exponent = -exponent;
    }
    return (intDigits > 0 ? intDigits : -leadingFracZeros) + exponent;
}
} // namespace

TGrid::TGrid(int colCount, int rowCount, int fixedRows, int fixedCols)
    : colCount_(std::max(0, colCount)), fixedRows_(fixedRows), fixedCols_(fixedCols),
      colWidths_(static_cast<std::size_t>(colCount_), kDefaultColWidth) {
    SetRowCount(rowCount);
}

void TGrid::SetColCount(int count) {
    count = std::max(0, count);
    if (count == colCount_) return;
    colCount_ = count;
    for (auto& row : rows_) row.resize(static_cast<std::size_t>(count));
    colWidths_.resize(static_cast<std::size_t>(count), kDefaultColWidth);
    DropMergesOutside();
    Touch();
}

void TGrid::SetRowCount(int count) {
    count = std::max(0, count);
    if (count == RowCount()) return;
    rows_.resize(static_cast<std::size_t>(count), std::vector<TCell>(static_cast<std::size_t>(colCount_)));
    DropMergesOutside();
    Touch();
}

const TCell& TGrid::Cell(int col, int row) const {
    if (col < 0 || row < 0 || col >= colCount_ || row >= RowCount()) return kEmptyCell;
    return rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)];
}

TCell* TGrid::Mutable(int col, int row) {
    if (col < 0 || row < 0 || col >= colCount_ || row >= RowCount()) return nullptr;
    return &rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)];
}

std::string TGrid::Text(int col, int row) const {
    const TCell& cell = Cell(col, row);
    if (const auto* s = std::get_if<std::string>(&cell.value)) return *s;
    if (const auto* d = std::get_if<double>(&cell.value)) return NumberText(*d);
    return {};
}

double TGrid::Float(int col, int row) const {
    const TCell& cell = Cell(col, row);
    if (const auto* d = std::get_if<double>(&cell.value)) return *d;
    if (const auto* s = std::get_if<std::string>(&cell.value)) {
        double v = 0;
        return ParseNumber(*s, v) ? v : 0.0;
    }
    return 0.0;
}

std::intptr_t TGrid::Object(int col, int row) const { return Cell(col, row).object; }

void TGrid::SetText(int col, int row, std::string text) {
    if (TCell* c = Mutable(col, row)) {
        if (text.empty())
            c->value = std::monostate{};
        else
            c->value = std::move(text);
        Touch();
    }
}

void TGrid::SetFloat(int col, int row, double value) {
    if (TCell* c = Mutable(col, row)) {
        c->value = value;
        Touch();
    }
}

void TGrid::SetObject(int col, int row, std::intptr_t object) {
    if (TCell* c = Mutable(col, row)) {
        c->object = object;
        Touch();
    }
}

void TGrid::ClearCell(int col, int row) {
    if (TCell* c = Mutable(col, row)) {
        *c = TCell{};
        Touch();
    }
}

void TGrid::ClearRow(int row) {
    for (int c = 0; c < colCount_; ++c) ClearCell(c, row);
}

void TGrid::DeleteRow(int row) {
    if (row < 0 || row >= RowCount()) return;
    rows_.erase(rows_.begin() + row);
    DropMergesOutside();
    Touch();
}

void TGrid::DeleteRows(const std::vector<bool>& remove) {
    std::size_t kept = 0;
    for (std::size_t r = 0; r < rows_.size(); ++r) {
        if (r < remove.size() && remove[r]) continue;
        if (kept != r) rows_[kept] = std::move(rows_[r]);
        ++kept;
    }
    if (kept == rows_.size()) return;
    rows_.resize(kept);
    DropMergesOutside();
    Touch();
}

int TGrid::AddRow() {
    rows_.emplace_back(static_cast<std::size_t>(colCount_));
    Touch();
    return RowCount() - 1;
}

void TGrid::InsertRow(int row) {
    row = std::clamp(row, 0, RowCount());
    rows_.insert(rows_.begin() + row, std::vector<TCell>(static_cast<std::size_t>(colCount_)));
    Touch();
}

void TGrid::Merge(int col, int row, int cols, int rows) {
    std::erase_if(merges_, [&](const TMerge& m) { return m.col == col && m.row == row; });
    if (cols > 1 || rows > 1) merges_.push_back({col, row, cols, rows});
    Touch();
}

const TMerge* TGrid::MergeAt(int col, int row) const {
    for (const auto& m : merges_)
        if (col >= m.col && col < m.col + m.cols && row >= m.row && row < m.row + m.rows) return &m;
    return nullptr;
}

void TGrid::DropMergesOutside() {
    std::erase_if(merges_, [&](const TMerge& m) { return m.col >= colCount_ || m.row >= RowCount(); });
}

int TGrid::ColWidth(int col) const {
    if (col < 0 || col >= colCount_) return 0;
    return colWidths_[static_cast<std::size_t>(col)];
}

void TGrid::SetColWidth(int col, int width) {
    if (col < 0 || col >= colCount_) return;
    colWidths_[static_cast<std::size_t>(col)] = width;
    Touch();
}

bool ParseNumber(std::string_view text, double& out) {
    auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
    if (text.empty()) return false;
    bool negative = false;
    if (text.front() == '+' || text.front() == '-') {
        negative = text.front() == '-';
        text.remove_prefix(1);
        // from_chars takes its own minus only; a second sign is not a number.
        if (text.empty() || text.front() == '+' || text.front() == '-') return false;
    }
    double v = 0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (end != text.data() + text.size()) return false;
    if (ec == std::errc::result_out_of_range) {
        // from_chars leaves v alone here: too large overflows to infinity, too small is 0.
        v = DecimalMagnitude(text) > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    } else if (ec != std::errc{}) {
        return false;
    }
    out = negative ? -v : v;
    return true;
}

std::string NumberText(double value) {
    char buf[64];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value);
    if (ec != std::errc{}) return {};
    return std::string(buf, end);
}

double RoundHalfEven(double value) {
    if (!std::isfinite(value)) return value;
    double floor = std::floor(value);
    double diff = value - floor;
    if (diff > 0.5) return floor + 1;
    if (diff < 0.5) return floor;
    return std::fmod(floor, 2.0) == 0 ? floor : floor + 1;
}

} // namespace tessary
