#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"
#include "widgets/drawing/SharedFont.h"

#include <QRadioButton>

namespace tavrin {

/// An option button: of those on the same container one at most is on.
///
/// It raises `Click` once whenever it is turned on: by mouse, Space or arrow keys, by a screen reader, and by
/// code. A click of the one that is on already raises nothing, and neither does turning off. When `Click` is
/// raised the others of its group are off. Where Qt itself turns it on, as for a screen reader, `Click`
/// follows when control returns to the event loop. Tab reaches the one of a group that is on.
class TAVRIN_COMPANION_EXPORT FlatOptionButton : public QRadioButton
{
    Q_OBJECT

public:
    explicit FlatOptionButton(QWidget* parent = nullptr);

    /// Off at first.
    bool Value() const { return isChecked(); }
    /// Raises `Click` before it returns when this turns the button on; a handler's exception reaches the
    /// caller. The one that is on can be turned off, and then none of the group is on.
    void SetValue(bool on);

    /// Plain text, in which an '&' marks the access key.
    QString Caption() const { return text(); }
    void SetCaption(const QString& caption) { setText(caption); }

    /// At first a font of its own; shared by reference. nullptr is ignored.
    FontPtr Font() const { return m_font.get(); }
    void SetFont(const FontPtr& font);

    /// A handler may delete the button.
    Event<> Click;

protected:
    void nextCheckState() override;
    /// The focus shows, however it came here.
    void initStyleOption(QStyleOptionButton* option) const override;

private:
    void noteToggled(bool on);
    void chooseTabStop();

    SharedFont m_font;
    bool m_raisesItself = false; // whoever turns it on raises Click behind it
    bool m_turnedOn = false;     // by the click that is under way
};

} // namespace tavrin
