// UIView of the UI model: a rectangle in its superview's coordinates with a
// tag, hidden flag, alpha, touch switch, corner radius, scale transform and
// subviews. Gestures (tap, long press, end of a touch) are delivered by
// perform(); views react to them through handlers added with onGesture().
//
// Every UI class is a runtime class of the current process ("UIView",
// "UILabel", ...), registered by registerClasses() or on first use through
// make<T>(); its key methods are runtime methods too, so hooks and runtime
// subclasses can replace them. The C++ members are what the runtime methods
// call; code that must see replacements sends the message instead.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/runtime/object.h"
#include "platform/ui/image.h"
#include "platform/ui/style_types.h"

namespace zv::ui {

enum class Gesture { Tap, LongPress, TouchEnded };

class Canvas;

class UIView : public rt::Object {
 public:
  static constexpr const char* kClassName = "UIView";
  explicit UIView(rt::Class* isa) : rt::Object(isa) {}

  const Rect& frame() const { return frame_; }
  virtual void setFrame(const Rect& frame) { frame_ = frame; }
  void setOrigin(double x, double y) { frame_.origin = {x, y}; }
  void setSize(double w, double h) { frame_.size = {w, h}; }
  Rect bounds() const { return Rect{{0, 0}, frame_.size}; }

  int tag() const { return tag_; }
  void setTag(int tag) { tag_ = tag; }
  bool isHidden() const { return hidden_; }
  void setHidden(bool hidden) { hidden_ = hidden; }
  double alpha() const { return alpha_; }
  void setAlpha(double alpha) { alpha_ = alpha; }
  bool userInteractionEnabled() const { return interaction_; }
  void setUserInteractionEnabled(bool on) { interaction_ = on; }
  double cornerRadius() const { return corner_radius_; }
  void setCornerRadius(double r) { corner_radius_ = r; }
  bool clipsToBounds() const { return clips_; }
  void setClipsToBounds(bool on) { clips_ = on; }
  // Uniform scale of the view's transform (1 = identity).
  double scale() const { return scale_; }
  void setScale(double s) { scale_ = s; }
  const std::optional<Color>& backgroundColor() const { return background_; }
  void setBackgroundColor(std::optional<Color> c) { background_ = c; }
  // A short text that names the view's state for assistive output (and for
  // the text dumps of the command line).
  const std::string& accessibilityLabel() const { return accessibility_; }
  void setAccessibilityLabel(std::string s) { accessibility_ = std::move(s); }
  // The layer's shadow (CALayer shadowColor, shadowOffset, shadowOpacity,
  // shadowRadius); none unless set.
  struct LayerShadow {
    Color color{0, 0, 0, 1};
    Size offset{0, 0};
    double opacity = 0, radius = 3;
    bool operator==(const LayerShadow&) const = default;
  };
  const std::optional<LayerShadow>& layerShadow() const { return shadow_; }
  void setLayerShadow(std::optional<LayerShadow> s) { shadow_ = s; }

  // Shown on screen: neither it nor an ancestor hidden, alpha above 0.01.
  bool isVisible() const;

  void addSubview(const std::shared_ptr<UIView>& view);
  void insertSubview(const std::shared_ptr<UIView>& view, size_t index);
  void removeFromSuperview();
  void bringSubviewToFront(const std::shared_ptr<UIView>& view);
  const std::vector<std::shared_ptr<UIView>>& subviews() const {
    return subviews_;
  }
  std::shared_ptr<UIView> superview() const { return superview_.lock(); }
  // The view itself or the first descendant (depth first, in subview order)
  // whose tag is `tag`.
  std::shared_ptr<UIView> viewWithTag(int tag);

  // Hit testing: the deepest view under `point` (in this view's bounds) that
  // is shown and takes touches, later subviews first since they are drawn on
  // top; nullptr when the point is outside this view or the view is hidden,
  // transparent or takes no touches. A subview's scale is about its centre.
  // Views that shift their content (scroll views) override childPoint().
  std::shared_ptr<UIView> hitTest(Point point);
  // `point` in this view's bounds, seen from `child`'s bounds.
  virtual Point childPoint(const UIView& child, Point point) const;

  // Resizes the view to fit its content; plain views keep their size.
  virtual void sizeToFit() {}
  // Places the subviews a view lays out itself (cells, bars, the window);
  // plain views leave them where they are.
  virtual void layoutSubviews() {}
  // Lays out this view and then its subviews, depth first.
  void layoutIfNeeded();
  // Draws the view's own content in its bounds, above its background and
  // below its subviews (drawRect:); plain views draw nothing.
  virtual void draw(Canvas& canvas) const { (void)canvas; }

  // Gestures: handlers run in the order added; perform() does nothing for a
  // view that takes no touches. Controls (buttons, table cells) also act on
  // a tap themselves, as a finger on them would.
  using GestureHandler = std::function<void(UIView&)>;
  void onGesture(Gesture g, GestureHandler handler);
  virtual bool perform(Gesture g);

  // Animations run to their end at once; the completion still runs.
  static void animate(double duration, const std::function<void()>& changes,
                      const std::function<void()>& completion = nullptr);

  std::shared_ptr<UIView> sharedView() {
    return std::static_pointer_cast<UIView>(shared_from_this());
  }

 private:
  Rect frame_;
  int tag_ = 0;
  bool hidden_ = false;
  double alpha_ = 1;
  bool interaction_ = true;
  double corner_radius_ = 0;
  bool clips_ = false;
  double scale_ = 1;
  std::optional<Color> background_;
  std::string accessibility_;
  std::optional<LayerShadow> shadow_;
  std::vector<std::shared_ptr<UIView>> subviews_;
  std::weak_ptr<UIView> superview_;
  std::vector<std::pair<Gesture, GestureHandler>> gestures_;
};

// Registers the UI classes and their runtime methods in `runtime` (a no-op
// when they are there already).
void registerClasses(rt::Runtime& runtime);
// The runtime class `name` of the current process, registering the UI
// classes first when needed.
rt::Class* uiClass(const char* name);

// A new instance of UI class T (its runtime class is T::kClassName).
template <typename T, typename... Args>
std::shared_ptr<T> make(Args&&... args) {
  return rt::create<T>(uiClass(T::kClassName), std::forward<Args>(args)...);
}
// A new instance of C++ type T with a runtime subclass `cls` (host classes).
template <typename T>
std::shared_ptr<T> makeAs(rt::Class* cls) {
  return rt::create<T>(cls);
}

// The C++ object behind a runtime receiver; raises the platform exception
// when the receiver is not a T.
template <typename T>
T& self(const rt::Id& id) {
  T* t = dynamic_cast<T*>(id.get());
  if (!t)
    throw rt::Exception("NSInvalidArgumentException",
                        "receiver is not a " + std::string(T::kClassName));
  return *t;
}

}  // namespace zv::ui
