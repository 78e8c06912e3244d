// UITableView and UITableViewCell of the UI model. The table asks its data
// source for rows and cells and lays out the cells that fall inside its
// frame at the current offset (every row when the frame has no height).
// Cells that scroll out or are dropped by reloadData go to a reuse pool per
// identifier, from which dequeueReusableCellWithIdentifier() hands them
// back. selectRow() is a finger tap on a row.
#pragma once

#include <map>

#include "platform/ui/label.h"
#include "platform/ui/scroll_view.h"

namespace zv::ui {

enum class CellStyle { Default, Value1, Value2, Subtitle };
enum class CellAccessoryType {
  None,
  DisclosureIndicator,
  DetailDisclosureButton,
  Checkmark
};
enum class CellSelectionStyle { None, Blue, Gray, Default };

class UITableViewCell : public UIView {
 public:
  static constexpr const char* kClassName = "UITableViewCell";
  explicit UITableViewCell(rt::Class* isa) : UIView(isa) {}
  // A cell with its standard labels and image view.
  static std::shared_ptr<UITableViewCell> make(CellStyle style,
                                               std::string reuseIdentifier);

  CellStyle style() const { return style_; }
  const std::string& reuseIdentifier() const { return reuse_id_; }
  const std::shared_ptr<UIView>& contentView() const { return content_; }
  const std::shared_ptr<UILabel>& textLabel() const { return text_label_; }
  const std::shared_ptr<UILabel>& detailTextLabel() const {
    return detail_label_;
  }
  const std::shared_ptr<UIImageView>& imageView() const { return image_view_; }
  const std::shared_ptr<UIView>& accessoryView() const { return accessory_; }
  void setAccessoryView(std::shared_ptr<UIView> v);
  CellAccessoryType accessoryType = CellAccessoryType::None;
  CellSelectionStyle selectionStyle = CellSelectionStyle::Default;
  const EdgeInsets& separatorInset() const { return separator_inset_; }
  void setSeparatorInset(EdgeInsets e) { separator_inset_ = e; }
  // Called before the cell is handed out again by the reuse pool.
  virtual void prepareForReuse() {}
  // The standard layout: the content view fills the cell less the
  // accessory; a visible image view sits at the left, centred, and the text
  // label (and the detail label of the style) are laid out after it: the
  // detail under the text (subtitle), at the right (value 1) or before it
  // (value 2). Subclasses that place their own views call it first.
  void layoutSubviews() override;
  // A tap selects the cell's row in its table.
  bool perform(Gesture g) override;
  void draw(Canvas& canvas) const override;

 protected:
  // Builds the standard subviews; subclasses made with makeAs call it.
  void setUp(CellStyle style, std::string reuseIdentifier);

 private:
  CellStyle style_ = CellStyle::Default;
  std::string reuse_id_;
  std::shared_ptr<UIView> content_;
  std::shared_ptr<UILabel> text_label_, detail_label_;
  std::shared_ptr<UIImageView> image_view_;
  std::shared_ptr<UIView> accessory_;
  EdgeInsets separator_inset_{0, 15, 0, 0};
};

class UITableView : public UIScrollView {
 public:
  static constexpr const char* kClassName = "UITableView";
  explicit UITableView(rt::Class* isa) : UIScrollView(isa) {}

  // Data source and delegate (one section).
  std::function<size_t()> numberOfRows;
  std::function<std::shared_ptr<UITableViewCell>(UITableView&, size_t row)>
      cellForRow;
  std::function<double(size_t row)> heightForRow;
  std::function<void(UITableView&, size_t row)> didSelectRow;

  std::shared_ptr<UITableViewCell> dequeueReusableCellWithIdentifier(
      const std::string& identifier);
  // Asks the data source again and lays out the visible rows.
  void reloadData();
  void scrollToTop() { setContentOffset({0, 0}); }
  size_t rowCount() const { return row_count_; }
  // The cells on screen, by row, after the last reloadData.
  const std::map<size_t, std::shared_ptr<UITableViewCell>>& visibleCells()
      const {
    return visible_;
  }
  std::shared_ptr<UITableViewCell> cellForRowAtIndex(size_t row) const;
  // The row `cell` shows, if it is on screen.
  std::optional<size_t> rowOfCell(const UITableViewCell& cell) const;
  // Rows laid out before the table had a width span the width it has now.
  void layoutSubviews() override;
  // Separators under the visible rows, at the cells' insets.
  void draw(Canvas& canvas) const override;
  // A tap on a row (must exist).
  bool selectRow(size_t row);

 private:
  double rowHeight(size_t row) const;
  size_t row_count_ = 0;
  std::map<size_t, std::shared_ptr<UITableViewCell>> visible_;
  std::multimap<std::string, std::shared_ptr<UITableViewCell>> pool_;
};

}  // namespace zv::ui
