// Hives of a size, as a prefix with much software in it has them.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/posix/prefix/new_hive.h"
#include "platform/posix/registry/hive.h"
#include "url_list.h"

namespace torvane::benchmarks {

/// A hive of `size` bytes or a little more: many keys of a few values of all forms.
inline std::string MakeHive(std::size_t size) {
  std::string text = posix::NewHive(posix::HiveRoot::User, "win64");
  for (int key = 0; text.size() < size; ++key) {
    const std::string number = std::to_string(key);
    text += "\n[Software\\\\Classes\\\\CLSID\\\\{00000000-0000-0000-0000-" + number +
            "}\\\\InProcServer32] 1700000000\n#time=1da0123456789ab\n" +
            "@=\"C:\\\\windows\\\\system32\\\\library" + number + ".dll\"\n" +
            "\"ThreadingModel\"=\"Both\"\n\"Version\"=dword:0000" + "00ff\n" +
            "\"Path\"=str(2):\"%SystemRoot%\\\\system32\\\\caf\\xe9" + number + "\"\n" +
            "\"Data\"=hex:01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,15,16,\\\n" +
            "  17,18,19,1a,1b,1c,1d,1e,1f,20\n";
  }
  return text;
}

/// The key of a list of URLs, as a hive has it.
inline std::string MakeListKey(int count) {
  std::string text = "\n[Software\\\\TorvaneTest\\\\List] 1700000000\n#time=1da0123456789ab\n";
  for (int n = 1; n <= count; ++n)
    text += "\"File" + std::to_string(n) + "\"=\"" + UrlList::Url(n) + "\"\n";
  return text;
}

inline void WriteFile(const std::filesystem::path& file, const std::string& bytes) {
  std::ofstream(file, std::ios::binary) << bytes;
}

}  // namespace torvane::benchmarks
