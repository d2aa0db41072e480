// Files that hold lists as they are stored: what the registry editor imports, and for what lies in
// INI files, the sections.
#pragma once

#include <string>
#include <vector>

#include "readers/list_description.h"

namespace torvane {

/// Keys below HKEY_CURRENT_USER as a file that the registry editor imports to the byte: version 5,
/// UTF-16 with its mark.
class RegFile {
 public:
  void Add(const ListPlace& place, const StorePicture& picture);
  std::string Bytes() const;

 private:
  Text text_ = u"Windows Registry Editor Version 5.00\r\n";
};

/// Sections of INI files, each under a comment that names its file; UTF-16 with its mark.
class SectionFile {
 public:
  void Add(const Text& identity, const ListPlace& place, const StorePicture& picture);
  bool IsEmpty() const { return text_.empty(); }
  std::string Bytes() const;

 private:
  Text text_;
};

}  // namespace torvane
