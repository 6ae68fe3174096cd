#include "app/WindowText.h"

#include <cstring>

#include "framework/widgets/LStaticText.h"
#include "framework/widgets/LWindow.h"

void SetWindowItemText(LWindow* window, PaneIDT paneID, const char* text) {
    if (auto* const pane = dynamic_cast<LStaticText*>(window->FindPaneByID(paneID))) {
        pane->SetText(text, static_cast<int32_t>(std::strlen(text)));
    }
}

void EmphasiseWindowItemText(LWindow* window, PaneIDT paneID, bool isEmphasised) {
    if (auto* const pane = dynamic_cast<LStaticText*>(window->FindPaneByID(paneID))) {
        pane->Emphasise(isEmphasised);
    }
}
