#include "linux/bus/Descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace bus {

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) {
        close();
        descriptor_ = other.release();
    }
    return *this;
}

Descriptor Descriptor::duplicate(int descriptor) {
    return Descriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, 3));
}

int Descriptor::release() {
    return std::exchange(descriptor_, -1);
}

void Descriptor::close() {
    if (descriptor_ >= 0) {
        ::close(release());
    }
}

}  // namespace bus
