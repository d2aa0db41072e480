// Where values are kept, a registry key or a section of an INI file: its content is taken as one
// picture, and replaced whole or not at all.
//
// A picture is compared without the order of its values: another program may have saved the same
// values in an order of its own.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "storage/registry_data.h"
#include "storage/text.h"
#include "storage/variant.h"

namespace torvane {

class clsRegistry;

/// A value as its store holds it, data to the byte. In an INI file the data is the text behind the
/// '=' in 16-bit units, quotes included; a line without '=' is no value.
struct StoredValue {
  Text name;
  std::int32_t type = 0;
  Bytes bytes;  ///< no spare byte here

  bool operator==(const StoredValue&) const = default;
};

/// All that a store held at one time, in its order.
struct StorePicture {
  bool exists = false;  ///< whether there was such a key or section
  std::vector<StoredValue> values;
};

/// Whether two pictures hold the same values, in whatever order.
bool SameContent(const StorePicture& left, const StorePicture& right);
/// The bytes that a picture takes in memory, about.
std::size_t SizeOf(const StorePicture& picture);

/// How a store is emptied before it is written anew.
enum class Clearing {
  EachValue,  ///< what stays in its place isn't touched
  Whole,      ///< with all that is no value: the comments of a section
};

/// A place that holds values under names. Reading never fails: what isn't there has no values.
class ValueStore {
 public:
  virtual ~ValueStore() = default;

  virtual StorePicture Read() const = 0;
  /// What reading a value of the store gives.
  virtual Variant ValueOf(const StoredValue& stored) const = 0;
  /// Whether ValueOf tells all that there is of the value.
  virtual bool ReadsWhole(const StoredValue& stored) const = 0;
  /// The value that writing a text leaves.
  virtual StoredValue ValueFor(const Text& name, const Text& text) const = 0;
  /// Whether the store takes every character of a text.
  virtual bool Takes(const Text& text) const = 0;
  /// Names the store among all others.
  virtual Text Identity() const = 0;
  /// Why the store can't be read, in a sentence; empty where it can be or isn't there.
  virtual Text Problem() const { return {}; }

  /// Makes `to` of `from`, which is what the store holds now, and gives what it holds then. An
  /// error on the way puts `from` back and is thrown as RaisedError; its description says what is
  /// missing where putting back fails too. What the store couldn't hold is refused before anything
  /// is changed.
  StorePicture Replace(const StorePicture& from, const StorePicture& to, Clearing clearing) const;

 protected:
  /// These throw RaisedError.
  virtual void Delete(const StoredValue& value) const = 0;
  virtual void Set(const StoredValue& value) const = 0;
  virtual void DeleteAll() const = 0;
  /// While what it gives lives, what the store has to open for a change stays open for the next.
  virtual std::shared_ptr<const void> KeepOpen() const { return nullptr; }
  /// Throws where the store can't hold `to`, or not without harm to what it holds besides.
  virtual void CheckHolds(const StorePicture& /*to*/) const {}
  /// Does in one step what can't be done value by value; false where it can.
  virtual bool ReplaceAtOnce(const StorePicture& /*from*/, const StorePicture& /*to*/,
                             Clearing /*clearing*/) const {
    return false;
  }

 private:
  void Change(const StorePicture& from, const StorePicture& to, Clearing clearing) const;
  /// Gives the names of the values that aren't back.
  std::vector<Text> PutBack(const StorePicture& picture) const;
};

/// The values of a key below HKEY_CURRENT_USER.
class KeyStore : public ValueStore {
 public:
  explicit KeyStore(Text path) : path_(std::move(path)) {}
  StorePicture Read() const override;
  /// Whether any of the values is wanted; reads no further than the first that is.
  bool Any(const std::function<bool(const StoredValue&)>& wanted) const;
  Variant ValueOf(const StoredValue& stored) const override;
  bool ReadsWhole(const StoredValue& stored) const override;
  StoredValue ValueFor(const Text& name, const Text& text) const override;
  bool Takes(const Text& text) const override;
  Text Identity() const override;

 protected:
  void Delete(const StoredValue& value) const override;
  void Set(const StoredValue& value) const override;
  void DeleteAll() const override;
  std::shared_ptr<const void> KeepOpen() const override;

 private:
  std::shared_ptr<clsRegistry> Key(const Text& value) const;

  Text path_;
  mutable std::weak_ptr<clsRegistry> kept_;
};

/// The lines of a section of an INI file; a bare file name means a file in the Windows folder.
class SectionStore : public ValueStore {
 public:
  /// The file is the user's own copy of `file` where Windows keeps one (IniFileInUse).
  SectionStore(const Text& file, Text section);
  StorePicture Read() const override;
  Variant ValueOf(const StoredValue& stored) const override;
  bool ReadsWhole(const StoredValue& stored) const override;
  StoredValue ValueFor(const Text& name, const Text& text) const override;
  bool Takes(const Text& text) const override;
  Text Identity() const override;
  Text Problem() const override;

 protected:
  void Delete(const StoredValue& value) const override;
  void Set(const StoredValue& value) const override;
  void DeleteAll() const override;
  void CheckHolds(const StorePicture& to) const override;
  bool ReplaceAtOnce(const StorePicture& from, const StorePicture& to,
                     Clearing clearing) const override;

 private:
  bool StandsTwice() const;
  void Write(const char16_t* key, const char16_t* text) const;
  void WriteLines(const StorePicture& picture) const;
  [[noreturn]] void Refuse(const Text& why) const;
  [[noreturn]] void FailToWrite() const;

  Text file_;
  Text section_;
};

}  // namespace torvane
