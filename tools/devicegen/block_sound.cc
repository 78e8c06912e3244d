#include "devicegen/block_sound.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>

namespace zv::devicegen {
namespace {

constexpr double kSampleRate = 22050;
// Two notes a fifth apart, each with a short attack and a decaying tail.
constexpr double kNotes[] = {880.0, 1318.5};
constexpr double kNoteSeconds = 0.14;

// CAF stores every header field big-endian.
void putBig(std::string& out, uint64_t value, int bytes) {
  for (int i = bytes - 1; i >= 0; --i)
    out.push_back(static_cast<char>((value >> (8 * i)) & 0xff));
}

void putChunkHeader(std::string& out, const char type[4], int64_t size) {
  out.append(type, 4);
  putBig(out, static_cast<uint64_t>(size), 8);
}

std::string samples() {
  std::string pcm;
  const int perNote = static_cast<int>(kSampleRate * kNoteSeconds);
  for (double frequency : kNotes) {
    for (int i = 0; i < perNote; ++i) {
      const double t = i / kSampleRate;
      const double attack = std::min(1.0, t / 0.005);
      const double envelope = attack * std::exp(-t * 18.0);
      const double s =
          0.6 * envelope * std::sin(2 * std::numbers::pi * frequency * t);
      const auto v = static_cast<int16_t>(std::lround(s * 32767));
      // Sample data is little-endian, as the format description says.
      pcm.push_back(static_cast<char>(v & 0xff));
      pcm.push_back(static_cast<char>((v >> 8) & 0xff));
    }
  }
  return pcm;
}

}  // namespace

std::string blockReminderSound() {
  std::string out = "caff";
  putBig(out, 1, 2);  // file version
  putBig(out, 0, 2);  // file flags

  putChunkHeader(out, "desc", 32);
  uint64_t rateBits;
  static_assert(sizeof rateBits == sizeof kSampleRate);
  std::memcpy(&rateBits, &kSampleRate, sizeof rateBits);
  putBig(out, rateBits, 8);
  out += "lpcm";
  putBig(out, 2, 4);   // format flags: little-endian integer samples
  putBig(out, 2, 4);   // bytes per packet
  putBig(out, 1, 4);   // frames per packet
  putBig(out, 1, 4);   // channels per frame
  putBig(out, 16, 4);  // bits per channel

  const std::string pcm = samples();
  putChunkHeader(out, "data", static_cast<int64_t>(4 + pcm.size()));
  putBig(out, 0, 4);  // edit count
  out += pcm;
  return out;
}

}  // namespace zv::devicegen
