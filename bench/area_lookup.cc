// Lookups per second of zvarea_get on the China area database against
// libphonenumber's offline geocoder, on the same one million numbers drawn
// from the database's own prefixes (mobile, fixed line, service, unknown).
// Also reports the reader's heap for the open handle and the file size
// beside the size of the public data it was generated from.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <phonenumbers/geocoding/phonenumber_offline_geocoder.h>
#include <phonenumbers/phonenumberutil.h>
#include <unicode/locid.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "area/area_compiler.h"
#include "area/area_file.h"

namespace {

using Clock = std::chrono::steady_clock;

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

std::string digits(std::mt19937& rng, size_t n) {
  std::string s;
  for (size_t i = 0; i < n; ++i) s += char('0' + rng() % 10);
  return s;
}

// Numbers in the forms callers pass: mobile and fixed lines with "+86",
// fixed lines with the trunk prefix, service numbers, unknown numbers.
std::vector<std::string> drawNumbers(const zv::area::Source& source,
                                     size_t count) {
  std::vector<const zv::area::Record*> mobile, fixed, service;
  for (const auto& r : source.records) {
    if (r.exactLength) {
      service.push_back(&r);
    } else if (r.longForm) {
      fixed.push_back(&r);
    } else if (r.prefix.size() == 7 && !r.location.empty()) {
      mobile.push_back(&r);
    }
  }
  std::mt19937 rng(42);
  std::vector<std::string> numbers;
  numbers.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    switch (i % 8) {
      case 0:
      case 1:
      case 2:
      case 3: {
        const auto* r = mobile[rng() % mobile.size()];
        numbers.push_back((i % 2 ? "+86" : "") + r->prefix + digits(rng, 4));
        break;
      }
      case 4:
      case 5: {
        const auto* r = fixed[rng() % fixed.size()];
        std::string local = digits(rng, 10 - r->prefix.size());
        local[0] = char('2' + rng() % 7);
        numbers.push_back((i % 2 ? "+86" : "0") + r->prefix + local);
        break;
      }
      case 6:
        numbers.push_back(service[rng() % service.size()]->prefix.substr(
            0, service[0]->exactLength));
        break;
      default:
        numbers.push_back("+8614" + digits(rng, 9));
    }
  }
  return numbers;
}

size_t heapInUse() { return mallinfo2().uordblks; }

}  // namespace

int main() {
  const std::string sourcePath =
      std::string(ZV_SOURCE_DIR) + "/data/area/China.txt";
  zv::area::Source source =
      zv::area::parseSource(readFile(sourcePath), sourcePath);
  std::string bytes = zv::area::compile(source, sourcePath);
  std::string path = "/tmp/zv-bench-area-" + std::to_string(getpid());
  std::ofstream(path, std::ios::binary) << bytes;

  size_t before = heapInUse();
  zv::ZVAreaFile* area = zv::zvarea_load(path.c_str(), 10240);
  size_t heap = heapInUse() - before;
  if (!area) {
    std::fprintf(stderr, "cannot open %s\n", path.c_str());
    return 1;
  }

  const size_t kCount = 1000000;
  std::vector<std::string> numbers = drawNumbers(source, kCount);

  auto t0 = Clock::now();
  size_t found = 0;
  for (const auto& n : numbers) {
    const char* r = zv::zvarea_get(area, n.c_str(), 1 | 4);
    benchmark::DoNotOptimize(r);
    found += r != nullptr;
  }
  double ours =
      kCount / std::chrono::duration<double>(Clock::now() - t0).count();

  auto* util = i18n::phonenumbers::PhoneNumberUtil::GetInstance();
  std::vector<i18n::phonenumbers::PhoneNumber> parsed(kCount);
  for (size_t i = 0; i < kCount; ++i) util->Parse(numbers[i], "CN", &parsed[i]);
  i18n::phonenumbers::PhoneNumberOfflineGeocoder geocoder;
  icu::Locale zh("zh");
  auto t1 = Clock::now();
  size_t theirsFound = 0;
  for (const auto& pn : parsed) {
    std::string d = geocoder.GetDescriptionForNumber(pn, zh);
    theirsFound += !d.empty();
    benchmark::DoNotOptimize(d);
  }
  double theirs =
      kCount / std::chrono::duration<double>(Clock::now() - t1).count();

  uintmax_t publicSize = 0;
  for (const char* dir : {"geodata", "carrierdata"})
    for (const auto& e : std::filesystem::directory_iterator(
             std::string("/usr/lib/python3/dist-packages/phonenumbers/") + dir))
      if (e.is_regular_file()) publicSize += e.file_size();

  std::printf(
      "numbers            %zu (mobile 50%%, fixed 25%%, service 12.5%%, "
      "unknown 12.5%%)\n",
      kCount);
  std::printf("zvarea_get         %.0f lookups/s (%zu answered)\n", ours,
              found);
  std::printf("libphonenumber     %.0f lookups/s (%zu answered)\n", theirs,
              theirsFound);
  std::printf("ratio              %.1fx\n", ours / theirs);
  std::printf("handle heap        %zu bytes\n", heap);
  std::printf("database file      %zu bytes (source %zu bytes)\n", bytes.size(),
              readFile(sourcePath).size());
  std::printf(
      "public data        %ju bytes (python3-phonenumbers geodata + "
      "carrierdata, all countries)\n",
      publicSize);
  zv::zvarea_unload(area);
  std::filesystem::remove(path);
  return 0;
}
