#pragma once

// An application for tests, with the updater's layouts, and what happens to it from outside: calls from the
// event loop, keys.

#include <gtest/gtest.h>

#include <QApplication>
#include <functional>
#include <vector>

#include "framework/core/LException.h"
#include "framework/core/LListener.h"
#include "framework/widgets/LApplication.h"
#include "framework/widgets/LPane.h"
#include "framework/widgets/LWindow.h"

// An application that reacts as the test says, and records the messages that it hears.
class SampleApplication : public LApplication, public LListener {
  public:
    SampleApplication();

    bool AttemptQuitSelf(int32_t saveOption) override;
    void StartUp() override;
    void ListenToMessage(MessageT message, void* parameter) override;

    // Builds window 128, as the updater does, and shows it.
    LWindow& openWindow();

    // A pane of that window, of the class that the test expects.
    template <typename Pane>
    Pane& pane(const char* name) {
        return dynamic_cast<Pane&>(*ThrowIfNil(window->FindPaneByID(CodeFromName(name))));
    }

    // Listens to a pane of that window.
    void listenTo(const char* name);

    LWindow* window = nullptr;
    bool agreesToQuit = true;
    int timesAsked = 0;
    std::vector<MessageT> heard;
    std::function<void()> atStartUp = [] {};
    std::function<void()> reaction = [] {};
};

// Calls a function from the event loop, in its next pass at the earliest.
void inEventLoop(const std::function<void()>& function);

// Presses and releases a key in a window.
void pressKey(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
