#pragma once

#include "component/CallResult.h"

#include <QByteArray>
#include <QObject>
#include <QString>

// What programs that know only the C interface do in every test.

namespace tavrin::test {

inline const TvLibrary& library()
{
    void* object = nullptr;
    if (DllGetClassObject(TV_LIBRARY_CLASS, TV_LIBRARY_INTERFACE, &object) != TV_S_OK)
        qFatal("the library has no functions");
    return *static_cast<const TvLibrary*>(object);
}

/// The class "TVBoundControls." + `name`.
inline const TvClassObject& classObject(const char* name)
{
    void* object = nullptr;
    if (DllGetClassObject(QByteArray("TVBoundControls.").append(name), TV_CLASS_INTERFACE, &object) !=
        TV_S_OK)
        qFatal("the library has no class %s", name);
    return *static_cast<const TvClassObject*>(object);
}

inline QString lastDescription()
{
    TvError error{};
    library().LastError(&error);
    return QString::fromUtf8(error.description);
}

inline int lastNumber()
{
    TvError error{};
    library().LastError(&error);
    return error.number;
}

// Arguments of a program's: nobody owns what they point to.

inline TvVariant empty()
{
    return {};
}

inline TvVariant null()
{
    TvVariant variant{};
    variant.type = TV_NULL;
    return variant;
}

inline TvVariant of(bool value)
{
    TvVariant variant{};
    variant.type = TV_BOOLEAN;
    variant.value.boolean = value ? 1 : 0;
    return variant;
}

inline TvVariant of(int value)
{
    TvVariant variant{};
    variant.type = TV_LONG;
    variant.value.integer = value;
    return variant;
}

inline TvVariant of(double value)
{
    TvVariant variant{};
    variant.type = TV_DOUBLE;
    variant.value.number = value;
    return variant;
}

inline TvVariant of(const char* text)
{
    TvVariant variant{};
    variant.type = TV_TEXT;
    variant.value.text = text;
    return variant;
}

inline TvVariant colored(quint32 value)
{
    TvVariant variant{};
    variant.type = TV_COLOR;
    variant.value.color = value;
    return variant;
}

inline TvVariant objectOf(TvHandle handle)
{
    TvVariant variant{};
    variant.type = TV_OBJECT;
    variant.value.object = handle;
    return variant;
}

/// A value that the library has filled.
class Answer
{
public:
    Answer() = default;
    ~Answer() { library().VariantClear(&m_variant); }
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;

    TvVariant* out() { return &m_variant; }
    const TvVariant& operator*() const { return m_variant; }
    int type() const { return m_variant.type; }
    int number() const { return m_variant.type == TV_LONG ? m_variant.value.integer : -999; }
    bool isTrue() const { return m_variant.type == TV_BOOLEAN && m_variant.value.boolean == 1; }
    QString text() const
    {
        return m_variant.type == TV_TEXT ? QString::fromUtf8(m_variant.value.text)
                                         : QStringLiteral("<no text>");
    }

private:
    TvVariant m_variant{};
};

/// A control of a class in a window of the library's.
class Made
{
public:
    explicit Made(const char* className)
        : functions(classObject(className))
    {
        if (functions.Create(&functions, nullptr, &handle) != TV_S_OK)
            qFatal("%s cannot be made: %s", className, qPrintable(lastDescription()));
    }
    ~Made() { functions.Destroy(handle); }
    Made(const Made&) = delete;
    Made& operator=(const Made&) = delete;

    /// The Qt object behind it, which programs without Qt do not see.
    QObject* object() const
    {
        void* qobject = nullptr;
        functions.QtObject(handle, &qobject);
        return static_cast<QObject*>(qobject);
    }

    const TvClassObject& functions;
    TvControl handle = 0;
};

} // namespace tavrin::test
