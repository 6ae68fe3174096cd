#pragma once

// A Qt Designer file, read element by element from its beginning to its end. Once something in it has been
// refused, nothing more is read.

#include <QByteArray>
#include <QMetaEnum>
#include <QRect>
#include <QVariant>
#include <QXmlStreamReader>
#include <functional>

class QFile;
class QFont;
class QSizePolicy;

class LayoutReader {
  public:
    struct Property {
        QByteArray name;
        QVariant value;
        bool isDynamic = false;  // the object need not have it
        qint64 line = 0;
    };

    // The file must be open, and stay open while it is read. Its outermost element becomes the current one.
    explicit LayoutReader(QFile& file);

    // Calls a function for every element within the current one, which it must read or refuse; then moves
    // past the current one's end.
    void ForEachElement(const std::function<void()>& take);

    // Calls a function for every property within the current element and refuses anything else.
    void ForEachProperty(const std::function<void(const Property&)>& take);

    // The name of the current element, and its attributes; an attribute that it does not have is empty.
    QStringView Name() const { return mXml.name(); }
    QString Attribute(const char* name) const;
    qint64 Line() const { return mXml.lineNumber(); }

    // Each of these moves past the end of the current element, which for the last one is a property.
    void Skip() { mXml.skipCurrentElement(); }
    QString Text() { return mXml.readElementText(); }
    int Number();
    Property ReadProperty();

    // The enumerator of that name, such as "Qt::Horizontal".
    template <typename Enumeration>
    Enumeration Enumerator(const QString& name) {
        bool isKnown = false;
        const int value =
            QMetaEnum::fromType<Enumeration>().keyToValue(name.toLatin1().constData(), &isKnown);
        if (!isKnown) {
            Refuse(QString("\"%1\" is not known").arg(name));
        }
        return isKnown ? static_cast<Enumeration>(value) : Enumeration();
    }

    // Sets the context in which translators find the texts.
    void SetTranslationContext(const QString& context) { mTranslationContext = context.toUtf8(); }

    void Refuse(const QString& why);
    void RefuseElement() { Refuse(QString("the element <%1> is not known").arg(Name())); }

    // Whether the file has been read to its end. Otherwise says on standard error what was refused.
    bool IsComplete() const;

    // Says on standard error what is wrong in a line.
    void Complain(const QString& what, qint64 line) const;

  private:
    QVariant Value();
    QFont Font();
    QSizePolicy SizePolicy();
    QRect Rectangle();

    QXmlStreamReader mXml;
    QByteArray mFileName;
    QByteArray mTranslationContext;
};
