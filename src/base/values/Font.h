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
    /// A copy of the font; it is not changed itself.
    explicit Font(const QFont& font);
    ~Font();

    /// The family's name. One that is not installed is kept; the platform's nearest shows.
    QString Name() const;
    void SetName(const QString& name);
    /// Size in points; below 1 counts as 1.
    double Size() const;
    void SetSize(double points);
    /// Whether the weight is above 500; setting it puts 700 or 400.
    bool Bold() const;
    void SetBold(bool bold);
    /// Whether texts are slanted, underlined, struck through; false by default.
    bool Italic() const;
    void SetItalic(bool italic);
    bool Underline() const;
    void SetUnderline(bool underline);
    bool Strikethrough() const;
    void SetStrikethrough(bool strikethrough);
    /// 100 (thin) to 900 (black); 400 is normal, 700 bold. What lies below 1 or above 1000 becomes that.
    int Weight() const;
    void SetWeight(int weight);

    /// Number of the character set that the font was made for; 1, the default, leaves it to the platform. Qt
    /// finds characters by itself, so it is only kept.
    int Charset() const;
    void SetCharset(int charset);

    /// A copy, which does not follow later changes. Qt's fonts have no character set.
    QFont toQFont() const;

    /// Raised with "Name", "Size", "Bold", "Italic", "Underline", "Strikethrough",
    /// "Weight" or "Charset".
    Event<const QString&> FontChanged;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

/// A font and all who use it; controls never hold nullptr.
using FontPtr = std::shared_ptr<Font>;

} // namespace tavrin

Q_DECLARE_METATYPE(tavrin::FontPtr)
