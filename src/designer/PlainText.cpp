#include "designer/PlainText.h"

#include <QLibrary>

#include <cstddef>
#include <memory>

namespace tavrin::designer {

namespace {

/// The constructor of the designer's own type: text, whether it is for translators, and two comments for
/// them.
using Construct = void (*)(void*, const QString&, bool, const QString&, const QString&);

/// The type stands in no public header, and nothing else makes such a value but a form that is loaded. So it
/// is looked up by name: a designer without it leaves texts to translators, as it does those of any widget.
Construct constructor()
{
    static const auto found = reinterpret_cast<Construct>(
        QLibrary::resolve(QStringLiteral("Qt6Designer"), QT_VERSION_MAJOR,
                          "_ZN18qdesigner_internal24PropertySheetStringValueC1ERK7QStringbS3_S3_"));
    return found;
}

} // namespace

QVariant plainText(const QVariant& shown, const QString& text)
{
    const QMetaType type = shown.metaType();
    const bool isKnown = QByteArray(type.name()) == "qdesigner_internal::PropertySheetStringValue";
    if (!isKnown || !constructor() || type.alignOf() > static_cast<qsizetype>(alignof(std::max_align_t)))
        return shown;
    const auto memory = std::make_unique<std::byte[]>(static_cast<std::size_t>(type.sizeOf()));
    constructor()(memory.get(), text, false, QString(), QString());
    QVariant plain(type, memory.get());
    type.destruct(memory.get());
    return plain;
}

} // namespace tavrin::designer
