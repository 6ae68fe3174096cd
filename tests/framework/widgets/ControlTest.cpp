#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QStyledItemDelegate>
#include <QTest>
#include <QWheelEvent>

#include "framework/core/LBroadcaster.h"
#include "framework/core/PascalString.h"
#include "framework/widgets/LPopupButton.h"
#include "framework/widgets/LPushButton.h"
#include "framework/widgets/UModalDialogs.h"
#include "tests/framework/widgets/Fixture.h"

namespace {

class PopupButtonTest : public testing::Test {
  protected:
    PopupButtonTest() {
        application_.openWindow();
        application_.listenTo("CRDS");
        popup_ = &application_.pane<LPopupButton>("CRDS");
    }

    void append(const char* text) {
        Str255 string;
        PascalFromText(text, string);
        popup_->AppendMenu(string, true);
    }

    SampleApplication application_;
    LPopupButton* popup_;
};

}  // namespace

TEST_F(PopupButtonTest, BroadcastsItsFirstItemOnceAndEveryPick) {
    append("first");
    append("second");
    EXPECT_EQ(popup_->GetValue(), 1);
    EXPECT_TRUE(application_.heard.empty()) << "only from the event loop";
    application_.ProcessNextEvent();
    application_.ProcessNextEvent();
    EXPECT_EQ(application_.heard, std::vector<MessageT>{FourCharCode("CRDS")});
    application_.heard.clear();

    popup_->SetValue(2);
    popup_->SetValue(3);
    EXPECT_TRUE(application_.heard.empty()) << "setting the value is no pick";

    for (const std::size_t picks : {1U, 2U}) {
        popup_->showPopup();
        QTest::keyClick(popup_->view(), Qt::Key_Return);
        EXPECT_EQ(popup_->GetValue(), 2);
        EXPECT_EQ(application_.heard.size(), picks) << "the same item can be picked again";
    }
    QTest::keyClick(popup_, Qt::Key_Up);
    EXPECT_EQ(popup_->GetValue(), 1);
    EXPECT_EQ(application_.heard.size(), 3U);

    QWheelEvent wheel(QPointF(5, 5), popup_->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(popup_, &wheel);
    EXPECT_EQ(popup_->GetValue(), 1) << "scrolling is no pick";
}

TEST_F(PopupButtonTest, KeepsItsItemWhileUnusable) {
    append("first");
    append("second");
    application_.ProcessNextEvent();
    application_.heard.clear();
    popup_->setFocus();
    const auto tryEverything = [&] {
        QTest::keyClick(popup_, Qt::Key_Down);
        popup_->showPopup();
        EXPECT_FALSE(popup_->view()->isVisible());
    };
    popup_->showPopup();
    inEventLoop([&] {
        tryEverything();  // the list was open when the alert appeared
        pressKey(*QApplication::activeModalWidget(), Qt::Key_Return);
        tryEverything();
    });
    UModalAlerts::Alert(130);
    popup_->showPopup();
    popup_->Disable();
    tryEverything();
    EXPECT_EQ(popup_->GetValue(), 1);
    EXPECT_TRUE(application_.heard.empty());
}

TEST_F(PopupButtonTest, ShowsTextsLiterallyAndElidesLongOnes) {
    const char* metacharacters = "A;B (C !D <E /F ^G -H &I &&J";
    append(metacharacters);
    EXPECT_EQ(popup_->currentText(), metacharacters);
    EXPECT_NE(qobject_cast<QStyledItemDelegate*>(popup_->itemDelegate()), nullptr) << "a menu would hide '&'";

    const std::string longText(250, 'M');
    const int width = popup_->width();
    append(longText.c_str());
    popup_->SetValue(2);
    QApplication::processEvents();
    EXPECT_EQ(popup_->width(), width);
    EXPECT_EQ(popup_->toolTip().toStdString(), longText);
    popup_->showPopup();
    EXPECT_LE(popup_->view()->window()->width(), width);
    popup_->hidePopup();
}

// Presses a button as a screen reader does.
void pressByAssistiveTechnology(LPushButton& button) {
    QAccessible::queryAccessibleInterface(&button)->actionInterface()->doAction(
        QAccessibleActionInterface::pressAction());
    QApplication::processEvents();
}

TEST(PushButtonTest, IsPressedAtOnceOrNotAtAll) {
    SampleApplication application;
    LWindow& window = application.openWindow();
    application.listenTo("UPDT");
    auto& button = application.pane<LPushButton>("UPDT");
    const auto tryEverything = [&] {
        pressKey(window, Qt::Key_U, Qt::AltModifier);
        button.click();
        pressByAssistiveTechnology(button);
    };
    tryEverything();
    EXPECT_EQ(application.heard.size(), 3U);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&button)->text(QAccessible::Name), "Update firmware");

    button.setFocus();
    inEventLoop([&] {
        QApplication::setActiveWindow(&window);  // as if the alert did not have the keyboard yet
        tryEverything();
        window.findChild<QAction*>("quitAction")->trigger();  // as assistive technology does
        button.Hide();                                        // in a window that is not the active one
        QWidget* const alert = QApplication::activeModalWidget();
        ASSERT_NE(alert, nullptr);
        pressKey(*alert, Qt::Key_Return);
        button.Show();
        tryEverything();  // the alert is answered, but has not returned yet
        button.Hide();
    });
    EXPECT_EQ(UModalAlerts::Alert(130), UModalAlerts::kItemOK);
    EXPECT_EQ(application.timesAsked, 0) << "the menu is blocked by the alert too";
    EXPECT_EQ(window.focusWidget(), nullptr);
    button.setFocus();  // which assistive technology can do
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        pressKey(window, key);
    }
    tryEverything();
    button.Show();
    button.setFocus();
    button.Disable();
    EXPECT_EQ(window.focusWidget(), nullptr);
    tryEverything();
    EXPECT_EQ(application.heard.size(), 3U);
}

TEST(PushButtonTest, ReturnPressesTheFocusedOrTheDefaultButton) {
    SampleApplication application;
    LWindow& window = application.openWindow();
    application.listenTo("UPDT");
    application.listenTo("CLOS");
    application.pane<LPopupButton>("CRDS").setFocus();
    pressKey(window, Qt::Key_Return);
    EXPECT_EQ(application.heard, std::vector<MessageT>{FourCharCode("UPDT")}) << "the default button";
    application.pane<LPushButton>("CLOS").setFocus();
    pressKey(window, Qt::Key_Return);
    EXPECT_EQ(application.heard.back(), FourCharCode("CLOS")) << "the focused button comes first";
    // The default button looks different then.
    const QImage focused = application.pane<LPushButton>("UPDT").grab().toImage();
    application.pane<LPopupButton>("CRDS").setFocus();
    EXPECT_NE(application.pane<LPushButton>("UPDT").grab().toImage(), focused);

    auto* const silent = new LPushButton;  // the layout gave it no message
    silent->setParent(&window);
    silent->FinishCreate();
    silent->AddListener(&application);
    silent->Show();
    silent->click();
    EXPECT_EQ(application.heard.size(), 2U);
}
