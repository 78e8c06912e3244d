// Libraries the zorvel command maps only when a subcommand needs them (the
// drawing library for --png, the window library for `zorvel window`), so
// that the program itself links neither cairo nor GTK.
#pragma once

#include <string>

namespace zv::cli {

// dlopen()s `file` from beside the program (the build tree) or from the
// lib/ directory beside its bin/ (an installation). Throws a CommandError
// "`what`: cannot load `file`..." when neither place has a loadable one.
void* openBesideProgram(const std::string& file, const std::string& what);

// The entry `name` of a library opened with openBesideProgram, or a
// CommandError "`what`: ... has no entry".
void* entryOf(void* library, const char* name, const std::string& what);

}  // namespace zv::cli
