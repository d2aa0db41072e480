// Reads and writes an INI file through the system's own profile calls.
//   profile FILE SECTION           prints the section's lines
//   profile FILE SECTION KEY TEXT  sets a key
#include <cstdio>
#include <cstring>
#include <vector>

#include <windows.h>

int main(int count, char** arguments) {
  if (count == 5) {
    if (!WritePrivateProfileStringA(arguments[2], arguments[3], arguments[4], arguments[1])) {
      std::printf("%s can't be written: error %lu\n", arguments[1], GetLastError());
      return 1;
    }
    return 0;
  }
  if (count != 3) {
    return 2;
  }
  std::vector<char> lines(65536);
  GetPrivateProfileSectionA(arguments[2], lines.data(), static_cast<DWORD>(lines.size()),
                            arguments[1]);
  for (const char* line = lines.data(); *line != '\0'; line += std::strlen(line) + 1) {
    std::puts(line);
  }
  return 0;
}
