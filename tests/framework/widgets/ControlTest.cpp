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

class PopupButton : public testing::Test {
  protected:
    PopupButton() {
        mApplication.openWindow();
        mApplication.listenTo("CRDS");
        mPopup = &mApplication.pane<LPopupButton>("CRDS");
    }

    void append(const char* text) {
        Str255 string;
        PascalFromText(text, string);
        mPopup->AppendMenu(string, true);
    }

    SampleApplication mApplication;
    LPopupButton* mPopup;
};

}  // namespace

TEST_F(PopupButton, BroadcastsItsFirstItemOnceAndEveryPick) {
    append("first");
    append("second");
    EXPECT_EQ(mPopup->GetValue(), 1);
    EXPECT_TRUE(mApplication.heard.empty()) << "only from the event loop";
    mApplication.ProcessNextEvent();
    mApplication.ProcessNextEvent();
    EXPECT_EQ(mApplication.heard, std::vector<MessageT>{FourCharCode("CRDS")});
    mApplication.heard.clear();

    mPopup->SetValue(2);
    mPopup->SetValue(3);
    EXPECT_TRUE(mApplication.heard.empty()) << "setting the value is no pick";

    for (const std::size_t picks : {1U, 2U}) {
        mPopup->showPopup();
        QTest::keyClick(mPopup->view(), Qt::Key_Return);
        EXPECT_EQ(mPopup->GetValue(), 2);
        EXPECT_EQ(mApplication.heard.size(), picks) << "the same item can be picked again";
    }
    QTest::keyClick(mPopup, Qt::Key_Up);
    EXPECT_EQ(mPopup->GetValue(), 1);
    EXPECT_EQ(mApplication.heard.size(), 3U);

    QWheelEvent wheel(QPointF(5, 5), mPopup->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(mPopup, &wheel);
    EXPECT_EQ(mPopup->GetValue(), 1) << "scrolling is no pick";
}

TEST_F(PopupButton, KeepsItsItemWhileUnusable) {
    append("first");
    append("second");
    mApplication.ProcessNextEvent();
    mApplication.heard.clear();
    mPopup->setFocus();
    const auto tryEverything = [&] {
        QTest::keyClick(mPopup, Qt::Key_Down);
        mPopup->showPopup();
        EXPECT_FALSE(mPopup->view()->isVisible());
    };
    mPopup->showPopup();
    inEventLoop([&] {
        tryEverything();  // the list was open when the alert appeared
        pressKey(*QApplication::activeModalWidget(), Qt::Key_Return);
        tryEverything();
    });
    UModalAlerts::Alert(130);
    mPopup->showPopup();
    mPopup->Disable();
    tryEverything();
    EXPECT_EQ(mPopup->GetValue(), 1);
    EXPECT_TRUE(mApplication.heard.empty());
}

TEST_F(PopupButton, ShowsTextsLiterallyAndElidesLongOnes) {
    const char* metacharacters = "A;B (C !D <E /F ^G -H &I &&J";
    append(metacharacters);
    EXPECT_EQ(mPopup->currentText(), metacharacters);
    EXPECT_NE(qobject_cast<QStyledItemDelegate*>(mPopup->itemDelegate()), nullptr) << "a menu would hide '&'";

    const std::string longText(250, 'M');
    const int width = mPopup->width();
    append(longText.c_str());
    mPopup->SetValue(2);
    QApplication::processEvents();
    EXPECT_EQ(mPopup->width(), width);
    EXPECT_EQ(mPopup->toolTip().toStdString(), longText);
    mPopup->showPopup();
    EXPECT_LE(mPopup->view()->window()->width(), width);
    mPopup->hidePopup();
}

// Presses a button as a screen reader does.
void pressByAssistiveTechnology(LPushButton& button) {
    QAccessible::queryAccessibleInterface(&button)->actionInterface()->doAction(
        QAccessibleActionInterface::pressAction());
    QApplication::processEvents();
}

TEST(PushButton, IsPressedAtOnceOrNotAtAll) {
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

TEST(PushButton, ReturnPressesTheFocusedOrTheDefaultButton) {
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
