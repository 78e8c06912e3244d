#include "platform/ui/table_view.h"

#include <algorithm>

#include "platform/ui/canvas.h"

namespace zv::ui {

std::shared_ptr<UITableViewCell> UITableViewCell::make(
    CellStyle style, std::string reuseIdentifier) {
  auto cell = ui::make<UITableViewCell>();
  cell->setUp(style, std::move(reuseIdentifier));
  return cell;
}

void UITableViewCell::setUp(CellStyle style, std::string reuseIdentifier) {
  style_ = style;
  reuse_id_ = std::move(reuseIdentifier);
  content_ = ui::make<UIView>();
  addSubview(content_);
  image_view_ = ui::make<UIImageView>();
  text_label_ = ui::make<UILabel>();
  detail_label_ = ui::make<UILabel>();
  content_->addSubview(image_view_);
  content_->addSubview(text_label_);
  if (style != CellStyle::Default) content_->addSubview(detail_label_);
}

void UITableViewCell::setAccessoryView(std::shared_ptr<UIView> v) {
  if (accessory_) accessory_->removeFromSuperview();
  accessory_ = std::move(v);
  if (accessory_) addSubview(accessory_);
}

namespace {

const Color kSeparator{0.78, 0.78, 0.8, 1};
const Color kDetailGrey{0.56, 0.56, 0.58, 1};
constexpr double kAccessoryWidth = 33;

}  // namespace

void UITableViewCell::layoutSubviews() {
  const Size size = frame().size;
  const double accessory = accessory_ ? accessory_->frame().size.width + 15
                           : accessoryType != CellAccessoryType::None
                               ? kAccessoryWidth
                               : 0;
  if (accessory_)
    accessory_->setOrigin(size.width - accessory_->frame().size.width - 15,
                          (size.height - accessory_->frame().size.height) / 2);
  content_->setFrame(
      {{0, 0}, {std::max(0.0, size.width - accessory), size.height}});
  const double w = content_->frame().size.width, h = size.height;
  double x = 15;
  const auto& image = image_view_->image();
  if (image && !image->empty() && !image_view_->isHidden()) {
    Size s = image->size();
    if (s.height > h - 8 && s.height > 0)
      s = {s.width * (h - 8) / s.height, h - 8};
    image_view_->setFrame({{15, (h - s.height) / 2}, s});
    x = 15 + s.width + 15;
  }
  const double textWidth = std::max(0.0, w - x - 15);
  const bool detail = style_ != CellStyle::Default &&
                      !detail_label_->text().empty() &&
                      !detail_label_->isHidden();
  switch (detail ? style_ : CellStyle::Default) {
    case CellStyle::Subtitle:
      text_label_->setFrame({{x, h * 0.12}, {textWidth, h * 0.5}});
      detail_label_->setFrame({{x, h * 0.55}, {textWidth, h * 0.35}});
      break;
    case CellStyle::Value1: {
      const double dw = std::min(textWidth, detail_label_->textSize().width);
      detail_label_->setTextAlignment(TextAlignment::Right);
      detail_label_->setFrame({{x + textWidth - dw, 0}, {dw, h}});
      text_label_->setFrame({{x, 0}, {std::max(0.0, textWidth - dw - 8), h}});
      break;
    }
    case CellStyle::Value2: {
      const double lw = std::min(textWidth, 76.0);
      text_label_->setTextAlignment(TextAlignment::Right);
      text_label_->setFrame({{x, 0}, {lw, h}});
      detail_label_->setFrame(
          {{x + lw + 6, 0}, {std::max(0.0, textWidth - lw - 6), h}});
      break;
    }
    default:
      text_label_->setFrame({{x, 0}, {textWidth, h}});
      if (style_ != CellStyle::Default)
        detail_label_->setFrame({{x, 0}, {textWidth, h}});
  }
}

bool UITableViewCell::perform(Gesture g) {
  const bool handled = UIView::perform(g);
  if (g != Gesture::Tap || !userInteractionEnabled()) return handled;
  auto table = std::dynamic_pointer_cast<UITableView>(superview());
  if (!table) return handled;
  auto row = table->rowOfCell(*this);
  return (row && table->selectRow(*row)) || handled;
}

void UITableViewCell::draw(Canvas& canvas) const {
  if (accessoryType == CellAccessoryType::None || accessory_) return;
  const double cx = frame().size.width - 20, cy = frame().size.height / 2;
  if (accessoryType == CellAccessoryType::Checkmark)
    canvas.path({{cx - 7, cy}, {cx - 2, cy + 5}, {cx + 6, cy - 6}}, kTintColor,
                2);
  else
    canvas.path({{cx - 3, cy - 6}, {cx + 3, cy}, {cx - 3, cy + 6}}, kDetailGrey,
                2);
}

std::optional<size_t> UITableView::rowOfCell(
    const UITableViewCell& cell) const {
  for (const auto& [row, c] : visible_)
    if (c.get() == &cell) return row;
  return std::nullopt;
}

void UITableView::layoutSubviews() {
  const double w = frame().size.width;
  for (const auto& [row, cell] : visible_)
    if (cell && cell->frame().size.width != w)
      cell->setSize(w, cell->frame().size.height);
}

void UITableView::draw(Canvas& canvas) const {
  const double hair = canvas.hairline();
  for (const auto& [row, cell] : visible_) {
    if (!cell || cell->isHidden()) continue;
    const Rect& f = cell->frame();
    const EdgeInsets& in = cell->separatorInset();
    const double w = f.size.width - in.left - in.right;
    if (w <= 0) continue;
    canvas.fill({{f.origin.x + in.left,
                  f.origin.y - contentOffset().y + f.size.height - hair},
                 {w, hair}},
                kSeparator);
  }
}

std::shared_ptr<UITableViewCell> UITableView::dequeueReusableCellWithIdentifier(
    const std::string& identifier) {
  auto it = pool_.find(identifier);
  if (it == pool_.end()) return nullptr;
  auto cell = it->second;
  pool_.erase(it);
  cell->prepareForReuse();
  return cell;
}

double UITableView::rowHeight(size_t row) const {
  return heightForRow ? heightForRow(row) : 44.0;
}

void UITableView::reloadData() {
  for (auto& [row, cell] : visible_) {
    cell->removeFromSuperview();
    pool_.emplace(cell->reuseIdentifier(), cell);
  }
  visible_.clear();
  row_count_ = numberOfRows ? numberOfRows() : 0;
  double total = 0;
  for (size_t r = 0; r < row_count_; ++r) total += rowHeight(r);
  setContentSize({frame().size.width, total});
  const double top = contentOffset().y;
  const double height = frame().size.height;
  double y = 0;
  for (size_t r = 0; r < row_count_ && cellForRow; ++r) {
    double h = rowHeight(r);
    bool shown = height <= 0 || (y + h > top && y < top + height);
    if (shown) {
      auto cell = cellForRow(*this, r);
      if (cell) {
        cell->setFrame(Rect{{0, y}, {frame().size.width, h}});
        addSubview(cell);
        visible_[r] = cell;
      }
    }
    y += h;
  }
}

std::shared_ptr<UITableViewCell> UITableView::cellForRowAtIndex(
    size_t row) const {
  auto it = visible_.find(row);
  return it == visible_.end() ? nullptr : it->second;
}

bool UITableView::selectRow(size_t row) {
  if (row >= row_count_ || !userInteractionEnabled()) return false;
  if (didSelectRow) didSelectRow(*this, row);
  return true;
}

}  // namespace zv::ui
