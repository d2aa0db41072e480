// A list of URLs in a registry key, which no file tests go with, and the engine that is measured on
// it: read the list, select every second entry, delete the selected.
#pragma once

#include <string>

#include "editing/rewrite.h"
#include "readers/basListFill.h"
#include "support/list_window.h"

namespace torvane::benchmarks {

/// A scratch Windows world outside of a test.
class UrlList : public testing::ListWorld {
 public:
  /// One of the values, as the reader shows it too.
  static std::string Url(int number) {
    return std::string("http://site")
        .append(std::to_string(number % 97))
        .append(".example/folder/page")
        .append(std::to_string(number))
        .append(".html");
  }
  void MakeValues(int count) {
    std::vector<testing::TextValue> values;
    for (int n = 1; n <= count; ++n)
      values.emplace_back(std::string("File").append(std::to_string(n)), Url(n));
    Key(values);
  }
  void Fill() { FillEntry(FillUrlList, Row()); }
  void FillFiles() { FillEntry(FillRegistryList, ListEntry("0")); }
  void DeleteEverySecond() {
    for (int n = 1; n <= list_.ListItems().Count(); n += 2) list_.ListItems()(n).Selected(true);
    DeleteSelectedFromRegistry(list_);
  }
  int Count() const { return list_.ListItems().Count(); }

  static MruEntry Row() {
    MruEntry row = ListEntry("2");
    row.CountValue = Text(kNone);
    return row;
  }
  std::filesystem::path HostPath(const std::string& windowsPath) const { return Host(windowsPath); }

 private:
  void TestBody() override {}
};

}  // namespace torvane::benchmarks
