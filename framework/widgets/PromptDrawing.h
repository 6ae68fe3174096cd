#pragma once

// Before Qt draws over a picture that it has sent to an X server, it waits until the server has accepted it,
// or for ever if the server freezes. The program has its own version of the function that waits, which the
// dynamic linker prefers. While an object of this class exists, that function does not wait on its
// thread. At worst the server shows half of the old and half of the new picture until it takes the new one.

class PromptDrawing {
  public:
    PromptDrawing();
    ~PromptDrawing();

    PromptDrawing(const PromptDrawing&) = delete;
    PromptDrawing& operator=(const PromptDrawing&) = delete;

  private:
    const bool mWasOn;
};
