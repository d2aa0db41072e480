#include "editing/value_names.h"

#include "readers/list_description.h"

namespace torvane {

Text EntryValueName(const Text& NameForm, int n) {
  const auto place = static_cast<std::size_t>(n);
  const std::vector<Text> names = NamesOfForm(NameForm).First(place);
  return names.size() < place ? Text() : names.back();
}

Text EntryValueText(const Text& ListType, const ListItem& Item) {
  const auto* type = FindListType(ListType);
  return type && type->form->writes ? type->form->writes(Item) : Item.Text();
}

}  // namespace torvane
