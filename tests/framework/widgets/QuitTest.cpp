#include <QDialog>
#include <QLabel>
#include <QMessageBox>
#include <csignal>

#include "framework/widgets/StandardAlert.h"
#include "framework/widgets/UModalDialogs.h"
#include "tests/framework/widgets/Fixture.h"

namespace {

struct Way {
    const char* name;
    void (*quit)(LWindow& window);
    friend std::ostream& operator<<(std::ostream& out, const Way& way) { return out << way.name; }
};

const Way kWays[] = {
    {"close box", [](LWindow& window) { window.close(); }},
    {"shortcut", [](LWindow& window) { pressKey(window, Qt::Key_Q, Qt::ControlModifier); }},
    {"quit event",
     [](LWindow& /*window*/) {
         QEvent event(QEvent::Quit);
         QApplication::sendEvent(qApp, &event);
         EXPECT_EQ(event.isAccepted(), LApplication::Current()->IsQuitting());
     }},
    {"SIGTERM", [](LWindow& /*window*/) { std::raise(SIGTERM); }},
    {"SIGHUP", [](LWindow& /*window*/) { std::raise(SIGHUP); }},
    {"SIGQUIT", [](LWindow& /*window*/) { std::raise(SIGQUIT); }},
};

class QuitTest : public testing::TestWithParam<Way> {};

int16_t showStandardAlert() {
    AlertStdAlertParamRec parameters;
    parameters.cancelText = kAlertDefaultCancelText;
    parameters.cancelButton = kAlertStdAlertCancelButton;
    Str255 title;
    Str255 explanation;
    PascalFromText("A <b>title", title);
    PascalFromText("First line\nand <i>second", explanation);
    int16_t hit = 0;
    EXPECT_EQ(StandardAlert(kAlertCautionAlert, title, explanation, &parameters, &hit), 0);
    return hit;
}

// Acts on the dialog that is open in the event loop's next pass.
void whenDialogIsUp(const std::function<void(QWidget&)>& action) {
    inEventLoop([action] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        action(*dialog);
    });
}

void answerWith(Qt::Key key) {
    whenDialogIsUp([key](QWidget& dialog) { pressKey(dialog, key); });
}

}  // namespace

TEST_P(QuitTest, CanBeRefusedAndThenAccepted) {
    SampleApplication application;
    application.agreesToQuit = false;
    application.atStartUp = [&] {
        LWindow& window = application.openWindow();
        inEventLoop([&] {
            GetParam().quit(window);
            application.ProcessNextEvent();
            EXPECT_EQ(application.timesAsked, 1);
            EXPECT_FALSE(application.IsQuitting());
            EXPECT_TRUE(window.isVisible());
            application.agreesToQuit = true;
            GetParam().quit(window);
        });
    };
    application.Run();
    EXPECT_EQ(application.timesAsked, 2);
}

TEST(QuitSignalsTest, IgnoredFromTheStartStayIgnored) {
    const auto before = std::signal(SIGHUP, SIG_IGN);
    {
        SampleApplication application;
        std::raise(SIGHUP);
        application.ProcessNextEvent();
        EXPECT_EQ(application.timesAsked, 0);
    }
    std::signal(SIGHUP, before);
}

INSTANTIATE_TEST_SUITE_P(Ways, QuitTest, testing::ValuesIn(kWays));

TEST(AlertsTest, AreAnsweredByKeyboard) {
    SampleApplication application;
    application.openWindow();
    whenDialogIsUp([](QWidget& dialog) {
        auto* box = qobject_cast<QMessageBox*>(&dialog);
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->text(), "A <b>title");
        EXPECT_EQ(box->informativeText(), "First line\nand <i>second");
        EXPECT_EQ(box->icon(), QMessageBox::Warning);
        EXPECT_EQ(box->findChild<QLabel*>("qt_msgbox_informativelabel")->textFormat(), Qt::PlainText);
        pressKey(dialog, Qt::Key_Return);
    });
    EXPECT_EQ(showStandardAlert(), kAlertStdAlertOKButton);
    answerWith(Qt::Key_Escape);
    EXPECT_EQ(showStandardAlert(), kAlertStdAlertCancelButton);
    answerWith(Qt::Key_Return);
    EXPECT_EQ(UModalAlerts::Alert(130), UModalAlerts::kItemOK);
}

TEST(AlertsTest, AcceptedQuitCancelsOpenAndLaterDialogs) {
    SampleApplication application;
    application.openWindow();
    whenDialogIsUp([&](QWidget& /*dialog*/) {
        whenDialogIsUp([&](QWidget& dialog) {
            dynamic_cast<QDialog&>(dialog).accept();  // in the same pass
            application.DoQuit();
        });
        EXPECT_EQ(UModalAlerts::Alert(129), UModalAlerts::kItemCancel);
    });
    EXPECT_EQ(showStandardAlert(), kAlertStdAlertCancelButton);
    ASSERT_TRUE(application.IsQuitting());

    // If these were shown, the test would hang.
    Str255 text = {0};
    EXPECT_EQ(showStandardAlert(), kAlertStdAlertCancelButton);
    EXPECT_FALSE(UModalDialogs::AskForOneString(&application, 129, 1101, text));
}
