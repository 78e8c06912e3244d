#include "platform/ui/text_view.h"

#include "platform/ui/text_metrics.h"
#include "platform/utf8.h"

namespace zv::ui {
namespace {

// Greedy wrapping of one paragraph into lines no wider than `width`.
void wrap(std::string_view paragraph, const Font& font, double width,
          std::vector<std::string>& out) {
  std::string line;
  size_t i = 0;
  while (i < paragraph.size()) {
    // The next word with the blanks that follow it, or one wide character
    // (ideographs break anywhere).
    size_t end = i;
    Utf8Char c = utf8CharAt(paragraph, end);
    end += c.bytes;
    if (c.codePoint < 0x2E80) {
      while (end < paragraph.size()) {
        Utf8Char n = utf8CharAt(paragraph, end);
        if (n.codePoint == ' ' || n.codePoint >= 0x2E80) break;
        end += n.bytes;
      }
      while (end < paragraph.size() && paragraph[end] == ' ') ++end;
    }
    std::string_view word = paragraph.substr(i, end - i);
    if (!line.empty() && textWidth(line + std::string(word), font) > width) {
      out.push_back(std::move(line));
      line.clear();
    }
    if (line.empty() && textWidth(word, font) > width && word.size() > 1) {
      // A word wider than a line goes character by character.
      size_t j = 0;
      while (j < word.size()) {
        size_t n = utf8CharAt(word, j).bytes;
        std::string next = line + std::string(word.substr(j, n));
        if (!line.empty() && textWidth(next, font) > width) {
          out.push_back(std::move(line));
          line = std::string(word.substr(j, n));
        } else {
          line = std::move(next);
        }
        j += n;
      }
    } else {
      line += word;
    }
    i = end;
  }
  out.push_back(std::move(line));
}

}  // namespace

std::vector<std::string> UITextView::lines() const {
  std::vector<std::string> out;
  if (text_.empty()) return out;
  const double width = frame().size.width - inset_.left - inset_.right;
  size_t start = 0;
  while (true) {
    size_t nl = text_.find('\n', start);
    wrap(std::string_view(text_).substr(
             start, nl == std::string::npos ? std::string::npos : nl - start),
         font_, width, out);
    if (nl == std::string::npos) break;
    start = nl + 1;
  }
  return out;
}

double UITextView::layOut(std::vector<PlacedLine>* placed) const {
  auto delegate = delegate_.lock();
  const double line = lineHeight(font_);
  const double width = frame().size.width - inset_.left - inset_.right;
  double height = 0;
  size_t glyph = 0;
  for (auto& l : lines()) {
    glyph += characterCount(l);
    const Rect proposed{{0, height}, {frame().size.width, line}};
    if (placed)
      placed->push_back(
          {std::move(l), {{inset_.left, inset_.top + height}, {width, line}}});
    height += line;
    if (delegate)
      height += delegate->lineSpacingAfterGlyphAtIndex(glyph ? glyph - 1 : 0,
                                                       proposed);
  }
  return height;
}

std::vector<UITextView::PlacedLine> UITextView::placedLines() const {
  std::vector<PlacedLine> placed;
  layOut(&placed);
  return placed;
}

double UITextView::textHeight() const { return layOut(nullptr); }

void UITextView::sizeToFit() {
  setSize(frame().size.width, textHeight() + inset_.top + inset_.bottom);
}

}  // namespace zv::ui
