// A look at a JPEG stream's Huffman tables before the decoder sees them.
// The stb decoder Debian ships (2022) trusts a table's 16 code counts and
// writes one entry per code into arrays of 256: a table declaring more
// codes writes past them (later stb versions refuse such a table). Contact
// pictures come from anywhere, so such a stream is refused here first.
#pragma once

#include <string_view>

namespace zv::ui {

// False when `bytes` is a JPEG stream (it starts with SOI) one of whose
// Huffman tables declares more than 256 codes; true otherwise (other
// damage is left to the decoder).
bool jpegHuffmanTablesFit(std::string_view bytes);

}  // namespace zv::ui
