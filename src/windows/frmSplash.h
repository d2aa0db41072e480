// One form in two roles: the splash window with a progress bar, and the About box with an Ok button
// and two links. Which it is, its caller says by showing the one or the other.
#pragma once

#include <array>

#include "windows/controls/form.h"
#include "windows/controls/picture_box.h"

namespace torvane {

/// The splash window and About box.
class frmSplash : public Form {
 public:
  explicit frmSplash(BorderStyle border);

  PictureBox picLogo{*this, u"Program icon"};
  Label lblProduct{*this, u"Product"};
  Label lblVersionTitle{*this, u"Version"};
  Label lblVersion{*this, u"Version number"};
  Label lblSupportedTitle{*this, u"Programs supported"};
  Label lblSupported{*this, u"Number of programs and lists"};
  Label lblMailTitle{*this, u"Email"};
  Label lblMail{*this, u"Mail address"};
  Label lblHomePageTitle{*this, u"Homepage"};
  Label lblHomePage{*this, u"Home page address"};
  Label lblLegalNotice{*this, u"Legal notice"};
  Line lineShadow{*this, u"Line"};
  Line lineHighlight{*this, u"Line"};
  PictureBox picProgress{*this, u"Progress"};
  Button cmdOk{*this, u"Ok"};

  /// The labels by their numbers, 0 to 9.
  const std::array<Label*, 10>& lblInfo() const { return labels_; }
  /// A click on a label: 6 writes a mail, 8 opens the home page, the others do nothing.
  void lblInfo_Click(int index);

 protected:
  void Form_Load() override;
  void Form_Rescale() override;

 private:
  struct Row {
    Label& title;
    Label& value;
  };

  void LayOut();
  PixelSize PlaceRows(const std::vector<Row>& rows, const PixelSize& designed, int top);
  /// What a control needs, at least what was designed at 96 dots an inch.
  PixelSize Room(const Control& control, const PixelSize& designed, int width = 0) const;
  void DrawLogo();
  void SetCaptions();
  void SetUpProgress();

  std::array<Label*, 10> labels_{&lblProduct,   &lblVersionTitle, &lblVersion, &lblSupportedTitle,
                                 &lblSupported, &lblMailTitle,    &lblMail,    &lblHomePageTitle,
                                 &lblHomePage,  &lblLegalNotice};
};

}  // namespace torvane
