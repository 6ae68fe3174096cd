#pragma once

// What the Apple Event Manager has handed out.

#include <cstddef>

std::size_t CountLiveDescriptors();
