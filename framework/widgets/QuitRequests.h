#pragma once

// Requests to quit from outside the window: Qt's quit event, the end of the desktop session, and the signals
// SIGTERM, SIGINT, SIGHUP and SIGQUIT. Each becomes a call of LApplication::DoQuit, made in the event loop,
// while this object exists; the end of the session only if the application allows it. A signal that was
// ignored from the start stays ignored. After an accepted quit the signals do nothing.

#include <QObject>
#include <array>
#include <csignal>

#include "framework/widgets/SessionClient.h"

class LApplication;

class QuitRequests : public QObject {
  public:
    explicit QuitRequests(LApplication& application);
    ~QuitRequests() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    static constexpr std::array<int, 4> kSignals = {SIGTERM, SIGINT, SIGHUP, SIGQUIT};

    bool AskToQuit() noexcept;
    // Returns whether the program quits.
    bool EndSession() noexcept;
    void ListenToSignals();

    LApplication& mApplication;
    SessionClient mSession;
    std::array<int, 2> mSignalPipe = {-1, -1};
    std::array<struct sigaction, kSignals.size()> mPreviousActions = {};
};
