// Helper for the start-up routines: records the routine's name in the
// process's trace, then runs its body with exceptions swallowed (hooks
// installed before a failure stay installed).
#pragma once

#include "platform/process.h"

namespace zv {

template <typename Body>
void runStartup(const char* name, Body&& body) {
  platform::Process::current().startedModules.push_back(name);
  try {
    body();
  } catch (...) {
  }
}

}  // namespace zv
