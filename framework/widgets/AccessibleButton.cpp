#include "framework/widgets/AccessibleButton.h"

#include <QAccessibleWidget>
#include <QKeySequence>

#include "framework/widgets/LPushButton.h"

namespace {

// A button's text as it is shown: without the characters that mark its mnemonic.
QString ShownText(const QString& text) {
    QString shown;
    for (qsizetype index = 0; index < text.size(); ++index) {
        if (text[index] == '&' && index + 1 < text.size()) {
            ++index;
        }
        shown += text[index];
    }
    return shown;
}

class AccessibleButton : public QAccessibleWidget {
  public:
    explicit AccessibleButton(LPushButton& button)
        : QAccessibleWidget(&button, QAccessible::Button), mButton(button) {}

    QString text(QAccessible::Text kind) const override {
        switch (kind) {
            case QAccessible::Name:
                return mButton.accessibleName().isEmpty() ? ShownText(mButton.text())
                                                          : mButton.accessibleName();
            case QAccessible::Accelerator:
                return QKeySequence::mnemonic(mButton.text()).toString(QKeySequence::NativeText);
            default:
                return QAccessibleWidget::text(kind);
        }
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.defaultButton = mButton.isDefault();
        state.pressed = mButton.isDown();
        return state;
    }

    QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        names.prepend(pressAction());
        return names;
    }

    QStringList keyBindingsForAction(const QString& action) const override {
        return action == pressAction() ? QStringList(text(QAccessible::Accelerator)) : QStringList();
    }

    void doAction(const QString& action) override {
        if (!mButton.IsUsable()) {
            return;
        }
        if (action == pressAction()) {
            // The caller waits for an answer, and what the click starts may take minutes.
            QMetaObject::invokeMethod(&mButton, &QAbstractButton::click, Qt::QueuedConnection);
        } else {
            QAccessibleWidget::doAction(action);
        }
    }

  private:
    LPushButton& mButton;
};

QAccessibleInterface* Describe(const QString& /*className*/, QObject* object) {
    auto* const button = dynamic_cast<LPushButton*>(object);
    return button == nullptr ? nullptr : new AccessibleButton(*button);
}

}  // namespace

void DescribeButtonsToAssistiveTechnology() {
    static const bool installed = [] {
        QAccessible::installFactory(Describe);
        return true;
    }();
    static_cast<void>(installed);
}
