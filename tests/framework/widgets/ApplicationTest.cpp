#include <QClipboard>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>

#include "framework/core/LException.h"
#include "framework/core/PascalString.h"
#include "framework/widgets/LPushButton.h"
#include "framework/widgets/LStaticText.h"
#include "tests/framework/widgets/Fixture.h"

TEST(ApplicationTest, ExceptionLeavesOnlyTheOutermostPass) {
    SampleApplication application;
    application.openWindow();
    application.listenTo("UPDT");
    application.listenTo("CLOS");
    bool workWentOn = false;
    application.reaction = [&] {
        if (application.heard.back() == FourCharCode("CLOS")) {
            throw LException(FourCharCode("test"));
        }
        // During long work, the listener of a click throws, and so does the handler of an event.
        inEventLoop([&] { application.pane<LPushButton>("CLOS").click(); });
        inEventLoop([] { throw LException(LException::kNilPointer); });
        application.ProcessNextEvent();
        workWentOn = application.heard.size() == 2;
    };
    inEventLoop([&] { application.pane<LPushButton>("UPDT").click(); });
    testing::internal::CaptureStderr();
    EXPECT_THROW(application.ProcessNextEvent(), LException);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Further error: framework exception \"nilP\"\n");
    EXPECT_TRUE(workWentOn);
    EXPECT_NO_THROW(application.ProcessNextEvent()) << "it is thrown once, and an idle pass does not wait";
}

TEST(ApplicationTest, RunReportsAnExceptionAndContinues) {
    SampleApplication application;
    std::string report;
    application.atStartUp = [&] {
        application.openWindow();
        inEventLoop([&] {
            for (int pass = 0; pass < 50; ++pass) {
                application.ProcessNextEvent();  // during work and with nothing pending: must not wait
            }
            KeepException([] { throw LException(LException::kNilPointer); });
            inEventLoop([&] {
                auto* alert = QApplication::activeModalWidget();
                ASSERT_NE(alert, nullptr);
                report = alert->property("informativeText").toString().toStdString();
                pressKey(*alert, Qt::Key_Return);
            });
            // Reached only if the loop continues after the report.
            inEventLoop([&] { inEventLoop([&] { application.DoQuit(); }); });
        });
    };
    application.Run();
    EXPECT_NE(report.find("nilP"), std::string::npos) << report;
    EXPECT_FALSE(application.window->isVisible()) << "no window remains during clean-up";
}

TEST(ApplicationTest, QuitDuringStartUpEndsTheRunBeforeTheFirstEvent) {
    SampleApplication application;
    bool eventHappened = false;
    application.atStartUp = [&] {
        inEventLoop([&] { eventHappened = true; });
        application.DoQuit();
        KeepException([] { throw LException(LException::kNilPointer); });
        throw LException(FourCharCode("test"));
    };
    testing::internal::CaptureStderr();
    application.Run();
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find("Unexpected error: framework exception \"nilP\""), std::string::npos) << said;
    EXPECT_NE(said.find("Unexpected error: framework exception \"test\""), std::string::npos) << said;
    EXPECT_FALSE(eventHappened);
    application.ProcessNextEvent();
}

TEST(ApplicationTest, AboutAndHelpAreNotModal) {
    SampleApplication application;
    LWindow& window = application.openWindow();
    for (const CommandT command : {kCommandAbout, kCommandHelp, kCommandAbout}) {
        ASSERT_TRUE(window.ObeyCommand(command));
    }
    const auto dialogs = window.findChildren<QDialog*>();
    ASSERT_EQ(dialogs.size(), 2) << "the same page opens only once";
    EXPECT_FALSE(dialogs[0]->isModal() || dialogs[1]->isModal());
    application.ClosePages();
    EXPECT_FALSE(dialogs[0]->isVisible() || dialogs[1]->isVisible())
        << "pages would hide the result of a write";
    ASSERT_TRUE(window.ObeyCommand(kCommandHelp));
    application.DoQuit();
    EXPECT_FALSE(dialogs[0]->isVisible() || dialogs[1]->isVisible());
}

namespace {

// Knows one command, and names it.
struct Namer : LCommander {
    using LCommander::LCommander;
    void FindCommandStatus(CommandT command, uint8_t& outEnabled, uint8_t& outUsesMark, uint16_t& outMark,
                           unsigned char* outName) override {
        if (command == 4712) {
            PascalFromText("A&B", outName);
        } else {
            LCommander::FindCommandStatus(command, outEnabled, outUsesMark, outMark, outName);
        }
    }
};

}  // namespace

TEST(ApplicationTest, MenuItemsFollowTheChainOfCommand) {
    SampleApplication application;
    LWindow& window = application.openWindow();
    application.pane<LStaticText>("SRNO").SetText("2103070021", 10);
    Namer namer(&window);
    namer.BecomeTarget();
    for (QMenu* menu : window.menuBar()->findChildren<QMenu*>()) {
        QAction* action = menu->actions().first();
        emit menu->aboutToShow();
        EXPECT_TRUE(action->isEnabled());
        action->setProperty("command", 4711);  // an unknown command
        emit menu->aboutToShow();
        EXPECT_FALSE(action->isEnabled());
        action->setProperty("command", 4712);
        emit menu->aboutToShow();
        EXPECT_EQ(action->text(), "A&&B");
        emit menu->aboutToHide();
        EXPECT_TRUE(action->isEnabled()) << "a disabled item has no shortcut";
    }
}

TEST(ApplicationTest, CopiesTheDetailsWithTheirCaptions) {
    SampleApplication application;
    LWindow& window = application.openWindow();
    uint8_t enabled = 0;
    uint8_t marked = 0;
    uint16_t mark = 0;
    Str255 name;
    window.FindCommandStatus(kCommandCopyDetails, enabled, marked, mark, name);
    EXPECT_EQ(enabled, 0) << "there is nothing to copy";
    application.pane<LStaticText>("SRNO").SetText("2103070021", 10);
    application.pane<LStaticText>("FWVR").SetText("M10", 3);
    application.pane<LStaticText>("FWST").SetText("Outdated", 8);
    pressKey(window, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(QApplication::clipboard()->text(),
              "Serial number: 2103070021\nFirmware on the card: M10\nOutdated\n");
}
