// The least that any Qt Widgets program weighs: it waits for events and has no window. It says so once its
// loop turns.

#include <QApplication>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QTimer::singleShot(0, [] { std::fprintf(stderr, "ready\n"); });
    return QApplication::exec();
}
