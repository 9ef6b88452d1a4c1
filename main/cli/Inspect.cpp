#include "cli/Inspect.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <cmath>
#include <exception>
#include <limits>
#include <memory>
#include <optional>

#include "cli/Commands.h"
#include "catalogue/KvFnModels.h"
#include "catalogue/KvFnProjHdr.h"
#include "decl/KvModelFormat.h"
#include "entries/KvFnEntries.h"
#include "files/KvFnBufFile.h"
#include "format/GridFormat.h"
#include "import/ImportSession.h"
#include "items/KvFnClassRegistry.h"
#include "model/KvFnModelData.h"

namespace tessary {

namespace {

enum class TKindOfFile { FinItems, Models, Entries };

QString Q(const std::string& s) { return QString::fromStdString(s); }
std::string Path8(const QString& s) { return QFile::encodeName(s).toStdString(); }
// A text on one line, as the name lists print it.
QString Line(const std::string& s) { return EscapedNameLine(Q(s)); }
QString Quoted(const std::string& s) { return QLatin1Char('"') + Line(s) + QLatin1Char('"'); }
QString Num(double v) { return Q(kv::FloatToModelText(v)); }
QJsonValue JsonNum(double v) {
    if (std::isfinite(v)) return v;
    return Q(kv::FloatToModelText(v));
}

// By file name, else by the first bytes: the sectioned magic or a day-number
// version opens a client model; a short string holding U+0001 a catalogue.
TKindOfFile KindOfFile(const QString& path) {
    const QString name = QFileInfo(path).fileName().toLower();
    if (name == QLatin1String("finitems.dat") || name == QLatin1String("~finitems.dat")) return TKindOfFile::FinItems;
    if (name == QLatin1String("models.dat")) return TKindOfFile::Models;
    if (name == QLatin1String("entries.dat")) return TKindOfFile::Entries;
    kv::TBufReadFile r = kv::TBufReadFile::Prefix(Path8(path), 256);
    if (r.Size() >= 4) {
        const std::int32_t first = r.ReadInt();
        if ((first >= 0xA1 && first <= 0xA4) || (first >= 20000 && first <= 80000)) return TKindOfFile::FinItems;
        r.SetPosition(0);
        const std::uint8_t n = r.ReadByte();
        for (std::int32_t i = 1; i <= n && i < r.Size(); ++i)
            if (r.ReadByte() == 1) return TKindOfFile::Models;
    }
    return TKindOfFile::Entries;
}

// Product kind of a client folder by its prefix ("md_", "bs_", "qr_"); -1 if none.
int KindOfFolder(const QString& folderName) {
    const QString n = folderName.toLower();
    if (n.startsWith(QLatin1String("md_"))) return 0;
    if (n.startsWith(QLatin1String("bs_"))) return 1;
    if (n.startsWith(QLatin1String("qr_"))) return 2;
    return -1;
}

QString KindText(int kind) {
    const QString key = ProductKey(static_cast<std::uint8_t>(kind));
    return key.isEmpty() ? QString::number(kind) : QStringLiteral("%1 (%2)").arg(kind).arg(key);
}

// A chart whose kind is not known: the kind whose expected version the file
// carries, trying the hint first; else the first kind that reads it at all.
std::unique_ptr<kv::TEntries> LoadChartGuessing(const std::string& path, int hint) {
    std::unique_ptr<kv::TEntries> fallback;
    std::exception_ptr error;
    for (int kind : {hint, 0, 1, 2}) {
        if (kind < 0) continue;
        try {
            auto chart = std::make_unique<kv::TEntries>(static_cast<std::uint8_t>(kind), path);
            chart->Load(false);
            if (!chart->HasVersion() || chart->Version() == kv::ExpectedEntriesVersion(std::uint8_t(kind)))
                return chart;
            if (!fallback) fallback = std::move(chart);
        } catch (const std::exception&) {
            if (!error) error = std::current_exception();
        }
    }
    if (fallback) return fallback;
    std::rethrow_exception(error);
}

struct TInspectOptions {
    QString coreDir;
    bool json = false;
    kv::TLibrarySettings settings = TodaysLibrarySettings(); // outlives every model read with it
};

// ------------------------------------------------------------ FinItems.dat

struct TLoadedModel {
    const kv::TLibrarySettings* settings = nullptr;
    int kind = 0;
    std::unique_ptr<kv::TModels> main, needs;
    std::unique_ptr<kv::TEntries> chart;
    bool realChart = false;
    QString chartNote; // where the chart came from, or why there is none
    std::unique_ptr<kv::TModelData> model;
};

std::unique_ptr<kv::TModelData> NewModel(TLoadedModel& l, const std::string& path) {
    auto m = std::make_unique<kv::TModelData>(static_cast<std::uint8_t>(l.kind), nullptr, l.main.get(), l.main.get(),
                                              nullptr, path, l.chart.get(), *l.settings);
    m->KeepUnknownEntries = true;
    return m;
}

TLoadedModel LoadModel(const QString& file, const TInspectOptions& o) {
    TLoadedModel l;
    l.settings = &o.settings;
    const QFileInfo info(file);
    const QDir solutionDir = info.absoluteDir();
    QDir clientDir = solutionDir;
    clientDir.cdUp();

    kv::TBufReadFile head = kv::TBufReadFile::Prefix(Path8(file), 4);
    const std::int32_t magic = head.Size() >= 4 ? head.ReadInt() : 0;
    const int folderKind = KindOfFolder(clientDir.dirName());
    l.kind = magic >= 0xA1 && magic <= 0xA4 ? (magic == 0xA4 ? 4 : magic - 0xA1) : std::max(folderKind, 0);

    // The key seed and the enciphered flag come from the client header, as in the import.
    const QString modelsPath = clientDir.filePath(QStringLiteral("Models.dat"));
    if (QFileInfo::exists(modelsPath)) {
        QDir base = clientDir;
        base.cdUp();
        kv::TProjHdr hdr(static_cast<std::uint8_t>(l.kind), kv::ModelsFileName, Path8(clientDir.dirName()),
                         Path8(base.absolutePath()), o.settings);
        kv::TModelLists lists = hdr.Load(true);
        l.main = std::move(lists.Main);
        l.needs = std::move(lists.Needs);
    } else {
        l.main = std::make_unique<kv::TModels>(Path8(clientDir.absolutePath()), "Main", std::string(), o.settings);
    }

    QString coreDir = o.coreDir;
    if (coreDir.isEmpty())
        coreDir = ConfiguredFolder(ProductKey(static_cast<std::uint8_t>(l.kind)), QStringLiteral("CoreDir"));
    const QString entriesPath = coreDir.isEmpty() ? QString() : QDir(coreDir).filePath(QStringLiteral("Entries.dat"));
    if (!o.coreDir.isEmpty() || (!entriesPath.isEmpty() && QFileInfo::exists(entriesPath))) {
        l.chart = std::make_unique<kv::TEntries>(static_cast<std::uint8_t>(l.kind), Path8(entriesPath));
        l.chart->Load(false);
        l.realChart = true;
        l.chartNote = entriesPath;
    } else {
        l.chartNote = coreDir.isEmpty() ? QStringLiteral("none (no core folder configured)")
                                        : QStringLiteral("none (no Entries.dat in %1)").arg(coreDir);
        // Section 2 takes a record's value only for a group the chart has; a
        // chart of every group reads the records as a whole chart would. Its
        // entries carry identifiers no chart uses, so every item stays plain.
        l.chart = std::make_unique<kv::TEntries>(static_cast<std::uint8_t>(l.kind), std::string());
        for (int g = 0; g < 256; ++g)
            l.chart->AddEntry(std::numeric_limits<std::int32_t>::min() + g, 0, std::string(),
                              static_cast<std::uint8_t>(g));
    }

    l.model = NewModel(l, Path8(file));
    l.model->Load();
    return l;
}

QString OwnersText(const kv::TFinItem& item) {
    if (!item.Shares) return QStringLiteral("none");
    QStringList parts;
    for (const kv::TPayer& p : item.Shares->Items)
        parts << QStringLiteral("%1%2:%3").arg(p.PartyID).arg(p.Party ? "" : "?").arg(Num(p.Code));
    return parts.isEmpty() ? QStringLiteral("empty") : parts.join(QLatin1Char(' '));
}

QString EntryText(const kv::TFinItem& item) {
    if (!item.Entry) return QStringLiteral("entry %1 (not in the chart)").arg(item.EntryID());
    return QStringLiteral("entry %1 %2 class %3")
        .arg(item.EntryID())
        .arg(Quoted(item.Entry->Name))
        .arg(item.Entry->ItemClassNo);
}

void ItemLines(const kv::TFinItem& item, int depth, QStringList& out) {
    const QString indent(2 * depth, QLatin1Char(' '));
    out << QStringLiteral("%1%2 %3 %4 name %5 value %6 owners %7 pays %8")
               .arg(indent)
               .arg(item.ID)
               .arg(QLatin1String(item.ClassType().Name), EntryText(item), Quoted(item.Name), Num(item.Value),
                    OwnersText(item))
               .arg(item.Pays.size());
    QStringList props;
    for (const std::string& l : item.SpecProps.Lines()) props << Line(l);
    if (!props.isEmpty()) out << indent + QStringLiteral("  props: ") + props.join(QStringLiteral(" | "));
    for (const auto& c : item.Children) ItemLines(*c, depth + 1, out);
}

QJsonArray Strings(const std::vector<std::string>& v) {
    QJsonArray a;
    for (const std::string& s : v) a.append(Q(s));
    return a;
}

QJsonObject ItemJson(const kv::TFinItem& item) {
    QJsonObject o;
    o.insert(QStringLiteral("id"), item.ID);
    o.insert(QStringLiteral("class"), QLatin1String(item.ClassType().Name));
    o.insert(QStringLiteral("entry"), item.EntryID());
    o.insert(QStringLiteral("entryName"), item.Entry ? QJsonValue(Q(item.Entry->Name)) : QJsonValue());
    o.insert(QStringLiteral("classNumber"), item.Entry ? QJsonValue(item.Entry->ItemClassNo) : QJsonValue());
    o.insert(QStringLiteral("name"), Q(item.Name));
    o.insert(QStringLiteral("value"), JsonNum(item.Value));
    o.insert(QStringLiteral("dates"), QJsonArray{JsonNum(item.Date1), JsonNum(item.Date2)});
    o.insert(QStringLiteral("code"), item.Code);
    o.insert(QStringLiteral("text"), Q(item.Text));
    if (item.Shares) {
        QJsonArray owners;
        for (const kv::TPayer& p : item.Shares->Items)
            owners.append(QJsonObject{{QStringLiteral("party"), p.PartyID},
                                      {QStringLiteral("code"), JsonNum(p.Code)},
                                      {QStringLiteral("known"), p.Party != nullptr}});
        o.insert(QStringLiteral("owners"), owners);
    } else {
        o.insert(QStringLiteral("owners"), QJsonValue());
    }
    const auto owner = item.OwnerPartyID();
    o.insert(QStringLiteral("ownerParty"), owner ? QJsonValue(*owner) : QJsonValue());
    o.insert(QStringLiteral("props"), Strings(item.SpecProps.Lines()));
    o.insert(QStringLiteral("pays"), static_cast<int>(item.Pays.size()));
    QJsonArray children;
    for (const auto& c : item.Children) children.append(ItemJson(*c));
    o.insert(QStringLiteral("children"), children);
    return o;
}

QString ShowModel(const QString& file, const TLoadedModel& l, bool json) {
    const kv::TModelData& m = *l.model;
    const bool sectioned = m.Layout() == kv::TFileLayout::Sectioned;
    const bool enciphered = m.NamesEncrypted() && m.Version() >= kv::kVersionEnciphered;
    if (json) {
        QJsonObject o;
        o.insert(QStringLiteral("file"), file);
        o.insert(QStringLiteral("type"), QStringLiteral("FinItems.dat"));
        o.insert(QStringLiteral("kind"), l.kind);
        o.insert(QStringLiteral("layout"), sectioned ? QStringLiteral("sectioned") : QStringLiteral("sequential"));
        o.insert(QStringLiteral("version"), m.Version());
        o.insert(QStringLiteral("enciphered"), enciphered);
        o.insert(QStringLiteral("chart"), l.realChart ? QJsonValue(l.chartNote) : QJsonValue());
        o.insert(
            QStringLiteral("header"),
            QJsonObject{{QStringLiteral("values"), QJsonArray{JsonNum(m.Header.Values[0]), JsonNum(m.Header.Values[1]),
                                                              JsonNum(m.Header.Values[2])}},
                        {QStringLiteral("title"), Q(m.Header.Title)},
                        {QStringLiteral("text"), Q(m.Header.Text)},
                        {QStringLiteral("date"), JsonNum(m.Header.Date)}});
        QJsonArray parties;
        for (const auto& p : m.Participants()) {
            QJsonArray props;
            for (const auto& row : p->Props) props.append(Strings(row));
            parties.append(QJsonObject{{QStringLiteral("id"), p->ID},
                                       {QStringLiteral("class"), QLatin1String(p->ClassName())},
                                       {QStringLiteral("role"), p->Role},
                                       {QStringLiteral("type"), p->PartyType},
                                       {QStringLiteral("taxStatus"), p->TaxStatus},
                                       {QStringLiteral("firstName"), Q(p->FirstName)},
                                       {QStringLiteral("lastName"), Q(p->LastName)},
                                       {QStringLiteral("name"), Q(p->FullName())},
                                       {QStringLiteral("birthDate"), JsonNum(p->BirthDate)},
                                       {QStringLiteral("benefKey"), p->BenefKey},
                                       {QStringLiteral("props"), props}});
        }
        o.insert(QStringLiteral("parties"), parties);
        QJsonArray items;
        for (const auto& item : m.Items()) items.append(ItemJson(*item));
        o.insert(QStringLiteral("items"), items);
        QJsonArray todo;
        for (const kv::TToDoData& t : m.ToDo)
            todo.append(QJsonObject{{QStringLiteral("id"), t.ID},
                                    {QStringLiteral("kind"), t.Kind},
                                    {QStringLiteral("title"), Q(t.Title)},
                                    {QStringLiteral("category"), Q(t.Category)},
                                    {QStringLiteral("text"), Q(t.Text)},
                                    {QStringLiteral("due"), JsonNum(t.Due)},
                                    {QStringLiteral("done"), t.Done}});
        o.insert(QStringLiteral("todo"), todo);
        o.insert(QStringLiteral("texts"), Strings(m.Texts));
        o.insert(QStringLiteral("strategy"), Strings(m.Strategy().Values));
        QJsonArray residences;
        for (const kv::TResidenceRecord& r : m.Residences)
            residences.append(QJsonObject{{QStringLiteral("id"), r.ID},
                                          {QStringLiteral("name"), Q(r.Name)},
                                          {QStringLiteral("value"), JsonNum(r.Value)}});
        o.insert(QStringLiteral("residences"), residences);
        o.insert(QStringLiteral("typedRecords"), static_cast<int>(m.TypedRecords.size()));
        return QString::fromUtf8(QJsonDocument(o).toJson(QJsonDocument::Compact)) + QLatin1Char('\n');
    }

    QStringList out;
    out << QStringLiteral("FinItems.dat: %1").arg(file);
    out << QStringLiteral("Product kind: %1").arg(KindText(l.kind));
    out << QStringLiteral("Layout: %1, version %2").arg(sectioned ? "sectioned" : "sequential").arg(m.Version());
    out << QStringLiteral("Enciphered texts: %1").arg(enciphered ? "yes" : "no");
    out << QStringLiteral("Chart of accounts: %1").arg(l.chartNote);
    out << QStringLiteral("Header: values %1 %2 %3, title %4, text %5, date %6")
               .arg(Num(m.Header.Values[0]), Num(m.Header.Values[1]), Num(m.Header.Values[2]), Quoted(m.Header.Title),
                    Quoted(m.Header.Text), Num(m.Header.Date));
    out << QStringLiteral("Parties: %1").arg(m.Participants().size());
    for (const auto& p : m.Participants()) {
        QStringList rows;
        for (const auto& row : p->Props) {
            QStringList cells;
            for (const std::string& c : row) cells << Quoted(c);
            rows << QLatin1Char('[') + cells.join(QLatin1Char(',')) + QLatin1Char(']');
        }
        out << QStringLiteral("  %1 %2 role %3 type %4 tax %5 name %6 born %7 benef %8 props [%9]")
                   .arg(p->ID)
                   .arg(QLatin1String(p->ClassName()))
                   .arg(p->Role)
                   .arg(p->PartyType)
                   .arg(p->TaxStatus)
                   .arg(Quoted(p->FullName()), Num(p->BirthDate))
                   .arg(p->BenefKey)
                   .arg(rows.join(QLatin1Char(',')));
    }
    out << QStringLiteral("Items: %1").arg(m.Count());
    for (const auto& item : m.Items()) ItemLines(*item, 1, out);
    out << QStringLiteral("To-do: %1").arg(m.ToDo.size());
    for (const kv::TToDoData& t : m.ToDo)
        out << QStringLiteral("  %1 kind %2 %3 %4 %5 due %6%7")
                   .arg(t.ID)
                   .arg(t.Kind)
                   .arg(Quoted(t.Title), Quoted(t.Category), Quoted(t.Text), Num(t.Due), t.Done ? " done" : "");
    out << QStringLiteral("Texts: %1").arg(m.Texts.size());
    for (const std::string& t : m.Texts) out << QStringLiteral("  ") + Line(t);
    out << QStringLiteral("Strategy: %1").arg(m.Strategy().Values.size());
    for (const std::string& t : m.Strategy().Values) out << QStringLiteral("  ") + Line(t);
    out << QStringLiteral("Typed records: %1").arg(m.TypedRecords.size());
    out << QStringLiteral("Residences: %1").arg(m.Residences.size());
    for (const kv::TResidenceRecord& r : m.Residences)
        out << QStringLiteral("  %1 %2 value %3").arg(r.ID).arg(Quoted(r.Name), Num(r.Value));
    return out.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QByteArray Bytes(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) throw CliError(QStringLiteral("Cannot read %1").arg(path).toStdString());
    return f.readAll();
}

QString Compare(const QByteArray& a, const QByteArray& b) {
    const qsizetype n = std::min(a.size(), b.size());
    for (qsizetype i = 0; i < n; ++i)
        if (a[i] != b[i]) return QStringLiteral("differs at byte %1").arg(i);
    return a.size() == b.size() ? QStringLiteral("identical") : QStringLiteral("differs at byte %1").arg(n);
}

// Saves into a fresh folder of the system's temporary folder, never beside
// the client file. A sequential file cannot come back in its own layout
// byte for byte, so it is compared as a model: saved sectioned, that copy
// loaded and saved again, and the two sectioned files compared.
QString RoundTrip(TLoadedModel& l) {
    QTemporaryDir tmp(QDir(QDir::tempPath()).filePath(QStringLiteral("tessary-inspect-XXXXXX")));
    if (!tmp.isValid()) throw CliError("Cannot make a temporary folder: " + tmp.errorString().toStdString());
    kv::TModelData& m = *l.model;
    const QString first = tmp.filePath(QStringLiteral("first.dat"));
    m.SaveAs(Path8(first), kv::TFileLayout::Sectioned, m.Version());
    if (m.Layout() == kv::TFileLayout::Sectioned) return Compare(Bytes(Q(m.ReadPath())), Bytes(first));
    auto copy = NewModel(l, Path8(first));
    copy->Load();
    const QString second = tmp.filePath(QStringLiteral("second.dat"));
    copy->SaveAs(Path8(second), kv::TFileLayout::Sectioned, copy->Version());
    return Compare(Bytes(first), Bytes(second));
}

// ------------------------------------------------------------ Models.dat

QString ShowModels(const QString& file, bool json, const kv::TLibrarySettings& settings) {
    const QFileInfo info(file);
    QDir clientDir = info.absoluteDir();
    QDir base = clientDir;
    base.cdUp();
    const int kind = std::max(KindOfFolder(clientDir.dirName()), 0);
    kv::TProjHdr hdr(static_cast<std::uint8_t>(kind), Path8(info.fileName()), Path8(clientDir.dirName()),
                     Path8(base.absolutePath()), settings);
    const kv::TModelLists lists = hdr.Load(true);
    const std::pair<const char*, const kv::TModels*> both[] = {{"Main", lists.Main.get()},
                                                               {"Needs", lists.Needs.get()}};
    if (json) {
        QJsonObject o;
        o.insert(QStringLiteral("file"), file);
        o.insert(QStringLiteral("type"), QStringLiteral("Models.dat"));
        o.insert(QStringLiteral("kind"), kind);
        o.insert(QStringLiteral("header"), QJsonObject{{QStringLiteral("name"), Q(hdr.Name)},
                                                       {QStringLiteral("id"), hdr.ID},
                                                       {QStringLiteral("text1"), Q(hdr.Text1)},
                                                       {QStringLiteral("text2"), Q(hdr.Text2)},
                                                       {QStringLiteral("date"), JsonNum(hdr.Date)},
                                                       {QStringLiteral("hideNames"), hdr.HideNames()},
                                                       {QStringLiteral("protected"), hdr.IsProtected()}});
        for (const auto& [name, list] : both) {
            QJsonArray solutions;
            for (std::int32_t i = 0; list && i < list->Count(); ++i) {
                const kv::TModel& s = list->Get(i);
                solutions.append(QJsonObject{{QStringLiteral("name"), Q(s.Name)},
                                             {QStringLiteral("id"), s.ID},
                                             {QStringLiteral("folder"), Q(list->DirName(i))}});
            }
            o.insert(QLatin1String(name), solutions);
        }
        return QString::fromUtf8(QJsonDocument(o).toJson(QJsonDocument::Compact)) + QLatin1Char('\n');
    }
    QStringList out;
    out << QStringLiteral("Models.dat: %1").arg(file);
    out << QStringLiteral("Product kind: %1").arg(KindText(kind));
    out << QStringLiteral("Client: %1, id %2, date %3").arg(Quoted(hdr.Name)).arg(hdr.ID).arg(Num(hdr.Date));
    out << QStringLiteral("Texts: %1 %2").arg(Quoted(hdr.Text1), Quoted(hdr.Text2));
    out << QStringLiteral("Protected: %1, names hidden: %2")
               .arg(hdr.IsProtected() ? "yes" : "no", hdr.HideNames() ? "yes" : "no");
    for (const auto& [name, list] : both) {
        out << QStringLiteral("%1 solutions: %2").arg(QLatin1String(name)).arg(list ? list->Count() : 0);
        for (std::int32_t i = 0; list && i < list->Count(); ++i)
            out << QStringLiteral("  %1 id %2 folder %3")
                       .arg(Quoted(list->Get(i).Name))
                       .arg(list->Get(i).ID)
                       .arg(Q(list->DirName(i)));
    }
    return out.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

// ------------------------------------------------------------ Entries.dat

QString ShowEntries(const QString& file, bool json) {
    // DIR/<product>/Core/Entries.dat names its product.
    QDir product = QFileInfo(file).absoluteDir();
    product.cdUp();
    const auto chart = LoadChartGuessing(Path8(file), ProductKindOf(product.dirName()));
    if (json) {
        QJsonArray entries;
        for (const auto& e : chart->EntriesByID())
            entries.append(
                QJsonObject{{QStringLiteral("entry"), e->EntryID},
                            {QStringLiteral("classNumber"), e->ItemClassNo},
                            {QStringLiteral("class"), QLatin1String(kv::ItemClassByNumber(e->ItemClassNo).Name)},
                            {QStringLiteral("group"), e->GroupID},
                            {QStringLiteral("kindCode"), e->KindCode()},
                            {QStringLiteral("name"), Q(e->Name)},
                            {QStringLiteral("frenchName"), Q(e->FrenchName)}});
        QJsonObject o{{QStringLiteral("file"), file},
                      {QStringLiteral("type"), QStringLiteral("Entries.dat")},
                      {QStringLiteral("kind"), chart->Product()},
                      {QStringLiteral("version"), chart->Version()},
                      {QStringLiteral("entries"), entries}};
        return QString::fromUtf8(QJsonDocument(o).toJson(QJsonDocument::Compact)) + QLatin1Char('\n');
    }
    QStringList out;
    out << QStringLiteral("Entries.dat: %1").arg(file);
    out << QStringLiteral("Product kind: %1").arg(KindText(chart->Product()));
    out << QStringLiteral("Version: %1").arg(chart->Version());
    out << QStringLiteral("Entries: %1").arg(chart->EntriesByID().size());
    for (const auto& e : chart->EntriesByID())
        out << QStringLiteral("  %1 class %2 %3 group %4 kind %5 %6")
                   .arg(e->EntryID)
                   .arg(e->ItemClassNo)
                   .arg(QLatin1String(kv::ItemClassByNumber(e->ItemClassNo).Name))
                   .arg(e->GroupID)
                   .arg(e->KindCode())
                   .arg(Quoted(e->Name));
    return out.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

} // namespace

QString RunInspect(const QStringList& args) {
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOption({QStringLiteral("core-dir"), QStringLiteral("Folder of Entries.dat."), QStringLiteral("dir")});
    AddKeyOptions(parser);
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print a JSON object.")});
    parser.addOption({QStringLiteral("roundtrip"), QStringLiteral("Save to a temporary file and compare.")});
    if (!parser.parse(args)) throw CliError(parser.errorText().toStdString());
    if (parser.positionalArguments().size() != 1) throw CliError("inspect needs one file: tessary-cli inspect FILE");
    const QString file = parser.positionalArguments().first();
    TInspectOptions o;
    o.coreDir = parser.value(QStringLiteral("core-dir"));
    o.json = parser.isSet(QStringLiteral("json"));
    // Before the file's own errors: a key file's failure names the key file.
    const QString key = KeyOption(parser);
    try {
        if (!QFileInfo(file).isFile()) throw CliError("no such file");
        ApplyClientKey(o.settings, key);
        const TKindOfFile what = KindOfFile(file);
        if (parser.isSet(QStringLiteral("roundtrip"))) {
            if (what != TKindOfFile::FinItems) throw CliError("--roundtrip compares FinItems.dat files only");
            TLoadedModel l = LoadModel(file, o);
            const QString verdict = RoundTrip(l);
            if (verdict != QLatin1String("identical")) throw CliVerdict{verdict + QLatin1Char('\n'), 1};
            return verdict + QLatin1Char('\n');
        }
        switch (what) {
            case TKindOfFile::Models: return ShowModels(file, o.json, o.settings);
            case TKindOfFile::Entries: return ShowEntries(file, o.json);
            case TKindOfFile::FinItems: break;
        }
        const TLoadedModel l = LoadModel(file, o);
        return ShowModel(file, l, o.json);
    } catch (const std::exception& e) {
        // One line that names the file, whatever part failed.
        const QString message = QString::fromUtf8(e.what());
        if (message.contains(QFileInfo(file).fileName())) throw;
        throw CliError(QStringLiteral("%1: %2").arg(file, message).toStdString());
    }
}

} // namespace tessary
