#include "framework/widgets/TextLook.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QStyle>
#include <QWidget>
#include <functional>
#include <utility>

namespace {

QColor SurroundingColour(const QWidget& widget, float strength) {
    const QWidget* parent = widget.parentWidget();
    const QPalette surroundings = parent != nullptr ? parent->palette() : QApplication::palette();
    QColor colour = surroundings.color(QPalette::Active, QPalette::WindowText);
    colour.setAlphaF(strength);
    return colour;
}

// Colours a widget at once and whenever its surroundings change.
class Colouring : public QObject {
  public:
    Colouring(QWidget& widget, std::function<void()> colour) : QObject(&widget), mColour(std::move(colour)) {
        widget.installEventFilter(this);
        mColour();
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) {
            mColour();
        }
        return false;
    }

  private:
    std::function<void()> mColour;
};

}  // namespace

void TakeSecondaryColour(QWidget& widget, float strength) {
    new Colouring(widget, [&widget, strength] {
        const QColor colour = SurroundingColour(widget, strength);
        // Setting the palette calls this again.
        if (widget.palette().color(QPalette::Active, QPalette::WindowText) != colour) {
            QPalette own = widget.palette();
            own.setColor(QPalette::WindowText, colour);
            widget.setPalette(own);
        }
    });
}

void KeepLegibleWhenDisabled(QWidget& widget, float strength) {
    new Colouring(widget, [&widget, strength] {
        const QColor colour = SurroundingColour(widget, strength);
        if (widget.palette().color(QPalette::Disabled, QPalette::ButtonText) != colour) {
            QPalette own = widget.palette();
            for (const QPalette::ColorRole role :
                 {QPalette::ButtonText, QPalette::Text, QPalette::WindowText}) {
                own.setColor(QPalette::Disabled, role, colour);
            }
            widget.setPalette(own);
        }
    });
}

void AlignWithLayout(QLabel& label) {
    if (!label.wordWrap()) {
        label.setAlignment(QStyle::visualAlignment(label.layoutDirection(), label.alignment()) |
                           Qt::AlignAbsolute);
    }
}
