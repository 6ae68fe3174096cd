#pragma once

// A popup menu that shows its chosen item. Its value is the number of that item, counted from 1; 0 while it
// is empty. It broadcasts whenever the user picks an item, even the one already chosen.
//
// The first item appended becomes the chosen one, and the popup then posts one broadcast to the event loop:
// it arrives after the code that fills the menu has returned.

#include <QComboBox>
#include <string>

#include "framework/core/PascalString.h"
#include "framework/widgets/LControl.h"

class LPopupButton : public QComboBox, public LControl {
  public:
    static constexpr const char* kClassName = "LPopupButton";

    LPopupButton();

    int32_t GetValue() const override { return currentIndex() + 1; }
    // Numbers without an item are ignored.
    void SetValue(int32_t value) override;

    // Appends one item. No character has a special meaning in a menu here, so the text is shown as it is
    // whether or not metacharacters are ignored. A text too long for the popup is cut in the middle, because
    // equal cards differ at the end, in their slots; the tool tip then shows it in full.
    void AppendMenu(ConstStringPtr itemText, bool ignoreMetacharacters);

    // The text of an item; empty if there is none of this number.
    std::string GetItemText(int32_t value) const { return itemText(value - 1).toStdString(); }

    // Shows the list if the popup is usable.
    void showPopup() override;

  protected:
    bool event(QEvent* event) override;
    void initStyleOption(QStyleOptionComboBox* option) const override;
    void keyPressEvent(QKeyEvent* event) override;
    void customEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
};
