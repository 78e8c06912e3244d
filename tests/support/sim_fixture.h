// A simulated world with its own temporary device root, for tests.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <string>

#include "platform/sim/sim_platform.h"
#include "platform/ui/image.h"

namespace zv::testing {

// A fresh, empty device root under the test temp folder.
inline std::string freshRoot() {
  static std::atomic<int> counter{0};
  const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
  std::string name =
      info ? std::string(info->test_suite_name()) + "." + info->name() : "root";
  for (char& c : name)
    if (c == '/') c = '_';
  auto dir = std::filesystem::path(::testing::TempDir()) /
             ("zv-" + std::to_string(::getpid()) + "-" + name + "-" +
              std::to_string(counter++));
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  return dir.string();
}

// A fresh device root, removed with everything in it when the owner goes.
class TempRoot {
 public:
  TempRoot() : path_(freshRoot()) {}
  ~TempRoot() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  TempRoot(const TempRoot&) = delete;
  TempRoot& operator=(const TempRoot&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// Whether `image` has pixels and every one of them is `colour`.
inline bool allPixels(const ui::ImagePtr& image, ui::Pixel colour) {
  if (!image || image->empty()) return false;
  for (int y = 0; y < image->pixelHeight(); ++y)
    for (int x = 0; x < image->pixelWidth(); ++x)
      if (!(image->pixel(x, y) == colour)) return false;
  return true;
}

class SimTest : public ::testing::Test {
 protected:
  SimTest() : root_(freshRoot()), world_(root_) {}
  ~SimTest() override {
    std::error_code ec;
    std::filesystem::remove_all(root_, ec);
  }
  // Writes text to a device path under the root.
  void writeDeviceFile(const std::string& devicePath, const std::string& text);

  std::string root_;
  platform::SimWorld world_;
};

inline void SimTest::writeDeviceFile(const std::string& devicePath,
                                     const std::string& text) {
  auto path = std::filesystem::path(root_ + devicePath);
  std::filesystem::create_directories(path.parent_path());
  FILE* f = std::fopen(path.c_str(), "wb");
  ASSERT_NE(f, nullptr);
  std::fwrite(text.data(), 1, text.size(), f);
  std::fclose(f);
}

}  // namespace zv::testing
