#include "framework/widgets/StandardAlert.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <array>
#include <cstdio>

#include "framework/widgets/DesktopFit.h"
#include "framework/widgets/DialogLoop.h"
#include "framework/widgets/UDisplay.h"

namespace {

QString TextFrom(ConstStringPtr string) {
    return QString::fromStdString(TextOfPascal(string));
}

QMessageBox::Icon IconOf(AlertType type) {
    switch (type) {
        case kAlertStopAlert:
            return QMessageBox::Critical;
        case kAlertNoteAlert:
            return QMessageBox::Information;
        case kAlertCautionAlert:
            return QMessageBox::Warning;
        default:
            return QMessageBox::NoIcon;
    }
}

// Shows a text of the message box literally; the box's own setting reaches only some of its labels.
QLabel* PlainLabel(QMessageBox& box, const char* name) {
    auto* label = box.findChild<QLabel*>(name);
    if (label != nullptr) {
        label->setTextFormat(Qt::PlainText);
    }
    return label;
}

void SetTexts(QMessageBox& box, const QString& title, const QString& explanation) {
    box.setText(title);
    box.setInformativeText(explanation);
    if (QLabel* label = PlainLabel(box, "qt_msgbox_label")) {
        QFont font = label->font();
        font.setBold(true);
        label->setFont(font);
    }
    if (QLabel* label = PlainLabel(box, "qt_msgbox_informativelabel")) {
        // The box alone would wrap an explanation at the width of its title.
        label->setMinimumWidth(ComfortableTextWidth(*label));
    }
}

// The box's buttons, indexed by the number that a hit reports.
using Buttons = std::array<QAbstractButton*, 4>;

Buttons AddButtons(QMessageBox& box, const AlertStdAlertParamRec& parameters) {
    const auto add = [&box](ConstStringPtr text, QMessageBox::ButtonRole role) -> QAbstractButton* {
        if (text == nullptr) {
            return nullptr;
        }
        if (text == kAlertDefaultOKText) {
            return box.addButton(QMessageBox::Ok);
        }
        if (text == kAlertDefaultCancelText) {
            return box.addButton(QMessageBox::Cancel);
        }
        return box.addButton(TextFrom(text).replace('&', "&&"), role);
    };
    return {nullptr, add(parameters.defaultText, QMessageBox::AcceptRole),
            add(parameters.cancelText, QMessageBox::RejectRole),
            add(parameters.otherText, QMessageBox::ActionRole)};
}

QAbstractButton* ButtonAt(const Buttons& buttons, int16_t number) {
    return number >= 0 && static_cast<std::size_t>(number) < buttons.size()
               ? buttons[static_cast<std::size_t>(number)]
               : nullptr;
}

int16_t HitIn(const QMessageBox& box, const Buttons& buttons, int16_t otherwise) {
    for (std::size_t number = 1; number < buttons.size(); ++number) {
        if (buttons[number] != nullptr && box.clickedButton() == buttons[number]) {
            return static_cast<int16_t>(number);
        }
    }
    return otherwise;
}

// Shows the alert and returns the number of the button that answered it.
int16_t Ask(AlertType type, ConstStringPtr title, ConstStringPtr explanation,
            const AlertStdAlertParamRec& record) {
    QMessageBox* box = nullptr;
    Buttons buttons{};
    UDisplay::Use([&] {
        QWidget* const parent = ModalParent();
        box = new QMessageBox(parent);
        box->setIcon(IconOf(type));
        if (parent != nullptr) {
            box->setWindowTitle(parent->windowTitle());
        }
        SetTexts(*box, TextFrom(title), TextFrom(explanation));
        buttons = AddButtons(*box, record);
        RemoveButtonIcons(*box);
        box->setDefaultButton(qobject_cast<QPushButton*>(ButtonAt(buttons, record.defaultButton)));
        box->setEscapeButton(ButtonAt(buttons, record.cancelButton));
    });
    if (box == nullptr || UDisplay::IsGone()) {
        return record.cancelButton;
    }
    RunModal(*box);
    const int16_t hit = HitIn(*box, buttons, record.cancelButton);
    // If the display is gone, the box is left until the process ends.
    UDisplay::Use([box] { delete box; });
    return hit;
}

}  // namespace

int16_t StandardAlert(AlertType type, ConstStringPtr title, ConstStringPtr explanation,
                      const AlertStdAlertParamRec* parameters, int16_t* outItemHit) {
    const AlertStdAlertParamRec record = parameters != nullptr ? *parameters : AlertStdAlertParamRec();
    const int16_t hit = Ask(type, title, explanation, record);
    if (UDisplay::IsGone()) {
        // A failed write must not look like a successful one only because there is no display.
        std::fprintf(stderr, "Unanswered alert: %s: %s\n", TextOfPascal(title).c_str(),
                     TextOfPascal(explanation).c_str());
    }
    if (outItemHit != nullptr) {
        *outItemHit = hit;
    }
    return 0;
}
