#include "tools/zorvel/screens/scenes.h"

#include <cctype>

#include "dialer/keypad_list_view.h"
#include "hosts/springboard/controlcenter.h"
#include "platform/ui/sheets.h"

namespace zv::cli {
namespace {

const ui::Color kKeyGrey{0.9, 0.9, 0.92, 1};
const ui::Color kBlack{0, 0, 0, 1};
const ui::Color kWhite{1, 1, 1, 1};

std::string capitalised(std::string s) {
  if (!s.empty()) s[0] = static_cast<char>(std::toupper(s[0]));
  return s;
}

// The keypad's twelve keys and the call button, below the display.
void paintPad(const ui::UIView& view, render::Canvas& canvas) {
  static const char* letters[] = {"",     "ABC", "DEF",  "GHI", "JKL", "MNO",
                                  "PQRS", "TUV", "WXYZ", "",    "+",   ""};
  const auto keys = padKeys(view.frame().size);
  for (size_t i = 0; i < 12; ++i) {
    const ui::Rect& r = keys[i].rect;
    const double x = r.origin.x, y = r.origin.y, d = r.size.width;
    canvas.fill(r, kKeyGrey, d / 2);
    canvas.text({{x, y + d * 0.12}, {d, d * 0.5}}, std::string(1, keys[i].key),
                {"HelveticaNeue-Thin", d * 0.42}, kBlack,
                ui::TextAlignment::Center);
    canvas.text({{x, y + d * 0.58}, {d, d * 0.22}}, letters[i],
                {"Helvetica-Bold", d * 0.13}, kBlack,
                ui::TextAlignment::Center);
  }
  const ui::Rect& call = keys[12].rect;
  canvas.fill(call, {0.3, 0.85, 0.39, 1}, call.size.width / 2);
  canvas.text(call, "Call", {"Helvetica-Bold", 15}, kWhite,
              ui::TextAlignment::Center);
}

render::Painters& painters() {
  static render::Painters table = {
      {hosts::PhoneDialerView::kClassName, paintPad},
      // The result list covers the keypad under it.
      {ZVKeypadListView::kClassName,
       [](const ui::UIView& v, render::Canvas& canvas) {
         canvas.fill({{0, 0}, v.frame().size}, kWhite);
       }},
      {hosts::PhoneLCDView::kClassName,
       [](const ui::UIView& v, render::Canvas& canvas) {
         const auto& lcd = static_cast<const hosts::PhoneLCDView&>(v);
         canvas.text({{10, 20}, {v.frame().size.width - 20, 60}}, lcd.number,
                     {"HelveticaNeue-Light", 36}, kBlack,
                     ui::TextAlignment::Center);
       }},
      {hosts::PhoneNameLabelView::kClassName,
       [](const ui::UIView& v, render::Canvas& canvas) {
         const auto& l = static_cast<const hosts::PhoneNameLabelView&>(v);
         std::string text = l.name.empty() || l.label.empty()
                                ? l.name + l.label
                                : l.name + "  " + l.label;
         canvas.text({{10, 0}, v.frame().size}, text, {"Helvetica", 15}, kBlack,
                     ui::TextAlignment::Center);
       }},
      {hosts::ControlCenterButton::kClassName,
       [](const ui::UIView& v, render::Canvas& canvas) {
         const auto& b = static_cast<const hosts::ControlCenterButton&>(v);
         const auto size = v.frame().size;
         canvas.fill({{0, 0}, size},
                     b.selected ? kWhite : ui::Color{0.25, 0.25, 0.27, 1},
                     size.width / 2);
         const ui::ImagePtr& glyph =
             b.selected && b.selectedGlyph ? b.selectedGlyph : b.glyph;
         if (glyph && !glyph->empty()) {
           auto g = glyph->size();
           const double k = std::min(
               {1.0, size.width * 0.7 / g.width, size.height * 0.7 / g.height});
           g = {g.width * k, g.height * k};
           canvas.image(
               {{(size.width - g.width) / 2, (size.height - g.height) / 2}, g},
               *glyph);
         } else {
           canvas.text({{0, 0}, size}, b.name.substr(0, 2),
                       {"Helvetica-Bold", 14}, b.selected ? kBlack : kWhite,
                       ui::TextAlignment::Center);
         }
       }},
  };
  return table;
}

std::string carrierOf(platform::SimProcess& process) {
  std::string carrier = "Carrier";
  for (const auto& e : process.world().events())
    if (e.kind == "carrier") carrier = e.detail;
  return carrier;
}

render::Scene base(const platform::DeviceFacts& device,
                   const std::string& carrier,
                   std::shared_ptr<const platform::Alert> alert) {
  render::Scene s;
  s.points = device.screenPoints;
  s.scale = device.screenScale;
  s.carrier = carrier;
  s.painters = &painters();
  s.alert = std::move(alert);
  s.sheet = ui::UIActionSheet::presented();
  return s;
}
render::Scene base(platform::SimProcess& process) {
  return base(process.device(), carrierOf(process), process.openAlert());
}

// The controller on top of `root`, and the navigation controller it sits in.
std::pair<std::shared_ptr<ui::UIViewController>,
          std::shared_ptr<ui::UINavigationController>>
topOf(std::shared_ptr<ui::UIViewController> vc) {
  std::shared_ptr<ui::UINavigationController> nav;
  for (int guard = 0; vc && guard < 32; ++guard) {
    if (auto p = vc->presentedViewController()) {
      vc = p;
    } else if (auto n =
                   std::dynamic_pointer_cast<ui::UINavigationController>(vc)) {
      nav = n;
      if (!n->topViewController()) break;
      vc = n->topViewController();
    } else if (auto t = std::dynamic_pointer_cast<ui::UITabBarController>(vc)) {
      if (!t->selectedViewController()) break;
      vc = t->selectedViewController();
    } else {
      break;
    }
  }
  return {vc, nav};
}

void showTop(render::Scene& s,
             const std::shared_ptr<ui::UIViewController>& root) {
  auto [vc, nav] = topOf(root);
  if (!vc) return;
  auto view = vc->view();
  const bool unplaced =
      view->frame().size.width <= 0 || view->frame().size.height <= 0;
  // A controller's view the host left without a frame fills the screen, below
  // the navigation bar when there is one.
  if (unplaced && nav)
    s.layers.push_back(
        {view, ui::Rect{{0, 64}, {s.points.width, s.points.height - 64}}});
  else
    s.layers.push_back({view, std::nullopt});
  if (nav) {
    auto item = vc->navigationItem();
    render::NavigationBar bar;
    bar.title = item->title.empty() ? vc->title : item->title;
    if (item->leftBarButtonItem)
      bar.left = item->leftBarButtonItem->title;
    else if (nav->viewControllers().size() > 1)
      bar.left = "< Back";
    if (item->rightBarButtonItem) bar.right = item->rightBarButtonItem->title;
    s.navigationBar = bar;
  }
}

}  // namespace

std::vector<PadKey> padKeys(platform::Size size) {
  static const char keys[] = "123456789*0#";
  const double w = size.width, h = size.height;
  const double d = std::min(78.0, (h - 150 - 49 - 20) / 5.4);
  const double gap = d * 0.3, top = 150;
  const double left = (w - 3 * d - 2 * gap) / 2;
  std::vector<PadKey> out;
  for (int i = 0; i < 12; ++i)
    out.push_back(
        {keys[i],
         {{left + (i % 3) * (d + gap), top + (i / 3) * (d + gap * 0.6)},
          {d, d}}});
  out.push_back({kCallKey, {{(w - d) / 2, top + 4 * (d + gap * 0.6)}, {d, d}}});
  return out;
}

render::Scene phoneScene(platform::SimProcess& process,
                         hosts::PhoneApplication& app) {
  return phoneScene(process.device(), carrierOf(process), process.openAlert(),
                    app);
}

render::Scene phoneScene(const platform::DeviceFacts& device,
                         const std::string& carrier,
                         std::shared_ptr<const platform::Alert> alert,
                         hosts::PhoneApplication& app) {
  render::Scene s = base(device, carrier, std::move(alert));
  if (app.inCall && app.inCall->isShown()) {
    s.background = {0.1, 0.1, 0.12, 1};
    s.layers.push_back({app.inCall->view(), std::nullopt});
    return s;
  }
  showTop(s, app.tabBar);
  render::TabBar tabs;
  for (int i = 0; i < 5; ++i)
    tabs.titles.push_back(capitalised(hosts::PhoneApplication::tabName(i)));
  tabs.selected = app.tabBar->selectedIndex();
  s.tabBar = tabs;
  return s;
}

render::Scene contactsScene(platform::SimProcess& process,
                            hosts::ContactsApplication& app) {
  render::Scene s = base(process);
  showTop(s, app.navigation);
  return s;
}

render::Scene messagesScene(platform::SimProcess& process,
                            hosts::MessagesApplication& app) {
  render::Scene s = base(process);
  showTop(s, app.navigation);
  return s;
}

render::Scene controlCenterScene(platform::SimProcess& process,
                                 hosts::SpringBoardApplication& app) {
  render::Scene s = base(process);
  s.background = {0.2, 0.35, 0.55, 1};  // the home screen's wallpaper
  auto cc = app.controlCenter;
  if (!cc || !cc->presented) return s;
  const double w = s.points.width, h = s.points.height;
  auto panel = ui::make<ui::UIView>();
  panel->setFrame({{0, h - 330}, {w, 330}});
  panel->setBackgroundColor(ui::Color{0.1, 0.1, 0.12, 0.85});
  s.layers.push_back({panel, std::nullopt});
  auto row = [&](const std::vector<std::shared_ptr<hosts::ControlCenterButton>>&
                     buttons,
                 double y) {
    const double d = 56, n = std::max<size_t>(buttons.size(), 1);
    const double gap = (w - n * d) / (n + 1);
    for (size_t i = 0; i < buttons.size(); ++i)
      if (buttons[i] && !buttons[i]->isHidden())
        s.layers.push_back(
            {buttons[i], ui::Rect{{gap + i * (d + gap), y}, {d, d}}});
  };
  row(cc->settings->buttons, h - 310);
  row(cc->quickLaunch->buttons, h - 110);
  return s;
}

render::Scene callScene(platform::SimProcess& process,
                        hosts::CallScreenHost& host) {
  render::Scene s = base(process);
  s.background = {0.12, 0.14, 0.2, 1};
  const double w = s.points.width;
  auto screen = ui::make<ui::UIView>();
  screen->setFrame({{0, 0}, s.points});
  auto add = [&](const std::string& text, double y, double size,
                 const char* font) {
    auto l = ui::make<ui::UILabel>();
    l->setFrame({{10, y}, {w - 20, size * 1.3}});
    l->setText(text);
    l->setFont({font, size});
    l->setTextColor(kWhite);
    l->setTextAlignment(ui::TextAlignment::Center);
    screen->addSubview(l);
  };
  if (auto text = host.screenText()) {
    // What the host's screen shows, in its order: the caller, the status
    // line(s), the caller-information lines and the labels the extension
    // added (the outgoing area label among them).
    double y = 60;
    add(text->name, y, 32, "HelveticaNeue-Light");
    y += 46;
    for (const auto& line : text->labelLines) {
      add(line, y, 17, "Helvetica");
      y += 24;
    }
    for (const auto& line : text->infoLines) {
      add(line, y, 15, "Helvetica");
      y += 20;
    }
    for (const auto& line : text->extraLabels) {
      add(line, y, 15, "Helvetica");
      y += 20;
    }
    add(text->declineButton ? "Decline        Answer" : "slide to answer",
        s.points.height - 90, 20, "HelveticaNeue-Light");
  } else {
    add("9:41", 60, 64, "HelveticaNeue-Thin");
  }
  s.layers.push_back({screen, std::nullopt});
  return s;
}

}  // namespace zv::cli
