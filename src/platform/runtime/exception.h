// The platform's exception object: a name and a reason. Anything else thrown
// inside a hook counts as "some other object" for the exception guard.
#pragma once

#include <stdexcept>
#include <string>

namespace zv::rt {

class Exception : public std::exception {
 public:
  Exception(std::string name, std::string reason)
      : name_(std::move(name)), reason_(std::move(reason)) {
    what_ = name_ + ": " + reason_;
  }
  const std::string& name() const { return name_; }
  const std::string& reason() const { return reason_; }
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  std::string name_, reason_, what_;
};

// Raises the exception that the platform raises for an unknown selector.
[[noreturn]] void raiseUnrecognizedSelector(const std::string& className,
                                            const std::string& selector,
                                            bool classMethod);

}  // namespace zv::rt
