// A fourth hook shape used by the dialler modules: the system rewrites some
// of the arguments before the host's own implementation runs (a number
// prefixed before dialling, an area appended to a label). If the system is
// enabled its rewrite runs under the guard on copies of the arguments; the
// host then runs, exactly once, with the rewritten copies, or with the
// arguments as they came in when the rewrite failed or the system is off.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>

#include "core/guard.h"
#include "platform/runtime/object.h"

namespace zv::hook {

template <typename Sig>
struct Rewrite;

template <typename R, typename... A>
struct Rewrite<R(A...)> {
  using Original = rt::Imp<R(A...)>;
  using Work = std::function<void(const rt::Id&, A&...)>;

  // Returns false when the host class does not exist.
  static bool install(GuardKind kind, std::string_view cls,
                      std::string_view sel, Work work) {
    rt::Class* c = rt::getClass(cls);
    if (!c) return false;
    auto host = std::make_shared<Original>();
    *host = rt::hookMessage<R(A...)>(
        c, sel,
        [host, kind, sel = std::string(sel), work](const rt::Id& self,
                                                   A... args) -> R {
          if (zvenabled()) {
            std::tuple<A...> changed{args...};
            bool ok = guarded(kind, self.get(), sel, [&] {
              std::apply([&](A&... a) { work(self, a...); }, changed);
            });
            if (ok)
              return std::apply(
                  [&](A&... a) -> R { return callHost(*host, self, a...); },
                  changed);
          }
          return callHost(*host, self, args...);
        });
    return true;
  }

 private:
  static R callHost(const Original& host, const rt::Id& self, A... args) {
    if (host) return host(self, args...);
    if constexpr (!std::is_void_v<R>) return R{};
  }
};

}  // namespace zv::hook
