// Conversion between the in-memory UTF-8 texts and the Windows-1252 bytes that
// every data file stores, whatever the platform.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

// Windows-1252 bytes to UTF-8. Every byte maps to a character, so this never fails;
// the five bytes that 1252 leaves undefined map to the C1 controls of the same value.
std::string AnsiToUtf8(std::string_view ansi);
void AnsiToUtf8(const char* data, std::size_t size, std::string& out);

// UTF-8 to Windows-1252. A character 1252 lacks, and every byte of malformed UTF-8,
// becomes '?'.
std::string Utf8ToAnsi(std::string_view utf8);
// The same into out, which must hold size bytes (the result is never longer than
// its input). Returns the number of bytes written.
std::size_t Utf8ToAnsi(const char* utf8, std::size_t size, char* out);

// Length of the leading run of bytes below 0x80, which read the same in both
// encodings. With stopAtZero the run also ends at the first zero byte.
std::size_t AsciiPrefixLength(const char* data, std::size_t size, bool stopAtZero = false);

// The code point of one Windows-1252 byte.
char32_t AnsiToCodePoint(std::uint8_t b);

// The Windows-1252 byte of one code point, '?' when 1252 lacks it.
std::uint8_t CodePointToAnsi(char32_t c);

// Number of characters of a UTF-8 text as the conversion sees them (a malformed
// byte counts as one character, matching the '?' it turns into).
std::size_t Utf8Length(std::string_view utf8);

// Appends the UTF-8 form of a code point; surrogates and values above U+10FFFF
// give U+FFFD.
void AppendUtf8(std::string& out, char32_t c);

} // namespace kv
