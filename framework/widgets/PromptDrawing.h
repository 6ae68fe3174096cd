#pragma once

// Before Qt draws over a picture that it has given to an X server, it waits until the server has taken that
// one; if the server freezes in between, for ever. The program brings its own version of the function that
// waits, which the dynamic linker prefers. While an object of this class exists, that does not wait on its
// thread. At worst the server then shows a picture that is half the old and half the new one, until it takes
// the new one.

class PromptDrawing {
  public:
    PromptDrawing();
    ~PromptDrawing();

    PromptDrawing(const PromptDrawing&) = delete;
    PromptDrawing& operator=(const PromptDrawing&) = delete;

  private:
    const bool mWasOn;
};
