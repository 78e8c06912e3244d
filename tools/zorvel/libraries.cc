#include "tools/zorvel/libraries.h"

#include <dlfcn.h>

#include <filesystem>

#include "tools/zorvel/command.h"

namespace zv::cli {

void* openBesideProgram(const std::string& file, const std::string& what) {
  namespace fs = std::filesystem;
  std::error_code ec;
  const fs::path self = fs::read_symlink("/proc/self/exe", ec);
  std::string tried;
  for (const fs::path& candidate :
       {self.parent_path() / file,
        self.parent_path().parent_path() / "lib" / file}) {
    if (ec || !fs::exists(candidate)) continue;
    if (void* handle = dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL))
      return handle;
    tried = dlerror();
  }
  throw CommandError(what + ": cannot load " +
                     (tried.empty() ? file : file + ": " + tried));
}

void* entryOf(void* library, const char* name, const std::string& what) {
  void* entry = dlsym(library, name);
  if (!entry) throw CommandError(what + ": " + name + " missing from library");
  return entry;
}

}  // namespace zv::cli
