// What the registry calls promise wherever they run: result codes, sizes, what stands in a buffer
// and behind it, and what is there afterwards.
#include <array>
#include <cctype>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/winapi.h"
#include "support/hostile_values.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

constexpr REGSAM kChange = 0x3F;
const std::string kPath = "Software\\TorvaneRegistryTest";

class RegistryTest : public ScratchWorld {
 protected:
  RegistryTest() {
    UseKey(kPath);
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, W(kPath), 0, nullptr, 0, kChange, nullptr, &key_,
                              nullptr),
              ERROR_SUCCESS);
  }
  ~RegistryTest() override { RegCloseKey(key_); }

  /// Makes a key below; tells whether it is new.
  bool Make(const std::string& name) const {
    HKEY made = nullptr;
    DWORD disposition = 0;
    EXPECT_EQ(RegCreateKeyExW(key_, W(name), 0, nullptr, 0, kChange, nullptr, &made, &disposition),
              ERROR_SUCCESS);
    RegCloseKey(made);
    return disposition == REG_CREATED_NEW_KEY;
  }
  HKEY Open(REGSAM rights) const {
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(key_, W(""), 0, rights, &key), ERROR_SUCCESS);
    return key;
  }
  LSTATUS Set(const std::string& name, DWORD type, const std::string& bytes) const {
    // No NUL behind the data: the real call takes one there for part of the text.
    const std::string padded = bytes + "##";
    return RegSetValueExW(key_, W(name), 0, type, reinterpret_cast<const BYTE*>(padded.data()),
                          static_cast<DWORD>(bytes.size()));
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    Text name(16384, u'\0');
    for (DWORD index = 0;; ++index) {
      auto size = static_cast<DWORD>(name.size());
      const LSTATUS status =
          RegEnumValueW(key_, index, WideBuffer(name), &size, nullptr, nullptr, nullptr, nullptr);
      if (status != ERROR_SUCCESS) {
        EXPECT_EQ(status, ERROR_NO_MORE_ITEMS);
        return names;
      }
      names.push_back(Utf8(TextView(name).substr(0, size)));
    }
  }

  HKEY key_ = nullptr;
};

struct Answer {
  LSTATUS status;
  DWORD type = 0xDDDDDDDD;
  DWORD size;
  std::string buffer;
};

/// Queries with `room` bytes of room in a buffer of more, filled with '#'.
Answer Query(HKEY key, const std::string& name, std::size_t room) {
  Answer answer{ERROR_SUCCESS, 0, static_cast<DWORD>(room), std::string(room + 4, '#')};
  answer.status = RegQueryValueExW(key, W(name), nullptr, &answer.type,
                                   reinterpret_cast<BYTE*>(answer.buffer.data()), &answer.size);
  return answer;
}

/// The same of the key's only value, by its place.
Answer Enumerate(HKEY key, const std::string&, std::size_t room) {
  Answer answer{ERROR_SUCCESS, 0, static_cast<DWORD>(room), std::string(room + 4, '#')};
  WCHAR name[16];
  DWORD nameSize = 16;
  answer.status = RegEnumValueW(key, 0, name, &nameSize, nullptr, &answer.type,
                                reinterpret_cast<BYTE*>(answer.buffer.data()), &answer.size);
  return answer;
}

TEST_F(RegistryTest, GivesBackWhatWasSetInEveryWayOfReading) {
  for (const auto& [what, type, bytes] : HostileDataTable()) {
    SCOPED_TRACE(what);
    ASSERT_EQ(Set("v", type, bytes), ERROR_SUCCESS);
    const auto length = static_cast<DWORD>(bytes.size());

    DWORD size = 0xDDDDDDDD;
    EXPECT_EQ(RegQueryValueExW(key_, W("v"), nullptr, nullptr, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, length);

    for (const std::size_t room :
         {std::size_t{0}, bytes.size() - (bytes.empty() ? 0 : 1), bytes.size(), bytes.size() + 5}) {
      SCOPED_TRACE(room);
      if (room == 1) continue;  // Wine writes a NUL behind the end of such a buffer
      for (const auto& ask : {Query, Enumerate}) {
        const Answer answer = ask(key_, "v", room);
        EXPECT_EQ(answer.type, type);
        EXPECT_EQ(answer.size, length);
        EXPECT_EQ(answer.status, room < length ? ERROR_MORE_DATA : ERROR_SUCCESS);
        const bool isRead = room >= length;
        EXPECT_TRUE(!isRead || answer.buffer.starts_with(bytes));
        EXPECT_EQ(answer.buffer.substr(room), "####");
      }
      // Behind a text that has no NUL comes one, where there is room.
      const bool isText = type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
      const bool isOpen = length >= 2 && length % 2 == 0 && !bytes.ends_with("\0\0"s);
      if (!isText || !isOpen || room <= length) continue;
      EXPECT_EQ(Query(key_, "v", room).buffer.substr(length, 3), "\0\0#"s);
    }
  }
  EXPECT_EQ(Names(), std::vector<std::string>{"v"});
}

TEST_F(RegistryTest, FindsEveryNameWithoutCase) {
  for (const std::string& name : HostileNames()) {
    SCOPED_TRACE(name.substr(0, 20));
    ASSERT_EQ(Set(name, REG_SZ, "old\0"s), ERROR_SUCCESS);
    std::string other = name;
    for (char& byte : other)
      if (std::isalpha(static_cast<unsigned char>(byte)) != 0)
        byte = static_cast<char>(byte ^ 0x20);
    EXPECT_EQ(Set(other, REG_BINARY, "new"), ERROR_SUCCESS);
    EXPECT_EQ(Names(), std::vector<std::string>{name}) << "the first spelling stays";
    EXPECT_EQ(Query(key_, name, 3).buffer, "new####");
    EXPECT_EQ(RegDeleteValueW(key_, W(other)), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueW(key_, W(name)), ERROR_FILE_NOT_FOUND);
  }
  EXPECT_EQ(Set("CAF\u00C9", REG_SZ, "\0"s), ERROR_SUCCESS);
  EXPECT_EQ(Query(key_, "caf\u00E9", 1).status, ERROR_SUCCESS);
  EXPECT_EQ(Query(key_, "cafe", 1).status, ERROR_FILE_NOT_FOUND);
  const std::string tooLong(16384, 'n');
  EXPECT_EQ(Set(tooLong, REG_SZ, "\0"s), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(Query(key_, tooLong, 1).status, ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryTest, NameBufferNeedsRoomForTheNul) {
  ASSERT_EQ(Set("longname", REG_SZ, "data\0"s), ERROR_SUCCESS);
  for (const DWORD room : {0U, 4U, 8U, 9U, 12U}) {
    SCOPED_TRACE(room);
    Text name(room + 4, u'#');
    DWORD size = room;
    const LSTATUS status =
        RegEnumValueW(key_, 0, WideBuffer(name), &size, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(status, room < 9 ? ERROR_MORE_DATA : ERROR_SUCCESS);
    if (status == ERROR_SUCCESS) {
      EXPECT_EQ(size, 8U);
      EXPECT_EQ(name.substr(0, 9), u"longname\0"s);
    }
    EXPECT_EQ(name.substr(room), u"####");
  }
}

TEST_F(RegistryTest, PathsAreReadAsTheSystemReadsThem) {
  Make("Deep\\er");
  const struct {
    HKEY root;
    std::string path;
    LSTATUS opened;
  } cases[] = {
      {HKEY_CURRENT_USER, "", ERROR_SUCCESS},
      {HKEY_CURRENT_USER, kPath + "\\", ERROR_SUCCESS},
      {key_, "dEEP\\ER\\", ERROR_SUCCESS},
      {key_, "Deep", ERROR_SUCCESS},
      {key_, "Dee", ERROR_FILE_NOT_FOUND},
      {key_, "Deep\\er\\est", ERROR_FILE_NOT_FOUND},
      {key_, "Deep/er", ERROR_FILE_NOT_FOUND},
      {key_, "\\Deep", ERROR_BAD_PATHNAME},
      {HKEY_CURRENT_USER, "\\" + kPath, ERROR_BAD_PATHNAME},
      {HKEY_CURRENT_USER, "\\", ERROR_BAD_PATHNAME},
  };
  for (const auto& [root, path, opened] : cases) {
    SCOPED_TRACE(path);
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(root, W(path), 0, KEY_QUERY_VALUE, &key), opened);
    EXPECT_EQ(RegCloseKey(key), opened == ERROR_SUCCESS ? ERROR_SUCCESS : ERROR_INVALID_HANDLE);
  }
}

TEST_F(RegistryTest, CreatingSaysWhetherTheKeyIsNew) {
  for (const char* name : {"a/b", "caf\u00E9\u0416", "[x] \"y\"", " z "}) {
    EXPECT_TRUE(Make(name)) << name;
    EXPECT_FALSE(Make(name)) << name;
  }
  EXPECT_FALSE(Make("CAF\u00C9\u0416"));
}

TEST_F(RegistryTest, RightsAndHandlesAreChecked) {
  ASSERT_EQ(Set("v", REG_SZ, "x\0"s), ERROR_SUCCESS);
  const HKEY reading = Open(KEY_QUERY_VALUE);
  const HKEY writing = Open(KEY_SET_VALUE);
  const BYTE byte = 0;
  EXPECT_EQ(RegSetValueExW(reading, W("w"), 0, REG_SZ, &byte, 1), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegDeleteValueW(reading, W("v")), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Query(writing, "v", 2).status, ERROR_ACCESS_DENIED);
  EXPECT_EQ(Names(), std::vector<std::string>{"v"});
  RegCloseKey(writing);
  EXPECT_EQ(RegCloseKey(reading), ERROR_SUCCESS);
  EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);

  WCHAR name[4];
  DWORD size = 4;
  const auto never = reinterpret_cast<HKEY>(static_cast<LONG_PTR>(0x77777770));
  for (HKEY bad : {reading, never, HKEY{}}) {
    EXPECT_EQ(RegCloseKey(bad), ERROR_INVALID_HANDLE);
    EXPECT_EQ(Query(bad, "v", 2).status, ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegSetValueExW(bad, W("v"), 0, REG_SZ, &byte, 1), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegDeleteValueW(bad, W("v")), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegEnumValueW(bad, 0, name, &size, nullptr, nullptr, nullptr, nullptr),
              ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegQueryInfoKeyW(bad, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                               nullptr, nullptr, nullptr, nullptr),
              ERROR_INVALID_HANDLE);
    HKEY below = nullptr;
    EXPECT_EQ(RegOpenKeyExW(bad, W("x"), 0, 1, &below), ERROR_INVALID_HANDLE);
  }
}

TEST_F(RegistryTest, TellsCountsAndLongestLengths) {
  Make("one");
  Make("longer one");
  ASSERT_EQ(Set("longest", REG_SZ, "abc\0"s), ERROR_SUCCESS);
  ASSERT_EQ(Set("v", REG_BINARY, std::string(30, 'x')), ERROR_SUCCESS);
  ASSERT_EQ(Set("deleted again", REG_BINARY, std::string(99, 'x')), ERROR_SUCCESS);
  ASSERT_EQ(RegDeleteValueW(key_, W("deleted again")), ERROR_SUCCESS);
  // Keys, the longest key's name; values, the longest name and the longest data.
  std::array<DWORD, 5> told{};
  ASSERT_EQ(RegQueryInfoKeyW(key_, nullptr, nullptr, nullptr, told.data(), &told[1], nullptr,
                             &told[2], &told[3], &told[4], nullptr, nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(told, (std::array<DWORD, 5>{2, 10, 2, 7, 30}));
}

/// Deleting while going through the values must neither miss one nor give one twice.
TEST_F(RegistryTest, DeletesWhileEnumerating) {
  constexpr int kCount = 500;
  const struct {
    int first;
    int step;
    bool isSetAgain;
  } ways[] = {{0, 0, false}, {kCount - 1, -1, false}, {0, 1, false}, {0, 0, true}};
  for (const auto& [first, step, isSetAgain] : ways) {
    SCOPED_TRACE(step);
    std::set<std::string> left;
    for (int i = 0; i < kCount; ++i) {
      left.insert("v" + std::to_string(i));
      ASSERT_EQ(Set("v" + std::to_string(i), REG_DWORD, std::string(4, '\0')), ERROR_SUCCESS);
    }
    for (int index = first;; index += step) {
      Text buffer(16, u'\0');
      DWORD size = 16;
      if (RegEnumValueW(key_, static_cast<DWORD>(index), WideBuffer(buffer), &size, nullptr,
                        nullptr, nullptr, nullptr) != ERROR_SUCCESS)
        break;
      const std::string name = Utf8(TextView(buffer).substr(0, size));
      ASSERT_EQ(left.erase(name), 1U) << name;
      ASSERT_EQ(RegDeleteValueW(key_, W(name)), ERROR_SUCCESS);
      if (!isSetAgain) continue;
      ASSERT_EQ(Set(name, REG_SZ, "again\0"s), ERROR_SUCCESS);
      ASSERT_EQ(RegDeleteValueW(key_, W(name)), ERROR_SUCCESS);
    }
    EXPECT_EQ(left.size(), step == 1 ? kCount / 2 : 0U);
    const std::vector<std::string> names = Names();
    EXPECT_EQ(std::set(names.begin(), names.end()), left);
    for (const std::string& name : names) RegDeleteValueW(key_, W(name));
  }
  RegCloseKey(Open(KEY_QUERY_VALUE));  // a key outlives its last value
}

}  // namespace
}  // namespace torvane::testing
