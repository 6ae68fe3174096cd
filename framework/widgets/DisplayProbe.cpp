#include "framework/widgets/DisplayProbe.h"

#include <poll.h>
#include <sys/socket.h>
#include <wayland-client.h>
#include <xcb/xcbext.h>

#include <QGuiApplication>
#include <cstdlib>

namespace {

bool HasHungUp(int descriptor) {
    struct pollfd socket = {descriptor, POLLRDHUP, 0};
    return poll(&socket, 1, 0) > 0;
}

class X11Probe : public DisplayProbe {
  public:
    X11Probe(xcb_connection_t* own, xcb_connection_t* window) : mOwn(own), mWindow(window) {}
    ~X11Probe() override { xcb_disconnect(mOwn); }

    bool IsGone() override {
        // The server can close one connection and keep running.
        return xcb_connection_has_error(mOwn) != 0 || xcb_connection_has_error(mWindow) != 0 ||
               HasHungUp(xcb_get_file_descriptor(mWindow));
    }

    void Ask() override {
        mQuestion = xcb_get_input_focus(mOwn).sequence;
        xcb_flush(mOwn);
    }

    bool IsAnswered() override {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        const bool isAnswered =
            xcb_poll_for_reply(mOwn, mQuestion, &reply, &error) != 0 && xcb_connection_has_error(mOwn) == 0;
        std::free(reply);
        std::free(error);
        return isAnswered;
    }

    bool CanBreakOff() override { return true; }

    void BreakOff() override { shutdown(xcb_get_file_descriptor(mWindow), SHUT_RDWR); }

  protected:
    int Descriptor() override { return xcb_get_file_descriptor(mOwn); }

  private:
    xcb_connection_t* mOwn;
    xcb_connection_t* mWindow;
    unsigned int mQuestion = 0;
};

class WaylandProbe : public DisplayProbe {
  public:
    explicit WaylandProbe(wl_display* own) : mOwn(own) {}
    ~WaylandProbe() override { wl_display_disconnect(mOwn); }

    bool IsGone() override { return wl_display_get_error(mOwn) != 0 || HasHungUp(Descriptor()); }

    void Ask() override {
        static constexpr wl_callback_listener kListener = {[](void* probe, wl_callback* callback, uint32_t) {
            wl_callback_destroy(callback);
            static_cast<WaylandProbe*>(probe)->mIsAnswered = true;
        }};
        mIsAnswered = false;
        wl_callback_add_listener(wl_display_sync(mOwn), &kListener, this);
        wl_display_flush(mOwn);
    }

    bool IsAnswered() override {
        if (wl_display_prepare_read(mOwn) == 0) {
            struct pollfd socket = {Descriptor(), POLLIN, 0};
            if (poll(&socket, 1, 0) > 0) {
                wl_display_read_events(mOwn);
            } else {
                wl_display_cancel_read(mOwn);
            }
        }
        wl_display_dispatch_pending(mOwn);
        return mIsAnswered;
    }

  protected:
    int Descriptor() override { return wl_display_get_fd(mOwn); }

  private:
    wl_display* mOwn;
    bool mIsAnswered = false;
};

std::unique_ptr<DisplayProbe> CreateX11Probe(xcb_connection_t* window) {
    xcb_connection_t* const own = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(own) != 0) {
        xcb_disconnect(own);
        return nullptr;
    }
    return std::make_unique<X11Probe>(own, window);
}

}  // namespace

std::unique_ptr<DisplayProbe> DisplayProbe::Create() {
    if (const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        return CreateX11Probe(x11->connection());
    }
    if (QGuiApplication::platformName().startsWith("wayland")) {
        if (wl_display* const own = wl_display_connect(nullptr)) {
            return std::make_unique<WaylandProbe>(own);
        }
    }
    return nullptr;
}

void DisplayProbe::Wait(int milliseconds) {
    struct pollfd socket = {Descriptor(), POLLIN, 0};
    poll(&socket, 1, milliseconds);
}
