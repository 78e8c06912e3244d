#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/runtime/object.h"
#include "support/sim_fixture.h"

namespace zv {
namespace {

using rt::Id;
using ::testing::ThrowsMessage;

class RuntimeTest : public testing::SimTest {
 protected:
  RuntimeTest() {
    rt::addMethod<std::string(int)>(
        base_, "describe:", [](const Id& self, int n) {
          return self->className() + "#" + std::to_string(n);
        });
  }
  platform::SimProcess& host_ = world_.launch("com.apple.mobilephone");
  platform::Process::Scope scope_{host_.context()};
  rt::Class* base_ = rt::registerClass("Base");
  rt::Class* derived_ = rt::registerClass("Derived", "Base");
};

TEST_F(RuntimeTest, ClassesByName) {
  EXPECT_EQ(rt::getClass("Base"), base_);
  EXPECT_EQ(rt::getClass("Derived")->superclass(), base_);
  EXPECT_EQ(rt::getClass("Missing"), nullptr);
  EXPECT_EQ(rt::getClass("+Base"), nullptr);  // metaclasses are not classes
  EXPECT_EQ(rt::registerClass("Base"), base_);
  EXPECT_TRUE(derived_->isSubclassOf(base_));
  EXPECT_FALSE(base_->isSubclassOf(derived_));
  // Another process has its own class table.
  auto& other = world_.launch("com.apple.MobileSMS");
  other.run([] { EXPECT_EQ(rt::getClass("Base"), nullptr); });
}

TEST_F(RuntimeTest, SendsAndRespondsThroughTheSuperclassAndMetaclassChains) {
  Id d = rt::create(derived_);
  EXPECT_TRUE(rt::respondsTo(d, "describe:"));
  EXPECT_FALSE(rt::respondsTo(d, "describe"));
  EXPECT_FALSE(rt::respondsTo(Id(), "describe:"));
  EXPECT_EQ(rt::send<std::string>(d, "describe:", 3), "Derived#3");
  // A message to nil does nothing.
  EXPECT_EQ(rt::send<std::string>(Id(), "describe:", 3), "");
  // Class methods live on the metaclass.
  rt::addMethod<int()>(base_->metaClass(), "count",
                       [](const Id&) { return 7; });
  EXPECT_EQ(rt::send<int>(rt::classObject(derived_), "count"), 7);
  EXPECT_EQ(rt::classObject(base_), rt::classObject(base_));
  EXPECT_FALSE(rt::respondsTo(rt::create(base_), "count"));
  EXPECT_EQ(rt::classObject(nullptr), nullptr);
}

TEST_F(RuntimeTest, UnknownSelectorsAndWrongSignaturesRaise) {
  Id d = rt::create(derived_);
  EXPECT_THAT([&] { rt::send<void>(d, "missing"); },
              ThrowsMessage<rt::Exception>(
                  "NSInvalidArgumentException: -[Derived missing]: "
                  "unrecognized selector sent to instance"));
  EXPECT_THAT([&] { rt::send<void>(rt::classObject(base_), "missing"); },
              ThrowsMessage<rt::Exception>(
                  "NSInvalidArgumentException: +[Base missing]: "
                  "unrecognized selector sent to class"));
  EXPECT_THROW(rt::send<std::string>(d, "describe:", std::string("x")),
               rt::Exception);
  EXPECT_THROW((rt::hookMessage<void(int)>(base_, "describe:", {})),
               rt::Exception);
}

TEST_F(RuntimeTest, HookKeepsTheOriginalCallableAlsoWhenInherited) {
  Id b = rt::create(base_), d = rt::create(derived_);
  // Hooking the subclass replaces what it inherited; the superclass keeps
  // its own implementation.
  rt::Imp<std::string(int)> original;
  original = rt::hookMessage<std::string(int)>(
      derived_, "describe:", [&original](const Id& self, int n) {
        return "hooked " + original(self, n + 1);
      });
  ASSERT_TRUE(original);
  EXPECT_EQ(rt::send<std::string>(d, "describe:", 1), "hooked Derived#2");
  EXPECT_EQ(rt::send<std::string>(b, "describe:", 1), "Base#1");
  // Hooking the superclass is seen by a subclass that does not override.
  rt::Class* leaf = rt::registerClass("Leaf", "Base");
  rt::Imp<std::string(int)> baseOriginal;
  baseOriginal = rt::hookMessage<std::string(int)>(
      base_, "describe:", [&baseOriginal](const Id& self, int n) {
        return "B " + baseOriginal(self, n);
      });
  EXPECT_EQ(rt::send<std::string>(rt::create(leaf), "describe:", 0),
            "B Leaf#0");
  // A class that never responded gets no original, but the method anyway.
  auto none = rt::hookMessage<void()>(base_, "fresh", [](const Id&) {});
  EXPECT_FALSE(none);
  EXPECT_TRUE(rt::respondsTo(rt::create(leaf), "fresh"));
}

TEST_F(RuntimeTest, InstanceVariablesByNameAndType) {
  Id d = rt::create(derived_);
  d->setIvar("_number", std::string("10086"));
  d->setIvar("_count", 2);
  d->setIvar("_count", 3);
  EXPECT_EQ(rt::getIvar<std::string>(d, "_number"), "10086");
  EXPECT_EQ(rt::getIvar<int>(d, "_count"), 3);
  EXPECT_EQ(rt::getIvar<long>(d, "_count"), std::nullopt);
  EXPECT_EQ(rt::getIvar<int>(d, "_missing"), std::nullopt);
  EXPECT_EQ(rt::getIvar<int>(Id(), "_count"), std::nullopt);
}

}  // namespace
}  // namespace zv
