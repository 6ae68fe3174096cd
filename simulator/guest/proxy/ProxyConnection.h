#pragma once

// The socket between a device here and the emulator on whose bus it is.

#include <cstdint>
#include <vector>

#include "simulator/guest/proxy/ProxyDevice.h"

namespace simulator {

class ProxyConnection {
  public:
    // Creates the socket. The device must outlive the connection. Throws files::UserError.
    explicit ProxyConnection(ProxyDevice& device);
    ProxyConnection(const ProxyConnection&) = delete;
    ProxyConnection& operator=(const ProxyConnection&) = delete;
    ~ProxyConnection();

    // The emulator's end, to be inherited, and to be closed here once it has been; and ours, to wait for.
    int emulatorsEnd() const { return emulatorsEnd_; }
    void closeEmulatorsEnd();
    int descriptor() const { return descriptor_; }

    // Carries out what the emulator has sent so far, and answers; never waits. False if it has closed its
    // end, or the machine has lost its power and answers no more. Throws files::UserError if what it has sent
    // is not a message.
    [[nodiscard]] bool serve();

  private:
    // Appends what is there; false at the end.
    [[nodiscard]] bool receive();
    [[nodiscard]] bool answer(const std::vector<uint8_t>& message) const;

    ProxyDevice& device_;
    int descriptor_ = -1;
    int emulatorsEnd_ = -1;
    std::vector<uint8_t> received_;  // not yet a whole message
};

}  // namespace simulator
