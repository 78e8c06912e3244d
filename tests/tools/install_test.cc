// The install rules: an installed tree holds the programs, the libraries
// and the data, and its zorvel runs from there and makes a working device.
#include <gtest/gtest.h>

#include "cli_runner.h"

namespace zv::testing {
namespace {

namespace fs = std::filesystem;

TEST(InstallTest, InstalledTreeRunsOnItsOwn) {
  TempRoot temp;
  const std::string prefix = temp.path() + "/prefix";
  auto r =
      runShell("cmake --install '" ZV_BINARY_DIR "' --prefix '" + prefix + "'");
  ASSERT_EQ(r.status, 0) << r.err;
  for (const char* file :
       {"bin/zorvel", "bin/zvtool", "lib/libzorvel.so", "lib/libzvplatform.so",
        "lib/libzvrender.so", "lib/libzvwindow.so", "share/zorvel/PinYin.txt",
        "share/zorvel/China", "share/zorvel/zorvel.plist",
        "share/man/man1/zorvel.1", "share/man/man1/zvtool.1",
        "share/bash-completion/completions/zorvel",
        "share/zorvel/sample-device/Library/Zorvel/Area/China",
        "share/applications/zorvel-phone.desktop",
        "share/icons/hicolor/scalable/apps/zorvel-phone.svg"})
    EXPECT_TRUE(fs::is_regular_file(prefix + "/" + file)) << file;
  // The window is the desktop's handler of tel: links, opened with the link.
  const std::string entry =
      readFile(prefix + "/share/applications/zorvel-phone.desktop");
  EXPECT_NE(entry.find("\nMimeType=x-scheme-handler/tel;\n"),
            std::string::npos);
  EXPECT_NE(entry.find("\nExec=zorvel window %u\n"), std::string::npos);
  // The installed program finds its library and its zvtool by itself.
  r = runShell("env -u LD_LIBRARY_PATH '" + prefix + "/bin/zorvel' --version");
  EXPECT_EQ(r.status, 0) << r.err;
  // Its default device is the installed sample, not the build folder's.
  r = runShell("env -u ZORVEL_ROOT '" + prefix + "/bin/zorvel' area 010");
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "北京市 固话\n");
  const std::string device = temp.path() + "/device";
  r = runShell("'" + prefix + "/bin/zorvel' device create '" + device +
               "' --contacts 3 --calls 3");
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(fs::is_regular_file(device + "/Library/Zorvel/zvtool"));
  // --png loads the drawing library from the installed lib/.
  r = runShell("env -u LD_LIBRARY_PATH '" + prefix +
               "/bin/zorvel' phone --root '" + device + "' --png '" +
               temp.path() + "/png' type:1");
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(fs::is_regular_file(temp.path() + "/png/001-type_1.png"));
}

}  // namespace
}  // namespace zv::testing
