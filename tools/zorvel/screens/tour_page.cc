#include "tools/zorvel/screens/tour_page.h"

namespace zv::cli {

std::string htmlEscape(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string tourPage(const std::vector<TourPicture>& pictures) {
  std::string page =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<title>Zorvel: a tour of the screens</title>\n<style>\n"
      "body{font-family:sans-serif;margin:2em;background:#eee}\n"
      "figure{display:inline-block;vertical-align:top;margin:1em;width:300px}\n"
      "img{width:300px;border:1px solid #999;background:#fff}\n"
      "figcaption{margin-top:.5em}\n</style>\n</head>\n<body>\n"
      "<h1>Zorvel: a tour of the screens</h1>\n";
  int n = 0;
  for (const auto& p : pictures) {
    ++n;
    page += "<figure id=\"step-" + std::to_string(n) + "\"><img src=\"" +
            htmlEscape(p.path) + "\" alt=\"" + htmlEscape(p.caption) +
            "\"><figcaption>" + std::to_string(n) + ". " +
            htmlEscape(p.caption) + "</figcaption></figure>\n";
  }
  return page + "</body>\n</html>\n";
}

}  // namespace zv::cli
