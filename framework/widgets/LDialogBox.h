#pragma once

// A dialog that a layout describes. Its buttons are Qt's own button box, which the layout connects to the
// dialog's accept and reject.

#include <QDialog>
#include <memory>
#include <string>
#include <vector>

#include "framework/core/LCommander.h"
#include "framework/widgets/LPane.h"

class LDialogBox : public QDialog, public LPane, public LCommander {
  public:
    static constexpr const char* kClassName = "LDialogBox";

    LDialogBox();

    // Builds the hidden dialog of <kind>-<layoutID>.ui, centred on the application's front window. Null, with
    // one line on standard error, if there is no usable layout.
    static std::unique_ptr<LDialogBox> CreateDialog(const char* kind, int32_t layoutID, LCommander* super);

    LPane* FindPaneByID(PaneIDT paneID) const;

    // Puts the parameters into the dialog's static texts, in place of "^0", "^1" and so on.
    void FillIn(const std::vector<std::string>& parameters);

    // Shows the dialog, waits for the answer and returns whether it was OK. After an accepted quit the dialog
    // is not shown and the answer is Cancel. It is also Cancel if a quit is accepted meanwhile.
    [[nodiscard]] bool DoDialog();
};
