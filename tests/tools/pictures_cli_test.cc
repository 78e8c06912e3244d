// --png on the session commands and zorvel tour: one picture per action
// named in the output, at the screen's pixel size; a directory that cannot
// be written stops the session before anything runs; the tour's page, opened
// in headless Chromium, shows every picture and caption.
#include <gtest/gtest.h>

#include <regex>

#include "platform/ui/image.h"
#include "tools/cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using testing::shellQuoted;

std::string unescape(std::string s) {
  for (auto [entity, c] : {std::pair{"&quot;", "\""},
                           {"&lt;", "<"},
                           {"&gt;", ">"},
                           {"&amp;", "&"}})
    s = std::regex_replace(s, std::regex(entity), c);
  return s;
}

class PicturesCliTest : public testing::SampleDeviceTest {
 protected:
  testing::TempRoot pictures_;
};

TEST_F(PicturesCliTest, EverySessionDrawsOnePictureForEachAction) {
  // Each row: the command, its actions, the pictures' size, their names.
  struct Case {
    std::string command, actions, pixels, names;
  } const cases[] = {
      {"phone --screen 5.5", "type:2 list", "1242x2208",
       "001-type_2.png 002-list.png"},
      {"call --screen 4", "incoming:13912345678", "640x1136",
       "001-incoming_13912345678.png"},
      {"contacts --screen 3.5", "open:1", "640x960", "001-open_1.png"},
      {"messages --screen 4.7", "list open:1", "750x1334",
       "001-list.png 002-open_1.png"},
      {"controlcenter --screen 4.7", "open", "750x1334", "001-open.png"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.command);
    const std::string dir = pictures_.path() + "/" + c.command.substr(0, 4);
    auto r =
        run(c.command + " --json --png " + shellQuoted(dir) + " " + c.actions);
    ASSERT_EQ(r.status, 0) << r.err;
    std::string names, last;
    for (const auto& s : testing::jsonLines(r.out)) {
      ASSERT_TRUE(s.contains("picture")) << s.dump();
      const fs::path path = s["picture"].get<std::string>();
      EXPECT_EQ(path.parent_path(), dir);
      auto image = ui::Image::fromFile(path, 1);
      ASSERT_TRUE(image) << path;
      EXPECT_EQ(std::to_string(image->pixelWidth()) + "x" +
                    std::to_string(image->pixelHeight()),
                c.pixels)
          << path;
      last = path.filename();
      names += (names.empty() ? "" : " ") + last;
    }
    EXPECT_EQ(names, c.names);
    // In text the picture is a line of its own; without --png there is none.
    auto text = run(c.command + " --png " + shellQuoted(dir) + " " + c.actions);
    EXPECT_NE(text.out.find("  picture: " + dir + "/" + last),
              std::string::npos);
    EXPECT_EQ(run(c.command + " " + c.actions).out.find("picture"),
              std::string::npos);
  }
}

TEST_F(PicturesCliTest, ProgramLoadsNoDrawingLibraryUntilAskedForPictures) {
  auto r = testing::runShell("ldd " + shellQuoted(testing::zorvelBinary()));
  ASSERT_EQ(r.status, 0) << r.err;
  ASSERT_NE(r.out.find("libzvplatform.so"), std::string::npos) << r.out;
  for (const char* library :
       {"libzvrender", "libcairo", "libpango", "libfontconfig", "libharfbuzz"})
    EXPECT_EQ(r.out.find(library), std::string::npos) << library;
}

TEST_F(PicturesCliTest, UnwritableDirectoryIsOneUsageErrorBeforeAnyAction) {
  // A file where the directory should be: no user, root included, can make
  // it.
  const std::string blocker = pictures_.path() + "/file";
  std::ofstream(blocker) << "x";
  const std::string png = " --png " + shellQuoted(blocker + "/pictures") + " ";
  const std::string said = "zorvel: --png: ";
  testing::expectFailures([&](auto& args) { return run(args); },
                          {{"phone" + png + "type:2", 2, said},
                           {"call" + png + "incoming:10010", 2, said},
                           {"contacts" + png + "open:1", 2, said},
                           {"messages" + png + "list", 2, said},
                           {"controlcenter" + png + "open", 2, said}});
}

TEST_F(PicturesCliTest, TourPageShowsEveryPictureAndCaptionInChromium) {
  ASSERT_TRUE(fs::exists("/usr/bin/chromium"))
      << "headless Chromium is installed by scripts/setup";
  const std::string dir = pictures_.path() + "/tour";
  auto r = run("tour " + shellQuoted(dir));
  ASSERT_EQ(r.status, 0) << r.err;
  std::vector<std::string> captions;
  const std::string html = testing::readFile(dir + "/index.html");
  const std::regex caption("<figcaption>([^<]*)</figcaption>");
  for (std::sregex_iterator it(html.begin(), html.end(), caption), end;
       it != end; ++it)
    captions.push_back((*it)[1]);
  ASSERT_GE(captions.size(), 12u);

  // A page beside the tour loads it in a frame and writes, per figure, the
  // picture's natural width and the caption's text.
  std::ofstream(dir + "/probe.html") << R"(<!DOCTYPE html><html><body>
<pre id="result">pending</pre><iframe id="tour" src="index.html"></iframe>
<script>
document.getElementById('tour').addEventListener('load', () => {
  const d = document.getElementById('tour').contentDocument;
  const rows = [];
  for (const f of d.querySelectorAll('figure')) {
    const img = f.querySelector('img'), cap = f.querySelector('figcaption');
    rows.push((img && img.complete ? img.naturalWidth : -1) + '|' +
              (cap ? cap.textContent : ''));
  }
  document.getElementById('result').textContent = rows.join('\n');
});
</script></body></html>)";
  auto dom = testing::runShell(
      "/usr/bin/chromium --headless --no-sandbox --disable-gpu "
      "--allow-file-access-from-files --virtual-time-budget=10000 "
      "--dump-dom " +
      shellQuoted("file://" + dir + "/probe.html"));
  ASSERT_EQ(dom.status, 0) << dom.err;
  const auto start = dom.out.find("<pre id=\"result\">");
  ASSERT_NE(start, std::string::npos) << dom.out;
  const auto stop = dom.out.find("</pre>", start);
  std::istringstream rows(dom.out.substr(start + 17, stop - start - 17));
  size_t n = 0;
  for (std::string row; std::getline(rows, row); ++n) {
    ASSERT_LT(n, captions.size()) << row;
    const auto bar = row.find('|');
    ASSERT_NE(bar, std::string::npos) << row;
    EXPECT_GT(std::stoi(row.substr(0, bar)), 0) << row;
    // Both sides as text, the markup's entities decoded.
    EXPECT_EQ(unescape(row.substr(bar + 1)), unescape(captions[n]));
  }
  EXPECT_EQ(n, captions.size());
}

}  // namespace
}  // namespace zv
