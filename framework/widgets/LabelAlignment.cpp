#include "framework/widgets/LabelAlignment.h"

#include <QLabel>
#include <QStyle>

void AlignWithLayout(QLabel& label) {
    if (!label.wordWrap()) {
        label.setAlignment(QStyle::visualAlignment(label.layoutDirection(), label.alignment()) |
                           Qt::AlignAbsolute);
    }
}
