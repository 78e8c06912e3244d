// host_loader: a minimal host program that proves the extension loads the
// way the platform's extension loader maps it. It registers the probe class
// "ZVLoaderProbe" (method "greeting", answering "host"), finishes launching,
// loads the extension given on the command line with dlopen (or takes the one
// LD_PRELOAD mapped before main), then sends "greeting" and prints
//
//   greeting: <answer>
//   modules: <start-up routines run in this process, space-separated>
//
// The bundle identifier is $ZORVEL_BUNDLE_ID, "com.zorvel.loaderprobe" when
// unset; the device root is $ZORVEL_ROOT.
//
//   host_loader [EXTENSION.so]
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/linux/linux_platform.h"
#include "platform/process.h"
#include "platform/runtime/object.h"

namespace {

void registerProbeClass() {
  zv::rt::Class* cls = zv::rt::registerClass("ZVLoaderProbe");
  zv::rt::addMethod<std::string()>(
      cls, "greeting", [](const zv::rt::Id&) -> std::string { return "host"; });
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 2) {
    std::fprintf(stderr, "usage: host_loader [EXTENSION.so]\n");
    return 2;
  }
  const char* bundle = std::getenv("ZORVEL_BUNDLE_ID");
  if (!bundle || !*bundle)
    zv::platform::LinuxPlatform::instance().deviceFacts().bundleIdentifier =
        "com.zorvel.loaderprobe";

  auto& process = zv::platform::Process::current();
  // The probe is no product host: this program tells the extension about it.
  process.extraHosts.emplace_back("com.zorvel.loaderprobe",
                                  "zvloaderprobe_init");
  registerProbeClass();
  // A preloaded extension has been waiting for this.
  process.finishLaunching();

  if (argc == 2 && !dlopen(argv[1], RTLD_NOW | RTLD_GLOBAL)) {
    std::fprintf(stderr, "host_loader: %s\n", dlerror());
    return 1;
  }

  try {
    auto probe = zv::rt::create(zv::rt::getClass("ZVLoaderProbe"));
    std::printf("greeting: %s\n",
                zv::rt::send<std::string>(probe, "greeting").c_str());
  } catch (const zv::rt::Exception& e) {
    std::fprintf(stderr, "host_loader: %s\n", e.what());
    return 1;
  }
  std::string modules;
  for (const auto& name : process.startedModules)
    modules += (modules.empty() ? "" : " ") + name;
  std::printf("modules: %s\n", modules.c_str());
  return 0;
}
