// The loading probe: a host that only proves the extension reaches it. In a
// host with bundle identifier "com.zorvel.loaderprobe", the extension
// replaces the probe class's "greeting" method so that the host can see the
// replacement took effect. No real host has this identifier.
#pragma once

namespace zv {

inline constexpr char kLoaderProbeBundle[] = "com.zorvel.loaderprobe";
inline constexpr char kLoaderProbeClass[] = "ZVLoaderProbe";
inline constexpr char kLoaderProbeSelector[] = "greeting";
// What the replaced method answers.
inline constexpr char kLoaderProbeAnswer[] = "hooked by libzorvel";

void zvloaderprobe_init();

}  // namespace zv
