#include "screens/facesearch/wake_descriptor.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

WakeDescriptor::WakeDescriptor() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

WakeDescriptor::~WakeDescriptor() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

void WakeDescriptor::set() {
    ::eventfd_write(descriptor_, 1);
}

void WakeDescriptor::clear() {
    eventfd_t ignored = 0;
    ::eventfd_read(descriptor_, &ignored);
}

bool WakeDescriptor::isSet() const {
    pollfd waiting{descriptor_, POLLIN, 0};
    return ::poll(&waiting, 1, 0) > 0;
}
