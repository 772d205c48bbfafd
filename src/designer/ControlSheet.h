#pragma once

#include "designer/EditHistory.h"
#include "designer/EditorValue.h"
#include "frame/control_frame/UserControl.h"

#include <QHash>
#include <QtDesigner/QDesignerPropertySheetExtension>

#include <vector>

namespace tavrin::designer {

/// A control in the property editor: its saved properties, in the order in which they are saved, each with an
/// editor that fits; and those of any widget, but for the ones that the control has under its own name.
///
/// The place of the widget comes behind them, for a form is loaded in this order and a control may take its
/// size from what is put. A saved property counts as changed when a new control on that place would have
/// another value, or when a form must hold it in any case.
///
/// What a form holds of the control's other properties, as the value that its record gives it, is kept for
/// the form and never put: here it would ask the host.
///
/// Texts are put as they stand and in their order, and are no matter of translators, who would put them
/// behind all else and at each change of the language anew; a person may say otherwise.
///
/// The designer undoes an edit by putting what was shown before and then saying whether that counted as
/// changed. One that did not is what a new control begins with; all else is what stood behind what was shown.
class ControlSheet : public QObject, public QDesignerPropertySheetExtension
{
    Q_OBJECT
    Q_INTERFACES(QDesignerPropertySheetExtension)

public:
    /// `widgetSheet` is the designer's own sheet of the control, and `standInSheet` of its stand-in. Both
    /// live as long as the control.
    ControlSheet(UserControl& control, QDesignerPropertySheetExtension& widgetSheet,
                 QDesignerPropertySheetExtension& standInSheet, QObject* parent);

    int count() const override;
    int indexOf(const QString& name) const override;
    QString propertyName(int index) const override;
    QString propertyGroup(int index) const override;
    void setPropertyGroup(int index, const QString& group) override;
    bool hasReset(int index) const override;
    bool reset(int index) override;
    bool isVisible(int index) const override;
    void setVisible(int index, bool visible) override;
    bool isAttribute(int index) const override;
    void setAttribute(int index, bool attribute) override;
    QVariant property(int index) const override;
    void setProperty(int index, const QVariant& value) override;
    bool isChanged(int index) const override;
    void setChanged(int index, bool changed) override;
    bool isEnabled(int index) const override;

private:
    struct Entry
    {
        QString name;
        Editor editor;
    };
    /// The saved property at an index of this sheet; nullptr for all others.
    const Entry* savedAt(int index) const;
    bool isSaved(const QString& name) const;
    /// The index in the widget's sheet.
    int below(int index) const;
    /// Whether it is a property of the control itself, saved or not.
    bool isOwn(int index) const;
    QVariant valueOf(const Entry& entry) const;
    QVariant startOf(const Entry& entry) const;
    SavedValues values() const;
    /// Puts those that differ, through their setters.
    void restore(const SavedValues& values);
    /// Puts what the editor gives; what does not fit is told and left out.
    void put(int index, const Entry& entry, const QVariant& value);
    void putStart(int index, const Entry& entry);
    /// Runs an edit of a saved property, as `put` with the value or, without one, as a reset.
    template <typename Body>
    void edit(int index, const QVariant& value, Body&& body);
    /// False where the editor's value needs no sheet of the designer's.
    bool hasStandIn(const Entry& entry) const;
    bool isText(const Entry& entry) const;
    /// Takes a text that the control has away from translators.
    void keepFromTranslators(int index, const Entry& entry);
    /// Keeps what the form holds of a property that is not saved, or tells that nothing can.
    void keep(int index, const QVariant& value);
    void refuse(const Entry& entry, const QVariant& value) const;

    UserControl& m_control;
    QDesignerPropertySheetExtension& m_widgetSheet;
    QDesignerPropertySheetExtension& m_standInSheet;
    std::vector<Entry> m_saved;
    /// What the form holds of properties of the control that are not saved, by index.
    QHash<int, QVariant> m_kept;
    EditHistory m_history;
    /// The declared properties of the widget's sheet in the order of this one; those that follow have the
    /// same place in both.
    std::vector<int> m_order;
    /// Where those of the control begin in this order.
    int m_ownBegin = 0;
    int m_ownEnd = 0;
};

} // namespace tavrin::designer
