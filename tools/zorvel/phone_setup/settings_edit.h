// zorvel settings get|set|unset|keys: one settings key at a time, as the
// settings pane changes it. Keys and values are checked against the
// settings catalogue (an unknown key, a value of the wrong type or out of
// range is a usage error naming the key); a change is written atomically
// and announced with "ZVSettingsChanged" (and "ZVAreaChanged" when the area
// database changes), so running hosts apply it. `keys --markdown` prints
// the settings-keys reference page.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace zv::cli {

// Adds the four actions under the `settings` command.
void addSettingsEdits(CLI::App& settings);

// The shortest text that reads back as the same float ("0.3", not
// "0.300000011920929"), as settings values are shown.
std::string floatText(double value);

}  // namespace zv::cli
