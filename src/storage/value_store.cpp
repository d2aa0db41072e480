#include "storage/value_store.h"

#include <algorithm>

#include "platform/extras.h"
#include "storage/raised_error.h"

namespace torvane {
namespace {

constexpr std::int32_t kReplaceErrorNumber = 26002;

using Pointers = std::vector<const StoredValue*>;

Pointers Ordered(const StorePicture& picture) {
  Pointers values;
  for (const StoredValue& value : picture.values) values.push_back(&value);
  std::sort(values.begin(), values.end(), [](const StoredValue* left, const StoredValue* right) {
    if (left->name != right->name) return left->name < right->name;
    return left->bytes < right->bytes;
  });
  return values;
}

// The values of `from` that stay where they are: they are the front of `to`, in its order.
struct Staying {
  std::vector<bool> inFrom;
  std::size_t inTo = 0;  ///< so many of `to`, from its front
};

Staying WhatStays(const StorePicture& from, const StorePicture& to) {
  Staying staying{std::vector<bool>(from.values.size()), 0};
  for (std::size_t at = 0; at < from.values.size() && staying.inTo < to.values.size(); ++at) {
    if (from.values[at] != to.values[staying.inTo]) continue;
    staying.inFrom[at] = true;
    ++staying.inTo;
  }
  return staying;
}

Text JoinLines(const std::vector<Text>& names) {
  Text lines;
  for (const Text& name : names) lines += u"\r\n" + name;
  return lines;
}

}  // namespace

bool SameContent(const StorePicture& left, const StorePicture& right) {
  if (left.values.size() != right.values.size()) return false;
  if (left.values == right.values) return true;
  const Pointers leftValues = Ordered(left);
  const Pointers rightValues = Ordered(right);
  return std::equal(
      leftValues.begin(), leftValues.end(), rightValues.begin(),
      [](const StoredValue* one, const StoredValue* other) { return *one == *other; });
}

std::size_t SizeOf(const StorePicture& picture) {
  std::size_t size = sizeof picture;
  for (const StoredValue& value : picture.values) {
    size += sizeof value + value.name.size() * sizeof(char16_t) + value.bytes.size();
  }
  return size;
}

StorePicture ValueStore::Replace(const StorePicture& from, const StorePicture& to,
                                 Clearing clearing) const {
  CheckHolds(to);
  try {
    Change(from, to, clearing);
    StorePicture now = Read();
    if (SameContent(now, to)) return now;
    throw RaisedError(kReplaceErrorNumber, ExecutableBaseName(),
                      u"The list could not be written as it was to be: " + Identity());
  } catch (const RaisedError& error) {
    const std::vector<Text> lost = PutBack(from);
    if (lost.empty()) throw;
    throw RaisedError(error.Number(), error.Source(),
                      error.Description() +
                          u"\r\n\r\nThese entries could not be put back as they were:" +
                          JoinLines(lost));
  } catch (...) {
    PutBack(from);
    throw;
  }
}

void ValueStore::Change(const StorePicture& from, const StorePicture& to, Clearing clearing) const {
  const auto open = KeepOpen();
  if (ReplaceAtOnce(from, to, clearing)) return;
  if (clearing == Clearing::Whole) {
    DeleteAll();
    for (const StoredValue& value : to.values) Set(value);
    return;
  }
  const Staying staying = WhatStays(from, to);
  for (std::size_t at = 0; at < from.values.size(); ++at) {
    if (!staying.inFrom[at]) Delete(from.values[at]);
  }
  for (std::size_t at = staying.inTo; at < to.values.size(); ++at) Set(to.values[at]);
}

std::vector<Text> ValueStore::PutBack(const StorePicture& picture) const {
  const StorePicture now = Read();
  if (now.values == picture.values) return {};
  const auto open = KeepOpen();
  const auto tryTo = [](const auto& change) {
    try {
      change();
    } catch (const RaisedError&) {
      // What can't be put back is told below, entry by entry.
    }
  };
  bool isDone = false;
  tryTo([&] { isDone = ReplaceAtOnce(now, picture, Clearing::EachValue); });
  const Staying staying = WhatStays(now, picture);
  for (std::size_t at = 0; at < now.values.size() && !isDone; ++at) {
    if (!staying.inFrom[at]) tryTo([&] { Delete(now.values[at]); });
  }
  for (std::size_t at = staying.inTo; at < picture.values.size() && !isDone; ++at) {
    tryTo([&] { Set(picture.values[at]); });
  }
  const StorePicture then = Read();
  std::vector<Text> lost;
  for (const StoredValue& value : picture.values) {
    if (std::find(then.values.begin(), then.values.end(), value) == then.values.end()) {
      lost.push_back(value.name);
    }
  }
  return lost;
}

}  // namespace torvane
