// Enciphered strings: KDFx key derivation over Whirlpool-0, AES-256 in the
// cmCBCx chaining mode, a MAC over the final feedback register, base-64 text.
// Existing client files must decipher bit for bit, so every step follows the
// original library's construction, quirks included (see DecipherBytes).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <openssl/types.h>

#include "files/KvWhirlpool.h"

namespace kv {

// A one-shot hash, the only thing KDFx needs from its hash.
class THashFunction {
public:
    virtual ~THashFunction() = default;
    virtual std::size_t DigestSize() const = 0;
    virtual void Hash(const std::uint8_t* data, std::size_t size, std::uint8_t* digest) const = 0;
};

class TWhirlpoolHash final : public THashFunction {
public:
    explicit TWhirlpoolHash(EWhirlpoolVariant variant = EWhirlpoolVariant::Whirlpool0) : variant_(variant) {}
    std::size_t DigestSize() const override { return TWhirlpool::DigestSize; }
    void Hash(const std::uint8_t* data, std::size_t size, std::uint8_t* digest) const override;

private:
    EWhirlpoolVariant variant_;
};

// Output byte i is the XOR-fold of
// H(be32(i) || out[0..i) || be32(index) || be32(|seed|) || seed || be32(|data|) || data).
std::vector<std::uint8_t> KDFx(std::span<const std::uint8_t> data, std::span<const std::uint8_t> seed,
                               std::size_t length, std::uint32_t index, const THashFunction& hash);
// Over Whirlpool-0, as the enciphered strings use it.
std::vector<std::uint8_t> KDFx(std::span<const std::uint8_t> data, std::span<const std::uint8_t> seed,
                               std::size_t length, std::uint32_t index = 1);

// AES-256 on single blocks through libcrypto; the chaining is ours. One object
// holds the key schedule for the whole of one string.
class TAes256 {
public:
    static constexpr std::size_t BlockSize = 16;
    static constexpr std::size_t KeySize = 32;

    explicit TAes256(const std::uint8_t key[KeySize]);
    ~TAes256();
    TAes256(const TAes256&) = delete;
    TAes256& operator=(const TAes256&) = delete;

    void EncryptBlock(const std::uint8_t in[BlockSize], std::uint8_t out[BlockSize]);
    // Deciphers whole blocks in one call (ECB); in and out may be the same.
    void DecryptBlocks(const std::uint8_t* in, std::uint8_t* out, std::size_t blocks);

private:
    EVP_CIPHER_CTX* enc_ = nullptr;
    EVP_CIPHER_CTX* dec_ = nullptr; // made on first use; the tail and MAC need only encryption
    std::uint8_t key_[KeySize];
};

// Standard alphabet, '=' padding, no line breaks.
std::string Base64Encode(std::span<const std::uint8_t> bytes);
// Lenient like the original reader: characters outside the alphabet are skipped,
// the first '=' ends the data, a final group of k symbols gives k - 1 bytes.
std::vector<std::uint8_t> Base64Decode(std::string_view text);

inline constexpr std::size_t SaltSize = 16;

// 16 bytes from libcrypto's generator.
void RandomSalt(std::uint8_t salt[SaltSize]);

// Both take Windows-1252 byte strings (plain text and key); the result is the
// base-64 text of Salt || C || MAC.
std::string EncipherBytes(std::string_view plainAnsi, std::string_view keyAnsi, const std::uint8_t salt[SaltSize]);
std::string EncipherBytes(std::string_view plainAnsi, std::string_view keyAnsi);

// Stored enciphered texts are names, to-do texts and settings of a few KB at
// most; 8 MiB of base-64 is far beyond any of them and still a bounded cost.
inline constexpr std::size_t MaxEncipheredText = std::size_t(8) << 20;

// Returns the plain bytes. Throws EKvError for a text longer than
// MaxEncipheredText, EInvalidData when the MAC differs or the text
// decodes to fewer than 32 bytes. Damage inside C before its last 16 bytes is not
// detected and yields garbled text without an error, exactly as files written by
// the original products expect; do not add a check here.
std::string DecipherBytes(std::string_view base64, std::string_view keyAnsi);

} // namespace kv
