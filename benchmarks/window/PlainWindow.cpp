// The least that a Qt program with a window can be: the measures of the updater's start and memory. The
// window is empty, or shows what the argument names: one "text", which is what any window costs that has
// something to say, or the "controls" and texts of the updater's main window, put together by hand and with
// nothing behind them.

#include <QApplication>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <memory>
#include <string_view>

namespace {

QFrame* separator() {
    auto* const line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    return line;
}

QLabel* paragraph(const char* text, bool isHeading) {
    auto* const label = new QLabel(text);
    label->setWordWrap(true);
    QFont font = label->font();
    font.setBold(isHeading);
    label->setFont(font);
    return label;
}

QGridLayout* information() {
    constexpr struct {
        const char* caption;
        const char* value;
    } kRows[] = {{"Model", "VornMX-B"},
                 {"Board revision", "A"},
                 {"Serial number", "2103070021"},
                 {"Manufactured", "Feb 12, 2003"},
                 {"Firmware on the card", "M10"},
                 {"Firmware date", "May 17, 2004"},
                 {"Firmware in this updater", "M12"},
                 {"Newer firmware is available", ""}};
    auto* const grid = new QGridLayout;
    int row = 0;
    for (const auto& [caption, value] : kRows) {
        grid->addWidget(new QLabel(caption), row % 4, row / 4 * 2);
        grid->addWidget(new QLabel(value), row % 4, row / 4 * 2 + 1);
        ++row;
    }
    return grid;
}

std::unique_ptr<QWidget> windowWithControls() {
    auto window = std::make_unique<QMainWindow>();
    window->menuBar()->addMenu("&File")->addAction("&Quit");
    window->menuBar()->addMenu("&Edit")->addAction("&Copy card details");
    QMenu* const help = window->menuBar()->addMenu("&Help");
    help->addAction("VUpdater &Help");
    help->addAction("&About");

    auto* const contents = new QWidget;
    auto* const column = new QVBoxLayout(contents);
    auto* const cards = new QHBoxLayout;
    cards->addWidget(new QLabel("Card"));
    auto* const popup = new QComboBox;
    popup->addItem("VornMX-B in PCI slot 1");
    cards->addWidget(popup, 1);
    column->addLayout(cards);
    column->addWidget(separator());
    column->addLayout(information());
    column->addWidget(separator());
    column->addWidget(paragraph("Update a card’s firmware", true));
    column->addWidget(
        paragraph("To write the firmware in this updater into the card, click Update firmware.", false));
    column->addWidget(paragraph("Writing takes about a minute and a half.", false));
    column->addWidget(
        paragraph("Before you start, close every program that uses the card. The computer must "
                  "stay switched on until the firmware has been written.",
                  false));
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(new QPushButton("C&lose"));
    auto* const update = new QPushButton("&Update firmware");
    update->setDefault(true);
    buttons->addWidget(update);
    column->addLayout(buttons);
    window->setCentralWidget(contents);
    return window;
}

std::unique_ptr<QWidget> windowThatShows(std::string_view what) {
    if (what == "controls")
        return windowWithControls();
    if (what == "text")
        return std::make_unique<QLabel>("Some text");
    return std::make_unique<QWidget>();
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const std::unique_ptr<QWidget> window = windowThatShows(argc > 1 ? argv[1] : "");
    window->resize(480, 320);
    window->show();
    return QApplication::exec();
}
