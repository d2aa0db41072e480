// What the start of Torvane is measured against: an empty window with a tree and a list.
#include <QApplication>
#include <QSplitter>
#include <QTreeView>
#include <QTreeWidget>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QSplitter window;
  window.setWindowTitle(QStringLiteral("Empty"));
  QTreeWidget tree(&window);
  QTreeView list(&window);
  window.resize(656, 448);
  window.show();
  return QApplication::exec();
}
