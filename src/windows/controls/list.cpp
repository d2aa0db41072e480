#include "windows/controls/list.h"

namespace torvane {
namespace {

const Text kNoText;

}  // namespace

ListItem::ListItem(List& list, int index, torvane::Text text)
    : list_(list), index_(index), text_(std::move(text)), tag_(&kNoText) {}

const torvane::Text& ListItem::SubItems(int column) const {
  const auto slot = static_cast<std::size_t>(column - 1);
  return slot < subItems_.size() ? subItems_[slot] : kNoText;
}

torvane::Text ListItem::Shown(int column) const {
  constexpr std::size_t kMostUnits = 259;
  const torvane::Text& whole = column == 0 ? text_ : SubItems(column);
  return whole.size() > kMostUnits ? whole.substr(0, kMostUnits) + u'\u2026' : whole;
}

void ListItem::SubItems(int column, torvane::Text text) {
  const auto slot = static_cast<std::size_t>(column - 1);
  if (slot >= subItems_.size()) subItems_.resize(slot + 1);
  subItems_[slot] = std::move(text);
  if (ListView* view = list_.view()) view->itemChanged(*this);
}

void ListItem::Tag(const torvane::Text& tag) {
  tag_ = list_.ListItems().keptTag(tag);
}

bool ListItem::Selected() const {
  const ListView* view = list_.view();
  return view ? view->selected(index_) : selected_;
}

void ListItem::Selected(bool selected) {
  selected_ = selected;
  if (ListView* view = list_.view()) view->setSelected(index_, selected);
}

void ListItem::EnsureVisible() const {
  if (ListView* view = list_.view()) view->ensureVisible(index_);
}

void ColumnHeaderCollection::Add(Text heading) {
  headings_.push_back(std::move(heading));
  if (ListView* view = list_.view()) view->columnAdded(headings_.back());
}

void ColumnHeaderCollection::Clear() {
  headings_.clear();
  if (ListView* view = list_.view()) view->columnsCleared();
}

ListItem& ListItemCollection::Add(Text text) {
  items_.push_back(std::make_unique<ListItem>(list_, Count() + 1, std::move(text)));
  ListItem& item = *items_.back();
  if (ListView* view = list_.view()) view->itemAdded(item);
  return item;
}

int ListItemCollection::RemoveWhere(const std::function<bool(const ListItem&)>& doomed) {
  std::vector<int> rows;
  for (int index = Count(); index >= 1; --index) {
    if (doomed((*this)(index))) rows.push_back(index);
  }
  if (rows.empty()) return 0;

  for (const int row : rows) items_[static_cast<std::size_t>(row - 1)].reset();
  std::erase(items_, nullptr);
  for (int index = 1; index <= Count(); ++index) (*this)(index).index_ = index;
  if (ListView* view = list_.view()) view->itemsRemoved(rows);
  return static_cast<int>(rows.size());
}

void ListItemCollection::Clear() {
  items_.clear();
  tags_.clear();
  if (ListView* view = list_.view()) view->itemsCleared();
}

void List::SelectedItem(ListItem& item) {
  SelectAll(false);
  item.Selected(true);
  if (view()) view()->setCurrent(item.Index());
}

void List::EmptyText(torvane::Text text) {
  emptyText_ = std::move(text);
  showModel();
}

void List::SelectAll(bool selected) {
  for (int index = 1; index <= items_.Count(); ++index) items_(index).selected_ = selected;
  if (view()) view()->setAllSelected(selected);
}

int List::SelectedCount() const {
  if (view()) return static_cast<int>(SendMessageW(hWnd(), LVM_GETSELECTEDCOUNT, 0, 0));
  int count = 0;
  for (int index = 1; index <= items_.Count(); ++index) count += items_(index).selected_ ? 1 : 0;
  return count;
}

ListItem* List::SelectedItem() {
  if (view()) {
    const int row = view()->current();
    return row == 0 ? nullptr : &items_(row);
  }
  for (int index = 1; index <= items_.Count(); ++index) {
    if (items_(index).Selected()) return &items_(index);
  }
  return nullptr;
}

}  // namespace torvane
