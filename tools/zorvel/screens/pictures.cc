#include "tools/zorvel/screens/pictures.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "tools/zorvel/command.h"
#include "tools/zorvel/libraries.h"

namespace zv::cli {
namespace fs = std::filesystem;

void addPngOption(CLI::App& command, std::string& dir) {
  command.add_option("--png", dir,
                     "draw the screen after each action into "
                     "DIR/NNN-ACTION.png (DIR is made when missing)");
}

std::string pictureName(int index, const std::string& action) {
  char number[16];
  std::snprintf(number, sizeof number, "%03d-", index);
  std::string name = number;
  // Text outside ASCII (a contact's Chinese name) is kept as it is: UTF-8
  // bytes never hold '/' or NUL, and a name that is not valid UTF-8 is
  // still a valid file name.
  for (char c : action) {
    const auto u = static_cast<unsigned char>(c);
    name += (u >= 0x80 || std::isalnum(u) || c == '.' || c == '-' || c == '_')
                ? c
                : '_';
  }
  return name + ".png";
}

Pictures::Pictures(const std::string& dir) : dir_(dir) {
  if (dir.empty()) return;
  std::error_code ec;
  fs::create_directories(dir, ec);
  if (ec || !fs::is_directory(dir))
    throw UsageError("--png: cannot make directory " + dir + ": " +
                     (ec ? ec.message() : "not a directory"));
  if (access(dir.c_str(), W_OK | X_OK) != 0)
    throw UsageError("--png: cannot write to " + dir + ": " +
                     std::strerror(errno));
  library_ = openBesideProgram("libzvrender.so", "--png");
  auto create = reinterpret_cast<render::Renderer* (*)()>(
      entryOf(library_, "zvCreateRenderer", "--png"));
  renderer_.reset(create());
}

Pictures::~Pictures() {
  // The renderer's code lives in the library: it goes first. The library
  // stays mapped (fontconfig and Pango keep process-wide state in it).
  renderer_.reset();
}

std::string Pictures::take(const std::string& action,
                           const std::function<render::Scene()>& make) {
  if (!renderer_) return "";
  ++count_;
  return save(pictureName(count_, action), renderer_->png(make()));
}

std::string Pictures::save(const std::string& name, const std::string& png) {
  const std::string path = (fs::path(dir_) / name).string();
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(png.data(), static_cast<std::streamsize>(png.size()));
  out.close();
  if (!out) throw CommandError("cannot write picture " + path);
  return path;
}

void Pictures::addTo(nlohmann::ordered_json& screen, const std::string& path) {
  if (!path.empty()) screen["picture"] = path;
}

std::string Pictures::line(const std::string& path) {
  return path.empty() ? "" : "  picture: " + path + "\n";
}

}  // namespace zv::cli
