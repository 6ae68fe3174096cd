#include "framework/core/UEnvironment.h"

bool UEnvironment::HasFeature(uint32_t feature) {
    return feature == kHasAppearance;
}
