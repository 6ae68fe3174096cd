#include "framework/widgets/LPopupButton.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QStyleOptionComboBox>
#include <QStyledItemDelegate>
#include <QTextDocument>
#include <QToolTip>
#include <QWheelEvent>

#include "framework/widgets/TextLook.h"

namespace {

// While a card is being written, its name is still the most important one in the window.
constexpr float kDisabledStrength = 0.7F;

constexpr QEvent::Type kFirstItemAppeared = QEvent::User;

// Shows texts literally, where a menu would interpret mnemonics and tabs, in rows with some space.
class ItemDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QSize hint = QStyledItemDelegate::sizeHint(option, index);
        return {hint.width(), hint.height() + hint.height() / 2};
    }

    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override {
        const bool isCut = option.rect.width() < QStyledItemDelegate::sizeHint(option, index).width();
        return isCut && QStyledItemDelegate::helpEvent(event, view, option, index);
    }
};

// A tool tip that shows a text literally, even if it looks like markup.
QString ToolTipOf(const QString& text) {
    return Qt::mightBeRichText(text) ? "<span>" + text.toHtmlEscaped() + "</span>" : text;
}

}  // namespace

LPopupButton::LPopupButton() : LControl(this) {
    // The popup is as wide as the layout makes it, however long its items are.
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setItemDelegate(new ItemDelegate(this));
    view()->setTextElideMode(Qt::ElideMiddle);
    view()->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(this, &QComboBox::activated, this, [this] { BroadcastFromQt(); });
    connect(this, &QComboBox::currentTextChanged, this, [this](const QString& text) {
        QToolTip::hideText();
        setToolTip(ToolTipOf(text));
    });
    KeepLegibleWhenDisabled(*this, kDisabledStrength);
}

void LPopupButton::SetValue(int32_t value) {
    if (value >= 1 && value <= count()) {
        setCurrentIndex(value - 1);
    }
}

void LPopupButton::AppendMenu(ConstStringPtr itemText, bool /*ignoreMetacharacters*/) {
    const QString text = QString::fromStdString(TextOfPascal(itemText));
    addItem(text);
    setItemData(count() - 1, ToolTipOf(text), Qt::ToolTipRole);
    if (count() == 1) {
        QCoreApplication::postEvent(this, new QEvent(kFirstItemAppeared));
    }
}

void LPopupButton::showPopup() {
    if (!IsUsable()) {
        return;
    }
    // Qt would make the list as wide as its longest item.
    view()->window()->setMaximumWidth(width());
    QComboBox::showPopup();
}

bool LPopupButton::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        QStyleOptionComboBox option;
        initStyleOption(&option);
        if (option.currentText == currentText()) {
            event->ignore();
            return true;  // nothing of it is cut off, so there is nothing to add
        }
    }
    return QComboBox::event(event);
}

void LPopupButton::initStyleOption(QStyleOptionComboBox* option) const {
    QComboBox::initStyleOption(option);
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, option, QStyle::SC_ComboBoxEditField, this);
    // Styles leave one pixel of the field free on either side. A text as wide as the field would lose its
    // end, where equal cards differ.
    option->currentText =
        option->fontMetrics.elidedText(option->currentText, Qt::ElideMiddle, field.width() - 2);
}

void LPopupButton::keyPressEvent(QKeyEvent* event) {
    // Not even the shown item may change, or it would differ from the one last broadcast.
    if (IsUsable()) {
        QComboBox::keyPressEvent(event);
    } else {
        event->ignore();
    }
}

void LPopupButton::customEvent(QEvent* event) {
    if (event->type() == kFirstItemAppeared) {
        BroadcastFromQt();
    }
}

void LPopupButton::wheelEvent(QWheelEvent* event) {
    // Scrolling over the closed popup must not open another card by accident.
    event->ignore();
}
