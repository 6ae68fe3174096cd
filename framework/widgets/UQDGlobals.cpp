#include "framework/widgets/UQDGlobals.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QApplication>
#include <cerrno>

#include "framework/widgets/HeldKeyFilter.h"
#include "framework/widgets/LApplication.h"
#include "framework/widgets/SessionClient.h"

namespace {

// Delivers every event. An exception from a handler stops here: it would unwind the event loop's frames,
// which do not allow that, and a firmware write that may be running below them.
class EventLoopApplication : public QApplication {
  public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        bool isHandled = false;
        KeepException([&] { isHandled = QApplication::notify(receiver, event); });
        return isHandled;
    }
};

// Screen readers announce a program by its display name; Qt would give the name and path of its file.
class AccessibleProgram : public QAccessibleApplication {
  public:
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? QGuiApplication::applicationDisplayName() : QString();
    }
};

QAccessibleInterface* DescribeProgram(const QString& className, QObject* object) {
    const bool isProgram = object == qApp && className == QApplication::staticMetaObject.className();
    return isProgram ? new AccessibleProgram : nullptr;
}

}  // namespace

void UQDGlobals::InitializeToolbox() {
    if (QCoreApplication::instance() != nullptr) {
        return;
    }
    QAccessible::installFactory(DescribeProgram);
    SessionClient::ReplaceQts();
    // Qt keeps referring to these. The entry code passes no arguments on. Window managers and screen readers
    // know the program by this name.
    static int argumentCount = 1;
    static char* arguments[] = {program_invocation_name, nullptr};
    // Qt destroys its own globals in an unknown order when the process ends, so this object outlives them.
    static QApplication* application = new EventLoopApplication(argumentCount, arguments);
    // The chain of command decides whether closing a window ends the program.
    application->setQuitOnLastWindowClosed(false);
    application->installEventFilter(new HeldKeyFilter(application));
}

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
// The font library under Qt never frees some of its memory.
extern "C" const char* __lsan_default_suppressions();   // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
    return "leak:libfontconfig";
}
#endif
#endif
