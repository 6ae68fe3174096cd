#include "framework/widgets/MenuBar.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <cstdio>

#include "framework/core/PascalString.h"
#include "framework/widgets/DialogLoop.h"
#include "framework/widgets/LApplication.h"
#include "framework/widgets/LWindow.h"
#include "framework/widgets/UResources.h"

namespace {

constexpr const char* kCommandProperty = "command";

void UpdateStatus(LWindow& window, QAction& action) {
    uint8_t enabled = 0;
    uint8_t usesMark = 0;
    uint16_t mark = 0;
    Str255 name = {0};
    window.GetTarget().FindCommandStatus(action.property(kCommandProperty).toInt(), enabled, usesMark, mark,
                                         name);
    action.setEnabled(enabled != 0);
    action.setCheckable(usesMark != 0);
    action.setChecked(usesMark != 0 && mark != 0);
    if (name[0] != 0) {
        action.setText(QString::fromStdString(TextOfPascal(name)).replace('&', "&&"));
    }
}

void ConnectMenu(LWindow& window, QMenu& menu) {
    for (QAction* action : menu.actions()) {
        if (!action->property(kCommandProperty).isValid()) {
            continue;
        }
        QObject::connect(action, &QAction::triggered, &window, [&window, action] {
            if (!IsBehindDialog(window)) {
                KeepException(
                    [&] { window.GetTarget().ObeyCommand(action->property(kCommandProperty).toInt()); });
            }
        });
        QObject::connect(&menu, &QMenu::aboutToShow, action,
                         [&window, action] { KeepException([&] { UpdateStatus(window, *action); }); });
        // A disabled action would swallow its shortcut although the command may be possible by now.
        QObject::connect(&menu, &QMenu::aboutToHide, action, [action] { action->setEnabled(true); });
    }
}

}  // namespace

void AttachMenuBar(LWindow& window, int32_t layoutID) {
    std::unique_ptr<QWidget> root = UResources::LoadLayout("menubar", layoutID);
    auto* bar = qobject_cast<QMenuBar*>(root.get());
    if (bar == nullptr) {
        if (root != nullptr) {
            std::fprintf(stderr, "The layout of menu bar %d does not describe a QMenuBar\n", layoutID);
        }
        return;
    }
    static_cast<void>(root.release());
    window.setMenuBar(bar);
    for (QMenu* menu : bar->findChildren<QMenu*>()) {
        ConnectMenu(window, *menu);
    }
}
