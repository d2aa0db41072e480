// The view of a form.
#pragma once

#include "windows/controls/form.h"
#include "windows/qt/qt_form_window.h"
#include "windows/qt/qt_pictures.h"
#include "windows/qt/qt_window.h"

namespace torvane {

class QtForm : public FormView {
 public:
  /// `gone` runs when the view has let go.
  QtForm(Form& form, QtPictures& pictures, std::function<void()> gone);
  ~QtForm() override;
  QtForm(const QtForm&) = delete;
  QtForm& operator=(const QtForm&) = delete;

  FormWindow& window() const { return *window_; }

  HWND handle() const override { return record_.handle(); }
  PixelRect outerBounds() const override;
  void setOuterBounds(const PixelRect& bounds) override;
  int clientWidth() const override { return window_->client().width(); }
  int clientHeight() const override { return window_->client().height(); }
  WindowState windowState() const override;
  void setWindowState(WindowState state) override;
  void setCaption(const Text& caption) override;
  void setMousePointer(MousePointer pointer) override;
  void show() override;
  void showModal(Form& owner) override;
  void hide() override;
  void refresh() override;

 private:
  void centre();

  QtPictures& pictures_;
  std::function<void()> gone_;
  QPointer<FormWindow> window_;
  QtWindow record_;  ///< of the client area
  bool hourglass_ = false;
};

}  // namespace torvane
