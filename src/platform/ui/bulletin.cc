#include "platform/ui/bulletin.h"

#include <utility>

#include "platform/platform.h"

namespace zv::ui {
namespace {

class BulletinObject : public rt::Object {
 public:
  using rt::Object::Object;
  BulletinContent content;
};

const BulletinContent& contentOf(const rt::Id& self) {
  static const BulletinContent kNone;
  auto bulletin = rt::as<BulletinObject>(self);
  return bulletin ? bulletin->content : kNone;
}

}  // namespace

void registerBulletinClass(rt::Runtime& runtime) {
  if (runtime.getClass(kBulletinClass)) return;
  rt::Class* cls = runtime.registerClass(kBulletinClass);
  cls->setFactory(
      [](rt::Class* c) -> rt::Id { return rt::create<BulletinObject>(c); });
  using B = msg::BBBulletin;
  rt::define(runtime, B::title,
             [](const rt::Id& s) { return contentOf(s).title; });
  rt::define(runtime, B::sectionID,
             [](const rt::Id& s) { return contentOf(s).sectionID; });
  rt::define(runtime, B::context,
             [](const rt::Id& s) { return contentOf(s).context; });
  rt::define(runtime, B::date,
             [](const rt::Id& s) { return contentOf(s).date; });
}

rt::Id makeBulletin(BulletinContent content) {
  registerBulletinClass(rt::runtime());
  auto bulletin = rt::create<BulletinObject>(rt::getClass(kBulletinClass));
  bulletin->content = std::move(content);
  return bulletin;
}

void presentBulletin(const rt::Id& bulletin) {
  if (!bulletin) return;
  const std::string title = rt::send(bulletin, msg::BBBulletin::title);
  const std::string section = rt::send(bulletin, msg::BBBulletin::sectionID);
  platform::current().showBanner(section, title);
}

}  // namespace zv::ui
