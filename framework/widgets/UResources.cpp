#include "framework/widgets/UResources.h"

#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>

#include "framework/widgets/LApplication.h"
#include "framework/widgets/LPane.h"
#include "framework/widgets/LayoutLoader.h"

namespace {

std::filesystem::path Folder() {
    const LApplication* application = LApplication::Current();
    return application != nullptr ? application->Resources() : std::filesystem::path();
}

void FinishPane(QWidget* widget) {
    if (auto* pane = dynamic_cast<LPane*>(widget)) {
        pane->FinishCreate();
    }
}

QIcon LoadIcon(const std::filesystem::path& folder) {
    QIcon icon;
    for (const int size : {16, 32, 48, 128}) {
        const std::string name = "icon-" + std::to_string(size) + ".png";
        icon.addFile(QString::fromStdString((folder / name).string()), QSize(size, size));
    }
    return icon;
}

// Waits for the first window to be drawn, and is gone then.
class IconOfDrawnWindow : public QObject {
  public:
    IconOfDrawnWindow(std::filesystem::path folder, QObject* parent)
        : QObject(parent), mFolder(std::move(folder)) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* const window = qobject_cast<QWindow*>(watched);
        if (event->type() == QEvent::Expose && window != nullptr && window->isExposed()) {
            qApp->removeEventFilter(this);
            deleteLater();
            // Later, because the window is drawn in this event.
            QTimer::singleShot(0, qApp,
                               [folder = mFolder] { QGuiApplication::setWindowIcon(LoadIcon(folder)); });
        }
        return false;
    }

  private:
    const std::filesystem::path mFolder;
};

}  // namespace

void UResources::UseIcon() {
    qApp->installEventFilter(new IconOfDrawnWindow(Folder(), qApp));
}

std::unique_ptr<QWidget> UResources::LoadLayout(const char* kind, int32_t id) {
    const std::string name = std::string(kind) + "-" + std::to_string(id) + ".ui";
    const std::filesystem::path folder = Folder();
    if (folder.empty()) {
        std::fprintf(stderr, "Cannot load the layout %s: no resource folder has been named\n", name.c_str());
        return nullptr;
    }
    QFile file(QString::fromStdString((folder / name).string()));
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "Cannot open the layout %s: %s\n", qPrintable(file.fileName()),
                     qPrintable(file.errorString()));
        return nullptr;
    }
    std::unique_ptr<QWidget> root = LayoutLoader::Load(file);
    if (root == nullptr) {
        std::fprintf(stderr, "Cannot use the layout %s\n", qPrintable(file.fileName()));
        return nullptr;
    }
    FinishPane(root.get());
    for (QWidget* widget : root->findChildren<QWidget*>()) {
        FinishPane(widget);
    }
    return root;
}
