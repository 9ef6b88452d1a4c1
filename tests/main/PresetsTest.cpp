#include <gtest/gtest.h>

#include <numeric>

#include "core/Allocation.h"
#include "core/Presets.h"
#include "core/Totals.h"

using namespace tessary;

TEST(Presets, BuiltInMixesTotalOneHundredAndFillOneRowPerHeldClass) {
    for (const TTargetPreset& p : BuiltInPresets()) {
        SCOPED_TRACE(p.Name);
        EXPECT_DOUBLE_EQ(std::accumulate(p.Percent.begin(), p.Percent.end(), 0.0), 100.0);
        TGrid g = MakeClassesGrid();
        g.SetRowCount(4);
        g.SetText(0, 2, "left over");
        ApplyPreset(p, g);
        const auto held = std::count_if(p.Percent.begin(), p.Percent.end(), [](double v) { return v != 0; });
        ASSERT_EQ(g.RowCount(), 1 + held);
        EXPECT_DOUBLE_EQ(ClassTotal(g), 100.0);
        // Rows carry their class codes, so a grid read back gives the same mix.
        EXPECT_EQ(PresetFromGrid(p.Name, g).Percent, p.Percent);
    }
}

TEST(Presets, GridRowsWithoutAClassAreLeftOutAndRepeatedClassesAdd) {
    TGrid g = MakeClassesGrid();
    g.SetRowCount(4);
    g.SetObject(0, 1, 3);
    g.SetFloat(1, 1, 20);
    g.SetText(0, 2, "typed by hand");   // no class code
    g.SetFloat(1, 2, 50);
    g.SetObject(0, 3, 3);
    g.SetFloat(1, 3, 15);
    const auto p = PresetFromGrid("x", g);
    EXPECT_EQ(p.Percent, (std::array<double, 6>{0, 0, 35, 0, 0, 0}));
}

TEST(Presets, StoredFormRoundTripsAndRejectsAnythingElse) {
    const TTargetPreset p{"Mine", {12.5, 0, 33.25, 4, 0.1, 50.15}};
    const auto back = DecodePreset("Mine", EncodePreset(p));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->Percent, p.Percent);
    for (const char* bad : {"", "1;2;3;4;5", "1;2;3;4;5;6;7", "1;2;3;4;5;x", "1;2;3;4;5;", "-1;2;3;4;5;6",
                            "1;2;3;4;5;101", "nan;0;0;0;0;0", "1 ;2;3;4;5;6"})
        EXPECT_FALSE(DecodePreset("b", bad)) << bad;
}
