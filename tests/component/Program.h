#pragma once

#include "component/ComponentClient.h"

#include <QBuffer>
#include <QImage>
#include <QStringList>

#include <functional>
#include <map>

namespace tavrin::test {

/// A program that is a host of the operations that a test gives it.
struct Program
{
    using Answering = std::function<TvResult(const TvVariant* arguments, TvVariant* result)>;

    Program() { library().SetHost(ask, this); }
    ~Program() { library().SetHost(nullptr, nullptr); }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    static TvResult ask(const char* service, const char* operation, const TvVariant* arguments, int32_t count,
                        TvVariant* result, void* context)
    {
        auto& self = *static_cast<Program*>(context);
        const QString name = QStringLiteral("%1.%2/%3")
                                 .arg(QString::fromLatin1(service), QString::fromLatin1(operation))
                                 .arg(count);
        self.asked << name;
        self.told.clear();
        for (int32_t i = 0; i < count; ++i)
            self.told << describe(arguments[i]);
        const auto found = self.answers.find(name);
        return found == self.answers.end() ? TV_E_MEMBERNOTFOUND : found->second(arguments, result);
    }

    void answer(const QString& name, const char* text)
    {
        answers[name] = [text](const TvVariant*, TvVariant* result) {
            return library().SetText(result, text);
        };
    }

    /// An argument as it came: `text "a"`, `long 5`.
    static QString describe(const TvVariant& value)
    {
        switch (value.type) {
        case TV_EMPTY:
            return QStringLiteral("empty");
        case TV_NULL:
            return QStringLiteral("null");
        case TV_BOOLEAN:
            return value.value.boolean ? QStringLiteral("true") : QStringLiteral("false");
        case TV_LONG:
            return QStringLiteral("long %1").arg(value.value.integer);
        case TV_DOUBLE:
            return QStringLiteral("double %1").arg(value.value.number);
        case TV_TEXT:
            return QStringLiteral("text \"%1\"").arg(QString::fromUtf8(value.value.text));
        case TV_COLOR:
            return QStringLiteral("colour %1").arg(value.value.color, 0, 16);
        case TV_FONT:
            return QStringLiteral("font ") + QString::fromUtf8(value.value.font->name);
        case TV_PICTURE: {
            const TvPicture* picture = value.value.picture;
            const QImage image =
                picture ? QImage::fromData(picture->data, static_cast<int>(picture->length)) : QImage();
            return QStringLiteral("picture %1x%2").arg(image.width()).arg(image.height());
        }
        default:
            return QStringLiteral("type %1").arg(value.type);
        }
    }

    /// A picture of one colour, 2 pixels wide and high.
    static TvResult setBlue(TvVariant* result)
    {
        QImage image(2, 2, QImage::Format_RGB32);
        image.fill(Qt::blue);
        QBuffer png;
        image.save(&png, "PNG");
        return library().SetPicture(result, reinterpret_cast<const unsigned char*>(png.data().constData()),
                                    static_cast<quint64>(png.size()));
    }

    std::map<QString, Answering> answers;
    QStringList asked;
    /// The arguments of the last operation.
    QStringList told;
};

} // namespace tavrin::test
