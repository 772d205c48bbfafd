#include "component/HostJson.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>
#include <limits>

namespace tavrin {

namespace {

Error wrongAnswer(const QString& operation, const QString& place, const QString& why)
{
    const QString at = place.isEmpty() ? QString() : QStringLiteral(" at ") + place;
    return Error(QStringLiteral("The host's answer to %1 is wrong%2: %3").arg(operation, at, why),
                 Error::TypeMismatchNumber);
}

} // namespace

void HostJson::refuse(const QString& why) const
{
    throw wrongAnswer(m_operation, m_place, why);
}

HostJson HostJson::part(const QString& step, const QJsonValue& value) const
{
    HostJson part(m_operation, value);
    part.m_place = m_place + step;
    return part;
}

QList<HostJson> HostJson::items() const
{
    if (!m_value.isArray())
        refuse(QStringLiteral("no list"));
    const QJsonArray values = m_value.toArray();
    QList<HostJson> items;
    for (qsizetype i = 0; i < values.size(); ++i)
        items << part(QStringLiteral("[%1]").arg(i), values.at(i));
    return items;
}

HostJson HostJson::member(const char* key) const
{
    if (!m_value.isObject())
        refuse(QStringLiteral("no object"));
    return part(QLatin1Char('.') + QLatin1String(key), m_value[QLatin1String(key)]);
}

QString HostJson::text() const
{
    if (isThere() && !m_value.isString())
        refuse(QStringLiteral("no text"));
    return m_value.toString();
}

bool HostJson::wholeNumber(double least, double most) const
{
    const double number = m_value.toDouble();
    return m_value.isDouble() && std::floor(number) == number && number >= least && number <= most;
}

qint32 HostJson::number() const
{
    if (!wholeNumber(std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max()))
        refuse(QStringLiteral("no whole number of 32 bits"));
    return static_cast<qint32>(m_value.toDouble());
}

bool HostJson::boolean(bool otherwise) const
{
    if (isThere() && !m_value.isBool())
        refuse(QStringLiteral("neither true nor false"));
    return m_value.toBool(otherwise);
}

quint32 HostJson::color() const
{
    if (!wholeNumber(0, std::numeric_limits<quint32>::max()))
        refuse(QStringLiteral("no colour"));
    return static_cast<quint32>(m_value.toDouble());
}

QImage pictureFrom(const QVariant& answer, const QString& operation)
{
    if (answer.typeId() != QMetaType::QImage && !IsEmpty(answer) && !IsNull(answer))
        throw wrongAnswer(operation, {}, QStringLiteral("no picture"));
    return answer.value<QImage>();
}

} // namespace tavrin
