#pragma once

// The Carbon services that the updater calls directly.

#include <Carbon/AppleEvents.h>
#include <Carbon/MacTypes.h>
#include <Carbon/Processes.h>
