#pragma once

// One run of the updater in this process, on a simulated machine, with somebody in front of its window.

#include <QEvent>
#include <QObject>
#include <QWidget>
#include <deque>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "simulator/host/SimulatedHost.h"
#include "simulator/machine/Machine.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/whole/MeddlingHost.h"

class QLineEdit;

// A bundle of its own: the real layouts, and whatever firmware images a test puts in.
class TestBundle {
  public:
    explicit TestBundle(const std::string& name = "Some.app");

    std::filesystem::path path() const { return directory_.path() / name_; }
    std::filesystem::path resource(const std::string& name) const {
        return path() / "Contents/Resources" / name;
    }

    // Puts in one of the images that ship, or one made of the bytes given.
    void addShippedResource(const std::string& name);
    void addImage(const std::string& name, const std::vector<uint8_t>& bytes);

  private:
    TemporaryDirectory directory_;
    std::string name_;
};

class UpdaterSession : public QObject {
  public:
    // An alert as it was shown.
    struct Alert {
        std::string title;
        std::string message;
        bool operator==(const Alert&) const = default;
        friend std::ostream& operator<<(std::ostream& out, const Alert& alert) {
            return out << '"' << alert.title << "\" / \"" << alert.message << '"';
        }
    };

    UpdaterSession(simulator::Machine& machine, const TestBundle& bundle);
    ~UpdaterSession() override;

    // Starts the updater, has the script sit in front of its window, if there is one, once the first card has
    // been shown, and ends the updater if the script has not. Without a window it has to end by itself.
    // Alerts are answered with their default button as they come, save those whose titles or messages are
    // listed in cancelled.
    void run(const std::function<void()>& script = [] {});
    std::vector<std::string> cancelled;
    // Whether any has been run in this process.
    static inline bool hasRun = false;

    // What is typed into one identity dialog after the other; when nothing is left, it is cancelled. And what
    // each dialog's field held, selected, when it came up.
    std::deque<std::string> typed;
    std::vector<std::string> identityDialogs;
    // What the last identity dialog said, and the window's MODL, SRNO and MFDT behind it.
    std::string identityQuestion;
    std::string behindIdentityDialog;

    // What has been shown so far, and what came out on standard error during run.
    std::vector<Alert> alerts;
    std::string standardError;

    // Called from the event loop whenever the progress bar's value changes.
    std::function<void(int value)> onProgress;

    // The window's panes, by ID. text and isShown need the pane to be there.
    QWidget* window() const;
    QWidget* pane(const char* paneID) const;
    std::string text(const char* paneID) const;
    bool isShown(const char* paneID) const { return pane(paneID)->isVisible(); }
    bool isEnabled(const char* paneID) const { return pane(paneID)->isEnabled(); }
    bool isEmphasised(const char* paneID) const;
    // Which of the window's state panes are shown, in one string.
    std::string shownStatePanes() const;

    void click(const char* paneID);
    // Presses a key in the window, which then is the active one.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    // Tries everything that begins an update, chooses a card or ends the program, while nothing of it may
    // work.
    void meddle();
    // Picks an item (1-based) of the card popup with the keyboard.
    void pickCard(int item);
    void pickOpenCardAgain();
    std::vector<std::string> cardItems() const;

    simulator::SimulatedHost simulatedHost;
    MeddlingHost host;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void answer(QWidget* dialog);
    void holdKeys(QWidget* dialog);
    void answerIdentityDialog(QWidget* dialog, QLineEdit& field);

    // That the updater which has ended gave back what it had, save the popup's connections.
    void expectNothingLeft();
    // The cards in the popup, and those that are missing from it because they did not answer.
    std::size_t countCardsOfPopup() const;

    simulator::Machine& machine_;
    std::size_t opened_ = 0;  // cards, while the popup was filled
    // What is to be done once the window has come up.
    std::function<void()> whenShown_;
};
