// The road to the registry: root, key, value name and type are set, then a value is read, written
// or deleted, or the names of a key are listed.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "storage/text.h"
#include "storage/variant.h"

namespace torvane {

/// Root keys as the class takes them.
constexpr std::int32_t kCurrentUser = static_cast<std::int32_t>(0x80000001);
constexpr std::int32_t kLocalMachine = static_cast<std::int32_t>(0x80000002);

/// Value types as the class takes them.
constexpr std::int32_t kTextType = 1;
constexpr std::int32_t kNumberType = 4;

/// The data of a value as the registry has it, text in 16-bit units.
struct TypedData {
  std::int32_t type = 0;
  Bytes bytes;
};

/// A key of the registry, opened and closed by each operation unless KeepOpen() has been called.
/// Reading never fails loudly; what changes the registry throws RaisedError.
class clsRegistry {
 public:
  bool KeyExists() const;
  /// Creates the key with its parents; one that is there is a success. True, or throws.
  bool CreateKey() const;
  /// Deletes the value. True, or throws, also where the value isn't there.
  bool DeleteValue() const;

  /// The value by its stored type, which becomes ValueType: text for the text types (references to
  /// the environment expanded in type 2, embedded NULs kept), a number for the two number types,
  /// else bytes with a spare one behind them. The default where there is no such value.
  Variant Value();
  /// Writes the value by ValueType, creating the key as needed; throws on failure. Types 1 and 2
  /// write text, which is stored as type 2 where it has two percent signs with something between.
  /// Type 3 wants bytes and leaves out the spare one that reading adds. Types 4 and 5 write a
  /// number as type 4 and ignore anything else.
  void Value(const Variant& vValue) const;

  /// The value's data as it is, for writing it elsewhere; nothing where there is none.
  std::optional<TypedData> Data() const;
  /// Writes data as it is, whatever ValueType is; throws as Value does.
  void Data(const TypedData& data) const;

  /// The names of the key's values in the registry's order; slot 1 of the caller's array is element
  /// 0 of `sKeyNames`. True always: the count tells whether there are any.
  bool EnumerateValues(std::vector<Text>& sKeyNames, std::int32_t& iKeyCount) const;

  /// From now on the key that a change opens stays open for those that follow.
  void KeepOpen() { keepsOpen_ = true; }

  void ValueType(std::int32_t eValueType) { valueType_ = eValueType; }
  /// kCurrentUser or kLocalMachine.
  void ClassKey(std::int32_t eKey) {
    classKey_ = eKey;
    kept_.reset();
  }
  void SectionKey(const Text& sSectionKey) {
    sectionKey_ = sSectionKey;
    kept_.reset();
  }
  void ValueKey(const Text& sValueKey) { valueKey_ = sValueKey; }
  /// What Value() gives for a value that can't be read.
  const Variant& Default() const { return default_; }
  void Default(Variant vDefault) { default_ = std::move(vDefault); }

 private:
  class OpenKey;

  /// The key to change values of: the one that was kept, else what `open` gives.
  template <class Open>
  std::shared_ptr<const OpenKey> ForChange(const Open& open) const;
  Text WriteFailure(const Text& value) const;

  std::int32_t classKey_ = 0;
  Text sectionKey_;
  Text valueKey_;
  Variant default_;
  std::int32_t valueType_ = 0;
  bool keepsOpen_ = false;
  mutable std::shared_ptr<const OpenKey> kept_;
};

}  // namespace torvane
