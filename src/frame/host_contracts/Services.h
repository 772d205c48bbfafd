#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"
#include "base/values/Color.h"
#include "base/values/Twips.h"
#include "base/xml/XmlDocument.h"
#include "frame/host_contracts/Contracts.h"

#include <QImage>
#include <QList>

#include <optional>

// The host's global services: each comes into being on first use and lives as long as the host's thread.

namespace tavrin {

class DropdownTarget;
class GridCombo;

/// One value of a code table.
struct TableValue
{
    QString ID;          ///< short code
    QString DisplayText; ///< description
    QVariant Value;      ///< numeric code
};

/// The values of one code table, in their order.
struct TableValues
{
    QList<TableValue> Items;
};

/// What a refresh of the caches brought; no control reads it.
struct CacheRefreshInfo
{
    QStringList Changed;
};

/// Where the host speaks to everybody.
class TAVRIN_EXPORT EventHub
{
public:
    /// Raised after the host has reloaded its caches.
    Event<const CacheRefreshInfo&> CacheRefreshed;
};

class TAVRIN_EXPORT HostServices
{
public:
    virtual ~HostServices() = default;

    /// The values of a code table; inactive ones only when asked for. The two last arguments are always
    /// left out and False.
    virtual TableValues GetTableValues(TableNumber table, bool includeInactive, const QVariant& leftOut = {},
                                       bool reserved = false) = 0;
    virtual EventHub& Events() = 0;
    /// Format string for showing dates, in Qt's letters.
    virtual QString DateDisplayFormat() = 0;
    /// The record that owns this one; nullptr when none does.
    virtual tvBusinessObjectPtr GetParentObject(const tvBusinessObjectPtr& record) = 0;
    /// Rewrites the workstation's custom dictionary from the database.
    virtual void SyncCustomDictionaryFile() = 0;
    /// Told once for each uploaded file, before its row is added to the record.
    virtual void NotifyFileUploaded() {}
};

class TAVRIN_EXPORT XmlFactory
{
public:
    virtual ~XmlFactory() = default;
    /// A new empty document with XPath support.
    virtual XmlDocument CreateDocument() = 0;
};

class TAVRIN_EXPORT Session
{
public:
    virtual ~Session() = default;

    virtual QString CurrentUserId() = 0;
    /// "" when the setting is not there.
    virtual QString GetSetting(const QString& section, const QString& key) = 0;
    virtual bool HasPermission(const QString& module, int right) = 0;
    virtual bool FieldExists(const QString& module, const QString& table, const QString& field) = 0;
    virtual bool IsFieldRequired(const QString& module, const QString& table, const QString& field,
                                 const QString& extra) = 0;
    /// An object to assign to another field's `Value`, which links that field to this one.
    virtual QVariant MakeFieldReference(const tvFieldPtr& field) = 0;
};

/// Colours of a text box in one state: of the box, of its selected text, and of the tag in it that bears a
/// name. Controls of this library do not read the two of the selection.
struct TextBoxColorSet
{
    Color BackColor = SystemColor::WindowBackground;
    Color ForeColor = SystemColor::WindowText;
    Color BorderColor = SystemColor::ButtonFace;
    Color SelectionBackColor = SystemColor::Highlight;
    Color SelectionForeColor = SystemColor::HighlightText;
    Color TagBackColor = SystemColor::ButtonFace;
    Color TagForeColor = SystemColor::WindowText;
};

/// The theme's colour sets by state.
struct TextBoxColors
{
    TextBoxColorSet Normal;
    TextBoxColorSet Disabled;
    TextBoxColorSet Focused;
};

class TAVRIN_EXPORT UiServices
{
public:
    virtual ~UiServices() = default;

    /// A shade of the colour: a factor below 1 darkens, above 1 lightens.
    virtual Color ShadeColor(Color color, double factor) = 0;
    /// Scale mode by its unit's name ("Twip", "Pixel", ...).
    virtual ScaleMode ScaleModeFromUnits(const QString& units) = 0;
    virtual tavrin::TextBoxColors TextBoxColors() = 0;
};

class TAVRIN_EXPORT ListFilling
{
public:
    virtual ~ListFilling() = default;

    /// Fills a combo with a first empty row and the table's values, the code as item data. With `flag`
    /// inactive values are listed too; `value` stays in the list although inactive. The row of `value`
    /// becomes the current one when it is in the list.
    virtual void FillTableCombo(TableNumber table, DropdownTarget& combo, bool flag, const QVariant& value,
                                bool reserved) = 0;
    /// Fills a grid combo the same way, but for the current row, which stays with the caller: short text,
    /// long text, code, and the active flag, "1" for a code in use. Row 1 is empty.
    virtual void FillTableGrid(TableNumber table, GridCombo& combo, bool flag, const QVariant& value,
                               bool reserved) = 0;
    /// A new picture, fitted into a box of this size in pixels.
    virtual QImage FitPicture(const QImage& picture, int height, int width, int mode, bool flag,
                              Color backColor, bool reserved) = 0;
};

class TAVRIN_EXPORT Images
{
public:
    virtual ~Images() = default;
    /// By the name alone.
    virtual bool IsImageFile(const QString& fileName) = 0;
    /// Raises an `Error` when the file cannot be shown.
    virtual QImage LoadPicture(const QString& path) = 0;
};

class TAVRIN_EXPORT Environment
{
public:
    virtual ~Environment() = default;

    /// The workstation's folder, without a separator at its end.
    virtual QString GetDictionaryFolder() = 0;
    /// Brings a named support file up to date in that folder.
    virtual void RefreshSupportFile(const QString& name) = 0;
    /// The host's error number for a code of its own.
    virtual int GetErrorNumber(int code) = 0;
    virtual QString GetDownloadsFolder() = 0;
};

} // namespace tavrin
