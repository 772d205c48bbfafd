#pragma once

#include "base/failure/Event.h"

#include <QFont>
#include <QMetaType>

#include <memory>

namespace tavrin {

/// A font object, shared by reference: a change inside it shows wherever it is used.
///
/// Each setter that changes something raises `FontChanged` with the name of the property.
class Font
{
public:
    /// The application's font at the time of creation.
    Font();
    explicit Font(const QFont& font);

    QString Name() const { return m_font.family(); }
    void SetName(const QString& name);
    /// Size in points.
    double Size() const;
    void SetSize(double points);
    bool Bold() const { return m_font.bold(); }
    void SetBold(bool bold);
    bool Italic() const { return m_font.italic(); }
    void SetItalic(bool italic);
    bool Underline() const { return m_font.underline(); }
    void SetUnderline(bool underline);
    bool Strikethrough() const { return m_font.strikeOut(); }
    void SetStrikethrough(bool strikethrough);
    /// 100 (thin) to 900 (black); 400 is normal, 700 bold.
    int Weight() const { return m_font.weight(); }
    void SetWeight(int weight);

    /// Number of the character set that the font was made for; 1, the default, leaves it to the platform. Qt
    /// finds characters by itself, so it is only kept.
    int Charset() const { return m_charset; }
    void SetCharset(int charset);

    QFont toQFont() const { return m_font; }

    /// Raised with "Name", "Size", "Bold", "Italic", "Underline", "Strikethrough",
    /// "Weight" or "Charset".
    Event<const QString&> FontChanged;

private:
    template <typename Value>
    void change(const char* property, Value before, Value after, void (QFont::*set)(Value));

    QFont m_font;
    int m_charset = 1;
};

using FontPtr = std::shared_ptr<Font>;

} // namespace tavrin

Q_DECLARE_METATYPE(tavrin::FontPtr)
