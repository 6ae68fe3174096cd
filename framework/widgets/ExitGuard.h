#pragma once

// The last line of defence against libraries that end the process when the display or the session manager
// breaks off.
//
// Those libraries call exit or _exit from deep inside a pass of the event loop, with a firmware write waiting
// below it. The program has its own exit and _exit, which the dynamic linker prefers. Inside a guarded call
// on the same thread they drop what the library was doing and return to the guard; everywhere else they end
// the process as usual. The library is left in the middle of its work, with its locks held, so it must not be
// called any more.

class ExitGuard {
  public:
    // Calls a function. Returns false if it tried to end the process. Destructors of objects on its stack
    // then do not run, so outside the library that it calls nothing on the stack may need one.
    template <typename Function>
    [[nodiscard]] static bool Call(Function function) {
        return CallPlain([](void* context) { (*static_cast<Function*>(context))(); }, &function);
    }

    // Ends the innermost guarded call of this thread, as an attempt to end the process would. Does nothing
    // outside one.
    static void Leave();

    // Sets the function that is called if a thread other than the main one tries to end the process; that
    // thread then sleeps for ever.
    static void SetHandlerForOtherThreads(void (*handler)());

  private:
    static bool CallPlain(void (*function)(void* context), void* context);
};
