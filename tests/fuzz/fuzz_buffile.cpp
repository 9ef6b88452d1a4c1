// Drives every read primitive of TBufReadFile over hostile bytes.
// Input: byte 0 = k, bytes 1..k = the operations to run, the rest = the file.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "KvErrors.h"
#include "files/KvAnsi.h"
#include "files/KvFnBufFile.h"
#include "files/KvFnCipher.h"
#include "fuzz_buffile_ops.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::size_t k = std::min<std::size_t>(data[0], size - 1);
    const std::uint8_t* ops = data + 1;
    std::vector<std::uint8_t> file(data + 1 + k, data + size);

    kv::TBufReadFile r = kv::TBufReadFile::FromBytes(std::move(file), "fuzz.dat");
    int deciphers = 0;
    std::unique_ptr<char[]> pchar;
    for (std::size_t i = 0; i < k; ++i) {
        try {
            switch (static_cast<kvfuzz::EOp>(ops[i] % kvfuzz::OpCount)) {
            case kvfuzz::EOp::Byte: (void)r.ReadByte(); break;
            case kvfuzz::EOp::Boolean: (void)r.ReadBoolean(); break;
            case kvfuzz::EOp::Word: (void)r.ReadWord(); break;
            case kvfuzz::EOp::Int: (void)r.ReadInt(); break;
            case kvfuzz::EOp::LongWord: (void)r.ReadLongWord(); break;
            case kvfuzz::EOp::Double: (void)r.ReadDouble(); break;
            case kvfuzz::EOp::DateTime: (void)r.ReadDateTime(); break;
            case kvfuzz::EOp::Date: (void)r.ReadDate(); break;
            case kvfuzz::EOp::Char: (void)r.ReadChar(); break;
            case kvfuzz::EOp::Data: {
                char buf[64];
                r.ReadData(buf, ops[i] >> 2 & 63);
                break;
            }
            case kvfuzz::EOp::NumX: (void)r.ReadNumX(); break;
            case kvfuzz::EOp::Str: {
                // Back through the other direction of the code page as well.
                const std::string s = r.ReadStr();
                (void)kv::Utf8ToAnsi(s);
                break;
            }
            case kvfuzz::EOp::ShortStr: (void)r.ReadShortStr(); break;
            case kvfuzz::EOp::StrX: (void)r.ReadStrX(); break;
            case kvfuzz::EOp::StringsX: (void)r.ReadStringsX(); break;
            case kvfuzz::EOp::PChar: r.ReadPChar(pchar); break;
            case kvfuzz::EOp::EncryptStr:
                // Each costs 32 hashes; a few per input keep the fuzzer fast.
                if (++deciphers <= 4) (void)r.ReadEncryptStr("key", (ops[i] & 0x80) != 0);
                break;
            case kvfuzz::EOp::Seek:
                // Mostly small steps either way, sometimes to just before the end.
                if (ops[i] & 0x80)
                    r.SetPosition(r.Size() - (ops[i] >> 5 & 3));
                else
                    r.SetPosition(r.Position() + (ops[i] >> 5 & 3) - 2);
                break;
            case kvfuzz::EOp::RawUtf8: {
                // The file's remaining bytes taken as (probably malformed) UTF-8.
                const std::int32_t p = r.Position();
                if (p >= 0 && p < r.Size()) {
                    std::string raw(std::size_t(r.Size() - p), '\0');
                    r.ReadData(raw.data(), std::int32_t(raw.size()));
                    (void)kv::Utf8Length(raw);
                    (void)kv::AnsiToUtf8(kv::Utf8ToAnsi(raw));
                    r.SetPosition(p);
                }
                break;
            }
            }
        } catch (const kv::EKvError&) {
        }
    }
    return 0;
}
