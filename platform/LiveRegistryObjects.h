#pragma once

// What the device registry has handed out.

#include <cstddef>

std::size_t CountLiveServices();
std::size_t CountLiveIterators();
