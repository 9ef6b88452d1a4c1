#include "files/KvFnBufFile.h"

#include <cmath>
#include <functional>
#include <limits>
#include <set>

#include "KvErrors.h"
#include "files/KvAnsi.h"
#include "files/KvFnCipher.h"
#include "FilesTestUtil.h"

using namespace kv;
using namespace kvtest;

namespace {

class files_BufFile : public TempDirTest {
protected:
    // Runs the writes, returns the bytes on disk.
    // A new file per call unless a name is given: rewriting one file over and over
    // makes the file system force it to disk each time.
    Bytes Written(const std::function<void(TBufWriteFile&)>& write, std::string name = "") {
        if (name.empty()) name = "out" + std::to_string(++files_) + ".dat";
        {
            TBufWriteFile w(Path(name));
            write(w);
            w.Close();
        }
        return ReadBytes(Path(name));
    }
    int files_ = 0;
    TBufReadFile ReaderOver(const Bytes& bytes, const std::string& name = "in.dat") {
        WriteBytes(Path(name), bytes);
        return TBufReadFile(Path(name), true);
    }
};

struct PrimitiveCase {
    const char* name;
    std::function<void(TBufWriteFile&)> write;
    const char* hex;
    std::function<void(TBufReadFile&)> check;
};

TEST_F(files_BufFile, EveryPrimitiveHasItsExactBytesAndReadsBack) {
    const PrimitiveCase cases[] = {
        {"Byte", [](auto& w) { w.WriteByte(0xAB); }, "ab", [](auto& r) { EXPECT_EQ(r.ReadByte(), 0xAB); }},
        {"Boolean true", [](auto& w) { w.WriteBoolean(true); }, "01", [](auto& r) { EXPECT_TRUE(r.ReadBoolean()); }},
        {"Word", [](auto& w) { w.WriteWord(0x1234); }, "3412", [](auto& r) { EXPECT_EQ(r.ReadWord(), 0x1234); }},
        {"Int", [](auto& w) { w.WriteInt(-2); }, "feffffff", [](auto& r) { EXPECT_EQ(r.ReadInt(), -2); }},
        {"LongWord", [](auto& w) { w.WriteLongWord(0xDEADBEEF); }, "efbeadde",
         [](auto& r) { EXPECT_EQ(r.ReadLongWord(), 0xDEADBEEFu); }},
        {"Double", [](auto& w) { w.WriteDouble(1.5); }, "000000000000f83f",
         [](auto& r) { EXPECT_EQ(r.ReadDouble(), 1.5); }},
        {"DateTime", [](auto& w) { w.WriteDateTime(43831.75); }, "00000000f866e540",
         [](auto& r) { EXPECT_EQ(r.ReadDateTime(), 43831.75); }},
        {"Date late in the day", [](auto& w) { w.WriteDate(43831.99); }, "37ab0000",
         [](auto& r) { EXPECT_EQ(r.ReadDate(), 43831.0); }},
        {"Date negative", [](auto& w) { w.WriteDate(-1.5); }, "ffffffff",
         [](auto& r) { EXPECT_EQ(r.ReadDate(), -1.0); }},
        {"Date int32 edges", [](auto& w) { w.WriteDate(2147483647.9); w.WriteDate(-2147483648.9); },
         "ffffff7f00000080",
         [](auto& r) { EXPECT_EQ(r.ReadDate(), 2147483647.0); EXPECT_EQ(r.ReadDate(), -2147483648.0); }},
        {"Data", [](auto& w) { w.WriteData("\x01\x02\x03", 3); w.WriteData("zz", 0); w.WriteData("zz", -4); },
         "010203",
         [](auto& r) { std::uint8_t b[3]; r.ReadData(b, 3); EXPECT_EQ(ToHex(Bytes(b, b + 3)), "010203"); }},
        {"NumX 255", [](auto& w) { w.WriteNumX(255); }, "ffff0000", [](auto& r) { EXPECT_EQ(r.ReadNumX(), 255u); }},
        {"NumX 70000", [](auto& w) { w.WriteNumX(70000); }, "ff701101",
         [](auto& r) { EXPECT_EQ(r.ReadNumX(), 70000u); }},
        {"NumX top byte lost", [](auto& w) { w.WriteNumX(0x01234567); }, "ff674523",
         [](auto& r) { EXPECT_EQ(r.ReadNumX(), 0x234567u); }},
        {"Str code page", [](auto& w) { w.WriteStr("\xE2\x82\xAC" "uro\xC3\xA9"); }, "050000008075726fe9",
         [](auto& r) { EXPECT_EQ(r.ReadStr(), "\xE2\x82\xAC" "uro\xC3\xA9"); }},
        {"Str with unmappable", [](auto& w) { w.WriteStr("a\xE4\xB8\xAD" "b"); }, "03000000613f62",
         [](auto& r) { EXPECT_EQ(r.ReadStr(), "a?b"); }},
        {"ShortStr", [](auto& w) { w.WriteShortStr(""); w.WriteShortStr("Hi"); }, "00024869",
         [](auto& r) { EXPECT_EQ(r.ReadShortStr(), ""); EXPECT_EQ(r.ReadShortStr(), "Hi"); }},
        {"StrX", [](auto& w) { w.WriteStrX("abc"); w.WriteStrX(""); }, "0361626300",
         [](auto& r) { EXPECT_EQ(r.ReadStrX(), "abc"); EXPECT_EQ(r.ReadStrX(), ""); }},
        {"StringsX", [](auto& w) { w.WriteStringsX(std::vector<std::string>{"a", "", "b\xC3\xA9"}); },
         "0301610002 62e9",
         [](auto& r) { EXPECT_EQ(r.ReadStringsX(), (std::vector<std::string>{"a", "", "b\xC3\xA9"})); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::string hex = c.hex;
        std::erase(hex, ' ');
        const Bytes bytes = Written(c.write);
        EXPECT_EQ(ToHex(bytes), hex);
        TBufReadFile r = ReaderOver(bytes);
        c.check(r);
        EXPECT_TRUE(r.Eof());
        EXPECT_EQ(r.Position(), r.Size());
    }
}

struct RawReadCase {
    const char* name;
    const char* hex;
    std::function<void(TBufReadFile&)> check;
    std::int32_t endPosition;
};

TEST_F(files_BufFile, StoredFormsReadAsTheFormatSays) {
    const RawReadCase cases[] = {
        {"Str count -5 reads empty, consumes the count only", "fbffffff 41", [](auto& r) { EXPECT_EQ(r.ReadStr(), ""); }, 4},
        {"zero byte in the middle cuts the text, not the position", "04000000 61 00 62 63 07",
         [](auto& r) { EXPECT_EQ(r.ReadStr(), "a"); EXPECT_EQ(r.ReadByte(), 7); }, 9},
        {"ShortStr with a zero byte", "03 00 41 42", [](auto& r) { EXPECT_EQ(r.ReadShortStr(), ""); }, 4},
        {"StrX long count", "ff 03 00 00 78 79 7a", [](auto& r) { EXPECT_EQ(r.ReadStrX(), "xyz"); }, 7},
        {"Boolean: any non-zero is true", "00 02 ff",
         [](auto& r) { EXPECT_FALSE(r.ReadBoolean()); EXPECT_TRUE(r.ReadBoolean()); EXPECT_TRUE(r.ReadBoolean()); }, 3},
        {"undefined code page bytes", "05000000 81 8d 8f 90 9d",
         [](auto& r) { EXPECT_EQ(r.ReadStr(), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D"); }, 9},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TBufReadFile r = TBufReadFile::FromBytes(FromHex(c.hex), "mem");
        c.check(r);
        EXPECT_EQ(r.Position(), c.endPosition);
    }
}

TEST_F(files_BufFile, LongTextsAreCutOrClampedAsTheFormatSays) {
    const std::string text300(300, 'q');
    std::vector<std::string> many(5, "m");
    const Bytes bytes = Written([&](TBufWriteFile& w) {
        w.WriteShortStr(text300);
        w.WriteShortStr(std::string(254, 'a') + "\xC3\xA9" + "zz"); // the cut falls after the converted byte
        w.WriteStrX(text300);
    });
    ASSERT_EQ(bytes.size(), 1 + 255 + 1 + 255 + 4 + 300u);
    EXPECT_EQ(bytes[0], 255);
    EXPECT_EQ(ToHex(Bytes(bytes.begin() + 512, bytes.begin() + 516)), "ff2c0100");
    TBufReadFile r = ReaderOver(bytes);
    EXPECT_EQ(r.ReadShortStr(), std::string(255, 'q'));
    EXPECT_EQ(r.ReadShortStr(), std::string(254, 'a') + "\xC3\xA9");
    EXPECT_EQ(r.ReadStrX(), text300);
    EXPECT_TRUE(r.Eof());
}

TEST_F(files_BufFile, WriteDateRejectsWhatAnIntCannotHold) {
    TBufWriteFile w(Path("d.dat"));
    for (double bad : {std::nan(""), double(INFINITY), -double(INFINITY), 2147483648.0, -2147483649.0, 1e300}) {
        EXPECT_THROW(w.WriteDate(bad), EKvError) << bad;
    }
    EXPECT_EQ(w.Position(), 0);
}

TEST_F(files_BufFile, BlocksAndTextsLargerThanTheBufferArriveIntact) {
    Bytes big(300000);
    for (std::size_t i = 0; i < big.size(); ++i) big[i] = std::uint8_t(i * 7);
    std::string longText(250000, 'x');
    for (std::size_t i = 0; i < longText.size(); i += 1000) longText[i] = 'y';
    const Bytes bytes = Written([&](TBufWriteFile& w) {
        w.WriteInt(11);
        w.WriteData(big.data(), std::int32_t(big.size()));
        w.WriteData(std::string(102000, 'p').data(), 102000);
        w.WriteStr(longText); // straddles several flushes
        w.WriteInt(22);
    });
    TBufReadFile r = ReaderOver(bytes);
    EXPECT_EQ(r.ReadInt(), 11);
    Bytes back(big.size());
    r.ReadData(back.data(), std::int32_t(back.size()));
    EXPECT_EQ(back, big);
    r.SetPosition(r.Position() + 102000);
    EXPECT_EQ(r.ReadStr(), longText);
    EXPECT_EQ(r.ReadInt(), 22);
    EXPECT_TRUE(r.Eof());
}

// Small files and large ones (which take another kind of buffer) read back whole,
// also after the reader was moved.
TEST_F(files_BufFile, FilesOfEverySizeReadBackByteForByte) {
    constexpr std::size_t kMiB = std::size_t(1) << 20;
    for (std::size_t size : {std::size_t(0), std::size_t(4095), 4 * kMiB - 1, 4 * kMiB, 6 * kMiB + 12345}) {
        SCOPED_TRACE(size);
        Bytes bytes(size);
        for (std::size_t i = 0; i < size; ++i) bytes[i] = std::uint8_t((i * 2654435761u) >> 13);
        TBufReadFile r = ReaderOver(bytes, "size" + std::to_string(size) + ".dat");
        TBufReadFile moved = std::move(r);
        ASSERT_EQ(moved.Size(), std::int64_t(size));
        Bytes back(size);
        if (size) moved.ReadData(back.data(), std::int32_t(size));
        EXPECT_TRUE(back == bytes);
        EXPECT_TRUE(moved.Eof());
    }
}

TEST_F(files_BufFile, WriterCanGoBackToPatchACount) {
    const Bytes bytes = Written([](TBufWriteFile& w) {
        w.WriteStr("head");
        const std::int64_t countAt = w.Position();
        w.WriteInt(0);
        for (int i = 0; i < 3; ++i) w.WriteDouble(i);
        const std::int64_t end = w.Position();
        EXPECT_EQ(end, 8 + 4 + 24);
        w.SetPosition(countAt);
        EXPECT_EQ(w.Position(), countAt);
        w.WriteInt(3);
        w.SetPosition(end);
        w.WriteByte(0xEE);
    });
    TBufReadFile r = ReaderOver(bytes);
    EXPECT_EQ(r.ReadStr(), "head");
    ASSERT_EQ(r.ReadInt(), 3);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(r.ReadDouble(), i);
    EXPECT_EQ(r.ReadByte(), 0xEE);
    EXPECT_TRUE(r.Eof());
}

TEST_F(files_BufFile, ReaderPositionMovesFreelyAndOutOfRangeReadsThrow) {
    TBufReadFile r = TBufReadFile::FromBytes({1, 2, 3, 4, 5, 6, 7, 8}, "pos.dat");
    r.SetPosition(4);
    EXPECT_EQ(r.ReadInt(), 0x08070605);
    EXPECT_TRUE(r.Eof());
    r.SetPosition(1);
    EXPECT_FALSE(r.Eof());
    EXPECT_EQ(r.ReadWord(), 0x0302);
    for (std::int32_t pos : {-1, 5, 8, std::numeric_limits<std::int32_t>::max()}) {
        r.SetPosition(pos);
        EXPECT_THROW(r.ReadDouble(), EReadError) << pos;
        EXPECT_EQ(r.Position(), pos) << "a failed read must not move";
    }
    r.SetPosition(9);
    EXPECT_TRUE(r.Eof());
}

TEST_F(files_BufFile, TruncationMessageNamesFileAndOffset) {
    TBufReadFile r = TBufReadFile::FromBytes({1, 2, 3}, "/data/client/Models.dat");
    r.ReadByte();
    try {
        r.ReadInt();
        FAIL() << "no error";
    } catch (const EReadError& e) {
        EXPECT_STREQ(e.what(), "Unexpected end of file /data/client/Models.dat at offset 1");
    }
}

struct BogusCountCase {
    const char* name;
    const char* hex;
    std::function<void(TBufReadFile&)> read;
};

TEST_F(files_BufFile, BogusCountsFailBeforeAllocating) {
    const BogusCountCase cases[] = {
        {"Str", "ffffff7f 41", [](auto& r) { r.ReadStr(); }},
        {"Str one short", "05000000 41424344", [](auto& r) { r.ReadStr(); }},
        {"ShortStr", "ff 41", [](auto& r) { r.ReadShortStr(); }},
        {"StrX", "ffffffff 41", [](auto& r) { r.ReadStrX(); }},
        {"StringsX count", "ffffffff 00 00", [](auto& r) { r.ReadStringsX(); }},
        {"StringsX count just too large", "03 00 00", [](auto& r) { r.ReadStringsX(); }},
        {"EncryptStr", "ffffff7f", [](auto& r) { r.ReadEncryptStr("k", false); }},
        {"Data", "0102", [](auto& r) { char b[3]; r.ReadData(b, 3); }},
        {"NumX tail", "ff 01", [](auto& r) { r.ReadNumX(); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TBufReadFile r = TBufReadFile::FromBytes(FromHex(c.hex), "bogus.dat");
        EXPECT_THROW(c.read(r), EReadError);
    }
    // A failed StringsX leaves the caller's array alone.
    TBufReadFile r = TBufReadFile::FromBytes(FromHex("02 01 61 05 62"), "bogus.dat");
    std::vector<std::string> a{"keep"};
    EXPECT_THROW(r.ReadStringsX(a), EReadError);
    EXPECT_EQ(a, std::vector<std::string>{"keep"});
}

// Every prefix of a file of mixed primitives: each read either succeeds with the
// value the whole file gives or throws EReadError; the first failure ends the run.
TEST_F(files_BufFile, EveryTruncationOfAMixedFileFailsCleanly) {
    std::vector<std::string> list{"one", "", "thr\xC3\xA9" "e"};
    const Bytes full = Written([&](TBufWriteFile& w) {
        w.WriteByte(1); w.WriteBoolean(true); w.WriteWord(2); w.WriteInt(-3); w.WriteLongWord(4); w.WriteDouble(5.5);
        w.WriteDateTime(6.25); w.WriteDate(7); w.WriteChar(u'c'); w.WriteChar(u'd'); w.WriteNumX(70000);
        w.WriteStr("str\xE2\x82\xAC"); w.WriteShortStr("short"); w.WriteStrX("x"); w.WriteStringsX(list);
        w.WriteStr("pchar"); w.WriteEncryptStr("secret name", "key", true); w.WriteData("\x09\x08", 2);
    });
    using Result = std::vector<std::string>;
    auto readAll = [](TBufReadFile& r, Result& out) {
        auto add = [&](auto v) { out.push_back(std::to_string(v)); };
        add(r.ReadByte()); add(r.ReadBoolean()); add(r.ReadWord()); add(r.ReadInt()); add(r.ReadLongWord());
        add(r.ReadDouble()); add(r.ReadDateTime()); add(r.ReadDate()); add(int(r.ReadChar())); add(r.ReadNumX());
        out.push_back(r.ReadStr()); out.push_back(r.ReadShortStr()); out.push_back(r.ReadStrX());
        for (auto& s : r.ReadStringsX()) out.push_back(s);
        std::unique_ptr<char[]> p;
        r.ReadPChar(p);
        out.push_back(p.get());
        out.push_back(r.ReadEncryptStr("key", true));
        char d[2];
        r.ReadData(d, 2);
        out.push_back(std::string(d, 2));
    };
    Result expected;
    {
        TBufReadFile r = ReaderOver(full);
        readAll(r, expected);
        EXPECT_TRUE(r.Eof());
    }
    ASSERT_EQ(expected.size(), 19u);
    EXPECT_EQ(expected[17], "secret name");
    for (std::size_t len = 0; len < full.size(); ++len) {
        TBufReadFile r = TBufReadFile::FromBytes(Bytes(full.begin(), full.begin() + std::ptrdiff_t(len)), "cut");
        Result got;
        EXPECT_THROW(readAll(r, got), EReadError) << "length " << len;
        ASSERT_LT(got.size(), expected.size());
        EXPECT_TRUE(std::equal(got.begin(), got.end(), expected.begin())) << "length " << len;
    }
}

TEST_F(files_BufFile, FileErrorsNameThePathAndTheSystemReason) {
    const struct {
        const char* name;
        std::function<void()> run;
        std::string path;
        const char* reason;
    } cases[] = {
        {"missing file", [&] { TBufReadFile r(Path("missing.dat"), true); }, Path("missing.dat"),
         "No such file or directory"},
        {"directory", [&] { TBufReadFile r(dir_.string(), false); }, dir_.string(), "Is a directory"},
        {"full disk on Close", [] { TBufWriteFile w("/dev/full"); w.WriteInt(1); w.Close(); }, "/dev/full",
         "No space left on device"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        try {
            c.run();
            ADD_FAILURE() << "no error";
        } catch (const EInOutError& e) {
            const std::string msg = e.what();
            EXPECT_NE(msg.find(c.path), std::string::npos) << msg;
            EXPECT_NE(msg.find(c.reason), std::string::npos) << msg;
        }
    }
}

TEST_F(files_BufFile, DestructorSwallowsAFailedFlush) {
    EXPECT_NO_THROW({
        TBufWriteFile w("/dev/full");
        w.WriteStr("lost");
    });
}

TEST_F(files_BufFile, WriterTruncatesAnExistingFile) {
    WriteBytes(Path("old.dat"), Bytes(1000, 1));
    const Bytes b = Written([](TBufWriteFile& w) { w.WriteByte(2); }, "old.dat");
    EXPECT_EQ(ToHex(b), "02");
}

TEST_F(files_BufFile, ReaderOpensAReadOnlyFileEvenWhenNotAskedToBeReadOnly) {
    WriteBytes(Path("ro.dat"), {1, 0, 0, 0});
    std::filesystem::permissions(Path("ro.dat"), std::filesystem::perms::owner_read);
    TBufReadFile r(Path("ro.dat"), false);
    EXPECT_EQ(r.ReadInt(), 1);
    EXPECT_EQ(r.FileName(), Path("ro.dat"));
}

// ------------------------------------------------------------ enciphered texts

std::string DecipherStored(const Bytes& file, const std::string& key) {
    TBufReadFile r = TBufReadFile::FromBytes(file, "enc");
    return AnsiToUtf8(DecipherBytes(r.ReadStr(), Utf8ToAnsi(key)));
}

TEST_F(files_BufFile, PaddedShortTextCarriesRandomPaddingBelowItsLimit) {
    std::set<std::size_t> lengths;
    for (int i = 0; i < 100; ++i) {
        const Bytes file = Written([](TBufWriteFile& w) { w.WriteEncryptStr("abc", "key", true); });
        const std::string plain = DecipherStored(file, "key");
        ASSERT_EQ(plain.substr(0, 4), "abc|");
        const std::string pad = plain.substr(4);
        EXPECT_GE(pad.size(), 10u);
        EXPECT_LE(pad.size(), 69u);
        for (char ch : pad) EXPECT_LT(std::uint8_t(ch), 60) << plain;
        lengths.insert(pad.size());

        TBufReadFile r = TBufReadFile::FromBytes(file, "enc");
        EXPECT_EQ(r.ReadEncryptStr("key", true), "abc");
        EXPECT_TRUE(r.Eof());
    }
    EXPECT_GT(lengths.size(), 10u) << "padding length does not vary";
}

TEST_F(files_BufFile, PaddingRuleByCharacterCount) {
    const struct {
        const char* name;
        std::string text;
        bool pad;
        std::size_t minExtra, maxExtra; // bytes added after the text in its 1252 form
    } cases[] = {
        {"empty text: ten code-0 characters", "", true, 11, 11},
        {"ten characters (two bytes each in UTF-8) are padded", "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9"
                                                               "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9", true, 11, 210},
        {"eleven characters are not", "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9"
                                      "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9", true, 0, 0},
        {"no pad asked", "abc", false, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Bytes file = Written([&](TBufWriteFile& w) { w.WriteEncryptStr(c.text, "k", c.pad); });
        TBufReadFile r = TBufReadFile::FromBytes(file, "enc");
        const std::string plainAnsi = DecipherBytes(r.ReadStr(), "k");
        const std::string textAnsi = Utf8ToAnsi(c.text);
        ASSERT_EQ(plainAnsi.substr(0, textAnsi.size()), textAnsi);
        const std::size_t extra = plainAnsi.size() - textAnsi.size();
        EXPECT_GE(extra, c.minExtra);
        EXPECT_LE(extra, c.maxExtra);
        if (c.text.empty()) {
            EXPECT_EQ(plainAnsi, std::string("|") + std::string(10, '\0'));
        }
        TBufReadFile again = TBufReadFile::FromBytes(file, "enc");
        EXPECT_EQ(again.ReadEncryptStr("k", true), c.text);
    }
}

TEST_F(files_BufFile, StripCutsAnyBarEvenInUnpaddedText) {
    const std::string text = "Smith | Jones & Partners";
    const Bytes file = Written([&](TBufWriteFile& w) { w.WriteEncryptStr(text, "k", true); });
    EXPECT_EQ(DecipherStored(file, "k"), text); // 11+ characters: stored unpadded
    TBufReadFile r = TBufReadFile::FromBytes(file, "enc");
    EXPECT_EQ(r.ReadEncryptStr("k", true), "Smith ");
    r.SetPosition(0);
    EXPECT_EQ(r.ReadEncryptStr("k", false), text);
}

TEST_F(files_BufFile, WrongKeyIsInvalidDataAfterTheTextIsConsumed) {
    const Bytes file = Written([](TBufWriteFile& w) { w.WriteEncryptStr("abc", "right", true); w.WriteByte(9); });
    TBufReadFile r = TBufReadFile::FromBytes(file, "enc");
    std::string s = "unchanged";
    EXPECT_THROW(r.ReadEncryptStr(s, "wrong", true), EInvalidData);
    EXPECT_EQ(s, "unchanged");
    EXPECT_EQ(r.ReadByte(), 9);
}

TEST_F(files_BufFile, ReadsTheReferenceTextsWithTheirUtf8Keys) {
    for (const auto& v : Vectors("enciphered")) {
        SCOPED_TRACE(v.at("note").get<std::string>());
        const std::string b64 = v.at("base64");
        const Bytes file = Written([&](TBufWriteFile& w) { w.WriteStr(b64); });
        TBufReadFile r = TBufReadFile::FromBytes(file, "ref");
        EXPECT_EQ(r.ReadEncryptStr(v.at("key_text").get<std::string>(), false), AnsiToUtf8(HexStr(v.at("plaintext_hex"))));
    }
}

} // namespace
