#include "core/guard.h"

#include "core/zv_exception.h"
#include "platform/platform.h"

namespace zv {

bool zvenabled() { return platform::Process::current().zvenabled != 0; }

std::string guardMessage(const rt::Object* receiver, std::string_view selector,
                         const rt::Exception* exception) {
  std::string message = receiver ? receiver->className() : "nil";
  message += ' ';
  message += selector;
  if (exception) {
    message += ' ';
    message += exception->name();
    message += ' ';
    message += exception->reason();
  }
  return message;
}

void zvexception(const rt::Object* receiver, std::string_view selector,
                 const rt::Exception* exception) {
  platform::Process::current().zvenabled = 0;
  try {
    ZVException::showException(guardMessage(receiver, selector, exception));
  } catch (...) {
  }
}

void zvexceptionlog(const rt::Object* receiver, std::string_view selector,
                    const rt::Exception* exception) {
  platform::Process::current().zvenabled = 0;
  try {
    platform::current().log("ZVException: " +
                            guardMessage(receiver, selector, exception));
  } catch (...) {
  }
}

}  // namespace zv
