#include "windows/frmSplash.h"

#include <algorithm>
#include <cmath>

#include "platform/extras.h"
#include "platform/resource_numbers.h"
#include "platform/winapi.h"
#include "windows/controls/toolkit.h"
#include "windows/product_text.h"

namespace torvane {
namespace {

constexpr int kMailLink = 6;
constexpr int kHomePageLink = 8;

constexpr TextView kProgramsAndLists = u"76/97";

void ShellOpen(const Text& operation, const Text& file, int show) {
  // Nobody is told where no program answers: there is nothing that the user could do here.
  ShellExecuteW(GetDesktopWindow(), Wide(operation), Wide(file), nullptr, nullptr, show);
}

// Lengths at 96 dots an inch. Texts get at least this room, and more where the user's font is
// large.
constexpr int kTextLeft = 104;
constexpr int kRight = 408;
constexpr int kMargin = 12;
constexpr int kRowGap = 2;

}  // namespace

frmSplash::frmSplash(BorderStyle border) : Form(border) {
  Caption(ApplicationTitle());
  lblProduct.FontBold = true;
  lblProduct.FontScale = 1.8F;
  lblLegalNotice.WordWrap = true;
  cmdOk.Default = true;
  cmdOk.Cancel = true;
  LayOut();
}

PixelSize frmSplash::Room(const Control& control, const PixelSize& designed, int width) const {
  const PixelSize natural = control.NaturalSize(width);
  return {std::max(Scale().Design(designed.width), natural.width),
          std::max(Scale().Design(designed.height), natural.height)};
}

// Titles left, what they announce right, in a block of rows of their own; gives the block's end.
PixelSize frmSplash::PlaceRows(const std::vector<Row>& rows, const PixelSize& designed, int top) {
  const int left = Scale().Design(kTextLeft);
  PixelSize title;
  PixelSize value;
  const auto widen = [](PixelSize& size, const PixelSize& room) {
    size = {std::max(size.width, room.width), std::max(size.height, room.height)};
  };
  const int gap = Scale().Design(4);
  const int designedValue = kRight - kTextLeft - designed.width - 4;
  for (const Row& row : rows) {
    widen(title, Room(row.title, designed));
    widen(value, Room(row.value, {designedValue, designed.height}));
  }
  const int height = std::max(title.height, value.height);
  for (const Row& row : rows) {
    row.title.Move({left, top, title.width, height});
    row.value.Move({left + title.width + gap, top, value.width, height});
    top += height + Scale().Design(kRowGap);
  }
  return {left + title.width + gap + value.width, top};
}

void frmSplash::LayOut() {
  const torvane::Scale scale = Scale();
  picLogo.Move(scale.Design(PixelRect{16, 6, 72, 84}));
  const PixelSize product = Room(lblProduct, {300, 34});
  const PixelRect head{scale.Design(kTextLeft), scale.Design(14), product.width, product.height};
  lblProduct.Move(head);
  // The addresses need more room than their titles.
  const PixelSize facts =
      PlaceRows({{lblVersionTitle, lblVersion}, {lblSupportedTitle, lblSupported}}, {168, 20},
                head.bottom() + scale.Design(8));
  const PixelSize addresses =
      PlaceRows({{lblMailTitle, lblMail}, {lblHomePageTitle, lblHomePage}}, {72, 20}, facts.height);

  const int margin = scale.Design(kMargin);
  const int width = std::max({head.right(), facts.width, addresses.width}) + margin;
  int top = addresses.height + scale.Design(6);
  const int hairline = scale.Design(1);
  lineShadow.Move({margin, top, width - 2 * margin, hairline});
  lineHighlight.Move({margin, top + hairline, width - 2 * margin, hairline});
  const int left = scale.Design(16);
  const int inner = width - 2 * left;
  top += scale.Design(8);
  const int notice = Room(lblLegalNotice, {0, 36}, inner).height;
  lblLegalNotice.Move({left, top, inner, notice});
  top += notice + scale.Design(6);
  const PixelSize ok = Room(cmdOk, {92, 28});
  const int text = static_cast<int>(std::ceil(picProgress.TextHeight(u"X")));
  const int bar = std::max(scale.Design(24), text + scale.Design(6));
  cmdOk.Move({(width - ok.width) / 2, top, ok.width, ok.height});
  picProgress.Move({left, top + (ok.height - bar) / 2, inner, bar});
  DesignSize({width, top + ok.height + scale.Design(8)});
  DrawLogo();
}

void frmSplash::DrawLogo() {
  picLogo.Cls();
  picLogo.PaintResourceIcon(resource::kApplicationIcon, Scale().Design(PixelRect{0, 10, 64, 64}));
}

void frmSplash::Form_Load() {
  SetCaptions();
  LayOut();
  lineShadow.BorderColor = SystemColor::ButtonShadow;
  lineHighlight.BorderColor = SystemColor::Highlight3D;
  SetUpProgress();
  cmdOk.Click = [this] { Unload(); };
}

void frmSplash::Form_Rescale() {
  LayOut();
}

void frmSplash::SetCaptions() {
  const VersionRecord record = ReadVersionRecord();
  const std::array<Text, 10> captions = {record.productName,
                                         StringResource(resource::kVersionTitle),
                                         VersionText(),
                                         StringResource(resource::kSupportedTitle),
                                         Text(kProgramsAndLists),
                                         StringResource(resource::kMailTitle),
                                         StringResource(resource::kMailAddress),
                                         StringResource(resource::kHomePageTitle),
                                         StringResource(resource::kHomePageAddress),
                                         record.legalNotice};
  for (int index = 0; index < static_cast<int>(labels_.size()); ++index) {
    const auto slot = static_cast<std::size_t>(index);
    labels_[slot]->Caption(captions[slot]);
    labels_[slot]->Click = [this, index] { lblInfo_Click(index); };
  }
  for (Label* link : {&lblMail, &lblHomePage}) {
    link->ForeColor = SystemColor::HotLight;
    link->Pointer(MousePointer::Hand);
  }
  cmdOk.Caption(StringResource(resource::kOk));
}

void frmSplash::SetUpProgress() {
  picProgress.BackColor = SystemColor::WindowBackground;
  picProgress.ForeColor = SystemColor::Highlight;
  picProgress.FontBold = true;
  picProgress.Mode = DrawMode::NotXorPen;
  picProgress.Bordered = true;
  const Text wait = StringResource(resource::kWait);
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
