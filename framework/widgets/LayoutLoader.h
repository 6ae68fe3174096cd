#pragma once

// Builds the widgets that a Qt Designer file describes.
//
// Qt's own loader knows every class in Qt and needs libraries that the program does not use otherwise, which
// would take much of its time to start. This one knows what the layouts here use and refuses the rest.

#include <QString>
#include <memory>
#include <vector>

#include "framework/widgets/LayoutParts.h"
#include "framework/widgets/LayoutReader.h"

class QFile;
class QLayout;
class QWidget;

class LayoutLoader {
  public:
    // Builds the widgets in an open file, each with the class registry if that knows its class. Null if
    // anything is unknown or malformed, except a property that the object does not have: that is left out.
    // Standard error names the line in both cases.
    static std::unique_ptr<QWidget> Load(QFile& file);

  private:
    // A widget that needs what the file may describe further down: a label's buddy, or a menu's action.
    struct Need {
        QWidget* widget;
        QString name;
        qint64 line;
    };

    explicit LayoutLoader(QFile& file) : mReader(file) {}

    void ReadForm();
    QWidget* ReadWidget(QWidget* parent);
    void ReadPart(QWidget& widget);
    void ReadWidgetProperty(QWidget& widget);
    void ReadAction(QWidget& owner);
    void ReadLayout(QWidget& owner, const LayoutPlace* place);
    void ReadLayoutProperty(QLayout& layout);
    void ReadItem(QWidget& owner, QLayout& layout);
    void ReadSpacer(const LayoutPlace& place);
    void ReadTabStops();
    void ReadConnection();
    void JoinBuddies() const;
    void AddActions() const;

    void SetProperty(QObject& object, const LayoutReader::Property& property) const;
    // Null, with a complaint, if there is none.
    QWidget* Find(const QString& name, qint64 line) const;

    LayoutReader mReader;
    std::unique_ptr<QWidget> mRoot;
    std::vector<Need> mBuddies;
    std::vector<Need> mActions;
};
