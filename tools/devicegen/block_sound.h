// The blocked-call reminder sound the device image installs as
// "/Library/Zorvel/block.caf": a short two-note chime, made here rather than
// taken from anywhere, as a Core Audio Format file (mono 16-bit linear PCM)
// that the platform's system-sound service accepts.
#pragma once

#include <string>

namespace zv::devicegen {

// The whole file's bytes; the same every time.
std::string blockReminderSound();

}  // namespace zv::devicegen
