#include "framework/widgets/UControlRegistry.h"

#include <QLabel>
#include <QStyle>
#include <QVariant>

#include "framework/core/URegistrar.h"
#include "framework/widgets/LPane.h"
#include "framework/widgets/LSeparator.h"

namespace {

class LIconPane : public QLabel, public LPane {
  public:
    static constexpr const char* kClassName = "LIconPane";

    LIconPane() : LPane(this) {}

    void FinishCreate() override {
        LPane::FinishCreate();
        const QString name = property("icon").toString();
        const QStyle::StandardPixmap standard = name == "stop"   ? QStyle::SP_MessageBoxCritical
                                                : name == "note" ? QStyle::SP_MessageBoxInformation
                                                                 : QStyle::SP_MessageBoxWarning;
        const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
        setPixmap(
            style()->standardIcon(standard, nullptr, this).pixmap(QSize(size, size), devicePixelRatio()));
    }
};

}  // namespace

void UControlRegistry::RegisterAMClasses() {
    URegistrar::RegisterClass<LSeparator>();
    URegistrar::RegisterClass<LIconPane>();
}
