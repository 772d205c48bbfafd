#pragma once

#include "base/values/Color.h"
#include "widgets/drawing/SharedFont.h"

#include <QLabel>

namespace tavrin {

/// A line of plain text. An '&' marks an access key only while the label has a buddy.
class Label : public QLabel
{
    Q_OBJECT

public:
    explicit Label(QWidget* parent = nullptr);

    QString Caption() const { return text(); }
    void SetCaption(const QString& caption);

    /// Shared by reference: a change inside the font shows at once. nullptr is ignored.
    FontPtr Font() const { return m_font.get(); }
    void SetFont(const FontPtr& font);

    Color ForeColor() const { return m_foreColor; }
    void SetForeColor(Color color);

    /// While on, as at first, the label resizes itself to its caption. While off, a caption that is too long
    /// is cut, at the right unless told otherwise, and stands whole in the tool tip, unless the label was
    /// given one.
    bool AutoSize() const { return m_autoSize; }
    void SetAutoSize(bool autoSize);
    /// Where a caption that is too long is cut.
    void SetElideMode(Qt::TextElideMode mode);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void fit();
    void applyToolTip();
    QRect room() const;
    int textFlags() const;
    QString shownText() const;

    SharedFont m_font;
    Color m_foreColor = SystemColor::ButtonText;
    bool m_autoSize = true;
    Qt::TextElideMode m_elideMode = Qt::ElideRight;
    QString m_ownToolTip; // the one that stands for a cut caption
};

} // namespace tavrin
