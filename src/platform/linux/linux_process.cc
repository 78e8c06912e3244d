// The real program's process context: the Linux platform's counterpart of
// the contexts a simulated world gives its processes.
#include <mutex>

#include "platform/linux/linux_platform.h"
#include "platform/phone_number_class.h"
#include "platform/process.h"
#include "platform/telephony/call_objects.h"

namespace zv::platform {

Process& Process::linuxDefault() {
  static std::once_flag once;
  static Process* process = nullptr;
  std::call_once(once, [] {
    // One context for the program's whole life, never destroyed: hooks and
    // singletons may still reach it while static objects go away.
    process = new Process(&LinuxPlatform::instance());
    // The platform's own classes that every real process has.
    registerPhoneNumberClass(process->runtime());
    registerTelephonyClasses(process->runtime());
  });
  return *process;
}

}  // namespace zv::platform
