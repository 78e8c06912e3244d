// The object runtime: classes looked up by name, per-class method tables
// keyed by selector, method replacement that keeps the replaced
// implementation callable, checked message sends, and instance variables
// readable by name.
//
// Objects are reference counted (Id = shared_ptr<Object>); references the
// platform calls "not owned" are WeakId. Every class table belongs to the
// current process context (see platform/process.h), so simulated processes in
// one binary each have their own classes and replacements.
//
// An implementation of a selector with signature R(A...) is an
// Imp<R(A...)> = std::function<R(const Id& self, A...)>. Class methods live
// on the metaclass: send them to classObject(cls).
#pragma once

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <typeindex>
#include <unordered_map>
#include <vector>

#include "platform/runtime/exception.h"

namespace zv::platform {
class Process;
}

namespace zv::rt {

class Object;
class Class;
using Id = std::shared_ptr<Object>;
using WeakId = std::weak_ptr<Object>;

template <typename Sig>
struct ImpOf;
template <typename R, typename... A>
struct ImpOf<R(A...)> {
  using type = std::function<R(const Id& self, A...)>;
};
template <typename Sig>
using Imp = typename ImpOf<Sig>::type;

// One method table entry: the signature it was registered with and the
// implementation (an Imp<Sig> behind a shared pointer).
struct Method {
  std::type_index signature = typeid(void);
  std::shared_ptr<const void> imp;
};

class Class {
 public:
  Class(std::string name, Class* superclass, bool meta)
      : name_(std::move(name)), super_(superclass), meta_(meta) {}

  const std::string& name() const { return name_; }
  Class* superclass() const { return super_; }
  bool isMetaClass() const { return meta_; }
  Class* metaClass() const { return meta_class_; }
  bool isSubclassOf(const Class* other) const;

  // The entry for a selector, searched up the superclass chain; null if none.
  const Method* findMethod(std::string_view selector) const;
  // Entry defined on this class itself (not inherited).
  const Method* ownMethod(std::string_view selector) const;
  void setMethod(std::string_view selector, Method method);
  // Selectors defined on this class itself, sorted.
  std::vector<std::string> selectors() const;

  // What alloc() makes for this class: the C++ type given at registration,
  // else the superclass's, else a plain Object.
  using Factory = Id (*)(Class*);
  Factory factory() const;
  void setFactory(Factory factory) { factory_ = factory; }

 private:
  friend class Runtime;
  std::string name_;
  Class* super_;
  bool meta_;
  Class* meta_class_ = nullptr;
  Factory factory_ = nullptr;
  std::unordered_map<std::string, Method> methods_;
};

class Object : public std::enable_shared_from_this<Object> {
 public:
  explicit Object(Class* isa) : isa_(isa) {}
  virtual ~Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  Class* isa() const { return isa_; }
  const std::string& className() const;

  // Instance variables by name (object_getInstanceVariable): a host class
  // declares what it keeps; the hooks read it by name.
  void setIvar(std::string_view name, std::any value);
  const std::any* ivar(std::string_view name) const;

 private:
  Class* isa_;
  std::map<std::string, std::any, std::less<>> ivars_;
};

// The class table of one process.
class Runtime {
 public:
  Runtime();
  ~Runtime();
  // Registers a class (and its metaclass); returns the existing class when
  // the name is taken. superclass may be empty for a root class.
  Class* registerClass(std::string_view name, std::string_view superclass = "");
  Class* getClass(std::string_view name) const;
  // The object that class methods are sent to.
  Id classObject(Class* cls);
  // Alive as long as this runtime's class tables are.
  std::weak_ptr<const void> aliveToken() const { return alive_; }

 private:
  std::shared_ptr<const void> alive_ = std::make_shared<int>(0);
  std::unordered_map<std::string, std::unique_ptr<Class>> classes_;
  std::unordered_map<Class*, Id> class_objects_;
};

// The runtime of the current process context.
Runtime& runtime();

inline Class* registerClass(std::string_view name,
                            std::string_view superclass = "") {
  return runtime().registerClass(name, superclass);
}
// objc_getClass: null when no class has that name.
inline Class* getClass(std::string_view name) {
  return runtime().getClass(name);
}
inline Id classObject(Class* cls) { return runtime().classObject(cls); }

// Ends an object's life the way the platform does: when the last reference
// goes, "dealloc" is sent as a message (so a replacement of it runs), inside
// the process the object was made in, then the C++ object is destroyed.
// The receiver passed to dealloc does not own the object: an implementation
// must not keep it. Nothing is sent once the object's process has cleared its
// class tables.
class Deallocator {
 public:
  Deallocator();
  void operator()(Object* object) const;

 private:
  std::weak_ptr<const void> runtime_alive_;
  platform::Process* process_;
};

// Creates an instance of a C++ type T (derived from Object) with class cls.
// It is an initialised C++ object; for the platform's two-step creation
// (alloc, then an initialiser message that may answer another object or nil)
// see alloc() and make() in platform/runtime/message.h.
template <typename T = Object, typename... Args>
std::shared_ptr<T> create(Class* cls, Args&&... args) {
  return std::shared_ptr<T>(new T(cls, std::forward<Args>(args)...),
                            Deallocator());
}

// Registers a class whose instances alloc() makes as C++ type T.
template <typename T>
Class* registerClass(std::string_view name, std::string_view superclass = "") {
  Class* cls = runtime().registerClass(name, superclass);
  cls->setFactory([](Class* c) -> Id { return create<T>(c); });
  return cls;
}

// Adds or overwrites a method on cls (class_addMethod / class_replaceMethod).
template <typename Sig>
void addMethod(Class* cls, std::string_view selector, Imp<Sig> imp) {
  cls->setMethod(
      selector,
      Method{typeid(Sig), std::make_shared<const Imp<Sig>>(std::move(imp))});
}

// Thrown (as a platform exception) when a method is looked up or replaced
// with a signature other than the one it was registered with.
[[noreturn]] void raiseSignatureMismatch(const Class* cls,
                                         std::string_view selector);

// Looks up the implementation a message to an instance of cls would run.
// Returns null when the class does not respond; raises on a signature
// mismatch.
// The result keeps the implementation alive even if it is replaced while it
// runs.
template <typename Sig>
std::shared_ptr<const Imp<Sig>> lookup(const Class* cls,
                                       std::string_view selector) {
  const Method* m = cls ? cls->findMethod(selector) : nullptr;
  if (!m) return nullptr;
  if (m->signature != typeid(Sig)) raiseSignatureMismatch(cls, selector);
  return std::static_pointer_cast<const Imp<Sig>>(m->imp);
}

// MSHookMessageEx: replaces cls's implementation of selector and returns the
// one it replaced (possibly inherited from a superclass), which stays
// callable. Subclasses that inherit the method see the replacement.
// Returns an empty function when the class did not respond at all; the
// replacement is installed anyway.
template <typename Sig>
Imp<Sig> hookMessage(Class* cls, std::string_view selector,
                     Imp<Sig> replacement) {
  Imp<Sig> original;
  if (auto prev = lookup<Sig>(cls, selector)) original = *prev;
  addMethod<Sig>(cls, selector, std::move(replacement));
  return original;
}

// respondsToSelector:
bool respondsTo(const Id& object, std::string_view selector);
bool respondsTo(const Object* object, std::string_view selector);

// Sends a message. Raises the platform's unrecognized-selector exception when
// the receiver does not respond and a signature mismatch exception when the
// method was registered with another signature. A message to nil does
// nothing and returns R{}.
template <typename R, typename... A>
R send(const Id& receiver, std::string_view selector, A... args) {
  if (!receiver) {
    if constexpr (std::is_void_v<R>) {
      return;
    } else {
      return R{};
    }
  }
  auto imp = lookup<R(A...)>(receiver->isa(), selector);
  if (!imp)
    raiseUnrecognizedSelector(receiver->className(), std::string(selector),
                              receiver->isa()->isMetaClass());
  return (*imp)(receiver, std::move(args)...);
}

// The value of an instance variable when it exists and holds a T.
template <typename T>
std::optional<T> getIvar(const Object* object, std::string_view name) {
  if (!object) return std::nullopt;
  const std::any* v = object->ivar(name);
  if (!v) return std::nullopt;
  if (const T* t = std::any_cast<T>(v)) return *t;
  return std::nullopt;
}
template <typename T>
std::optional<T> getIvar(const Id& object, std::string_view name) {
  return getIvar<T>(object.get(), name);
}

// Downcast of a host object to its C++ type; null when it is not one.
template <typename T>
std::shared_ptr<T> as(const Id& object) {
  return std::dynamic_pointer_cast<T>(object);
}

}  // namespace zv::rt
