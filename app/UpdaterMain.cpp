#include "app/UpdaterMain.h"

#include <CoreFoundation/CoreFoundation.h>

#include <QGuiApplication>

#include "app/CUpdaterApp.h"
#include "app/logic/FirmwareFiles.h"
#include "framework/core/LGrowZone.h"
#include "framework/core/UEnvironment.h"
#include "framework/widgets/UQDGlobals.h"
#include "framework/widgets/UResources.h"

namespace {

constexpr int kMasterPointerBlocks = 3;
constexpr int32_t kMemoryReserveBytes = 20000;
constexpr int32_t kMaxPathBytes = 4096;

// Layouts, alerts and the icon come from the bundle, wherever the program is started from.
void useBundleResources(CUpdaterApp& application) {
    const CFBundleRef bundle = CFBundleGetMainBundle();
    if (bundle == nullptr) {
        return;
    }
    const CFURLRef folder = CFBundleCopyResourcesDirectoryURL(bundle);
    char path[kMaxPathBytes];
    if (CFURLGetFileSystemRepresentation(folder, 1, reinterpret_cast<uint8_t*>(path), sizeof path) != 0) {
        application.UseResources(path);
        UResources::UseIcon();
    }
    CFRelease(folder);
}

}  // namespace

int UpdaterMain(const UpdaterSetup& setup) {
    InitializeHeap(kMasterPointerBlocks);
    UQDGlobals::InitializeToolbox();
    // The title of alerts while there is no window yet, and the version in the About box.
    QGuiApplication::setApplicationDisplayName("VUpdater");
    QCoreApplication::setApplicationVersion(VUPDATER_VERSION);
    // Lives as long as the process.
    static const LGrowZone* const reserve = new LGrowZone(kMemoryReserveBytes);
    static_cast<void>(reserve);
    bool hasLostDisplay = false;
    {
        CUpdaterApp application(setup);
        gpTheApp = &application;
        useBundleResources(application);
        application.UseTitle(setup.windowTitle);
        application.SetAboutDetails(FirmwareOverview);
        application.Run();
        hasLostDisplay = application.HasLostDisplay();
    }
    gpTheApp = nullptr;
    return hasLostDisplay ? kDisplayLost : 0;
}
