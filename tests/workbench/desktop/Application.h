#pragma once
// The one application that widget tests need, made on first use; the platform is offscreen
// (QT_QPA_PLATFORM, set for the suite by CTest).

#include <QApplication>

namespace test {

inline void ensureApplication() {
    static int argc = 1;
    static char name[] = "desktop_tests";
    static char* argv[] = {name, nullptr};
    static QApplication application(argc, argv);
}

} // namespace test
