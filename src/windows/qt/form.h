// The view of a form.
#pragma once

#include "windows/controls/form.h"
#include "windows/qt/form_window.h"
#include "windows/qt/shared.h"
#include "windows/qt/window.h"

namespace torvane {

class QtForm : public FormView {
 public:
  /// `gone` runs when the view has let go.
  QtForm(Form& form, const QtShared& shared, std::function<void()> gone);
  ~QtForm() override;
  QtForm(const QtForm&) = delete;
  QtForm& operator=(const QtForm&) = delete;

  FormWindow& window() const { return *window_; }

  HWND handle() const override { return record_.handle(); }
  PixelRect outerBounds() const override;
  void setOuterBounds(const PixelRect& bounds) override;
  Scale scale() const override;
  int systemMetric(int index) const override { return GetSystemMetrics(index); }
  void setClientSize(const PixelSize& size) override;
  int clientWidth() const override { return window_->client().width(); }
  int clientHeight() const override { return window_->client().height(); }
  WindowState windowState() const override;
  void setWindowState(WindowState state) override;
  void setCaption(const Text& caption) override;
  void setMousePointer(MousePointer pointer) override;
  void show() override;
  void showModal(Form& owner) override;
  void hide() override;
  void paintNow() override;

 private:
  void centre();
  void bringIntoSight();

  Form& form_;
  std::function<void()> gone_;
  QPointer<FormWindow> window_;
  QtWindow record_;  ///< of the client area
  bool hourglass_ = false;
};

}  // namespace torvane
