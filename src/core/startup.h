// The start-up test of a host process: may the system run here at all?
#pragma once

namespace zv {

// True when the settings switch `Enable` is on (a missing file or key counts
// as on) and the system version is at least 7.0; false on any failure.
bool zv_init();

// The system version as a float ("8.1.2" gives 8.1), read afresh.
float systemVersionFloat();

}  // namespace zv
