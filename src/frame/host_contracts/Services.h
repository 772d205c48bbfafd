#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"
#include "base/values/Color.h"
#include "base/values/Twips.h"
#include "base/xml/XmlDocument.h"
#include "frame/host_contracts/Contracts.h"

#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

// The host's global services. They live as long as the host is installed, and are called on its thread.
//
// A host derives from those that it has something of its own for, and overrides what it needs. Every
// operation has a default: a sensible answer where there is one without a host, else an `Error` with the
// number `Error::NoSuchComponentNumber` whose text names the operation, raised only when it is called.

namespace tavrin {

class DropdownTarget;
class GridCombo;
class Host;

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
    QList<TableValue> Items; ///< empty for a table without values
};

/// A value of a code table as it stands in a list.
struct ListedValue
{
    TableValue Entry;     ///< what it says
    bool IsActive = true; ///< whether it is in use
};

/// What a refresh of the caches brought; no control reads it.
struct CacheRefreshInfo
{
    QStringList Changed; ///< names of the caches, in the host's own words
};

/// Where the host speaks to everybody.
class TAVRIN_EXPORT EventHub
{
public:
    /// Raised by the host after it has reloaded its caches, on its own thread: `FlatUserPicker` clones its
    /// lists afresh at the next need. Other controls keep what they have.
    Event<const CacheRefreshInfo&> CacheRefreshed;
};

/// Lists, records and the events of the host.
class TAVRIN_EXPORT HostServices
{
public:
    HostServices();
    virtual ~HostServices();

    /// The values of a code table, for `AutoCompleteField`, `TavrinDropdown` and `MultiValue`; inactive ones
    /// only when asked for. The two last arguments are always left out and False. By default raises the error
    /// of what is not offered.
    virtual TableValues GetTableValues(TableNumber table, bool includeInactive, const QVariant& leftOut = {},
                                       bool reserved = false);
    /// By default a hub of this object's own, on which a host raises what it has to tell.
    virtual EventHub& Events();
    /// Format string for showing dates, in Qt's letters. By default the short format of the person's locale.
    virtual QString DateDisplayFormat();
    /// The record that owns this one; nullptr when none does, and by default.
    virtual tvBusinessObjectPtr GetParentObject(const tvBusinessObjectPtr& record);
    /// Rewrites the workstation's custom dictionary from the database. By default leaves it as it is.
    virtual void SyncCustomDictionaryFile();
    /// Told once for each uploaded file, before its row is added to the record. Does nothing by default.
    virtual void NotifyFileUploaded();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// Makes documents.
class TAVRIN_EXPORT XmlFactory
{
public:
    virtual ~XmlFactory();
    /// A new empty document with XPath support.
    virtual XmlDocument CreateDocument();
};

/// Who sits at the workstation, and what holds for that person.
class TAVRIN_EXPORT Session
{
public:
    virtual ~Session();

    /// The sign-on name of the person at the workstation, which uploaded files are marked with; "" by
    /// default.
    virtual QString CurrentUserId();
    /// A setting of the installation; "" when it is not there, and by default.
    virtual QString GetSetting(const QString& section, const QString& key);
    /// Whether the person has the right with this number in a module: "_Global", or a record's class name
    /// without "tv" and "BO", as in "Incident". False by default: nobody has a right that nobody gave.
    virtual bool HasPermission(const QString& module, int right);
    /// Whether the installation's records have a field. False by default.
    virtual bool FieldExists(const QString& module, const QString& table, const QString& field);
    /// Whether the installation asks for a value in a field before a record may be saved; `extra` tells apart
    /// what one field asks for. False by default.
    virtual bool IsFieldRequired(const QString& module, const QString& table, const QString& field,
                                 const QString& extra);
    /// An object to assign to another field's `Value`, which links that field to this one. Only the host's
    /// records know how: by default raises the error of what is not offered.
    virtual QVariant MakeFieldReference(const tvFieldPtr& field);
};

/// Colours of a text box in one state: of the box, of its selected text, and of the tag in it that bears a
/// name. Controls of this library do not read the two of the selection.
struct TextBoxColorSet
{
    Color BackColor = SystemColor::WindowBackground;       ///< of the box
    Color ForeColor = SystemColor::WindowText;             ///< of the text in it
    Color BorderColor = SystemColor::ButtonFace;           ///< of the line around it
    Color SelectionBackColor = SystemColor::Highlight;     ///< behind selected text
    Color SelectionForeColor = SystemColor::HighlightText; ///< of selected text
    Color TagBackColor = SystemColor::ButtonFace;          ///< of the tag
    Color TagForeColor = SystemColor::WindowText;          ///< of the name in it
};

/// The theme's colour sets by state.
struct TextBoxColors
{
    TextBoxColorSet Normal;   ///< enabled, the focus elsewhere
    TextBoxColorSet Disabled; ///< the person cannot use it
    TextBoxColorSet Focused;  ///< the focus in it
};

/// Colours and units.
class TAVRIN_EXPORT UiServices
{
public:
    virtual ~UiServices();

    /// A shade of the colour: a factor below 1 darkens, above 1 lightens. By default system colours are
    /// shaded as the application's palette shows them; a factor of 0 or less gives the darkest shade, in
    /// which texts can still be read, and above 1 a factor of 2 lies half-way to white. Raises an `Error` for
    /// a factor that is no number.
    virtual Color ShadeColor(Color color, double factor);
    /// Scale mode by its unit's name. By default "User", "Twip", "Point", "Pixel", "Character", "Inch",
    /// "Millimeter", "Centimeter", in any case and also in the plural; raises an `Error` for any other name.
    virtual ScaleMode ScaleModeFromUnits(const QString& units);
    /// By default those of a light theme, or of a dark one where the application's palette is dark.
    virtual tavrin::TextBoxColors TextBoxColors();

protected:
    /// The colours of the two themes, for a host that chooses between them itself.
    static tavrin::TextBoxColors lightColors();
    static tavrin::TextBoxColors darkColors();
};

/// Fills the lists of widgets, and fits pictures into them.
class TAVRIN_EXPORT ListFilling
{
public:
    /// Lists the code tables of the host that is installed on the thread.
    ListFilling();
    /// Lists the code tables of this host, which must outlive it.
    explicit ListFilling(Host& host);
    virtual ~ListFilling();

    /// Fills a combo with a first empty row and the table's values, the code as item data. With `flag`
    /// inactive values are listed too; `value` stays in the list although inactive. The row of `value`
    /// becomes the current one when it is in the list. By default with what `listedValues` gives.
    virtual void FillTableCombo(TableNumber table, DropdownTarget& combo, bool flag, const QVariant& value,
                                bool reserved);
    /// Fills a grid combo the same way, but for the current row, which stays with the caller: short text,
    /// long text, code, and the active flag, "1" for a code in use. Row 1 is empty.
    virtual void FillTableGrid(TableNumber table, GridCombo& combo, bool flag, const QVariant& value,
                               bool reserved);
    /// A new picture, fitted into a box of this size in pixels. By default the whole picture in the middle of
    /// the box, scaled with its proportions; the rest shows the back colour. Without `flag` a small picture
    /// is not enlarged. A null image for a null picture or an empty box. `mode` is not read.
    virtual QImage FitPicture(const QImage& picture, int height, int width, int mode, bool flag,
                              Color backColor, bool reserved);

protected:
    /// What a list of a code table shows, in the table's order: its values in use, the others only when asked
    /// for, and `value` in any case. By default from the host's `HostServices::GetTableValues`, which is
    /// asked once, and once more where inactive values may stand in the list. A host whose tables tell at
    /// once which values are in use overrides this.
    virtual QList<ListedValue> listedValues(TableNumber table, bool includeInactive, const QVariant& value);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// Pictures from files that nobody vouches for.
class TAVRIN_EXPORT Images
{
public:
    virtual ~Images();
    /// Whether the file is a picture that is shown, by its name alone. By default True for the endings png,
    /// jpg, jpeg, gif and bmp, in any case.
    virtual bool IsImageFile(const QString& fileName);
    /// The picture in a local file; raises an `Error` when it cannot be shown. By default it names the file
    /// when that is missing, longer than 64 MB, of no known format by its content, of more than 50 million
    /// pixels, or damaged; all but the last is found before anything is decoded.
    virtual QImage LoadPicture(const QString& path);
};

/// Places on the workstation, and error numbers.
class TAVRIN_EXPORT Environment
{
public:
    /// Numbers of the host's own errors count from here by default.
    static constexpr int FirstErrorNumber = -2147221504;

    virtual ~Environment();

    /// The workstation's folder for the dictionaries of the spell check, without a separator at its end. By
    /// default raises the error of what is not offered.
    virtual QString GetDictionaryFolder();
    /// Brings a named support file up to date in that folder. By default leaves it as it is.
    virtual void RefreshSupportFile(const QString& name);
    /// The host's error number for a code of its own; `FirstErrorNumber` + `code` by default.
    virtual int GetErrorNumber(int code);
    /// The person's folder for downloaded files; by default the platform's own. The folder is made when it is
    /// missing; raises an `Error` when that fails.
    virtual QString GetDownloadsFolder();

protected:
    /// The folder without a separator at its end, made when it is missing. Raises an `Error` when that fails,
    /// which calls it by `name`, as in "The Downloads folder".
    static QString madeFolder(const QString& path, const QString& name);
};

} // namespace tavrin
