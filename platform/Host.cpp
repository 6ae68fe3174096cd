#include "platform/Host.h"

namespace platform {
Host* installedHost = nullptr;
}

void InstallHost(Host* host) {
    platform::installedHost = host;
}
