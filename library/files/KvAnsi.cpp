#include "files/KvAnsi.h"

#include <array>
#include <cstring>

namespace kv {

namespace {

// 0x80..0x9F of Windows-1252; the holes keep their own value as a C1 control.
constexpr char16_t kHigh[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

struct TUtf8Seq {
    std::uint8_t len;
    char bytes[3];
};

constexpr std::array<TUtf8Seq, 128> MakeUtf8Table() {
    std::array<TUtf8Seq, 128> t{};
    for (int i = 0; i < 128; ++i) {
        const char32_t c = i < 32 ? kHigh[i] : char32_t(0x80 + i);
        if (c < 0x800) {
            t[i] = {2, {char(0xC0 | (c >> 6)), char(0x80 | (c & 0x3F)), 0}};
        } else {
            t[i] = {3, {char(0xE0 | (c >> 12)), char(0x80 | ((c >> 6) & 0x3F)), char(0x80 | (c & 0x3F))}};
        }
    }
    return t;
}
constexpr std::array<TUtf8Seq, 128> kUtf8 = MakeUtf8Table();

constexpr std::uint64_t kHighBits = 0x8080808080808080ull;

// Length of the leading run of ASCII bytes. Eight bytes at a time; the tail of a
// text of eight bytes or more is one last overlapping word.
inline std::size_t AsciiPrefix(const unsigned char* p, std::size_t n) {
    std::size_t i = 0;
    std::uint64_t w;
    for (; i + 8 <= n; i += 8) {
        std::memcpy(&w, p + i, 8);
        if (w & kHighBits) break;
    }
    if (i == n) return n;
    if (i + 8 > n && n >= 8) {
        std::memcpy(&w, p + n - 8, 8);
        if (!(w & kHighBits)) return n;
    }
    while (i < n && p[i] < 0x80) ++i;
    return i;
}

inline bool IsCont(unsigned char b) { return (b & 0xC0) == 0x80; }

// Decodes one well-formed UTF-8 sequence at p (p[0] >= 0x80). Returns its length,
// or 0 when the bytes are malformed (overlong, surrogate, out of range, cut short).
inline std::size_t DecodeMultiByte(const unsigned char* p, std::size_t left, char32_t& c) {
    const unsigned char b0 = p[0];
    if (b0 >= 0xC2 && b0 <= 0xDF) {
        if (left < 2 || !IsCont(p[1])) return 0;
        c = (char32_t(b0 & 0x1F) << 6) | (p[1] & 0x3F);
        return 2;
    }
    if (b0 >= 0xE0 && b0 <= 0xEF) {
        if (left < 3 || !IsCont(p[1]) || !IsCont(p[2])) return 0;
        if (b0 == 0xE0 && p[1] < 0xA0) return 0;
        if (b0 == 0xED && p[1] > 0x9F) return 0;
        c = (char32_t(b0 & 0x0F) << 12) | (char32_t(p[1] & 0x3F) << 6) | (p[2] & 0x3F);
        return 3;
    }
    if (b0 >= 0xF0 && b0 <= 0xF4) {
        if (left < 4 || !IsCont(p[1]) || !IsCont(p[2]) || !IsCont(p[3])) return 0;
        if (b0 == 0xF0 && p[1] < 0x90) return 0;
        if (b0 == 0xF4 && p[1] > 0x8F) return 0;
        c = (char32_t(b0 & 0x07) << 18) | (char32_t(p[1] & 0x3F) << 12) | (char32_t(p[2] & 0x3F) << 6) | (p[3] & 0x3F);
        return 4;
    }
    return 0;
}

} // namespace

std::size_t AsciiPrefixLength(const char* data, std::size_t size, bool stopAtZero) {
    const auto* p = reinterpret_cast<const unsigned char*>(data);
    if (!stopAtZero) return AsciiPrefix(p, size);
    // A high bit set in some byte, or some byte zero (the classic has-zero test).
    const auto stops = [](std::uint64_t w) { return ((w | ((w - 0x0101010101010101ull) & ~w)) & kHighBits) != 0; };
    std::size_t i = 0;
    std::uint64_t w;
    for (; i + 8 <= size; i += 8) {
        std::memcpy(&w, p + i, 8);
        if (stops(w)) break;
    }
    if (i == size) return size;
    if (i + 8 > size && size >= 8) {
        std::memcpy(&w, p + size - 8, 8);
        if (!stops(w)) return size;
    }
    while (i < size && p[i] != 0 && p[i] < 0x80) ++i;
    return i;
}

char32_t AnsiToCodePoint(std::uint8_t b) { return (b >= 0x80 && b < 0xA0) ? char32_t(kHigh[b - 0x80]) : char32_t(b); }

std::uint8_t CodePointToAnsi(char32_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return std::uint8_t(c);
    switch (c) {
        case 0x0081: return 0x81;
        case 0x008D: return 0x8D;
        case 0x008F: return 0x8F;
        case 0x0090: return 0x90;
        case 0x009D: return 0x9D;
        case 0x20AC: return 0x80;
        case 0x201A: return 0x82;
        case 0x0192: return 0x83;
        case 0x201E: return 0x84;
        case 0x2026: return 0x85;
        case 0x2020: return 0x86;
        case 0x2021: return 0x87;
        case 0x02C6: return 0x88;
        case 0x2030: return 0x89;
        case 0x0160: return 0x8A;
        case 0x2039: return 0x8B;
        case 0x0152: return 0x8C;
        case 0x017D: return 0x8E;
        case 0x2018: return 0x91;
        case 0x2019: return 0x92;
        case 0x201C: return 0x93;
        case 0x201D: return 0x94;
        case 0x2022: return 0x95;
        case 0x2013: return 0x96;
        case 0x2014: return 0x97;
        case 0x02DC: return 0x98;
        case 0x2122: return 0x99;
        case 0x0161: return 0x9A;
        case 0x203A: return 0x9B;
        case 0x0153: return 0x9C;
        case 0x017E: return 0x9E;
        case 0x0178: return 0x9F;
        default: return '?';
    }
}

void AnsiToUtf8(const char* data, std::size_t size, std::string& out) {
    const auto* p = reinterpret_cast<const unsigned char*>(data);
    std::size_t i = AsciiPrefix(p, size);
    if (i == size) {
        out.assign(data, size);
        return;
    }
    // Worst case three bytes per character; the table copy writes three bytes
    // unconditionally, which this size always leaves room for.
    out.resize(i + (size - i) * 3);
    char* d = out.data();
    std::memcpy(d, data, i);
    std::size_t o = i;
    for (; i < size; ++i) {
        const unsigned char b = p[i];
        if (b < 0x80) {
            d[o++] = char(b);
        } else {
            const TUtf8Seq& s = kUtf8[b - 0x80];
            d[o] = s.bytes[0];
            d[o + 1] = s.bytes[1];
            d[o + 2] = s.bytes[2];
            o += s.len;
        }
    }
    out.resize(o);
}

std::string AnsiToUtf8(std::string_view ansi) {
    std::string out;
    AnsiToUtf8(ansi.data(), ansi.size(), out);
    return out;
}

std::size_t Utf8ToAnsi(const char* utf8, std::size_t size, char* out) {
    const auto* p = reinterpret_cast<const unsigned char*>(utf8);
    std::size_t i = AsciiPrefix(p, size);
    std::memcpy(out, p, i);
    std::size_t o = i;
    while (i < size) {
        const unsigned char b = p[i];
        if (b < 0x80) {
            out[o++] = char(b);
            ++i;
            continue;
        }
        char32_t c = 0;
        const std::size_t len = DecodeMultiByte(p + i, size - i, c);
        if (len == 0) {
            out[o++] = '?';
            ++i;
        } else {
            out[o++] = char(CodePointToAnsi(c));
            i += len;
        }
    }
    return o;
}

std::string Utf8ToAnsi(std::string_view utf8) {
    std::string out(utf8.size(), '\0');
    out.resize(Utf8ToAnsi(utf8.data(), utf8.size(), out.data()));
    return out;
}

std::size_t Utf8Length(std::string_view utf8) {
    const auto* p = reinterpret_cast<const unsigned char*>(utf8.data());
    const std::size_t n = utf8.size();
    std::size_t count = 0;
    for (std::size_t i = 0; i < n; ++count) {
        char32_t c;
        const std::size_t len = p[i] < 0x80 ? 1 : DecodeMultiByte(p + i, n - i, c);
        i += len == 0 ? 1 : len;
    }
    return count;
}

void AppendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += char(c);
    } else if (c < 0x800) {
        out += char(0xC0 | (c >> 6));
        out += char(0x80 | (c & 0x3F));
    } else if (c < 0x10000 && (c < 0xD800 || c > 0xDFFF)) {
        out += char(0xE0 | (c >> 12));
        out += char(0x80 | ((c >> 6) & 0x3F));
        out += char(0x80 | (c & 0x3F));
    } else if (c >= 0x10000 && c <= 0x10FFFF) {
        out += char(0xF0 | (c >> 18));
        out += char(0x80 | ((c >> 12) & 0x3F));
        out += char(0x80 | ((c >> 6) & 0x3F));
        out += char(0x80 | (c & 0x3F));
    } else {
        out += "\xEF\xBF\xBD";
    }
}

} // namespace kv
