#include "framework/widgets/LayoutLoader.h"

#include <QAction>
#include <QFile>
#include <QHash>
#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QMetaProperty>

#include "framework/widgets/LayoutMeasures.h"

std::unique_ptr<QWidget> LayoutLoader::Load(QFile& file) {
    LayoutLoader loader(file);
    loader.ReadForm();
    if (!loader.mReader.IsComplete()) {
        return nullptr;
    }
    loader.JoinBuddies();
    loader.AddActions();
    return std::move(loader.mRoot);
}

void LayoutLoader::ReadForm() {
    mReader.ForEachElement([&] {
        const QStringView part = mReader.Name();
        if (part == u"class") {
            mReader.SetTranslationContext(mReader.Text());
        } else if (part == u"widget" && mRoot == nullptr) {
            ReadWidget(nullptr);
        } else if (part == u"tabstops") {
            ReadTabStops();
        } else if (part == u"connections") {
            mReader.ForEachElement([&] { ReadConnection(); });
        } else if (part == u"customwidgets" || part == u"resources") {
            mReader.Skip();  // for Qt Designer, which does not know the class registry
        } else {
            mReader.RefuseElement();
        }
    });
    if (mRoot == nullptr) {
        mReader.Refuse("there is no widget");
    }
}

QWidget* LayoutLoader::ReadWidget(QWidget* parent) {
    const QString className = mReader.Attribute("class");
    QWidget* const widget = CreateLayoutWidget(className, parent);
    if (widget == nullptr) {
        mReader.Refuse(QString("the class %1 is not known").arg(className));
        return nullptr;
    }
    if (parent == nullptr) {
        mRoot.reset(widget);
    }
    widget->setObjectName(mReader.Attribute("name"));
    mReader.ForEachElement([&] { ReadPart(*widget); });
    return widget;
}

void LayoutLoader::ReadPart(QWidget& widget) {
    const QStringView part = mReader.Name();
    if (part == u"property") {
        ReadWidgetProperty(widget);
    } else if (part == u"widget") {
        if (QWidget* const child = ReadWidget(&widget)) {
            PutInto(widget, child);
        }
    } else if (part == u"layout") {
        ReadLayout(widget, nullptr);
    } else if (part == u"action") {
        ReadAction(widget);
    } else if (part == u"addaction") {
        mActions.push_back({&widget, mReader.Attribute("name"), mReader.Line()});
        mReader.Skip();
    } else {
        mReader.RefuseElement();
    }
}

void LayoutLoader::ReadWidgetProperty(QWidget& widget) {
    const LayoutReader::Property property = mReader.ReadProperty();
    if (qobject_cast<QLabel*>(&widget) != nullptr && property.name == "buddy") {
        mBuddies.push_back({&widget, property.value.toString(), property.line});
    } else if (&widget == mRoot.get() && property.name == "geometry") {
        widget.resize(property.value.toRect().size());  // the layout does not say where it is shown
    } else {
        SetProperty(widget, property);
    }
}

void LayoutLoader::ReadAction(QWidget& owner) {
    auto* const action = new QAction(&owner);
    action->setObjectName(mReader.Attribute("name"));
    mReader.ForEachProperty([&](const auto& property) { SetProperty(*action, property); });
}

void LayoutLoader::ReadLayout(QWidget& owner, const LayoutPlace* place) {
    if (place == nullptr && owner.layout() != nullptr) {
        mReader.Refuse("its widget has a layout already");
        return;
    }
    const QString className = mReader.Attribute("class");
    QLayout* const layout = CreateLayout(className);
    if (layout == nullptr) {
        mReader.Refuse(QString("the class %1 is not known").arg(className));
        return;
    }
    layout->setObjectName(mReader.Attribute("name"));
    if (place != nullptr) {
        place->Put(layout);
    } else {
        owner.setLayout(layout);
    }
    ShareRoom(*layout, mReader);
    mReader.ForEachElement([&] {
        if (mReader.Name() == u"property") {
            ReadLayoutProperty(*layout);
        } else if (mReader.Name() == u"item") {
            ReadItem(owner, *layout);
        } else {
            mReader.RefuseElement();
        }
    });
}

void LayoutLoader::ReadLayoutProperty(QLayout& layout) {
    const LayoutReader::Property property = mReader.ReadProperty();
    if (!SetMeasure(layout, property.name, property.value.toInt())) {
        SetProperty(layout, property);
    }
}

void LayoutLoader::ReadItem(QWidget& owner, QLayout& layout) {
    const auto number = [this](const char* attribute, int absent) {
        const QString text = mReader.Attribute(attribute);
        return text.isEmpty() ? absent : text.toInt();
    };
    const LayoutPlace place{.layout = layout,
                            .row = number("row", 0),
                            .column = number("column", 0),
                            .rows = number("rowspan", 1),
                            .columns = number("colspan", 1)};
    mReader.ForEachElement([&] {
        if (mReader.Name() == u"widget") {
            if (QWidget* const widget = ReadWidget(&owner)) {
                place.Put(widget);
            }
        } else if (mReader.Name() == u"layout") {
            ReadLayout(owner, &place);
        } else if (mReader.Name() == u"spacer") {
            ReadSpacer(place);
        } else {
            mReader.RefuseElement();
        }
    });
}

void LayoutLoader::ReadSpacer(const LayoutPlace& place) {
    auto orientation = Qt::Horizontal;
    auto policy = QSizePolicy::Expanding;
    QSize size;
    mReader.ForEachProperty([&](const LayoutReader::Property& property) {
        if (property.name == "orientation") {
            orientation = mReader.Enumerator<Qt::Orientation>(property.value.toString());
        } else if (property.name == "sizeType") {
            policy = mReader.Enumerator<QSizePolicy::Policy>(property.value.toString());
        } else if (property.name == "sizeHint") {
            size = property.value.toSize();
        } else {
            mReader.Complain("a spacer has no property \"" + property.name + '"', property.line);
        }
    });
    const bool isHorizontal = orientation == Qt::Horizontal;
    place.Put(new QSpacerItem(size.width(), size.height(), isHorizontal ? policy : QSizePolicy::Minimum,
                              isHorizontal ? QSizePolicy::Minimum : policy));
}

void LayoutLoader::ReadTabStops() {
    QWidget* last = nullptr;
    mReader.ForEachElement([&] {
        QWidget* const next = Find(mReader.Text(), mReader.Line());
        if (last != nullptr && next != nullptr) {
            QWidget::setTabOrder(last, next);
        }
        last = next != nullptr ? next : last;
    });
}

void LayoutLoader::ReadConnection() {
    QHash<QString, QString> parts;
    mReader.ForEachElement([&] {
        const QString part = mReader.Name().toString();
        if (part == "hints") {
            mReader.Skip();  // where Qt Designer draws it
        } else {
            parts[part] = mReader.Text();
        }
    });
    const qint64 line = mReader.Line();
    QWidget* const sender = Find(parts["sender"], line);
    QWidget* const receiver = Find(parts["receiver"], line);
    // The digits are how Qt tells signals from slots.
    if (sender == nullptr || receiver == nullptr ||
        !QObject::connect(sender, ('2' + parts["signal"]).toLatin1(), receiver,
                          ('1' + parts["slot"]).toLatin1())) {
        mReader.Refuse("the connection cannot be made");
    }
}

void LayoutLoader::JoinBuddies() const {
    for (const Need& need : mBuddies) {
        static_cast<QLabel*>(need.widget)->setBuddy(Find(need.name, need.line));
    }
}

void LayoutLoader::AddActions() const {
    for (const Need& need : mActions) {
        if (auto* const action = mRoot->findChild<QAction*>(need.name)) {
            need.widget->addAction(action);
        } else if (const auto* const menu = qobject_cast<QMenu*>(Find(need.name, need.line))) {
            need.widget->addAction(menu->menuAction());
        }
    }
}

void LayoutLoader::SetProperty(QObject& object, const LayoutReader::Property& property) const {
    const QMetaObject& type = *object.metaObject();
    const int index = type.indexOfProperty(property.name.constData());
    if (index < 0 && property.isDynamic) {
        object.setProperty(property.name.constData(), property.value);
    } else if (index < 0 || !type.property(index).write(&object, property.value)) {
        mReader.Complain(
            "\"" + property.name + "\" is not a property of this object, or cannot have this value",
            property.line);
    }
}

QWidget* LayoutLoader::Find(const QString& name, qint64 line) const {
    if (mRoot == nullptr || mRoot->objectName() == name) {
        return mRoot.get();
    }
    auto* const widget = mRoot->findChild<QWidget*>(name);
    if (widget == nullptr) {
        mReader.Complain("there is no \"" + name + '"', line);
    }
    return widget;
}
