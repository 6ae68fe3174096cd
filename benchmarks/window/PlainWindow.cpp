// The least that a Qt program with a window can be: the measure of the updater's start and memory. The window
// is empty, or shows the one text that is given, which is what any window costs that has something to say.

#include <QApplication>
#include <QLabel>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget empty;
    QLabel text(argc > 1 ? argv[1] : "");
    QWidget& window = argc > 1 ? text : empty;
    window.resize(480, 320);
    window.show();
    return QApplication::exec();
}
