// Where the zorvel program finds what it brings along, relative to the
// program itself and never by a path fixed at build time: in the build
// folder, beside the program (sample-device/, zvtool); in an installation,
// under its prefix (bin/zorvel, share/zorvel/sample-device/,
// share/zorvel/<data>, bin/zvtool). So an installed program keeps working
// when the build folder is gone.
#pragma once

#include <filesystem>
#include <string>

namespace zv::cli {

// The folder the running program lives in ("" when unknown).
std::filesystem::path programFolder();

// The bundled sample device: the default device root when neither --root
// nor $ZORVEL_ROOT names one. "" when there is none.
std::string sampleDevice();

// A data file `create` installs into new devices: the sample device's copy
// at `devicePath`, or share/zorvel/`installedName`; "" when neither exists.
std::string dataFile(const char* devicePath, const char* installedName);

// zvtool beside the program, or in the installation's libexec/; "" if none.
std::string findZvtool();

// Copies `tool` into the device at `root` as /Library/Zorvel/zvtool and runs
// its --install there; throws CommandError naming what failed.
void installZvtool(const std::string& root, const std::string& tool);

}  // namespace zv::cli
