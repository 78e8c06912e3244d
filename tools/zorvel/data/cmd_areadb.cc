// zorvel areadb: the area database compiler and inspector.
//   areadb build SOURCE -o FILE   compile a text source (nothing is written
//                                 when a line is bad)
//   areadb info FILE              header fields, counts and sizes
//   areadb dump FILE [-o OUT]     the text source again
//
// -o follows the rules of writeFileSafely (tools/zorvel/output.h): "-" is
// standard output, a device or pipe is written in place, a regular file is
// replaced through a temporary file, a symbolic link's target is written.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "area/area_compiler.h"
#include "tools/zorvel/command.h"
#include "tools/zorvel/output.h"

namespace zv::cli {
namespace {

std::string readFile(const std::string& path) {
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec))
    throw CommandError("cannot read " + path + ": Is a directory");
  std::ifstream in(path, std::ios::binary);
  if (!in) throw CommandError("cannot read " + path);
  std::ostringstream data;
  data << in.rdbuf();
  if (in.bad()) throw CommandError("cannot read " + path);
  return data.str();
}

void build(const std::string& sourcePath, const std::string& outPath) {
  try {
    area::Source source = area::parseSource(readFile(sourcePath), sourcePath);
    writeFileSafely(outPath, area::compile(source, sourcePath));
  } catch (const area::SourceError& e) {
    throw CommandError(e.what());
  }
}

void info(const std::string& path) {
  area::Layout l;
  area::Source source;
  std::string bytes = readFile(path);
  try {
    source = area::decompile(bytes, path, &l);
  } catch (const area::SourceError& e) {
    throw CommandError(e.what());
  }
  const area::Header& h = source.header;
  std::printf("file              %s (%zu bytes)\n", path.c_str(), bytes.size());
  std::printf("version           %u\n", h.version);
  std::printf("separator         \"%s\"\n", h.separator.c_str());
  std::printf("access prefixes   \"%s\" \"%s\"\n", h.access.c_str(),
              h.access2.c_str());
  std::printf("country code      \"%s\"\n", h.country.c_str());
  std::printf("trunk prefix      \"%s\"\n", h.trunk.c_str());
  std::printf("digits            %u to %u\n", h.minDigits, h.maxDigits);
  std::printf(
      "key index         offset %u, %u bytes, %zu keys (%zu long-form only)\n",
      l.keyIndexOffset, l.keyIndexSize, l.keys, l.longFormKeys);
  std::printf("range table       offset %u, %u bytes\n", l.rangeTableOffset,
              l.rangeTableSize);
  std::printf(
      "record table      offset %u, %u bytes, %zu records (%zu used, %zu "
      "length-bound)\n",
      l.recordTableOffset, l.recordTableSize, l.records, l.usedRecords,
      l.lengthBoundRecords);
  std::printf("string block      offset %u, %u bytes, %zu texts\n",
              l.stringBlockOffset, l.stringBlockSize, l.texts);
}

void dump(const std::string& path, const std::string& outPath) {
  std::string text;
  try {
    text = area::formatSource(area::decompile(readFile(path), path));
  } catch (const area::SourceError& e) {
    throw CommandError(e.what());
  }
  writeFileSafely(outPath.empty() ? "-" : outPath, text);
}

Registration reg([](CLI::App& app) {
  auto* db = app.add_subcommand("areadb", "compile and inspect area databases");
  db->require_subcommand(1);

  auto* b = db->add_subcommand("build", "compile a text source");
  auto source = std::make_shared<std::string>();
  auto out = std::make_shared<std::string>();
  b->add_option("SOURCE", *source, "text source")->required();
  b->add_option("-o,--output", *out, "database file to write (- for stdout)")
      ->required();
  b->callback([source, out] { build(*source, *out); });

  auto* i = db->add_subcommand("info", "show header fields, counts and sizes");
  auto file = std::make_shared<std::string>();
  i->add_option("FILE", *file, "database file")->required();
  i->callback([file] { info(*file); });

  auto* d = db->add_subcommand("dump", "write a database back as text source");
  auto dumpFile = std::make_shared<std::string>();
  auto dumpOut = std::make_shared<std::string>();
  d->add_option("FILE", *dumpFile, "database file")->required();
  d->add_option("-o,--output", *dumpOut, "file to write (default: stdout)");
  d->callback([dumpFile, dumpOut] { dump(*dumpFile, *dumpOut); });
});

}  // namespace
}  // namespace zv::cli
