// What the registry calls promise wherever they run: result codes, sizes, what stands in a buffer
// and behind it, and what is there afterwards.
#include <algorithm>
#include <cctype>
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
    EXPECT_EQ(Create("", kChange, key_), ERROR_SUCCESS);
  }
  ~RegistryTest() override { RegCloseKey(key_); }

  static std::string Below(const std::string& path) {
    return path.empty() ? kPath : kPath + "\\" + path;
  }
  static LSTATUS Open(const std::string& path, REGSAM rights, HKEY& key) {
    return RegOpenKeyExA(HKEY_CURRENT_USER, Below(path).c_str(), 0, rights, &key);
  }
  static LSTATUS Create(const std::string& path, REGSAM rights, HKEY& key) {
    return RegCreateKeyExA(HKEY_CURRENT_USER, Below(path).c_str(), 0, nullptr,
                           REG_OPTION_NON_VOLATILE, rights, nullptr, &key, nullptr);
  }
  LSTATUS Set(const std::string& name, DWORD type, const std::string& bytes) const {
    // A byte that is no NUL behind the data: the real call takes a NUL there for part of the text.
    const std::string padded = bytes + '#';
    return RegSetValueExA(key_, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(padded.data()),
                          static_cast<DWORD>(bytes.size()));
  }
  bool Has(const std::string& name) const {
    return RegQueryValueExA(key_, name.c_str(), nullptr, nullptr, nullptr, nullptr) ==
           ERROR_SUCCESS;
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    std::string name(16384, '\0');
    for (DWORD index = 0;; ++index) {
      auto size = static_cast<DWORD>(name.size());
      const LSTATUS status =
          RegEnumValueA(key_, index, name.data(), &size, nullptr, nullptr, nullptr, nullptr);
      if (status != ERROR_SUCCESS) {
        EXPECT_EQ(status, ERROR_NO_MORE_ITEMS);
        return names;
      }
      names.push_back(name.substr(0, size));
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
  answer.status = RegQueryValueExA(key, name.c_str(), nullptr, &answer.type,
                                   reinterpret_cast<BYTE*>(answer.buffer.data()), &answer.size);
  return answer;
}

TEST_F(RegistryTest, GivesBackWhatWasSetInEveryWayOfReading) {
  for (const auto& [what, type, bytes] : HostileDataTable()) {
    SCOPED_TRACE(what);
    ASSERT_EQ(Set("v", type, bytes), ERROR_SUCCESS);
    const auto length = static_cast<DWORD>(bytes.size());

    DWORD size = 0xDDDDDDDD;
    EXPECT_EQ(RegQueryValueExA(key_, "v", nullptr, nullptr, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, length);

    for (const std::size_t room :
         {std::size_t{0}, bytes.size() - (bytes.empty() ? 0 : 1), bytes.size(), bytes.size() + 3}) {
      SCOPED_TRACE(room);
      const Answer answer = Query(key_, "v", room);
      EXPECT_EQ(answer.type, type);
      EXPECT_EQ(answer.size, length);
      EXPECT_EQ(answer.status, room < length ? ERROR_MORE_DATA : ERROR_SUCCESS);
      const bool isRead = room >= length;
      EXPECT_TRUE(!isRead || answer.buffer.starts_with(bytes));
      // Behind the data at most one NUL for a text that has none, and nothing behind the room.
      const bool isText = type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
      const bool isClosed =
          isRead && isText && room > length && length != 0 && bytes.back() != '\0';
      EXPECT_TRUE(!isClosed || answer.buffer[length] == '\0');
      EXPECT_EQ(answer.buffer.substr(room), "####");
    }

    std::string name(8, '#');
    std::string data(bytes.size() + 1, '#');
    DWORD nameSize = 8;
    DWORD dataSize = length;
    DWORD seenType = 0;
    EXPECT_EQ(RegEnumValueA(key_, 0, name.data(), &nameSize, nullptr, &seenType,
                            reinterpret_cast<BYTE*>(data.data()), &dataSize),
              ERROR_SUCCESS);
    EXPECT_EQ(seenType, type);
    EXPECT_EQ(data.substr(0, dataSize), bytes);
    EXPECT_EQ(name.substr(0, nameSize + 1), "v\0"s);
  }
  EXPECT_EQ(Names(), std::vector<std::string>{"v"});
}

TEST_F(RegistryTest, FindsEveryNameWithoutCase) {
  for (const std::string& name : HostileNames()) {
    SCOPED_TRACE(name.substr(0, 20));
    ASSERT_EQ(Set(name, REG_SZ, "old\0"s), ERROR_SUCCESS);
    ASSERT_EQ(Names().size(), 1U);
    EXPECT_EQ(Names().front(), name);
    std::string other = name;
    for (char& byte : other)
      byte = static_cast<char>(std::isupper(static_cast<unsigned char>(byte)) != 0
                                   ? std::tolower(static_cast<unsigned char>(byte))
                                   : std::toupper(static_cast<unsigned char>(byte)));
    EXPECT_EQ(Set(other, REG_BINARY, "new"), ERROR_SUCCESS);
    EXPECT_EQ(Names(), std::vector<std::string>{name}) << "the first spelling stays";
    EXPECT_EQ(Query(key_, name, 3).buffer, "new####");
    EXPECT_EQ(RegDeleteValueA(key_, other.c_str()), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueA(key_, name.c_str()), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Query(key_, name, 3).status, ERROR_FILE_NOT_FOUND);
  }
  EXPECT_EQ(Set("CAF\xC9", REG_SZ, "\0"s), ERROR_SUCCESS);
  EXPECT_TRUE(Has("caf\xE9"));
  EXPECT_FALSE(Has("cafe"));
}

TEST_F(RegistryTest, RefusesNamesThatAreTooLong) {
  const std::string name(16384, 'n');
  EXPECT_EQ(Set(name, REG_SZ, "\0"s), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(Query(key_, name, 1).status, ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(RegDeleteValueA(key_, name.c_str()), ERROR_FILE_NOT_FOUND);
  EXPECT_TRUE(Names().empty());
}

TEST_F(RegistryTest, EmptyAndNullNameAreTheDefaultValue) {
  ASSERT_EQ(Set("", REG_SZ, "d\0"s), ERROR_SUCCESS);
  EXPECT_EQ(RegSetValueExA(key_, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>("e"), 2),
            ERROR_SUCCESS);
  EXPECT_EQ(Query(key_, "", 2).buffer, "e\0####"s);
  EXPECT_EQ(Names(), std::vector<std::string>{""});
  EXPECT_EQ(RegDeleteValueA(key_, nullptr), ERROR_SUCCESS);
  EXPECT_TRUE(Names().empty());
}

TEST_F(RegistryTest, NameBufferNeedsRoomForTheNul) {
  ASSERT_EQ(Set("longname", REG_SZ, "data\0"s), ERROR_SUCCESS);
  for (const DWORD room : {0U, 4U, 8U, 9U, 12U}) {
    SCOPED_TRACE(room);
    std::string name(room + 4, '#');
    DWORD size = room;
    const LSTATUS status =
        RegEnumValueA(key_, 0, name.data(), &size, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(status, room < 9 ? ERROR_MORE_DATA : ERROR_SUCCESS);
    if (status == ERROR_SUCCESS) {
      EXPECT_EQ(size, 8U);
      EXPECT_EQ(name.substr(0, 9), "longname\0"s);
    }
    EXPECT_EQ(name.substr(room), "####");
  }
  std::string name(9, '#');
  BYTE data[2] = {};
  DWORD nameSize = 9;
  DWORD dataSize = 2;
  EXPECT_EQ(RegEnumValueA(key_, 0, name.data(), &nameSize, nullptr, nullptr, data, &dataSize),
            ERROR_MORE_DATA);
  EXPECT_EQ(dataSize, 5U);
}

TEST_F(RegistryTest, PathsAreReadAsTheSystemReadsThem) {
  HKEY made = nullptr;
  ASSERT_EQ(Create("Deep\\er", kChange, made), ERROR_SUCCESS);
  RegCloseKey(made);
  const struct {
    std::string path;
    LSTATUS opened;
  } cases[] = {
      {kPath, ERROR_SUCCESS},
      {"", ERROR_SUCCESS},
      {kPath + "\\", ERROR_SUCCESS},
      {kPath + "\\dEEP\\ER\\", ERROR_SUCCESS},
      {kPath + "\\Deep", ERROR_SUCCESS},
      {kPath + "\\Dee", ERROR_FILE_NOT_FOUND},
      {kPath + "\\Deep\\er\\est", ERROR_FILE_NOT_FOUND},
      {kPath + "\\Deep/er", ERROR_FILE_NOT_FOUND},
      {"\\" + kPath, ERROR_BAD_PATHNAME},
      {"\\", ERROR_BAD_PATHNAME},
  };
  for (const auto& [path, opened] : cases) {
    SCOPED_TRACE(path);
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_QUERY_VALUE, &key), opened);
    EXPECT_EQ(key != nullptr, opened == ERROR_SUCCESS);
    if (key != nullptr) {
      EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    }
  }
  HKEY below = nullptr;
  ASSERT_EQ(RegOpenKeyExA(key_, "deep", 0, KEY_QUERY_VALUE, &below), ERROR_SUCCESS);
  HKEY same = nullptr;
  EXPECT_EQ(RegOpenKeyExA(below, nullptr, 0, KEY_QUERY_VALUE, &same), ERROR_SUCCESS);
  RegCloseKey(same);
  RegCloseKey(below);
  EXPECT_EQ(RegOpenKeyExA(key_, "\\Deep", 0, KEY_QUERY_VALUE, &below), ERROR_BAD_PATHNAME);
}

TEST_F(RegistryTest, CreatingSaysWhetherTheKeyIsNew) {
  for (const char* name : {"a/b", "caf\xE9", "[x] \"y\"", " z "}) {
    SCOPED_TRACE(name);
    for (const DWORD expected : {REG_CREATED_NEW_KEY, REG_OPENED_EXISTING_KEY}) {
      HKEY key = nullptr;
      DWORD disposition = 0;
      ASSERT_EQ(RegCreateKeyExA(key_, name, 0, nullptr, 0, kChange, nullptr, &key, &disposition),
                ERROR_SUCCESS);
      EXPECT_EQ(disposition, expected);
      RegCloseKey(key);
    }
    HKEY key = nullptr;
    EXPECT_EQ(Open(name, KEY_QUERY_VALUE, key), ERROR_SUCCESS);
    RegCloseKey(key);
  }
  HKEY key = nullptr;
  EXPECT_EQ(Open("caf\xC9", KEY_QUERY_VALUE, key), ERROR_SUCCESS);
  RegCloseKey(key);
}

TEST_F(RegistryTest, RightsAndHandlesAreChecked) {
  ASSERT_EQ(Set("v", REG_SZ, "x\0"s), ERROR_SUCCESS);
  HKEY reading = nullptr;
  HKEY writing = nullptr;
  ASSERT_EQ(Open("", KEY_QUERY_VALUE, reading), ERROR_SUCCESS);
  ASSERT_EQ(Open("", KEY_SET_VALUE, writing), ERROR_SUCCESS);
  const BYTE byte = 0;
  EXPECT_EQ(RegSetValueExA(reading, "w", 0, REG_SZ, &byte, 1), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegDeleteValueA(reading, "v"), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Query(writing, "v", 2).status, ERROR_ACCESS_DENIED);
  EXPECT_EQ(Names(), std::vector<std::string>{"v"});
  RegCloseKey(writing);
  EXPECT_EQ(RegCloseKey(reading), ERROR_SUCCESS);
  EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);

  char name[4];
  DWORD size = 4;
  const auto never = reinterpret_cast<HKEY>(static_cast<LONG_PTR>(0x77777770));
  for (HKEY bad : {reading, never, HKEY{}}) {
    EXPECT_EQ(RegCloseKey(bad), ERROR_INVALID_HANDLE);
    EXPECT_EQ(Query(bad, "v", 2).status, ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegSetValueExA(bad, "v", 0, REG_SZ, &byte, 1), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegDeleteValueA(bad, "v"), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegEnumValueA(bad, 0, name, &size, nullptr, nullptr, nullptr, nullptr),
              ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegQueryInfoKeyA(bad, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                               nullptr, nullptr, nullptr, nullptr),
              ERROR_INVALID_HANDLE);
    HKEY below = nullptr;
    EXPECT_EQ(RegOpenKeyExA(bad, "x", 0, 1, &below), ERROR_INVALID_HANDLE);
  }
}

TEST_F(RegistryTest, TellsCountsAndLongestLengths) {
  HKEY below = nullptr;
  for (const char* name : {"one", "longer one"}) {
    ASSERT_EQ(Create(name, kChange, below), ERROR_SUCCESS);
    RegCloseKey(below);
  }
  ASSERT_EQ(Set("longest", REG_SZ, "abc\0"s), ERROR_SUCCESS);
  ASSERT_EQ(Set("v", REG_BINARY, std::string(30, 'x')), ERROR_SUCCESS);
  ASSERT_EQ(Set("deleted again", REG_BINARY, std::string(99, 'x')), ERROR_SUCCESS);
  ASSERT_EQ(RegDeleteValueA(key_, "deleted again"), ERROR_SUCCESS);
  char className[4] = "###";
  DWORD classSize = 4;
  DWORD subkeys = 9;
  DWORD longestSubkey = 9;
  DWORD values = 9;
  DWORD longestName = 9;
  DWORD longestData = 9;
  FILETIME time{};
  ASSERT_EQ(RegQueryInfoKeyA(key_, className, &classSize, nullptr, &subkeys, &longestSubkey,
                             nullptr, &values, &longestName, &longestData, nullptr, &time),
            ERROR_SUCCESS);
  EXPECT_EQ(className[0], '\0');
  EXPECT_EQ(classSize, 0U);
  EXPECT_EQ(subkeys, 2U);
  EXPECT_EQ(longestSubkey, 10U);
  EXPECT_EQ(values, 2U);
  EXPECT_EQ(longestName, 7U);
  EXPECT_EQ(longestData, 30U);
}

/// Deleting while going through the values must neither miss one nor give one twice.
TEST_F(RegistryTest, DeletesWhileEnumerating) {
  constexpr DWORD kCount = 500;
  enum class Way { First, Last, EverySecond, SetAgain };
  for (const Way way : {Way::First, Way::Last, Way::EverySecond, Way::SetAgain}) {
    SCOPED_TRACE(static_cast<int>(way));
    for (DWORD i = 0; i < kCount; ++i)
      ASSERT_EQ(Set("v" + std::to_string(i), REG_DWORD, std::string(4, '\0')), ERROR_SUCCESS);
    std::set<std::string> deleted;
    DWORD left = kCount;
    DWORD index = way == Way::Last ? kCount - 1 : 0;
    while (left > (way == Way::EverySecond ? kCount / 2 : 0)) {
      char name[16];
      DWORD size = sizeof name;
      ASSERT_EQ(RegEnumValueA(key_, index, name, &size, nullptr, nullptr, nullptr, nullptr),
                ERROR_SUCCESS);
      ASSERT_TRUE(deleted.insert(name).second);
      ASSERT_EQ(RegDeleteValueA(key_, name), ERROR_SUCCESS);
      if (way == Way::SetAgain) {
        ASSERT_EQ(Set(name, REG_SZ, "again\0"s), ERROR_SUCCESS);
        ASSERT_EQ(RegDeleteValueA(key_, name), ERROR_SUCCESS);
      }
      --left;
      if (way == Way::Last) --index;
      if (way == Way::EverySecond) ++index;
    }
    EXPECT_EQ(Names().size(), left);
    for (const std::string& name : Names()) EXPECT_FALSE(deleted.contains(name));
    for (const std::string& name : Names()) RegDeleteValueA(key_, name.c_str());
  }
  EXPECT_TRUE(Names().empty());
  HKEY key = nullptr;
  EXPECT_EQ(Open("", KEY_QUERY_VALUE, key), ERROR_SUCCESS) << "a key outlives its last value";
  RegCloseKey(key);
}

}  // namespace
}  // namespace torvane::testing
