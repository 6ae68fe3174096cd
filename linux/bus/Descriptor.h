#pragma once

// A file descriptor with an owner: what a message on the bus brings stays the message's, and is duplicated.

namespace bus {

class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : descriptor_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor() { close(); }

    // A second descriptor of what a message or somebody else owns; empty if that fails.
    [[nodiscard]] static Descriptor duplicate(int descriptor);

    explicit operator bool() const { return descriptor_ >= 0; }
    int number() const { return descriptor_; }
    // Gives the descriptor away; the caller closes it.
    [[nodiscard]] int release();
    void close();

  private:
    int descriptor_ = -1;
};

}  // namespace bus
