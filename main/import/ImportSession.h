// The import's choice steps (product, client file, solution, party) and its
// collection of account amounts: one implementation for the dialog and the
// command line.
#pragma once

#include <QDateTime>
#include <QLocale>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>
#include <vector>

#include "KvSettings.h"
#include "core/ImportMerge.h"

namespace kv {
class TEntries;
class TModelData;
class TModels;
class TParticipant;
class TProjHdr;
class TProjHdrLst;
} // namespace kv

namespace tessary {

// Product key of a product kind: "Meridel", "Basalto", "Quorren".
QString ProductKey(std::uint8_t kind);
// Product kind of "MD"/"BS"/"QR" (any case) or of a product key; -1 if none.
int ProductKindOf(const QString& text);

// %NAME% references replaced from the environment; unknown names give "".
QString ExpandEnvironment(const QString& text);
// A product's configured folder ("DataDir" or "CoreDir"), read only; empty
// when it cannot be read.
QString ReadProductValue(const QString& productKey, const QString& valueName);

// Tessary's own settings (organisation "Torvane Labs Inc.", application
// "Tessary"); the products' configurations are never written.
QSettings ProgramSettings();
// Tessary's own choice of a product's folder, "Products/<product>/<valueName>",
// expanded; empty when not set.
QString ProgramProductValue(const QString& productKey, const QString& valueName);
// Tessary's choice, else the product's configuration.
QString ConfiguredFolder(const QString& productKey, const QString& valueName);

// The configured client-file key: the option, else TESSARY_CLIENT_KEY, else
// the system keyring, else the old setting "Keys/ClientFileKey".
QString ConfiguredClientKey(const QString& option);
// The key the options --key and --key-file give: "--key -" reads the first
// line of standard input, --key-file the first line of the file. Throws
// kv::EInOutError naming the file when it cannot be read.
QString KeyFromOptions(const QString& key, const QString& keyFile);
// Makes it the client-file key of the settings.
void ApplyClientKey(kv::TLibrarySettings& settings, const QString& option);
// The library settings of a run of the window or the command line: today's
// date (read here, never by the library) as the planning date and its year as
// the planning year; no client-file key.
kv::TLibrarySettings TodaysLibrarySettings();

// Why a product's data folder gives no client files; the dialog says it in a
// line of its own.
enum class TFolderState { Listed, NotConfigured, Missing, NotAFolder, Unreadable, Empty };

// Where a run takes its folders from instead of the configuration.
struct TFolderOverrides {
    QString DataRoot; // ROOT/<product key>/Data and ROOT/<product key>/Core
    QString DataDir;
    QString CoreDir;
};
// A product's data folder (core: its core folder) in the order --data-dir /
// --core-dir, --data-root, Tessary's own choice, the product's configuration.
QString ResolveFolder(const TFolderOverrides& overrides, std::uint8_t kind, bool core);

// What a product's folder holds, for a line that says it.
struct TFolderSurvey {
    TFolderState State = TFolderState::NotConfigured;
    int Files = 0;  // client files, protected ones included
    int Locked = 0; // of which protected and not opened without a key
    QString Error;  // a header that cannot be read
};
// Lists the client files of a data folder without a key.
TFolderSurvey SurveyDataFolder(std::uint8_t kind, const QString& dataDir);

// Whether a key opens the first protected client file of the data folders
// (one per product kind, "" for none).
struct TKeyCheck {
    enum { Opens, DoesNotOpen, NoProtectedFile } Result = NoProtectedFile;
    QString File;
    QString Product;
};
TKeyCheck CheckClientKey(const QString& key, const QStringList& dataDirs);

// Context of the session's texts that the window translates (the command line
// keeps them English).
inline constexpr const char* kImportTextContext = "tessary::TImportSession";

class TImportSession {
public:
    // The session owns its library settings and hands them to the catalogue
    // and the model it loads.
    explicit TImportSession(TFolderOverrides overrides = {}, kv::TLibrarySettings settings = TodaysLibrarySettings());
    ~TImportSession();
    TImportSession(const TImportSession&) = delete;
    TImportSession& operator=(const TImportSession&) = delete;

    // 0: full import (the only mode the window uses); 1: the model's identifying text.
    int Mode = 0;

    std::uint8_t Kind() const { return kind_; }
    // Changes apply to what is loaded afterwards (and to later queries of
    // what is loaded).
    kv::TLibrarySettings& Settings() { return settings_; }
    const kv::TLibrarySettings& Settings() const { return settings_; }
    QString DataDir() const;
    QString CoreDir() const;
    const TFolderOverrides& Overrides() const { return overrides_; }

    // Product choice: scans the product's data directory and orders its client
    // files by rendered date-time, descending. Loading errors propagate; a data
    // folder that is missing or cannot be listed throws after FolderState()
    // says which.
    void ChooseProduct(std::uint8_t kind);
    TFolderState FolderState() const { return folderState_; }
    // Folder names of the protected client files left out for want of a key.
    QStringList LockedFiles() const;
    int FileCount() const { return static_cast<int>(files_.size()); }
    kv::TProjHdr* File(int index) const;
    QStringList FileNames() const;
    int FindFile(const QString& name) const;

    // File choice: loads the header and its solution lists (-1: none).
    void ChooseFile(int index);
    int CurrentFile() const { return file_; }
    kv::TModels* Solutions() const;
    QStringList SolutionNames() const;
    int FindSolution(const QString& name) const;

    // Solution choice: loads the chart of accounts and the solution's model,
    // then lists its parties (-1: none).
    void ChooseSolution(int index);
    int CurrentSolution() const { return solution_; }
    kv::TModelData* Model() const { return model_.get(); }
    kv::TEntries* Entries() const { return entries_.get(); }

    // Parties of role code 1, in list order.
    const std::vector<kv::TParticipant*>& Parties() const { return parties_; }
    // Corporate participants, only while the holder list is shown.
    const std::vector<kv::TParticipant*>& Holders() const { return holders_; }
    bool HolderListShown() const { return (kind_ == 1 || kind_ == 2) && Mode == 0; }
    // "Select Party" / "Select Corporation" / "Select Trust", untranslated
    // (context kImportTextContext).
    QString PartyLabel() const;
    // The holder list's first item: "" / "All Shareholders" / "All Beneficiaries",
    // untranslated.
    QString HolderFirstText() const;

    // The result list of a confirmation: kind texts and whole amounts, sorted by
    // kind. A null holder stands for the whole. An amount that is not a number
    // or does not fit the list's integer throws, naming the account and file.
    std::vector<TImportEntry> Collect(const kv::TParticipant* party, const kv::TParticipant* holder) const;
    // The factor a holder's share gives (1 for the whole or a personal file).
    double Factor(const kv::TParticipant* party, const kv::TParticipant* holder) const;
    // Mode 1: the loaded model's identifying text.
    QString IdentifyingText() const;

private:
    void ReleaseFile();
    void ReleaseSolution();

    TFolderOverrides overrides_;
    kv::TLibrarySettings settings_; // outlives everything below, which refers to it
    std::uint8_t kind_ = 0;
    TFolderState folderState_ = TFolderState::NotConfigured;
    std::unique_ptr<kv::TProjHdrLst> list_;
    std::vector<kv::TProjHdr*> files_;
    int file_ = -1;
    std::unique_ptr<kv::TModels> solutions_;
    std::unique_ptr<kv::TModels> needs_;
    int solution_ = -1;
    std::unique_ptr<kv::TEntries> entries_;
    std::unique_ptr<kv::TModelData> model_;
    std::vector<kv::TParticipant*> parties_;
    std::vector<kv::TParticipant*> holders_;
};

// Display name of a party, as the lists show it.
QString PartyName(const kv::TParticipant& party);

// The date and time of a day number (kv::DateTimeOfDayNumber) as a UTC
// QDateTime: the stored number is wall-clock time.
QDateTime DateTimeOfDayNumber(double dayNumber);
// Renders a header's date-time as the window shows it (the system locale's
// short date and time).
QString RenderHeaderDate(double dayNumber);
QString RenderHeaderDate(double dayNumber, const QLocale& locale);

} // namespace tessary
