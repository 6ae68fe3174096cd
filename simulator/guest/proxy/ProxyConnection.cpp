#include "simulator/guest/proxy/ProxyConnection.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <span>
#include <string>
#include <utility>

#include "files/UserError.h"

namespace simulator {
namespace {

// More than any message brings along; the kernel closes the rest.
constexpr std::size_t kMostDescriptors = 16;

// Messages come with the guest's memory and interrupts, which a card does not need.
void closeDescriptors(msghdr& message) {
    for (cmsghdr* part = CMSG_FIRSTHDR(&message); part != nullptr; part = CMSG_NXTHDR(&message, part)) {
        if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_RIGHTS) {
            continue;
        }
        const std::size_t count = (part->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (std::size_t index = 0; index < count; ++index) {
            int descriptor = -1;
            std::memcpy(&descriptor, CMSG_DATA(part) + index * sizeof(int), sizeof(int));
            ::close(descriptor);
        }
    }
}

}  // namespace

ProxyConnection::ProxyConnection(ProxyDevice& device) : device_(device) {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw files::UserError(std::string("No connection to the emulator could be made (") +
                               std::strerror(errno) + ").");
    }
    descriptor_ = ends[0];
    emulatorsEnd_ = ends[1];
}

ProxyConnection::~ProxyConnection() {
    closeEmulatorsEnd();
    ::close(descriptor_);
}

void ProxyConnection::closeEmulatorsEnd() {
    if (const int end = std::exchange(emulatorsEnd_, -1); end != -1) {
        ::close(end);
    }
}

bool ProxyConnection::receive() {
    std::array<uint8_t, kMostProxyBytes> piece{};
    iovec place{.iov_base = piece.data(), .iov_len = piece.size()};
    alignas(cmsghdr) std::array<uint8_t, CMSG_SPACE(kMostDescriptors * sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &place;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    const ssize_t count = ::recvmsg(descriptor_, &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
    if (count < 0) {
        return errno == EAGAIN || errno == EINTR;
    }
    closeDescriptors(message);
    received_.insert(received_.end(), piece.begin(), piece.begin() + count);
    return count > 0;
}

bool ProxyConnection::serve() {
    if (!receive()) {
        return false;
    }
    for (auto bytes = proxyMessageBytes(received_); bytes && *bytes <= received_.size();
         bytes = proxyMessageBytes(received_)) {
        const ProxyRequest request = parseProxyMessage(std::span(received_).first(*bytes));
        received_.erase(received_.begin(), received_.begin() + static_cast<std::ptrdiff_t>(*bytes));
        const auto value = device_.carryOut(request);
        if (!device_.hasPower()) {
            return false;
        }
        if (request.kind != ProxyRequest::Kind::notice && !answer(encodeProxyAnswer(value))) {
            return false;
        }
    }
    return true;
}

// The emulator waits for each answer, so there is always room for one.
bool ProxyConnection::answer(const std::vector<uint8_t>& message) const {
    return ::send(descriptor_, message.data(), message.size(), MSG_DONTWAIT | MSG_NOSIGNAL) ==
           static_cast<ssize_t>(message.size());
}

}  // namespace simulator
