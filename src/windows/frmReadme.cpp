#include "windows/frmReadme.h"

#include <algorithm>

#include "platform/extras.h"
#include "platform/resource_numbers.h"
#include "windows/controls/toolkit.h"
#include "windows/product_text.h"

namespace torvane {
namespace {

// At 96 dots an inch.
constexpr int kWidth = 620;
constexpr int kHeight = 460;

}  // namespace

frmReadme::frmReadme() : Form(BorderStyle::Sizable) {
  DesignWidth = Scale().Design(kWidth);
  DesignHeight = Scale().Design(kHeight);
  Resize = [this] { Text1.Move({0, 0, ScaleWidth(), ScaleHeight()}); };
}

void frmReadme::Form_Load() {
  Caption(ReadVersionRecord().productName + u" Readme");
  const auto bytes = DataResource(resource::kReadme);
  Text1.Text(u"Version: " + VersionText() + u"\r\n" +
             FromAnsi({reinterpret_cast<const char*>(bytes.data()), bytes.size()}));
  FitToText();
}

// Wide enough for the longest line in the user's font, and higher by as much.
void frmReadme::FitToText() {
  const int designed = Scale().Design(kWidth);
  const int width = std::max(designed, Text1.NaturalSize().width);
  DesignSize({width, Scale().Design(kHeight) * width / designed});
  Text1.Move({0, 0, ScaleWidth(), ScaleHeight()});
}

}  // namespace torvane
