// Qt asks its factories by the class names of a widget and its bases. Ours have none of their own,
// so the widget itself says what it is.
#include "windows/qt/accessible.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <memory>

#include "windows/qt/form_window.h"
#include "windows/qt/frame.h"
#include "windows/qt/simple_controls.h"
#include "windows/qt/status_bar.h"

namespace torvane {
namespace {

/// The role of a widget now; none where Qt's own is right.
QAccessible::Role RoleOf(const QWidget& widget) {
  if (dynamic_cast<const FormWindow*>(&widget)) {
    return widget.isModal() ? QAccessible::Dialog : QAccessible::Window;
  }
  if (dynamic_cast<const LabelWidget*>(&widget)) {
    return widget.focusPolicy() == Qt::NoFocus ? QAccessible::StaticText : QAccessible::Link;
  }
  if (dynamic_cast<const StatusBarWidget*>(&widget)) return QAccessible::StatusBar;
  if (dynamic_cast<const PictureBoxWidget*>(&widget)) return QAccessible::Graphic;
  if (dynamic_cast<const FrameWidget*>(&widget)) return QAccessible::Separator;
  if (dynamic_cast<const LineWidget*>(&widget)) return QAccessible::Separator;
  return QAccessible::NoRole;
}

/// A widget in its role; a link can be pressed too.
class WidgetInRole : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  QAccessible::Role role() const override { return RoleOf(*widget()); }
  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (role() == QAccessible::Link) names.prepend(pressAction());
    return names;
  }
  void doAction(const QString& name) override {
    if (name != pressAction()) return QAccessibleWidget::doAction(name);
    QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
    QCoreApplication::sendEvent(widget(), &space);
  }
};

QAccessibleInterface* MakeInterface(const QString& /*className*/, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (!widget || RoleOf(*widget) == QAccessible::NoRole) return nullptr;
  // Qt lets it go with the widget.
  return std::make_unique<WidgetInRole>(widget).release();
}

}  // namespace

void NameAccessibleRoles() {
  QAccessible::installFactory(MakeInterface);
}

}  // namespace torvane
