// The list in report view: columns of text, rows in the order of adding, several of them
// selectable.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <vector>

#include "windows/controls/control.h"

namespace torvane {

class List;

/// A row of a list. Lives until it is removed, at one address.
class ListItem {
 public:
  ListItem(List& list, int index, ::torvane::Text text);

  const ::torvane::Text& Text() const { return text_; }
  /// The text of column `column` + 1, from 1 on; empty where none was set.
  const ::torvane::Text& SubItems(int column) const;
  void SubItems(int column, ::torvane::Text text);
  /// What a cell of column `column` + 1, from 0 on, shows: the text, or the front of a long one
  /// with an ellipsis. To lay out a text of a million characters takes a view seconds.
  ::torvane::Text Shown(int column) const;
  /// A text that the program owns. The list keeps one that many of its rows have once.
  const ::torvane::Text& Tag() const { return *tag_; }
  void Tag(const ::torvane::Text& tag);
  /// A number that the program owns.
  std::size_t Number() const { return number_; }
  void Number(std::size_t number) { number_ = number; }
  /// What the row's image says, for those who can't see it; a text that lasts.
  TextView ImageNote() const { return imageNote_; }
  void ImageNote(TextView note) { imageNote_ = note; }
  /// 1-based place in the list.
  int Index() const { return index_; }
  bool Selected() const;
  void Selected(bool selected);
  /// Brings the row into sight.
  void EnsureVisible() const;

 private:
  friend class List;
  friend class ListItemCollection;

  List& list_;
  int index_;
  bool selected_ = false;
  ::torvane::Text text_;
  const ::torvane::Text* tag_;  ///< the collection's
  std::size_t number_ = 0;
  TextView imageNote_;
  std::vector<::torvane::Text> subItems_;
};

/// What a list asks of its view. Rows are numbered from 1 here. The view reads the texts from the
/// model when it paints. Messages to its window (LVM_...) go past the model: an image number set by
/// LVM_SETITEMW belongs to the row and moves with it.
class ListView : public ControlView {
 public:
  virtual void columnAdded(const Text& heading) = 0;
  virtual void columnsCleared() = 0;
  /// A row has come behind the last one.
  virtual void itemAdded(const ListItem& item) = 0;
  /// A text of the row has changed.
  virtual void itemChanged(const ListItem& item) = 0;
  /// Rows have gone; `rows` has their former numbers, descending. The others keep their order,
  /// image and selection.
  virtual void itemsRemoved(const std::vector<int>& rows) = 0;
  virtual void itemsCleared() = 0;
  virtual bool selected(int row) const = 0;
  virtual void setSelected(int row, bool selected) = 0;
  virtual void setAllSelected(bool selected) = 0;
  /// The row with the focus, 0 for none.
  virtual int current() const = 0;
  /// Gives a row the focus, selects it alone and brings it into sight.
  virtual void setCurrent(int row) = 0;
  /// Scrolls until the row is in sight.
  virtual void ensureVisible(int row) = 0;
};

/// The column headings, in order of adding.
class ColumnHeaderCollection {
 public:
  explicit ColumnHeaderCollection(List& list) : list_(list) {}
  void Add(Text heading);
  void Clear();
  int Count() const { return static_cast<int>(headings_.size()); }
  /// The heading at a 1-based index.
  const Text& operator()(int index) const {
    return headings_.at(static_cast<std::size_t>(index - 1));
  }

 private:
  List& list_;
  std::vector<Text> headings_;
};

/// The rows, counted and indexed from 1.
class ListItemCollection {
 public:
  explicit ListItemCollection(List& list) : list_(list) {}
  /// Adds a row behind the last one.
  ListItem& Add(Text text);
  /// Removes every row that `doomed` answers true for, asked from the last row to the first.
  /// Gives their number.
  int RemoveWhere(const std::function<bool(const ListItem&)>& doomed);
  void Clear();
  int Count() const { return static_cast<int>(items_.size()); }
  ListItem& operator()(int index) { return *items_.at(static_cast<std::size_t>(index - 1)); }
  const ListItem& operator()(int index) const {
    return *items_.at(static_cast<std::size_t>(index - 1));
  }

 private:
  friend class ListItem;

  /// The one text of the rows' tags that is equal, kept until Clear().
  const Text* keptTag(const Text& tag) { return &*tags_.insert(tag).first; }

  List& list_;
  std::vector<std::unique_ptr<ListItem>> items_;
  std::set<Text> tags_;
};

/// What a list was filled from; the program knows what it is.
class ListSource {
 public:
  virtual ~ListSource() = default;
};

/// The list control.
class List : public ControlWithView<ListView> {
 public:
  using ControlWithView::ControlWithView;
  void accept(ControlVisitor& visitor) override { visitor.visit(*this); }

  ColumnHeaderCollection& ColumnHeaders() { return columns_; }
  const ColumnHeaderCollection& ColumnHeaders() const { return columns_; }
  ListItemCollection& ListItems() { return items_; }
  const ListItemCollection& ListItems() const { return items_; }
  /// The row with the focus, null for none. Without a view the first selected row.
  ListItem* SelectedItem();
  /// Selects a row alone and gives it the focus.
  void SelectedItem(ListItem& item);
  void SelectAll(bool selected);
  /// What the list says in place of rows while it has none; empty for nothing.
  const ::torvane::Text& EmptyText() const { return emptyText_; }
  void EmptyText(::torvane::Text text);
  /// How many rows are selected.
  int SelectedCount() const;
  /// What the program filled the list from, null for nothing; the list keeps it.
  ListSource* Source() const { return source_.get(); }
  void Source(std::unique_ptr<ListSource> source) { source_ = std::move(source); }
  /// A text that the program owns.
  const ::torvane::Text& Tag() const { return tag_; }
  void Tag(::torvane::Text tag) { tag_ = std::move(tag); }

 private:
  ColumnHeaderCollection columns_{*this};
  ListItemCollection items_{*this};
  ::torvane::Text tag_;
  std::unique_ptr<ListSource> source_;
  ::torvane::Text emptyText_;
};

}  // namespace torvane
