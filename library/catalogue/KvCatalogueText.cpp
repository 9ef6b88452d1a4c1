#include "catalogue/KvCatalogueText.h"

#include <algorithm>
#include <random>

#include "KvErrors.h"
#include "files/KvAnsi.h"
#include "files/KvFnCipher.h"

namespace kv::catalogue {

namespace {

std::uint32_t RandomBelow(std::uint32_t m) {
    if (m == 0) return 0;
    std::random_device device; // no state kept between calls
    return std::uniform_int_distribution<std::uint32_t>(0, m - 1)(device);
}

} // namespace

std::string EncipherForSlot(std::string_view utf8, const std::string& key, std::size_t maxBase64,
                            const std::string& what) {
    std::string plain = Utf8ToAnsi(utf8);
    if (plain.find('|') != std::string::npos)
        throw EKvError(what + " holds \"|\", which cannot be stored in an enciphered text");
    const std::size_t maxPlain = maxBase64 == Unlimited ? Unlimited : MaxPlainForBase64(maxBase64);
    if (plain.size() > maxPlain)
        throw EKvError(what + " is too long to be stored enciphered (" + std::to_string(plain.size()) +
                       " bytes, at most " + std::to_string(maxPlain) + ")");
    const std::size_t length = Utf8Length(utf8);
    if (length < 11) {
        // The reader cannot tell the padding's length, so capping it keeps the
        // format while making the text fit its slot.
        const std::uint32_t m = length * 20 >= 256 ? 255 : std::uint32_t(length * 20);
        std::size_t count = RandomBelow(m) + 10;
        if (maxPlain != Unlimited)
            count = std::min(count, maxPlain > plain.size() + 1 ? maxPlain - plain.size() - 1 : 0);
        plain += '|';
        for (std::size_t i = 0; i < count; ++i) plain += char(CodePointToAnsi(RandomBelow(m)));
    }
    return EncipherBytes(plain, Utf8ToAnsi(key));
}

std::string DecipherStripped(std::string_view base64, const std::string& key) {
    if (base64.empty()) return {};
    std::string plain = DecipherBytes(base64, Utf8ToAnsi(key));
    const std::size_t bar = plain.find('|');
    if (bar != std::string::npos) plain.resize(bar);
    return plain;
}

} // namespace kv::catalogue
