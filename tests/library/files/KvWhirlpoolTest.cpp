#include "files/KvWhirlpool.h"

#include <cstdlib>
#include <random>

#include <openssl/evp.h>
#include <openssl/provider.h>

#include "FilesTestUtil.h"

using namespace kv;
using namespace kvtest;

namespace {

std::string Digest(EWhirlpoolVariant v, const Bytes& in) { return ToHex(TWhirlpool::Hash(v, in.data(), in.size())); }

// Feeds the input in uneven pieces so that every buffering path of Update runs.
std::string DigestInPieces(EWhirlpoolVariant v, const Bytes& in, std::size_t piece) {
    TWhirlpool h(v);
    for (std::size_t i = 0; i < in.size(); i += piece) h.Update(in.data() + i, std::min(piece, in.size() - i));
    return ToHex(h.Final());
}

TEST(files_Whirlpool, Whirlpool0Vectors) {
    for (const auto& v : Vectors("whirlpool")) {
        const Bytes in = FromHex(v.at("input_hex"));
        SCOPED_TRACE("input length " + std::to_string(in.size()));
        EXPECT_EQ(Digest(EWhirlpoolVariant::Whirlpool0, in), v.at("digest_hex"));
        for (std::size_t piece : {1u, 7u, 63u, 65u})
            EXPECT_EQ(DigestInPieces(EWhirlpoolVariant::Whirlpool0, in, piece), v.at("digest_hex")) << "piece " << piece;
    }
}

TEST(files_Whirlpool, FinalResetsForTheNextMessage) {
    TWhirlpool h;
    h.Update("garbage", 7);
    (void)h.Final();
    h.Update("abc", 3);
    EXPECT_EQ(ToHex(h.Final()), ToHex(TWhirlpool::Hash(EWhirlpoolVariant::Whirlpool0, "abc")));
}

// Loading one provider switches off the implicit default one, so both are loaded,
// once, and stay loaded until exit: unloading them earlier would leave the rest of
// the process (AES included) without any provider. The unload at exit runs before
// libcrypto's own clean-up, which was registered first.
OSSL_PROVIDER* gLegacy = nullptr;
OSSL_PROVIDER* gDefault = nullptr;

bool LoadLegacyProvider() {
    static const bool loaded = [] {
        gLegacy = OSSL_PROVIDER_load(nullptr, "legacy");
        gDefault = OSSL_PROVIDER_load(nullptr, "default");
        std::atexit([] {
            if (gLegacy) OSSL_PROVIDER_unload(gLegacy);
            if (gDefault) OSSL_PROVIDER_unload(gDefault);
        });
        return gLegacy && gDefault;
    }();
    return loaded;
}

class files_WhirlpoolVsOpenSsl : public ::testing::Test {
protected:
    void SetUp() override {
        if (!LoadLegacyProvider()) GTEST_SKIP() << "OpenSSL legacy provider not available; ISO Whirlpool cannot be compared";
        md_ = EVP_MD_fetch(nullptr, "WHIRLPOOL", nullptr);
        if (!md_) GTEST_SKIP() << "WHIRLPOOL not offered by the loaded providers";
    }
    void TearDown() override { EVP_MD_free(md_); }
    std::string OpenSslDigest(const Bytes& in) const {
        unsigned char out[EVP_MAX_MD_SIZE];
        unsigned int len = 0;
        EXPECT_EQ(EVP_Digest(in.data(), in.size(), out, &len, md_, nullptr), 1);
        return ToHex(Bytes(out, out + len));
    }

    EVP_MD* md_ = nullptr;
};

TEST_F(files_WhirlpoolVsOpenSsl, IsoModeAgreesOnEveryLengthUpTo300AndOnOneMegabyte) {
    std::mt19937 gen(12345);
    Bytes data(1 << 20);
    for (auto& b : data) b = std::uint8_t(gen());
    for (std::size_t n = 0; n <= 300; ++n) {
        const Bytes in(data.begin(), data.begin() + std::ptrdiff_t(n));
        ASSERT_EQ(Digest(EWhirlpoolVariant::Iso, in), OpenSslDigest(in)) << "length " << n;
    }
    EXPECT_EQ(DigestInPieces(EWhirlpoolVariant::Iso, data, 1000), OpenSslDigest(data));
}

} // namespace
