// Helpers shared by the tests of library/files: hex, the crypto vectors, temp dirs.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "TestFiles.h"

namespace kvtest {

// Spaces are ignored, so tables can group bytes by field.
inline Bytes FromHex(std::string hex) {
    std::erase(hex, ' ');
    if (hex.size() % 2) throw std::invalid_argument("odd hex length: " + hex);
    Bytes out;
    for (std::size_t i = 0; i < hex.size(); i += 2) out.push_back(std::uint8_t(std::stoul(hex.substr(i, 2), nullptr, 16)));
    return out;
}

inline std::string HexStr(const std::string& hex) {
    const Bytes b = FromHex(hex);
    return std::string(b.begin(), b.end());
}

template <class Range>
std::string ToHex(const Range& r) {
    static const char* digits = "0123456789abcdef";
    std::string out;
    for (auto c : r) {
        const auto b = std::uint8_t(c);
        out += digits[b >> 4];
        out += digits[b & 15];
    }
    return out;
}

// One section of the crypto vectors; fails the test when it is missing or empty,
// so a data-driven test can never pass on nothing.
inline const nlohmann::json& Vectors(const std::string& section) {
    static const nlohmann::json all = [] {
        std::ifstream in(TESSARY_TEST_DATA "/crypto/vectors.json");
        if (!in) throw std::runtime_error("cannot open " TESSARY_TEST_DATA "/crypto/vectors.json");
        return nlohmann::json::parse(in);
    }();
    const nlohmann::json& s = all.at(section);
    if (!s.is_array() || s.empty()) throw std::runtime_error("empty vector section " + section);
    return s;
}

// A fresh directory per test, removed afterwards.
class TempDirTest : public ::testing::Test {
protected:
    std::string Path(const std::string& name) const { return tmp_.File(name); }
    TempDir tmp_;
    const std::filesystem::path& dir_ = tmp_.Path();
};

} // namespace kvtest
