// Feeds arbitrary bytes as the standard input of `zorvel area` (one number
// a line; the first byte picks the questions) and answers each line as the
// command does, from a small database with national, long-form-only and
// service-number records: a line that is not UTF-8 or has no keypad
// character is not looked up; every answer is none or non-empty UTF-8 (so
// a JSON line carries it unchanged), and asking again - from the one-entry
// cache, and after another number - gives the same answer.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "area/area_compiler.h"
#include "area/area_loader.h"
#include "core/number_utils.h"
#include "fuzz/fuzz_device.h"
#include "platform/utf8.h"

namespace {

constexpr char kLinesSource[] =
    "@country\t86\n@trunk\t0\n@access\t00\n@min\t3\n@max\t12\n"
    "@separator\t\\x20\n"
    "10\t北京市\t固话\n"
    "21\t上海市\t固话\tlong\n"
    "755\t广东省深圳市\t固话\tlong\n"
    "1008\t中国移动客服\t\tlen=5\n"
    "1380013\t北京市\t中国移动\n"
    "13900\t\t中国移动\n"
    "1391234\t江苏省南京市\t中国移动\n";

std::string linesDatabase(const std::string& root) {
  const std::string path = root + "/area-lines.db";
  std::ofstream(path, std::ios::binary | std::ios::trunc)
      << zv::area::compile(zv::area::parseSource(kLinesSource, "lines"));
  return path;
}

void checkAnswer(const std::optional<std::string>& answer) {
  if (answer && (answer->empty() || !zv::isValidUtf8(*answer))) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  auto& d = zv::fuzz::device();
  static const std::string database = linesDatabase(d.root);
  zv::fuzz::Bytes in(data, size);
  const uint8_t ask = in.byte();
  const bool name = ask & 1, type = ask & 2, alone = ask & 4;
  const std::string_view text = in.rest();
  d.phone->run([&] {
    // Only the database answers (other targets of a replay may have left
    // overrides), and nothing cached from before.
    std::filesystem::remove(d.root + zv::ZVAreaLoader::kCustomAreaPath);
    auto loader = zv::ZVAreaLoader::sharedInstance();
    loader->unloadData();
    loader->setDatabaseFile(database);
    loader->loadData();
    (void)loader->getArea("0", true, false, false);
    size_t start = 0;
    while (start < text.size()) {
      size_t end = text.find('\n', start);
      if (end == std::string_view::npos) end = text.size();
      std::string line(text.substr(start, end - start));
      start = end + 1;
      if (!line.empty() && line.back() == '\r') line.pop_back();
      if (!zv::isValidUtf8(line) || zv::keypadString(line).empty()) continue;
      const auto area = loader->getArea(line, name, type, alone);
      checkAnswer(area);
      if (loader->getArea(line, name, type, alone) != area) std::abort();
      checkAnswer(loader->getArea(line, true, false, alone));
      checkAnswer(loader->getArea(line + "1", false, true, alone));
      if (loader->getArea(line, name, type, alone) != area) std::abort();
    }
  });
  return 0;
}
