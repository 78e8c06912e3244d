// The three shapes of a replaced host method, written once so that each row
// of a module's hook table is one line:
//
//   Hook<void(bool)>::hostFirst(kind, "DialerController", "viewWillAppear:",
//       [c](const rt::Id& self, bool animated) { c->viewWillAppear(self); });
//
// - hostFirst: the host implementation runs first, exactly once; if the
//   system is enabled its work then runs under the guard and may inspect the
//   host's result (passed by reference for non-void methods), but the host's
//   result is what the caller gets.
// - systemFirst: if enabled, the system's work runs under the guard; then the
//   host implementation runs, exactly once, and its result is returned.
// - systemDecides: if enabled, the controller is asked under the guard (a
//   failure answers false); true consumes the call (the host implementation
//   does not run; a non-void method returns what the controller put into
//   `result`, default-initialised otherwise); false runs the host.
//
// The host's own implementation is kept in the replacement's closure: this
// is the module's slot, and it belongs to the process whose class was hooked.
// Each install function returns false when the host class does not exist.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <type_traits>

#include "core/guard.h"
#include "platform/runtime/object.h"

namespace zv::hook {

template <typename Sig>
struct Hook;

// The work types of a hook; a void method has no result to show the work.
template <typename R, typename... A>
struct HookWork {
  using HostFirst = std::function<void(const rt::Id&, R&, A...)>;
  using Decision = std::function<bool(const rt::Id&, R&, A...)>;
};
template <typename... A>
struct HookWork<void, A...> {
  using HostFirst = std::function<void(const rt::Id&, A...)>;
  using Decision = std::function<bool(const rt::Id&, A...)>;
};

template <typename R, typename... A>
struct Hook<R(A...)> {
  using Original = rt::Imp<R(A...)>;
  static constexpr bool kVoid = std::is_void_v<R>;
  // Work of a host-first hook: sees the host's result when there is one.
  using HostFirstWork = typename HookWork<R, A...>::HostFirst;
  using SystemFirstWork = std::function<void(const rt::Id&, A...)>;
  using Decision = typename HookWork<R, A...>::Decision;

  static bool hostFirst(GuardKind kind, std::string_view cls,
                        std::string_view sel, HostFirstWork work) {
    return install(
        cls, sel,
        [kind, sel = std::string(sel), work](const Original& host) -> Original {
          return [kind, sel, work, host](const rt::Id& self, A... args) -> R {
            if constexpr (kVoid) {
              callHost(host, self, args...);
              if (!zvenabled()) return;
              guarded(kind, self.get(), sel, [&] { work(self, args...); });
            } else {
              R result = callHost(host, self, args...);
              if (!zvenabled()) return result;
              R seen = result;
              guarded(kind, self.get(), sel,
                      [&] { work(self, seen, args...); });
              return result;
            }
          };
        });
  }

  static bool systemFirst(GuardKind kind, std::string_view cls,
                          std::string_view sel, SystemFirstWork work) {
    return install(
        cls, sel,
        [kind, sel = std::string(sel), work](const Original& host) -> Original {
          return [kind, sel, work, host](const rt::Id& self, A... args) -> R {
            if (zvenabled())
              guarded(kind, self.get(), sel, [&] { work(self, args...); });
            return callHost(host, self, args...);
          };
        });
  }

  static bool systemDecides(GuardKind kind, std::string_view cls,
                            std::string_view sel, Decision decide) {
    return install(
        cls, sel,
        [kind, sel = std::string(sel),
         decide](const Original& host) -> Original {
          return [kind, sel, decide, host](const rt::Id& self, A... args) -> R {
            if (zvenabled()) {
              bool consumed = false;
              if constexpr (kVoid) {
                guarded(kind, self.get(), sel,
                        [&] { consumed = decide(self, args...); });
                if (consumed) return;
              } else {
                R result{};
                guarded(kind, self.get(), sel,
                        [&] { consumed = decide(self, result, args...); });
                if (consumed) return result;
              }
            }
            return callHost(host, self, args...);
          };
        });
  }

 private:
  // A class that only gains the selector through the hook has no host
  // implementation; the host's part is then a no-op.
  static R callHost(const Original& host, const rt::Id& self, A... args) {
    if (host) return host(self, args...);
    if constexpr (!kVoid) return R{};
  }

  template <typename Make>
  static bool install(std::string_view cls, std::string_view sel, Make make) {
    rt::Class* c = rt::getClass(cls);
    if (!c) return false;
    // The replacement needs the original, which hookMessage returns only
    // after installing: hand the replacement a cell filled right after.
    auto cell = std::make_shared<Original>();
    *cell = rt::hookMessage<R(A...)>(
        c, sel, make(Original([cell](const rt::Id& self, A... args) -> R {
          return callHost(*cell, self, args...);
        })));
    return true;
  }
};

}  // namespace zv::hook
