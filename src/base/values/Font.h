#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"

#include <QFont>
#include <QMetaType>

#include <memory>

namespace tavrin {

/// A font object, shared by reference: a change inside it shows wherever it is used.
///
/// Each setter that changes something raises `FontChanged` with the name of the property.
class TAVRIN_EXPORT Font
{
public:
    /// The application's font at the time of creation.
    Font();
    explicit Font(const QFont& font);
    ~Font();

    QString Name() const;
    void SetName(const QString& name);
    /// Size in points.
    double Size() const;
    void SetSize(double points);
    bool Bold() const;
    void SetBold(bool bold);
    bool Italic() const;
    void SetItalic(bool italic);
    bool Underline() const;
    void SetUnderline(bool underline);
    bool Strikethrough() const;
    void SetStrikethrough(bool strikethrough);
    /// 100 (thin) to 900 (black); 400 is normal, 700 bold.
    int Weight() const;
    void SetWeight(int weight);

    /// Number of the character set that the font was made for; 1, the default, leaves it to the platform. Qt
    /// finds characters by itself, so it is only kept.
    int Charset() const;
    void SetCharset(int charset);

    QFont toQFont() const;

    /// Raised with "Name", "Size", "Bold", "Italic", "Underline", "Strikethrough",
    /// "Weight" or "Charset".
    Event<const QString&> FontChanged;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

using FontPtr = std::shared_ptr<Font>;

} // namespace tavrin

Q_DECLARE_METATYPE(tavrin::FontPtr)
