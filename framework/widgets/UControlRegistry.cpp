#include "framework/widgets/UControlRegistry.h"

#include "framework/core/URegistrar.h"
#include "framework/widgets/LIconPane.h"
#include "framework/widgets/LSeparator.h"

void UControlRegistry::RegisterAMClasses() {
    URegistrar::RegisterClass<LSeparator>();
    URegistrar::RegisterClass<LIconPane>();
}
