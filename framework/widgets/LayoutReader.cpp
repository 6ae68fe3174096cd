#include "framework/widgets/LayoutReader.h"

#include <QCoreApplication>
#include <QFile>
#include <QFont>
#include <QSizePolicy>
#include <algorithm>
#include <cstdio>

namespace {

constexpr QStringView kAttributes[] = {u"name",
                                       u"class",
                                       u"row",
                                       u"column",
                                       u"stdset",
                                       u"colspan",
                                       u"rowspan",
                                       u"hsizetype",
                                       u"vsizetype",
                                       u"version",
                                       u"columnstretch",
                                       u"rowstretch",
                                       u"rowminimumheight",
                                       u"columnminimumwidth"};

}  // namespace

LayoutReader::LayoutReader(QFile& file) : mXml(&file), mFileName(file.fileName().toLocal8Bit()) {
    mXml.readNextStartElement();
}

void LayoutReader::ForEachElement(const std::function<void()>& take) {
    while (mXml.readNextStartElement()) {
        for (const QXmlStreamAttribute& attribute : mXml.attributes()) {
            if (std::ranges::find(kAttributes, attribute.name()) == std::end(kAttributes)) {
                Refuse(QString("the attribute \"%1\" is not known").arg(attribute.name()));
            }
        }
        take();
    }
}

void LayoutReader::ForEachProperty(const std::function<void(const Property&)>& take) {
    ForEachElement([&] {
        if (Name() == u"property") {
            take(ReadProperty());
        } else {
            RefuseElement();
        }
    });
}

QString LayoutReader::Attribute(const char* name) const {
    return mXml.attributes().value(QLatin1String(name)).toString();
}

int LayoutReader::Number() {
    const QString text = Text();
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber) {
        Refuse(QString("\"%1\" is not a number").arg(text));
    }
    return number;
}

LayoutReader::Property LayoutReader::ReadProperty() {
    Property property{.name = Attribute("name").toLatin1(),
                      .value = {},
                      .isDynamic = Attribute("stdset") == QLatin1String("0"),
                      .line = mXml.lineNumber()};
    ForEachElement([&] { property.value = Value(); });
    return property;
}

void LayoutReader::Refuse(const QString& why) {
    if (!mXml.hasError()) {
        mXml.raiseError(why);
    }
}

bool LayoutReader::IsComplete() const {
    if (mXml.hasError()) {
        Complain(mXml.errorString(), mXml.lineNumber());
    }
    return !mXml.hasError();
}

void LayoutReader::Complain(const QString& what, qint64 line) const {
    std::fprintf(stderr, "%s, line %lld: %s\n", mFileName.constData(), line, qPrintable(what));
}

QVariant LayoutReader::Value() {
    const QStringView type = Name();
    if (type == u"string") {
        const QByteArray text = Text().toUtf8();
        return QCoreApplication::translate(mTranslationContext.constData(), text.constData());
    }
    if (type == u"number") {
        return Number();
    }
    if (type == u"bool") {
        return Text() == QLatin1String("true");
    }
    // The property itself interprets the names of enumerators.
    if (type == u"enum" || type == u"set" || type == u"cstring") {
        return Text();
    }
    if (type == u"font") {
        return Font();
    }
    if (type == u"sizepolicy") {
        return QVariant::fromValue(SizePolicy());
    }
    if (type == u"size") {
        return Rectangle().size();
    }
    if (type == u"rect") {
        return Rectangle();
    }
    RefuseElement();
    return {};
}

QFont LayoutReader::Font() {
    QFont font;
    ForEachElement([&] {
        if (Name() == u"bold") {
            font.setBold(Text() == QLatin1String("true"));
        } else {
            RefuseElement();
        }
    });
    return font;
}

QSizePolicy LayoutReader::SizePolicy() {
    QSizePolicy policy(Enumerator<QSizePolicy::Policy>(Attribute("hsizetype")),
                       Enumerator<QSizePolicy::Policy>(Attribute("vsizetype")));
    ForEachElement([&] {
        if (Name() == u"horstretch") {
            policy.setHorizontalStretch(Number());
        } else if (Name() == u"verstretch") {
            policy.setVerticalStretch(Number());
        } else {
            RefuseElement();
        }
    });
    return policy;
}

QRect LayoutReader::Rectangle() {
    QRect rectangle;
    ForEachElement([&] {
        if (Name() == u"x") {
            rectangle.moveLeft(Number());
        } else if (Name() == u"y") {
            rectangle.moveTop(Number());
        } else if (Name() == u"width") {
            rectangle.setWidth(Number());
        } else if (Name() == u"height") {
            rectangle.setHeight(Number());
        } else {
            RefuseElement();
        }
    });
    return rectangle;
}
