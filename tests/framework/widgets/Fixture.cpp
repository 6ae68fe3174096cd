#include "tests/framework/widgets/Fixture.h"

#include <QTest>
#include <QWindow>

#include "framework/core/LBroadcaster.h"
#include "framework/core/URegistrar.h"
#include "framework/widgets/LCaption.h"
#include "framework/widgets/LDialogBox.h"
#include "framework/widgets/LEditField.h"
#include "framework/widgets/LPopupButton.h"
#include "framework/widgets/LProgressBar.h"
#include "framework/widgets/LPushButton.h"
#include "framework/widgets/LStaticText.h"
#include "framework/widgets/UControlRegistry.h"

SampleApplication::SampleApplication() {
    UseResources(LAYOUTS);
    URegistrar::RegisterClass<LDialogBox>();
    URegistrar::RegisterClass<LWindow>();
    URegistrar::RegisterClass<LPopupButton>();
    URegistrar::RegisterClass<LPushButton>();
    URegistrar::RegisterClass<LStaticText>();
    URegistrar::RegisterClass<LProgressBar>();
    URegistrar::RegisterClass<LCaption>();
    URegistrar::RegisterClass<LEditField>();
    UControlRegistry::RegisterAMClasses();
}

bool SampleApplication::AttemptQuitSelf(int32_t saveOption) {
    EXPECT_EQ(saveOption, kSaveOptionAsk);
    ++timesAsked;
    return agreesToQuit;
}

void SampleApplication::StartUp() {
    atStartUp();
}

void SampleApplication::ListenToMessage(MessageT message, void* /*parameter*/) {
    heard.push_back(message);
    reaction();
}

LWindow& SampleApplication::openWindow() {
    window = ThrowIfNil(LWindow::CreateWindow(128, this));
    window->Show();
    QApplication::setActiveWindow(window);
    return *window;
}

void SampleApplication::listenTo(const char* name) {
    pane<LBroadcaster>(name).AddListener(this);
}

void inEventLoop(const std::function<void()>& function) {
    QMetaObject::invokeMethod(qApp, function, Qt::QueuedConnection);
}

void pressKey(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    // A key that is pressed again in the millisecond of its release counts as held, unless another one came
    // between.
    QTest::keyClick(window.windowHandle(), Qt::Key_Shift);
    QTest::keyClick(window.windowHandle(), key, modifiers);
}
