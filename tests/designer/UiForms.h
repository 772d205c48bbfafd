#pragma once

#include "base/values/Color.h"
#include "base/values/Font.h"
#include "base/values/Variant.h"
#include "component/SetterRow.h"

#include <QBuffer>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtUiTools/QUiLoader>

namespace tavrin::test {

/// The names of all controls, without namespace.
inline QStringList controlNames()
{
    QStringList names;
    for (const QString& className : publicControls().classNames())
        names << className.section(u'.', 1);
    return names;
}

inline void addControlRows()
{
    QTest::addColumn<QString>("control");
    for (const QString& name : controlNames())
        QTest::newRow(qPrintable(name)) << name;
}

/// A property as a form of Qt's holds it.
inline QString uiProperty(const QString& name, const QString& value)
{
    return QStringLiteral("<property name=\"%1\" stdset=\"0\">%2</property>").arg(name, value);
}

/// A control as the designer saves it: the place stands behind its properties.
inline QString uiControl(const QString& control, const QString& properties,
                         const QString& name = QStringLiteral("it"))
{
    return QStringLiteral(
               "<widget class=\"tavrin::%1\" name=\"%2\">%3<property name=\"geometry\"><rect><x>10</x>"
               "<y>10</y><width>500</width><height>100</height></rect></property></widget>")
        .arg(control, name, properties);
}

inline QByteArray uiForm(const QString& widgets)
{
    return QStringLiteral(
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?><ui version=\"4.0\"><class>Form</class>"
               "<widget class=\"QWidget\" name=\"Form\"><property name=\"geometry\"><rect><x>0</x><y>0</y>"
               "<width>640</width><height>480</height></rect></property>%1</widget></ui>")
        .arg(widgets)
        .toUtf8();
}

/// As an application loads it, with the plugin; pictures are named from the folder.
inline std::unique_ptr<QWidget> loadByQt(QByteArray xml, const QString& folder = {})
{
    QUiLoader loader;
    loader.setWorkingDirectory(folder);
    loader.clearPluginPaths();
    loader.addPluginPath(QStringLiteral(TAVRIN_DESIGNER_PLUGINS "/designer"));
    QBuffer device(&xml);
    device.open(QIODevice::ReadOnly);
    return std::unique_ptr<QWidget>(loader.load(&device));
}

/// A picture's points alone: where it comes from gives it another format and another resolution.
inline QVariant withoutOrigin(const QVariant& value)
{
    if (value.typeId() != QMetaType::QImage)
        return value;
    QImage plain = value.value<QImage>().convertToFormat(QImage::Format_ARGB32);
    plain.setDotsPerMeterX(1000);
    plain.setDotsPerMeterY(1000);
    return plain;
}

/// What a control would save, each property with its value.
inline QByteArray savedState(UserControl& control)
{
    QJsonObject state;
    for (const SavedProperty& property : control.savedProperties()) {
        PropertyBag bag;
        bag.WriteProperty(property.key, withoutOrigin(property.get()), QVariant());
        const QJsonObject one = bag.toJson();
        state.insert(property.key, one.value(property.key));
    }
    return QJsonDocument(state).toJson();
}

/// A saved value that no control begins with, for the bag and for a form of Qt's.
struct OtherValue
{
    QVariant bag;
    QString ui;
};

inline OtherValue otherValue(UserControl& fresh, const SavedProperty& property, const QString& pictureFile)
{
    const QString text = QStringLiteral("Some ") + property.key;
    switch (property.kind) {
    case PropertyKind::Boolean: {
        const bool other = !property.get().toBool();
        return {other, QStringLiteral("<bool>%1</bool>").arg(other ? u"true" : u"false")};
    }
    case PropertyKind::Long:
        return {Weapons, QStringLiteral("<number>%1</number>").arg(Weapons)};
    case PropertyKind::Text:
        return {text, QStringLiteral("<string>%1</string>").arg(text)};
    case PropertyKind::Variant:
        if (fresh.typeName() == QLatin1String("AutoCompleteField"))
            return {12, QStringLiteral("<number>12</number>")};
        return {QStringLiteral("13A"), QStringLiteral("<string>13A</string>")};
    case PropertyKind::Color:
        return {QVariant::fromValue(Color::rgb(0xF0, 0xE0, 0x90)),
                QStringLiteral("<color><red>240</red><green>224</green><blue>144</blue></color>")};
    case PropertyKind::Font: {
        QFont font(QStringLiteral("DejaVu Serif"), 13, QFont::Bold);
        font.setItalic(true);
        return {QVariant::fromValue(std::make_shared<Font>(font)),
                QStringLiteral("<font><family>DejaVu Serif</family><pointsize>13</pointsize>"
                               "<italic>true</italic><bold>true</bold></font>")};
    }
    case PropertyKind::Picture:
        break;
    }
    return {QImage(pictureFile), QStringLiteral("<pixmap>%1</pixmap>").arg(pictureFile)};
}

} // namespace tavrin::test
