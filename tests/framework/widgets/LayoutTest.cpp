#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
#include <map>

#include "framework/core/LException.h"
#include "framework/widgets/LDialogBox.h"
#include "framework/widgets/LPushButton.h"
#include "framework/widgets/LStaticText.h"
#include "framework/widgets/UModalDialogs.h"
#include "framework/widgets/UQDGlobals.h"
#include "framework/widgets/UResources.h"
#include "tests/framework/widgets/Fixture.h"

namespace {

const std::vector<std::vector<const char*>> kPanesOfState = {
    {"ITX0", "ITX1", "ITX2", "CLOS", "UPDT"}, {"PTX0", "PTX1", "PGRS"}, {"FTX0", "FTX1", "FTX2", "POWR"}};

void showState(SampleApplication& application, std::size_t shown) {
    for (std::size_t state = 0; state < kPanesOfState.size(); ++state) {
        for (const char* name : kPanesOfState[state]) {
            auto& pane = application.pane<LPane>(name);
            state == shown ? pane.Show() : pane.Hide();
        }
    }
    application.window->UpdatePort();
}

std::map<QWidget*, QRect> geometries(const LWindow& window) {
    std::map<QWidget*, QRect> found;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (dynamic_cast<LPane*>(widget) != nullptr) {
            found[widget] = QRect(widget->mapTo(&window, QPoint()), widget->size());
        }
    }
    return found;
}

// Counts how often a window is painted.
class PaintCounter : public QObject {
  public:
    explicit PaintCounter(LWindow& window) { window.installEventFilter(this); }
    int times() const { return times_; }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        times_ += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

  private:
    int times_ = 0;
};

// Multiplies the size of the program's font, as a desktop's setting can.
class FontScale {
  public:
    explicit FontScale(double factor) {
        QFont font = before_;
        font.setPointSizeF(before_.pointSizeF() * factor);
        QApplication::setFont(font);
    }
    ~FontScale() { QApplication::setFont(before_); }
    FontScale(const FontScale&) = delete;
    FontScale& operator=(const FontScale&) = delete;

  private:
    const QFont before_ = QApplication::font();
};

bool isClipped(const QLabel& label) {
    return label.wordWrap()
               ? label.height() < label.heightForWidth(label.width())
               : label.width() < label.sizeHint().width() || label.height() < label.sizeHint().height();
}

}  // namespace

TEST(LayoutTest, FindsPanesByIDOnly) {
    SampleApplication application;
    application.openWindow();
    EXPECT_EQ(application.window->FindPaneByID(FourCharCode("NONE")), nullptr);
    EXPECT_EQ(application.window->FindPaneByID(0), nullptr) << "widgets without an ID are not panes";
    Str255 text = {0};
    EXPECT_THROW(static_cast<void>(UModalDialogs::AskForOneString(&application, 129, 1102, text)),
                 LException);
}

TEST(LayoutTest, NothingMovesOrIsClippedBetweenStates) {
    UQDGlobals::InitializeToolbox();  // without which there is no font to scale
    for (const double factor : {1.0, 1.5}) {
        const FontScale scale(factor);
        QApplication::setLayoutDirection(factor > 1 ? Qt::RightToLeft : Qt::LeftToRight);
        SampleApplication application;
        LWindow& window = application.openWindow();
        QApplication::processEvents();
        PaintCounter painted(window);
        showState(application, 0);
        EXPECT_GT(painted.times(), 0) << "the new state is drawn at once";
        const QSize size = window.size();
        const auto idle = geometries(window);
        for (const char* name : {"MODL", "PCBR", "FWVR", "FWDT", "SRNO", "MFDT", "NFWR"}) {
            application.pane<LStaticText>(name).SetText("Mar 14, 2003", 12);
        }
        for (const std::size_t state : {1U, 2U, 0U}) {
            showState(application, state);
            QApplication::processEvents();
            EXPECT_EQ(window.size(), size) << "state " << state;
            EXPECT_EQ(geometries(window), idle) << "state " << state;
        }
        window.resize(1, 1);
        QApplication::processEvents();
        EXPECT_EQ(window.size(), size) << "the window cannot be made too small for its texts";
        for (QLabel* label : window.findChildren<QLabel*>()) {
            EXPECT_FALSE(isClipped(*label)) << label->objectName().toStdString();
            EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->objectName().toStdString();
            const QString described =
                QAccessible::queryAccessibleInterface(label)->text(QAccessible::Description);
            EXPECT_FALSE(described.contains('<')) << described.toStdString() << " would be read aloud";
        }
        for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
            EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
        }
    }
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST(LayoutTest, FitsASmallScreen) {
    UQDGlobals::InitializeToolbox();  // without which there is no font to scale
    for (const double factor : {2.0, 4.0}) {
        const FontScale scale(factor);
        SampleApplication application;
        LWindow& window = application.openWindow();
        std::vector<const QWidget*> shown = {&window};
        std::string images = "Vorn DX8";
        for (int line = 1; line < 16; ++line) {
            images += "\nVornMX-B, board A: M12 (VMBM12A.xsv)";
        }
        application.SetAboutDetails([&images] { return images; });
        for (const CommandT page : {kCommandAbout, kCommandHelp}) {
            ASSERT_TRUE(window.ObeyCommand(page));
            QApplication::processEvents();
            shown.push_back(QApplication::activeWindow());
        }
        const QRect screen = window.screen()->availableGeometry();
        std::unique_ptr<LDialogBox> alert;
        if (factor < 3) {
            alert = LDialogBox::CreateDialog("alert", 130, &application);
            alert->adjustSize();
            shown.push_back(alert.get());
        }
        for (const QWidget* widget : shown) {
            EXPECT_TRUE(screen.contains(QRect(screen.topLeft(), widget->frameSize()))) << factor;
        }
        const auto* scrolling = window.centralWidget()->findChild<QScrollArea*>();
        EXPECT_TRUE(scrolling == nullptr || factor > 3 || scrolling->horizontalScrollBar()->maximum() == 0);
        EXPECT_FALSE(application.pane<LPushButton>("UPDT").visibleRegion().isEmpty())
            << "buttons never scroll";
        // What does not fit scrolls into view when it gets the focus.
        QApplication::setActiveWindow(&window);
        for (const char* name : {"SRNO", "CRDS"}) {
            auto* const pane = window.findChild<QWidget*>(name);
            pane->setFocus(Qt::ShortcutFocusReason);
            EXPECT_FALSE(pane->visibleRegion().isEmpty()) << name;
        }
        for (const QLabel* label : window.findChildren<QLabel*>()) {
            EXPECT_FALSE(isClipped(*label)) << label->objectName().toStdString();
        }
    }
}

TEST(LayoutTest, ButtonsFollowTheDesktopsOrder) {
    SampleApplication application;
    application.openWindow();
    const auto dialog = LDialogBox::CreateDialog("dialog", 129, &application);
    dialog->show();
    QApplication::processEvents();
    const auto& box = *dialog->findChild<QDialogButtonBox*>();
    EXPECT_EQ(box.button(QDialogButtonBox::Ok)->x() < box.button(QDialogButtonBox::Cancel)->x(),
              application.pane<LPushButton>("UPDT").x() < application.pane<LPushButton>("CLOS").x());
}

TEST(LayoutTest, SecondaryTextFollowsTheThemeAndStaysLegible) {
    SampleApplication application;
    LWindow& window = application.openWindow();
    for (const QColor& button : {QColor(40, 40, 40), QColor(230, 230, 230)}) {
        window.setPalette(QPalette(button));
        QColor faded = window.palette().color(QPalette::Active, QPalette::WindowText);
        faded.setAlphaF(0.7F);
        const QPalette caption = window.findChild<QLabel*>("modelCaption")->palette();
        EXPECT_EQ(caption.color(QPalette::Active, QPalette::WindowText), faded);
        const QPalette popup = window.findChild<QComboBox*>("CRDS")->palette();
        EXPECT_EQ(popup.color(QPalette::Disabled, QPalette::ButtonText), faded)
            << "names the card being written";
    }
}

TEST(LayoutTest, ReadsEveryPropertyOfTheShippedLayouts) {
    SampleApplication application;
    const QStringList layouts = QDir(LAYOUTS).entryList({"*.ui"});
    EXPECT_FALSE(layouts.isEmpty());
    for (const QString& layout : layouts) {
        const QStringList kindAndNumber = layout.chopped(3).split('-');
        ASSERT_EQ(kindAndNumber.size(), 2) << layout.toStdString();
        testing::internal::CaptureStderr();
        const auto root = UResources::LoadLayout(qPrintable(kindAndNumber[0]), kindAndNumber[1].toInt());
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_NE(root, nullptr) << layout.toStdString();
    }
}

TEST(LayoutTest, ReportsUnknownContentWithItsLine) {
    SampleApplication application;
    const QTemporaryDir folder;
    application.UseResources(folder.path().toStdString());
    const auto complaintOf = [&](const char* inside, bool isUsable) {
        QFile file(folder.filePath("window-1.ui"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("<ui version=\"4.0\">\n<widget class=\"LWindow\" name=\"w\">\n") + inside +
                   "</widget></ui>");
        file.close();
        testing::internal::CaptureStderr();
        EXPECT_EQ(LWindow::CreateWindow(1, &application) != nullptr, isUsable) << inside;
        return testing::internal::GetCapturedStderr();
    };
    for (
        const char* property :
        {R"(<property name="colour"><string>red</string></property>)",
         R"(<property name="layoutDirection"><enum>Qt::Sideways</enum></property>)",
         R"(<property name="geometry"><rect><width>9</width></rect></property><addaction name="gone"/>)",
         R"(<widget class="QWidget" name="p"><layout class="QVBoxLayout"><property name="topEdge"><number>1</number></property></layout></widget>)"}) {
        EXPECT_NE(complaintOf(property, true).find("window-1.ui, line 3: "), std::string::npos) << property;
    }
    for (const char* part :
         {R"(<widget class="QLabel" name="l"/>)", R"(<layout class="QFormLayout" name="f"/>)",
          R"(<layout class="QVBoxLayout"/>)", R"(<attribute name="title"/>)",
          R"(<widget class="QWidget" name="p"><layout class="QVBoxLayout" stretch="0,1"/></widget>)",
          R"(<property name="windowTitle"><url/></property>)",
          R"(<property name="windowOpacity"><number>one</number></property>)", R"(<widget class=)"}) {
        EXPECT_NE(complaintOf(part, false).find("window-1.ui, line 3: "), std::string::npos) << part;
    }
}

TEST(LayoutTest, UnusableLayoutGivesAMessageAndNoWindow) {
    SampleApplication application;
    const QTemporaryDir folder;
    application.UseResources(folder.path().toStdString());
    for (const char* layout : {"<ui version=\"4.0\"><widget class=",
                               "<ui version=\"4.0\"><widget class=\"QWidget\" name=\"w\"/></ui>", ""}) {
        QFile file(folder.filePath("window-1.ui"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(layout);
        file.close();
        testing::internal::CaptureStderr();
        EXPECT_EQ(LWindow::CreateWindow(1, &application), nullptr);
        EXPECT_NE(testing::internal::GetCapturedStderr().find("window"), std::string::npos) << layout;
    }
}
