// The only access to the planning library's binary files: flat little-endian
// streams of primitives with no tags and no padding. Texts are UTF-8 in memory
// and Windows-1252 on disk.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

namespace bufdetail {

template <class T>
inline T FromLittleEndian(T v) {
    if constexpr (std::endian::native == std::endian::big && sizeof(T) > 1) {
        using U = std::conditional_t<sizeof(T) == 2, std::uint16_t,
                                     std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>>;
        U u = std::bit_cast<U>(v);
        if constexpr (sizeof(T) == 2) u = __builtin_bswap16(u);
        if constexpr (sizeof(T) == 4) u = __builtin_bswap32(u);
        if constexpr (sizeof(T) == 8) u = __builtin_bswap64(u);
        return std::bit_cast<T>(u);
    } else {
        return v;
    }
}

} // namespace bufdetail

// Reads a whole file into memory at construction, then hands out values from the
// copy. Every read checks the bounds: running past the end throws EReadError.
class TBufReadFile {
public:
    // readOnly is accepted for the callers' sake only: a reader never writes, so
    // the file is always opened read-only (client folders may be read-only).
    explicit TBufReadFile(const std::string& fileName, bool readOnly = true);
    // A reader over bytes already in memory; name is used in error messages.
    static TBufReadFile FromBytes(std::vector<std::uint8_t> bytes, std::string name);
    // A reader over at most the first maxBytes of a file, however large the
    // file is; for readers that need only its first records.
    static TBufReadFile Prefix(const std::string& fileName, std::uint64_t maxBytes);

    TBufReadFile(TBufReadFile&& other) noexcept;
    TBufReadFile& operator=(TBufReadFile&& other) noexcept;
    TBufReadFile(const TBufReadFile&) = delete;
    TBufReadFile& operator=(const TBufReadFile&) = delete;
    ~TBufReadFile();

    // Named Eof rather than EOF, which the C library defines as a macro.
    bool Eof() const noexcept { return pos_ >= size_; }
    std::int32_t Position() const noexcept { return pos_; }
    // Moves anywhere without a check; a later read outside the data throws.
    void SetPosition(std::int32_t pos) noexcept { pos_ = pos; }
    std::int32_t Size() const noexcept { return size_; }
    // The size of the file on disk; more than Size for a prefix.
    std::int64_t FileSize() const noexcept { return fileSize_; }
    const std::string& FileName() const noexcept { return fileName_; }

    // What is built from a file may take at most MemoryFactor times its size
    // plus MemorySlack, its own copy included: a count read from a small file
    // must not make a large model. Readers charge each element at the size it
    // takes in memory before making it; the reader charges the texts it hands
    // out. Beyond the budget EMemoryBudget names the file.
    static constexpr std::uint64_t MemoryFactor = 16;
    static constexpr std::uint64_t MemorySlack = std::uint64_t(2) << 20;
    void Charge(std::uint64_t bytes) {
        if (bytes > budget_) [[unlikely]]
            ThrowBudget();
        budget_ -= bytes;
    }
    // count elements of each bytes, without overflow.
    void ChargeEach(std::uint64_t count, std::uint64_t each) {
        if (each != 0 && count > budget_ / each) [[unlikely]]
            ThrowBudget();
        budget_ -= count * each;
    }
    std::uint64_t MemoryLeft() const noexcept { return budget_; }
    // Room for n more elements read from this data, but never one block
    // larger than the data: an element may take many times its bytes, and a
    // count the bytes only just allow should cost growth as elements arrive.
    template <class V>
    void Reserve(V& v, std::size_t n) const {
        const std::size_t cap = static_cast<std::size_t>(size_ > 0 ? size_ : 0) / sizeof(typename V::value_type);
        v.reserve(v.size() + (n < cap ? n : cap));
    }

    // A count of 0 or less reads nothing.
    void ReadData(void* dest, std::int32_t count);

    void ReadByte(std::uint8_t& v) { v = Fixed<std::uint8_t>(); }
    void ReadBoolean(bool& v) { v = Fixed<std::uint8_t>() != 0; }
    void ReadWord(std::uint16_t& v) { v = Fixed<std::uint16_t>(); }
    void ReadInt(std::int32_t& v) { v = Fixed<std::int32_t>(); }
    void ReadLongWord(std::uint32_t& v) { v = Fixed<std::uint32_t>(); }
    void ReadDouble(double& v) { v = Fixed<double>(); }
    // Day count since 30 December 1899, time of day as the fraction.
    void ReadDateTime(double& v) { v = Fixed<double>(); }
    // A whole day count stored as Int.
    void ReadDate(double& v) { v = Fixed<std::int32_t>(); }
    // Two raw bytes (a UTF-16 code unit); WriteChar writes one. Deliberately asymmetric.
    void ReadChar(char16_t& v) { v = char16_t(Fixed<std::uint16_t>()); }
    void ReadNumX(std::uint32_t& v) { v = ReadNumX(); }
    void ReadStr(std::string& s);
    void ReadShortStr(std::string& s);
    void ReadStrX(std::string& s);
    void ReadStringsX(std::vector<std::string>& a);
    // Raw bytes plus a terminating zero. A count of 0 or less leaves p as it was.
    void ReadPChar(std::unique_ptr<char[]>& p);
    // Throws EInvalidData on a wrong key or damaged text; the position has then
    // already moved past the stored text and s is unchanged.
    void ReadEncryptStr(std::string& s, const std::string& key, bool stripPadding);

    std::uint8_t ReadByte() { return Fixed<std::uint8_t>(); }
    bool ReadBoolean() { return Fixed<std::uint8_t>() != 0; }
    std::uint16_t ReadWord() { return Fixed<std::uint16_t>(); }
    std::int32_t ReadInt() { return Fixed<std::int32_t>(); }
    std::uint32_t ReadLongWord() { return Fixed<std::uint32_t>(); }
    double ReadDouble() { return Fixed<double>(); }
    double ReadDateTime() { return Fixed<double>(); }
    double ReadDate() { return Fixed<std::int32_t>(); }
    char16_t ReadChar() { return char16_t(Fixed<std::uint16_t>()); }
    std::uint32_t ReadNumX();
    std::string ReadStr() {
        std::string s;
        ReadStr(s);
        return s;
    }
    std::string ReadShortStr() {
        std::string s;
        ReadShortStr(s);
        return s;
    }
    std::string ReadStrX() {
        std::string s;
        ReadStrX(s);
        return s;
    }
    std::vector<std::string> ReadStringsX() {
        std::vector<std::string> a;
        ReadStringsX(a);
        return a;
    }
    std::string ReadEncryptStr(const std::string& key, bool stripPadding) {
        std::string s;
        ReadEncryptStr(s, key, stripPadding);
        return s;
    }

    // Frees the buffer of a file read from disk, huge-page aligned or not.
    struct TFreeBytes {
        bool hugeAligned; // no initializer: GCC would then refuse a default unique_ptr in this class
        void operator()(std::uint8_t* p) const noexcept;
    };

private:
    TBufReadFile() = default;
    TBufReadFile(const std::string& fileName, std::uint64_t maxBytes);
    void StartBudget() noexcept;
    [[noreturn]] void ThrowBudget() const;

    template <class T>
    T Fixed() {
        // A negative position becomes >= 2^31 here and fails the test like any
        // other out-of-range one; the sum cannot wrap.
        const std::uint64_t p = static_cast<std::uint32_t>(pos_);
        if (p + sizeof(T) > static_cast<std::uint64_t>(size_)) [[unlikely]]
            ThrowEnd();
        T v;
        std::memcpy(&v, data_ + p, sizeof(T));
        pos_ = static_cast<std::int32_t>(p + sizeof(T));
        return bufdetail::FromLittleEndian(v);
    }
    // Checks that n bytes are left and returns where they start.
    const char* Take(std::uint64_t n);
    // n bytes of text, cut at the first zero byte among them; n <= 0 gives "".
    void ReadText(std::int64_t n, std::string& s);
    static constexpr std::size_t kInlineText = 15; // libstdc++'s short-string capacity
    void ChargeText(const std::string& s);
    [[noreturn]] void ThrowEnd() const;

    std::string fileName_;
    std::unique_ptr<std::uint8_t[], TFreeBytes> fileData_;
    std::vector<std::uint8_t> memData_;
    const std::uint8_t* data_ = nullptr;
    std::int32_t pos_ = 0;
    std::int32_t size_ = 0;
    std::int64_t fileSize_ = 0;
    std::uint64_t budget_ = 0;
};

// Collects values in a buffer inside the object and writes it to the file in
// blocks. The file stays open until Close or destruction.
class TBufWriteFile {
public:
    static constexpr std::int32_t BufferSize = 0x19000; // 102,400
    static constexpr std::int32_t FlushLimit = 0x18FFF; // a write that would pass this flushes first

    // Creates the file or truncates an existing one.
    explicit TBufWriteFile(const std::string& fileName);
    // Flushes and closes, swallowing errors; call Close to learn of them.
    ~TBufWriteFile();
    TBufWriteFile(const TBufWriteFile&) = delete;
    TBufWriteFile& operator=(const TBufWriteFile&) = delete;

    // Flushes: writes the waiting bytes ("Flash" is the library's own spelling).
    void Flash();
    // Flushes and closes; throws EInOutError when either fails. Idempotent.
    void Close();

    // Logical write position: the file's position plus the bytes waiting.
    std::int64_t Position() const noexcept { return filePos_ + count_; }
    // Flushes, then moves the file position, typically to patch an earlier count.
    void SetPosition(std::int64_t pos);
    const std::string& FileName() const noexcept { return fileName_; }

    // A count of 0 or less writes nothing. A block larger than the buffer is
    // written straight to the file after a flush.
    void WriteData(const void* src, std::int32_t count);
    void WriteByte(std::uint8_t v) { Fixed(v); }
    void WriteBoolean(bool v) { Fixed(std::uint8_t(v ? 1 : 0)); }
    void WriteWord(std::uint16_t v) { Fixed(v); }
    void WriteInt(std::int32_t v) { Fixed(v); }
    void WriteLongWord(std::uint32_t v) { Fixed(v); }
    void WriteDouble(double v) { Fixed(v); }
    void WriteDateTime(double v) { Fixed(v); }
    // Stores the day count truncated toward zero; throws EKvError when it is not
    // finite or does not fit a signed 32-bit number.
    void WriteDate(double v);
    // One byte: the character's Windows-1252 code, '?' when it has none.
    void WriteChar(char16_t c);
    void WriteNumX(std::uint32_t v);
    void WriteStr(std::string_view s);
    // Cut to 255 bytes without notice.
    void WriteShortStr(std::string_view s);
    // Count clamped to 16,777,215 bytes.
    void WriteStrX(std::string_view s);
    // The count is clamped to 16,777,215 but every item is written; readers of
    // such a list would stop early. Kept as the original format has it.
    void WriteStringsX(std::span<const std::string> a);
    // Pad: a text of fewer than 11 characters gets "|" and 10..(m+9) random
    // characters, which readers remove with stripPadding.
    void WriteEncryptStr(const std::string& s, const std::string& key, bool pad);

private:
    template <class T>
    void Fixed(T v) {
        if (count_ + std::int32_t(sizeof(T)) > FlushLimit) Flash();
        v = bufdetail::FromLittleEndian(v);
        std::memcpy(buffer_ + count_, &v, sizeof(T));
        count_ += std::int32_t(sizeof(T));
    }
    // Bytes emitted one character at a time: each byte flushes on its own when
    // the buffer is full, so a long text may straddle a flush.
    void WriteChars(const char* p, std::size_t n) {
        if (count_ + std::int64_t(n) <= FlushLimit) {
            std::memcpy(buffer_ + count_, p, n);
            count_ += std::int32_t(n);
        } else {
            WriteCharsSlow(p, n);
        }
    }
    void WriteCharsSlow(const char* p, std::size_t n);
    // Converts a text straight into the buffer behind room for its count when it
    // surely fits (its code-page form is never longer than the UTF-8 one); false
    // when it may not, leaving everything as it was.
    bool TryWriteTextInPlace(std::string_view utf8, std::size_t countBytes, std::size_t maxLen);
    void WriteCounted(std::string_view ansi); // Int count, then the bytes
    void WriteAll(const void* p, std::size_t n);
    [[noreturn]] void ThrowIo(const char* what, int err) const;

    std::string fileName_;
    int fd_ = -1;
    std::int64_t filePos_ = 0;
    std::int32_t count_ = 0;
    std::uint8_t buffer_[BufferSize];
};

} // namespace kv
