// The keypad result views: pager index arithmetic and paging, page layout
// (font ramp, highlight runs), ZVLabel runs, colour codes and list rows.
#include <gtest/gtest.h>

#include "dialer/keypad_list_view.h"
#include "dialer/keypad_view.h"
#include "dialer/zv_label.h"
#include "platform/ui/text_metrics.h"
#include "support/phone_process.h"
#include "support/picture_rows.h"

namespace zv {
namespace {

ZVSearcher::PersonList people(int n) {
  ZVSearcher::PersonList out;
  for (int i = 1; i <= n; ++i) {
    auto p = std::make_shared<ZVPerson>();
    p->setRecordId(i);
    p->setNameFull("P" + std::to_string(i));
    p->setPhoneNumber("555" + std::to_string(i));
    out.push_back(p);
  }
  return out;
}

class KeypadViewsTest : public testing::PhoneProcessTest {
 protected:
  KeypadViewsTest()
      : proc_(launch(Dict{{"DialerFormatPhoneNubmer", false},
                          {"DialerNameHighlightColor", 3},
                          {"EnableAvatar", true}})) {}
  platform::SimProcess& proc_;
};

std::string nameOf(const ZVKeypadLCDView& v) {
  auto& l = v.nameLabels();
  return l[0]->text() + l[1]->text() + l[2]->text();
}

TEST_F(KeypadViewsTest, PagerShowsPreviousCurrentAndNext) {
  proc_.run([] {
    auto pager = ZVKeypadView::make({{0, 45}, {375, 80}});
    pager->setPersons(people(7));
    pager->setInputNumber("55");
    pager->updateLCDViews();
    EXPECT_EQ(nameOf(*pager->lcdViews()[0]), "P7 (7/7)");
    EXPECT_EQ(nameOf(*pager->lcdViews()[1]), "P1 (1/7)");
    EXPECT_EQ(nameOf(*pager->lcdViews()[2]), "P2 (2/7)");
    EXPECT_FALSE(pager->leftArrow()->isHidden());

    // A drag to the next page rotates the pages and moves the index.
    auto next = pager->lcdViews()[2];
    pager->scrollView()->drag(375);
    EXPECT_EQ(pager->index(), 1u);
    EXPECT_EQ(pager->lcdViews()[1], next);
    EXPECT_EQ(pager->scrollView()->contentOffset().x, 375);
    EXPECT_EQ(pager->getNumber(), "5552");
    // Back twice wraps to the last result.
    pager->scrollView()->drag(-375);
    pager->scrollView()->drag(-375);
    EXPECT_EQ(pager->index(), 6u);
    // A drag that settles on the same page changes nothing.
    pager->scrollView()->drag(100);
    EXPECT_EQ(pager->index(), 6u);
    // After a drag the buttons and arrows are back at full alpha.
    EXPECT_EQ(pager->deleteButton()->alpha(), 1);
  });
}

TEST_F(KeypadViewsTest, ButtonsFadeWhileDraggingAndComeBackASecondLater) {
  std::shared_ptr<ZVKeypadView> pager;
  auto alphas = [&] {
    return proc_.run([&] {
      return std::vector<double>{
          pager->addButton()->alpha(), pager->deleteButton()->alpha(),
          pager->leftArrow()->alpha(), pager->rightArrow()->alpha()};
    });
  };
  // A finger goes down (and, when `letGo`, lifts again).
  auto drag = [&](bool letGo) {
    proc_.run([&] {
      auto& scroll = *pager->scrollView();
      scroll.willBeginDragging(scroll);
      if (letGo) scroll.didEndDecelerating(scroll);
    });
  };
  const std::vector<double> faded(4, 0.01), shown(4, 1.0);
  proc_.run([&] {
    pager = ZVKeypadView::make({{0, 45}, {375, 80}});
    pager->setPersons(people(3));
    pager->updateLCDViews();
  });
  drag(false);
  EXPECT_EQ(alphas(), faded);
  world_.advance(0.9);
  EXPECT_EQ(alphas(), faded);
  // A second drag restarts the second.
  drag(false);
  world_.advance(0.5);
  EXPECT_EQ(alphas(), faded);
  world_.advance(0.6);
  EXPECT_EQ(alphas(), shown);
  // Letting go brings them back at once.
  drag(true);
  EXPECT_EQ(alphas(), shown);
}

TEST_F(KeypadViewsTest, IndexArithmeticAtTheEdgesAndButtons) {
  proc_.run([] {
    auto pager = ZVKeypadView::make({{0, 0}, {320, 80}});
    EXPECT_EQ(pager->getNumber(), std::nullopt);
    EXPECT_EQ(pager->getPrevIndex(), 0u);
    pager->setPersons(people(2));
    EXPECT_EQ(pager->getPrevIndex(), 1u);
    EXPECT_EQ(pager->getNextIndex(), 1u);
    pager->setIndex(5);  // out of range: the current is the first
    EXPECT_EQ(pager->getCurIndex(), 0u);
    EXPECT_EQ(pager->getNextIndex(), 0u);
    EXPECT_EQ(pager->getPrevIndex(), 0u);
    pager->setPersons(people(1));
    pager->setIndex(0);
    pager->updateLCDViews();
    EXPECT_EQ(nameOf(*pager->lcdViews()[1]), "P1");  // no counter
    EXPECT_TRUE(pager->leftArrow()->isHidden());
    EXPECT_FALSE(pager->scrollView()->isScrollEnabled());

    // The buttons follow the typed number and the entry shown.
    auto typed = std::make_shared<ZVPerson>();
    typed->setPhoneNumber("12");
    pager->setPersons({typed});
    pager->updateLCDViews();
    EXPECT_TRUE(pager->deleteButton()->isHidden());  // nothing typed
    pager->setInputNumber("12");
    pager->updateButtons();
    EXPECT_FALSE(pager->deleteButton()->isHidden());
    EXPECT_FALSE(pager->addButton()->isHidden());  // the typed-number entry
    typed->setPriority(257);  // a priority-list entry is not one
    pager->updateButtons();
    EXPECT_TRUE(pager->addButton()->isHidden());
  });
}

TEST_F(KeypadViewsTest, NumberFontRampsByLengthAndLongNumbersAreNotSplit) {
  proc_.run([] {  // an iPhone 6 screen: 40 down to 28 points
    EXPECT_EQ(ZVKeypadLCDView::numberFontSize(12, 12, 18), 40);
    EXPECT_EQ(ZVKeypadLCDView::numberFontSize(15, 12, 18), 34);
    EXPECT_EQ(ZVKeypadLCDView::numberFontSize(25, 12, 18), 28);
    auto page = ZVKeypadLCDView::make({{0, 0}, {375, 80}});
    page->setShowsHighlight(true);
    page->setNumber("12345678901234567890");
    page->setHighlightNumberRange({2, 3});
    page->setName("Zhang San");
    page->setHighlightNameRange({0, 5});
    page->updateLCDView();
    EXPECT_EQ(page->numberLabels()[0]->text(), "12345678901234567890");
    EXPECT_EQ(page->numberLabels()[1]->text(), "");
    EXPECT_EQ(page->nameLabels()[1]->text(), "Zhang");
    EXPECT_EQ(page->nameLabels()[0]->frame().origin.y, 55);
    // Colour code 3 (DialerNameHighlightColor here) keeps the default.
    EXPECT_EQ(highlightColorForCode(3), std::nullopt);
    EXPECT_EQ(highlightColorForCode(2)->r, 1);
  });
}

TEST_F(KeypadViewsTest, HighlightColoursAreAppliedToTheCentreLabels) {
  // Number red (2), name green (1); the runs outside keep the default.
  launch(
      Dict{{"DialerNumberHighlightColor", 2}, {"DialerNameHighlightColor", 1}})
      .run([] {
        auto pager = ZVKeypadView::make({{0, 45}, {375, 80}});
        pager->setPersons(people(3));
        pager->setInputNumber("55");
        pager->updateLCDViews();
        auto page = pager->lcdViews()[1];
        const ui::Color red{1, 0.3137255, 0.3137255, 1};
        EXPECT_EQ(page->numberLabels()[1]->text(), "55");
        EXPECT_EQ(page->numberLabels()[1]->textColor(), red);
        EXPECT_EQ(page->nameLabels()[1]->textColor(),
                  (ui::Color{0.19607843, 0.82352942, 0.3137255, 1}));
        EXPECT_NE(page->numberLabels()[2]->textColor(), red);
        // A changed code is applied at the next update.
        page->setNumberHighlightColor(0);
        page->updateLCDView();
        EXPECT_EQ(page->numberLabels()[1]->textColor(),
                  (ui::Color{0, 0.47843137, 1, 1}));
      });
}

TEST_F(KeypadViewsTest, LabelRunsAndTheirFallbacks) {
  proc_.run([] {
    auto label = ZVLabel::make();
    label->text = "张三丰";
    label->highlightRange = {1, 1};
    label->highlightColor = ui::Color{1, 0, 0, 1};
    label->updateLabel();
    EXPECT_EQ(label->labelLeft()->text(), "张");
    EXPECT_EQ(label->labelCenter()->text(), "三");
    EXPECT_EQ(label->labelRight()->text(), "丰");
    EXPECT_EQ(label->labelCenter()->textColor().r, 1);
    EXPECT_EQ(label->frame().size.width, ui::textWidth("张三丰", label->font));
    label->highlightRange = {2, 2};  // runs past the end
    label->updateLabel();
    EXPECT_EQ(label->labelLeft()->text(), "张三丰");
    EXPECT_EQ(label->labelCenter()->frame().size.width, 0);
    label->highlightRange = {0, 1};
    label->textSize = 20;  // narrower than the text: whole text, cut
    label->updateLabel();
    EXPECT_EQ(label->labelLeft()->text(), "张三丰");
    EXPECT_EQ(label->frame().size.width, 20);
  });
}

// (The typed row first, labelled "Call", is tests/hooks/phone_e2e_test.cc's.)
TEST_F(KeypadViewsTest, ListRowsTakeTheirAvatarLateAndACutPhoneLabel) {
  // A label wider than 100 points is cut to 100; a short one keeps its width.
  const std::string unknown =
      "a phone label far longer than the row can hold beside a name";
  proc_.setLocalizedStrings({{"unknown", unknown}});
  const ui::Pixel red{255, 0, 0, 255};
  for (int id : {1, 2}) testing::addColourPicture(root_, id, red);
  std::shared_ptr<ZVKeypadListCell> row[3];
  proc_.run([&] {
    auto list = ZVKeypadListView::make({{0, 142}, {375, 356}});
    auto persons = people(2);
    auto typed = std::make_shared<ZVPerson>();
    typed->setPhoneNumber("555");
    typed->setPriority(65);
    persons.push_back(typed);
    list->setPersons(persons);
    list->setInputNumber("555");
    list->setUpInputNumber(true);
    list->reloadData();
    for (int i : {0, 1, 2})
      row[i] = std::dynamic_pointer_cast<ZVKeypadListCell>(
          list->tableView()->cellForRowAtIndex(i));
    ASSERT_TRUE(row[0] && row[1] && row[2]);
    row[2]->imageView()->setTag(99);  // the cell now shows someone else
  });
  EXPECT_EQ(row[0]->typeLabel->frame().size.width,
            ui::textWidth("Call", row[0]->typeLabel->font()));
  EXPECT_EQ(row[1]->nameLabel->text, "P1");
  EXPECT_EQ(row[1]->numberLabel->labelCenter()->text(), "555");
  // No phone label: "unknown", localised.
  EXPECT_EQ(row[1]->typeLabel->text(), unknown);
  ASSERT_GT(ui::textWidth(unknown, row[1]->typeLabel->font()), 100);
  EXPECT_EQ(row[1]->typeLabel->frame().size.width, 100);
  // The avatar is keyed by record id and set when it has loaded, only on
  // the cell still showing its contact.
  EXPECT_EQ(row[1]->imageView()->tag(), 1);
  world_.advance(0);
  EXPECT_TRUE(testing::allPixels(row[1]->imageView()->image(), red));
  EXPECT_FALSE(testing::allPixels(row[2]->imageView()->image(), red));
}

}  // namespace
}  // namespace zv
