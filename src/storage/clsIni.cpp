#include "storage/clsIni.h"

#include "platform/winapi.h"

namespace torvane {
namespace {

constexpr DWORD kValueBuffer = 255;
constexpr DWORD kListBuffer = 8192;

Text Read(const WCHAR* section, const WCHAR* key, DWORD size, const Text& path) {
  Text buffer(size, u' ');
  buffer.resize(
      GetPrivateProfileStringW(section, key, Wide(u""), WideBuffer(buffer), size, Wide(path)));
  return buffer;
}

std::vector<Text> SplitAtNulls(const Text& list) {
  std::vector<Text> names;
  std::size_t begin = 0;
  for (std::size_t nul = list.find(u'\0'); nul != Text::npos; nul = list.find(u'\0', begin)) {
    names.push_back(list.substr(begin, nul - begin));
    begin = nul + 1;
  }
  return names;
}

}  // namespace

Text clsIni::Value() const {
  return Read(Wide(section_), Wide(key_), kValueBuffer, path_);
}

void clsIni::Value(Text& sValue) const {
  std::erase(sValue, u'\0');
  WritePrivateProfileStringW(Wide(section_), Wide(key_), Wide(sValue), Wide(path_));
}

void clsIni::DeleteKey() const {
  WritePrivateProfileStringW(Wide(section_), Wide(key_), nullptr, Wide(path_));
}

void clsIni::DeleteSection() const {
  WritePrivateProfileStringW(Wide(section_), nullptr, nullptr, Wide(path_));
}

Text clsIni::INISection() const {
  return Read(Wide(section_), nullptr, kListBuffer, path_);
}

Text clsIni::Sections() const {
  return Read(nullptr, nullptr, kListBuffer, path_);
}

void clsIni::EnumerateCurrentSection(std::vector<Text>& sKey, std::int32_t& iCount) const {
  sKey = SplitAtNulls(INISection());
  iCount = static_cast<std::int32_t>(sKey.size());
}

void clsIni::EnumerateAllSections(std::vector<Text>& sSections, std::int32_t& iCount) const {
  sSections = SplitAtNulls(Sections());
  std::erase_if(sSections, [](const Text& name) { return name.empty(); });
  iCount = static_cast<std::int32_t>(sSections.size());
}

}  // namespace torvane
