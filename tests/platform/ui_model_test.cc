// The UI model: view tree, text measurement, labels, paging, tables,
// sheets, tab changes, text views. (Classes per process are the runtime's
// tests'.)
#include <gtest/gtest.h>

#include "platform/sim/sim_platform.h"
#include "platform/ui/button.h"
#include "platform/ui/sheets.h"
#include "platform/ui/table_view.h"
#include "platform/ui/text_metrics.h"
#include "platform/ui/text_view.h"
#include "platform/ui/view_controller.h"
#include "platform/ui/window.h"
#include "support/sim_fixture.h"

namespace zv::ui {
namespace {

class UIModelTest : public testing::SimTest {
 protected:
  platform::SimProcess& proc_ = world_.launch("com.apple.mobilephone");
  platform::Process::Scope scope_{proc_.context()};
};

// A view with the given frame and tag, added to `parent` when one is given.
template <typename V = UIView>
std::shared_ptr<V> view(const std::shared_ptr<UIView>& parent, Rect frame,
                        int tag = 0) {
  auto v = make<V>();
  v->setFrame(frame);
  v->setTag(tag);
  if (parent) parent->addSubview(v);
  return v;
}

// A table of `rows` rows "row N" whose cells are reused (`made` counts the
// new ones), recording the rows picked.
std::shared_ptr<UITableView> rowTable(size_t rows, std::vector<size_t>& picked,
                                      int& made) {
  auto table = make<UITableView>();
  table->numberOfRows = [rows] { return rows; };
  table->cellForRow = [&made](UITableView& t, size_t row) {
    auto cell = t.dequeueReusableCellWithIdentifier("Cell");
    if (!cell) {
      cell = UITableViewCell::make(CellStyle::Subtitle, "Cell");
      ++made;
    }
    cell->textLabel()->setText("row " + std::to_string(row));
    return cell;
  };
  table->didSelectRow = [&picked](UITableView&, size_t row) {
    picked.push_back(row);
  };
  return table;
}

TEST_F(UIModelTest, ViewTreeFindsTagsDepthFirstAndVisibilityGatesTouches) {
  auto root = make<UIView>();
  auto a = view(root, {}, 7), b = view(root, {}, 9), deep = view(a, {}, 9);
  EXPECT_EQ(root->viewWithTag(9), deep);  // a's subtree comes before b
  EXPECT_EQ(root->viewWithTag(42), nullptr);
  EXPECT_EQ(rt::send<rt::Id>(root, "viewWithTag:", 7), a);

  EXPECT_TRUE(deep->isVisible());
  a->setHidden(true);
  EXPECT_FALSE(deep->isVisible());
  a->setHidden(false);
  a->setAlpha(0.01);
  EXPECT_FALSE(deep->isVisible());

  // A button reaches its targets only while it takes touches and shows.
  auto button = make<UIButton>();
  int taps = 0;
  button->addTarget(kTouchUpInside, [&](const rt::Id&) { ++taps; });
  EXPECT_TRUE(button->touch());
  button->setUserInteractionEnabled(false);
  EXPECT_FALSE(button->touch());
  button->setUserInteractionEnabled(true);
  button->setHidden(true);
  EXPECT_FALSE(button->touch());
  EXPECT_EQ(taps, 1);

  // Moving a view detaches it from its old parent.
  b->addSubview(deep);
  EXPECT_TRUE(a->subviews().empty());
  EXPECT_EQ(deep->superview(), b);
  deep->removeFromSuperview();
  EXPECT_EQ(root->viewWithTag(9), b);
}

TEST_F(UIModelTest, HitTestFindsTheTopmostTouchableViewUnderAPoint) {
  auto root = view(nullptr, {{0, 0}, {100, 100}});
  auto under = view(root, {{10, 10}, {50, 50}});
  auto over = view(root, {{30, 30}, {50, 50}});
  auto inner = view(over, {{5, 5}, {10, 10}});
  EXPECT_EQ(root->hitTest({40, 40}), inner);  // later sibling, deepest
  EXPECT_EQ(root->hitTest({50, 50}), over);
  EXPECT_EQ(root->hitTest({15, 15}), under);
  EXPECT_EQ(root->hitTest({95, 5}), root);
  EXPECT_EQ(root->hitTest({100, 5}), nullptr);  // right edge is outside
  over->setUserInteractionEnabled(false);       // takes its subtree along
  EXPECT_EQ(root->hitTest({40, 40}), under);
  under->setHidden(true);
  EXPECT_EQ(root->hitTest({40, 40}), root);
  over->setUserInteractionEnabled(true);
  over->setScale(0.5);  // about its centre (55, 55): now spans 42.5..67.5
  EXPECT_EQ(root->hitTest({40, 40}), root);
  EXPECT_EQ(root->hitTest({45, 45}), inner);

  auto scroll = view<UIScrollView>(nullptr, {{0, 0}, {100, 100}});
  auto row = view(scroll, {{0, 150}, {100, 20}});
  scroll->setContentOffset({0, 140});
  EXPECT_EQ(scroll->hitTest({50, 15}), row);
  EXPECT_EQ(scroll->hitTest({50, 5}), scroll);
}

// A window over a tab bar controller whose first tab is a navigation stack
// of two tables: a point on the screen finds the control under it, and a
// tap there does what a finger would.
TEST_F(UIModelTest, WindowTapsReachTheControlsUnderThePoint) {
  std::vector<size_t> first, second;
  int made = 0;
  auto table = [&made](std::vector<size_t>& picked) {
    auto vc = make<UIViewController>();
    auto t = rowTable(3, picked, made);
    t->reloadData();  // before it has a frame: rows have no width yet
    vc->setView(t);
    return vc;
  };
  auto nav = UINavigationController::make(table(first));
  nav->title = "contacts";
  nav->pushViewController(table(second), false);
  auto other = make<UIViewController>();
  other->title = "keypad";
  auto tabs = make<UITabBarController>();
  tabs->setViewControllers({nav, other});
  auto window = UIWindow::makeForScreen({320, 480});
  window->setRootViewController(tabs);
  window->layoutIfNeeded();

  // Rows sit under the navigation bar; the touch goes up from the view
  // hit to its cell (the responder chain), and the tap selects the row.
  auto cellAt = [&](Point p) -> std::shared_ptr<UIView> {
    for (auto v = window->hitTest(p); v; v = v->superview())
      if (std::dynamic_pointer_cast<UITableViewCell>(v)) return v;
    return nullptr;
  };
  auto hit = cellAt({100, 64 + 44 + 20});
  ASSERT_TRUE(hit);
  EXPECT_TRUE(hit->perform(Gesture::Tap));
  EXPECT_EQ(second, std::vector<size_t>{1});
  EXPECT_TRUE(first.empty());
  // The bars are on top of the content; the status bar takes no touch,
  // so the navigation bar under it does.
  EXPECT_EQ(window->hitTest({30, 40}), window->navigationBar()->leftButton());
  EXPECT_EQ(window->hitTest({300, 10}), window->navigationBar());
  // Back pops the stack; the next layout shows the first table.
  window->hitTest({30, 40})->perform(Gesture::Tap);
  EXPECT_EQ(nav->viewControllers().size(), 1u);
  window->layoutIfNeeded();
  cellAt({100, 64 + 10})->perform(Gesture::Tap);
  EXPECT_EQ(first, std::vector<size_t>{0});
  // The second tab's button selects it; the controllers hear it through
  // the runtime (where hooks see it), and no tab past the last is taken.
  std::vector<std::string> seen;
  for (const char* sel : {"viewWillAppear:", "viewWillDisappear:"})
    rt::hookMessage<void(bool)>(
        rt::getClass("UIViewController"), sel, [&, sel](const rt::Id& s, bool) {
          seen.push_back((s == nav ? "nav " : "other ") + std::string(sel));
        });
  auto tab = window->hitTest({240, 480 - 20});
  ASSERT_EQ(tab, window->tabBar()->buttons()[1]);
  tab->perform(Gesture::Tap);
  rt::send<void>(tabs, "setSelectedIndex:", 7);
  EXPECT_EQ(rt::send<int>(tabs, "selectedIndex"), 1);
  EXPECT_EQ(seen, (std::vector<std::string>{"nav viewWillDisappear:",
                                            "other viewWillAppear:"}));
}

TEST_F(UIModelTest, LabelSizesToTextAndShrinksWhenFittingWidth) {
  // An ideograph is as wide as the font is large; text grows with the font.
  const Font f{"Helvetica", 20};
  EXPECT_EQ(textWidth("", f), 0);
  EXPECT_DOUBLE_EQ(textWidth("张", f), 20);
  EXPECT_GT(textWidth("张三", f), textWidth("ab", f));
  EXPECT_GT(textWidth("12", Font{"Helvetica", 40}), textWidth("12", f));
  auto label = make<UILabel>();
  label->setFont({"Helvetica", 20});
  label->setText("13800138000");
  label->sizeToFit();
  EXPECT_EQ(label->frame().size,
            (Size{textWidth("13800138000", label->font()), 24}));
  label->setSize(50, 24);
  EXPECT_EQ(label->drawnFontSize(), 20);  // fitting off: cut, not shrunk
  EXPECT_TRUE(label->isTruncated());
  label->setAdjustsFontSizeToFitWidth(true);
  label->setMinimumScaleFactor(0.1);
  EXPECT_LT(label->drawnFontSize(), 20);
  EXPECT_FALSE(label->isTruncated());
  EXPECT_EQ(rt::send<std::string>(label, "text"), "13800138000");
}

TEST_F(UIModelTest, PagingScrollViewSnapsAndReportsDragAndStop) {
  auto scroll = view<UIScrollView>(nullptr, {{0, 0}, {100, 50}});
  scroll->setContentSize({300, 50});
  scroll->setPagingEnabled(true);
  scroll->setContentOffset({100, 0});
  std::vector<std::string> seen;
  scroll->willBeginDragging = [&](UIScrollView&) { seen.push_back("begin"); };
  scroll->didEndDecelerating = [&](UIScrollView& s) {
    seen.push_back("end@" + std::to_string(int(s.contentOffset().x)));
  };
  scroll->drag(70);   // more than half a page: snaps to the next
  scroll->drag(500);  // kept inside the content
  scroll->setContentOffset({100, 0});
  scroll->drag(-30);  // less than half: back where it was
  EXPECT_EQ(seen, (std::vector<std::string>{"begin", "end@200", "begin",
                                            "end@200", "begin", "end@100"}));
  scroll->setScrollEnabled(false);
  EXPECT_FALSE(scroll->drag(100));
}

TEST_F(UIModelTest, TableShowsVisibleRowsAndReusesCells) {
  int made = 0;
  std::vector<size_t> selected;
  auto table = rowTable(10, selected, made);
  table->setFrame({{0, 0}, {320, 120}});
  table->heightForRow = [](size_t) { return 50.0; };
  table->reloadData();
  ASSERT_EQ(table->visibleCells().size(), 3u);  // 0-50, 50-100, 100-150
  EXPECT_EQ(table->contentSize().height, 500);
  table->setContentOffset({0, 200});
  table->reloadData();
  EXPECT_EQ(made, 3);  // the three cells came back from the pool
  EXPECT_EQ(table->visibleCells().begin()->first, 4u);
  EXPECT_EQ(table->cellForRowAtIndex(4)->textLabel()->text(), "row 4");
  EXPECT_TRUE(table->selectRow(9));
  EXPECT_FALSE(table->selectRow(10));
  EXPECT_EQ(selected, std::vector<size_t>{9});
}

TEST_F(UIModelTest, SheetsAndAlertsHearOnePress) {
  auto view = make<UIView>();
  auto sheet = make<UIActionSheet>();
  sheet->addButtonWithTitle("Copy");
  sheet->setCancelButtonIndex(sheet->addButtonWithTitle("Cancel"));
  std::string heard;
  sheet->delegate = [&](UIActionSheet& s, int index) {
    heard += std::to_string(index) + (s.isVisible() ? " shown" : " gone");
  };
  EXPECT_EQ(UIActionSheet::presented(), nullptr);
  rt::send<void>(sheet, "showInView:", rt::Id(view));
  EXPECT_EQ(UIActionSheet::presented(), sheet);
  sheet->dismissWithClickedButtonIndex(1);
  EXPECT_EQ(UIActionSheet::presented(), nullptr);
  // The alert goes through the platform; its delegate hears one press.
  auto alert = make<UIAlertView>();
  alert->title = "T";
  alert->cancelButtonTitle = "Close";
  alert->otherButtonTitles = {"Report bug"};
  alert->delegate = [&](UIAlertView&, int i) {
    heard += ", alert " + std::to_string(i);
  };
  alert->show();
  UIPasteboard::setString("123");
  EXPECT_EQ(UIPasteboard::string(), "123");
  ASSERT_EQ(world_.events("alert").size(), 1u);
  EXPECT_EQ(world_.events("alert")[0].detail, "T |  | [Close] [Report bug]");
  proc_.pressAlertButton(1);
  proc_.pressAlertButton(0);
  EXPECT_EQ(heard, "1 gone, alert 1");
  EXPECT_EQ(proc_.openAlert(), nullptr);
}

// A text view wraps words at its width less the insets (ideographs one by
// one, a word wider than a line by characters), breaks at "\n", and its
// delegate's spacing follows every line.
TEST_F(UIModelTest, TextViewWrapsAndAddsTheDelegatesSpacing) {
  struct Spacing : LayoutManagerDelegate {
    double lineSpacingAfterGlyphAtIndex(size_t, const Rect&) override {
      return 6;
    }
  };
  auto view = make<UITextView>();
  const Font font{"Helvetica", 17};
  view->setFont(font);
  view->setContentInset({4, 2, 0, 2});
  const double word = textWidth("abcd ", font);
  view->setFrame({{0, 0}, {word * 2 + 4, 10}});
  view->setText("abcd abcd abcd\n深圳深圳深圳深圳深圳");
  EXPECT_EQ(view->lines(),
            (std::vector<std::string>{"abcd abcd ", "abcd", "深圳深圳",
                                      "深圳深圳", "深圳"}));
  view->setText(std::string(60, 'x'));
  EXPECT_GT(view->lines().size(), 1u);
  view->setText("a\nb");
  auto spacing = std::make_shared<Spacing>();
  view->setLayoutManagerDelegate(spacing);
  view->sizeToFit();
  EXPECT_EQ(view->frame().size.height, 4 + 2 * (lineHeight(font) + 6));
  EXPECT_EQ(view->frame().size.width, word * 2 + 4);
}

}  // namespace
}  // namespace zv::ui
