#include "format/GridFormat.h"

#include <QCoreApplication>
#include <optional>

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <functional>

namespace tessary {

namespace {
std::optional<QLocale>& ChosenLocale() {
    static std::optional<QLocale> chosen;
    return chosen;
}
} // namespace

void SetAppLocale(const QLocale& locale) { ChosenLocale() = locale; }

QString VocabularyText(const std::string& text) {
    if (text.empty()) return {};
    return QCoreApplication::translate("tessary::Vocabulary", text.c_str());
}

QLocale AppLocale() {
    if (ChosenLocale()) return *ChosenLocale();
    QLocale system = QLocale::system();
    if (system.language() == QLocale::C) return QLocale(QLocale::English, QLocale::Canada);
    return system;
}

QString FormatMoney(double value, const QLocale& locale) { return locale.toCurrencyString(value, QString(), 0); }

QString FormatPlain(double value, const QLocale& locale) {
    QLocale plain = locale;
    plain.setNumberOptions(plain.numberOptions() | QLocale::OmitGroupSeparator);
    return plain.toString(value, 'f', 0);
}

QString AccountsTotalLabel(double total, const QLocale& locale) {
    QLocale grouped = locale;
    grouped.setNumberOptions(grouped.numberOptions() & ~QLocale::OmitGroupSeparator);
    // Hundreds of digits would run over the buttons beside the label.
    if (!std::isfinite(total) || std::abs(total) >= 1e15) {
        const QString number = locale.toString(total, 'g', 3);
        return locale.language() == QLocale::French ? number + QStringLiteral(" $") : QStringLiteral("$") + number;
    }
    // French puts the sign after the amount, as the grid does ("1 234 $").
    if (locale.language() == QLocale::French) return FormatMoney(total, grouped);
    return QStringLiteral("$") + grouped.toString(total, 'f', 0);
}

QString ClassTotalLabel(double total, const QLocale& locale) {
    double rounded = RoundHalfEven(total);
    if (!std::isfinite(rounded) || std::abs(rounded) > 9.0e15) return locale.toString(rounded) + QStringLiteral("%");
    return QString::number(static_cast<long long>(rounded)) + QStringLiteral("%");
}

namespace {

bool IsGroupSpace(QChar c) { return c == u' ' || c == u'\u00A0' || c == u'\u202F'; }

// Digits grouped by threes after a first group of one to three; grouping is
// optional but, where used, must be used throughout.
bool Ungroup(const QString& digits, const std::function<bool(QChar)>& isGroup, QString& out) {
    QStringList groups;
    QString current;
    for (QChar c : digits) {
        if (isGroup(c)) {
            groups << current;
            current.clear();
        } else if (c.isDigit() && c.unicode() < 128) {
            current += c;
        } else {
            return false;
        }
    }
    groups << current;
    if (groups.size() > 1) {
        if (groups.front().isEmpty() || groups.front().size() > 3) return false;
        for (qsizetype i = 1; i < groups.size(); ++i)
            if (groups[i].size() != 3) return false;
    }
    out = groups.join(QString());
    return true;
}

} // namespace

bool ParseTypedNumber(const QString& text, const QLocale& locale, QChar unit, double& out) {
    QString s = text.trimmed();
    bool negative = false;
    auto takeSign = [&] {
        if (s.startsWith(u'-') || s.startsWith(u'\u2212')) {
            negative = !negative;
            s = s.mid(1).trimmed();
        } else if (s.startsWith(u'+')) {
            s = s.mid(1).trimmed();
        }
    };
    // English shows a negative amount in parentheses: "($50)".
    if (s.startsWith(u'(') && s.endsWith(u')')) {
        negative = true;
        s = s.mid(1, s.size() - 2).trimmed();
    }
    takeSign();
    if (s.startsWith(unit)) {
        s = s.mid(1).trimmed();
        takeSign(); // "$-5" as well as "-$5"
    } else if (s.endsWith(unit)) {
        s.chop(1);
        s = s.trimmed();
    }
    if (s.isEmpty()) return false;

    const bool commaDecimal = locale.decimalPoint() == QStringLiteral(",");
    auto isGroup = [&](QChar c) { return IsGroupSpace(c) || (!commaDecimal && c == u','); };
    // Where the exponent starts, if any ("1e6", "2.5E-3").
    const qsizetype exp = s.indexOf(QLatin1Char('e'), 0, Qt::CaseInsensitive);
    const QString mantissa = exp < 0 ? s : s.left(exp);
    const QString exponent = exp < 0 ? QString() : s.mid(exp + 1);
    qsizetype point = -1;
    for (qsizetype i = 0; i < mantissa.size(); ++i) {
        const QChar c = mantissa[i];
        if (c == u'.' || (commaDecimal && c == u',')) {
            if (point >= 0) return false;
            point = i;
        }
    }
    QString whole;
    if (!Ungroup(point < 0 ? mantissa : mantissa.left(point), isGroup, whole)) return false;
    const QString fraction = point < 0 ? QString() : mantissa.mid(point + 1);
    for (QChar c : fraction)
        if (!(c.isDigit() && c.unicode() < 128)) return false;
    if (whole.isEmpty() && fraction.isEmpty()) return false;
    for (qsizetype i = 0; i < exponent.size(); ++i) {
        const QChar c = exponent[i];
        if (!((c.isDigit() && c.unicode() < 128) || (i == 0 && (c == u'+' || c == u'-')))) return false;
    }
    if (exp >= 0 && (exponent.isEmpty() || exponent == QStringLiteral("+") || exponent == QStringLiteral("-")))
        return false;

    QString plain = (whole.isEmpty() ? QStringLiteral("0") : whole);
    if (!fraction.isEmpty()) plain += QLatin1Char('.') + fraction;
    if (exp >= 0) plain += QLatin1Char('e') + exponent;
    double v = 0;
    if (!ParseNumber(plain.toStdString(), v) || !std::isfinite(v)) return false;
    out = negative ? -v : v;
    return true;
}

QString DisplayText(const TGrid& grid, GridKind kind, int col, int row, const QLocale& locale) {
    const TCell& cell = grid.Cell(col, row);
    if (const auto* d = std::get_if<double>(&cell.value)) {
        switch (kind) {
            case GridKind::Accounts:
                if (col > 0) return FormatMoney(*d, locale);
                break;
            case GridKind::Classes:
                if (col > 0) return FormatPlain(*d, locale);
                break;
            case GridKind::Result:
                if (col > 0 && row > 1) return (col % 2 == 1) ? FormatPlain(*d, locale) : FormatMoney(*d, locale);
                return locale.toString(*d, 'f', 2);
        }
        return FormatPlain(*d, locale);
    }
    if (const auto* s = std::get_if<std::string>(&cell.value)) return VocabularyText(*s);
    return {};
}

CellAlign DisplayAlign(GridKind kind, int col, int row) {
    if (col == 0) return CellAlign::Left;
    const int headerRows = kind == GridKind::Result ? 2 : 1;
    return row < headerRows ? CellAlign::Centre : CellAlign::Right;
}

namespace {

QString Aligned(const QString& text, int width, CellAlign align) {
    const int pad = std::max(0, width - static_cast<int>(text.size()));
    switch (align) {
        case CellAlign::Left: return text + QString(pad, QLatin1Char(' '));
        case CellAlign::Right: return QString(pad, QLatin1Char(' ')) + text;
        case CellAlign::Centre: break;
    }
    return QString(pad / 2, QLatin1Char(' ')) + text + QString(pad - pad / 2, QLatin1Char(' '));
}

} // namespace

QString FormatGridText(const TGrid& grid, GridKind kind, const QLocale& locale) {
    const int cols = grid.ColCount(), rows = grid.RowCount();
    const QString sep = QStringLiteral("  ");
    std::vector<int> width(static_cast<std::size_t>(cols), 0);
    auto anchorOf = [&](int c, int r) -> const TMerge* {
        const TMerge* m = grid.MergeAt(c, r);
        return (m && (m->cols > 1 || m->rows > 1)) ? m : nullptr;
    };
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < cols; ++c)
            if (const TMerge* m = anchorOf(c, r); !m || m->cols == 1)
                width[c] = std::max(width[c], static_cast<int>(DisplayText(grid, kind, c, r, locale).size()));
    // A text merged over several columns widens the last of them when it does not fit.
    for (const TMerge& m : grid.Merges()) {
        if (m.cols < 2 || m.col + m.cols > cols) continue;
        int span = 0;
        for (int c = m.col; c < m.col + m.cols; ++c) span += width[c];
        span += static_cast<int>(sep.size()) * (m.cols - 1);
        const int need = static_cast<int>(DisplayText(grid, kind, m.col, m.row, locale).size());
        if (need > span) width[m.col + m.cols - 1] += need - span;
    }

    QStringList lines;
    for (int r = 0; r < rows; ++r) {
        QString line;
        for (int c = 0; c < cols;) {
            if (c > 0) line += sep;
            const TMerge* m = anchorOf(c, r);
            if (m && m->col == c && m->row == r && m->cols > 1) {
                int span = 0;
                for (int k = c; k < std::min(cols, c + m->cols); ++k) span += width[k];
                span += static_cast<int>(sep.size()) * (std::min(cols, c + m->cols) - c - 1);
                line += Aligned(DisplayText(grid, kind, c, r, locale), span, CellAlign::Centre);
                c += m->cols;
                continue;
            }
            QString text = (m && (m->col != c || m->row != r)) ? QString() : DisplayText(grid, kind, c, r, locale);
            line += Aligned(text, width[c], DisplayAlign(kind, c, r));
            ++c;
        }
        while (line.endsWith(QLatin1Char(' '))) line.chop(1);
        lines << line;
    }
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QJsonDocument GridToJson(const TGrid& grid) {
    QJsonArray rows;
    for (int r = 0; r < grid.RowCount(); ++r) {
        QJsonArray row;
        for (int c = 0; c < grid.ColCount(); ++c) {
            const TCell& cell = grid.Cell(c, r);
            if (const auto* d = std::get_if<double>(&cell.value)) {
                if (std::isnan(*d))
                    row.append(QStringLiteral("nan"));
                else if (std::isinf(*d))
                    row.append(*d > 0 ? QStringLiteral("inf") : QStringLiteral("-inf"));
                else
                    row.append(*d);
            } else if (const auto* s = std::get_if<std::string>(&cell.value)) {
                row.append(QString::fromStdString(*s));
            } else {
                row.append(QJsonValue(QJsonValue::Null)); // never written
            }
        }
        rows.append(row);
    }
    QJsonObject doc;
    doc.insert(QStringLiteral("columns"), grid.ColCount());
    doc.insert(QStringLiteral("rows"), grid.RowCount());
    doc.insert(QStringLiteral("cells"), rows);
    return QJsonDocument(doc);
}

QString EscapedNameLine(const QString& name) {
    QString out;
    out.reserve(name.size());
    for (const QChar c : name) {
        const char16_t u = c.unicode();
        switch (u) {
            case u'\\': out += QLatin1String("\\\\"); break;
            case u'\n': out += QLatin1String("\\n"); break;
            case u'\r': out += QLatin1String("\\r"); break;
            case u'\t': out += QLatin1String("\\t"); break;
            default:
                if (u < 0x20 || (u >= 0x7F && u <= 0x9F))
                    out += QStringLiteral("\\x%1").arg(unsigned(u), 2, 16, QLatin1Char('0'));
                else if (u == 0x2028 || u == 0x2029)
                    out += QStringLiteral("\\u%1").arg(unsigned(u), 4, 16, QLatin1Char('0'));
                else
                    out += c;
        }
    }
    return out;
}

QString UnescapedNameLine(const QString& line) {
    QString out;
    out.reserve(line.size());
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (c != QLatin1Char('\\') || i + 1 >= line.size()) {
            out += c;
            continue;
        }
        const QChar e = line[i + 1];
        auto hex = [&](qsizetype digits) {
            if (i + 2 + digits > line.size()) return false;
            unsigned v = 0;
            for (qsizetype k = i + 2; k < i + 2 + digits; ++k) {
                const char16_t h = line[k].unicode();
                const int d = h >= u'0' && h <= u'9'   ? h - u'0'
                              : h >= u'a' && h <= u'f' ? h - u'a' + 10
                              : h >= u'A' && h <= u'F' ? h - u'A' + 10
                                                       : -1;
                if (d < 0) return false;
                v = v * 16 + unsigned(d);
            }
            out += QChar(char16_t(v));
            i += 1 + digits;
            return true;
        };
        if (e == QLatin1Char('\\'))
            out += QLatin1Char('\\'), ++i;
        else if (e == QLatin1Char('n'))
            out += QLatin1Char('\n'), ++i;
        else if (e == QLatin1Char('r'))
            out += QLatin1Char('\r'), ++i;
        else if (e == QLatin1Char('t'))
            out += QLatin1Char('\t'), ++i;
        else if (!(e == QLatin1Char('x') && hex(2)) && !(e == QLatin1Char('u') && hex(4)))
            out += c;
    }
    return out;
}

} // namespace tessary
