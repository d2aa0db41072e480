#include "windows/frmSplash.h"

#include "platform/extras.h"
#include "platform/winapi.h"
#include "windows/controls/toolkit.h"
#include "windows/product_text.h"

namespace torvane {
namespace {

constexpr int kApplicationIcon = 101;
constexpr int kMailLink = 6;
constexpr int kHomePageLink = 8;

// Numbers in the string table.
enum Strings {
  kVersion = 1,
  kSupported,
  kEmail,
  kMailAddress,
  kHomepage,
  kHomeAddress,
  kOk,
  kWait
};

constexpr TextView kProgramsAndLists = u"76/97";

void ShellOpen(const Text& operation, const Text& file, int show) {
  // Nobody is told where no program answers: there is nothing that the user could do here.
  ShellExecuteA(GetDesktopWindow(), ToAnsi(operation).c_str(), ToAnsi(file).c_str(), nullptr,
                nullptr, show);
}

// A place that was designed at 96 dots an inch.
void Place(Control& control, const PixelRect& design) {
  control.Move({DesignPixels(design.left), DesignPixels(design.top), DesignPixels(design.width),
                DesignPixels(design.height)});
}

}  // namespace

frmSplash::frmSplash(BorderStyle border) : Form(border) {
  DesignWidth = DesignPixels(420);
  DesignHeight = DesignPixels(236);
  Caption(ApplicationTitle());
  LayOut();
}

void frmSplash::LayOut() {
  Place(picLogo, {16, 6, 72, 84});
  lblProduct.FontBold = true;
  lblProduct.FontScale = 1.8F;
  Place(lblProduct, {104, 14, 300, 34});
  // Titles left, what they announce right; the addresses need more room than their titles.
  Place(lblVersionTitle, {104, 56, 168, 20});
  Place(lblVersion, {276, 56, 132, 20});
  Place(lblSupportedTitle, {104, 78, 168, 20});
  Place(lblSupported, {276, 78, 132, 20});
  Place(lblMailTitle, {104, 100, 72, 20});
  Place(lblMail, {180, 100, 228, 20});
  Place(lblHomePageTitle, {104, 122, 72, 20});
  Place(lblHomePage, {180, 122, 228, 20});
  Place(lineShadow, {12, 150, 396, 1});
  Place(lineHighlight, {12, 151, 396, 1});
  lblLegalNotice.WordWrap = true;
  Place(lblLegalNotice, {16, 158, 388, 36});
  Place(picProgress, {16, 202, 388, 24});
  Place(cmdOk, {164, 200, 92, 28});
  cmdOk.Default = true;
  cmdOk.Cancel = true;
}

void frmSplash::Form_Load() {
  SetCaptions();
  picLogo.Cls();
  picLogo.PaintResourceIcon(kApplicationIcon,
                            {0, DesignPixels(10), DesignPixels(64), DesignPixels(64)});
  lineShadow.BorderColor = SystemColor::ButtonShadow;
  lineHighlight.BorderColor = SystemColor::Highlight3D;
  SetUpProgress();
  cmdOk.Click = [this] { Unload(); };
}

void frmSplash::SetCaptions() {
  const VersionRecord record = ReadVersionRecord();
  const std::array<Text, 10> captions = {record.productName,
                                         StringResource(kVersion),
                                         VersionText(),
                                         StringResource(kSupported),
                                         Text(kProgramsAndLists),
                                         StringResource(kEmail),
                                         StringResource(kMailAddress),
                                         StringResource(kHomepage),
                                         StringResource(kHomeAddress),
                                         record.legalNotice};
  for (int index = 0; index < static_cast<int>(labels_.size()); ++index) {
    const auto slot = static_cast<std::size_t>(index);
    labels_[slot]->Caption(captions[slot]);
    labels_[slot]->Click = [this, index] { lblInfo_Click(index); };
  }
  for (Label* link : {&lblMail, &lblHomePage}) {
    link->ForeColor = SystemColor::Highlight;
    link->Pointer(MousePointer::Hand);
  }
  cmdOk.Caption(StringResource(kOk));
}

void frmSplash::SetUpProgress() {
  picProgress.BackColor = SystemColor::WindowBackground;
  picProgress.ForeColor = SystemColor::Highlight;
  picProgress.FontBold = true;
  picProgress.Mode = DrawMode::NotXorPen;
  picProgress.Bordered = true;
  const Text wait = StringResource(kWait);
  const auto centre = [](float room, float needed) {
    const int margin = static_cast<int>(room - needed) / 2;
    return static_cast<float>(margin);
  };
  picProgress.CurrentX = centre(picProgress.ScaleWidth(), picProgress.TextWidth(wait));
  picProgress.CurrentY = centre(picProgress.ScaleHeight(), picProgress.TextHeight(wait));
  picProgress.Print(wait);
}

void frmSplash::lblInfo_Click(int index) {
  Pointer(MousePointer::Hourglass);
  if (index == kMailLink) {
    ShellOpen(u"open", u"mailto:" + lblMail.Caption() + u"?subject=Torvane", SW_SHOWNORMAL);
  } else if (index == kHomePageLink) {
    ShellOpen(u"open", lblHomePage.Caption(), SW_SHOWNORMAL);
  }
  Pointer(MousePointer::Default);
}

}  // namespace torvane
