// Typed messages: a host class's selector declared once with its signature,
// the way an extension includes a host's class headers. The typed host
// headers (hostsdk/) are made of these constants; hosts define methods with
// them and hooks replace methods with them, so a selector whose signature
// differs between a host and a hook does not compile.
//
//   inline constexpr rt::Message<void(bool)> viewWillAppear{
//       "DialerController", "viewWillAppear:"};
//   rt::define(viewWillAppear, [](const rt::Id& self, bool animated) {...});
//   rt::send(controller, viewWillAppear, true);
//
// Instance variables are declared the same way (IvarName<T>), and objects
// are created as the platform does: alloc, then an initialiser message whose
// answer (possibly nil, possibly another object) is the new object.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "platform/runtime/object.h"

namespace zv::rt {

template <typename Sig>
struct Message;

template <typename R, typename... A>
struct Message<R(A...)> {
  using Signature = R(A...);
  using Result = R;
  std::string_view cls;  // the class that declares the method
  std::string_view sel;
  bool classMethod = false;  // sent to the class object, not an instance

  // The class the method lives on (the metaclass for a class method), or
  // null when the process has no class of that name.
  Class* target() const {
    Class* c = getClass(cls);
    return c && classMethod ? c->metaClass() : c;
  }
};

// An instance variable of type T that a host class keeps, read by name.
template <typename T>
struct IvarName {
  std::string_view cls;
  std::string_view name;
};

// Sends a typed message (see send<R> in object.h: raises for a receiver that
// does not respond; nil answers R{}).
template <typename R, typename... A, typename... Args>
R send(const Id& receiver, const Message<R(A...)>& m, Args&&... args) {
  return send<R, A...>(receiver, m.sel, A(std::forward<Args>(args))...);
}

// "Send it if the object responds, else nothing": R{} (or nothing) when the
// receiver is nil or does not respond to the selector.
template <typename R, typename... A>
R trySend(const Id& receiver, std::string_view selector, A... args) {
  if (!respondsTo(receiver, selector)) {
    if constexpr (std::is_void_v<R>) {
      return;
    } else {
      return R{};
    }
  }
  return send<R, A...>(receiver, selector, std::move(args)...);
}
template <typename R, typename... A, typename... Args>
R trySend(const Id& receiver, const Message<R(A...)>& m, Args&&... args) {
  return trySend<R, A...>(receiver, m.sel, A(std::forward<Args>(args))...);
}

// Host side: adds (or overwrites) the method on its class, which must be
// registered. An implementation that does not fit the message's signature
// does not compile.
template <typename R, typename... A>
void define(const Message<R(A...)>& m, Imp<R(A...)> imp) {
  Class* c = m.target();
  if (!c)
    throw Exception("NSInternalInconsistencyException",
                    "no class " + std::string(m.cls) + " to define " +
                        std::string(m.sel) + " on");
  addMethod<R(A...)>(c, m.sel, std::move(imp));
}

// The same on the classes of a given runtime, for registration code that is
// handed the runtime it fills (not necessarily the current process's).
template <typename R, typename... A>
void define(Runtime& runtime, const Message<R(A...)>& m, Imp<R(A...)> imp) {
  Class* c = runtime.getClass(m.cls);
  if (c && m.classMethod) c = c->metaClass();
  if (!c)
    throw Exception("NSInternalInconsistencyException",
                    "no class " + std::string(m.cls) + " to define " +
                        std::string(m.sel) + " on");
  addMethod<R(A...)>(c, m.sel, std::move(imp));
}

// True when the object responds to the message.
template <typename Sig>
bool respondsTo(const Id& object, const Message<Sig>& m) {
  return respondsTo(object, m.sel);
}

// Instance variables, typed.
template <typename T>
std::optional<T> ivar(const Id& object, const IvarName<T>& name) {
  return getIvar<T>(object, name.name);
}
template <typename T, typename V>
void setIvar(const Id& object, const IvarName<T>& name, V&& value) {
  object->setIvar(name.name, T(std::forward<V>(value)));
}

// An uninitialised instance of cls, of the C++ type cls was registered with.
inline Id alloc(Class* cls) { return cls->factory()(cls); }

// [[cls alloc] init...]: the initialiser's answer is the new object (a
// replaced initialiser may answer nil or another object).
template <typename... A, typename... Args>
Id make(Class* cls, const Message<Id(A...)>& init, Args&&... args) {
  return send(alloc(cls), init, std::forward<Args>(args)...);
}
// The same for an instance of the initialiser's own class.
template <typename... A, typename... Args>
Id make(const Message<Id(A...)>& init, Args&&... args) {
  Class* cls = getClass(init.cls);
  if (!cls)
    throw Exception("NSInternalInconsistencyException",
                    "no class " + std::string(init.cls));
  return make(cls, init, std::forward<Args>(args)...);
}

}  // namespace zv::rt
