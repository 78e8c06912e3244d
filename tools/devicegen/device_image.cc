#include "devicegen/device_image.h"

#include <filesystem>
#include <stdexcept>
#include <utility>
#include <vector>

#include "devicegen/block_sound.h"
#include "devicegen/device_image_pictures.h"
#include "platform/db/platform_schema.h"
#include "platform/plist.h"

namespace zv {
namespace device_glyphs {
// The Control Centre glyph files (device_image_glyphs.cc).
std::vector<std::pair<std::string, std::string>> controlCenterGlyphs();
}  // namespace device_glyphs
namespace {

namespace fs = std::filesystem;
namespace ps = platform_schema;

// Side of the placeholder avatar in pixels (scaled down by its users).
constexpr int kPlaceholderSize = 120;

std::string hostPath(const std::string& root, const char* devicePath) {
  return (fs::path(root) / fs::path(devicePath).relative_path()).string();
}

void makeParent(const std::string& file) {
  std::error_code ec;
  fs::create_directories(fs::path(file).parent_path(), ec);
  if (ec) throw std::runtime_error(file + ": " + ec.message());
}

void install(const std::string& source, const std::string& target,
             const char* what) {
  if (!fs::is_regular_file(source))
    throw std::runtime_error(std::string(what) + " not found: " + source);
  std::error_code ec;
  // Re-creating a device from its own installed data.
  if (fs::exists(target) && fs::equivalent(source, target, ec)) return;
  makeParent(target);
  fs::copy_file(source, target, fs::copy_options::overwrite_existing, ec);
  if (ec) throw std::runtime_error(target + ": " + ec.message());
}

void writeBytes(const std::string& target, const std::string& bytes) {
  makeParent(target);
  if (!plist::writeBytesAtomically(target, bytes))
    throw std::runtime_error(target + ": cannot write");
}

}  // namespace

DeviceImageSummary createDeviceImage(const std::string& root,
                                     const DeviceImageOptions& options) {
  if (options.contacts < 0 || options.calls < 0)
    throw std::runtime_error("contact and call counts must not be negative");
  if (root.empty()) throw std::runtime_error("no device root given");
  DevicePeople people =
      generateDevicePeople(options.contacts, options.calls, options.seed);

  std::string addressBook = hostPath(root, ps::kAddressBookPath);
  makeParent(addressBook);
  writeAddressBook(addressBook, people, options.seed);
  DeviceImageSummary summary;
  summary.pictures = writeAddressBookImages(
      hostPath(root, ps::kAddressBookImagesPath), people);
  std::string store = hostPath(root, ps::kCallHistoryStorePath);
  makeParent(store);
  writeCallHistoryStore(store, people, options.seed);
  std::string db = hostPath(root, ps::kCallHistoryDbPath);
  makeParent(db);
  writeCallHistoryDb(db, people);
  writeMessagesData(root, people);

  if (!options.tableFile.empty())
    install(options.tableFile,
            hostPath(root, "/Library/Zorvel/Table/PinYin.txt"),
            "reading table");
  if (!options.areaFile.empty())
    install(
        options.areaFile,
        hostPath(root, ("/Library/Zorvel/Area/" + options.areaName).c_str()),
        "area database");
  writeBytes(hostPath(root, "/Library/Zorvel/avatar.png"),
             device_pictures::placeholder(kPlaceholderSize));
  writeBytes(hostPath(root, "/Library/Zorvel/block.caf"),
             devicegen::blockReminderSound());
  for (const auto& [devicePath, png] : device_glyphs::controlCenterGlyphs())
    writeBytes(hostPath(root, devicePath.c_str()), png);

  std::string settings =
      hostPath(root, "/var/mobile/Library/Preferences/zorvel.plist");
  if (!options.settingsFile.empty()) {
    install(options.settingsFile, settings, "settings file");
  } else {
    makeParent(settings);
    if (!plist::writeFile(settings, Dict{{"Enable", true}, {"MyInfo", 1}}))
      throw std::runtime_error(settings + ": cannot write");
  }

  summary.contacts = static_cast<int>(people.contacts.size());
  for (const DeviceContact& c : people.contacts)
    summary.phoneNumbers += static_cast<int>(c.phones.size());
  summary.calls = static_cast<int>(people.calls.size());
  for (const DeviceCall& c : people.calls)
    if (!c.originated && !c.answered) ++summary.missedCalls;
  return summary;
}

}  // namespace zv
