// How the commands a user runs grow with the address book: `zorvel search`
// (a T9 search of the device's contacts), `zorvel phone tab:recents` (the
// Recents list of 100 calls with each row's contact), the Phone app's keypad
// and the Contacts app's list on generated devices of
// 1,000 and 30,000 contacts (other sizes can be given as arguments: the
// first is the base). Each command runs as a user would start it, several
// times; the median wall-clock time is printed with its ratio to the base
// size's, measured in the same run. Goal: within 8x at 30,000 contacts.
//
// Also the property-list reader: a 40,000-entry list of recipients read in
// binary and in XML (the peer), with their ratio; reading must stay linear
// in the file's size, whatever its form.
#include <plist/plist.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "devicegen/device_image.h"
#include "platform/plist.h"

namespace {

double wallSeconds() {
  return std::chrono::duration<double>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

double median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

// Median time of `command` over `reps` runs after one warm-up run (which
// builds what the command caches on the device); exits on a failed run.
double timeCommand(const std::string& command, int reps) {
  std::vector<double> times;
  for (int i = 0; i <= reps; ++i) {
    const double start = wallSeconds();
    const int status = std::system((command + " >/dev/null").c_str());
    if (status != 0) {
      std::fprintf(stderr, "bench_scale: failed: %s\n", command.c_str());
      std::exit(1);
    }
    if (i > 0) times.push_back(wallSeconds() - start);
  }
  return median(times);
}

struct Times {
  double search = 0, recents = 0, keypad = 0, contacts = 0;
};

Times runSize(int contacts) {
  const std::string root = (std::filesystem::temp_directory_path() /
                            ("zv-bench-scale-" + std::to_string(contacts)))
                               .string();
  zv::DeviceImageOptions options;
  options.contacts = contacts;
  options.calls = 100;
  options.tableFile = std::string(ZV_SOURCE_DIR) + "/data/table/PinYin.txt";
  zv::createDeviceImage(root, options);
  const std::string zorvel = std::string(ZV_BINARY_DIR) + "/zorvel";
  Times t;
  t.search = timeCommand(zorvel + " search --root '" + root + "' 6 4", 5);
  t.recents = timeCommand(
      zorvel + " phone --root '" + root + "' --os 8.1 tab:recents", 5);
  t.keypad = timeCommand(
      zorvel + " phone --root '" + root + "' --os 8.1 tab:keypad", 5);
  t.contacts =
      timeCommand(zorvel + " contacts --root '" + root + "' wait:1", 5);
  std::filesystem::remove_all(root);
  std::printf(
      "%6d contacts: search %.3f s, recents %.3f s, keypad %.3f s, contacts "
      "list %.3f s\n",
      contacts, t.search, t.recents, t.keypad, t.contacts);
  return t;
}

// A recipients file of `entries` lists of one recipient each, in binary and
// in XML; times to read each, median of `reps`.
void runPlist(int entries, int reps) {
  zv::Array lists;
  for (int i = 0; i < entries; ++i)
    lists.push_back(zv::Array{zv::Value(std::to_string(13800000000LL + i)),
                              zv::Value("Name"), zv::Value("mobile")});
  const std::string xml =
      zv::plist::toXml(zv::Value(zv::Dict{{"All", zv::Value(lists)}}));
  plist_t node = nullptr;
  plist_from_xml(xml.data(), static_cast<uint32_t>(xml.size()), &node);
  char* bin = nullptr;
  uint32_t length = 0;
  plist_to_bin(node, &bin, &length);
  plist_free(node);
  const std::string binary(bin, length);
  free(bin);
  auto timeParse = [&](const std::string& bytes) {
    std::vector<double> times;
    for (int i = 0; i < reps; ++i) {
      const double start = wallSeconds();
      auto value = zv::plist::parse(bytes);
      times.push_back(wallSeconds() - start);
      if (!value) std::exit(1);
    }
    return median(times);
  };
  const double b = timeParse(binary), x = timeParse(xml);
  std::printf(
      "property list of %d entries: binary %.3f s, XML %.3f s, ratio %.2f\n",
      entries, b, x, b / x);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<int> sizes = {1000, 30000};
  if (argc > 1) {
    sizes.clear();
    for (int i = 1; i < argc; ++i) {
      sizes.push_back(std::atoi(argv[i]));
      if (sizes.back() <= 0) {
        std::fprintf(stderr, "bench_scale: bad size %s\n", argv[i]);
        return 2;
      }
    }
  }
  runPlist(40000, 3);
  std::vector<Times> times;
  for (int n : sizes) times.push_back(runSize(n));
  for (size_t i = 1; i < sizes.size(); ++i)
    std::printf(
        "%d vs %d contacts: search %.2fx, recents %.2fx, keypad %.2fx, "
        "contacts list %.2fx (goal 8x)\n",
        sizes[i], sizes[0], times[i].search / times[0].search,
        times[i].recents / times[0].recents, times[i].keypad / times[0].keypad,
        times[i].contacts / times[0].contacts);
  return 0;
}
