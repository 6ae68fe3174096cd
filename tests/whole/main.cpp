// The whole program's tests share one QApplication, made as the updater makes it.

#include <gtest/gtest.h>

#include <QString>
#include <cstdio>

#include "framework/widgets/UQDGlobals.h"

namespace {

// The offscreen platform tells that it has no window manager; what the updater says itself must stay
// readable.
void handleQtMessage(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& message) {
    if (!message.startsWith("This plugin does not support")) {
        std::fprintf(stderr, "%s\n", qPrintable(message));
    }
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qInstallMessageHandler(handleQtMessage);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    UQDGlobals::InitializeToolbox();
    return RUN_ALL_TESTS();
}
