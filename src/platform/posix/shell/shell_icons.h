// The shell's icon numbers. A number stands for a description, which the view turns into a picture.
#pragma once

#include <filesystem>
#include <string>

namespace torvane::posix {

/// What an icon number shows.
struct IconDescription {
  enum class Kind { Unknown, Folder, OpenFolder, Drive, FileType, IconFile };
  Kind kind = Kind::Unknown;
  std::u16string extension;    ///< FileType: in lower case with its point (".html"), may be empty
  std::filesystem::path file;  ///< IconFile: host path of an .ico file
};

/// The description of an icon number that SHGetFileInfoW gave; Unknown for any other number, and
/// for 0, which is what a path that isn't there shows.
IconDescription DescribeIcon(int number);

}  // namespace torvane::posix
