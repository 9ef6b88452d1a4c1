// Operation codes of the fuzz_buffile input, shared with the seed generator.
#pragma once

namespace kvfuzz {

enum class EOp : unsigned char {
    Byte, Boolean, Word, Int, LongWord, Double, DateTime, Date, Char, Data, NumX,
    Str, ShortStr, StrX, StringsX, PChar, EncryptStr, Seek, RawUtf8,
};
inline constexpr unsigned OpCount = 19;

} // namespace kvfuzz
