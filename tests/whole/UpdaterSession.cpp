#include "tests/whole/UpdaterSession.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <csignal>
#include <fstream>
#include <utility>

#include <gtest/gtest.h>

#include "app/hosts/AdministratorPrompt.h"
#include "card/Registers.h"
#include "framework/widgets/LApplication.h"

namespace fs = std::filesystem;

namespace {

std::string textsOf(const QWidget& dialog) {
    std::string texts;
    for (const QLabel* const label : dialog.findChildren<QLabel*>()) {
        texts += label->text().toStdString();
    }
    return texts;
}

}  // namespace

TestBundle::TestBundle(const std::string& name) : name_(name) {
    fs::create_directories(path() / "Contents/Resources");
    for (const auto& entry : fs::directory_iterator(BUNDLE_RESOURCES)) {
        if (entry.path().extension() == ".ui") {
            fs::copy(entry.path(), resource(entry.path().filename()));
        }
    }
}

void TestBundle::addShippedResource(const std::string& name) {
    fs::copy(fs::path(BUNDLE_RESOURCES) / name, resource(name), fs::copy_options::overwrite_existing);
}

void TestBundle::addImage(const std::string& name, const std::vector<uint8_t>& bytes) {
    std::ofstream(resource(name), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

UpdaterSession::UpdaterSession(simulator::Machine& machine, const TestBundle& bundle)
    : simulatedHost(machine, bundle.path(), AskAdministrator), host(simulatedHost), machine_(machine) {
    qApp->installEventFilter(this);
}

UpdaterSession::~UpdaterSession() {
    qApp->removeEventFilter(this);
}

void UpdaterSession::run(const std::function<void()>& script) {
    hasRun = true;
    testing::internal::CaptureStderr();
    whenShown_ = [this, &script] {
        // Posted when the window opened, this runs before the popup's first broadcast, which is sent now.
        QCoreApplication::sendPostedEvents();
        EXPECT_NE(window()->focusWidget(), nullptr);
        if (auto* const bar = qobject_cast<QProgressBar*>(pane("PGRS"))) {
            connect(bar, &QProgressBar::valueChanged, this, [this](int value) {
                if (onProgress) {
                    onProgress(value);
                }
            });
        }
        script();
        opened_ = countCardsOfPopup();
        LApplication::Current()->DoQuit();
    };
    EXPECT_EQ(UpdaterMain(setup), 0);
    whenShown_ = nullptr;
    standardError = testing::internal::GetCapturedStderr();
    expectNothingLeft();
}

std::size_t UpdaterSession::countCardsOfPopup() const {
    if (qobject_cast<QComboBox*>(pane("CRDS")) == nullptr) {
        return 0;
    }
    std::size_t cards = cardItems().size();
    for (std::size_t i = 0; i < machine_.cardCount(); ++i) {
        cards += machine_.card(i).faults().hasStruck(simulator::FaultKind::serviceSilent) ? 1 : 0;
    }
    return cards;
}

void UpdaterSession::expectNothingLeft() {
    simulatedHost.programEnded();
    EXPECT_EQ(gpRegisters, nullptr);
    for (const auto& entry : machine_.ledger().entries()) {
        EXPECT_NE(entry.misuse, simulator::Misuse::leftBehind) << entry.detail;
    }
    // Filling the popup closes card indices instead of connections, so one per card stays open, also for
    // cards that are not listed because they do not answer. They end when a driver is unloaded.
    const bool wasUnloaded = machine_.isOn() && !machine_.drivers().publishes(card_driver::kServiceClass);
    EXPECT_EQ(host.closeConnections(), wasUnloaded ? 0u : opened_);
}

QWidget* UpdaterSession::window() const {
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<QMainWindow*>(widget) != nullptr) {
            return widget;
        }
    }
    return nullptr;
}

QWidget* UpdaterSession::pane(const char* paneID) const {
    return window() == nullptr ? nullptr : window()->findChild<QWidget*>(paneID);
}

std::string UpdaterSession::text(const char* paneID) const {
    return dynamic_cast<QLabel&>(*pane(paneID)).text().toStdString();
}

bool UpdaterSession::isEmphasised(const char* paneID) const {
    return isShown(paneID) && pane(paneID)->font().bold();
}

std::string UpdaterSession::shownStatePanes() const {
    std::string shown;
    for (const char* paneID :
         {"PTX0", "PTX1", "PGRS", "FTX0", "FTX1", "FTX2", "POWR", "ITX0", "ITX1", "ITX2", "CLOS", "UPDT"}) {
        if (isShown(paneID)) {
            shown += std::string(shown.empty() ? "" : " ") + paneID;
        }
    }
    return shown;
}

void UpdaterSession::click(const char* paneID) {
    QTest::mouseClick(pane(paneID), Qt::LeftButton);
}

void UpdaterSession::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QApplication::setActiveWindow(window());  // shortcuts and mnemonics need it
    QTest::keyClick(window()->windowHandle(), key, modifiers);
}

void UpdaterSession::meddle() {
    int quitShortcuts = 0;
    auto* const quit = window()->findChild<QAction*>("quitAction");
    const auto counting = connect(quit, &QAction::triggered, this, [&] { ++quitShortcuts; });
    press(Qt::Key_Q, Qt::ControlModifier);
    disconnect(counting);
    EXPECT_EQ(quitShortcuts, 1) << "the shortcut must arrive to be refused";
    auto* const menu = window()->findChild<QMenu*>("fileMenu");
    emit menu->aboutToShow();
    EXPECT_FALSE(quit->isEnabled());
    emit menu->aboutToHide();
    for (const Qt::Key mnemonic : {Qt::Key_U, Qt::Key_L, Qt::Key_S}) {
        press(mnemonic, Qt::AltModifier);
    }
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Down}) {
        press(key);
    }
    for (const char* const paneID : {"UPDT", "CLOS", "POWR", "CRDS"}) {
        auto* const actions = QAccessible::queryAccessibleInterface(pane(paneID))->actionInterface();
        actions->doAction(QAccessibleActionInterface::pressAction());
        actions->doAction(QAccessibleActionInterface::setFocusAction());
        press(Qt::Key_Return);
        press(Qt::Key_Space);
    }
    window()->close();
    std::raise(SIGTERM);
    QCoreApplication::processEvents();
}

void UpdaterSession::pickCard(int item) {
    auto& popup = dynamic_cast<QComboBox&>(*pane("CRDS"));
    popup.setFocus();
    while (popup.currentIndex() != item - 1) {
        const int before = popup.currentIndex();
        QTest::keyClick(&popup, popup.currentIndex() < item - 1 ? Qt::Key_Down : Qt::Key_Up);
        ASSERT_NE(popup.currentIndex(), before);
    }
}

void UpdaterSession::pickOpenCardAgain() {
    auto& popup = dynamic_cast<QComboBox&>(*pane("CRDS"));
    popup.showPopup();
    QTest::keyClick(popup.view(), Qt::Key_Return);
}

std::vector<std::string> UpdaterSession::cardItems() const {
    const auto& popup = dynamic_cast<QComboBox&>(*pane("CRDS"));
    std::vector<std::string> items;
    items.reserve(static_cast<std::size_t>(popup.count()));
    for (int i = 0; i < popup.count(); ++i) {
        items.push_back(popup.itemText(i).toStdString());
    }
    return items;
}

bool UpdaterSession::eventFilter(QObject* watched, QEvent* event) {
    auto* const dialog = qobject_cast<QDialog*>(watched);
    if (event->type() == QEvent::Show && dialog != nullptr && dialog->isModal()) {
        // After the alert has entered its own event loop.
        QTimer::singleShot(0, dialog, [this, dialog] { answer(dialog); });
    }
    if (event->type() == QEvent::Show && whenShown_ && qobject_cast<QMainWindow*>(watched) != nullptr) {
        QTimer::singleShot(0, watched, std::exchange(whenShown_, nullptr));
    }
    return false;
}

void UpdaterSession::answerIdentityDialog(QWidget* dialog, QLineEdit& field) {
    identityDialogs.push_back(field.selectedText().toStdString());
    identityQuestion = textsOf(*dialog);
    behindIdentityDialog = text("MODL") + " " + text("SRNO") + " " + text("MFDT");
    EXPECT_EQ(dialog->focusWidget(), &field);
    EXPECT_EQ(field.selectedText(), field.text());
    if (typed.empty()) {
        QTest::keyClick(dialog, Qt::Key_Escape);
        return;
    }
    const QString text = QString::fromStdString(typed.front());
    typed.pop_front();
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, text);
    QTest::keyClick(&field, Qt::Key_Return);
}

// A held key, which may have opened this alert, does not answer it: neither with marked repetitions, nor with
// those that are a release and a press at the same moment.
void UpdaterSession::holdKeys(QWidget* dialog) {
    for (const int key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space}) {
        QKeyEvent marked(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        release.setTimestamp(1);
        press.setTimestamp(1);
        for (QKeyEvent* const event : {&marked, &release, &press, &release}) {
            QApplication::sendEvent(dialog->focusWidget(), event);
            ASSERT_TRUE(dialog->isVisible()) << key;
        }
    }
}

void UpdaterSession::answer(QWidget* dialog) {
    if (auto* const field = dialog->findChild<QLineEdit*>("1101")) {
        answerIdentityDialog(dialog, *field);
        return;
    }
    holdKeys(dialog);

    Alert alert;
    if (const auto* const box = qobject_cast<QMessageBox*>(dialog)) {
        alert = {box->text().toStdString(), box->informativeText().toStdString()};
        EXPECT_EQ(box->icon(), QMessageBox::Warning);
    } else {
        alert = {dialog->windowTitle().toStdString(), textsOf(*dialog)};
    }
    alerts.push_back(alert);
    // A quit is refused while the alert warns of a half-written card.
    if (alert.title == "EEPROM Programming Failure") {
        EXPECT_FALSE(LApplication::Current()->AttemptQuit(kSaveOptionAsk));
    }
    const bool cancels = std::any_of(cancelled.begin(), cancelled.end(), [&alert](const std::string& text) {
        return text == alert.title || text == alert.message;
    });
    if (cancels) {
        QTest::keyClick(dialog, Qt::Key_Escape);
        return;
    }
    for (QPushButton* const button : dialog->findChildren<QPushButton*>()) {
        if (button->isDefault()) {
            QTest::mouseClick(button, Qt::LeftButton);
            return;
        }
    }
    ADD_FAILURE() << "no default button in the alert " << alert;
    QTest::keyClick(dialog, Qt::Key_Escape);
}
