// Output of the zorvel command, checked end to end.
//
// writeOut() buffers standard output; finishOut() flushes it and throws
// CommandError ("cannot write output: <reason>") when any write failed, so
// a full disk or a closed pipe ends the command with one line and a
// non-zero status instead of a silently short answer.
//
// writeFileSafely() is what -o FILE means: "-" is standard output; a
// regular file, or a name that does not exist yet, is written to a
// temporary file beside it and renamed into place (a symbolic link is
// followed and its target replaced, the link kept); anything else (a
// device, a pipe) is written in place and never replaced.
#pragma once

#include <string>
#include <string_view>

namespace zv::cli {

void writeOut(std::string_view bytes);
void finishOut();

void writeFileSafely(const std::string& path, std::string_view bytes);

// UTF-8 checks for input lines: whether `text` is well-formed, and a copy
// with every ill-formed byte replaced by U+FFFD.
bool validUtf8(std::string_view text);
std::string replaceInvalidUtf8(std::string_view text);

}  // namespace zv::cli
