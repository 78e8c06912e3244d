#include "tools/zorvel/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "tools/zorvel/command.h"

namespace zv::cli {
namespace {

std::string& pending() {
  static std::string buffer;
  return buffer;
}
bool& failed() {
  static bool value = false;
  return value;
}
int& failure() {
  static int value = 0;
  return value;
}

bool writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t n = ::write(fd, bytes.data(), bytes.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    bytes.remove_prefix(static_cast<size_t>(n));
  }
  return true;
}

void flushPending() {
  // Anything printed through iostreams or stdio first.
  std::cout.flush();
  if (!std::cout && !failed()) {
    failed() = true;
    failure() = errno ? errno : EIO;
  }
  std::fflush(stdout);
  if (std::ferror(stdout) && !failed()) {
    failed() = true;
    failure() = errno ? errno : EIO;
  }
  if (!failed() && !writeAll(STDOUT_FILENO, pending())) {
    failed() = true;
    failure() = errno;
  }
  pending().clear();
}

// Length of the well-formed UTF-8 sequence at the start of `s`, 0 if none.
size_t sequenceLength(std::string_view s) {
  const auto b = [&](size_t i) { return static_cast<unsigned char>(s[i]); };
  const unsigned char c = b(0);
  if (c < 0x80) return 1;
  size_t n = c >= 0xC2 && c <= 0xDF   ? 2
             : c >= 0xE0 && c <= 0xEF ? 3
             : c >= 0xF0 && c <= 0xF4 ? 4
                                      : 0;
  if (n == 0 || s.size() < n) return 0;
  for (size_t i = 1; i < n; ++i)
    if ((b(i) & 0xC0) != 0x80) return 0;
  // No overlong forms, surrogates or code points above U+10FFFF.
  if (c == 0xE0 && b(1) < 0xA0) return 0;
  if (c == 0xED && b(1) > 0x9F) return 0;
  if (c == 0xF0 && b(1) < 0x90) return 0;
  if (c == 0xF4 && b(1) > 0x8F) return 0;
  return n;
}

// Follows symbolic links from `path` to the name that is finally written.
std::filesystem::path resolveLinks(std::filesystem::path path) {
  namespace fs = std::filesystem;
  for (int hops = 0; hops < 40; ++hops) {
    std::error_code ec;
    if (!fs::is_symlink(fs::symlink_status(path, ec))) return path;
    fs::path target = fs::read_symlink(path, ec);
    if (ec)
      throw CommandError("cannot write " + path.string() + ": " + ec.message());
    path = target.is_absolute() ? target : path.parent_path() / target;
  }
  throw CommandError("cannot write " + path.string() +
                     ": too many levels of symbolic links");
}

[[noreturn]] void cannotWrite(const std::string& path, int error) {
  throw CommandError("cannot write " + path + ": " + std::strerror(error));
}

void writeInPlace(const std::string& path, std::string_view bytes) {
  int fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (fd < 0) cannotWrite(path, errno);
  bool ok = writeAll(fd, bytes);
  int error = errno;
  if (::close(fd) != 0 && ok) ok = false, error = errno;
  if (!ok) cannotWrite(path, error);
}

void replaceRegular(const std::string& path, std::string_view bytes,
                    const struct stat* existing) {
  std::string tmp = path + ".XXXXXX";
  int fd = ::mkstemp(tmp.data());
  if (fd < 0) cannotWrite(path, errno);
  // The new file keeps the old one's permissions; a new one gets the usual
  // 0666 less the umask.
  mode_t mode = 0666;
  if (existing) {
    mode = existing->st_mode & 07777;
  } else {
    mode_t mask = ::umask(0);
    ::umask(mask);
    mode &= ~mask;
  }
  bool ok = ::fchmod(fd, mode) == 0 && writeAll(fd, bytes) && ::fsync(fd) == 0;
  int error = errno;
  if (::close(fd) != 0 && ok) ok = false, error = errno;
  if (ok && ::rename(tmp.c_str(), path.c_str()) != 0) ok = false, error = errno;
  if (!ok) {
    ::unlink(tmp.c_str());
    cannotWrite(path, error);
  }
}

}  // namespace

void writeOut(std::string_view bytes) {
  pending().append(bytes);
  if (pending().size() >= (1 << 16)) {
    flushPending();
    if (failed()) finishOut();
  }
}

void finishOut() {
  flushPending();
  if (!failed()) return;
  if (failure() == EPIPE) throw CommandError("", kClosedPipe);
  throw CommandError(std::string("cannot write output: ") +
                     std::strerror(failure()));
}

std::string jsonLine(const nlohmann::ordered_json& value) {
  return value.dump(-1, ' ', false,
                    nlohmann::ordered_json::error_handler_t::replace) +
         "\n";
}

void writeFileSafely(const std::string& path, std::string_view bytes) {
  if (path == "-") {
    writeOut(bytes);
    finishOut();
    return;
  }
  const std::string target = resolveLinks(path).string();
  struct stat st;
  if (::stat(target.c_str(), &st) != 0) {
    if (errno != ENOENT) cannotWrite(path, errno);
    replaceRegular(target, bytes, nullptr);
  } else if (S_ISREG(st.st_mode)) {
    replaceRegular(target, bytes, &st);
  } else if (S_ISDIR(st.st_mode)) {
    cannotWrite(path, EISDIR);
  } else {
    writeInPlace(target, bytes);
  }
}

bool validUtf8(std::string_view text) {
  while (!text.empty()) {
    size_t n = sequenceLength(text);
    if (n == 0) return false;
    text.remove_prefix(n);
  }
  return true;
}

std::string replaceInvalidUtf8(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    size_t n = sequenceLength(text);
    if (n == 0) {
      out += "\xEF\xBF\xBD";
      n = 1;
    } else {
      out.append(text.substr(0, n));
    }
    text.remove_prefix(n);
  }
  return out;
}

}  // namespace zv::cli
