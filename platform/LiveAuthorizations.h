#pragma once

// What the Authorization Services have handed out.

#include <cstddef>

std::size_t CountLiveAuthorizations();
