#include "component/HostPort.h"

#include "base/values/Variant.h"
#include "component/Values.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>

namespace tavrin {

namespace {

QString nameOf(const char* service, const char* operation)
{
    return QStringLiteral("%1.%2").arg(QString::fromLatin1(service), QString::fromLatin1(operation));
}

} // namespace

std::optional<QVariant> HostPort::ask(const char* service, const char* operation,
                                      const QVariantList& arguments)
{
    if (!m_call)
        throw Error(QStringLiteral("The host is no longer there"));
    VariantArray given(arguments);
    TvVariant answer{};
    const auto clear = qScopeGuard([&] { clearVariant(answer); });
    forgetRaised();
    TvResult result = TV_S_OK;
    {
        const CallbackScope scope;
        ++m_depth;
        const auto leave = qScopeGuard([this] { --m_depth; });
        result = m_call(service, operation, given.data(), given.count(), &answer, m_context);
    }
    if (result == TV_E_MEMBERNOTFOUND)
        return std::nullopt;
    if (result < 0)
        throwRaised(result, nameOf(service, operation));
    return toValue(answer);
}

std::optional<HostJson> HostPort::askJson(const char* service, const char* operation,
                                          const QVariantList& arguments)
{
    const auto answer = ask(service, operation, arguments);
    if (!answer)
        return std::nullopt;
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(ToText(*answer).toUtf8(), &error);
    if (error.error != QJsonParseError::NoError)
        throw Error(QStringLiteral("The host's answer to %1 is no JSON: %2, byte %3")
                        .arg(nameOf(service, operation), error.errorString())
                        .arg(error.offset),
                    Error::TypeMismatchNumber);
    const QJsonValue value = document.isArray() ? QJsonValue(document.array()) : document.object();
    return HostJson(nameOf(service, operation), value);
}

std::optional<QImage> HostPort::askPicture(const char* service, const char* operation,
                                           const QVariantList& arguments)
{
    const auto answer = ask(service, operation, arguments);
    if (!answer)
        return std::nullopt;
    return pictureFrom(*answer, nameOf(service, operation));
}

std::optional<XmlDocument> HostPort::askDocument(const char* service, const QVariantList& arguments)
{
    const auto answer = ask(service, "Document", arguments);
    if (!answer)
        return std::nullopt;
    const QString text = ToText(*answer);
    const QString key =
        QString::fromLatin1(service) + (arguments.isEmpty() ? QString() : ToText(arguments.first()));
    const auto known = m_documents.constFind(key);
    if (known != m_documents.constEnd() && known->first == text)
        return known->second;
    XmlDocument document;
    document.loadXML(text);
    m_documents.insert(key, {text, document});
    return document;
}

} // namespace tavrin
