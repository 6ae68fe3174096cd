#include "platform/Host.h"

#include <cassert>

namespace {
Host* gInstalledHost = nullptr;
}

void InstallHost(Host* host) {
    gInstalledHost = host;
}

Host& InstalledHost() {
    assert(gInstalledHost != nullptr);
    return *gInstalledHost;
}
