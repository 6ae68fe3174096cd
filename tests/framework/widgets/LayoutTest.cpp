#include <QAbstractButton>
#include <QFile>
#include <QLabel>
#include <QTemporaryDir>
#include <map>

#include "framework/core/LBroadcaster.h"
#include "framework/core/LException.h"
#include "framework/widgets/LControl.h"
#include "framework/widgets/LPopupButton.h"
#include "framework/widgets/LProgressBar.h"
#include "framework/widgets/LStaticText.h"
#include "framework/widgets/UModalDialogs.h"
#include "framework/widgets/UResources.h"
#include "tests/framework/widgets/Fixture.h"

namespace {

const std::vector<std::vector<const char*>> kPanesOfState = {
    {"ITX0", "ITX1", "ITX2", "CLOS", "UPDT"}, {"PTX0", "PTX1", "PGRS"}, {"FTX0", "FTX1", "FTX2", "POWR"}};
const std::vector<const char*> kInformationPanes = {"MODL", "PCBR", "FWVR", "FWDT", "SRNO", "MFDT", "NFWR"};

void showState(SampleApplication& application, std::size_t shown) {
    for (std::size_t state = 0; state < kPanesOfState.size(); ++state) {
        for (const char* name : kPanesOfState[state]) {
            auto& pane = application.pane<LPane>(name);
            state == shown ? pane.Show() : pane.Hide();
            EXPECT_EQ(pane.IsVisible(), state == shown) << name;
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

bool isClipped(const QLabel& label) {
    return label.wordWrap()
               ? label.height() < label.heightForWidth(label.width())
               : label.width() < label.sizeHint().width() || label.height() < label.sizeHint().height();
}

class LayoutAtFontSize : public testing::TestWithParam<int> {
  protected:
    LayoutAtFontSize() : mBefore(QApplication::font()) {
        QFont font = mBefore;
        font.setPointSizeF(font.pointSizeF() * GetParam());
        QApplication::setFont(font);
    }
    ~LayoutAtFontSize() override { QApplication::setFont(mBefore); }

    SampleApplication mApplication;

  private:
    QFont mBefore;
};

// Writes one layout and looks for layouts there from now on.
void useLayout(const QTemporaryDir& folder, const char* name, const char* content) {
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    UResources::UseFolder(folder.path().toStdString());
}

}  // namespace

TEST(Layout, WindowHoldsEveryPaneWithItsMessage) {
    SampleApplication application;
    application.openWindow();
    for (const char* name : {"CRDS", "CLOS", "UPDT", "POWR"}) {
        EXPECT_NO_THROW(application.pane<LBroadcaster>(name));
        EXPECT_EQ(application.pane<LControl>(name).GetValueMessage(), CodeFromName(name));
    }
    for (const char* name : {"ITX0", "ITX1", "ITX2", "PTX0", "PTX1", "FTX0", "FTX1", "FTX2"}) {
        EXPECT_FALSE(application.pane<LStaticText>(name).text().isEmpty()) << name;
    }
    for (const char* name : kInformationPanes) {
        EXPECT_TRUE(application.pane<LStaticText>(name).text().isEmpty()) << name;
    }
    auto& bar = application.pane<LProgressBar>("PGRS");
    for (const auto& [value, shown] : {std::pair{0, 0}, {700, 700}, {1001, 1000}, {-1, 0}}) {
        bar.SetValue(value);
        EXPECT_EQ(bar.GetValue(), shown);
    }
    EXPECT_NO_THROW(application.pane<LPopupButton>("CRDS"));
    EXPECT_EQ(application.window->FindPaneByID(FourCharCode("NONE")), nullptr);
    EXPECT_EQ(application.window->FindPaneByID(0), nullptr) << "widgets without an ID are not panes";
}

TEST(Layout, TextIsShownCharacterForCharacter) {
    SampleApplication application;
    application.openWindow();
    auto& text = application.pane<LStaticText>("MODL");
    text.SetText("<b>M\xC3\xA4rz</b> & 12 left out", 17);
    EXPECT_EQ(text.text().toStdString(), "<b>M\xC3\xA4rz</b> & 12");
    EXPECT_EQ(text.textFormat(), Qt::PlainText);
    text.SetText(nullptr, 0);
    EXPECT_TRUE(text.text().isEmpty());
}

TEST_P(LayoutAtFontSize, NothingMovesBetweenTheStatesNorIsCutOff) {
    LWindow& window = mApplication.openWindow();
    QApplication::processEvents();
    showState(mApplication, 0);
    const QSize size = window.size();
    const auto idle = geometries(window);
    for (const char* name : kInformationPanes) {
        mApplication.pane<LStaticText>(name).SetText("Mar 14, 2003", 12);
    }
    for (const std::size_t state : {1U, 2U, 0U}) {
        showState(mApplication, state);
        QApplication::processEvents();
        EXPECT_EQ(window.size(), size) << "state " << state;
        EXPECT_EQ(geometries(window), idle) << "state " << state;
    }
    window.resize(1, 1);
    QApplication::processEvents();
    EXPECT_EQ(window.size(), size) << "the window cannot be made too small for its texts";
    for (const QLabel* label : window.findChildren<QLabel*>()) {
        EXPECT_FALSE(isClipped(*label)) << label->objectName().toStdString();
    }
    for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
        EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(OneAndTwoTimes, LayoutAtFontSize, testing::Values(1, 2));

TEST(Layout, UnusableLayoutsAreToldOfAndYieldNoWindow) {
    SampleApplication application;
    const QTemporaryDir folder;
    const std::pair<const char*, const char*> cases[] = {
        {"window-1.ui", "<ui version=\"4.0\"><widget class="},
        {"window-2.ui", "<ui version=\"4.0\"><widget class=\"QWidget\" name=\"w\"/></ui>"},
        {"window-3.ui", ""},
    };
    for (const auto& [name, content] : cases) {
        useLayout(folder, name, content);
        testing::internal::CaptureStderr();
        EXPECT_EQ(LWindow::CreateWindow(name[7] - '0', &application), nullptr);
        EXPECT_NE(testing::internal::GetCapturedStderr().find("window"), std::string::npos) << name;
    }
    testing::internal::CaptureStderr();
    EXPECT_EQ(LWindow::CreateWindow(4, &application), nullptr);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("window-4.ui"), std::string::npos);
}

TEST(Layout, ClassesThatNobodyRegisteredAreNoPanes) {
    SampleApplication application;
    const QTemporaryDir folder;
    useLayout(folder, "window-1.ui",
              "<ui version=\"4.0\"><widget class=\"LWindow\" name=\"w\"><widget class=\"QWidget\" name=\"c\">"
              "<widget class=\"LUnheardOf\" name=\"MODL\"/></widget></widget><customwidgets><customwidget>"
              "<class>LUnheardOf</class><extends>QLabel</extends></customwidget></customwidgets></ui>");
    LWindow* window = LWindow::CreateWindow(1, &application);
    ASSERT_NE(window, nullptr) << "a missing menu bar is no reason to have no window";
    EXPECT_NE(window->findChild<QLabel*>("MODL"), nullptr);
    EXPECT_EQ(window->FindPaneByID(FourCharCode("MODL")), nullptr);
}

TEST(Layout, DialogWithoutItsEditFieldThrows) {
    SampleApplication application;
    Str255 text = {0};
    try {
        UModalDialogs::AskForOneString(&application, 129, 1102, text);
        FAIL();
    } catch (const LException& exception) {
        EXPECT_EQ(exception.GetErrorCode(), LException::kNilPointer);
    }
}
