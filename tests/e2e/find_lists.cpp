// Prints the lists that are found in the prefix, a line each: its name and its key.
#include <iostream>

#include "finding/known_lists.h"
#include "platform/posix/text/code_page.h"

int main() {
  using namespace torvane;
  ListFinder finder(KeysOfRows(CatalogueRows()));
  while (!finder.Look(std::chrono::milliseconds(6))) {
  }
  for (const FoundList& list : std::move(finder).Lists()) {
    std::cout << posix::ToUtf8(list.description.entry.EntryName) << '\t' << posix::ToUtf8(list.key)
              << '\n';
  }
  return 0;
}
