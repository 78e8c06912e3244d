// The exception guard and the process-wide enable switch.
//
// Every hook runs the system's own work under the guard. The first failure in
// a process clears `zvenabled` for the rest of its life and reports it: an
// alert ("Zorvel Exception", ZVException) in Phone, Contacts and Messages,
// a "ZVException: %@" system-log line in SpringBoard and InCallService. From
// then on every hook passes straight through to the host.
#pragma once

#include <string>
#include <string_view>

#include "platform/runtime/object.h"

namespace zv {

// Which guard function a module's hooks report to.
enum class GuardKind {
  Alert,  // zvexception: Phone, Contacts, Messages
  Log,    // zvexceptionlog: SpringBoard, InCallService
};

// The switch of the current process: 1 from load, 0 after the first guarded
// failure, never back.
bool zvenabled();

// The guard functions, given the receiver, the selector and the platform
// exception (nullptr for any other thrown object). They never throw.
void zvexception(const rt::Object* receiver, std::string_view selector,
                 const rt::Exception* exception);
void zvexceptionlog(const rt::Object* receiver, std::string_view selector,
                    const rt::Exception* exception);

// The message both guards build: "%s %s %@ %@" (class, selector, exception
// name, reason) or "%s %s" without an exception.
std::string guardMessage(const rt::Object* receiver, std::string_view selector,
                         const rt::Exception* exception);

// Runs work() and catches whatever it throws, reporting it to the guard of
// `kind`. Returns true when work finished without throwing.
template <typename Work>
bool guarded(GuardKind kind, const rt::Object* receiver,
             std::string_view selector, Work&& work) {
  try {
    work();
    return true;
  } catch (const rt::Exception& e) {
    (kind == GuardKind::Alert ? zvexception : zvexceptionlog)(receiver,
                                                              selector, &e);
  } catch (...) {
    (kind == GuardKind::Alert ? zvexception : zvexceptionlog)(
        receiver, selector, nullptr);
  }
  return false;
}

}  // namespace zv
