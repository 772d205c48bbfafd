#include "designer/StartValues.h"

#include "component/ClassRegister.h"

#include <QHash>
#include <QSet>

#include <memory>

namespace tavrin::designer {

namespace {

using Values = QHash<QString, QVariant>;

/// Of a control that stands nowhere.
const Values& valuesOfClass(const UserControl& control)
{
    static QHash<QString, Values> classes;
    auto known = classes.find(control.typeName());
    if (known == classes.end()) {
        const DesignTime designer;
        const QString className = QStringLiteral("TVBoundControls.") + control.typeName();
        const std::unique_ptr<UserControl> fresh(publicControls().create(className, nullptr, {}));
        Values values;
        for (const SavedProperty& property : fresh->savedProperties())
            values.insert(property.key, fresh->property(property.key.toLatin1().constData()));
        known = classes.insert(control.typeName(), values);
    }
    return *known;
}

} // namespace

QVariant startValue(UserControl& control, const QString& property)
{
    if (property == QLatin1String("Font"))
        return QVariant::fromValue(control.ambient().Font());
    return valuesOfClass(control).value(property);
}

bool isAlwaysSaved(const UserControl& control, const QString& property)
{
    static const QSet<std::pair<QString, QString>> always{
        {QStringLiteral("AgencyPicker"), QStringLiteral("ListAllAgencies")}, // its setter loads the list
        {QStringLiteral("AutoCompleteField"),
         QStringLiteral("TableNo")}, // -1 where a form lacks it, 0 when new
    };
    return always.contains({control.typeName(), property});
}

bool isNeverSaved(const UserControl& control, const QString& property)
{
    return control.inherits("tavrin::FlatPicker") && property.endsWith(QLatin1String("Color"));
}

} // namespace tavrin::designer
