#include "hosts/messages/app.h"

#include <string>

#include "hostsdk/messages.h"
#include "platform/platform.h"
#include "platform/ui/messages.h"

namespace zv::hosts {
namespace {

bool legacySystem() {
  try {
    return std::stod(platform::current().device().systemVersion) < 8.0;
  } catch (...) {
    return false;
  }
}

// The top of a navigation stack, or the controller itself.
std::shared_ptr<ui::UIViewController> visible(
    std::shared_ptr<ui::UIViewController> vc) {
  if (auto nav = std::dynamic_pointer_cast<ui::UINavigationController>(vc))
    return nav->topViewController();
  return vc;
}

}  // namespace

HostDefinition messagesHost() {
  return HostDefinition{
      "com.apple.MobileSMS",
      [] {
        const bool legacy = legacySystem();
        registerConversationClasses(legacy);
        registerConversationListClasses();
        registerTranscriptClasses(legacy);
        rt::registerClass<MessagesApplication>(sdk::SMSApplication::kName,
                                               "UIApplication");
      },
      [] {
        return std::static_pointer_cast<ui::UIApplication>(
            std::dynamic_pointer_cast<MessagesApplication>(
                rt::alloc(rt::getClass(sdk::SMSApplication::kName))));
      }};
}

std::shared_ptr<MessagesApplication> MessagesApplication::shared() {
  return ui::sharedApplication<MessagesApplication>();
}

void MessagesApplication::didFinishLaunching() {
  width = platform::current().device().screenPoints.width;
  list = ConversationListController::make(loadConversations(), width);
  std::weak_ptr<MessagesApplication> weak =
      std::static_pointer_cast<MessagesApplication>(shared_from_this());
  list->onOpen = [weak](size_t row) {
    if (auto me = weak.lock()) me->openConversation(row);
  };
  navigation = ui::UINavigationController::make(list);
  ui::sendWillAppear(list, false);
  list->tableView()->reloadData();
}

std::shared_ptr<TranscriptController> MessagesApplication::openConversation(
    size_t row) {
  if (row >= list->conversations.size()) return nullptr;
  auto transcript = TranscriptController::make(list->conversations[row], width);
  rt::send(navigation,
           ui::msg::UINavigationController::pushViewControllerAnimated,
           rt::Id(transcript), true);
  return transcript;
}

std::shared_ptr<TranscriptController> MessagesApplication::newMessage() {
  if (navigation->presentedViewController()) return composer();
  auto composer = TranscriptController::make(nullptr, width);
  auto nav = ui::UINavigationController::make(composer);
  navigation->presentViewController(nav, true);
  return composer;
}

std::shared_ptr<TranscriptController> MessagesApplication::composer() const {
  auto nav = std::dynamic_pointer_cast<ui::UINavigationController>(
      navigation->presentedViewController());
  if (!nav || nav->viewControllers().empty()) return nullptr;
  return std::dynamic_pointer_cast<TranscriptController>(
      nav->viewControllers().front());
}

std::shared_ptr<ui::UIViewController> MessagesApplication::topController()
    const {
  std::shared_ptr<ui::UIViewController> top = navigation;
  while (top->presentedViewController()) top = top->presentedViewController();
  return visible(top);
}

bool MessagesApplication::back() {
  return rt::send(navigation,
                  ui::msg::UINavigationController::popViewControllerAnimated,
                  true) != nullptr;
}

}  // namespace zv::hosts
