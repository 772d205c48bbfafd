#pragma once

#include "base/values/Variant.h"
#include "component/ClassRegister.h"
#include "frame/control_frame/Ambient.h"
#include "frame/modUtils.h"
#include "lookup/AgencyForm.h"
#include "lookup/FlatPickerForm.h"
#include "sections/MultiValueForm.h"
#include "widgets/lists/FlatDropdown.h"

#include <QDebug>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <vector>

namespace tavrin::test {

inline constexpr TableNumber Weapons = WeaponTable;
inline constexpr TableNumber Races = 312;

/// A host that knows something of everything.
inline void fillHost(FakeHost& host)
{
    fillPeople(host);
    setAgencies(host);
    host.setTable(Weapons, weapons());
    host.setTable(Races, {{QStringLiteral("W"), QStringLiteral("White"), 23},
                          {QStringLiteral("B"), QStringLiteral("Black"), 24}});
    host.state().offenses = xmlOf(
        QStringLiteral("<Offenses><Offense><OffenseNo>31</OffenseNo><OffenseId>13A</OffenseId>"
                       "<Description>Assault</Description><ActiveFlag>1</ActiveFlag></Offense>"
                       "<Offense><OffenseNo>32</OffenseNo><OffenseId>13B</OffenseId>"
                       "<Description>Battery</Description><ActiveFlag>0</ActiveFlag></Offense></Offenses>"));
    host.state().nibrsCodes = {{QStringLiteral("13A"), QStringLiteral("Aggravated Assault")},
                               {QStringLiteral("09A"), QStringLiteral("Murder")}};
}

/// One control on a form that is shown.
struct Stage
{
    explicit Stage(const QString& name, bool inDesigner = false)
        : installation(host)
    {
        std::optional<DesignTime> designer;
        if (inDesigner)
            designer.emplace();
        fillHost(host);
        modUtils::ReleaseNibrsModule();
        window.resize(900, 400);
        control = publicControls().create(QStringLiteral("TVBoundControls.") + name, &window,
                                          {QStringLiteral("control")});
        control->resize(500, 100);
        window.show();
    }
    ~Stage() { modUtils::ReleaseNibrsModule(); }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    template <typename Constituent>
    Constituent& part(const char* name) const
    {
        return *control->findChild<Constituent*>(QString::fromLatin1(name));
    }
    TavrinControl& contract() const { return *dynamic_cast<TavrinControl*>(control); }

    FakeHost host;
    HostInstallation installation;
    QWidget window;
    UserControl* control;
};

/// Something that can be seen of a control.
using Look = std::function<QVariant(const Stage&)>;

/// What a property decides besides its own value.
struct Dependent
{
    enum When
    {
        BeforeReport,
        BehindReport,
        Never ///< it is the same before, inside and behind the report
    };
    const char* name;
    Look look;
    When when = BeforeReport;
};

/// One setter, and what one sees in the followers of the events that it raises.
struct Setter
{
    const char* control;
    const char* property;
    QVariant first;
    QVariant second;
    std::vector<Dependent> dependents = {};
    /// The reports and events of a put, in their order.
    QStringList events = {QString::fromLatin1(property)};
    std::function<void(const Stage&)> prepare = {};
    /// What tells the rows of one property apart.
    const char* state = "";
    bool inDesigner = false;
    /// What the property holds in an event that comes before it is stored.
    QVariantMap heldIn = {};

    QString member() const { return QLatin1String(control) + QLatin1Char('.') + QLatin1String(property); }
    QString name() const { return (member() + QLatin1Char(' ') + QLatin1String(state)).trimmed(); }
};

// Values

inline QVariant color(quint32 value)
{
    return QVariant::fromValue(Color(value));
}

inline QVariant fontOf(double size)
{
    const auto font = std::make_shared<Font>();
    font->SetSize(size);
    return QVariant::fromValue(FontPtr(font));
}

inline QVariant icon(int side)
{
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::red);
    return image;
}

// Looks

template <typename Constituent>
inline Look backColorOf(const char* name)
{
    return [=](const Stage& stage) { return color(stage.part<Constituent>(name).BackColor().value()); };
}

template <typename Constituent>
inline Look foreColorOf(const char* name)
{
    return [=](const Stage& stage) { return color(stage.part<Constituent>(name).ForeColor().value()); };
}

template <typename Constituent>
inline Look fontSizeOf(const char* name)
{
    return [=](const Stage& stage) { return stage.part<Constituent>(name).Font()->Size(); };
}

inline Look enabled(const char* name)
{
    return [=](const Stage& stage) { return stage.part<QWidget>(name).isEnabled(); };
}

inline Look hidden(const char* name)
{
    return [=](const Stage& stage) { return stage.part<QWidget>(name).isHidden(); };
}

inline Look placeOf(const char* name)
{
    return [=](const Stage& stage) { return stage.part<QWidget>(name).geometry(); };
}

inline Look captionOf(const char* label)
{
    return [=](const Stage& stage) { return stage.part<Label>(label).Caption(); };
}

inline Look property(const char* name)
{
    return [=](const Stage& stage) { return stage.control->property(name); };
}

inline QVariant frameHeight(const Stage& stage)
{
    return stage.control->height();
}

inline QVariant frameEnabled(const Stage& stage)
{
    return stage.control->isEnabled();
}

/// How many entries a search for everything finds.
inline QVariant found(const Stage& stage)
{
    Suggestions results;
    stage.control->findChild<SearchBox*>()->SearchRequested.raise(QString(), results);
    return static_cast<int>(results.size());
}

inline QVariant agencies(const Stage& stage)
{
    return stage.part<GridComboBox>("tdbcValues").Array().UpperBound();
}

inline QVariant bookmark(const Stage& stage)
{
    return stage.part<GridComboBox>("tdbcValues").Bookmark();
}

inline QVariant agenciesBesideAUsedOne(const Stage& stage)
{
    stage.contract().SetValue(Null(), usedValues({10}));
    return agencies(stage);
}

/// The entries after the control was hidden and shown, which is when its list is built.
inline QVariant entriesOnceShown(const Stage& stage)
{
    stage.control->hide();
    stage.control->show();
    const auto& items = stage.part<FlatDropdown>("cboItems");
    QStringList texts;
    for (int i = 0; i < items.ListCount(); ++i)
        texts << items.List(i);
    return texts;
}

/// The property, and then its dependents.
inline QVariantList lookAt(const Stage& stage, const Setter& setter)
{
    QVariantList seen{stage.control->property(setter.property)};
    for (const Dependent& dependent : setter.dependents)
        seen << dependent.look(stage);
    return seen;
}

inline QString textOf(const QVariant& value)
{
    QString text;
    QDebug(&text) << value;
    return text;
}

} // namespace tavrin::test
