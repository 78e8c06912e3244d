// The springboard's lock button on the application class: the selector of
// the process's system generation (_lockButtonUp:fromSource: from 8.0 on,
// _lockButtonUpFromSource: below) locks the screen, which puts the Control
// Centre away.
#pragma once

#include "platform/runtime/object.h"

namespace zv::hosts {

// Defines the lock-button selector on `application` (the springboard's
// application class).
void registerLockButton(rt::Class* application);

}  // namespace zv::hosts
