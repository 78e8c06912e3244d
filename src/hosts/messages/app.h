// The simulated Messages application ("com.apple.MobileSMS") on the host
// kit: a navigation stack that opens on the conversation list
// (hosts/messages/conversation_list.h), a conversation's screen pushed on a
// tap (hosts/messages/transcript.h), and the new-message composer presented
// in a navigation controller of its own (hosts/messages/composer.h). Below
// system 8.0 its classes answer the older selectors (hasUnreadiMessages,
// recipientSelectionController, removeRecipients).
//
//   auto& sms = hosts::launchSimulated(world, hosts::messagesHost(), facts,
//                                      ZorvelInitializer);
#pragma once

#include <memory>

#include "hosts/kit/host_kit.h"
#include "hosts/messages/conversation_list.h"
#include "hosts/messages/transcript.h"
#include "platform/ui/application.h"

namespace zv::hosts {

HostDefinition messagesHost();

class MessagesApplication : public ui::UIApplication {
 public:
  static constexpr const char* kClassName = "SMSApplication";
  explicit MessagesApplication(rt::Class* isa) : ui::UIApplication(isa) {}

  // The running Messages app of the current process, or null.
  static std::shared_ptr<MessagesApplication> shared();

  std::shared_ptr<ui::UINavigationController> navigation;
  std::shared_ptr<ConversationListController> list;
  double width = 320;

  // User actions.
  // Opens the conversation of a list row; null when there is no such row.
  std::shared_ptr<TranscriptController> openConversation(size_t row);
  // The compose button: a new message in its own navigation controller.
  std::shared_ptr<TranscriptController> newMessage();
  // The composer shown, if any.
  std::shared_ptr<TranscriptController> composer() const;
  // The controller the user sees on top of everything.
  std::shared_ptr<ui::UIViewController> topController() const;
  // The back button of the main stack.
  bool back();

  void didFinishLaunching() override;

 protected:
  // The navigation stack (and what it presents).
  void prepareWindow(ui::UIWindow& window) override {
    window.setRootViewController(navigation);
  }
};

}  // namespace zv::hosts
