// The catalogue of client files: TProjHdrLst scans a product's data directory,
// TProjHdr is one client folder's header file "Models.dat". Scanning renames
// legacy client folders; nothing else is ever written to a data directory.
// Paths use "/" and every directory text ends with it.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "KvErrors.h"
#include "catalogue/KvFnModels.h"

namespace kv {

class TBufReadFile;

inline constexpr const char* ModelsFileName = "Models.dat";

// "md_" for kinds 0 and 4 (and any unknown kind), "bs_" for 1, "qr_" for 2.
std::string KindPrefix(std::uint8_t kind);
// A directory text with one trailing "/" ("" stays "").
std::string WithTrailingSlash(std::string dir);

// "Invalid data" naming the file it was met in; still an EInvalidData.
class EInvalidDataIn : public EInvalidData {
public:
    explicit EInvalidDataIn(const std::string& path) : message_("Invalid data in file \"" + path + "\"") {}
    const char* what() const noexcept override { return message_.c_str(); }

private:
    std::string message_;
};

// The two solution lists of a client file.
struct TModelLists {
    std::unique_ptr<TModels> Main;
    std::unique_ptr<TModels> Needs;
};

class TProjHdr {
public:
    static constexpr int ReportSettingCount = 11;
    static constexpr int TrailingSectionCount = 4;

    // folder and baseDir get a trailing "/" if they lack one. The header keeps
    // a reference to the settings and hands it to the lists it loads; the
    // caller keeps them alive as long as the header and its lists.
    TProjHdr(std::uint8_t kind, std::string fileName, std::string folder, std::string baseDir,
             const TLibrarySettings& settings);
    TProjHdr(std::uint8_t, std::string, std::string, std::string, const TLibrarySettings&&) = delete;

    // Reads the two header records only. Errors: EInOutError (file), EReadError
    // (truncated), EKeyMissing / EInvalidData (protected texts 1 and 2).
    void LoadHeader();
    // Reads the header records and, with loadModels, the "Main" and "Needs"
    // lists and whichever trailing sections the file holds; without it, the
    // same as LoadHeader and both lists are null.
    TModelLists Load(bool loadModels);
    // Reads the whole file for its report settings (and the other trailing sections).
    void LoadReportSettings();
    // Writes HeaderPath in the layout Load reads. For tests and demo data only:
    // scanning and loading never write. Throws EKvError before creating the
    // file when a text cannot be stored (see docs/formats/models.md).
    void Save(const TModels& main, const TModels& needs) const;

    // The run-time key of this file's enciphered texts (EKeyMissing without a
    // configured key).
    std::string Key() const;
    const TLibrarySettings& Settings() const noexcept { return *settings_; }
    bool HideNames() const noexcept { return HideNamesFlag != 0; }
    bool IsProtected() const noexcept { return ProtectionFlag != 0; }

    std::string HeaderPath; // BaseDir + Folder + FileName
    std::string FileName;
    std::string BaseDir; // trailing "/"
    std::string Folder;  // client folder name, trailing "/"
    std::uint8_t Kind = 0;

    // Header record 1.
    std::string Name;    // token 1
    std::int32_t ID = 0; // token 2; a stored 0 reads as SubstituteID(HeaderPath)
    // Header record 2 (token numbers from 1). The file format leaves texts 1
    // to 4, flags A to G, the number and the integer unnamed; they are kept
    // to be written back.
    std::string Text1;               // 1, enciphered when IsProtected()
    std::string Text2;               // 2, enciphered when IsProtected()
    double Date = 0;                 // 3: day count, model-file number text; 0 when empty or unreadable
    std::uint8_t FlagA = 0;          // 4
    double Number = 0;               // 5
    std::string Text3;               // 6
    std::uint8_t FlagB = 0;          // 7: empty token gives FlagA != 0
    std::uint8_t FlagC = 0;          // 8
    std::uint8_t FlagD = 0;          // 9
    std::uint8_t FlagE = 0;          // 10
    std::uint8_t FlagF = 1;          // 11: default 1
    std::uint8_t FlagG = 0;          // 12
    std::uint8_t HideNamesFlag = 0;  // 13: hide solution names
    std::string KeySeed;             // 14
    std::uint8_t ProtectionFlag = 0; // 15: texts are enciphered
    std::string Text4;               // 16
    std::int32_t Integer = -1;       // 17

    // Trailing sections, carried as read; TrailingSections says how many of the
    // four the file held (Save writes that many).
    std::vector<std::pair<std::string, std::string>> Pairs; // byte n, n ShortStr pairs
    std::vector<std::string> Texts;                         // Int n, n Str
    std::array<std::string, ReportSettingCount> ReportSettings;
    std::string LastText;
    int TrailingSections = TrailingSectionCount;

private:
    const TLibrarySettings* settings_;

    TModelLists LoadFrom(bool loadModels);
    void ReadHeaderRecords(TBufReadFile& reader);
    void ReadTrailing(TBufReadFile& reader);
};

class TProjHdrLst {
public:
    // altDir "" means no alternate directory. Both get a trailing "/". The
    // list keeps a reference to the settings and hands it to its headers; the
    // caller keeps them alive as long as the list and what it loads.
    TProjHdrLst(std::string dataDir, std::string altDir, std::uint8_t kind, const TLibrarySettings& settings);
    TProjHdrLst(std::string, std::string, std::uint8_t, const TLibrarySettings&&) = delete;
    TProjHdrLst(const TProjHdrLst&) = delete;
    TProjHdrLst& operator=(const TProjHdrLst&) = delete;

    // Renames legacy folders, then folders to their client names, then reads
    // every client folder's header into the list. A header that cannot be read
    // fails the whole load; the message names the file. Renames that fail are
    // ignored. A data directory that cannot be listed gives no folders. A wrong
    // key gives EInvalidDataIn. A protected header without a configured key
    // leaves its folder out of the list and in Locked(), not renamed.
    void Load(bool includeAlternate);
    void Clear() noexcept { items_.clear(); }
    // Off: Load renames nothing and lists the folders already named
    // "<prefix>db<n>_..." (a look at a folder the adviser has not chosen yet).
    bool RenameFolders = true;

    // First header with exactly this name, else nullptr.
    TProjHdr* FindByName(const std::string& name) const noexcept;
    // Prefix + "db" + the smallest n >= 1 such that no entry of the data
    // directory is named that or starts with it followed by "_" (ASCII case
    // ignored).
    std::string NewDirName() const;
    // Creates the header's folder under its base directory when missing, then
    // hdr.Save. For tests and demo data only.
    void SaveOne(const TProjHdr& hdr, const TModels& main, const TModels& needs) const;

    std::int32_t Count() const noexcept { return static_cast<std::int32_t>(items_.size()); }
    // Entry at index; EListError when there is none.
    TProjHdr& Get(std::int32_t index) const;
    const std::vector<std::unique_ptr<TProjHdr>>& Items() const noexcept { return items_; }
    // Folder names (no trailing "/") of the protected client files the last
    // Load could not read for want of a key, in listing order.
    const std::vector<std::string>& Locked() const noexcept { return locked_; }
    // Reorders the list (for the import's file order); stable.
    template <class Less>
    void Sort(Less less);

    const std::string& DataDir() const noexcept { return dataDir_; }
    const std::string& AltDir() const noexcept { return altDir_; }
    const std::string& Prefix() const noexcept { return prefix_; }
    std::uint8_t Kind() const noexcept { return kind_; }
    const TLibrarySettings& Settings() const noexcept { return *settings_; }

private:
    std::string dataDir_;
    std::string altDir_;
    std::string prefix_;
    std::uint8_t kind_;
    const TLibrarySettings* settings_;
    std::vector<std::unique_ptr<TProjHdr>> items_;
    std::vector<std::string> locked_;
};

} // namespace kv

#include <algorithm>

template <class Less>
void kv::TProjHdrLst::Sort(Less less) {
    std::stable_sort(
        items_.begin(), items_.end(),
        [&](const std::unique_ptr<TProjHdr>& a, const std::unique_ptr<TProjHdr>& b) { return less(*a, *b); });
}
