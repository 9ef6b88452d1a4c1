#include "decl/KvModelFormat.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

using namespace kv;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

uint64_t Bits(double D) { return std::bit_cast<uint64_t>(D); }

TEST(decl_ModelFormat, WritesFloats)
{
    struct Case {
        double Value;
        const char* Text;
    };
    const Case Cases[] = {
        {1500, "1500"}, {250.5, "250.5"}, {0.1, "0.1"}, {-2.25, "-2.25"}, {1e-05, "1e-05"}, {1e20, "1e+20"},
        {123456, "123456"}, {0.0, "0"}, {-0.0, "-0"}, {kNaN, "nan"}, {-kNaN, "nan"}, {kInf, "inf"}, {-kInf, "-inf"},
    };
    for (const auto& C : Cases) {
        SCOPED_TRACE(C.Text);
        EXPECT_EQ(FloatToModelText(C.Value), C.Text);
    }
}

TEST(decl_ModelFormat, FloatRoundTripKeepsEveryBit)
{
    const double Values[] = {
        0.1,
        0.1 + 0.2,
        1.0 / 3,
        1e-05, -0.0, 1e23,
        9007199254740993.0, // 2^53 + 1 rounds to 2^53
        std::numeric_limits<double>::denorm_min(),
        -std::numeric_limits<double>::denorm_min(),
        std::numeric_limits<double>::min(),
        std::nextafter(std::numeric_limits<double>::min(), 0.0), // largest denormal
        std::numeric_limits<double>::max(),
        std::numeric_limits<double>::lowest(),
        kInf, -kInf,
    };
    for (double V : Values) {
        std::string Text = FloatToModelText(V);
        SCOPED_TRACE(Text);
        double Back = 12345;
        ASSERT_TRUE(TryModelTextToFloat(Text, Back));
        EXPECT_EQ(Bits(Back), Bits(V));
    }
    double Back = 0;
    ASSERT_TRUE(TryModelTextToFloat(FloatToModelText(kNaN), Back));
    EXPECT_TRUE(std::isnan(Back));
}

TEST(decl_ModelFormat, ReadsFloats)
{
    struct Case {
        const char* Text;
        double Value;
    };
    const Case Cases[] = {
        {"1500", 1500}, {"-2.5", -2.5}, {"1e-05", 1e-05}, {"1E20", 1e20}, {"1e+20", 1e20}, {"1.5E-3", 1.5e-3},
        {".5", 0.5}, {"5.", 5}, {"007", 7}, {"inf", kInf}, {"-inf", -kInf}, {"INF", kInf}, {"Infinity", kInf},
        {"4.94065645841247E-324", std::numeric_limits<double>::denorm_min()},
    };
    for (const auto& C : Cases) {
        SCOPED_TRACE(C.Text);
        double V = -99;
        ASSERT_TRUE(TryModelTextToFloat(C.Text, V));
        EXPECT_EQ(V, C.Value);
    }
    for (const char* T : {"nan", "NAN", "-nan", "nan(1)"}) {
        SCOPED_TRACE(T);
        double V = 0;
        ASSERT_TRUE(TryModelTextToFloat(T, V));
        EXPECT_TRUE(std::isnan(V));
    }
    double Z = 1;
    ASSERT_TRUE(TryModelTextToFloat("-0", Z));
    EXPECT_TRUE(std::signbit(Z));
}

TEST(decl_ModelFormat, RejectsFloatsOutsideTheFormat)
{
    const char* Cases[] = {
        "", " 1", "1 ", "\t1", "+1", "+inf", "1,5", "1 000", "1.5x", "0x10", "1e", "e5", "-", ".",
        "--1", "1..2", "nan ", "in", "1e400", "-1e400", "2e-324",
    };
    for (const char* T : Cases) {
        SCOPED_TRACE(T);
        double V = -7.5;
        EXPECT_FALSE(TryModelTextToFloat(T, V));
        EXPECT_EQ(V, -7.5) << "left unchanged on failure";
        EXPECT_EQ(ModelTextToFloatDef(T, 3), 3);
    }
    EXPECT_EQ(ModelTextToFloatDef("2.5", 3), 2.5);
    // A text that is only part of a longer buffer must not be read past its end.
    std::string Buf = "12345";
    double V = 0;
    ASSERT_TRUE(TryModelTextToFloat(std::string_view(Buf).substr(0, 2), V));
    EXPECT_EQ(V, 12);
}

TEST(decl_ModelFormat, ReadsAndRejectsIntegers)
{
    struct Case {
        const char* Text;
        bool Ok;
        int32_t Value;
    };
    const Case Cases[] = {
        {"0", true, 0}, {"-0", true, 0}, {"2024", true, 2024}, {"-1", true, -1}, {"007", true, 7},
        {"2147483647", true, 2147483647}, {"-2147483648", true, INT32_MIN}, {"", false, 0}, {"-", false, 0},
        {"+1", false, 0}, {" 1", false, 0}, {"1 ", false, 0}, {"1.0", false, 0}, {"1e3", false, 0},
        {"0x1", false, 0}, {"12a", false, 0}, {"2147483648", false, 0}, {"-2147483649", false, 0},
        {"99999999999999999999999", false, 0},
    };
    for (const auto& C : Cases) {
        SCOPED_TRACE(C.Text);
        int32_t V = 555;
        EXPECT_EQ(TryModelTextToInt(C.Text, V), C.Ok);
        EXPECT_EQ(V, C.Ok ? C.Value : 555);
        EXPECT_EQ(ModelTextToIntDef(C.Text, -1), C.Ok ? C.Value : -1);
    }
    for (int32_t V : {0, -1, 2024, INT32_MAX, INT32_MIN}) {
        int32_t Back = 1;
        ASSERT_TRUE(TryModelTextToInt(IntToModelText(V), Back));
        EXPECT_EQ(Back, V);
    }
}

TEST(decl_ModelFormat, LongJunkIsRejectedQuickly)
{
    std::string Digits(1 << 20, '9');
    int32_t I = 0;
    EXPECT_FALSE(TryModelTextToInt(Digits, I));
    double D = 0;
    EXPECT_FALSE(TryModelTextToFloat(Digits, D)) << "far beyond the double range";
    std::string Small = "0." + std::string(1 << 20, '0') + "1";
    EXPECT_FALSE(TryModelTextToFloat(Small, D)) << "underflows";
    std::string Long = "1." + std::string(1 << 20, '0') + "1";
    ASSERT_TRUE(TryModelTextToFloat(Long, D));
    EXPECT_EQ(D, 1.0);
}

} // namespace
