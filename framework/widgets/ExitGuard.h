#pragma once

// The last line of defence against libraries that end the process when the display or the session manager
// breaks off.
//
// Those libraries call exit or _exit from deep inside a pass of the event loop, with a firmware write waiting
// below it. The program brings its own exit and _exit, which the dynamic linker prefers; inside a guarded
// call on the same thread they drop what the library was doing and go back to the guard. Everywhere else they
// end the process as usual. The library is then left in the middle of its work, locks included, so it must
// not be asked for anything any more.

class ExitGuard {
  public:
    // Calls a function. Returns false if it tried to end the process. Outside the library that it calls, the
    // function must not keep anything on the stack that a destructor would have to release.
    template <typename Function>
    static bool Call(Function function) {
        return CallPlain([](void* context) { (*static_cast<Function*>(context))(); }, &function);
    }

    // Ends the innermost guarded call of this thread, as an attempt to end the process does. Does nothing
    // outside one.
    static void Leave();

    // Sets what is called when a thread other than the main one tries to end the process; that thread then
    // sleeps for ever.
    static void SetHandlerForOtherThreads(void (*handler)());

  private:
    static bool CallPlain(void (*function)(void* context), void* context);
};
