// Replays the committed fuzz corpora of what the Linux platform reads from
// other programs (ModemManager's call properties, notification datagrams)
// through the fuzz targets' own bodies (under ASan in the sanitizer build).
#include <gtest/gtest.h>

#include "support/fuzz_replay.h"

#define ZV_FUZZ_ENTRY static int fuzzModemCallProperties
#include "fuzz/modem_call_properties.cc"
#undef ZV_FUZZ_ENTRY
#define ZV_FUZZ_ENTRY static int fuzzNotifyDatagram
#include "fuzz/notify_datagram.cc"
#undef ZV_FUZZ_ENTRY

namespace {

TEST(PlatformFuzzCorpusTest, EveryReaderTakesItsCorpus) {
  EXPECT_GE(zv::testing::replayCorpus("modem_call_properties",
                                      fuzzModemCallProperties),
            5);
  EXPECT_GE(zv::testing::replayCorpus("notify_datagram", fuzzNotifyDatagram),
            5);
}

}  // namespace
