#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/ControlRegister.h"
#include "frame/control_frame/PropertyBag.h"

#include <QJsonObject>

#include <vector>

namespace tavrin {

/// The controls of one form with their saved properties, in a JSON file:
///
///     { "title": "General",
///       "controls": [ { "class": "TVBoundControls.AutoCompleteField", "name": "Weapon",
///                       "properties": { "TableNo": 302 },
///                       "host": { "field": "WeaponNo", "label": "&Weapon" } } ] }
///
/// What stands under "host" is the host's own and travels along untouched.
class TAVRIN_EXPORT FormFile
{
public:
    /// One control of the form.
    struct Control
    {
        QString className;      ///< as in "TVBoundControls.AutoCompleteField"
        QString name;           ///< the instance's name, `Ambient::DisplayName`
        PropertyBag properties; ///< the saved ones
        QJsonObject host;       ///< the host's own
    };

    /// The form's title; "" where the file has none.
    QString title;
    /// The controls in their order.
    std::vector<Control> controls;

    /// Reads a form. `problems` gets one sentence for each thing that cannot be read, naming `fileName` and
    /// the control; all else stands. Content that is no JSON gives an empty form and one sentence with
    /// the position.
    static FormFile fromJson(const QByteArray& content, const QString& fileName, QStringList& problems);
    /// As `fromJson`; a file that cannot be opened is one problem.
    static FormFile load(const QString& fileName, QStringList& problems);

    /// The file's content, in UTF-8. Raises what `PropertyBag::toJson` raises.
    QByteArray toJson() const;
    /// Writes the file. Raises an `Error` that names the file; the one that was there then stands as it was.
    void save(const QString& fileName) const;

    /// Makes the form's controls below `parent`, which owns them, in their order. The pointer of a control
    /// whose class is not registered is nullptr, and `problems` gets a sentence that names `fileName` and the
    /// control.
    std::vector<UserControl*> createControls(const ControlRegister& classes, QWidget* parent,
                                             const QString& fileName, QStringList& problems) const;
};

} // namespace tavrin
