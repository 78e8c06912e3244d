#include "platform/ui/table_view.h"

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
