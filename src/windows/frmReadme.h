// The readme: a text to scroll through.
#pragma once

#include "windows/controls/form.h"

namespace torvane {

/// The readme window: the running version, then the text of the resource.
class frmReadme : public Form {
 public:
  frmReadme();

  TextBox Text1{*this, u"Readme"};

 protected:
  void Form_Load() override;

 private:
  void FitToText();
};

}  // namespace torvane
