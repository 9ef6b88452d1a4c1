#include "import/ImportSession.h"

#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QLocale>
#include <QRegularExpression>
#include <QSettings>
#include <cmath>

#include "KvSettings.h"
#include "catalogue/KvFnModels.h"
#include "catalogue/KvFnProjHdr.h"
#include "core/Grid.h"
#include "core/OriginalSort.h"
#include "entries/KvFnEntries.h"
#include "items/KvFnPortfolio.h"
#include "model/KvFnModelData.h"
#include "model/KvFnOwnership.h"
#include "model/KvFnParty.h"

namespace tessary {

namespace {

const char* const kOrganisation = "Torvane Labs Inc.";

std::string Utf8(const QString& s) { return s.toStdString(); }

QString WithSeparator(QString dir) {
    if (!dir.isEmpty() && !dir.endsWith(QLatin1Char('/'))) dir += QLatin1Char('/');
    return dir;
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

QString ConfiguredClientKey(const QString& option) {
    if (!option.isEmpty()) return option;
    const QString env = qEnvironmentVariable("TESSARY_CLIENT_KEY");
    if (!env.isEmpty()) return env;
    QSettings settings(QSettings::NativeFormat, QSettings::UserScope, QString::fromLatin1(kOrganisation),
                       QStringLiteral("Tessary"));
    return settings.value(QStringLiteral("Keys/ClientFileKey")).toString();
}

void ApplyClientKey(const QString& option) { kv::ProgramSettings().ClientFileKey = Utf8(ConfiguredClientKey(option)); }

QString PartyName(const kv::TParticipant& party) { return QString::fromStdString(party.FullName()); }

QString RenderHeaderDate(double dayNumber, const QLocale& locale) {
    // Local time would shift the text by the offset; the stored number is wall-clock.
    const QDateTime epoch(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC);
    const double ms = std::isfinite(dayNumber) ? std::round(dayNumber * 86400000.0) : 0;
    const QDateTime when = std::abs(ms) < 4.0e14 ? epoch.addMSecs(static_cast<qint64>(ms)) : epoch;
    return locale.toString(when, locale.dateTimeFormat(QLocale::ShortFormat));
}

QString RenderHeaderDate(double dayNumber) { return RenderHeaderDate(dayNumber, QLocale::system()); }

TImportSession::TImportSession(TFolderOverrides overrides) : overrides_(std::move(overrides)) {}

TImportSession::~TImportSession() = default;

QString TImportSession::DataDir() const {
    if (!overrides_.DataDir.isEmpty()) return overrides_.DataDir;
    if (!overrides_.DataRoot.isEmpty())
        return QDir(overrides_.DataRoot).filePath(ProductKey(kind_) + QStringLiteral("/Data"));
    return ReadProductValue(ProductKey(kind_), QStringLiteral("DataDir"));
}

QString TImportSession::CoreDir() const {
    if (!overrides_.CoreDir.isEmpty()) return overrides_.CoreDir;
    if (!overrides_.DataRoot.isEmpty())
        return QDir(overrides_.DataRoot).filePath(ProductKey(kind_) + QStringLiteral("/Core"));
    return ReadProductValue(ProductKey(kind_), QStringLiteral("CoreDir"));
}

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
    const QString dataDir = DataDir();
    if (dataDir.isEmpty()) return;
    list_ = std::make_unique<kv::TProjHdrLst>(Utf8(dataDir), std::string(), kind);
    list_->Load(false);
    // Descending by the rendered date-time texts, as the planning products order
    // them; each text is rendered once, not once per comparison.
    struct TKeyed {
        kv::TProjHdr* Header;
        QString Text;
    };
    std::vector<TKeyed> keyed;
    keyed.reserve(list_->Items().size());
    const QLocale locale = QLocale::system();
    for (const auto& h : list_->Items())
        keyed.push_back({h.get(), h ? RenderHeaderDate(h->Date, locale) : QString()});
    std::vector<const TKeyed*> order;
    order.reserve(keyed.size());
    for (const TKeyed& k : keyed) order.push_back(&k);
    PointerListSort(order, [](const TKeyed* a, const TKeyed* b) {
        if (!a->Header || !b->Header) return 0;
        return -a->Text.localeAwareCompare(b->Text);
    });
    for (const TKeyed* k : order) files_.push_back(k->Header);
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
        for (std::int32_t i = 0; i < solutions_->Count(); ++i) names << QString::fromStdString(solutions_->DisplayName(i));
    return names;
}

int TImportSession::FindSolution(const QString& name) const { return SolutionNames().indexOf(name); }

QString TImportSession::PartyLabel() const {
    switch (kind_) {
    case 1: return QStringLiteral("Select Corporation");
    case 2: return QStringLiteral("Select Trust");
    default: return QStringLiteral("Select Party");
    }
}

QString TImportSession::HolderFirstText() const {
    switch (kind_) {
    case 1: return QStringLiteral("All Shareholders");
    case 2: return QStringLiteral("All Beneficiaries");
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
                                              nullptr, path, entries_.get());
    kv::ProgramSettings().CurrentYear = QDate::currentDate().year();
    model_->Load();
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

std::vector<TImportEntry> TImportSession::Collect(const kv::TParticipant* party, const kv::TParticipant* holder) const {
    std::vector<TImportEntry> result;
    if (!model_ || !party) return result;
    kv::TItemRefs accounts;
    kv::FindByEntryIDOwned(*model_, &accounts, kv::kImportEntryIDs, 0, party->ID);
    const double factor = Factor(party, holder);

    std::string kindText;   // an unexpected entry keeps the text of the account before it
    for (const kv::TFinItem* account : accounts) {
        switch (account->EntryID()) {
        case 948:
        case 2232:
        case 6105: kindText = "1"; break;
        case 2333: kindText = "2"; break;
        case 1239: kindText = account->SpecProps.GetInt("RRSPTYPE", 0) == 1 ? "4" : "3"; break;
        case 1307: kindText = "3"; break;
        case 5098: kindText = "4"; break;
        case 1132:
        case 1375: kindText = "5"; break;
        default: break;
        }
        const bool banking = account->SpecProps.GetInt("IsBankingAccount", 0) != 0;
        if (!banking && (account->Value > 0 || std::isnan(account->Value))) {
            const double amount = RoundHalfEven(account->Value * factor);
            const double clamped = std::isfinite(amount) ? std::clamp(amount, -2147483648.0, 2147483647.0) : 0;
            result.push_back({kindText, static_cast<std::int32_t>(clamped)});
        }
        TextListSort(result, [](const TImportEntry& a, const TImportEntry& b) {
            const int c = a.KindText.compare(b.KindText);
            return (c > 0) - (c < 0);
        });
    }
    return result;
}

QString TImportSession::IdentifyingText() const {
    return model_ ? QString::fromStdString(model_->IdentifyingText()) : QString();
}

} // namespace tessary
