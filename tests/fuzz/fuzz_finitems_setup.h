// The solution list fuzz_finitems loads with, shared with its seed writer so
// that enciphered seeds open with the same run-time key.
#pragma once

#include <memory>

#include "catalogue/KvFnModels.h"

namespace kvfuzz {

inline constexpr const char* kClientKey = "fuzz";

// The library settings both load and write with: the client-file key above.
inline const kv::TLibrarySettings kSettings{.ClientFileKey = kClientKey};

inline std::unique_ptr<kv::TModels> MakeSolutionList(bool enciphered) {
    auto list = std::make_unique<kv::TModels>("/nonexistent-tessary-fuzz/", "Main", "md_db1_Fuzz/", kSettings);
    list->ClientName = "Fuzz Client";
    list->KeySeed = "fuzz-seed";
    list->Enciphered = enciphered;
    return list;
}

} // namespace kvfuzz
