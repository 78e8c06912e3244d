#include "platform/process.h"

#include <mutex>

#include "platform/linux/linux_platform.h"
#include "platform/phone_number_class.h"
#include "platform/platform.h"
#include "platform/telephony/call_objects.h"

namespace zv::platform {
namespace {

thread_local Process* t_current = nullptr;
Process* g_default = nullptr;

}  // namespace

Process::Process(Platform* platform)
    : platform_(platform), runtime_(std::make_unique<rt::Runtime>()) {}

Process::~Process() { clear(); }

void Process::clear() {
  // Singletons may hold runtime objects and observers: drop them newest
  // first, while the class tables still exist.
  while (!order_.empty()) {
    auto type = order_.back();
    order_.pop_back();
    auto it = slots_.find(type);
    if (it != slots_.end()) {
      Slot slot = std::move(it->second);
      slots_.erase(it);
      slot.reset(slot);
    }
  }
  runtime_ = std::make_unique<rt::Runtime>();
}

void Process::whenLaunched(std::function<void()> start) {
  if (launched_) {
    start();
    return;
  }
  waiting_for_launch_.push_back(std::move(start));
}

void Process::finishLaunching() {
  if (launched_) return;
  launched_ = true;
  auto waiting = std::move(waiting_for_launch_);
  waiting_for_launch_.clear();
  for (auto& start : waiting) start();
}

Process& Process::current() {
  if (t_current) return *t_current;
  if (g_default) return *g_default;
  // A real program: one context on the Linux platform, for its whole life.
  static std::once_flag once;
  static Process* process = nullptr;
  std::call_once(once, [] {
    process = new Process(&LinuxPlatform::instance());
    // The platform's own classes that every real process has.
    registerPhoneNumberClass(process->runtime());
    registerTelephonyClasses(process->runtime());
    if (!g_default) g_default = process;
  });
  return g_default ? *g_default : *process;
}

void Process::setDefault(Process* process) { g_default = process; }

Process::Scope::Scope(Process& process) : previous_(t_current) {
  t_current = &process;
}

Process::Scope::~Scope() { t_current = previous_; }

Platform& current() { return Process::current().platform(); }

}  // namespace zv::platform
