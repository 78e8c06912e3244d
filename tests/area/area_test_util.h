// Helpers for the area tests: compile a source text (written with writeFile),
// hold an open reader handle on it, and ask the area service of a
// simulated process.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "area/area_compiler.h"
#include "area/area_file.h"
#include "area/area_loader.h"
#include "support/device_files.h"
#include "support/sim_fixture.h"

namespace zv::testing {

inline std::string compileText(const std::string& text) {
  return area::compile(area::parseSource(text, "test"), "test");
}

struct AreaHandle {
  ZVAreaFile* h = nullptr;
  AreaHandle(const std::string& path, unsigned limit = 10240)
      : h(zvarea_load(path.c_str(), limit)) {}
  ~AreaHandle() { zvarea_unload(h); }
  AreaHandle(const AreaHandle&) = delete;
  AreaHandle& operator=(const AreaHandle&) = delete;
  // The lookup as a string; "<null>" for no result.
  std::string get(const char* number, int flags) const {
    const char* r = zvarea_get(h, number, flags);
    return r ? std::string(r) : "<null>";
  }
};

// The area service's answer in `proc`; "<nil>" for none.
inline std::string serviceArea(platform::SimProcess& proc,
                               std::string_view number, bool name, bool type,
                               bool alone = true) {
  return proc.run([&] {
    auto a = ZVAreaLoader::sharedInstance()->getArea(number, name, type, alone);
    return a ? *a : "<nil>";
  });
}

// A small China-like database: country 86, trunk 0, access 00.
inline const char* kSmallSource =
    "@separator\t\\x20\n@access\t00\n@country\t86\n@trunk\t0\n"
    "@min\t2\n@max\t12\n"
    "10\tBeijing\tFixed\tlong\n"
    "139\t\tMobile\n"
    "1391234\tNanjing\tMobile\n"
    "1391\tJiangsu\tMobile\n"
    "755\tShenzhen\tFixed\tlong\n"
    "10086\tHotline\t\tlen=5\n"
    "110\tPolice\t\tlen=4\n";

}  // namespace zv::testing
