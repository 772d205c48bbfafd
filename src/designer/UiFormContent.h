#pragma once

#include "designer/UiFormProblems.h"

#include <QByteArray>
#include <QDir>
#include <QHash>
#include <QStringList>

class QXmlStreamReader;

namespace tavrin {

/// What the class of a control begins with in a form.
inline constexpr QLatin1String ControlNamespace("tavrin::");

/// What a form's file holds. Qt's loader puts each value into whatever property has its name, and converts
/// as it can: a text becomes yes or no, a font becomes Null. So what a control cannot take goes before.
class UiFormContent
{
public:
    /// `folder` is the one from which the form's pictures are named.
    UiFormContent(const QByteArray& content, const QDir& folder);

    /// What keeps it from being read at all; "" for nothing. Qt's loader prints it besides.
    QString fault() const;
    /// The content without what a control cannot take and without pictures that cannot be read, each of which
    /// is told.
    QByteArray forLoader(UiFormProblems& problems) const;
    /// What the form itself says that a class of its own extends, and what that extends, and so on.
    QStringList basesOf(const QString& className) const;

private:
    struct Property;
    void readBases();
    /// The library's class that a widget is or extends, without namespace; "" for any other.
    QString controlOf(const QString& className) const;
    Property readProperty(QXmlStreamReader& xml) const;
    /// What is wrong with it on a control, or on any other widget; "" for nothing.
    QString problemOf(const QString& control, const Property& property) const;
    QString pictureProblem(const Property& property) const;

    QByteArray m_content;
    QDir m_folder;
    QHash<QString, QString> m_bases;
};

} // namespace tavrin
