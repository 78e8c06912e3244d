// The shapes of a replaced host method, written once so that each row of a
// module's hook table is one line:
//
//   hook::systemFirst(kind, sdk::DialerController::viewWillAppear,
//       [c](const rt::Id& self, bool animated) { c->viewWillAppear(self); });
//
// The message (a typed host-header constant, platform/runtime/message.h)
// fixes the signature, so work that does not fit it does not compile.
//
// - hostFirst: the host implementation runs first, exactly once; if the
//   system is enabled its work then runs under the guard and may inspect the
//   host's result (passed by reference for non-void methods, a copy), but the
//   host's result is what the caller gets.
// - systemFirst: if enabled, the system's work runs under the guard; then the
//   host implementation runs, exactly once, and its result is returned.
// - systemDecides: if enabled, the controller is asked under the guard (a
//   failure answers false); true consumes the call (the host implementation
//   does not run; a non-void method returns what the controller put into
//   `result`, default-initialised otherwise, so an initialiser answers nil);
//   false runs the host.
// - after: result := f(result). The host runs first, exactly once; if
//   enabled, the work rewrites a copy of its result under the guard, and the
//   rewritten copy is returned; after a failure, the host's own result.
// - rewriteArgs: if enabled, the work rewrites copies of the arguments under
//   the guard; the host then runs, exactly once, with the rewritten copies, or
//   with the arguments as they came in when the rewrite failed or the system
//   is off.
//
// The host's own implementation is kept in the replacement's closure: this
// is the module's slot, and it belongs to the process whose class was hooked.
// Each install function returns false when the host class does not exist (a
// start-up routine may try again later, when the host has registered it).
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "core/guard.h"
#include "platform/runtime/message.h"
#include "platform/runtime/object.h"

namespace zv::hook {

template <typename Sig>
struct Hook;

// The work types of a hook; a void method has no result to show the work.
template <typename R, typename... A>
struct HookWork {
  using HostFirst = std::function<void(const rt::Id&, R&, A...)>;
  using Decision = std::function<bool(const rt::Id&, R&, A...)>;
  using After = std::function<void(const rt::Id&, R&, A...)>;
};
template <typename... A>
struct HookWork<void, A...> {
  using HostFirst = std::function<void(const rt::Id&, A...)>;
  using Decision = std::function<bool(const rt::Id&, A...)>;
  // A void method has no result to rewrite: after() does not apply.
  using After = std::function<void(const rt::Id&, A...)>;
};

template <typename R, typename... A>
struct Hook<R(A...)> {
  using Message = rt::Message<R(A...)>;
  using Original = rt::Imp<R(A...)>;
  static constexpr bool kVoid = std::is_void_v<R>;
  // Work of a host-first hook: sees the host's result when there is one.
  using HostFirstWork = typename HookWork<R, A...>::HostFirst;
  using SystemFirstWork = std::function<void(const rt::Id&, A...)>;
  using Decision = typename HookWork<R, A...>::Decision;
  using AfterWork = typename HookWork<R, A...>::After;
  using RewriteWork = std::function<void(const rt::Id&, A&...)>;

  static bool hostFirst(GuardKind kind, const Message& m, HostFirstWork work) {
    return install(
        m,
        [kind, sel = std::string(m.sel),
         work](const Original& host) -> Original {
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

  static bool systemFirst(GuardKind kind, const Message& m,
                          SystemFirstWork work) {
    return install(
        m,
        [kind, sel = std::string(m.sel),
         work](const Original& host) -> Original {
          return [kind, sel, work, host](const rt::Id& self, A... args) -> R {
            if (zvenabled())
              guarded(kind, self.get(), sel, [&] { work(self, args...); });
            return callHost(host, self, args...);
          };
        });
  }

  static bool systemDecides(GuardKind kind, const Message& m, Decision decide) {
    return install(
        m,
        [kind, sel = std::string(m.sel),
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

  static bool after(GuardKind kind, const Message& m,
                    AfterWork work) requires(!kVoid) {
    return install(m,
                   [kind, sel = std::string(m.sel),
                    work](const Original& host) -> Original {
                     return [kind, sel, work, host](const rt::Id& self,
                                                    A... args) -> R {
                       R result = callHost(host, self, args...);
                       if (!zvenabled()) return result;
                       R changed = result;
                       if (guarded(kind, self.get(), sel,
                                   [&] { work(self, changed, args...); }))
                         return changed;
                       return result;
                     };
                   });
  }

  static bool rewriteArgs(GuardKind kind, const Message& m, RewriteWork work) {
    return install(
        m,
        [kind, sel = std::string(m.sel),
         work](const Original& host) -> Original {
          return [kind, sel, work, host](const rt::Id& self, A... args) -> R {
            if (zvenabled()) {
              std::tuple<A...> changed{args...};
              bool ok = guarded(kind, self.get(), sel, [&] {
                std::apply([&](A&... a) { work(self, a...); }, changed);
              });
              if (ok)
                return std::apply(
                    [&](A&... a) -> R { return callHost(host, self, a...); },
                    changed);
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
  static bool install(const Message& m, Make make) {
    rt::Class* c = m.target();
    if (!c) return false;
    // The replacement needs the original, which hookMessage returns only
    // after installing: hand the replacement a cell filled right after.
    auto cell = std::make_shared<Original>();
    *cell = rt::hookMessage<R(A...)>(
        c, m.sel, make(Original([cell](const rt::Id& self, A... args) -> R {
          return callHost(*cell, self, args...);
        })));
    return true;
  }
};

// One-line rows: the signature comes from the message.
template <typename R, typename... A>
bool hostFirst(GuardKind kind, const rt::Message<R(A...)>& m,
               typename Hook<R(A...)>::HostFirstWork work) {
  return Hook<R(A...)>::hostFirst(kind, m, std::move(work));
}
template <typename R, typename... A>
bool systemFirst(GuardKind kind, const rt::Message<R(A...)>& m,
                 typename Hook<R(A...)>::SystemFirstWork work) {
  return Hook<R(A...)>::systemFirst(kind, m, std::move(work));
}
template <typename R, typename... A>
bool systemDecides(GuardKind kind, const rt::Message<R(A...)>& m,
                   typename Hook<R(A...)>::Decision decide) {
  return Hook<R(A...)>::systemDecides(kind, m, std::move(decide));
}
template <typename R, typename... A>
requires(!std::is_void_v<R>) bool after(
    GuardKind kind, const rt::Message<R(A...)>& m,
    typename Hook<R(A...)>::AfterWork work) {
  return Hook<R(A...)>::after(kind, m, std::move(work));
}
template <typename R, typename... A>
bool rewriteArgs(GuardKind kind, const rt::Message<R(A...)>& m,
                 typename Hook<R(A...)>::RewriteWork work) {
  return Hook<R(A...)>::rewriteArgs(kind, m, std::move(work));
}

}  // namespace zv::hook
