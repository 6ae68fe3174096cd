#include "framework/widgets/LCaption.h"

#include "framework/widgets/TextLook.h"

namespace {

// Clearly paler than the values, but still with more contrast than people with poor sight need.
constexpr float kStrength = 0.7F;

}  // namespace

LCaption::LCaption() : LPane(this) {
    setTextFormat(Qt::PlainText);
    TakeSecondaryColour(*this, kStrength);
}

void LCaption::FinishCreate() {
    LPane::FinishCreate();
    AlignWithLayout(*this);
    const QString description = toolTip();
    if (description.isEmpty()) {
        return;
    }
    // As plain text it would be one long line.
    const QString wrapped = "<span>" + description.toHtmlEscaped() + "</span>";
    for (QWidget* widget : {static_cast<QWidget*>(this), buddy()}) {
        if (widget != nullptr) {
            widget->setToolTip(wrapped);
            widget->setAccessibleDescription(description);
        }
    }
}
