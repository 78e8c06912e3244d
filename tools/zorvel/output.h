// Output of the zorvel command, checked end to end.
//
// writeOut() buffers standard output; finishOut() flushes it and throws
// CommandError ("cannot write output: <reason>") when any write failed, so
// a full disk ends the command with one line and a non-zero status instead
// of a silently short answer. A closed pipe is a CommandError with the
// code kClosedPipe and no text: the reader went away, there is no one to
// tell. writeOut() throws as soon as a write it flushed failed, so a long
// answer stops there.
//
// jsonLine() is every JSON line we print: text that is not UTF-8 is written
// with U+FFFD in its place instead of failing.
//
// writeFileSafely() is what -o FILE means: "-" is standard output; a
// regular file, or a name that does not exist yet, is written to a
// temporary file beside it and renamed into place (a symbolic link is
// followed and its target replaced, the link kept); anything else (a
// device, a pipe) is written in place and never replaced.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace zv::cli {

constexpr int kClosedPipe = 141;

void writeOut(std::string_view bytes);
void finishOut();

std::string jsonLine(const nlohmann::ordered_json& value);

void writeFileSafely(const std::string& path, std::string_view bytes);

// UTF-8 checks for input lines: whether `text` is well-formed, and a copy
// with every ill-formed byte replaced by U+FFFD.
bool validUtf8(std::string_view text);
std::string replaceInvalidUtf8(std::string_view text);

}  // namespace zv::cli
