#include "benchmarks/window/ObserverPlugin.h"

#include <unistd.h>

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>

namespace {

constexpr int kLookMilliseconds = 5;

int64_t nanosecondsNow() {
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// The processor time that this process has used.
int64_t workedNanoseconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

long peakKilobytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            long kilobytes = 0;
            status >> kilobytes;
            return kilobytes;
        }
    }
    return 0;
}

QPushButton* shownButton(const QWidget& window, const char* name) {
    auto* const button = window.findChild<QPushButton*>(name);
    return button != nullptr && button->isVisible() && button->isEnabled() ? button : nullptr;
}

class Observer : public QObject {
  public:
    explicit Observer(bool updates) : updates_(updates) { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* const window = qobject_cast<QWindow*>(watched);
        if (event->type() != QEvent::Expose || window == nullptr || !window->isExposed()) {
            return false;
        }
        qApp->removeEventFilter(this);
        QCoreApplication::sendEvent(watched, event);  // in which the window is drawn
        shown_ = nanosecondsNow();
        worked_ = workedNanoseconds();
        if (!updates_) {
            tellAndEnd();
        }
        look();
        return true;
    }

  private:
    [[noreturn]] void tellAndEnd() const {
        std::printf("%jd %jd %jd %ld\n", intmax_t{shown_}, intmax_t{worked_}, intmax_t{update_},
                    peakKilobytes());
        std::fflush(stdout);
        _exit(0);
    }

    // Looks repeatedly for something to click. The timer is set first, because a click can take long.
    void look() {
        QTimer::singleShot(kLookMilliseconds, this, &Observer::look);
        if (auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
            for (QPushButton* const button : dialog->findChildren<QPushButton*>()) {
                if (button->isDefault()) {
                    started_ = workedNanoseconds();
                    button->click();
                    return;
                }
            }
            return;
        }
        for (const QWidget* const window : QApplication::topLevelWidgets()) {
            if (started_ != 0 && shownButton(*window, "POWR") != nullptr) {
                update_ = workedNanoseconds() - started_;
                tellAndEnd();
            }
            const auto* const newFirmware = window->findChild<QLabel*>("NFWR");
            if (started_ == 0 && newFirmware != nullptr && !newFirmware->text().isEmpty()) {
                if (QPushButton* const update = shownButton(*window, "UPDT")) {
                    update->click();
                    return;
                }
            }
        }
    }

    bool updates_;
    int64_t shown_ = 0;
    int64_t worked_ = 0;
    int64_t started_ = 0;
    int64_t update_ = 0;
};

}  // namespace

QObject* ObserverPlugin::create(const QString& key, const QString& /*settings*/) {
    return new Observer(key == "wholeupdate");
}
