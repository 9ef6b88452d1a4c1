// Buffered files against memcpy, the Whirlpool engine against libcrypto, and the
// cost of deciphering the short enciphered names a client file is full of.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <openssl/evp.h>
#include <openssl/provider.h>

#include "../common/BenchSupport.h"
#include "files/KvFnBufFile.h"
#include "files/KvFnCipher.h"
#include "files/KvWhirlpool.h"

namespace {

constexpr int kRecords = 1'000'000; // about 50 MB of records below

std::string TempPath(const char* name) {
    static const tessary_bench::TempFolder folder("files");
    return (folder.Path() / name).string();
}

// One record: Int, Double, ShortStr, Str; mostly ASCII like real item records.
void WriteRecords(kv::TBufWriteFile& w) {
    static const std::string shortText = "RRSP account";
    static const std::string longText = "Caf\xC3\xA9 du Commerce, share class A";
    for (int i = 0; i < kRecords; ++i) {
        w.WriteInt(i);
        w.WriteDouble(i * 1.25);
        w.WriteShortStr(shortText);
        w.WriteStr(i % 8 ? std::string_view(longText).substr(8) : std::string_view(longText));
    }
}

const std::string& MixedFile() {
    static const std::string path = [] {
        std::string p = TempPath("tessary-bench-mixed");
        kv::TBufWriteFile w(p);
        WriteRecords(w);
        w.Close();
        return p;
    }();
    return path;
}

std::int64_t MixedSize() { return std::int64_t(std::filesystem::file_size(MixedFile())); }

void ParseAll(kv::TBufReadFile& r, benchmark::State& state) {
    std::int32_t i = 0;
    double d = 0;
    std::string s1, s2;
    while (!r.Eof()) {
        r.ReadInt(i);
        r.ReadDouble(d);
        r.ReadShortStr(s1);
        r.ReadStr(s2);
    }
    benchmark::DoNotOptimize(i);
    benchmark::DoNotOptimize(d);
    benchmark::DoNotOptimize(s1.data());
    benchmark::DoNotOptimize(s2.data());
    (void)state;
}

// Field reads from the memory copy: the cost of the primitives themselves.
void BM_ReadParseInMemory(benchmark::State& state) {
    kv::TBufReadFile r(MixedFile(), true);
    for (auto _ : state) {
        r.SetPosition(0);
        ParseAll(r, state);
    }
    state.SetBytesProcessed(state.iterations() * MixedSize());
}
BENCHMARK(BM_ReadParseInMemory)->Unit(benchmark::kMillisecond);

// Opening and loading the whole file (page cache) plus parsing it.
void BM_ReadFileAndParse(benchmark::State& state) {
    for (auto _ : state) {
        kv::TBufReadFile r(MixedFile(), true);
        ParseAll(r, state);
    }
    state.SetBytesProcessed(state.iterations() * MixedSize());
}
BENCHMARK(BM_ReadFileAndParse)->Unit(benchmark::kMillisecond);

// A fresh file each time: truncating the previous 50 MB would be timed otherwise.
void BM_WriteToFile(benchmark::State& state) {
    const std::string path = TempPath("tessary-bench-write");
    for (auto _ : state) {
        kv::TBufWriteFile w(path);
        WriteRecords(w);
        w.Close();
        state.PauseTiming();
        std::remove(path.c_str());
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * MixedSize());
}
BENCHMARK(BM_WriteToFile)->Unit(benchmark::kMillisecond);

// The writer's own share: buffering and conversion, with a sink that costs nothing.
void BM_WriteToDevNull(benchmark::State& state) {
    for (auto _ : state) {
        kv::TBufWriteFile w("/dev/null");
        WriteRecords(w);
        w.Close();
    }
    state.SetBytesProcessed(state.iterations() * MixedSize());
}
BENCHMARK(BM_WriteToDevNull)->Unit(benchmark::kMillisecond);

// The yardstick for both directions: copying the same number of bytes.
void BM_MemcpySameBytes(benchmark::State& state) {
    const std::size_t n = std::size_t(MixedSize());
    std::vector<char> src(n, 'x'), dst(n);
    for (auto _ : state) {
        std::memcpy(dst.data(), src.data(), n);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(n));
}
BENCHMARK(BM_MemcpySameBytes)->Unit(benchmark::kMillisecond);

// ---------------------------------------------------------------- Whirlpool

const std::vector<std::uint8_t>& OneMegabyte() {
    static const std::vector<std::uint8_t> data = [] {
        std::vector<std::uint8_t> d(1 << 20);
        for (std::size_t i = 0; i < d.size(); ++i) d[i] = std::uint8_t(i * 131 + (i >> 9));
        return d;
    }();
    return data;
}

void BM_WhirlpoolEngine(benchmark::State& state) {
    const auto variant = static_cast<kv::EWhirlpoolVariant>(state.range(0));
    const auto& data = OneMegabyte();
    for (auto _ : state) benchmark::DoNotOptimize(kv::TWhirlpool::Hash(variant, data.data(), data.size()));
    state.SetBytesProcessed(state.iterations() * std::int64_t(data.size()));
}
BENCHMARK(BM_WhirlpoolEngine)
    ->Arg(int(kv::EWhirlpoolVariant::Iso))
    ->Arg(int(kv::EWhirlpoolVariant::Whirlpool0))
    ->ArgName("variant");

void BM_WhirlpoolOpenSsl(benchmark::State& state) {
    static OSSL_PROVIDER* legacy = OSSL_PROVIDER_load(nullptr, "legacy");
    static OSSL_PROVIDER* deflt = OSSL_PROVIDER_load(nullptr, "default");
    EVP_MD* md = legacy && deflt ? EVP_MD_fetch(nullptr, "WHIRLPOOL", nullptr) : nullptr;
    if (!md) {
        state.SkipWithError("OpenSSL legacy provider (WHIRLPOOL) not available");
        return;
    }
    const auto& data = OneMegabyte();
    unsigned char out[EVP_MAX_MD_SIZE];
    unsigned int len = 0;
    for (auto _ : state) {
        EVP_Digest(data.data(), data.size(), out, &len, md, nullptr);
        benchmark::DoNotOptimize(out);
    }
    EVP_MD_free(md);
    state.SetBytesProcessed(state.iterations() * std::int64_t(data.size()));
}
BENCHMARK(BM_WhirlpoolOpenSsl);

// ---------------------------------------------------------------- names

// A client-file key is the configured key plus the header's key seed.
const std::string kKey = "configured-key+3F2A9C01";

kv::TBufReadFile& Names() {
    static kv::TBufReadFile reader = [] {
        const std::string path = TempPath("tessary-bench-names");
        {
            kv::TBufWriteFile w(path);
            const char* names[] = {"Jean-Luc", "Marie", "Dupont Holdings Inc.", "RRSP", "Th\xC3\xA9r\xC3\xA8se"};
            for (int i = 0; i < 1000; ++i) w.WriteEncryptStr(names[i % 5], kKey, true);
            w.Close();
        }
        kv::TBufReadFile r(path, true);
        std::remove(path.c_str());
        return r;
    }();
    return reader;
}

void BM_DecipherName(benchmark::State& state) {
    kv::TBufReadFile& r = Names();
    r.SetPosition(0);
    std::string s;
    for (auto _ : state) {
        if (r.Eof()) r.SetPosition(0);
        r.ReadEncryptStr(s, kKey, true);
        benchmark::DoNotOptimize(s.data());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DecipherName);

// The key derivation alone; the rest of a name's cost is AES, base-64 and copies.
void BM_KdfxOnly(benchmark::State& state) {
    const std::uint8_t salt[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const auto key = std::span(reinterpret_cast<const std::uint8_t*>(kKey.data()), kKey.size());
    for (auto _ : state) benchmark::DoNotOptimize(kv::KDFx(key, salt, 32, 1));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_KdfxOnly);

} // namespace
