#include "framework/widgets/LIconPane.h"

#include <QStyle>
#include <QVariant>

LIconPane::LIconPane() : LPane(this) {}

void LIconPane::FinishCreate() {
    LPane::FinishCreate();
    const QString name = property("icon").toString();
    const QStyle::StandardPixmap standard = name == "stop"   ? QStyle::SP_MessageBoxCritical
                                            : name == "note" ? QStyle::SP_MessageBoxInformation
                                                             : QStyle::SP_MessageBoxWarning;
    const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    setPixmap(style()->standardIcon(standard, nullptr, this).pixmap(QSize(size, size), devicePixelRatio()));
}
