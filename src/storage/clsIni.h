// The road to INI files: a file, a section and a key are set, then a value is read or written.
#pragma once

#include <cstdint>
#include <vector>

#include "storage/text.h"

namespace torvane {

/// One INI file, through the system's profile calls. Nothing here raises an error: what is missing
/// reads as empty, a write that fails leaves the file as it was.
class clsIni {
 public:
  /// Sets the file; a bare name means a file in the Windows folder.
  void Path(const Text& sPath) { path_ = sPath; }
  void Key(const Text& sKey) { key_ = sKey; }
  void Section(const Text& sSection) { section_ = sSection; }

  /// The key's value, at most 254 characters of it; empty for an absent file, section or key.
  Text Value() const;
  /// Writes the key's value, creating file, section and key as needed. NULs are taken out, of the
  /// caller's string too.
  void Value(Text& sValue) const;
  void DeleteKey() const;
  /// Removes the section with all its keys.
  void DeleteSection() const;

  /// The section's key names in the order of the file, each closed by a NUL; 8,190 characters at
  /// most.
  Text INISection() const;
  /// The names of all sections in the same form.
  Text Sections() const;
  /// The section's key names; slot 1 of the caller's array is element 0 of `sKey`.
  void EnumerateCurrentSection(std::vector<Text>& sKey, std::int32_t& iCount) const;
  /// The names of all sections; empty names are left out.
  void EnumerateAllSections(std::vector<Text>& sSections, std::int32_t& iCount) const;

 private:
  Text path_;
  Text key_;
  Text section_;
};

}  // namespace torvane
