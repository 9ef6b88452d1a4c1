// Compact identifier texts, substitute identifiers and the U+0001-delimited
// token lists of the client-file records.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

// Base 224 over the Windows-1252 bytes of the text: digit = byte - 32, the
// first byte least significant, summed with 32-bit wrap-around. "" is 0.
// Bytes below 32 give negative digits; they are summed like any other.
std::int32_t IdentTextToInt(std::string_view ansi) noexcept;
// The shortest text that reads back to value; 0 gives "". Bytes are 32..255.
std::string IntToIdentText(std::int32_t value);

// The same over in-memory UTF-8 texts (converted through Windows-1252).
std::int32_t IdentUtf8ToInt(std::string_view utf8);
std::string IntToIdentUtf8(std::int32_t value);

// CRC-32 with the zlib polynomial (reflected 0xEDB88320, initial and final
// value 0xFFFFFFFF).
std::uint32_t Crc32(std::string_view bytes) noexcept;
// Identifier used in place of a stored 0: the CRC-32 of the UTF-8 bytes of a
// path or a name, as a signed 32-bit value.
std::int32_t SubstituteID(std::string_view utf8) noexcept;

inline constexpr char TokenSeparator = '\x01';

// Splits at every U+0001; "" gives one empty token. The views point into text.
std::vector<std::string_view> SplitTokens(std::string_view text);
// Token i (from 0); a missing token reads as empty (a view of "", never a
// null pointer, which some text routines pass on to memcpy).
inline std::string_view TokenAt(const std::vector<std::string_view>& tokens, std::size_t i) {
    return i < tokens.size() ? tokens[i] : std::string_view("");
}
// Joins with U+0001. Throws EKvError when a token itself holds U+0001, which
// would shift every later token on reading.
std::string JoinTokens(std::span<const std::string> tokens);

} // namespace kv
