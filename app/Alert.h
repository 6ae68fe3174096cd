#pragma once

// The program's one kind of alert. ShowAlert is declared where the hardware layer asks for it.

#include "hw/ApplicationHooks.h"
