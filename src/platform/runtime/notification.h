// The platform's notification object ("NSNotification": `name`, `object`),
// for host methods that take one, such as a call screen's handler of the
// call-status notification whose object is the call.
#pragma once

#include <string>

#include "platform/runtime/message.h"
#include "platform/runtime/object.h"

namespace zv::rt {

namespace msg {
struct NSNotification {
  static constexpr std::string_view kName = "NSNotification";
  static constexpr Message<std::string()> name{kName, "name"};
  static constexpr Message<Id()> object{kName, "object"};
};
}  // namespace msg

// A notification named `name` about `object` (may be nil), in the current
// process; registers the class there on first use.
Id makeNotification(std::string name, Id object);

}  // namespace zv::rt
