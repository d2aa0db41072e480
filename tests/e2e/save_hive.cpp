// Loads a hive and saves it unchanged to another file: save_hive HIVE COPY. Status 1 for a hive
// that is not sound.
#include <exception>
#include <iostream>

#include "platform/posix/registry/hive_image.h"

int main(int argc, char** argv) {
  using namespace torvane::posix;
  if (argc != 3) return 2;
  try {
    const HiveImage image(ReadWholeFile(argv[1]), {});
    if (!image.problem().empty()) {
      std::cerr << argv[1] << ", " << image.problem() << '\n';
      return 1;
    }
    FileReplacement copy(argv[2]);
    image.write(image.render(0), copy);
    copy.commit();
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
