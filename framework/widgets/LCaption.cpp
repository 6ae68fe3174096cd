#include "framework/widgets/LCaption.h"

#include "framework/widgets/LabelAlignment.h"
#include "framework/widgets/SecondaryColour.h"

namespace {

// Clearly second to the values, and still well above the contrast that people with weak eyes need.
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
