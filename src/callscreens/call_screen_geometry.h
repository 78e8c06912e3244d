// Where the call screens put the caller-information views, per screen and
// system generation, in points of the screen the view is added to. The
// host's own views sit at fixed places on these screens; the numbers keep
// ours clear of them. The larger phone screens (4.7" and 5.5") move the
// system's views in from the edges and down, so ours follow.
#pragma once

namespace zv::call_screen {

// Tags of the views the system adds, so that a later pass finds and reuses
// (or removes) them instead of adding a second one.
constexpr int kInfoViewTag = 10086;
constexpr int kOutgoingLabelTag = 10010;

// The information text view, on every screen: its font size, the space
// after each line, its inset, and the cap on its height (a taller text is
// cut there, with two points kept for the inset).
struct InfoViewStyle {
  static constexpr double kFontSize = 17;
  static constexpr double kLineSpacing = 6;
  static constexpr double kInsetTop = 4, kInsetSide = 2;
  static constexpr double kMaxHeight = 200;
  static constexpr double kFitSlack = 2;
  static constexpr double kTextWhite = 0.9;
};

// 7.x: the springboard's incoming-call screen, inside its top LCD view
// (320 points wide). The text goes under the caller's name; how far down
// depends on what the host shows there.
struct IncomingScreen7 {
  static constexpr double kX = 15;
  static constexpr double kWidth = 290;
  // Only the name: right under it.
  static constexpr double kYNameOnly = 59;
  // Name and a label or company, centred text: under the centred lines.
  static constexpr double kYCentred = 85;
  // Name and a label or company, left-aligned text.
  static constexpr double kYLeft = 69;
};

// 8.x: the in-call service's participants view.
struct ParticipantsView8 {
  // The information text view: full width less the side margins.
  static constexpr double kInfoX = 20;
  static constexpr double kInfoSideMargins = 40;
  // With the caller's picture the text starts higher, beside it.
  static constexpr double kInfoYWithImage = 118;
  static constexpr double kInfoYWithoutImage = 125;
  // Without the host's status label the text moves up into its place.
  static constexpr double kNoStatusLabelRise = 26;
  // The outgoing call's area label.
  static constexpr double kOutgoingX = 10;
  static constexpr double kOutgoingY = 134;
  static constexpr double kOutgoingSideMargins = 20;
  static constexpr double kOutgoingHeight = 20;
  // On the larger screens: right, down, and narrower by both insets.
  static constexpr double kLargerInsetX = 7;
  static constexpr double kLargerDropY = 14;
};

}  // namespace zv::call_screen
