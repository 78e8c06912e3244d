// UITableViewController of the UI model: a view controller whose view is a
// table, plain or grouped, fed by the controller's own data-source and
// delegate methods in index paths (section, row). The sections are laid out
// one after another in the table's single run of rows, so the table view
// itself stays one list; the controller maps between the two.
//
// Editing: a row the controller lets be edited with the delete style can be
// deleted by the user (commitDelete); the controller removes it with
// deleteRowsAtIndexPaths, whose animation is recorded for the tests and
// command line. Deselections are recorded the same way.
#pragma once

#include <optional>
#include <vector>

#include "platform/ui/table_view.h"
#include "platform/ui/view_controller.h"

namespace zv::ui {

struct IndexPath {
  size_t section = 0, row = 0;
  bool operator==(const IndexPath&) const = default;
};

enum class TableViewStyle { Plain, Grouped };
enum class CellEditingStyle { None, Delete, Insert };
enum class RowAnimation {
  Fade,
  Right,
  Left,
  Top,
  Bottom,
  None,
  Middle,
  Automatic = 100
};

class UITableViewController : public UIViewController {
 public:
  static constexpr const char* kClassName = "UITableViewController";
  explicit UITableViewController(rt::Class* isa) : UIViewController(isa) {}

  // initWithStyle: (call before the view is made).
  void setStyle(TableViewStyle style) { style_ = style; }
  TableViewStyle style() const { return style_; }
  std::shared_ptr<UITableView> tableView();

  // Data source and delegate, overridden by subclasses.
  virtual size_t numberOfSectionsInTableView(UITableView&) { return 1; }
  virtual size_t numberOfRowsInSection(UITableView&, size_t section) {
    return 0;
  }
  virtual std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(UITableView&,
                                                                 IndexPath) {
    return nullptr;
  }
  virtual void didSelectRowAtIndexPath(UITableView&, IndexPath) {}
  virtual bool canEditRowAtIndexPath(UITableView&, IndexPath) { return false; }
  virtual CellEditingStyle editingStyleForRowAtIndexPath(UITableView&,
                                                         IndexPath) {
    return CellEditingStyle::Delete;
  }
  virtual void commitEditingStyle(UITableView&, CellEditingStyle, IndexPath) {}

  bool isEditing() const { return editing_; }
  virtual void setEditing(bool editing, bool animated) { editing_ = editing; }

  // Table operations the subclasses call.
  void deleteRowsAtIndexPaths(const std::vector<IndexPath>& paths,
                              RowAnimation animation);
  void deselectRowAtIndexPath(IndexPath path, bool animated);
  struct Deletion {
    std::vector<IndexPath> paths;
    RowAnimation animation;
  };
  const std::vector<Deletion>& deletions() const { return deletions_; }
  const std::vector<IndexPath>& deselections() const { return deselections_; }

  // The flat row of an index path and back (nullopt when out of range),
  // after the last reloadData.
  std::optional<size_t> flatRow(IndexPath path) const;
  std::optional<IndexPath> indexPathForFlatRow(size_t row) const;
  // The cell shown at a path, if any.
  std::shared_ptr<UITableViewCell> visibleCell(IndexPath path) const;

  // A user's tap on a row; false when there is no such row.
  bool tapRow(IndexPath path);
  // A user's swipe-and-delete of a row: only for a row the controller lets be
  // edited in the delete style. False when refused.
  bool commitDelete(IndexPath path);

 protected:
  std::shared_ptr<UIView> loadView() override;

 private:
  // Rows per section as counted by the last reloadData.
  std::vector<size_t> counts_;
  TableViewStyle style_ = TableViewStyle::Plain;
  bool editing_ = false;
  std::vector<Deletion> deletions_;
  std::vector<IndexPath> deselections_;
};

}  // namespace zv::ui
