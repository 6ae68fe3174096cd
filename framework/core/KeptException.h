#pragma once

// An exception that waits until it can be thrown further up.

#include <exception>

class KeptException {
  public:
    // Keeps the exception that is being handled. If one is kept already, a further one goes to standard
    // error: the first names the cause.
    void KeepCurrent() noexcept;

    // Throws the kept exception and forgets it; does nothing if there is none.
    void Rethrow();

  private:
    std::exception_ptr mKept;
};
