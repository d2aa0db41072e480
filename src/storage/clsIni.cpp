#include "storage/clsIni.h"

#include "platform/winapi.h"

namespace torvane {
namespace {

constexpr DWORD kValueBuffer = 255;
constexpr DWORD kListBuffer = 8192;

Text Read(const char* section, const char* key, DWORD size, const std::string& path) {
  std::string buffer(size, ' ');
  const DWORD copied =
      GetPrivateProfileStringA(section, key, "", buffer.data(), size, path.c_str());
  return FromAnsi({buffer.data(), copied});
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
  return Read(section_.c_str(), key_.c_str(), kValueBuffer, path_);
}

void clsIni::Value(Text& sValue) const {
  std::erase(sValue, u'\0');
  WritePrivateProfileStringA(section_.c_str(), key_.c_str(), ToAnsi(sValue).c_str(), path_.c_str());
}

void clsIni::DeleteKey() const {
  WritePrivateProfileStringA(section_.c_str(), key_.c_str(), nullptr, path_.c_str());
}

void clsIni::DeleteSection() const {
  WritePrivateProfileStringA(section_.c_str(), nullptr, nullptr, path_.c_str());
}

Text clsIni::INISection() const {
  return Read(section_.c_str(), nullptr, kListBuffer, path_);
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
