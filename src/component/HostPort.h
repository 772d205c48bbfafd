#pragma once

#include "base/xml/XmlDocument.h"
#include "component/CallResult.h"
#include "component/HostJson.h"

#include <QHash>
#include <QImage>
#include <QString>
#include <QVariant>
#include <QVariantList>

#include <memory>
#include <optional>

namespace tavrin {

/// The way from the controls to the program that is their host: one callback for all services.
class HostPort
{
public:
    HostPort(TvHostCall call, void* context)
        : m_call(call)
        , m_context(context)
    {
    }

    /// Nothing for an operation that the host does not offer. Raises what the host raises.
    std::optional<QVariant> ask(const char* service, const char* operation,
                                const QVariantList& arguments = {});
    /// As `ask`, for answers that are texts of JSON. Raises error 13 for one that is not.
    std::optional<HostJson> askJson(const char* service, const char* operation,
                                    const QVariantList& arguments = {});
    /// As `ask`, for answers that are pictures. Raises error 13 for one that is none.
    std::optional<QImage> askPicture(const char* service, const char* operation,
                                     const QVariantList& arguments = {});
    /// Asks for a list. A text that was answered before gives the same document again, which then costs
    /// nothing.
    std::optional<XmlDocument> askDocument(const char* service, const QVariantList& arguments = {});

    /// Whether the program is being asked right now.
    bool isInUse() const { return m_depth > 0; }
    /// The host is no longer there; what controls still hold of it raises.
    void close() { m_call = nullptr; }

private:
    TvHostCall m_call;
    void* m_context;
    int m_depth = 0;
    QHash<QString, std::pair<QString, XmlDocument>> m_documents;
};

using HostPortPtr = std::shared_ptr<HostPort>;

} // namespace tavrin
