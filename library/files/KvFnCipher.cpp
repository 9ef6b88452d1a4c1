#include "files/KvFnCipher.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include "KvErrors.h"

namespace kv {

namespace {

[[noreturn]] void ThrowOpenSsl(const char* what) {
    const unsigned long code = ERR_get_error();
    ERR_clear_error();
    char text[256] = "unknown error";
    if (code != 0) ERR_error_string_n(code, text, sizeof text);
    throw EKvError(std::string("Cipher failure (") + what + "): " + text);
}

// Fetched once: an implicit fetch on every init would cost more than the blocks
// of a short name.
const EVP_CIPHER* Aes256Ecb() {
    static const EVP_CIPHER* cipher = [] {
        const EVP_CIPHER* c = EVP_CIPHER_fetch(nullptr, "AES-256-ECB", nullptr);
        return c ? c : EVP_aes_256_ecb();
    }();
    return cipher;
}

inline void PutBe32(std::uint8_t* p, std::uint32_t v) {
    p[0] = std::uint8_t(v >> 24);
    p[1] = std::uint8_t(v >> 16);
    p[2] = std::uint8_t(v >> 8);
    p[3] = std::uint8_t(v);
}

std::span<const std::uint8_t> Bytes(std::string_view s) {
    return {reinterpret_cast<const std::uint8_t*>(s.data()), s.size()};
}

// Wipes key material on every way out.
template <std::size_t N>
struct TSecret {
    std::array<std::uint8_t, N> b{};
    ~TSecret() { OPENSSL_cleanse(b.data(), N); }
};

constexpr std::size_t B = TAes256::BlockSize;

// Key schedule and initial feedback register of one string.
struct TStringCipher {
    TAes256 aes;
    std::uint8_t f[B];

    explicit TStringCipher(const std::uint8_t* key) : aes(key) {
        std::uint8_t filler[B];
        std::memset(filler, 0xFF, B);
        aes.EncryptBlock(filler, f);
    }

    // The final partial block runs CFB-8 on the same register; c is the
    // ciphertext byte whichever way we go.
    void ShiftIn(std::uint8_t c) {
        std::memmove(f, f + 1, B - 1);
        f[B - 1] = c;
    }
};

void DeriveKey(std::string_view keyAnsi, const std::uint8_t* salt, TSecret<TAes256::KeySize>& key) {
    std::vector<std::uint8_t> k = KDFx(Bytes(keyAnsi), {salt, SaltSize}, TAes256::KeySize, 1);
    std::memcpy(key.b.data(), k.data(), k.size());
    OPENSSL_cleanse(k.data(), k.size());
}

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<std::int8_t, 256> MakeDecodeTable() {
    std::array<std::int8_t, 256> t{};
    for (auto& v : t) v = -1;
    for (int i = 0; i < 64; ++i) t[static_cast<unsigned char>(kAlphabet[i])] = std::int8_t(i);
    return t;
}
constexpr std::array<std::int8_t, 256> kDecode = MakeDecodeTable();

} // namespace

void TWhirlpoolHash::Hash(const std::uint8_t* data, std::size_t size, std::uint8_t* digest) const {
    TWhirlpool h(variant_);
    h.Update(data, size);
    h.Final(digest);
}

std::vector<std::uint8_t> KDFx(std::span<const std::uint8_t> data, std::span<const std::uint8_t> seed,
                               std::size_t length, std::uint32_t index, const THashFunction& hash) {
    std::vector<std::uint8_t> out(length);
    // Fixed tail of every hash input, after the counter and the bytes made so far.
    std::vector<std::uint8_t> tail(12 + seed.size() + data.size());
    PutBe32(tail.data(), index);
    PutBe32(tail.data() + 4, std::uint32_t(seed.size()));
    if (!seed.empty()) std::memcpy(tail.data() + 8, seed.data(), seed.size());
    PutBe32(tail.data() + 8 + seed.size(), std::uint32_t(data.size()));
    if (!data.empty()) std::memcpy(tail.data() + 12 + seed.size(), data.data(), data.size());

    std::vector<std::uint8_t> msg(4 + length + tail.size());
    std::vector<std::uint8_t> digest(hash.DigestSize());
    for (std::size_t i = 0; i < length; ++i) {
        PutBe32(msg.data(), std::uint32_t(i));
        if (i > 0) std::memcpy(msg.data() + 4, out.data(), i);
        std::memcpy(msg.data() + 4 + i, tail.data(), tail.size());
        hash.Hash(msg.data(), 4 + i + tail.size(), digest.data());
        std::uint8_t folded = 0;
        for (std::uint8_t d : digest) folded ^= d;
        out[i] = folded;
    }
    OPENSSL_cleanse(msg.data(), msg.size());
    OPENSSL_cleanse(tail.data(), tail.size());
    return out;
}

std::vector<std::uint8_t> KDFx(std::span<const std::uint8_t> data, std::span<const std::uint8_t> seed,
                               std::size_t length, std::uint32_t index) {
    static const TWhirlpoolHash whirlpool0(EWhirlpoolVariant::Whirlpool0);
    return KDFx(data, seed, length, index, whirlpool0);
}

TAes256::TAes256(const std::uint8_t key[KeySize]) {
    std::memcpy(key_, key, KeySize);
    enc_ = EVP_CIPHER_CTX_new();
    if (!enc_ || EVP_EncryptInit_ex(enc_, Aes256Ecb(), nullptr, key_, nullptr) != 1 ||
        EVP_CIPHER_CTX_set_padding(enc_, 0) != 1) {
        EVP_CIPHER_CTX_free(enc_);
        OPENSSL_cleanse(key_, KeySize);
        ThrowOpenSsl("AES-256 encryption key");
    }
}

TAes256::~TAes256() {
    EVP_CIPHER_CTX_free(enc_);
    EVP_CIPHER_CTX_free(dec_);
    OPENSSL_cleanse(key_, KeySize);
}

void TAes256::EncryptBlock(const std::uint8_t in[BlockSize], std::uint8_t out[BlockSize]) {
    int len = 0;
    if (EVP_EncryptUpdate(enc_, out, &len, in, int(BlockSize)) != 1 || len != int(BlockSize))
        ThrowOpenSsl("AES-256 encryption");
}

void TAes256::DecryptBlocks(const std::uint8_t* in, std::uint8_t* out, std::size_t blocks) {
    if (blocks == 0) return;
    if (!dec_) {
        dec_ = EVP_CIPHER_CTX_new();
        if (!dec_ || EVP_DecryptInit_ex(dec_, Aes256Ecb(), nullptr, key_, nullptr) != 1 ||
            EVP_CIPHER_CTX_set_padding(dec_, 0) != 1)
            ThrowOpenSsl("AES-256 decryption key");
    }
    // Chunked so the int length of the EVP call cannot overflow.
    constexpr std::size_t kChunk = std::size_t(1) << 26;
    for (std::size_t done = 0; done < blocks * BlockSize;) {
        const std::size_t n = std::min(kChunk, blocks * BlockSize - done);
        int len = 0;
        if (EVP_DecryptUpdate(dec_, out + done, &len, in + done, int(n)) != 1 || len != int(n))
            ThrowOpenSsl("AES-256 decryption");
        done += n;
    }
}

std::string Base64Encode(std::span<const std::uint8_t> bytes) {
    const std::size_t n = bytes.size();
    std::string out((n + 2) / 3 * 4, '=');
    char* o = out.data();
    std::size_t i = 0;
    for (; i + 3 <= n; i += 3, o += 4) {
        const std::uint32_t v = (std::uint32_t(bytes[i]) << 16) | (std::uint32_t(bytes[i + 1]) << 8) | bytes[i + 2];
        o[0] = kAlphabet[v >> 18];
        o[1] = kAlphabet[(v >> 12) & 63];
        o[2] = kAlphabet[(v >> 6) & 63];
        o[3] = kAlphabet[v & 63];
    }
    if (n - i == 1) {
        const std::uint32_t v = std::uint32_t(bytes[i]) << 16;
        o[0] = kAlphabet[v >> 18];
        o[1] = kAlphabet[(v >> 12) & 63];
    } else if (n - i == 2) {
        const std::uint32_t v = (std::uint32_t(bytes[i]) << 16) | (std::uint32_t(bytes[i + 1]) << 8);
        o[0] = kAlphabet[v >> 18];
        o[1] = kAlphabet[(v >> 12) & 63];
        o[2] = kAlphabet[(v >> 6) & 63];
    }
    return out;
}

std::vector<std::uint8_t> Base64Decode(std::string_view text) {
    std::vector<std::uint8_t> out;
    out.reserve(text.size() / 4 * 3 + 3);
    std::uint32_t acc = 0;
    int symbols = 0;
    for (const char ch : text) {
        if (ch == '=') break;
        const std::int8_t v = kDecode[static_cast<unsigned char>(ch)];
        if (v < 0) continue;
        acc = (acc << 6) | std::uint32_t(v);
        if (++symbols == 4) {
            out.push_back(std::uint8_t(acc >> 16));
            out.push_back(std::uint8_t(acc >> 8));
            out.push_back(std::uint8_t(acc));
            acc = 0;
            symbols = 0;
        }
    }
    if (symbols == 2) {
        out.push_back(std::uint8_t(acc >> 4));
    } else if (symbols == 3) {
        out.push_back(std::uint8_t(acc >> 10));
        out.push_back(std::uint8_t(acc >> 2));
    }
    return out;
}

void RandomSalt(std::uint8_t salt[SaltSize]) {
    if (RAND_bytes(salt, int(SaltSize)) != 1) ThrowOpenSsl("random salt");
}

std::string EncipherBytes(std::string_view plainAnsi, std::string_view keyAnsi, const std::uint8_t salt[SaltSize]) {
    const std::size_t n = plainAnsi.size();
    const auto* p = reinterpret_cast<const std::uint8_t*>(plainAnsi.data());
    TSecret<TAes256::KeySize> key;
    DeriveKey(keyAnsi, salt, key);
    TStringCipher cipher(key.b.data());

    std::vector<std::uint8_t> out(SaltSize + n + B);
    std::memcpy(out.data(), salt, SaltSize);
    std::uint8_t* c = out.data() + SaltSize;

    const std::size_t whole = n - n % B;
    std::uint8_t x[B];
    for (std::size_t j = 0; j < whole; j += B) {
        for (std::size_t k = 0; k < B; ++k) x[k] = p[j + k] ^ cipher.f[k];
        cipher.aes.EncryptBlock(x, c + j);
        std::memcpy(cipher.f, c + j, B);
    }
    for (std::size_t j = whole; j < n; ++j) {
        cipher.aes.EncryptBlock(cipher.f, x);
        c[j] = p[j] ^ x[0];
        cipher.ShiftIn(c[j]);
    }
    cipher.aes.EncryptBlock(cipher.f, c + n);
    OPENSSL_cleanse(x, B);
    return Base64Encode(out);
}

std::string EncipherBytes(std::string_view plainAnsi, std::string_view keyAnsi) {
    std::uint8_t salt[SaltSize];
    RandomSalt(salt);
    return EncipherBytes(plainAnsi, keyAnsi, salt);
}

std::string DecipherBytes(std::string_view base64, std::string_view keyAnsi) {
    if (base64.size() > MaxEncipheredText)
        throw EKvError("An enciphered text of " + std::to_string(base64.size()) + " bytes is longer than the " +
                       std::to_string(MaxEncipheredText >> 20) + " MiB accepted");
    const std::vector<std::uint8_t> d = Base64Decode(base64);
    if (d.size() < SaltSize + B) throw EInvalidData();
    const std::size_t n = d.size() - SaltSize - B;
    const std::uint8_t* c = d.data() + SaltSize;
    const std::uint8_t* mac = c + n;

    TSecret<TAes256::KeySize> key;
    DeriveKey(keyAnsi, d.data(), key);
    TStringCipher cipher(key.b.data());

    std::string plain(n, '\0');
    auto* p = reinterpret_cast<std::uint8_t*>(plain.data());
    const std::size_t whole = n - n % B;
    if (whole > 0) {
        // CBC deciphering has no chain dependency: all blocks at once, then the XOR.
        cipher.aes.DecryptBlocks(c, p, whole / B);
        for (std::size_t k = 0; k < B; ++k) p[k] ^= cipher.f[k];
        for (std::size_t j = B; j < whole; ++j) p[j] ^= c[j - B];
        std::memcpy(cipher.f, c + whole - B, B);
    }
    std::uint8_t x[B];
    for (std::size_t j = whole; j < n; ++j) {
        cipher.aes.EncryptBlock(cipher.f, x);
        p[j] = c[j] ^ x[0];
        cipher.ShiftIn(c[j]);
    }
    cipher.aes.EncryptBlock(cipher.f, x);
    if (CRYPTO_memcmp(x, mac, B) != 0) {
        OPENSSL_cleanse(plain.data(), plain.size());
        throw EInvalidData();
    }
    return plain;
}

} // namespace kv
