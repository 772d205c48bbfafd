#include "designer/ControlSheet.h"

#include "base/values/Variant.h"
#include "designer/PlainText.h"
#include "designer/StartValues.h"

#include <QMetaProperty>

#include <algorithm>

namespace tavrin::designer {

ControlSheet::ControlSheet(UserControl& control, QDesignerPropertySheetExtension& widgetSheet,
                           QDesignerPropertySheetExtension& standInSheet, QObject* parent)
    : QObject(parent)
    , m_control(control)
    , m_widgetSheet(widgetSheet)
    , m_standInSheet(standInSheet)
{
    const QMetaObject& meta = *control.metaObject();
    const int firstOwn = UserControl::staticMetaObject.propertyCount();
    const int geometry = widgetSheet.indexOf(QStringLiteral("geometry"));
    for (int index = 0; index < firstOwn; ++index) {
        if (index != geometry)
            m_order.push_back(index);
    }
    m_ownBegin = static_cast<int>(m_order.size());
    for (const SavedProperty& property : control.savedProperties()) {
        const int index = meta.indexOfProperty(property.key.toLatin1().constData());
        if (index < firstOwn)
            continue;
        m_saved.push_back({property.key, editorOf(control, property)});
        m_order.push_back(index);
    }
    for (int index = firstOwn; index < meta.propertyCount(); ++index) {
        if (std::find(m_order.begin() + m_ownBegin, m_order.end(), index) == m_order.end())
            m_order.push_back(index);
    }
    m_ownEnd = static_cast<int>(m_order.size());
    if (geometry >= 0)
        m_order.push_back(geometry);
    for (std::size_t i = 0; i < m_saved.size(); ++i)
        keepFromTranslators(m_ownBegin + static_cast<int>(i), m_saved[i]);
}

// Places

bool ControlSheet::isOwn(int index) const
{
    return index >= m_ownBegin && index < m_ownEnd;
}

const ControlSheet::Entry* ControlSheet::savedAt(int index) const
{
    const int place = index - m_ownBegin;
    return place >= 0 && place < static_cast<int>(m_saved.size()) ? &m_saved[static_cast<std::size_t>(place)]
                                                                  : nullptr;
}

bool ControlSheet::isSaved(const QString& name) const
{
    return std::any_of(m_saved.begin(), m_saved.end(),
                       [&](const Entry& entry) { return entry.name == name; });
}

int ControlSheet::below(int index) const
{
    return index >= 0 && index < static_cast<int>(m_order.size()) ? m_order[static_cast<std::size_t>(index)]
                                                                  : index;
}

int ControlSheet::count() const
{
    return m_widgetSheet.count();
}

int ControlSheet::indexOf(const QString& name) const
{
    const int index = m_widgetSheet.indexOf(name);
    const auto place = std::find(m_order.begin(), m_order.end(), index);
    return place == m_order.end() ? index : static_cast<int>(place - m_order.begin());
}

QString ControlSheet::propertyName(int index) const
{
    return m_widgetSheet.propertyName(below(index));
}

QString ControlSheet::propertyGroup(int index) const
{
    return isOwn(index) ? m_control.typeName() : m_widgetSheet.propertyGroup(below(index));
}

void ControlSheet::setPropertyGroup(int index, const QString& group)
{
    m_widgetSheet.setPropertyGroup(below(index), group);
}

bool ControlSheet::isVisible(int index) const
{
    if (isOwn(index))
        return savedAt(index) != nullptr;
    // The same under Qt's name would be a second way to put it, past the control.
    const QString name = propertyName(index);
    const bool isControls = (name == QLatin1String("enabled") && isSaved(QStringLiteral("Enabled"))) ||
                            (name == QLatin1String("font") && isSaved(QStringLiteral("Font")));
    return !isControls && m_widgetSheet.isVisible(below(index));
}

void ControlSheet::setVisible(int index, bool visible)
{
    m_widgetSheet.setVisible(below(index), visible);
}

bool ControlSheet::isEnabled(int index) const
{
    return isOwn(index) ? savedAt(index) != nullptr : m_widgetSheet.isEnabled(below(index));
}

bool ControlSheet::isAttribute(int index) const
{
    return m_widgetSheet.isAttribute(below(index));
}

void ControlSheet::setAttribute(int index, bool attribute)
{
    m_widgetSheet.setAttribute(below(index), attribute);
}

// Values

QVariant ControlSheet::valueOf(const Entry& entry) const
{
    return m_control.property(entry.name.toLatin1().constData());
}

QVariant ControlSheet::startOf(const Entry& entry) const
{
    return startValue(m_control, entry.name);
}

bool ControlSheet::hasStandIn(const Entry& entry) const
{
    return entry.editor == Editor::Text || entry.editor == Editor::Picture;
}

bool ControlSheet::isText(const Entry& entry) const
{
    const QMetaObject& meta = *m_control.metaObject();
    return entry.editor == Editor::Text ||
           (entry.editor == Editor::Plain &&
            meta.property(meta.indexOfProperty(entry.name.toLatin1().constData())).typeId() ==
                QMetaType::QString);
}

void ControlSheet::keepFromTranslators(int index, const Entry& entry)
{
    if (!isText(entry))
        return;
    QDesignerPropertySheetExtension& sheet = hasStandIn(entry) ? m_standInSheet : m_widgetSheet;
    const int place = hasStandIn(entry) ? sheet.indexOf(entry.name) : below(index);
    const QVariant text = valueOf(entry);
    sheet.setProperty(place, plainText(sheet.property(place), IsNull(text) ? QString() : text.toString()));
}

QVariant ControlSheet::property(int index) const
{
    if (m_kept.contains(index))
        return m_kept.value(index);
    const Entry* entry = savedAt(index);
    if (!entry || entry->editor == Editor::Plain)
        return m_widgetSheet.property(below(index));
    if (hasStandIn(*entry))
        return m_standInSheet.property(m_standInSheet.indexOf(entry->name));
    return editorValue(entry->editor, valueOf(*entry), startOf(*entry));
}

void ControlSheet::refuse(const Entry& entry, const QVariant& value) const
{
    qWarning(
        "The form gives %s of %s \"%s\" a value of the type %s, which it does not take; it keeps its own.",
        qPrintable(entry.name), qPrintable(m_control.typeName()), qPrintable(m_control.objectName()),
        value.typeName());
}

void ControlSheet::put(int index, const Entry& entry, const QVariant& value)
{
    if (isText(entry) && value.typeId() == QMetaType::QString) { // without a word about translators
        const QVariant text = entry.editor == Editor::Text ? controlValue(entry.editor, value) : value;
        m_control.setProperty(entry.name.toLatin1().constData(), text);
        return;
    }
    if (entry.editor == Editor::Plain || hasStandIn(entry)) {
        // What is shown tells what is taken; for texts and pictures the designer has types of its own.
        const QVariant shown = property(index);
        const bool isFile = entry.editor == Editor::Picture && value.typeId() == QMetaType::QString;
        if (value.typeId() != shown.typeId() && !isFile)
            refuse(entry, value);
        else if (hasStandIn(entry))
            m_standInSheet.setProperty(m_standInSheet.indexOf(entry.name), value);
        else
            m_widgetSheet.setProperty(below(index), value);
        return;
    }
    const QVariant taken = controlValue(entry.editor, value);
    if (taken.isValid())
        m_control.setProperty(entry.name.toLatin1().constData(), taken);
    else
        refuse(entry, value);
}

void ControlSheet::putStart(int index, const Entry& entry)
{
    // What the designer keeps beside the value, as a picture's file, goes first.
    if (hasStandIn(entry))
        m_standInSheet.reset(m_standInSheet.indexOf(entry.name));
    else if (entry.editor == Editor::Plain)
        m_widgetSheet.reset(below(index));
    m_control.setProperty(entry.name.toLatin1().constData(), startOf(entry));
    keepFromTranslators(index, entry);
}

SavedValues ControlSheet::values() const
{
    SavedValues values;
    for (const Entry& entry : m_saved)
        values.push_back(valueOf(entry));
    return values;
}

void ControlSheet::restore(const SavedValues& values)
{
    // A second time for what a setter has changed of a property before it.
    for (int turn = 0; turn < 2; ++turn) {
        for (std::size_t i = 0; i < m_saved.size(); ++i) {
            if (!SameValue(valueOf(m_saved[i]), values[i]))
                m_control.setProperty(m_saved[i].name.toLatin1().constData(), values[i]);
        }
    }
}

template <typename Body>
void ControlSheet::edit(int index, const QVariant& value, Body&& body)
{
    const std::optional<SavedValues> known =
        m_history.begin({index, property(index), isChanged(index), values()}, value);
    body();
    SavedValues natural = values();
    if (known)
        restore(*known);
    m_history.end(std::move(natural), values());
}

void ControlSheet::keep(int index, const QVariant& value)
{
    const QMetaProperty property = m_control.metaObject()->property(below(index));
    if (property.isStored() && property.isWritable())
        m_kept.insert(index, value);
    else
        qWarning("The form gives %s of %s \"%s\" a value, which no form can keep; it is left out.",
                 property.name(), qPrintable(m_control.typeName()), qPrintable(m_control.objectName()));
}

void ControlSheet::setProperty(int index, const QVariant& value)
{
    if (const Entry* entry = savedAt(index))
        edit(index, value, [&] { put(index, *entry, value); });
    else if (isOwn(index))
        keep(index, value);
    else
        m_widgetSheet.setProperty(below(index), value);
}

bool ControlSheet::hasReset(int index) const
{
    return savedAt(index) ? true : m_widgetSheet.hasReset(below(index));
}

bool ControlSheet::reset(int index)
{
    const Entry* entry = savedAt(index);
    if (!entry)
        return m_widgetSheet.reset(below(index));
    edit(index, {}, [&] { putStart(index, *entry); });
    return true;
}

bool ControlSheet::isChanged(int index) const
{
    const Entry* entry = savedAt(index);
    if (!entry)
        return isOwn(index) ? m_kept.contains(index) : m_widgetSheet.isChanged(below(index));
    if (isNeverSaved(m_control, entry->name))
        return false;
    return isAlwaysSaved(m_control, entry->name) ||
           !saysTheSame(entry->editor, valueOf(*entry), startOf(*entry));
}

void ControlSheet::setChanged(int index, bool changed)
{
    m_widgetSheet.setChanged(below(index), changed);
    const Entry* entry = savedAt(index);
    if (!entry)
        return;
    if (const std::optional<SavedValues> natural = m_history.confirm(index, changed))
        restore(*natural);
    if (!changed && !SameValue(valueOf(*entry), startOf(*entry)))
        putStart(index, *entry);
    m_history.settle(values());
}

} // namespace tavrin::designer
