#include "platform/ui/table_view_controller.h"

namespace zv::ui {

std::shared_ptr<UITableView> UITableViewController::tableView() {
  return std::static_pointer_cast<UITableView>(view());
}

std::shared_ptr<UIView> UITableViewController::loadView() {
  auto table = ui::make<UITableView>();
  std::weak_ptr<UITableViewController> weak =
      std::static_pointer_cast<UITableViewController>(shared_from_this());
  table->numberOfRows = [weak, raw = table.get()]() -> size_t {
    auto me = weak.lock();
    if (!me) return 0;
    me->counts_.clear();
    size_t total = 0;
    const size_t sections = me->numberOfSectionsInTableView(*raw);
    for (size_t s = 0; s < sections; ++s) {
      me->counts_.push_back(me->numberOfRowsInSection(*raw, s));
      total += me->counts_.back();
    }
    return total;
  };
  table->cellForRow = [weak](UITableView& t,
                             size_t row) -> std::shared_ptr<UITableViewCell> {
    auto me = weak.lock();
    if (!me) return nullptr;
    auto path = me->indexPathForFlatRow(row);
    return path ? me->cellForRowAtIndexPath(t, *path) : nullptr;
  };
  table->didSelectRow = [weak](UITableView& t, size_t row) {
    auto me = weak.lock();
    if (!me) return;
    if (auto path = me->indexPathForFlatRow(row))
      me->didSelectRowAtIndexPath(t, *path);
  };
  return table;
}

std::optional<size_t> UITableViewController::flatRow(IndexPath path) const {
  if (path.section >= counts_.size() || path.row >= counts_[path.section])
    return std::nullopt;
  size_t row = path.row;
  for (size_t s = 0; s < path.section; ++s) row += counts_[s];
  return row;
}

std::optional<IndexPath> UITableViewController::indexPathForFlatRow(
    size_t row) const {
  for (size_t s = 0; s < counts_.size(); ++s) {
    if (row < counts_[s]) return IndexPath{s, row};
    row -= counts_[s];
  }
  return std::nullopt;
}

std::shared_ptr<UITableViewCell> UITableViewController::visibleCell(
    IndexPath path) const {
  auto row = flatRow(path);
  if (!row || !isViewLoaded()) return nullptr;
  auto table = std::static_pointer_cast<UITableView>(
      const_cast<UITableViewController*>(this)->view());
  return table->cellForRowAtIndex(*row);
}

void UITableViewController::deleteRowsAtIndexPaths(
    const std::vector<IndexPath>& paths, RowAnimation animation) {
  deletions_.push_back({paths, animation});
  // The data source already dropped the rows; the table shows what is left.
  tableView()->reloadData();
}

void UITableViewController::deselectRowAtIndexPath(IndexPath path, bool) {
  deselections_.push_back(path);
}

bool UITableViewController::tapRow(IndexPath path) {
  auto row = flatRow(path);
  return row && tableView()->selectRow(*row);
}

bool UITableViewController::commitDelete(IndexPath path) {
  if (!flatRow(path)) return false;
  auto table = tableView();
  if (!canEditRowAtIndexPath(*table, path) ||
      editingStyleForRowAtIndexPath(*table, path) != CellEditingStyle::Delete)
    return false;
  commitEditingStyle(*table, CellEditingStyle::Delete, path);
  return true;
}

}  // namespace zv::ui
