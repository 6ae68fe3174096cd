#pragma once

// One run of the updater in this process, on a simulated machine, with a script that uses its window.

#include <QEvent>
#include <QObject>
#include <QWidget>
#include <deque>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "app/UpdaterMain.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/machine/Machine.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/whole/MeddlingHost.h"

class QLineEdit;

// A new bundle with the real layouts and the firmware images that a test adds.
class TestBundle {
  public:
    explicit TestBundle(const std::string& name = "Some.app");

    std::filesystem::path path() const { return directory_.path() / name_; }
    std::filesystem::path resource(const std::string& name) const {
        return path() / "Contents/Resources" / name;
    }

    // Adds a shipped file, or an image of the given bytes.
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

    // Starts the updater and, if it opens a window, runs the script after the first card is shown, and then
    // ends the updater if the script has not. Without a window the updater must end by itself. Alerts are
    // answered with their default button, except those whose title or message is listed in `cancelled`.
    void run(const std::function<void()>& script = [] {});
    std::vector<std::string> cancelled;
    UpdaterSetup setup;
    // Whether any session has run in this process.
    static inline bool hasRun = false;

    // The texts to type into successive identity dialogs; further dialogs are cancelled. And the text that
    // each dialog's field held, selected, when it opened.
    std::deque<std::string> typed;
    std::vector<std::string> identityDialogs;
    // The last identity dialog's text, and the window's MODL, SRNO and MFDT meanwhile.
    std::string identityQuestion;
    std::string behindIdentityDialog;

    // The alerts shown so far, and standard error during run().
    std::vector<Alert> alerts;
    std::string standardError;

    // Called from the event loop when the progress bar's value changes.
    std::function<void(int value)> onProgress;

    // The window's panes, by ID. For text() and isShown() the pane must exist.
    QWidget* window() const;
    QWidget* pane(const char* paneID) const;
    std::string text(const char* paneID) const;
    bool isShown(const char* paneID) const { return pane(paneID)->isVisible(); }
    bool isEnabled(const char* paneID) const { return pane(paneID)->isEnabled(); }
    bool isEmphasised(const char* paneID) const;
    // The visible state panes, in one string.
    std::string shownStatePanes() const;

    void click(const char* paneID);
    // Makes the window active and presses a key in it.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    // Tries everything that starts an update, chooses a card or ends the program. None of it may work now.
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

    // Checks that the updater released everything except the popup's connections.
    void expectNothingLeft();
    // The number of cards in the popup, and of those missing because they did not answer.
    std::size_t countCardsOfPopup() const;

    simulator::Machine& machine_;
    std::size_t opened_ = 0;  // cards opened to fill the popup
    // Called once, after the window has opened.
    std::function<void()> whenShown_;
};
