#pragma once

#include <QObject>
#include <QPixmap>
#include <QVariant>

namespace tavrin::designer {

/// Stands before a control for properties whose types the form designer has no editor for: a variant that is
/// a text, and a picture. The designer's own property sheet of the stand-in brings its editors along, with
/// translations and resources.
class PropertyStandIn : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Text READ Text WRITE SetText)
    Q_PROPERTY(QString Value READ Value WRITE SetValue)
    Q_PROPERTY(QPixmap Icon READ Icon WRITE SetIcon)

public:
    /// Belongs to the control.
    explicit PropertyStandIn(QObject& control);

    QString Text() const { return textOf("Text"); }
    void SetText(const QString& text) { m_control.setProperty("Text", text); }
    QString Value() const { return textOf("Value"); }
    /// An empty text is Null.
    void SetValue(const QString& value);
    QPixmap Icon() const;
    void SetIcon(const QPixmap& icon);

private:
    QString textOf(const char* property) const;

    QObject& m_control;
};

} // namespace tavrin::designer
