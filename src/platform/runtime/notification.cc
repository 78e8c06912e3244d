#include "platform/runtime/notification.h"

#include <utility>

namespace zv::rt {
namespace {

class NotificationObject : public Object {
 public:
  using Object::Object;
  std::string name;
  Id object;
};

Class* notificationClass() {
  if (Class* existing = getClass(msg::NSNotification::kName)) return existing;
  Class* cls = registerClass<NotificationObject>(msg::NSNotification::kName);
  define(msg::NSNotification::name, [](const Id& self) {
    auto n = as<NotificationObject>(self);
    return n ? n->name : std::string();
  });
  define(msg::NSNotification::object, [](const Id& self) -> Id {
    auto n = as<NotificationObject>(self);
    return n ? n->object : nullptr;
  });
  return cls;
}

}  // namespace

Id makeNotification(std::string name, Id object) {
  auto n = create<NotificationObject>(notificationClass());
  n->name = std::move(name);
  n->object = std::move(object);
  return n;
}

}  // namespace zv::rt
