// One Whirlpool engine for the three published variants. The file format needs
// Whirlpool-0; the ISO variant exists so the engine can be checked against libcrypto.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace kv {

enum class EWhirlpoolVariant {
    Whirlpool0, // original submission, used by the enciphered strings
    WhirlpoolT, // 2001 tweak: new S-box, original matrix
    Iso,        // ISO/IEC 10118-3, the one OpenSSL computes
};

struct TWhirlpoolTables; // lookup tables of one variant, built once

class TWhirlpool {
public:
    static constexpr std::size_t DigestSize = 64;
    static constexpr std::size_t BlockSize = 64;
    using TDigest = std::array<std::uint8_t, DigestSize>;

    explicit TWhirlpool(EWhirlpoolVariant variant = EWhirlpoolVariant::Whirlpool0);

    void Reset();
    void Update(const void* data, std::size_t size);
    void Update(std::span<const std::uint8_t> data) { Update(data.data(), data.size()); }
    // Writes the digest and resets the engine for the next message.
    void Final(std::uint8_t digest[DigestSize]);
    TDigest Final();

    static TDigest Hash(EWhirlpoolVariant variant, const void* data, std::size_t size);
    static TDigest Hash(EWhirlpoolVariant variant, std::string_view bytes) {
        return Hash(variant, bytes.data(), bytes.size());
    }

private:
    void Compress(const std::uint8_t* block);

    const TWhirlpoolTables* tables_;
    std::uint64_t hash_[8];
    std::uint8_t buffer_[BlockSize];
    std::size_t bufferLen_ = 0;
    std::uint64_t lengthLo_ = 0; // message length in bytes, low 64 bits
    std::uint64_t lengthHi_ = 0; // and the carry beyond them
};

} // namespace kv
