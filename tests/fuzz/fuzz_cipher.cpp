// Hostile text as an enciphered string (base-64 of salt, ciphertext and MAC)
// under a fixed key, and the same bytes as a plain text to encipher. Whatever
// deciphers must encipher back to the very same bytes with its own salt, and
// any plain text must come back from its ciphertext unchanged.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "KvErrors.h"
#include "files/KvFnCipher.h"

namespace {

constexpr std::string_view kKey = "fuzz";

void Check(bool ok) {
    if (!ok) __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);

    const std::vector<std::uint8_t> decoded = kv::Base64Decode(text);
    Check(kv::Base64Decode(kv::Base64Encode(decoded)) == decoded);

    try {
        const std::string plain = kv::DecipherBytes(text, kKey);
        Check(decoded.size() == kv::SaltSize + plain.size() + 16);
        const std::string again = kv::EncipherBytes(plain, kKey, decoded.data());
        Check(kv::Base64Decode(again) == decoded);
    } catch (const kv::EInvalidData&) {
    }

    // Both cost a key derivation; the plain side only for short inputs.
    if (size <= 256) Check(kv::DecipherBytes(kv::EncipherBytes(text, kKey), kKey) == text);
    return 0;
}
