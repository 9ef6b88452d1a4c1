#include "files/KvFnCipher.h"

#include <set>

#include <openssl/evp.h>

#include "KvErrors.h"
#include "files/KvAnsi.h"
#include "FilesTestUtil.h"

using namespace kv;
using namespace kvtest;

namespace {

TEST(files_Kdfx, Whirlpool0Vectors) {
    for (const auto& v : Vectors("kdfx")) {
        SCOPED_TRACE(v.dump());
        const Bytes out = KDFx(FromHex(v.at("data_hex")), FromHex(v.at("seed_hex")), v.at("length"), v.at("index"));
        EXPECT_EQ(ToHex(out), v.at("output_hex"));
    }
}

TEST(files_Aes256, VectorsBothWays) {
    for (const auto& v : Vectors("aes256")) {
        SCOPED_TRACE(v.dump());
        const Bytes key = FromHex(v.at("key_hex"));
        const Bytes plain = FromHex(v.at("plain_hex"));
        TAes256 aes(key.data());
        std::uint8_t out[16];
        aes.EncryptBlock(plain.data(), out);
        EXPECT_EQ(ToHex(Bytes(out, out + 16)), v.at("cipher_hex"));
        aes.DecryptBlocks(out, out, 1);
        EXPECT_EQ(ToHex(Bytes(out, out + 16)), v.at("plain_hex"));
    }
}

TEST(files_Base64, LenientDecoderVectors) {
    for (const auto& v : Vectors("mime64_decode")) {
        SCOPED_TRACE(v.dump());
        EXPECT_EQ(ToHex(Base64Decode(v.at("text").get<std::string>())), v.at("bytes_hex"));
    }
}

TEST(files_Base64, EncoderMatchesLibcryptoAndRoundTrips) {
    Bytes data;
    for (int n = 0; n <= 70; ++n) {
        unsigned char ref[128];
        const int len = EVP_EncodeBlock(ref, data.data(), int(data.size()));
        const std::string text = Base64Encode(data);
        EXPECT_EQ(text, std::string(reinterpret_cast<char*>(ref), std::size_t(len))) << "length " << n;
        EXPECT_EQ(Base64Decode(text), data) << "length " << n;
        data.push_back(std::uint8_t(n * 37 + 200));
    }
}

TEST(files_Encipher, VectorsDecipherAndReencipherWithIntermediates) {
    for (const auto& v : Vectors("enciphered")) {
        SCOPED_TRACE(v.at("note").get<std::string>());
        const std::string key = HexStr(v.at("key_hex"));
        const std::string plain = HexStr(v.at("plaintext_hex"));
        const Bytes salt = FromHex(v.at("salt_hex"));
        ASSERT_EQ(salt.size(), SaltSize);

        EXPECT_EQ(Utf8ToAnsi(v.at("key_text").get<std::string>()), key);
        EXPECT_EQ(ToHex(DecipherBytes(v.at("base64").get<std::string>(), key)), v.at("plaintext_hex"));

        const std::string text = EncipherBytes(plain, key, salt.data());
        EXPECT_EQ(text, v.at("base64"));

        const Bytes derived = KDFx(FromHex(v.at("key_hex")), salt, 32, 1);
        EXPECT_EQ(ToHex(derived), v.at("derived_key_hex"));
        TAes256 aes(derived.data());
        std::uint8_t filler[16], iv[16];
        std::memset(filler, 0xFF, 16);
        aes.EncryptBlock(filler, iv);
        EXPECT_EQ(ToHex(Bytes(iv, iv + 16)), v.at("iv_hex"));

        const Bytes raw = Base64Decode(text);
        ASSERT_EQ(raw.size(), 32 + plain.size());
        EXPECT_EQ(ToHex(Bytes(raw.begin(), raw.begin() + 16)), v.at("salt_hex"));
        EXPECT_EQ(ToHex(Bytes(raw.begin() + 16, raw.end() - 16)), v.at("ciphertext_hex"));
        EXPECT_EQ(ToHex(Bytes(raw.end() - 16, raw.end())), v.at("mac_hex"));
    }
}

TEST(files_Decipher, WrongKeyOrDamageGivesInvalidData) {
    for (const auto& v : Vectors("wrong_key")) {
        SCOPED_TRACE(v.at("reason").get<std::string>());
        EXPECT_EQ(Utf8ToAnsi(v.at("key_text").get<std::string>()), HexStr(v.at("key_hex")));
        try {
            (void)DecipherBytes(v.at("base64").get<std::string>(), HexStr(v.at("key_hex")));
            ADD_FAILURE() << "no error";
        } catch (const EInvalidData& e) {
            EXPECT_EQ(std::string(e.what()), v.at("error"));
        }
    }
}

TEST(files_Decipher, EarlyBlockDamageIsNotDetected) {
    for (const auto& v : Vectors("undetected_damage")) {
        SCOPED_TRACE(v.at("reason").get<std::string>());
        EXPECT_EQ(ToHex(DecipherBytes(v.at("base64").get<std::string>(), HexStr(v.at("key_hex")))),
                  v.at("plaintext_hex"));
    }
}

TEST(files_Decipher, TooShortForSaltAndMacIsInvalidData) {
    for (std::size_t n : {0u, 1u, 16u, 31u}) {
        const std::string text = Base64Encode(Bytes(n, 0x41));
        EXPECT_THROW((void)DecipherBytes(text, "secret"), EInvalidData) << n << " bytes";
    }
    EXPECT_THROW((void)DecipherBytes("!!!! ====", "secret"), EInvalidData);
}

TEST(files_Encipher, RandomSaltsDifferAndRoundTripEveryLength) {
    std::set<std::string> seen;
    std::string plain;
    for (int n = 0; n <= 70; ++n) {
        const std::string text = EncipherBytes(plain, "k\x80y");
        EXPECT_EQ(text.size(), 4 * ((32 + plain.size() + 2) / 3));
        EXPECT_EQ(DecipherBytes(text, "k\x80y"), plain) << "length " << n;
        seen.insert(text.substr(0, 20)); // the salt's part of the text
        plain += char(0x80 + n);
    }
    EXPECT_EQ(seen.size(), 71u);
}

} // namespace
