// The least that a Qt program with a window can be: the measure of the updater's start and memory.

#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    window.resize(480, 320);
    window.show();
    return QApplication::exec();
}
