// drilldown-desktop [FILE] [--macro MACRO [--screenshots DIR]]: the workbench with real
// windows; FILE is opened at the start. With --macro the run is scripted: the macro drives a
// new analysis through the panel's automation object, the windows are written as PNG into DIR,
// and the program ends with the macro's status.

#include <QApplication>
#include <QCommandLineParser>

#include "workbench/desktop/MainWindow.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QCommandLineParser options;
    options.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("the data file to open"));
    const QCommandLineOption macro(QStringLiteral("macro"), QStringLiteral("run MACRO"),
                                   QStringLiteral("MACRO"));
    const QCommandLineOption screenshots(QStringLiteral("screenshots"),
                                         QStringLiteral("write every window as PNG into DIR"),
                                         QStringLiteral("DIR"));
    options.addOptions({macro, screenshots});
    options.addHelpOption();
    options.process(application);

    wb::desktop::MainWindow window;
    const QStringList files = options.positionalArguments();
    if (!files.isEmpty() && !window.openFile(files.front()))
        return 1;
    window.show();
    if (options.isSet(macro))
        return window.runScript(options.value(macro), options.value(screenshots));
    return QApplication::exec();
}
