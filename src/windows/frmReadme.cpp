#include "windows/frmReadme.h"

#include "platform/extras.h"
#include "windows/controls/toolkit.h"
#include "windows/product_text.h"

namespace torvane {
namespace {

constexpr int kReadmeResource = 2;

}  // namespace

frmReadme::frmReadme() : Form(BorderStyle::Sizable) {
  DesignWidth = DesignPixels(620);
  DesignHeight = DesignPixels(460);
  Resize = [this] { Text1.Move({0, 0, ScaleWidth(), ScaleHeight()}); };
}

void frmReadme::Form_Load() {
  Caption(ReadVersionRecord().productName + u" Readme");
  const auto bytes = DataResource(kReadmeResource);
  Text1.Text(u"Version: " + VersionText() + u"\r\n" +
             FromAnsi({reinterpret_cast<const char*>(bytes.data()), bytes.size()}));
  Text1.Move({0, 0, ScaleWidth(), ScaleHeight()});
}

}  // namespace torvane
