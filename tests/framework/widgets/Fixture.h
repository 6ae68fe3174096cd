#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <functional>
#include <vector>

#include "framework/core/LException.h"
#include "framework/core/LListener.h"
#include "framework/widgets/LApplication.h"
#include "framework/widgets/LPane.h"
#include "framework/widgets/LWindow.h"

// An application whose reactions a test supplies and which remembers what it heard.
class SampleApplication : public LApplication, public LListener {
  public:
    SampleApplication();

    bool AttemptQuitSelf(int32_t saveOption) override;
    void StartUp() override;
    void ListenToMessage(MessageT message, void* parameter) override;

    // Builds window 128, as the updater does, and shows it.
    LWindow& openWindow();

    // A pane of that window, as the class that the test expects it to be.
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

// Has the event loop call something, at the earliest in its next pass.
void inEventLoop(const std::function<void()>& function);

// Presses a key in whichever window has the keyboard.
void pressKey(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
