// Where the main window's controls sit: design pixels at 96 dpi before the
// zoom, for the window at its design size. Extra room after a resize is
// shared out by the window and the input panel (kAccountsWidthShare,
// kResultHeightShare).
#pragma once

#include <QRectF>

namespace tessary {

inline constexpr int kDesignWidth = 533;
// The chart under the result grid made the window taller than the original 460.
inline constexpr int kDesignHeight = 590;
inline constexpr double kDefaultZoom = 1.5;
// The window opens this much wider than its design, shared out as any extra
// width: the accounts grid then shows $99,999,999 in every amount column and
// $999,999,999 as a total without scrolling.
inline constexpr int kStartExtraWidth = 76;

namespace layout {

// Of the extra width, the accounts side takes this share, the classes side the rest.
inline constexpr double kAccountsWidthShare = 0.6;
// Of the extra height, the result grid takes this share, the chart the rest.
inline constexpr double kResultHeightShare = 0.4;

// Caption bar; the window buttons are placed inside kWindowButtons.
inline constexpr double kCaptionHeight = 26;
inline constexpr QRectF kAppIcon{7, 3, 20, 20};
inline constexpr QRectF kFileButton{33, 4, 36, 18};
// Switches between the allocation and the trades page.
inline constexpr QRectF kTradesButton{72, 4, 62, 18};
inline constexpr QRectF kCaptionTitle{140, 3, 306, 20};
inline constexpr QRectF kWindowButtons{452, 1, 81, 24};
inline constexpr QRectF kMinimizeButton{17, 2, 30, 20};
inline constexpr QRectF kQuitButton{48, 2, 30, 20};

// The input panel: both input grids with their buttons and totals.
inline constexpr QRectF kInputPanel{8, 36, 517, 194};
inline constexpr QRectF kAccountsGrid{8, 36, 321, 169};
inline constexpr QRectF kAddAccountRow{9, 208, 30, 20};
inline constexpr QRectF kDeleteAccountRow{44, 208, 30, 20};
inline constexpr QRectF kClearAccounts{79, 208, 30, 20};
// Its width is set at start-up from the zoom and the screen scale.
inline constexpr QRectF kImport{115, 208, 75, 22};
inline constexpr QRectF kAccountsTotal{200, 206, 129, 22};
inline constexpr QRectF kClassesGrid{335, 36, 190, 169};
inline constexpr QRectF kAddClassRow{335, 208, 30, 20};
inline constexpr QRectF kDeleteClassRow{369, 208, 30, 20};
inline constexpr QRectF kPresets{404, 208, 58, 20};
inline constexpr QRectF kClassesTotal{465, 206, 60, 22};

// Its left edge follows the classes grid's right edge.
inline constexpr QRectF kCalculate{440, 230, 85, 22};
// At least this wide; longer when its language makes the text longer.
inline constexpr QRectF kResultHeading{8, 232, 135, 18};
inline constexpr double kHeadingPadding = 4;
inline constexpr double kNoticesGap = 4;    // after the heading
inline constexpr double kNoticesEndGap = 6; // before Calculate
inline constexpr QRectF kResultGrid{8, 252, 517, 165};
inline constexpr QRectF kChart{8, 421, 517, 139};
inline constexpr QRectF kHelp{9, 565, 55, 20};
// The trades page covers everything under the caption bar but Help.
inline constexpr QRectF kTradesPage{8, 32, 517, 528};
inline constexpr QRectF kCornerGrip{512, 567, 21, 23};

} // namespace layout

} // namespace tessary
