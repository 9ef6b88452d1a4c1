#include <filesystem>
#include <set>

#include "KvErrors.h"
#include "catalogue/KvFnModels.h"

namespace kv {

namespace fs = std::filesystem;

std::string TModels::DefName() const {
    std::set<std::string> names;
    for (const auto& m : items_) names.insert(m->Name);
    for (int n = 1;; ++n)
        if (!names.contains("Solution " + std::to_string(n))) return "Solution " + std::to_string(n);
}

void TModels::CopyModelFile(const std::string& fromDir, const std::string& toDir) {
    std::error_code ec;
    fs::create_directories(fs::u8path(toDir), ec);
    fs::copy(fs::u8path(fromDir), fs::u8path(toDir), fs::copy_options::recursive | fs::copy_options::overwrite_existing,
             ec);
    if (ec) throw EInOutError("Cannot copy " + fromDir + " to " + toDir + ": " + ec.message());
}

std::int32_t TModels::CopyModel(std::int32_t index, const std::string& newName) {
    TModel copy = Get(index);
    std::set<std::int32_t> used;
    for (const auto& m : items_) used.insert(m->FolderNo);
    std::int32_t folder = 1;
    const auto dirOf = [&](std::int32_t n) { return baseDir_ + folder_ + listName_ + std::to_string(n); };
    while (used.contains(folder) || fs::exists(fs::u8path(dirOf(folder)))) ++folder;
    CopyModelFile(Path(index), dirOf(folder) + "/");
    copy.Name = newName.substr(0, TModel::NameMax);
    copy.FolderNo = folder;
    copy.ID = copy.ID2 = 0; // stored 0: the identifier is derived from the new name
    Add(std::move(copy));
    dirty_ = true;
    return Count() - 1;
}

void TModels::DeleteModel(std::int32_t index, bool removeFolder) {
    const std::string dir = Path(index); // raises for a bad index before anything changes
    if (removeFolder) {
        std::error_code ec;
        fs::remove_all(fs::u8path(dir), ec);
        if (ec) throw EInOutError("Cannot delete " + dir + ": " + ec.message());
    }
    items_.erase(items_.begin() + index);
    if (SelectedIndex > index || SelectedIndex >= Count()) --SelectedIndex;
    dirty_ = true;
}

} // namespace kv
