#include "import/ImportSession.h"
#include "import/ImportLog.h"
#include "import/KeyStore.h"

#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QSettings>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>

#include "KvErrors.h"
#include "KvSettings.h"
#include "catalogue/KvFnModels.h"
#include "catalogue/KvFnProjHdr.h"
#include "decl/KvDayNumbers.h"
#include "core/Grid.h"
#include "core/ProductQuicksort.h"
#include "entries/KvFnEntries.h"
#include "items/KvFnPortfolio.h"
#include "model/KvFnModelData.h"
#include "model/KvFnOwnership.h"
#include "parties/KvFnParty.h"

namespace tessary {

namespace {

const char* const kOrganisation = "Torvane Labs Inc.";

std::string Utf8(const QString& s) { return s.toStdString(); }

QString WithSeparator(QString dir) {
    if (!dir.isEmpty() && !dir.endsWith(QLatin1Char('/'))) dir += QLatin1Char('/');
    return dir;
}

TFolderState ListableState(const std::string& path, std::error_code& ec) {
    const auto status = std::filesystem::status(path, ec);
    if (!std::filesystem::exists(status)) return TFolderState::Missing;
    if (!std::filesystem::is_directory(status)) return TFolderState::NotAFolder;
    std::filesystem::directory_iterator listing(path, ec);
    return ec ? TFolderState::Unreadable : TFolderState::Listed;
}

// A configured folder that is not there must not look like a product without
// client files: the adviser would be told "no client file" about a typo.
void RequireListableFolder(const QString& dir, const QString& product, TFolderState& state) {
    const std::string path = Utf8(dir);
    const std::string what = "The data folder \"" + path + "\" of " + Utf8(product);
    std::error_code ec;
    state = ListableState(path, ec);
    switch (state) {
        case TFolderState::Missing: throw kv::EInOutError(what + " does not exist");
        case TFolderState::NotAFolder: throw kv::EInOutError(what + " is not a folder");
        case TFolderState::Unreadable: throw kv::EInOutError(what + " cannot be listed: " + ec.message());
        default: break;
    }
}

} // namespace

QString ProductKey(std::uint8_t kind) {
    switch (kind) {
        case 0: return QStringLiteral("Meridel");
        case 1: return QStringLiteral("Basalto");
        case 2: return QStringLiteral("Quorren");
        default: return {};
    }
}

int ProductKindOf(const QString& text) {
    const QString t = text.trimmed();
    for (int kind = 0; kind < 3; ++kind) {
        static const char* const kShort[] = {"MD", "BS", "QR"};
        if (t.compare(QLatin1String(kShort[kind]), Qt::CaseInsensitive) == 0 ||
            t.compare(ProductKey(static_cast<std::uint8_t>(kind)), Qt::CaseInsensitive) == 0)
            return kind;
    }
    return -1;
}

QString ExpandEnvironment(const QString& text) {
    static const QRegularExpression ref(QStringLiteral("%([^%]+)%"));
    QString out;
    qsizetype last = 0;
    auto it = ref.globalMatch(text);
    while (it.hasNext()) {
        const auto m = it.next();
        out += text.mid(last, m.capturedStart() - last);
        out += qEnvironmentVariable(m.captured(1).toLocal8Bit().constData());
        last = m.capturedEnd();
    }
    return out + text.mid(last);
}

QString ReadProductValue(const QString& productKey, const QString& valueName) {
    QSettings settings(QSettings::NativeFormat, QSettings::UserScope, QString::fromLatin1(kOrganisation), productKey);
    return ExpandEnvironment(settings.value(QStringLiteral("1.0/") + valueName).toString());
}

QSettings ProgramSettings() {
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, QString::fromLatin1(kOrganisation),
                     QStringLiteral("Tessary"));
}

QString ProgramProductValue(const QString& productKey, const QString& valueName) {
    return ExpandEnvironment(
        ProgramSettings().value(QStringLiteral("Products/%1/%2").arg(productKey, valueName)).toString());
}

QString ConfiguredFolder(const QString& productKey, const QString& valueName) {
    const QString own = ProgramProductValue(productKey, valueName);
    return own.isEmpty() ? ReadProductValue(productKey, valueName) : own;
}

QString ResolveFolder(const TFolderOverrides& overrides, std::uint8_t kind, bool core) {
    const QString& direct = core ? overrides.CoreDir : overrides.DataDir;
    if (!direct.isEmpty()) return direct;
    const QString sub = core ? QStringLiteral("/Core") : QStringLiteral("/Data");
    if (!overrides.DataRoot.isEmpty()) return QDir(overrides.DataRoot).filePath(ProductKey(kind) + sub);
    return ConfiguredFolder(ProductKey(kind), core ? QStringLiteral("CoreDir") : QStringLiteral("DataDir"));
}

QString ConfiguredClientKey(const QString& option) {
    if (!option.isEmpty()) return option;
    const QString env = qEnvironmentVariable("TESSARY_CLIENT_KEY");
    if (!env.isEmpty()) return env;
    const TKeyringRead stored = TKeyStore().Read();
    if (!stored.Key.isEmpty()) return stored.Key;
    return ProgramSettings().value(QStringLiteral("Keys/ClientFileKey")).toString();
}

namespace {

QString FirstLine(const QByteArray& bytes) {
    qsizetype end = bytes.indexOf('\n');
    if (end < 0) end = bytes.size();
    if (end > 0 && bytes[end - 1] == '\r') --end;
    return QString::fromUtf8(bytes.left(end));
}

} // namespace

QString KeyFromOptions(const QString& key, const QString& keyFile) {
    if (!keyFile.isEmpty()) {
        QFile file(keyFile);
        if (!file.open(QIODevice::ReadOnly))
            throw kv::EInOutError("Cannot read the key file \"" + Utf8(keyFile) + "\": " + Utf8(file.errorString()));
        const QString line = FirstLine(file.readLine(65536));
        if (line.isEmpty()) throw kv::EInOutError("The key file \"" + Utf8(keyFile) + "\" holds no key");
        return line;
    }
    if (key == QLatin1String("-")) {
        QFile in;
        if (!in.open(stdin, QIODevice::ReadOnly)) throw kv::EInOutError("Cannot read the key from standard input");
        const QString line = FirstLine(in.readLine(65536));
        if (line.isEmpty()) throw kv::EInOutError("Standard input gave no key");
        return line;
    }
    return key;
}

void ApplyClientKey(kv::TLibrarySettings& settings, const QString& option) {
    settings.ClientFileKey = Utf8(ConfiguredClientKey(option));
}

namespace {

// A look at a data folder for the settings: without a key (a protected file
// is counted, never opened) and renaming nothing, as the adviser may still be
// typing the path.
std::unique_ptr<kv::TProjHdrLst> LookAtFolder(std::uint8_t kind, const QString& dir) {
    auto list = std::make_unique<kv::TProjHdrLst>(Utf8(dir), std::string(), kind, kv::kDefaultLibrarySettings);
    list->RenameFolders = false;
    list->Load(false);
    return list;
}

} // namespace

TFolderSurvey SurveyDataFolder(std::uint8_t kind, const QString& dataDir) {
    TFolderSurvey survey;
    if (dataDir.isEmpty()) return survey;
    std::error_code ec;
    survey.State = ListableState(Utf8(dataDir), ec);
    if (survey.State != TFolderState::Listed) return survey;
    std::unique_ptr<kv::TProjHdrLst> list;
    try {
        list = LookAtFolder(kind, dataDir);
    } catch (const std::exception& e) {
        survey.Error = QString::fromUtf8(e.what());
        return survey;
    }
    survey.Locked = static_cast<int>(list->Locked().size());
    survey.Files = static_cast<int>(list->Items().size()) + survey.Locked;
    if (survey.Files == 0) survey.State = TFolderState::Empty;
    return survey;
}

TKeyCheck CheckClientKey(const QString& key, const QStringList& dataDirs) {
    TKeyCheck check;
    for (std::uint8_t kind = 0; kind < 3 && kind < dataDirs.size(); ++kind) {
        const QString& dir = dataDirs[kind];
        std::error_code ec;
        if (dir.isEmpty() || ListableState(Utf8(dir), ec) != TFolderState::Listed) continue;
        std::unique_ptr<kv::TProjHdrLst> list;
        try {
            list = LookAtFolder(kind, dir);
        } catch (const std::exception&) {
            continue;
        }
        if (list->Locked().empty()) continue;
        kv::TLibrarySettings keyed;
        keyed.ClientFileKey = Utf8(key);
        kv::TProjHdr header(kind, kv::ModelsFileName, list->Locked().front(), list->DataDir(), keyed);
        check.Product = ProductKey(kind);
        try {
            header.LoadHeader();
            check.Result = TKeyCheck::Opens;
        } catch (const kv::EKvError&) {
            check.Result = TKeyCheck::DoesNotOpen;
        }
        // The name stands in the header's first record, before any enciphered text.
        check.File = QString::fromStdString(header.Name.empty() ? list->Locked().front() : header.Name);
        return check;
    }
    return check;
}

kv::TLibrarySettings TodaysLibrarySettings() {
    const QDate today = QDate::currentDate();
    kv::TLibrarySettings settings;
    settings.PlanningDate =
        static_cast<double>(kv::DayNumberOfDate(today.year(), unsigned(today.month()), unsigned(today.day())));
    settings.CurrentYear = today.year();
    return settings;
}

QString PartyName(const kv::TParticipant& party) { return QString::fromStdString(party.FullName()); }

QDateTime DateTimeOfDayNumber(double dayNumber) {
    // A value that is not finite, or lies beyond 4e14 ms (about 12,700 years)
    // of the epoch, stands for the epoch itself.
    if (!std::isfinite(dayNumber) || !(std::abs(std::round(dayNumber * 86400000.0)) < 4.0e14)) dayNumber = 0;
    const kv::TCivilDateTime t = kv::DateTimeOfDayNumber(dayNumber);
    // Qt counts years without a year 0: astronomical year 0 is its year -1.
    const auto year = static_cast<int>(t.Date.Year <= 0 ? t.Date.Year - 1 : t.Date.Year);
    return QDateTime(QDate(year, int(t.Date.Month), int(t.Date.Day)),
                     QTime::fromMSecsSinceStartOfDay(static_cast<int>(t.Millisecond)), Qt::UTC);
}

QString RenderHeaderDate(double dayNumber, const QLocale& locale) {
    // Local time would shift the text by the offset; the stored number is wall-clock.
    return locale.toString(DateTimeOfDayNumber(dayNumber), locale.dateTimeFormat(QLocale::ShortFormat));
}

QString RenderHeaderDate(double dayNumber) { return RenderHeaderDate(dayNumber, QLocale::system()); }

TImportSession::TImportSession(TFolderOverrides overrides, kv::TLibrarySettings settings)
    : overrides_(std::move(overrides)), settings_(std::move(settings)) {}

TImportSession::~TImportSession() = default;

QString TImportSession::DataDir() const { return ResolveFolder(overrides_, kind_, false); }

QString TImportSession::CoreDir() const { return ResolveFolder(overrides_, kind_, true); }

void TImportSession::ReleaseSolution() {
    model_.reset();
    entries_.reset();
    parties_.clear();
    holders_.clear();
    solution_ = -1;
}

void TImportSession::ReleaseFile() {
    ReleaseSolution();
    solutions_.reset();
    needs_.reset();
    file_ = -1;
}

void TImportSession::ChooseProduct(std::uint8_t kind) {
    ReleaseFile();
    files_.clear();
    list_.reset();
    kind_ = kind;
    folderState_ = TFolderState::NotConfigured;
    const QString dataDir = DataDir();
    if (dataDir.isEmpty()) return;
    RequireListableFolder(dataDir, ProductKey(kind), folderState_);
    folderState_ = TFolderState::Listed;
    list_ = std::make_unique<kv::TProjHdrLst>(Utf8(dataDir), std::string(), kind, settings_);
    list_->Load(false);
    if (list_->Items().empty() && list_->Locked().empty()) folderState_ = TFolderState::Empty;
    // Descending by the rendered date-time texts, as the planning products order
    // them; each text is rendered once, not once per comparison.
    struct TKeyed {
        kv::TProjHdr* Header;
        QString Text;
    };
    std::vector<TKeyed> keyed;
    keyed.reserve(list_->Items().size());
    const QLocale locale = QLocale::system();
    for (const auto& h : list_->Items()) keyed.push_back({h.get(), h ? RenderHeaderDate(h->Date, locale) : QString()});
    std::vector<const TKeyed*> order;
    order.reserve(keyed.size());
    for (const TKeyed& k : keyed) order.push_back(&k);
    PointerListSort(order, [](const TKeyed* a, const TKeyed* b) {
        if (!a->Header || !b->Header) return 0;
        return -a->Text.localeAwareCompare(b->Text);
    });
    for (const TKeyed* k : order) files_.push_back(k->Header);
    qCInfo(lcImport).noquote()
        << QStringLiteral("%1: %2 client files in %3").arg(ProductKey(kind)).arg(files_.size()).arg(dataDir);
}

kv::TProjHdr* TImportSession::File(int index) const {
    return index >= 0 && index < FileCount() ? files_[static_cast<std::size_t>(index)] : nullptr;
}

QStringList TImportSession::FileNames() const {
    QStringList names;
    for (const kv::TProjHdr* h : files_) names << QString::fromStdString(h->Name);
    return names;
}

int TImportSession::FindFile(const QString& name) const { return FileNames().indexOf(name); }

QStringList TImportSession::LockedFiles() const {
    QStringList names;
    if (list_)
        for (const std::string& folder : list_->Locked()) names << QString::fromStdString(folder);
    return names;
}

void TImportSession::ChooseFile(int index) {
    ReleaseFile();
    kv::TProjHdr* header = File(index);
    if (!header) return;
    kv::TModelLists lists = header->Load(true);
    solutions_ = std::move(lists.Main);
    needs_ = std::move(lists.Needs);
    file_ = index;
}

kv::TModels* TImportSession::Solutions() const { return solutions_.get(); }

QStringList TImportSession::SolutionNames() const {
    QStringList names;
    if (solutions_)
        for (std::int32_t i = 0; i < solutions_->Count(); ++i)
            names << QString::fromStdString(solutions_->DisplayName(i));
    return names;
}

int TImportSession::FindSolution(const QString& name) const { return SolutionNames().indexOf(name); }

QString TImportSession::PartyLabel() const {
    switch (kind_) {
        case 1: return QString::fromLatin1(QT_TRANSLATE_NOOP("tessary::TImportSession", "Select Corporation"));
        case 2: return QString::fromLatin1(QT_TRANSLATE_NOOP("tessary::TImportSession", "Select Trust"));
        default: return QString::fromLatin1(QT_TRANSLATE_NOOP("tessary::TImportSession", "Select Party"));
    }
}

QString TImportSession::HolderFirstText() const {
    switch (kind_) {
        case 1: return QString::fromLatin1(QT_TRANSLATE_NOOP("tessary::TImportSession", "All Shareholders"));
        case 2: return QString::fromLatin1(QT_TRANSLATE_NOOP("tessary::TImportSession", "All Beneficiaries"));
        default: return {};
    }
}

void TImportSession::ChooseSolution(int index) {
    ReleaseSolution();
    if (!solutions_ || !solutions_->Find(index)) return;

    const std::string entriesPath = Utf8(WithSeparator(CoreDir())) + "Entries.dat";
    entries_ = std::make_unique<kv::TEntries>(kind_, entriesPath);
    entries_->Load(false);

    const std::string path = solutions_->Path(index) + "FinItems.dat";
    model_ = std::make_unique<kv::TModelData>(kind_, solutions_->Find(index), solutions_.get(), solutions_.get(),
                                              nullptr, path, entries_.get(), settings_);
    model_->Load();
    qCInfo(lcImport).noquote() << "solution read:" << QString::fromStdString(model_->ReadPath());
    solution_ = index;

    for (const auto& p : model_->Participants()) {
        if (p->Role == 1) parties_.push_back(p.get());
        if (HolderListShown() && dynamic_cast<const kv::TCorpParticipant*>(p.get())) holders_.push_back(p.get());
    }
}

double TImportSession::Factor(const kv::TParticipant* party, const kv::TParticipant* holder) const {
    if (!party || !holder || !model_) return 1.0;
    if (kind_ == 1) return kv::GetProcCommonSharesOwned(*model_, party->ID, holder->ID);
    if (kind_ == 2) return kv::GetPartyTrustBenefCapitalPercent(*model_, holder->BenefKey, party->ID) / 100.0;
    return 1.0;
}

namespace {

// The planning products re-sort the result list after every account, which
// fixes an order among entries of one kind; up to this many accounts that
// order is reproduced. Beyond it (no real plan holds so many) one stable sort
// keeps entries of a kind in model order, so a huge file costs n log n.
constexpr std::size_t kExactOrderAccounts = 256;

int CompareKinds(const TImportEntry& a, const TImportEntry& b) {
    const int c = a.KindText.compare(b.KindText);
    return (c > 0) - (c < 0);
}

std::string AmountText(double v) {
    std::ostringstream s;
    s.precision(17);
    s << v;
    return s.str();
}

std::int32_t WholeAmount(const kv::TFinItem& account, double amount, const std::string& path) {
    if (std::isfinite(amount) && amount >= -2147483648.0 && amount <= 2147483647.0)
        return static_cast<std::int32_t>(amount);
    // The products would stop on such a value too; a silent clamp would put a
    // wrong figure in the adviser's grid.
    throw kv::EKvError("Account \"" + account.Name + "\" in \"" + path + "\" has the amount " + AmountText(amount) +
                       ", which is not a whole number of dollars the import can add");
}

} // namespace

std::vector<TImportEntry> TImportSession::Collect(const kv::TParticipant* party, const kv::TParticipant* holder) const {
    std::vector<TImportEntry> result;
    if (!model_ || !party) return result;
    kv::TItemRefs accounts;
    kv::FindByEntryIDOwned(*model_, &accounts, kv::kImportEntryIDs, 0, party->ID);
    const double factor = Factor(party, holder);
    const bool exactOrder = accounts.size() <= kExactOrderAccounts;

    std::string kindText; // an unexpected entry keeps the text of the account before it
    for (const kv::TFinItem* account : accounts) {
        if (const kv::TAccountKind kind = kv::AccountKindOf(*account); kind != kv::TAccountKind::None)
            kindText = std::to_string(static_cast<int>(kind));
        if (!kv::IsBankingAccount(*account) && !(account->Value <= 0))
            result.push_back(
                {kindText, WholeAmount(*account, RoundHalfEven(account->Value * factor), model_->ReadPath())});
        if (exactOrder) TextListSort(result, CompareKinds);
    }
    if (!exactOrder)
        std::stable_sort(result.begin(), result.end(),
                         [](const TImportEntry& a, const TImportEntry& b) { return a.KindText < b.KindText; });
    return result;
}

QString TImportSession::IdentifyingText() const {
    return model_ ? QString::fromStdString(model_->IdentifyingText()) : QString();
}

} // namespace tessary
