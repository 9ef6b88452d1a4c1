// A client file's solution lists ("Main" and "Needs") and their entries: the
// 580-byte solution records of "Models.dat". Each solution is a sub-folder
// of the client folder, named and located by its list.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "KvSettings.h"

namespace kv {

class TBufReadFile;
class TBufWriteFile;

// One solution: every field of its 580-byte record. Alignment bytes are not
// kept; they are written as zeros.
struct TModel {
    static constexpr std::int32_t RecordSize = 580;
    static constexpr std::size_t NameMax = 80;     // characters
    static constexpr std::size_t TokensSlot = 201; // offset 0: length byte + 200
    static constexpr std::size_t Name2Slot = 256;  // offset 201: length byte + 255
    static constexpr std::size_t BlockSize = 82;   // offset 496

    // Number3, Number4, Name2, Byte476, Words480, Int488 and Int492: the file
    // format leaves these unnamed; they are kept to be written back.
    // Tokens of the first text (offset 0).
    std::string Name;         // 1: display name, cut to 80 characters
    std::int32_t ID = 0;      // 2: identifier; a stored 0 reads as SubstituteID(Name)
    std::int32_t Number3 = 0; // 3: decimal integer, 0 when not a number
    std::int32_t Number4 = 0; // 4: decimal integer, 0 when empty or not a number
    std::int32_t ID2 = 0;     // 5: second identifier, kinds 0 and 4 only; stored 0 reads as SubstituteID(Name)
    // The second text (offset 201).
    std::string Name2;
    std::int32_t FolderNo = 0;                   // 460: sub-folder number, see TModels::DirName
    std::int32_t KeyValue1 = 0;                  // 464 \.
    std::uint8_t KeyValue2 = 0;                  // 468  } TModels::FindModelIndex
    std::int32_t KeyValue3 = 0;                  // 472 /
    std::uint8_t Byte476 = 0;                    // 476 (three alignment bytes follow)
    std::array<std::uint32_t, 2> Words480{};     // 480: one 8-byte value as two words
    std::int32_t Int488 = 0;                     // 488
    std::int32_t Int492 = 0;                     // 492
    std::array<std::uint8_t, BlockSize> Block{}; // 496: kept as it is

    bool operator==(const TModel&) const = default;
};

// A solution list. Entries are owned and never move in memory, so a model may
// keep a reference to one while the list lives.
class TModels {
public:
    // The list keeps a reference to the settings (the client-file key, whether
    // hidden names show); the caller keeps them alive as long as the list.
    TModels(std::string baseDir, std::string listName, std::string folder, const TLibrarySettings& settings);
    TModels(std::string, std::string, std::string, const TLibrarySettings&&) = delete;
    TModels(const TModels&) = delete;
    TModels& operator=(const TModels&) = delete;
    TModels(TModels&&) = default;
    TModels& operator=(TModels&&) = default;

    // Reads the selected index, the count (with the stored number when the
    // count is -1) and that many records. The count is checked against the
    // bytes left before anything is allocated (EReadError). Enciphered lists
    // decipher both texts of every record with RunTimeKey(Settings(), ClientName, KeySeed):
    // EKeyMissing when no key is configured, EInvalidData for a wrong key.
    void ReadData(TBufReadFile& reader, std::uint8_t kind);
    // Writes the same layout. Throws EKvError, before writing anything, when a
    // record's texts do not fit their slots (see TModel) or hold U+0001.
    void SaveData(TBufWriteFile& writer, std::uint8_t kind) const;

    // Appends an entry and returns it.
    TModel& Add(TModel model = {});
    // Entry at index, or nullptr when there is none.
    TModel* Find(std::int32_t index) const noexcept;
    // Entry at index; EListError when there is none.
    TModel& Get(std::int32_t index) const;
    std::int32_t Count() const noexcept { return static_cast<std::int32_t>(items_.size()); }
    // First index whose entry matches all three key values, else -1.
    std::int32_t FindModelIndex(std::int32_t value1, std::uint8_t value2, std::int32_t value3) const noexcept;
    void Clear() noexcept { items_.clear(); }

    // List name and folder number: "Main3"; the name alone for number 0.
    std::string DirName(std::int32_t index) const;
    // BaseDir + Folder + DirName(index) + "/".
    std::string Path(std::int32_t index) const;
    // "MD" + list name + the second index ("" when it is 0).
    std::string AliasName() const;
    // The name to show and to choose by: "*Solution #<index + 1>*" when the list
    // hides names and Settings().ShowHiddenNames is off, else Name.
    std::string DisplayName(std::int32_t index) const;
    // Index of the first entry whose DisplayName equals name, else -1.
    std::int32_t FindByDisplayName(const std::string& name) const;

    const std::string& BaseDir() const noexcept { return baseDir_; }
    const std::string& ListName() const noexcept { return listName_; }
    const std::string& Folder() const noexcept { return folder_; }
    const TLibrarySettings& Settings() const noexcept { return *settings_; }

    std::int32_t StoredNumber = 0;
    bool HasStoredNumber = true;     // written as count -1, stored number, count
    std::int32_t SelectedIndex = -1; // a negative value is written as 0
    std::int32_t SecondIndex = -1;   // not part of the file
    // Copied from the header by TProjHdr::Load.
    bool HideNames = false;
    bool Enciphered = false;
    std::string KeySeed;
    std::string ClientName; // names the file in the missing-key message

    // Changes of the list that the caller saves with SaveData afterwards.
    // "Solution n" with the smallest n no solution of the list is named.
    std::string DefName() const;
    // Copies the files of one solution folder into another (made when
    // missing), sub-folders included; existing files are replaced.
    static void CopyModelFile(const std::string& fromDir, const std::string& toDir);
    // A new entry after the last one: a copy of the record at index under a
    // new name, in the first folder number no entry uses and no folder holds,
    // with that solution's files copied. Returns the new index.
    std::int32_t CopyModel(std::int32_t index, const std::string& newName);
    // Removes the entry and, with removeFolder, its solution folder.
    void DeleteModel(std::int32_t index, bool removeFolder);
    // The list differs from what was read or last saved.
    void SetModelDirty(bool dirty = true) { dirty_ = dirty; }
    bool ModelDirty() const { return dirty_; }

private:
    bool dirty_ = false;
    std::string baseDir_; // trailing "/"
    std::string listName_;
    std::string folder_; // trailing "/"
    const TLibrarySettings* settings_;
    std::vector<std::unique_ptr<TModel>> items_;
};

} // namespace kv
