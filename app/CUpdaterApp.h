#pragma once

// The one application object: start-up and shutdown, the main window and its states, the open card, the
// update run. Its functions are in CUpdaterApp.cpp unless a heading names another file.

#include <Security/Authorization.h>

#include <cstdint>
#include <set>

#include "app/UpdaterMain.h"
#include "app/WindowState.h"
#include "framework/core/LBroadcaster.h"
#include "framework/core/LListener.h"
#include "framework/widgets/LApplication.h"

class LWindow;

// Broadcasts the main window's states and what it writes (app/WindowState.h).
class CUpdaterApp : public LApplication, public LListener, public LBroadcaster {
  public:
    explicit CUpdaterApp(const UpdaterSetup& setup = {});

    // Closes the open card. Then shuts the computer down if the user asked for that; otherwise removes the
    // private driver if this run loaded it.
    ~CUpdaterApp() override;

    // Handles command 2, which does nothing, and passes everything else up the chain.
    bool ObeyCommand(CommandT command, void* parameter) override;
    void FindCommandStatus(CommandT command, uint8_t& outEnabled, uint8_t& outUsesMark, uint16_t& outMark,
                           unsigned char* outName) override;

    // Refuses while the firmware is being written, and only then.
    bool AttemptQuitSelf(int32_t saveOption) override;

    // Not while a card needs its power, because the computer may be about to be switched off.
    bool AllowsEndOfSession() const override { return mIncompleteCardItems.empty(); }

    // Lists the firmware images, counts the cards (installing the private driver if there are none) and
    // builds the main window. Throws "nilP" if the window or one of its controls is missing.
    void StartUp() override;

    // In MainWindow.cpp. Reacts to the main window's four controls, one at a time: nothing else starts while
    // a card is being read or updated, and after an update only the power-down is left. The parameter is not
    // used.
    void ListenToMessage(MessageT message, void* parameter) override;

  protected:
    void QuitRefused() override;

  private:
    // Registers the classes that the layouts name.
    void RegisterClasses();

    // MainWindow.cpp

    bool Accepts(MessageT message) const;

    // Appends one popup item per card that can be opened and described. Throws "nilP" if there is no popup.
    void PopulateCardsPopup(LWindow* window);

    // Shows, hides, enables and disables panes for mWindowState and redraws at once. Throws "nilP" if a pane
    // is missing.
    void UpdateWindowState();

    // Sets mWindowState and tells the listeners. Does not throw, whatever they do: an exception of theirs is
    // reported after the work under way.
    void ChangeWindowState(WindowState state);

    // Shows, during a write, that the program cannot be quit. A refused quit emphasises it.
    void ShowWhetherToQuit();

    // CardInformation.cpp

    // Opens the card chosen in the popup, shows it, and chooses its firmware image; quits on a fatal error.
    void UpdateCardInfo();

    // The steps of UpdateCardInfo, in order. Each returns false if the application has to quit.
    [[nodiscard]] bool OpenChosenCard(int32_t item);
    [[nodiscard]] bool ReadCardRegisters(uint16_t& outFirmwareVersion);
    [[nodiscard]] bool ReadCardIdentity();
    void ChooseFirmwareForCard(uint8_t firmwareVersion);
    // Says below the card's values whether there is newer firmware for it.
    void ShowFirmwareState();

    // UpdateRun.cpp

    // Loads the chosen image, asks for confirmation and writes it into the card.
    void UpdateFirmware();

    // Writes a loaded image into the card and takes the window through the run's states.
    void WriteFirmware(uint8_t* image, uint32_t bytes);

    // Keeps whether the open card's firmware is whole, and tells the listeners.
    void RememberWhetherWritten(bool isWritten);

    // Says, if there are any, which cards' updates have failed, and that they need their power.
    void WarnOfIncompleteCards();

    // Gives the keyboard to the button that the user needs next after a write.
    void OfferNextStep();

    // IdentityEntry.cpp

    // Asks for the identity of a card that has none, stores it in gSerialNumber and writes it into the card.
    // Returns false if the user cancelled.
    [[nodiscard]] bool GetSerialNumberDialog();

    // Writes gSerialNumber into the card and tells the listeners.
    void WriteTypedIdentity();

    const UpdaterSetup mSetup;
    // Authorization under which the private driver was installed; null if there is none.
    AuthorizationRef mDriverRef = nullptr;
    // 1 if this run loaded the private driver, else 0.
    int32_t mDriverLoadResult = 0;
    int32_t mCardCount = 0;
    // 1-based popup item of the open card; -1 if none has been opened.
    int32_t mCurrentCardItem = -1;
    // Owned by the framework's window list.
    LWindow* mMainWindow = nullptr;
    int32_t mWindowState = kWindowIdle;
    bool mPowerDownOnExit = false;
    // Connection of the open card; 0 if none is open.
    uint32_t mCardConnection = 0;
    // The open card already carries the chosen firmware or a newer one.
    bool mFirmwareIsCurrent = false;
    // Popup items of the cards that an update has begun to change and none has completed since. The firmware
    // that such a card still runs says nothing about what its PROM holds now.
    std::set<int32_t> mIncompleteCardItems;
    // A message is being handled, including its dialogs and the firmware write.
    bool mIsBusy = false;
};

// The application object, or null.
extern CUpdaterApp* gpTheApp;
