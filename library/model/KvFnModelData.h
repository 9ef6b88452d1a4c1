// One solution of a client file in memory ("FinItems.dat"): parties, items,
// to-do entries, settings, strategy and the rest of its sections.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "items/KvBalance.h"
#include "items/KvFnFinItems.h"
#include "parties/KvFnParty.h"
#include "decl/KvYearsArray.h"
#include "model/KvModelMessages.h"
#include "model/KvRptComment.h"
#include "parties/KvPartyLists.h"

namespace kv {

class TEntries;
class TModels;
struct TModel;

// The newest format change this build knows (22 August 2017); Save writes it.
inline constexpr std::int32_t kCurrentFileVersion = kVersionEnciphered;

enum class TFileLayout { Sectioned, Sequential };

// Header magic of the sectioned layout for a product kind.
std::int32_t SectionedMagic(std::uint8_t kind);

struct TModelHeader { // section 1
    double Values[3] = {0, 0, 0};
    std::string Title;
    std::string Text;
    double Date = 0; // sectioned layout only
};

struct TToDoData { // section 5
    std::int32_t ID = 0;
    std::int32_t Kind = 0;
    std::string Title;
    std::string Category;
    std::string Text;
    double Due = 0;
    bool Done = false;
};

// Section 8 records of a class this build does not know: kept as read.
struct TTypedRecord {
    std::uint8_t ClassCode = 0;
    std::string Data;
};

struct TSmallRecord {
    std::uint8_t Code = 0;
    std::uint32_t Words[2] = {0, 0}; // stored only for codes below 100
};

struct TResidenceRecord { // section 9
    std::int32_t ID = 0;
    std::string Name;
    double Value = 0;
};

class TResidenceList : public std::vector<TResidenceRecord> {
public:
    const TResidenceRecord* FindByID(std::int32_t id) const {
        for (const TResidenceRecord& r : *this)
            if (r.ID == id) return &r;
        return nullptr;
    }
    double Total() const {
        double t = 0;
        for (const TResidenceRecord& r : *this) t += r.Value;
        return t;
    }
};

// The planning strategy's record (section 7): name=value texts. The class
// depends on the product kind.
class TStrategy {
public:
    virtual ~TStrategy() = default;
    std::vector<std::string> Values;
    virtual const char* ClassName() const { return "TStrategy"; }
};
class TStrategyBS : public TStrategy {
public:
    const char* ClassName() const override { return "TStrategyBS"; }
};
class TStrategyQR : public TStrategy {
public:
    const char* ClassName() const override { return "TStrategyQR"; }
};

inline constexpr int kSettingsBlockSize = 1048;

class TModelData : public TItemOwner {
public:
    // Arguments in the original order: kind, the solution record, the solution
    // list, the list whose flag says whether names are enciphered, an outer
    // owner, the path of "FinItems.dat", the chart of accounts; then the
    // library settings. The caller keeps the record, the lists, the chart and
    // the settings alive as long as the model.
    TModelData(std::uint8_t kind, const TModel* model, TModels* models, TModels* flagModels, void* owner,
               std::string path, TEntries* entries, const TLibrarySettings& settings);
    TModelData(std::uint8_t, const TModel*, TModels*, TModels*, void*, std::string, TEntries*,
               const TLibrarySettings&&) = delete;
    ~TModelData();
    TModelData(const TModelData&) = delete;
    TModelData& operator=(const TModelData&) = delete;

    // Reads the file (the flag is passed on to the reader).
    void Load(std::uint8_t flag = 0);
    // Reads a solution from a reader already made (fuzzing, tests).
    void Load(TBufReadFile& reader, std::uint8_t flag = 0);
    // Writes to "~" + file name beside the path first and replaces the
    // original only once the whole file is written.
    void Save(TFileLayout layout = TFileLayout::Sectioned, std::int32_t version = kCurrentFileVersion);
    // The same to another file (its "~" copy beside it first); the model's
    // own path is unchanged.
    void SaveAs(const std::string& path, TFileLayout layout, std::int32_t version);

    // Items under entries the chart of accounts lacks are kept as plain items
    // rather than dropped, so that a file can be shown and saved whole
    // without its chart (the import leaves this off).
    bool KeepUnknownEntries = false;

    // When "FinItems.dat" is missing but its "~" copy exists: false reads the
    // copy where it is; true first renames it to the path, as the planning
    // products do. The import never changes a client folder.
    bool RecoveryRenames = false;

    // Top-level items, in file order.
    int Count() const { return static_cast<int>(items_.size()); }
    TFinItem* Get(int index) const { return items_[static_cast<std::size_t>(index)].get(); }
    void Put(int index, std::unique_ptr<TFinItem> item);
    TFinItem* Add(std::unique_ptr<TFinItem> item);
    const TFinItemList& Items() const override { return items_; }
    void Clear();

    // Parties.
    const std::vector<std::unique_ptr<TParticipant>>& Participants() const override { return participants_; }
    TParticipant* AddParticipant(std::unique_ptr<TParticipant> party);
    void ClearParticipants() {
        participants_.clear();
        participantIndex_.clear();
    }
    TParticipant* GetParticipantByID(std::int32_t id) const override;
    TParticipant* GetParticipantByName(const std::string& fullName) const;
    std::string GetParticipantNameByID(std::int32_t id) const;
    // The first party of role 1 (the plan's principal person), or null.
    TParticipant* PrincParty() const;

    std::uint8_t Kind() const { return kind_; }
    std::int32_t Version() const { return version_; }
    TFileLayout Layout() const { return layout_; }
    const std::string& Path() const { return path_; }
    // The file the last Load read: the path, or its "~" recovery copy.
    const std::string& ReadPath() const { return readPath_.empty() ? path_ : readPath_; }
    const TModel* Model() const { return model_; }
    TModels* Models() const { return models_; }
    TEntries* Entries() const override { return entries_; }
    const TLibrarySettings& Settings() const override { return *librarySettings_; }
    bool NamesEncrypted() const { return namesEncrypted_; }
    const TStrategy& Strategy() const { return *strategy_; }
    TStrategy& Strategy() { return *strategy_; }

    std::int32_t CurrentIndex = -1;
    double Ratio = 0.5;
    std::int32_t HighestItemID() const { return highestItemID_; }
    void RaiseHighestItemID(std::int32_t id) override;

    // The text that names the model when it is handed on whole (the import's mode 1).
    std::string IdentifyingText() const;

    // Filled by the item lookups when the caller passes no list of its own;
    // the items belong to the model.
    std::vector<TFinItem*> ResultList;

    TModelHeader Header;
    std::vector<TToDoData> ToDo;
    std::vector<std::string> Texts; // section 6, name=value lines
    std::vector<TTypedRecord> TypedRecords;
    std::vector<std::vector<TSmallRecord>> SmallLists; // up to three
    TResidenceList Residences;
    std::array<std::uint8_t, kSettingsBlockSize> SettingsBlock{};

    // Settings taken from the section 6 texts ("CGRate", "GovInflRate", ...):
    // the raw value, and numbers read with the model-file number format.
    std::string Setting(const std::string& name) const;
    double SettingFloat(const std::string& name, double def) const;
    std::vector<double> SettingFloats(const std::string& name) const; // ";"-separated
    // Gives the setting a value: the first text of that name is replaced, the
    // others stay as read; without one a text is appended. Saving writes it.
    void SetSetting(const std::string& name, const std::string& value);
    // The report comments ("RptComments").
    TRptComments RptComments() const { return DecodeRptComments(Setting("RptComments")); }
    void SetRptComments(const TRptComments& comments) { SetSetting("RptComments", EncodeRptComments(comments)); }

    // The language of the texts the items make; Load takes it from the
    // library settings. Names stored in the file are never changed by it.
    void SetLanguage(bool french) { french_ = french; }
    bool French() const override { return french_; }

    // Counters the planning engine keeps; Load resets them.
    std::int32_t Counters[3] = {0, 0, 0};

private:
    // Where a sectioned file kept its sections and the bytes this reader
    // skips (reserved bytes, sections it does not know, fields a newer writer
    // appended), so that saving rewrites them in place: a model saved
    // unchanged gives the file it was read from.
    struct TSectionedImage {
        struct TDirEntry {
            std::int32_t ID;
            std::int64_t Offset, Length;
        };
        std::array<std::uint8_t, 16> Reserved{};
        std::vector<TDirEntry> Dir;
        // After the directory, in file order: a section's known fields
        // (Section 1..9) or bytes carried as read (Section 0).
        struct TPiece {
            int Section;
            std::int64_t Offset; // where it lay in the file read
            std::string Bytes;   // carried bytes
        };
        std::vector<TPiece> Pieces;
        std::array<std::int64_t, 10> Tail{}; // bytes after a section's known fields, within its length
        bool Valid = false;
    };

    TRecordContext Context(std::int32_t version, bool sectioned) const;
    void WriteSectioned(TBufWriteFile& w, std::int32_t version, const TRecordContext& ctx);
    void WriteImage(TBufWriteFile& w, std::int32_t version, const TRecordContext& ctx);
    void ReadSections(TBufReadFile& r, bool sectioned, std::uint8_t flag);
    void TakeSettings();
    void WriteSection(TBufWriteFile& w, int section, const TRecordContext& ctx);

    std::uint8_t kind_;
    std::int32_t version_ = 0;
    TFileLayout layout_ = TFileLayout::Sectioned;
    std::string path_;
    std::string readPath_;
    const TModel* model_;
    TModels* models_;
    TModels* flagModels_;
    void* owner_;
    TEntries* entries_;
    const TLibrarySettings* librarySettings_;
    bool namesEncrypted_ = false;
    std::unique_ptr<TStrategy> strategy_;
    TParticipantList participants_;
    std::unordered_map<std::int32_t, TParticipant*> participantIndex_; // first party of an identifier
    TFinItemList items_;
    std::int32_t highestItemID_ = 0;
    std::map<std::string, std::string> settings_;
    mutable TCipherMemo cipherMemo_;
    TSectionedImage image_;
    // Section 2 as read: the group of each record (a record whose group the
    // chart lacked took its byte alone); null for a model never read.
    std::optional<std::vector<std::uint8_t>> groupRecords_;
    int smallListsRead_ = -1; // lists section 8 held; -1 for a model never read
    bool french_ = false;
    std::array<std::unique_ptr<TBalance>, 3> balances_;

public:
    TMdMsgList Messages;
    void ClearMessages() { Messages.clear(); }
    void ClearToDo() { ToDo.clear(); }
    // The party linked to that party of another client file, or null.
    TParticipant* GetParticipantByUID(const TUIDLink& link) const { return participants_.ByUID(link); }
    // The principal person's identifier, -1 without one.
    std::int32_t PrincPartyID() const;
    // Two persons of role 1 (the client and a partner): a child has a second parent.
    bool SecondParentExists() const;
    // The last life-expectancy year of the real parties, 0 without any.
    std::int32_t MaxLifeExpX() const { return participants_.MaxLifeExpYear(); }
    // Per-year values and (year, amount) lists of the model's calculations.
    TValueOverTime Series[2];
    TIndDblList YearLists[2];
    // Balance sheets the calculations fill; empty, linked to this model.
    // Balances have files of their own: loading and saving the model leave
    // them alone.
    TBalance& Balance(int index) { return *balances_.at(std::size_t(index)); }
    // Frees a top-level item with its children and drops it from the result
    // list, which would otherwise point at freed items. A bad index raises EListError.
    void Delete(int index);
};

} // namespace kv
