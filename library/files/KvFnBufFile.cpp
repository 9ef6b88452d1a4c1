#include "files/KvFnBufFile.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <exception>
#include <cstdlib>
#include <limits>
#include <new>
#include <random>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "KvErrors.h"
#include "files/KvAnsi.h"
#include "files/KvFnCipher.h"

namespace kv {

namespace {

constexpr std::uint32_t kMaxCountX = 0xFFFFFF;

std::string OsText(int err) { return std::error_code(err, std::generic_category()).message(); }

[[noreturn]] void ThrowFile(const char* what, const std::string& path, int err) {
    throw EInOutError(std::string(what) + " \"" + path + "\": " + OsText(err));
}

// Closes a descriptor left open by an exception.
struct TFdGuard {
    int fd;
    ~TFdGuard() {
        if (fd >= 0) ::close(fd);
    }
};

// Padding needs no cryptographic quality, only variety; a draw keeps no state
// between calls.
std::uint32_t RandomBelow(std::uint32_t m) {
    if (m == 0) return 0;
    std::random_device device;
    return std::uniform_int_distribution<std::uint32_t>(0, m - 1)(device);
}

constexpr std::size_t kHugePage = std::size_t(2) << 20;

// Large files go into huge pages where the system offers them: faulting a
// fresh buffer in 4 KiB at a time cost several times the read itself.
std::unique_ptr<std::uint8_t[], TBufReadFile::TFreeBytes> AllocateFileBuffer(std::size_t size) {
    using TBuffer = std::unique_ptr<std::uint8_t[], TBufReadFile::TFreeBytes>;
    if (size >= 2 * kHugePage) {
        if (void* p = ::operator new[](size, std::align_val_t(kHugePage), std::nothrow)) {
#ifdef MADV_HUGEPAGE
            ::madvise(p, size, MADV_HUGEPAGE);
#endif
            return TBuffer(static_cast<std::uint8_t*>(p), TBufReadFile::TFreeBytes{true});
        }
    }
    return TBuffer(static_cast<std::uint8_t*>(::operator new[](size)), TBufReadFile::TFreeBytes{false});
}

} // namespace

// ---------------------------------------------------------------- reader

void TBufReadFile::TFreeBytes::operator()(std::uint8_t* p) const noexcept {
    if (hugeAligned)
        ::operator delete[](p, std::align_val_t(kHugePage));
    else
        ::operator delete[](p);
}

TBufReadFile::TBufReadFile(const std::string& fileName, bool /*readOnly*/)
    : TBufReadFile(fileName, std::numeric_limits<std::uint64_t>::max()) {}

TBufReadFile TBufReadFile::Prefix(const std::string& fileName, std::uint64_t maxBytes) {
    return TBufReadFile(fileName, maxBytes);
}

TBufReadFile::TBufReadFile(const std::string& fileName, std::uint64_t maxBytes) : fileName_(fileName) {
    // Without O_NONBLOCK, opening a FIFO waits for a writer that may never
    // come; regular files ignore the flag.
    TFdGuard guard{::open(fileName.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
    if (guard.fd < 0) ThrowFile("Cannot open file", fileName, errno);
    struct stat st;
    if (::fstat(guard.fd, &st) != 0) ThrowFile("Cannot get the size of file", fileName, errno);
    // A device or pipe has no size to trust and may never end.
    if (S_ISDIR(st.st_mode)) ThrowFile("Cannot read file", fileName, EISDIR);
    if (!S_ISREG(st.st_mode)) throw EInOutError("Cannot read file \"" + fileName + "\": it is not a regular file");
    fileSize_ = st.st_size;
    const std::uint64_t wanted =
        std::min<std::uint64_t>(std::uint64_t(std::max<std::int64_t>(st.st_size, 0)), maxBytes);
    if (wanted >= (std::uint64_t(1) << 31)) throw EInOutError("File \"" + fileName + "\" is too large (2 GiB or more)");

    const std::size_t size = static_cast<std::size_t>(wanted);
    fileData_ = AllocateFileBuffer(size);
    std::size_t done = 0;
    while (done < size) {
        const ssize_t r = ::read(guard.fd, fileData_.get() + done, size - done);
        if (r < 0) {
            if (errno == EINTR) continue;
            ThrowFile("Cannot read file", fileName, errno);
        }
        if (r == 0) throw EInOutError("Cannot read file \"" + fileName + "\": it became shorter while being read");
        done += static_cast<std::size_t>(r);
    }
    const int fd = guard.fd;
    guard.fd = -1;
    if (::close(fd) != 0 && errno != EINTR) ThrowFile("Cannot close file", fileName, errno);
    data_ = fileData_.get();
    size_ = static_cast<std::int32_t>(size);
    StartBudget();
}

TBufReadFile TBufReadFile::FromBytes(std::vector<std::uint8_t> bytes, std::string name) {
    if (bytes.size() >= (std::size_t(1) << 31)) throw EInOutError("File \"" + name + "\" is too large (2 GiB or more)");
    TBufReadFile r;
    r.fileName_ = std::move(name);
    r.memData_ = std::move(bytes);
    r.data_ = r.memData_.data();
    r.size_ = static_cast<std::int32_t>(r.memData_.size());
    r.fileSize_ = r.size_;
    r.StartBudget();
    return r;
}

void TBufReadFile::StartBudget() noexcept {
    // The copy of the file is the first thing charged.
    budget_ = MemoryFactor * std::uint64_t(size_) + MemorySlack - std::uint64_t(size_);
}

void TBufReadFile::ThrowBudget() const {
    throw EMemoryBudget("File \"" + fileName_ + "\" is damaged: its counts call for more memory than " +
                        std::to_string(MemoryFactor) + " times its size");
}

TBufReadFile::TBufReadFile(TBufReadFile&& other) noexcept { *this = std::move(other); }

TBufReadFile& TBufReadFile::operator=(TBufReadFile&& other) noexcept {
    if (this != &other) {
        fileName_ = std::move(other.fileName_);
        fileData_ = std::move(other.fileData_);
        memData_ = std::move(other.memData_);
        data_ = other.data_;
        pos_ = other.pos_;
        size_ = other.size_;
        fileSize_ = other.fileSize_;
        budget_ = other.budget_;
        other.data_ = nullptr;
        other.pos_ = 0;
        other.size_ = 0;
        other.fileSize_ = 0;
        other.budget_ = 0;
    }
    return *this;
}

TBufReadFile::~TBufReadFile() = default;

void TBufReadFile::ThrowEnd() const {
    throw EReadError("Unexpected end of file " + fileName_ + " at offset " + std::to_string(pos_));
}

const char* TBufReadFile::Take(std::uint64_t n) {
    const std::uint64_t p = static_cast<std::uint32_t>(pos_);
    if (p + n > static_cast<std::uint64_t>(size_)) ThrowEnd();
    pos_ = static_cast<std::int32_t>(p + n);
    return reinterpret_cast<const char*>(data_ + p);
}

void TBufReadFile::ReadData(void* dest, std::int32_t count) {
    if (count <= 0) return;
    std::memcpy(dest, Take(std::uint64_t(count)), std::size_t(count));
}

std::uint32_t TBufReadFile::ReadNumX() {
    const std::uint8_t b = Fixed<std::uint8_t>();
    if (b != 0xFF) return b;
    const auto* p = reinterpret_cast<const std::uint8_t*>(Take(3));
    return std::uint32_t(p[0]) | (std::uint32_t(p[1]) << 8) | (std::uint32_t(p[2]) << 16);
}

// Kept out of line: inlined behind ReadShortStr, where the count is known to be
// below 256, GCC copies the text with "rep movsq", several times slower than the
// library memcpy for names of a few bytes.
[[gnu::noinline]] void TBufReadFile::ReadText(std::int64_t n, std::string& s) {
    if (n <= 0) {
        s.clear();
        return;
    }
    // Checked before anything is allocated, so a bogus count costs nothing.
    const char* p = Take(std::uint64_t(n));
    // Most texts are plain ASCII without a zero byte: one pass settles it.
    if (AsciiPrefixLength(p, std::size_t(n), true) == std::size_t(n)) {
        s.assign(p, std::size_t(n));
    } else {
        const void* zero = std::memchr(p, 0, std::size_t(n));
        const std::size_t len = zero ? std::size_t(static_cast<const char*>(zero) - p) : std::size_t(n);
        AnsiToUtf8(p, len, s);
    }
    ChargeText(s);
}

void TBufReadFile::ChargeText(const std::string& s) {
    // Short texts live inside the string object, which its owner has charged.
    if (s.capacity() > kInlineText) Charge(s.capacity() + 1);
}

void TBufReadFile::ReadStr(std::string& s) { ReadText(ReadInt(), s); }

void TBufReadFile::ReadShortStr(std::string& s) { ReadText(ReadByte(), s); }

void TBufReadFile::ReadStrX(std::string& s) { ReadText(ReadNumX(), s); }

void TBufReadFile::ReadStringsX(std::vector<std::string>& a) {
    const std::uint32_t n = ReadNumX();
    // Every item takes at least its one-byte count.
    if (std::int64_t(n) > std::int64_t(size_) - pos_) ThrowEnd();
    ChargeEach(n, sizeof(std::string));
    std::vector<std::string> items(n);
    for (auto& item : items) ReadStrX(item);
    a = std::move(items);
}

void TBufReadFile::ReadPChar(std::unique_ptr<char[]>& p) {
    const std::int32_t n = ReadInt();
    if (n <= 0) return;
    const char* src = Take(std::uint64_t(n));
    Charge(std::uint64_t(n) + 1);
    auto copy = std::make_unique_for_overwrite<char[]>(std::size_t(n) + 1);
    std::memcpy(copy.get(), src, std::size_t(n));
    copy[std::size_t(n)] = '\0';
    p = std::move(copy);
}

void TBufReadFile::ReadEncryptStr(std::string& s, const std::string& key, bool stripPadding) {
    // The stored text is base-64, so it is deciphered from the raw bytes; a
    // conversion to UTF-8 first would only change bytes the decoder skips anyway.
    const std::int32_t n = ReadInt();
    if (n > 0 && std::int64_t(n) > std::int64_t(size_) - pos_) ThrowEnd();
    if (n > 0 && std::size_t(n) > MaxEncipheredText)
        throw EKvError("Enciphered text of " + std::to_string(n) + " bytes at offset " + std::to_string(pos_ - 4) +
                       " of " + fileName_ + ": at most " + std::to_string(MaxEncipheredText >> 20) +
                       " MiB are accepted");
    std::string_view text;
    if (n > 0) {
        const char* p = Take(std::uint64_t(n));
        const void* zero = std::memchr(p, 0, std::size_t(n));
        text = std::string_view(p, zero ? std::size_t(static_cast<const char*>(zero) - p) : std::size_t(n));
    }
    std::string plain = AnsiToUtf8(DecipherBytes(text, Utf8ToAnsi(key)));
    if (stripPadding) {
        const std::size_t bar = plain.find('|');
        if (bar != std::string::npos) plain.resize(bar);
    }
    ChargeText(plain);
    s = std::move(plain);
}

// ---------------------------------------------------------------- writer

TBufWriteFile::TBufWriteFile(const std::string& fileName) : fileName_(fileName) {
    fd_ = ::open(fileName.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd_ < 0) ThrowFile("Cannot create file", fileName, errno);
}

TBufWriteFile::~TBufWriteFile() {
    if (fd_ < 0) return;
    try {
        Flash();
    } catch (...) {
        // A destructor must not throw; Close reports the failure to those who ask.
    }
    ::close(fd_);
}

void TBufWriteFile::ThrowIo(const char* what, int err) const { ThrowFile(what, fileName_, err); }

void TBufWriteFile::WriteAll(const void* src, std::size_t n) {
    if (fd_ < 0) ThrowIo("Cannot write file", EBADF);
    const auto* p = static_cast<const std::uint8_t*>(src);
    while (n > 0) {
        const ssize_t w = ::write(fd_, p, n);
        if (w < 0) {
            if (errno == EINTR) continue;
            ThrowIo("Cannot write file", errno);
        }
        p += w;
        n -= std::size_t(w);
        filePos_ += w;
    }
}

void TBufWriteFile::Flash() {
    if (count_ <= 0) return;
    const std::int32_t n = count_;
    // Dropped even when the write fails, so a second attempt does not repeat it.
    count_ = 0;
    WriteAll(buffer_, std::size_t(n));
}

void TBufWriteFile::Close() {
    if (fd_ < 0) return;
    std::exception_ptr failure;
    try {
        Flash();
    } catch (...) {
        failure = std::current_exception();
    }
    const int rc = ::close(fd_);
    const int err = errno;
    fd_ = -1;
    if (failure) std::rethrow_exception(failure);
    if (rc != 0 && err != EINTR) ThrowIo("Cannot close file", err);
}

void TBufWriteFile::SetPosition(std::int64_t pos) {
    Flash();
    if (fd_ < 0) ThrowIo("Cannot seek in file", EBADF);
    const off_t r = ::lseek(fd_, off_t(pos), SEEK_SET);
    if (r < 0) ThrowIo("Cannot seek in file", errno);
    filePos_ = r;
}

void TBufWriteFile::WriteData(const void* src, std::int32_t count) {
    if (count <= 0) return;
    if (count_ + count > FlushLimit) Flash();
    if (count > BufferSize) {
        WriteAll(src, std::size_t(count));
        return;
    }
    std::memcpy(buffer_ + count_, src, std::size_t(count));
    count_ += count;
}

void TBufWriteFile::WriteCharsSlow(const char* p, std::size_t n) {
    while (n > 0) {
        if (count_ + 1 > FlushLimit) Flash();
        const std::size_t take = std::min(n, std::size_t(FlushLimit - count_));
        std::memcpy(buffer_ + count_, p, take);
        count_ += std::int32_t(take);
        p += take;
        n -= take;
    }
}

void TBufWriteFile::WriteDate(double v) {
    if (!(v > -2147483649.0 && v < 2147483648.0)) {
        char text[64];
        std::snprintf(text, sizeof text, "%g", v);
        throw EKvError(std::string("Date value ") + text + " cannot be stored in file " + fileName_);
    }
    WriteInt(static_cast<std::int32_t>(v));
}

void TBufWriteFile::WriteChar(char16_t c) {
    const char b = char(CodePointToAnsi(c));
    WriteChars(&b, 1);
}

void TBufWriteFile::WriteNumX(std::uint32_t v) {
    if (v >= 0xFF) {
        WriteByte(0xFF);
        WriteByte(std::uint8_t(v));
        WriteByte(std::uint8_t(v >> 8));
        WriteByte(std::uint8_t(v >> 16));
    } else {
        WriteByte(std::uint8_t(v));
    }
}

void TBufWriteFile::WriteCounted(std::string_view ansi) {
    // Texts of 2 GiB do not occur; the count would not fit the format anyway.
    WriteInt(static_cast<std::int32_t>(ansi.size()));
    WriteChars(ansi.data(), ansi.size());
}

namespace {

// ASCII text is its own Windows-1252 form; only other text needs a converted copy.
struct TAnsiText {
    std::string converted;
    std::string_view bytes;

    explicit TAnsiText(std::string_view utf8) {
        if (AsciiPrefixLength(utf8.data(), utf8.size()) == utf8.size()) {
            bytes = utf8;
        } else {
            converted = Utf8ToAnsi(utf8);
            bytes = converted;
        }
    }
};

} // namespace

bool TBufWriteFile::TryWriteTextInPlace(std::string_view utf8, std::size_t countBytes, std::size_t maxLen) {
    // With this much room neither the count nor any byte of the text would flush.
    if (count_ + std::int64_t(countBytes + utf8.size()) > FlushLimit) return false;
    std::uint8_t* text = buffer_ + count_ + countBytes;
    const std::size_t n = std::min(maxLen, Utf8ToAnsi(utf8.data(), utf8.size(), reinterpret_cast<char*>(text)));
    if (countBytes == 1) {
        buffer_[count_] = std::uint8_t(n);
    } else {
        const std::int32_t le = bufdetail::FromLittleEndian(std::int32_t(n));
        std::memcpy(buffer_ + count_, &le, 4);
    }
    count_ += std::int32_t(countBytes + n);
    return true;
}

void TBufWriteFile::WriteStr(std::string_view s) {
    if (!TryWriteTextInPlace(s, 4, std::size_t(std::numeric_limits<std::int32_t>::max())))
        WriteCounted(TAnsiText(s).bytes);
}

void TBufWriteFile::WriteShortStr(std::string_view s) {
    if (TryWriteTextInPlace(s, 1, 255)) return;
    const TAnsiText t(s);
    const std::string_view a = t.bytes;
    const std::size_t n = std::min<std::size_t>(a.size(), 255);
    WriteByte(std::uint8_t(n));
    WriteChars(a.data(), n);
}

void TBufWriteFile::WriteStrX(std::string_view s) {
    const TAnsiText t(s);
    const std::string_view a = t.bytes;
    const std::size_t n = std::min<std::size_t>(a.size(), kMaxCountX);
    WriteNumX(std::uint32_t(n));
    WriteChars(a.data(), n);
}

void TBufWriteFile::WriteStringsX(std::span<const std::string> a) {
    WriteNumX(std::uint32_t(std::min<std::size_t>(a.size(), kMaxCountX)));
    for (const std::string& s : a) WriteStrX(s);
}

void TBufWriteFile::WriteEncryptStr(const std::string& s, const std::string& key, bool pad) {
    std::string plain = Utf8ToAnsi(s);
    if (pad) {
        const std::size_t length = Utf8Length(s);
        if (length < 11) {
            const std::uint32_t m = length * 20 >= 256 ? 255 : std::uint32_t(length * 20);
            const std::uint32_t count = RandomBelow(m) + 10;
            plain += '|';
            for (std::uint32_t i = 0; i < count; ++i) plain += char(CodePointToAnsi(RandomBelow(m)));
        }
    }
    WriteCounted(EncipherBytes(plain, Utf8ToAnsi(key)));
}

} // namespace kv
