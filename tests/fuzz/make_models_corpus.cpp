// Writes the seed inputs of fuzz_models with the catalogue's own writer:
//   make_models_corpus <output folder>
#include <cstdio>
#include <filesystem>
#include <string>

#include "KvSettings.h"
#include "catalogue/KvCatalogueFixture.h"
#include "catalogue/KvFnProjHdr.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <output folder>\n", argv[0]);
        return 2;
    }
    namespace fs = std::filesystem;
    const fs::path out = argv[1];
    const fs::path scratch = out / "scratch.tmp";
    const kv::TLibrarySettings settings{.ClientFileKey = "fuzz"};  // the key fuzz_models configures

    struct Seed {
        const char* name;
        std::uint8_t kind;
        kv::TClientFileSpec clientFile;
    };
    auto makeClientFile = [](auto&& set) {
        kv::TClientFileSpec s;
        s.Name = "Seed Client";
        s.ID = 4242;
        set(s);
        return s;
    };
    const Seed seeds[] = {
        {"plain", 0, makeClientFile([](auto& s) { s.Solutions = 2; s.NeedsSolutions = 1; })},
        {"protected", 0, makeClientFile([](auto& s) { s.Protected = true; s.KeySeed = "seed"; s.Solutions = 1; })},
        {"hidden-bs", 1, makeClientFile([](auto& s) { s.HideNames = true; s.Solutions = 2; s.Date = 45123.5; })},
        {"no-trailing", 0, makeClientFile([](auto& s) { s.TrailingSections = false; s.ID = 0; })},
        {"empty-lists", 0, makeClientFile([](auto& s) { s.Solutions = 0; })},
    };
    for (const Seed& seed : seeds) {
        fs::remove_all(scratch);
        const std::string path = kv::WriteClientFolder(scratch.string(), "md_db1", seed.kind, seed.clientFile, settings);
        fs::copy_file(path, out / seed.name, fs::copy_options::overwrite_existing);
    }
    fs::remove_all(scratch);
    return 0;
}
