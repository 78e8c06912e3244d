#include "platform/runtime/object.h"

#include <algorithm>

#include "platform/process.h"

namespace zv::rt {

void raiseUnrecognizedSelector(const std::string& className,
                               const std::string& selector, bool classMethod) {
  throw Exception("NSInvalidArgumentException",
                  std::string(classMethod ? "+[" : "-[") + className + " " +
                      selector + "]: unrecognized selector sent to " +
                      (classMethod ? "class" : "instance"));
}

void raiseSignatureMismatch(const Class* cls, std::string_view selector) {
  throw Exception("NSInvalidArgumentException",
                  "-[" + cls->name() + " " + std::string(selector) +
                      "]: called with a signature it was not defined with");
}

bool Class::isSubclassOf(const Class* other) const {
  for (const Class* c = this; c; c = c->super_)
    if (c == other) return true;
  return false;
}

const Method* Class::ownMethod(std::string_view selector) const {
  auto it = methods_.find(std::string(selector));
  return it == methods_.end() ? nullptr : &it->second;
}

const Method* Class::findMethod(std::string_view selector) const {
  for (const Class* c = this; c; c = c->super_)
    if (const Method* m = c->ownMethod(selector)) return m;
  return nullptr;
}

void Class::setMethod(std::string_view selector, Method method) {
  methods_[std::string(selector)] = std::move(method);
}

std::vector<std::string> Class::selectors() const {
  std::vector<std::string> out;
  for (const auto& [sel, m] : methods_) out.push_back(sel);
  std::sort(out.begin(), out.end());
  return out;
}

Class::Factory Class::factory() const {
  for (const Class* c = this; c; c = c->super_)
    if (c->factory_) return c->factory_;
  return [](Class* c) -> Id { return create<Object>(c); };
}

Deallocator::Deallocator()
    : runtime_alive_(platform::Process::current().runtime().aliveToken()),
      process_(&platform::Process::current()) {}

void Deallocator::operator()(Object* object) const {
  if (runtime_alive_.expired()) {
    delete object;
    return;
  }
  // The object ends inside its own process, whichever thread or process let
  // go of it last: its dealloc and its C++ destructor see that process.
  platform::Process::Scope scope(*process_);
  try {
    if (auto imp = lookup<void()>(object->isa(), "dealloc"))
      (*imp)(Id(Id(), object));
  } catch (...) {
    // The platform's dealloc cannot fail; a throwing replacement has
    // already been reported by its guard.
  }
  delete object;
}

const std::string& Object::className() const { return isa_->name(); }

void Object::setIvar(std::string_view name, std::any value) {
  auto it = ivars_.find(name);
  if (it == ivars_.end())
    ivars_.emplace(std::string(name), std::move(value));
  else
    it->second = std::move(value);
}

const std::any* Object::ivar(std::string_view name) const {
  auto it = ivars_.find(name);
  return it == ivars_.end() ? nullptr : &it->second;
}

Runtime::Runtime() = default;

Runtime::~Runtime() {
  // Objects that die with the method tables (a hook's closure may hold the
  // last reference to a controller) must not look into tables being torn
  // down: from here on nothing is sent dealloc.
  alive_.reset();
  // Class objects refer to classes; drop them first.
  class_objects_.clear();
}

Class* Runtime::registerClass(std::string_view name,
                              std::string_view superclass) {
  if (Class* existing = getClass(name)) return existing;
  Class* super = superclass.empty() ? nullptr : getClass(superclass);
  auto cls = std::make_unique<Class>(std::string(name), super, false);
  // The metaclass chain mirrors the class chain so class methods inherit.
  auto meta = std::make_unique<Class>(
      std::string(name), super ? super->metaClass() : nullptr, true);
  cls->meta_class_ = meta.get();
  Class* out = cls.get();
  classes_.emplace(std::string(name), std::move(cls));
  classes_.emplace("+" + std::string(name), std::move(meta));
  return out;
}

Class* Runtime::getClass(std::string_view name) const {
  if (!name.empty() && name.front() == '+') return nullptr;
  auto it = classes_.find(std::string(name));
  return it == classes_.end() ? nullptr : it->second.get();
}

Id Runtime::classObject(Class* cls) {
  if (!cls) return nullptr;
  auto& slot = class_objects_[cls];
  if (!slot) slot = std::make_shared<Object>(cls->metaClass());
  return slot;
}

Runtime& runtime() { return platform::Process::current().runtime(); }

bool respondsTo(const Object* object, std::string_view selector) {
  return object && object->isa()->findMethod(selector) != nullptr;
}

bool respondsTo(const Id& object, std::string_view selector) {
  return respondsTo(object.get(), selector);
}

}  // namespace zv::rt
