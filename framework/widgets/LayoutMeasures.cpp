#include "framework/widgets/LayoutMeasures.h"

#include <QGridLayout>

#include "framework/widgets/LayoutReader.h"

namespace {

constexpr struct {
    const char* attribute;
    void (QGridLayout::*set)(int index, int value);
} kGridAttributes[] = {{"columnstretch", &QGridLayout::setColumnStretch},
                       {"rowstretch", &QGridLayout::setRowStretch},
                       {"columnminimumwidth", &QGridLayout::setColumnMinimumWidth},
                       {"rowminimumheight", &QGridLayout::setRowMinimumHeight}};

constexpr struct {
    const char* property;
    void (QMargins::*set)(int pixels);
} kMargins[] = {{"leftMargin", &QMargins::setLeft},
                {"topMargin", &QMargins::setTop},
                {"rightMargin", &QMargins::setRight},
                {"bottomMargin", &QMargins::setBottom}};

constexpr struct {
    const char* property;
    void (QGridLayout::*set)(int pixels);
} kGridSpacings[] = {{"horizontalSpacing", &QGridLayout::setHorizontalSpacing},
                     {"verticalSpacing", &QGridLayout::setVerticalSpacing}};

}  // namespace

bool SetMeasure(QLayout& layout, const QByteArray& property, int pixels) {
    for (const auto& side : kMargins) {
        if (property == side.property) {
            QMargins margins = layout.contentsMargins();
            (margins.*side.set)(pixels);
            layout.setContentsMargins(margins);
            return true;
        }
    }
    auto* const grid = qobject_cast<QGridLayout*>(&layout);
    for (const auto& direction : kGridSpacings) {
        if (grid != nullptr && property == direction.property) {
            (grid->*direction.set)(pixels);
            return true;
        }
    }
    return false;
}

void ShareRoom(QLayout& layout, const LayoutReader& reader) {
    auto* const grid = qobject_cast<QGridLayout*>(&layout);
    for (const auto& known : kGridAttributes) {
        const QString values = reader.Attribute(known.attribute);
        if (grid == nullptr || values.isEmpty()) {
            continue;
        }
        int index = 0;
        for (const QString& value : values.split(',')) {
            (grid->*known.set)(index++, value.toInt());
        }
    }
}
