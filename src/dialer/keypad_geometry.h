// Where the keypad search puts its views on the Phone app's keypad screen,
// per screen size and system: the result pager under the host's display,
// the result list over the keys, and the on/off button's top edge, in
// points from the top of the keypad view controller's view (full width).
// The rows follow the host's own keypad, whose display and keys sit
// differently on each screen; before 7.1 the host's display is shorter, so
// the pager and list start higher.
#pragma once

#include <iterator>

namespace zv {

struct KeypadGeometry {
  double pagerTop, pagerHeight, listTop, listHeight, buttonTop;
};

// The screens the host lays out on its own; kOtherScreen is any other.
enum KeypadScreen {
  k35InchScreen,
  k4InchScreen,
  k47InchScreen,
  k55InchScreen,
  kOtherScreen
};

// Indexed by KeypadScreen.
inline constexpr KeypadGeometry kKeypadScreens[] = {
    // pager top, height; list top, height; on/off button top
    {12, 70, 75, 290, 20},    // 3.5 inch
    {21, 80, 89, 335, 20},    // 4 inch
    {45, 80, 142, 356, 20},   // 4.7 inch
    {55, 100, 170, 380, 25},  // 5.5 inch
    // Any other screen: a short list under the display.
    {16, 80, 89, 80, 20},
};
static_assert(std::size(kKeypadScreens) == kOtherScreen + 1);

// The on/off button, at the left edge.
inline constexpr double kOnOffButtonWidth = 70, kOnOffButtonHeight = 35;

// Before 7.1: the pager's top, and the list's top on 3.5-inch and other
// screens.
inline constexpr double kPre71PagerTop = 20;
inline constexpr double kPre71ListTop35 = 87;
inline constexpr double kPre71ListTop = 98;

// The geometry of the current device (core/device.h's screen tests).
KeypadGeometry keypadGeometry();

}  // namespace zv
