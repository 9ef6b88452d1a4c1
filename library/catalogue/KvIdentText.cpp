#include "catalogue/KvIdentText.h"

#include <array>

#include "KvErrors.h"
#include "files/KvAnsi.h"

namespace kv {

std::int32_t IdentTextToInt(std::string_view ansi) noexcept {
    std::uint32_t value = 0;
    std::uint32_t weight = 1;
    for (const char c : ansi) {
        value += (static_cast<std::uint32_t>(static_cast<unsigned char>(c)) - 32u) * weight;
        weight *= 224u;
    }
    return static_cast<std::int32_t>(value);
}

std::string IntToIdentText(std::int32_t value) {
    std::string text;
    for (std::uint32_t v = static_cast<std::uint32_t>(value); v != 0; v /= 224u)
        text += static_cast<char>(v % 224u + 32u);
    return text;
}

std::int32_t IdentUtf8ToInt(std::string_view utf8) { return IdentTextToInt(Utf8ToAnsi(utf8)); }

std::string IntToIdentUtf8(std::int32_t value) { return AnsiToUtf8(IntToIdentText(value)); }

namespace {

constexpr std::array<std::uint32_t, 256> MakeCrcTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t c = i;
        for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
        table[i] = c;
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> CrcTable = MakeCrcTable();

} // namespace

std::uint32_t Crc32(std::string_view bytes) noexcept {
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const char c : bytes) crc = CrcTable[(crc ^ static_cast<unsigned char>(c)) & 0xFFu] ^ (crc >> 8);
    return crc ^ 0xFFFFFFFFu;
}

std::int32_t SubstituteID(std::string_view utf8) noexcept { return static_cast<std::int32_t>(Crc32(utf8)); }

std::vector<std::string_view> SplitTokens(std::string_view text) {
    std::vector<std::string_view> tokens;
    std::size_t start = 0;
    for (;;) {
        const std::size_t sep = text.find(TokenSeparator, start);
        if (sep == std::string_view::npos) {
            tokens.push_back(text.substr(start));
            return tokens;
        }
        tokens.push_back(text.substr(start, sep - start));
        start = sep + 1;
    }
}

std::string JoinTokens(std::span<const std::string> tokens) {
    std::string text;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i].find(TokenSeparator) != std::string::npos)
            throw EKvError("A text holds the character U+0001, which separates the values of a record");
        if (i > 0) text += TokenSeparator;
        text += tokens[i];
    }
    return text;
}

} // namespace kv
