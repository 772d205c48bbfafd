#pragma once

#include "base/failure/Error.h"
#include "base/values/Color.h"
#include "frame/control_frame/UserControl.h"

#include <QMap>
#include <QStringList>

#include <functional>

namespace tavrin::test {

/// A control that notes its life and has three saved properties, "First", "Second" and "Third": a number, a
/// text and a colour.
class ProbeControl : public UserControl
{
    Q_OBJECT

public:
    explicit ProbeControl(QWidget* parent = nullptr, const ControlSite& site = {},
                          QStringList* journal = nullptr, QStringList failing = {}, bool traps = true);
    ~ProbeControl() override;

    /// What happened, in order: in the journal that was given, or in one of its own.
    QStringList& journal() { return *m_journal; }
    QStringList take() { return std::exchange(*m_journal, {}); }

    int first = 0;
    QString second;
    Color third;
    /// The key code that `KeyDown` swallows.
    int swallowedKey = -1;
    /// Called inside each event, behind the note.
    std::function<void(const QString& what)> during;

    /// Makes the events and properties of these names raise an `Error`.
    QStringList failing;

protected:
    SavedProperties savedProperties() override;
    bool trapsPropertyErrors() const override { return m_traps; }
    void UserControl_InitProperties() override { note(QStringLiteral("InitProperties")); }
    void UserControl_ReadProperties(const PropertyBag& bag) override;
    void UserControl_WriteProperties(PropertyBag& bag) override;
    void UserControl_Show() override { note(QStringLiteral("Show")); }
    void UserControl_Hide() override { note(QStringLiteral("Hide")); }
    void UserControl_Resize() override { note(QStringLiteral("Resize")); }
    void UserControl_AmbientChanged(const QString& name) override
    {
        note(QStringLiteral("AmbientChanged ") + name);
    }
    void UserControl_EnterFocus() override { note(QStringLiteral("EnterFocus")); }
    void UserControl_ExitFocus() override { note(QStringLiteral("ExitFocus")); }
    void UserControl_LostFocus() override { note(QStringLiteral("LostFocus")); }
    void UserControl_KeyDown(int& keyCode, int shift) override;
    void UserControl_MouseUp(int button, int shift, Twips x, Twips y) override;

private:
    void note(const QString& what);

    QStringList m_own;
    QStringList* m_journal;
    bool m_traps;
};

} // namespace tavrin::test
