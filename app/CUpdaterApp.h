#pragma once

// The one application object: start-up and shutdown, the main window and its states, the open card, the
// update run. Its functions stand in CUpdaterApp.cpp unless a heading names another file.

#include <Security/Authorization.h>

#include <cstdint>
#include <set>

#include "framework/core/LBroadcaster.h"
#include "framework/core/LListener.h"
#include "framework/widgets/LApplication.h"

class LWindow;

// What the main window shows and which controls it offers.
enum WindowState : int32_t {
    kWindowIdle = 0,
    kWindowUpdating = 1,
    kWindowFinished = 2,
};

class CUpdaterApp : public LApplication, public LListener, public LBroadcaster {
  public:
    CUpdaterApp();

    // Closes the open card; then either removes the private driver that this run loaded or, when the user
    // asked for it, has the computer shut down.
    ~CUpdaterApp() override;

    // Claims the inert command 2; everything else climbs.
    bool ObeyCommand(CommandT command, void* parameter) override;
    void FindCommandStatus(CommandT command, uint8_t& outEnabled, uint8_t& outUsesMark, uint16_t& outMark,
                           unsigned char* outName) override;

    // Refuses exactly while the firmware is being written.
    bool AttemptQuitSelf(int32_t saveOption) override;

    // Lists the firmware images, counts the cards (installing the private driver when there are none) and
    // builds the main window. Throws "nilP" when the window or one of its controls is missing.
    void StartUp() override;

    // In MainWindow.cpp. Reacts to the main window's four controls, one at a time: while a card is being read
    // or updated nothing else is begun, and once it has been updated only the power-down is left. The
    // parameter is not used.
    void ListenToMessage(MessageT message, void* parameter) override;

  protected:
    void QuitRefused() override;

  private:
    // Registers the classes that the layouts name.
    void RegisterClasses();

    // MainWindow.cpp

    bool Accepts(MessageT message) const;

    // Appends one popup item per card that can be opened and described. Throws "nilP" without a popup.
    void PopulateCardsPopup(LWindow* window);

    // Shows, hides, enables and disables panes for mWindowState and redraws at once. Throws "nilP" for a
    // missing pane.
    void UpdateWindowState();

    // Shows during a write that the program cannot be quit; a refused quit emphasises it.
    void ShowWhetherToQuit();

    // CardInformation.cpp

    // Opens the card chosen in the popup, shows it, and chooses its firmware image; quits on any fatal
    // finding.
    void UpdateCardInfo();

    // The steps of UpdateCardInfo, in order. Each returns false if the application has to quit.
    bool OpenChosenCard(int32_t item);
    bool ReadCardRegisters(uint16_t& outFirmwareVersion);
    bool ReadCardIdentity();
    void ChooseFirmwareForCard(uint8_t firmwareVersion);
    // Shows below the card's values what they and the choice mean.
    void ShowFirmwareState();

    // UpdateRun.cpp

    // Loads the chosen image, asks for confirmation and writes it into the card.
    void UpdateFirmware();

    // Writes a loaded image into the card and takes the window through the run's states.
    void WriteFirmware(uint8_t* image, uint32_t bytes);

    // Gives the keyboard to the button that comes next after a write.
    void OfferNextStep();

    // IdentityEntry.cpp

    // Asks for the identity of a card that has none, keeps it in gSerialNumber and writes it into the card.
    // Returns false if the user cancelled.
    bool GetSerialNumberDialog();

    // Authorization under which the private driver was installed; null when none is.
    AuthorizationRef mDriverRef = nullptr;
    // 1 when this run loaded the private driver; 0 when it loaded none.
    int32_t mDriverLoadResult = 0;
    int32_t mCardCount = 0;
    // 1-based popup item of the card that is open; -1 when none has been opened.
    int32_t mCurrentCardItem = -1;
    // Owned by the framework's window list.
    LWindow* mMainWindow = nullptr;
    int32_t mWindowState = kWindowIdle;
    bool mPowerDownOnExit = false;
    // Connection of the open card; 0 when none is open.
    uint32_t mCardConnection = 0;
    // The open card already carries the chosen firmware or a newer one.
    bool mFirmwareIsCurrent = false;
    // Popup items of the cards whose update has failed: the firmware they still run says nothing about their
    // PROMs.
    std::set<int32_t> mFailedCardItems;
    // A message is being acted on, dialogs and the firmware write included.
    bool mIsBusy = false;
};

// The application object while there is one.
extern CUpdaterApp* gpTheApp;
