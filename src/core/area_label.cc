#include "core/area_label.h"

namespace zv {

bool labelEndsWithArea(std::string_view label, std::string_view area) {
  return label.ends_with(area);
}

std::string joinArea(std::string_view label, std::string_view area,
                     AreaGap gap) {
  std::string out(label);
  out += gap == AreaGap::kOne ? " " : "  ";
  out += area;
  return out;
}

std::string appendArea(std::string_view label, std::string_view area,
                       AreaGap gap) {
  if (label.empty()) return std::string(area);
  if (labelEndsWithArea(label, area)) return std::string(label);
  return joinArea(label, area, gap);
}

}  // namespace zv
