#pragma once

#include "frame/control_frame/SavedProperty.h"
#include "lookup/NumberedList.h"
#include "lookup/SearchPicker.h"
#include "widgets/drawing/SharedFont.h"
#include "widgets/search_box/SearchBox.h"

#include <QMetaMethod>
#include <QPointer>

#include <functional>
#include <vector>

namespace tavrin {

/// What the search pickers keep and do. Each picker's own derives from it, through that of its frame.
class SearchPicker::Private
{
public:
    virtual ~Private();
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    /// The defaults of a new instance.
    void InitDefaults();
    /// The value of a picker over a numbered list: stored first, then looked up. Where that fails the value
    /// stands, and no entry shows: that of the value before would be a wrong name.
    void putNumber(const QVariant& value, NumberedList& list);
    /// What a search heeds; `listAll` is the picker's own option.
    SearchOptions searchOptions(bool listAll) const;

    /// Asks the followers of a signal such as `Filter` whether to leave a number out; nothing where there are
    /// none.
    template <typename Picker>
    std::function<void(qint32, bool&)> followersOf(void (Picker::*signal)(qint32, bool&))
    {
        if (!q.isSignalConnected(QMetaMethod::fromSignal(signal)))
            return {};
        return [self = QPointer(static_cast<Picker*>(&q)), signal](qint32 number, bool& exclude) {
            if (self) // a follower may delete the control
                Q_EMIT std::invoke(signal, *self, number, exclude);
        };
    }

    virtual void search(const QString& query, Suggestions& results) = 0;
    virtual void drawRow(PictureSurface& picture, const XmlNode& item, const QString& query,
                         bool selected) = 0;
    virtual QString boxText(const XmlNode& item) = 0;
    virtual void selectionChanged() = 0;
    /// The box shows no entry any more, whatever the value is.
    virtual void selectionForgotten() = 0;
    /// The host's value could not be put; what is left belongs to the record before.
    virtual void loadFailed(const QVariant&) {}
    /// The font is another one, or has changed.
    virtual void applyFont() = 0;

    SavedProperty enabledProperty();
    SavedProperty showNameProperty();
    SavedProperty removeUsedValuesProperty();
    SavedProperty fontProperty();
    SavedProperty backColorProperty();
    SavedProperty foreColorProperty();
    /// A yes or no that goes straight into its field.
    static SavedProperty flagProperty(const QString& key, bool& field);

    void showDisplayName();
    /// "EmployeePicker.Value": where a failure comes from.
    QByteArray member(const char* name) const;

    SearchPicker& q;
    SearchBox& m_box;
    QVariant m_value;
    QVariant m_hostValue;
    bool m_showName = true;
    bool m_removeUsedValues = false;
    SharedFont m_font;
    UsedValues m_usedValues;
    int m_contractPuts = 0;
    std::vector<Subscription> m_subscriptions;

protected:
    /// `box` becomes the picker's.
    Private(SearchPicker& picker, SearchBox& box);
};

} // namespace tavrin
