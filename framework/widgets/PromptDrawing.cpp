#include "framework/widgets/PromptDrawing.h"

#include <dlfcn.h>
#include <xcb/xproto.h>

namespace {

thread_local bool gIsOn = false;

}  // namespace

PromptDrawing::PromptDrawing() : mWasOn(gIsOn) {
    gIsOn = true;
}

PromptDrawing::~PromptDrawing() {
    gIsOn = mWasOn;
}

// Qt asks where the focus is only to learn that the server has got that far, and does not read the answer.
extern "C" xcb_get_input_focus_reply_t* xcb_get_input_focus_reply(xcb_connection_t* connection,
                                                                  xcb_get_input_focus_cookie_t cookie,
                                                                  xcb_generic_error_t** error) {
    if (gIsOn) {
        xcb_discard_reply(connection, cookie.sequence);
        xcb_flush(connection);
        return nullptr;
    }
    using Reply = decltype(&xcb_get_input_focus_reply);
    static const auto ordinary = reinterpret_cast<Reply>(dlsym(RTLD_NEXT, "xcb_get_input_focus_reply"));
    return ordinary(connection, cookie, error);
}
