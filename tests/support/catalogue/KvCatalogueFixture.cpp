#include "catalogue/KvCatalogueFixture.h"

#include <filesystem>

#include "KvErrors.h"
#include "catalogue/KvFnProjHdr.h"

namespace fs = std::filesystem;

namespace kv {

namespace {

void MakeDir(const std::string& path) {
    std::error_code ec;
    fs::create_directories(path, ec);
    if (ec) throw EInOutError("Cannot create folder \"" + path + "\": " + ec.message());
}

void Fill(TModels& list, const TProjHdr& hdr, int count, const std::string& prefix) {
    list.HideNames = hdr.HideNames();
    list.Enciphered = hdr.IsProtected();
    list.KeySeed = hdr.KeySeed;
    list.ClientName = hdr.Name;
    list.StoredNumber = count;
    list.SelectedIndex = 0;
    for (int i = 0; i < count; ++i) {
        TModel m;
        m.Name = prefix + std::to_string(i + 1);
        m.Name2 = "Projection " + std::to_string(i + 1) + " of " + list.ListName();
        m.FolderNo = i;
        m.Number3 = i;
        m.KeyValue1 = 1000 + i;
        m.KeyValue2 = std::uint8_t(i % 3);
        m.KeyValue3 = 2024;
        m.Words480 = {std::uint32_t(i), 0};
        list.Add(std::move(m));
    }
}

} // namespace

std::string WriteClientFolder(const std::string& baseDir, const std::string& folder, std::uint8_t kind,
                              const TClientFileSpec& clientFile, const TLibrarySettings& settings) {
    TProjHdr hdr(kind, ModelsFileName, folder, baseDir, settings);
    hdr.Name = clientFile.Name;
    hdr.ID = clientFile.ID;
    hdr.Date = clientFile.Date;
    hdr.Text1 = "Adviser";
    hdr.Text2 = "Office";
    hdr.HideNamesFlag = clientFile.HideNames ? 1 : 0;
    hdr.ProtectionFlag = clientFile.Protected ? 1 : 0;
    hdr.KeySeed = clientFile.KeySeed;
    if (clientFile.TrailingSections) {
        hdr.ReportSettings = {"Portrait", "Letter", "1", "1", "0", "Arial", "10", "", "", "", "1"};
    } else {
        hdr.TrailingSections = 0;
    }
    TModels main(hdr.BaseDir, "Main", hdr.Folder, settings);
    TModels needs(hdr.BaseDir, "Needs", hdr.Folder, settings);
    Fill(main, hdr, clientFile.Solutions, clientFile.SolutionPrefix);
    Fill(needs, hdr, clientFile.NeedsSolutions, "Needs ");
    MakeDir(hdr.BaseDir + hdr.Folder);
    for (const TModels* list : {&main, &needs})
        for (std::int32_t i = 0; i < list->Count(); ++i) MakeDir(list->Path(i));
    hdr.Save(main, needs);
    return hdr.HeaderPath;
}

} // namespace kv
