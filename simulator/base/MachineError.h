#pragma once

// The simulator's name for the error that the tools report to the user.

#include "files/UserError.h"

namespace simulator {

using MachineError = files::UserError;

}  // namespace simulator
