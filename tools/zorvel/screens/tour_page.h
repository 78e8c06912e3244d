// The tour's index.html: every picture in order with its caption, as one
// self-contained page (no scripts, no outside files but the pictures,
// referred to by paths relative to the page).
#pragma once

#include <string>
#include <vector>

namespace zv::cli {

struct TourPicture {
  std::string path;  // relative to the page
  std::string caption;
};

std::string tourPage(const std::vector<TourPicture>& pictures);

// `text` with &, <, > and " escaped for HTML.
std::string htmlEscape(const std::string& text);

}  // namespace zv::cli
