#pragma once

#include <QImage>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QVariant>

#include <utility>

namespace tavrin {

/// A host's answer in JSON, or a part of it, which knows where it stands. The functions that read it raise
/// error 13 for a value of another type, as in "The host's answer to HostServices.GetTableValues is wrong at
/// [1].Value: no whole number of 32 bits".
class HostJson
{
public:
    /// `operation` is the one that was asked.
    HostJson(QString operation, QJsonValue value)
        : m_operation(std::move(operation))
        , m_value(std::move(value))
    {
    }

    /// Neither left out nor null.
    bool isThere() const { return !m_value.isUndefined() && !m_value.isNull(); }
    bool isList() const { return m_value.isArray(); }
    /// Raises that the value is wrong, and why.
    [[noreturn]] void refuse(const QString& why) const;

    QList<HostJson> items() const;
    HostJson member(const char* key) const;
    /// "" for one that is not there.
    QString text() const;
    qint32 number() const;
    /// `otherwise` for one that is not there.
    bool boolean(bool otherwise) const;
    quint32 color() const;

private:
    HostJson part(const QString& step, const QJsonValue& value) const;
    bool wholeNumber(double least, double most) const;

    QString m_operation;
    QString m_place; // as in "[1].Value"
    QJsonValue m_value;
};

/// The picture that a host has answered; a null one for Empty and Null. Raises error 13 for anything else.
QImage pictureFrom(const QVariant& answer, const QString& operation);

} // namespace tavrin
