#pragma once

// The updater's layouts, by the numbers in their file names, and their panes, by their object names. A
// control's message is its own pane ID.
//
// The framework itself knows the menu bar, the About box and the help page, which every program has.

#include "framework/core/FourCharCode.h"

constexpr int32_t kMainWindowLayout = 128;

constexpr int32_t kNoCardAlert = 129;
// The driver could not be installed, or the chosen card could not be opened.
constexpr int32_t kCardUnreachableAlert = 130;

constexpr int32_t kIdentityDialog = 129;
constexpr PaneIDT kSerialNumberField = 1101;

// The main window's controls.
constexpr PaneIDT kCardPopupPane = FourCharCode("CRDS");
constexpr PaneIDT kCloseButtonPane = FourCharCode("CLOS");
constexpr PaneIDT kUpdateButtonPane = FourCharCode("UPDT");
constexpr PaneIDT kPowerDownButtonPane = FourCharCode("POWR");

// Instructions, shown while idle.
constexpr PaneIDT kIdleText0Pane = FourCharCode("ITX0");
constexpr PaneIDT kIdleText1Pane = FourCharCode("ITX1");
constexpr PaneIDT kIdleText2Pane = FourCharCode("ITX2");

// Captions and bar, shown while the firmware is being written.
constexpr PaneIDT kProgressText0Pane = FourCharCode("PTX0");
constexpr PaneIDT kProgressText1Pane = FourCharCode("PTX1");
constexpr PaneIDT kProgressBarPane = FourCharCode("PGRS");
// Says that the program cannot be quit during a write.
constexpr PaneIDT kNoQuittingPane = FourCharCode("NOQU");

// Texts shown after a successful write.
constexpr PaneIDT kFinishedText0Pane = FourCharCode("FTX0");
constexpr PaneIDT kFinishedText1Pane = FourCharCode("FTX1");
constexpr PaneIDT kFinishedText2Pane = FourCharCode("FTX2");

// The chosen card and its firmware.
constexpr PaneIDT kModelPane = FourCharCode("MODL");
constexpr PaneIDT kBoardRevisionPane = FourCharCode("PCBR");
constexpr PaneIDT kFirmwareVersionPane = FourCharCode("FWVR");
constexpr PaneIDT kFirmwareDatePane = FourCharCode("FWDT");
constexpr PaneIDT kSerialNumberPane = FourCharCode("SRNO");
constexpr PaneIDT kManufactureDatePane = FourCharCode("MFDT");
constexpr PaneIDT kNewFirmwarePane = FourCharCode("NFWR");

// Whether there is newer firmware, and how long a write takes; shown while idle.
constexpr PaneIDT kFirmwareStatePane = FourCharCode("FWST");
constexpr PaneIDT kWriteTimePane = FourCharCode("TIME");
