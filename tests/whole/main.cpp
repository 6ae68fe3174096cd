// The tests of the whole program share one QApplication, created as in the updater.

#include <gtest/gtest.h>

#include <QString>
#include <cstdio>

#include "framework/widgets/UQDGlobals.h"

namespace {

// Drops the offscreen platform's messages about its missing window manager, so that only the updater's own
// remain.
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
