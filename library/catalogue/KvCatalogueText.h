// Internal to the catalogue: enciphered texts of the header and the solution
// records, padded on writing and stripped on reading.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kv::catalogue {

// No limit on the base-64 text.
inline constexpr std::size_t Unlimited = static_cast<std::size_t>(-1);

// Enciphers a UTF-8 text as the enciphered-string writer does with padding,
// returning the base-64 text (ASCII). The padding's random length is capped so
// that the base-64 text has at most maxBase64 bytes; when even the unpadded
// text is too long, or the text holds "|" (the reader would cut it there),
// throws EKvError naming what.
std::string EncipherForSlot(std::string_view utf8, const std::string& key, std::size_t maxBase64,
                            const std::string& what);
// Deciphers base-64 text (EInvalidData on a wrong key or damage) and cuts it at
// the first "|". Returns Windows-1252 bytes. "" gives "" without deciphering.
std::string DecipherStripped(std::string_view base64, const std::string& key);

// Longest plain text whose base-64 form (salt, text, MAC) fits n bytes.
constexpr std::size_t MaxPlainForBase64(std::size_t n) { return n / 4 * 3 >= 32 ? n / 4 * 3 - 32 : 0; }

} // namespace kv::catalogue
