#include "core/zv_exception.h"

#include <cstdio>
#include <cstring>

namespace zv {

std::string addingPercentEscapes(std::string_view text) {
  static const char* kLegal = "!#$&'()*+,-./:;=?@_~";
  std::string out;
  out.reserve(text.size());
  for (unsigned char c : text) {
    bool keep = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
                (c >= 'A' && c <= 'Z') || (c != 0 && std::strchr(kLegal, c));
    if (keep) {
      out += static_cast<char>(c);
    } else {
      char hex[4];
      std::snprintf(hex, sizeof hex, "%%%02X", c);
      out += hex;
    }
  }
  return out;
}

void ZVException::showException(const std::string& message) {
  auto alert = std::make_shared<platform::Alert>();
  alert->title = "Zorvel Exception";
  alert->message = message;
  alert->cancelButton = "Close";
  alert->otherButtons = {"Report bug"};
  alert->onButton = &ZVException::alertView;
  platform::current().showAlert(alert);
}

std::string ZVException::bugReportText(const std::string& message) {
  const auto& device = platform::current().device();
  std::string text = "mailto:";
  text += kMaintainers;
  text += "?subject=Zorvel Exception&body=";
  text += message;
  text += " (";
  text += kVersion;
  text += ") ";
  text += device.systemName;
  text += device.systemVersion;
  text += device.model;
  return text;
}

void ZVException::alertView(const platform::Alert& alert, int buttonIndex) {
  try {
    if (buttonIndex == alert.cancelButtonIndex() || alert.message.empty())
      return;
    platform::current().openURL(
        addingPercentEscapes(bugReportText(alert.message)));
  } catch (...) {
  }
}

}  // namespace zv
