// --png DIR for the session commands: after each action the session draws
// the simulated screen into DIR/NNN-ACTION.png (NNN counting actions from
// 001, the action's characters other than letters, digits, '.', '-' and '_'
// turned into '_') and names the file in its output ("picture" in JSON, a
// "  picture: PATH" line in text).
//
// The drawing library (libzvrender) is loaded when the first Pictures with
// a directory is made, so a session without --png never maps it. The
// directory is made when missing and checked for writing at once: a
// directory that cannot be written is a usage error before any action runs.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "platform/render/renderer.h"

namespace zv::cli {

void addPngOption(CLI::App& command, std::string& dir);

class Pictures {
 public:
  // An empty `dir` turns pictures off.
  explicit Pictures(const std::string& dir);
  ~Pictures();
  Pictures(const Pictures&) = delete;
  Pictures& operator=(const Pictures&) = delete;

  bool enabled() const { return renderer_ != nullptr; }
  // Draws the scene `make` builds (run it in the host's process) as the
  // picture after `action`; returns its path, "" when pictures are off.
  // A file that cannot be written is a CommandError.
  std::string take(const std::string& action,
                   const std::function<render::Scene()>& make);
  // Writes an already drawn picture under `name` (tour pages).
  std::string save(const std::string& name, const std::string& png);
  const std::string& dir() const { return dir_; }

  // The picture's place in a session's output.
  static void addTo(nlohmann::ordered_json& screen, const std::string& path);
  static std::string line(const std::string& path);

 private:
  std::string dir_;
  int count_ = 0;
  void* library_ = nullptr;
  std::unique_ptr<render::Renderer> renderer_;
};

// NNN-ACTION.png for the `index`th action (from 1).
std::string pictureName(int index, const std::string& action);

}  // namespace zv::cli
