// The updater's main window, built by hand with Qt: the same menus, controls, texts and tool tips, including
// those of all three states, and nothing behind them. The updater's start and memory are measured against it.

#include <QApplication>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <initializer_list>

namespace {

constexpr int kMargin = 20;
constexpr int kSpacing = 16;

constexpr const char* kRevisionTip =
    "The revision letter of the card’s circuit board. NC means that the board has none.";
constexpr const char* kVersionTip =
    "The letter is the byte order of the card’s registers: M is big-endian, W is little-endian. The number "
    "is the version. Only versions with the same letter can be compared.";

// Makes the layout keep room for a hidden widget, as the updater's does.
void keepRoom(QWidget& widget) {
    QSizePolicy policy = widget.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget.setSizePolicy(policy);
}

QFrame* separator() {
    auto* const line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    return line;
}

void embolden(QLabel& label) {
    QFont font = label.font();
    font.setBold(true);
    label.setFont(font);
}

void addInformation(QGridLayout& grid) {
    constexpr struct {
        const char* caption;
        const char* value;
        const char* tip;
    } kRows[] = {{"Model", "VornMX-B", nullptr},
                 {"Board revision", "A", kRevisionTip},
                 {"Serial number", "2103070021", nullptr},
                 {"Manufactured", "Feb 12, 2003", nullptr},
                 {"Firmware on the card", "M10", kVersionTip},
                 {"Firmware date", "May 17, 2004", nullptr},
                 {"Firmware in this updater", "M12", kVersionTip}};
    constexpr int kRowsBeside = 4;
    int index = 0;
    for (const auto& [caption, text, tip] : kRows) {
        auto* const name = new QLabel(caption);
        auto* const value = new QLabel;
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        name->setBuddy(value);
        for (QLabel* const label : {name, value}) {
            if (tip != nullptr) {
                label->setToolTip(QString("<span>%1</span>").arg(tip));
                label->setAccessibleDescription(tip);
            }
        }
        const int column = index / kRowsBeside * 2;
        grid.addWidget(name, 2 + index % kRowsBeside, column);
        grid.addWidget(value, 2 + index % kRowsBeside, column + 1);
        value->setText(text);
        ++index;
    }
    auto* const state = new QLabel("Newer firmware is available");
    embolden(*state);
    grid.addWidget(state, 2 + kRowsBeside - 1, 2, 1, 2);
}

void addCard(QGridLayout& grid) {
    auto* const caption = new QLabel("&Card");
    auto* const popup = new QComboBox;
    for (const char* card : {"VornMX-B in PCI slot 1", "Vorn K40 in PCI slot 2", "Vorn DX8 in PCI slot 3",
                             "Vorn DX8-XS in PCI slot 4"}) {
        popup->addItem(card);
    }
    popup->setAccessibleName("Card");
    popup->setAccessibleDescription("The card whose firmware is shown below and can be updated");
    caption->setBuddy(popup);
    grid.addWidget(caption, 0, 0);
    grid.addWidget(popup, 0, 1, 1, 3);
    grid.addWidget(separator(), 1, 0, 1, 4);
}

// The texts of one state, the first of which is its heading.
QVBoxLayout* texts(std::initializer_list<const char*> paragraphs, bool isShown) {
    auto* const column = new QVBoxLayout;
    for (const char* const text : paragraphs) {
        auto* const label = new QLabel(text);
        label->setWordWrap(true);
        if (column->isEmpty()) {
            embolden(*label);
        }
        keepRoom(*label);
        if (!isShown) {
            label->hide();
        }
        column->addWidget(label);
    }
    column->addStretch();
    return column;
}

// All in one place, because the states replace each other there.
QGridLayout* states() {
    auto* const grid = new QGridLayout;
    grid->addLayout(texts({"Update a card’s firmware",
                           "To write the firmware in this updater into the card, click Update firmware.",
                           "Before you start, close every program that uses the card. The computer must stay "
                           "switched on until the firmware has been written.",
                           "Writing takes about a minute and a half."},
                          true),
                    0, 0);
    QVBoxLayout* const writing =
        texts({"Writing the firmware into the card",
               "The bar stands still at first, while the old firmware is erased. Do not switch the computer "
               "off and do not let it sleep. If writing is interrupted, the card may not work until its "
               "firmware has been written again.",
               "VUpdater cannot be closed until the firmware has been written."},
              false);
    auto* const progress = new QProgressBar;
    progress->setMaximum(1000);
    progress->setAccessibleName("Progress of writing the firmware");
    keepRoom(*progress);
    progress->hide();
    writing->insertWidget(1, progress);
    grid->addLayout(writing, 0, 0);
    grid->addLayout(texts({"The new firmware has been written",
                           "The card loads it when the computer is next switched on. Restarting the computer "
                           "is not enough.",
                           "Save your work in other programs. Then click Shut down, wait until the computer "
                           "is off, and switch it on again."},
                          false),
                    0, 0);
    return grid;
}

QHBoxLayout* buttons() {
    auto* const row = new QHBoxLayout;
    auto* const update = new QPushButton("&Update firmware");
    update->setDefault(true);
    auto* const shutDown = new QPushButton("&Shut down");
    shutDown->setAccessibleDescription(
        "The new firmware has been written. Shutting down switches the computer off.");
    shutDown->hide();
    row->addStretch();
    for (QPushButton* const button : {new QPushButton("C&lose"), update, shutDown}) {
        row->addWidget(button);
    }
    return row;
}

void addMenus(QMenuBar& bar) {
    bar.addMenu("&File")->addAction("&Quit", QKeySequence("Ctrl+Q"));
    bar.addMenu("&Edit")->addAction("&Copy card details", QKeySequence("Ctrl+Shift+C"));
    QMenu* const help = bar.addMenu("&Help");
    help->addAction("VUpdater &Help", QKeySequence("F1"));
    help->addAction("&About VUpdater");
}

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle("VUpdater");
    addMenus(*window.menuBar());
    auto* const contents = new QWidget;
    window.setCentralWidget(contents);
    auto* const column = new QVBoxLayout(contents);
    column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    column->setSpacing(kSpacing);
    auto* const information = new QGridLayout;
    column->addLayout(information);
    addCard(*information);
    addInformation(*information);
    column->addWidget(separator());
    column->addLayout(states());
    column->addLayout(buttons());
    // A main window makes no room for wrapped lines, and would cut the texts off.
    contents->setMinimumSize(column->totalSizeHint());
    window.show();
    return QApplication::exec();
}
