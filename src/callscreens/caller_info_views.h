// CallerInfoViews: the caller's area and contact details on the call
// screens of the springboard (7.x) and the in-call service (8.x). It joins
// the caller's area to the host's labels (the incoming screen's label, a
// call's "more" label, the in-call participants' status labels, missed-call
// and message banners), puts the user's carrier name in the status bar,
// and adds the information text view (area, number and contact details) or
// the outgoing call's area label to the call screen, where
// call_screen_geometry.h places them.
//
// Every joiner answers the host's label unchanged when its feature is off,
// the area is unknown or an object is missing. The host is reached only
// through IncomingCallHost. Main thread only; made as a shared object (the
// text views it adds keep it as their layout delegate).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "callscreens/call_status.h"
#include "callscreens/incoming_call_host.h"
#include "platform/runtime/object.h"
#include "platform/ui/image.h"
#include "platform/ui/text_view.h"
#include "platform/value.h"

namespace zv {

class ZVIncomingCallSettings;
class ZVAreaLoader;
class ZVAddressBook;
class ZVCallHistory;

class CallerInfoViews : public std::enable_shared_from_this<CallerInfoViews>,
                        public ui::LayoutManagerDelegate {
 public:
  // `settings` must not be null; a missing service shows nothing of its own.
  CallerInfoViews(std::shared_ptr<ZVIncomingCallSettings> settings,
                  std::shared_ptr<ZVAreaLoader> area,
                  std::shared_ptr<ZVAddressBook> addressBook,
                  std::shared_ptr<ZVCallHistory> callHistory);
  CallerInfoViews(const CallerInfoViews&) = delete;
  CallerInfoViews& operator=(const CallerInfoViews&) = delete;

  void setHost(std::shared_ptr<IncomingCallHost> host) {
    host_ = std::move(host);
  }

  // The label joiners: the host's label with the caller's area, or the label
  // unchanged when the feature is off or the area unknown.
  std::optional<std::string> areaIncomingCall(const rt::Id& screen,
                                              std::optional<std::string> label);
  std::optional<std::string> areaTUCall(const rt::Id& call,
                                        std::optional<std::string> label);
  std::optional<std::string> areaInCall(const rt::Id& call,
                                        std::optional<std::string> label);
  // Whether areaBulletin puts an area on this banner: the feature is on
  // and it is the Phone app's or Messages' banner.
  bool annotatesBulletin(const rt::Id& bulletin);
  // A missed-call or message banner's title, with the ring seconds saved
  // for the call when CallHistoryRingDuration is on.
  std::optional<std::string> areaBulletin(const rt::Id& bulletin,
                                          std::optional<std::string> title);
  // The user's carrier name in place of the operator's, when set.
  std::optional<std::string> updateCarrierName(std::optional<std::string> name);
  // A participant's status label (a text or an array of texts).
  Value areaParticipantsView(const rt::Id& participants, int32_t index,
                             Value label);

  // The 7.x incoming screen's information text view.
  void infoIncomingCall(const rt::Id& screen,
                        const std::optional<std::string>& companyName,
                        const std::optional<std::string>& label);
  // The 8.x call screen's information text view or outgoing area label.
  void infoInCall(const rt::Id& participants);
  // Takes both views off the participants of an audio call screen.
  void hideInfoInCall(const rt::Id& audioCall);
  // Takes both views off when the call of `notification` is past setting
  // up (see call_status.h).
  void callStatusChangedNotification(const rt::Id& notification,
                                     const rt::Id& participants);
  // Whether the participant shows a picture (the text moves beside it).
  void imageForParticipant(const ui::ImagePtr& image);
  // The call screen's call changed state: remembers its status while an
  // area is shown on the in-call screen.
  void callStateChanged(const rt::Id& call);
  // The call's screen went: forget its state.
  void deallocCall();

  int32_t curInCallStatus() const { return _curInCallStatus; }

  // The text view's layout manager delegate: the line spacing of
  // call_screen_geometry.h.
  double lineSpacingAfterGlyphAtIndex(size_t glyphIndex,
                                      const ui::Rect& proposedRect) override;

 private:
  // Area, number line and contact details of a caller, as the information
  // text view shows them; nullopt when there is nothing to show.
  std::optional<std::string> infoText(bool style,
                                      const std::optional<std::string>& number,
                                      int32_t recordId);
  std::optional<std::string> areaOf(const std::optional<std::string>& number,
                                    bool name, bool type);
  std::shared_ptr<ui::UITextView> makeInfoView(const ui::Font& font,
                                               const ui::Rect& frame);
  // Shows `text` in the information view `view` inside `parent`, made
  // there with `font` when null: aligned as asked, at `origin`, `width`
  // wide and as tall as its text within the cap.
  void showInfoView(ui::UIView& parent, std::shared_ptr<ui::UITextView> view,
                    const ui::Font& font, ui::Point origin, double width,
                    ui::TextAlignment alignment, const std::string& text);
  void removeInfoViews(const std::shared_ptr<ui::UIView>& participantsView);
  // What the settings put into the information views: the area for
  // incoming or outgoing calls there (style 1) and the contact details.
  struct InfoViewParts {
    bool incomingArea, outgoingArea, details;
    bool any() const { return incomingArea || outgoingArea || details; }
  };
  InfoViewParts infoViewParts() const;

  std::shared_ptr<IncomingCallHost> host_;
  std::shared_ptr<ZVIncomingCallSettings> _settings;
  std::shared_ptr<ZVAreaLoader> _area;
  std::shared_ptr<ZVAddressBook> _addressbook;
  std::shared_ptr<ZVCallHistory> _callhistory;
  // The in-call screen's state, as its notifications leave it.
  bool _isInCallFieldMode = false;
  bool _haveInCallLabel = true;
  bool _haveInCallImage = false;
  int32_t _curInCallStatus = kCallStatusNone;
};

}  // namespace zv
