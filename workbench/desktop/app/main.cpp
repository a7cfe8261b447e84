// drilldown-desktop [FILE]: the workbench with real windows; FILE is opened at the start.

#include <QApplication>

#include "workbench/desktop/MainWindow.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    wb::desktop::MainWindow window;
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() > 1)
        window.openFile(arguments.at(1));
    window.show();
    return QApplication::exec();
}
