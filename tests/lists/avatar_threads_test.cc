// Avatars loaded on real threads while the list reuses its cells for other
// contacts: every cell ends with the picture of the contact it shows last.
// The test command runs these under ThreadSanitizer too.
#include <gtest/gtest.h>

#include <mutex>
#include <thread>
#include <utility>

#include "lists/contacts_controller.h"
#include "lists/recents_controller.h"
#include "lists_fixture.h"
#include "search/avatar_loader.h"

namespace zv {
namespace {

using testing::controllerOn;
using testing::FakePerson;

// A Phone process whose background queue is real threads and whose main
// queue is drained by the test's thread, as the platform's run loop would.
class ThreadedPhone : public platform::SimProcess {
 public:
  ThreadedPhone(platform::SimWorld& world, platform::DeviceFacts facts)
      : SimProcess(world, "com.apple.mobilephone", std::move(facts)) {}
  ~ThreadedPhone() override {
    join();
    platform::Process::Scope scope(context());
    context().clear();
  }

  void dispatchBackground(std::function<void()> block) override {
    std::lock_guard lock(mutex_);
    threads_.emplace_back([this, block = std::move(block)] {
      platform::Process::Scope scope(context());
      block();
    });
  }
  void dispatchMain(std::function<void()> block) override {
    std::lock_guard lock(mutex_);
    main_.push_back(std::move(block));
  }

  // Runs what reached the main queue so far, on the calling thread.
  void drainMain() {
    platform::Process::Scope scope(context());
    for (auto& block : take(main_)) block();
  }
  // Joins the background threads, also those they start meanwhile.
  void join() {
    for (auto running = take(threads_); !running.empty();
         running = take(threads_))
      for (auto& t : running) t.join();
  }

 private:
  // Empties `queue` under the lock; what it held.
  template <typename T>
  T take(T& queue) {
    std::lock_guard lock(mutex_);
    return std::exchange(queue, {});
  }
  std::mutex mutex_;
  std::vector<std::thread> threads_;
  std::vector<std::function<void()>> main_;
};

ui::Pixel colourOf(int id) {
  return {static_cast<uint8_t>(id * 5), static_cast<uint8_t>(255 - id * 5),
          static_cast<uint8_t>(id), 255};
}

class AvatarThreadsTest : public testing::ListsTest {
 protected:
  static constexpr int kCells = 24;
  static constexpr int kPeople = 40;
  static constexpr int kRounds = 6;

  AvatarThreadsTest() {
    writePlist("/var/mobile/Library/Preferences/zorvel.plist",
               {{"EnableAvatar", true}, {"EnableArea", false}});
    for (int id = 1; id <= kPeople; ++id)
      people_.push_back(std::make_shared<FakePerson>(id, true, colourOf(id)));
  }
  // The person a cell shows in a round: every round moves each cell on.
  int personFor(int cell, int round) const {
    return (cell * 7 + round * 5) % kPeople;
  }

  // In a Phone process on `facts` with kCells cells made by `make`, runs
  // show(cell, person) for every cell of every round, letting the loads
  // finished so far land between rounds. Once every load is done, each cell
  // shows the person of the last round.
  template <typename Make, typename Show>
  void runRounds(const platform::DeviceFacts& facts, Make make, Show show) {
    ThreadedPhone phone(world_, facts);
    std::vector<std::shared_ptr<ui::UITableViewCell>> cells;
    for (int round = -1; round < kRounds; ++round) {
      {
        platform::Process::Scope scope(phone.context());
        for (int i = 0; i < kCells; ++i)
          round < 0 ? cells.push_back(make())
                    : show(cells[i], personFor(i, round));
      }
      phone.drainMain();
    }
    phone.join();
    phone.drainMain();
    for (int i = 0; i < kCells; ++i) {
      const int id = personFor(i, kRounds - 1) + 1;
      auto image = cells[i]->imageView();
      EXPECT_EQ(image->tag(), avatarViewTag(id)) << i;
      EXPECT_TRUE(testing::allPixels(image->image(), colourOf(id))) << i;
    }
  }

  std::vector<std::shared_ptr<FakePerson>> people_;
};

using Cell = std::shared_ptr<ui::UITableViewCell>;

TEST_F(AvatarThreadsTest,
       RecentsAvatarsLoadedFromSeveralThreadsLandOnTheirCell) {
  auto host = std::make_shared<testing::FakeRecentsHost>();
  auto controller = [&] { return controllerOn<ZVRecentsController>(host); };
  runRounds(
      {}, [&] { return controller(), host->makeCell(); },
      [&](const Cell& cell, int person) {
        host->show(cell, {.number = "10086", .person = people_[person]}, "name",
                   "label");
        controller()->avatarCell(cell);
      });
}

TEST_F(AvatarThreadsTest,
       ContactsAvatarsLoadedFromSeveralThreadsLandOnTheirCell) {
  auto host = std::make_shared<testing::FakeContactsHost>();
  auto controller = [&] { return controllerOn<ZVContactsController>(host); };
  runRounds(
      *platform::simulatedDevice("8.1", "4"),
      [&] { return controller(), host->makeListCell({.name = "name"}); },
      [&](const Cell& cell, int person) {
        host->listCell(cell).person = people_[person];
        controller()->avatarCell(cell);
        // A card opened meanwhile drops a picture that may be loading.
        if (person % 5 == 0) {
          auto card = rt::create(rt::registerClass("FakeCard"));
          host->cards[card.get()] = person + 1;
          controller()->viewWillAppear(card);
        }
      });
}

}  // namespace
}  // namespace zv
