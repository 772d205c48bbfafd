#ifndef TVBOUNDCONTROLS_H
#define TVBOUNDCONTROLS_H

/**
 * @file TVBoundControls.h
 * The bound controls for programs that know nothing of them but their names, in C99.
 *
 * A program finds the library through the file in which it has registered itself, makes controls by their
 * class names, and drives them by the names of their properties, operations, events and contracts:
 *
 *     const TvLibrary *library;
 *     const TvClassObject *agencies;
 *     TvControl agency;
 *     if (TvLoad("TVBoundControls.AgencyPicker", &library, &agencies) == TV_S_OK
 *         && agencies->Create(agencies, NULL, &agency) == TV_S_OK) {
 *         agencies->Show(agency, 1);
 *         library->Run();
 *         agencies->Destroy(agency);
 *         library->EndApplication();
 *     }
 *
 * **Results.** Every function returns a TvResult: TV_S_OK or TV_S_FALSE, or a negative code;
 * TvLibrary::LastError then tells more. Nothing is ever thrown through a function, and a callback must throw
 * nothing either. Each function that takes a pointer answers TV_E_POINTER to a null one unless its comment
 * says what null means; each that takes a handle answers TV_E_HANDLE to one whose object is not there any
 * more; each that takes a text answers TV_E_INVALIDARG to one that is no UTF-8; each may answer
 * TV_E_OUTOFMEMORY and, for a failure of its own, TV_E_FAIL.
 *
 * **Threads.** Controls live on one thread: that of the application object, which is the first to create a
 * control where the program has none yet. On another thread the functions of controls, records, application
 * and host answer TV_E_WRONGTHREAD. The entry points, LastError, RaiseError and the functions of values may
 * be called on any thread. LastError, the host and the handler of unhandled errors belong to the thread.
 *
 * **Texts** are UTF-8 and end with a zero byte. Names of members, operations and events are compared without
 * case; class names and names of interfaces are compared exactly.
 *
 * **Ownership.** What a caller passes in stays the caller's and is copied where it is kept. A TvVariant that
 * a function fills is overwritten, whatever it held, and is the caller's, who ends it with
 * TvLibrary::VariantClear. Inside a callback arguments belong to the library, and end with the callback; what
 * the callback answers it puts there with SetText, SetPicture, SetFont and SetList, or as a plain number, and
 * the library clears it. Texts that a structure of the library points to stay valid as long as the library is
 * loaded, where nothing else is said.
 */

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#define TV_EXPORT __declspec(dllexport)
#else
#define TV_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** What every function returns: 0 or more for a success, one of the negative codes for a failure. */
typedef int32_t TvResult;

#define TV_S_OK 0                             /**< done */
#define TV_S_FALSE 1                          /**< no failure, and the answer is no */
#define TV_E_NOTIMPL (-2147467263)            /**< 80004001: the platform cannot do it */
#define TV_E_NOINTERFACE (-2147467262)        /**< 80004002: no such interface or contract */
#define TV_E_POINTER (-2147467261)            /**< 80004003: a pointer is null */
#define TV_E_FAIL (-2147467259)               /**< 80004005: a failure of its own; LastError tells it */
#define TV_E_UNEXPECTED (-2147418113)         /**< 8000FFFF: not in this state */
#define TV_E_WRONGTHREAD (-2147417842)        /**< 8001010E: not the thread that the controls live on */
#define TV_E_MEMBERNOTFOUND (-2147352573)     /**< 80020003: no such property, operation or event */
#define TV_E_TYPEMISMATCH (-2147352571)       /**< 80020005: a value of another type */
#define TV_E_EXCEPTION (-2147352567)          /**< 80020009: the member raised an error */
#define TV_E_OVERFLOW (-2147352566)           /**< 8002000A: a number out of range */
#define TV_E_BADPARAMCOUNT (-2147352562)      /**< 8002000E: too few or too many arguments */
#define TV_E_CANNOTWRITE (-2147287011)        /**< 8003001D: the file of registrations */
#define TV_E_CLASSNOTAVAILABLE (-2147221231)  /**< 80040111: the library has no such class */
#define TV_E_CLASSNOTREGISTERED (-2147221164) /**< 80040154: nobody has registered the class */
#define TV_E_REGISTRATION (-2147220991)       /**< 80040201: the file of registrations cannot be read */
#define TV_E_VERSION (-2147220990)            /**< 80040202: the library is of another version */
#define TV_E_ACCESSDENIED (-2147024891)       /**< 80070005: the property is read-only */
#define TV_E_HANDLE (-2147024890)             /**< 80070006: no such control, object or record any more */
#define TV_E_LIBRARY (-2147024770)            /**< 8007007E: the registered library cannot be loaded */
#define TV_E_OUTOFMEMORY (-2147024882)        /**< 8007000E: there is no memory */
#define TV_E_INVALIDARG (-2147024809) /**< 80070057: text that is no UTF-8 or no JSON, a negative count */

/** Stands for a control, another object or a record. 0 is none. One whose object has died, by Destroy or
    by its parent's end, is refused with TV_E_HANDLE, and its number never comes back. */
typedef uint64_t TvHandle;
typedef TvHandle TvControl; /**< a handle of a control */
typedef TvHandle TvRecord;  /**< a handle of a record or of a collection of rows */

/** What a TvVariant holds, as its `type`. */
enum
{
    TV_EMPTY = 0,    /**< no value at all */
    TV_NULL = 1,     /**< the value Null: nothing is chosen, or the field is empty */
    TV_LONG = 3,     /**< `value.integer` */
    TV_DOUBLE = 5,   /**< `value.number` */
    TV_TEXT = 8,     /**< `value.text`; also an integer of more digits than a double holds, and a moment as in
                          "2024-01-31T10:15:00" */
    TV_OBJECT = 9,   /**< `value.object`, 0 for none */
    TV_BOOLEAN = 11, /**< `value.boolean`: 0 is False, all else True */
    TV_COLOR = 100,  /**< `value.color`: 0x00BBGGRR, or 0x80000000 + the index of a system colour */
    TV_FONT = 101,   /**< `value.font` */
    TV_PICTURE = 102, /**< `value.picture`, or a null pointer for none */
    TV_LIST = 103     /**< `value.list` */
};

/** A font. */
typedef struct TvFont
{
    const char* name;      /**< the family's */
    double size;           /**< in points */
    int32_t weight;        /**< 100 to 900; 400 is normal, 700 bold */
    int32_t charset;       /**< number of the character set; 1 leaves it to the platform */
    int32_t italic;        /**< not 0 for italic */
    int32_t underline;     /**< not 0 for underlined */
    int32_t strikethrough; /**< not 0 for struck through */
} TvFont;

/** The bytes of a PNG file. */
typedef struct TvPicture
{
    const unsigned char* data; /**< the first of them */
    uint64_t length;           /**< their number */
} TvPicture;

struct TvList;

/** A value: 16 bytes. One of all zeros is Empty and needs no clearing. */
typedef struct TvVariant
{
    int32_t type;     /**< one of TV_EMPTY to TV_LIST: which of `value` holds */
    int32_t reserved; /**< 0 */
    /** What a TvVariant holds; its `type` says which of these. */
    union TvValue {
        int32_t boolean;          /**< 0 is False, all else True */
        int32_t integer;          /**< 32 bits */
        double number;            /**< a number with a fraction, or beyond 32 bits */
        uint32_t color;           /**< 0x00BBGGRR, or 0x80000000 + the index of a system colour */
        TvHandle object;          /**< 0 for none */
        const char* text;         /**< never null */
        const TvFont* font;       /**< never null */
        const TvPicture* picture; /**< null for none */
        struct TvList* list;      /**< never null */
    } value;                      /**< the value itself */
} TvVariant;

/** Values in their order. */
typedef struct TvList
{
    int32_t count;    /**< number of the items */
    TvVariant* items; /**< the first of them */
} TvList;

/** A failure. */
typedef struct TvError
{
    TvResult result;    /**< the code that the function has returned */
    int32_t number;     /**< of the error that a member or the host has raised, 5 being the ordinary one */
    const char* source; /**< what has raised it; "" where that is not said */
    const char* description; /**< for a person; "" when nothing has failed yet */
} TvError;

/** What a member of a class is, as the `kind` of a TvMember. */
enum
{
    TV_PROPERTY = 1,  /**< for Get, and for Put unless it is read-only */
    TV_OPERATION = 2, /**< for Call */
    TV_EVENT = 3      /**< for Subscribe */
};

/** A public member of a class. */
typedef struct TvMember
{
    int32_t kind;           /**< TV_PROPERTY, TV_OPERATION or TV_EVENT */
    int32_t readOnly;       /**< of a property: not 0 when it cannot be put */
    int32_t parameterCount; /**< of an operation or event */
    int32_t reserved;       /**< 0 */
    const char* name;       /**< as in "FullText" */
    const char* type; /**< "Boolean", "Long", "String", "Variant", "Color", "Font", "Picture" or "Object"; of
                           an operation without a result and an event "" */
    const char* parameters; /**< as in "OfficerNo As Long, ByRef Exclude As Boolean" */
} TvMember;

/**
 * Where a new control stands, as the `parentKind` of a TvSite.
 *
 * In a window of the platform's the control keeps the place that Move gives it, whatever becomes of the size
 * of that window. On X11 it gets the keys while that window has the keyboard and the pointer is over the
 * control, and wherever the pointer is once the window's program hands it the keyboard (XSetInputFocus for
 * the inner window); it never takes the keyboard itself. Its lists and dialogs are windows of their own,
 * which the window manager does not keep above that window. When that window ends, the control is no longer
 * seen; it can still be driven, Run goes on, and Destroy is the caller's as ever.
 */
enum
{
    TV_PARENT_NONE = 0,    /**< in a window of its own, which the library makes, hidden until Show */
    TV_PARENT_NATIVE = 1,  /**< in the window with this handle of the platform's, such as an X11 window, which
                                may be another program's; TV_E_NOTIMPL where the platform cannot embed,
                                TV_E_HANDLE for a number that is no window's on X11, while another platform
                                may not tell */
    TV_PARENT_CONTROL = 2, /**< beside another control, whose handle this is, in the same window or parent */
    TV_PARENT_QWIDGET = 3  /**< on a QWidget, for programs that use Qt, and this library's Qt */
};

/** What a new control is given. The texts are copied. */
typedef struct TvSite
{
    uint32_t size;      /**< sizeof(TvSite) */
    int32_t parentKind; /**< TV_PARENT_NONE and so on */
    uint64_t parent;    /**< what the kind says; not looked at for TV_PARENT_NONE */
    const char* name;   /**< the instance's name, or null */
    const char* saved;  /**< saved properties, from SavedProperties; null for a new control */
    int32_t designTime; /**< not 0: the control shows only itself and leaves the host's lists alone */
} TvSite;

/**
 * Answers an event, on the thread of the control. Arguments by reference, such as Exclude of Filter, may be
 * overwritten. A result that is no success goes, with what RaiseError has noted, to the handler of unhandled
 * errors. The callback may unsubscribe, and destroy the control. `arguments` and `event` are the library's,
 * and end with the callback; `context` is what Subscribe was given.
 */
typedef TvResult (*TvEventCall)(TvControl control, const char* event, TvVariant* arguments,
                                int32_t argumentCount, void* context);

/**
 * Does an operation of the host's services. TV_E_MEMBERNOTFOUND for one that it does not offer: the controls
 * then get what a host has by default, or an error where there is no answer without a host. Any other failure
 * is raised to the control, with what RaiseError has noted. `result` is Empty at first, and the library
 * clears it; all else is the library's, and ends with the callback. A code table is best offered by
 * GetTableValues, from which lists are filled by default; the two of ListFilling tell at once what is in use.
 * An answer of another type or shape than the table says is error 13, raised to the control.
 *
 * | service | operation and arguments | result |
 * |---|---|---|
 * | "HostServices" | GetTableValues(table, includeInactive) | text: JSON, as below |
 * | | DateDisplayFormat() | text |
 * | | SyncCustomDictionaryFile(), NotifyFileUploaded() | |
 * | "Session" | CurrentUserId() | text |
 * | | GetSetting(section, key) | text |
 * | | HasPermission(module, right) | Boolean |
 * | | FieldExists(module, table, field) | Boolean |
 * | | IsFieldRequired(module, table, field, extra) | Boolean |
 * | "UiServices" | ShadeColor(color, factor) | colour |
 * | | ScaleModeFromUnits(units) | Long |
 * | | TextBoxColors() | text: JSON {"Normal": {"BackColor": number, ...}, "Disabled": ..., "Focused": ...} |
 * | "ListFilling" | FillTableCombo(table, includeInactive, value) | text: JSON, as below |
 * | | FillTableGrid(table, includeInactive, value) | text: JSON, as below |
 * | | FitPicture(picture, height, width, mode, flag, backColor) | picture |
 * | "Images" | IsImageFile(name) | Boolean |
 * | | LoadPicture(path) | picture |
 * | "Environment" | GetDictionaryFolder(), GetDownloadsFolder() | text |
 * | | RefreshSupportFile(name) | |
 * | | GetErrorNumber(code) | Long |
 * | "TableCodeCache" | Document(table) | text: XML |
 * | | GetDescription(table, code) | text |
 * | "EmployeeListCache", "OffenseListCache" | Document() | text: XML |
 * | | ShortText(number), FullText(number) | text |
 * | "UsersCache" | Document() | text: XML |
 * | | UserDisplayName(userId) | text |
 * | "ThumbnailService" | GetThumbnailPath(path) | text, or Empty |
 * | "AttachmentFolders" | GetFolderPath(folderNo) | text |
 * | "CustomDictionary" | AddWord(word) | |
 * | "Downloader" | Download(path) | text: path of the temporary copy |
 * | "Uploader" | Upload(source, destination) | |
 * | "NIBRS.Singletons" | GetNibrsOffenseCodeList() | text: JSON [["13A", "Aggravated Assault"], ...] |
 *
 * Values of a code table: [{"ID": "1", "DisplayText": "...", "Value": 1, "Active": true}, ...]. A text that
 * is left out or null is "", and a value without "Active" is in use; GetTableValues leaves out those that are
 * not, unless they are asked for.
 */
typedef TvResult (*TvHostCall)(const char* service, const char* operation, const TvVariant* arguments,
                               int32_t argumentCount, TvVariant* result, void* context);

/**
 * Hears of failures that no caller can be told of, such as those of an action of the person. `where` names
 * the routine. Both texts are the library's, and end with the callback; `context` is what SetUnhandled was
 * given.
 */
typedef void (*TvUnhandledCall)(const TvError* error, const char* where, void* context);

/** Class name by which DllGetClassObject gives the TvLibrary: what belongs to no class. */
#define TV_LIBRARY_CLASS "TVBoundControls.Library"
/** Interface name by which DllGetClassObject gives the TvLibrary. */
#define TV_LIBRARY_INTERFACE "TvLibrary"

/** What belongs to no class: failures, values, the application, the host, records. */
typedef struct TvLibrary
{
    uint32_t size;    /**< in bytes; functions beyond it are not there */
    uint32_t version; /**< always 1: another number would be another structure, while a newer library of
                           this one may only have a longer one */

    /** The last failure on this thread. The error's texts stay valid until the thread's next call of the
        library. */
    TvResult (*LastError)(TvError* error);
    /** Notes what a callback fails with and returns TV_E_EXCEPTION, for the callback to return. Null
        texts count as "". */
    TvResult (*RaiseError)(int32_t number, const char* source, const char* description);
    /** The handler of unhandled errors of this thread, in place of the one before. Null ends it: failures
        are then printed as warnings. */
    TvResult (*SetUnhandled)(TvUnhandledCall call, void* context);

    /** Ends what the variant holds, texts and lists with all that is in them, and makes it Empty. For
        variants that the library has filled only. */
    TvResult (*VariantClear)(TvVariant* variant);
    /** Clears the variant and puts a copy of the text. The variant stays as it was on failure. */
    TvResult (*SetText)(TvVariant* variant, const char* text);
    /** Clears the variant and puts a copy of a PNG file's bytes; `png` may be null when there are none,
        which is no picture. */
    TvResult (*SetPicture)(TvVariant* variant, const unsigned char* png, uint64_t length);
    /** Clears the variant and puts a copy of the font; a null name counts as "". */
    TvResult (*SetFont)(TvVariant* variant, const TvFont* font);
    /** Clears the variant and puts a list of `count` times Empty, for the caller to fill; clearing the
        list clears what is in it. TV_E_INVALIDARG for a negative count. */
    TvResult (*SetList)(TvVariant* variant, int32_t count);

    /** Makes the application object where there is none, as Create does; it is the library's. TV_S_FALSE
        where there is one, TV_E_UNEXPECTED where the program's own cannot show windows, TV_E_FAIL without
        a display. (Where a display is named that cannot be reached, the platform's layer ends the
        program.) */
    TvResult (*StartApplication)(void);
    /** Destroys the controls that are left and the application object that the library has made.
        TV_S_FALSE when it has made none, TV_E_UNEXPECTED inside Run or a callback. */
    TvResult (*EndApplication)(void);
    /** Waits for events for at most so many milliseconds, 0 for not at all, and handles those that came.
        Starts the application as StartApplication does; TV_E_INVALIDARG for a negative time. */
    TvResult (*ProcessEvents)(int32_t milliseconds);
    /** Handles events, and returns when Quit is called or the last window closes. Starts the application
        as StartApplication does; TV_E_UNEXPECTED inside itself. */
    TvResult (*Run)(void);
    /** Ends Run, which returns as soon as the callback that calls this has ended. */
    TvResult (*Quit)(void);

    /** The host of this thread, in place of the one that this function has set before. Null ends it, and
        the host before is back. TV_E_UNEXPECTED while the host is being asked. */
    TvResult (*SetHost)(TvHostCall call, void* context);
    /** Tells the controls that the host has reloaded its caches. TV_E_UNEXPECTED without a host,
        TV_E_EXCEPTION for what a control raises. */
    TvResult (*RaiseCacheRefreshed)(void);

    /**
     * Reads a record or a collection from JSON, for contracts to take. The handle is the caller's, who gives
     * it back with ReleaseRecord. TV_E_INVALIDARG for what is none; LastError tells what is wrong with it.
     *
     * A record:
     *
     *     {"className": "tvIncidentBO", "children": {"Attachments": COLLECTION, "Location": ROW, ...},
     *      "parent": RECORD}
     *
     * The parent is what GetParentObject gives; without one, that is the record whose child it is. The names
     * of children differ in more than case. Where only a collection is wanted, it is the record.
     *
     * A row:
     *
     *     {"fields": {"SeqNo": 1, "FileName": null, ...}, "isNew": false, "columns": COLUMNS}
     *
     * A row without columns has its fields in the order of their names. A moment is
     * {"date": "2024-01-31T10:15:00"}, also with milliseconds. Integers keep all digits of 64 bits.
     *
     * A collection:
     *
     *     {"key": "SeqNo", "columns": COLUMNS, "rows": [ROW, ...], "position": 1, "primary": 1}
     *
     * The primary is a value of the key or null; one that no row has becomes null. It has at most 32767 rows.
     * New rows have the columns; without columns, those of the first row. COLUMNS, of which each may also be
     * just its name:
     *
     *     [{"name": "SeqNo", "isKey": true, "maxLength": 0, "isLink": false}, ...]
     */
    TvResult (*NewRecord)(const char* json, TvRecord* record);
    /** The record as it is now, in the form that NewRecord reads. TV_E_NOINTERFACE for a handle that is
        no record's, TV_E_TYPEMISMATCH for a value that no text can hold. */
    TvResult (*RecordText)(TvRecord record, TvVariant* json);
    /** Gives the handle back; a control that shows the record keeps it. TV_E_NOINTERFACE for a handle
        that is no record's. */
    TvResult (*ReleaseRecord)(TvRecord record);

    /** Name of a class, counted from 0. TV_S_FALSE behind the last, and `name` is null. */
    TvResult (*ClassName)(int32_t index, const char** name);
} TvLibrary;

/** Interface name by which DllGetClassObject gives the TvClassObject of a class. */
#define TV_CLASS_INTERFACE "TvClassObject"

typedef struct TvClassObject TvClassObject;
/** A class of controls, by its class name and TV_CLASS_INTERFACE. */
struct TvClassObject
{
    uint32_t size;                  /**< in bytes; functions beyond it are not there */
    uint32_t version;               /**< 1, as that of TvLibrary */
    const char* className;          /**< as in "TVBoundControls.AgencyPicker" */
    const char* typeLibrary;        /**< "Tavrin Bound User Controls" */
    const char* typeLibraryVersion; /**< "1.0" */
    const char* defaultInterface;   /**< as in "_AgencyPicker" */
    const char* eventInterface;     /**< as in "__AgencyPicker"; "" without events */
    const char* contract;           /**< "TavrinControl", "BoundControl", "BoundSection" or "" */
    int32_t memberCount;            /**< number of the members */

    /** A member of the class, counted from 0: its properties, its operations, its events, each in the
        published order. The texts stay valid as long as the library is loaded. TV_S_FALSE behind the
        last. TV_E_HANDLE for what is no class object. */
    TvResult (*Member)(const TvClassObject* self, int32_t index, TvMember* member);

    /** A new control of the class. Without a site it stands in a window of its own. Starts the
        application where there is none, and fails as StartApplication does. TV_E_HANDLE for a parent that
        is not there, TV_E_NOINTERFACE for one that is no control, TV_E_NOTIMPL for a window of the
        platform where it cannot embed, TV_E_INVALIDARG for a site without its size, a kind of parents
        that is none, a name that is no UTF-8 and saved properties that are no JSON object,
        TV_E_EXCEPTION for what the control or its host raises. The control's owner is its parent; Destroy
        ends it before. A window of its own ends with the last control in it. */
    TvResult (*Create)(const TvClassObject* self, const TvSite* site, TvControl* control);

    /** Ends a control of any class, and its subscriptions, as all functions from here on take one of any
        class. One that is destroyed inside an event of a control disappears at once and ends behind the
        event. TV_E_NOINTERFACE for a handle that is no control's. */
    TvResult (*Destroy)(TvControl control);
    /** Shows the control, and its window if that is one of the library's; or hides them. TV_E_NOINTERFACE
        for a handle that is no control's. */
    TvResult (*Show)(TvControl control, int32_t visible);
    /** Place and size in pixels of the parent; a control in a window of its own moves and sizes that
        window. TV_E_INVALIDARG for a negative size, TV_E_NOINTERFACE for a handle that is no control's.
        */
    TvResult (*Move)(TvControl control, int32_t x, int32_t y, int32_t width, int32_t height);
    /** The title of the control's window. TV_E_UNEXPECTED when that is none of the library's own,
        TV_E_NOINTERFACE for a handle that is no control's. */
    TvResult (*SetTitle)(TvControl control, const char* title);

    /** The value of a property; it is the caller's, who clears it. TV_E_MEMBERNOTFOUND, and
        TV_E_EXCEPTION for what the property raises. Takes other objects too, that a property has given.
        */
    TvResult (*Get)(TvHandle object, const char* property, TvVariant* value);
    /** Puts a property. Values are converted as far as that loses nothing of their sense: a text "12" is
        a Long 12, and a Long is a colour. TV_E_MEMBERNOTFOUND, TV_E_ACCESSDENIED for a property that is
        read-only, TV_E_TYPEMISMATCH, TV_E_OVERFLOW, and TV_E_EXCEPTION for what the property raises.
        Takes other objects too. */
    TvResult (*Put)(TvHandle object, const char* property, const TvVariant* value);
    /** Calls an operation. `arguments` may be null when there are none, `result` when it is not wanted;
        it may be one of the arguments, which are read before, and a result is the caller's.
        TV_E_MEMBERNOTFOUND, TV_E_BADPARAMCOUNT, TV_E_INVALIDARG for a negative count, TV_E_TYPEMISMATCH,
        TV_E_OVERFLOW, and TV_E_EXCEPTION for what the operation raises. Takes other objects too. */
    TvResult (*Call)(TvHandle object, const char* operation, const TvVariant* arguments,
                     int32_t argumentCount, TvVariant* result);
    /** Has an event answered until Unsubscribe or the object's end. `cookie` becomes what Unsubscribe
        wants; it may be null. "PropertyChanged", by which a control tells that it must be saved again, is
        an event of every control. TV_E_MEMBERNOTFOUND. Takes other objects too. */
    TvResult (*Subscribe)(TvHandle object, const char* event, TvEventCall call, void* context,
                          uint64_t* cookie);
    /** Ends a subscription. TV_S_FALSE when the object has no such one. */
    TvResult (*Unsubscribe)(TvHandle object, uint64_t cookie);

    /** The saved properties as a JSON object of those that differ from their defaults; the text is the
        caller's. TV_E_NOINTERFACE for a handle that is no control's, TV_E_EXCEPTION for what a property
        raises. */
    TvResult (*SavedProperties)(TvControl control, TvVariant* json);
    /** Puts saved properties, and the default where one is missing. TV_E_INVALIDARG for what is no JSON
        object, TV_E_NOINTERFACE for a handle that is no control's. A property that fails is passed over,
        or is TV_E_EXCEPTION, as the class has it. */
    TvResult (*RestoreProperties)(TvControl control, const char* json);

    /**
     * Calls the class's contract. Records and rows are objects from NewRecord, or texts of JSON; `arguments`
     * may be null when there are none, `result` when it is not wanted; it may be one of the arguments, which
     * are read before. A result is the caller's.
     *
     * | contract | operation | result |
     * |---|---|---|
     * | TavrinControl | GetValue() | the value |
     * | | SetValue(value, usedValues): the latter a list, or left out | |
     * | BoundControl | FillControl(binding, ignored, rows) | |
     * | | SetValue(binding, ignored, rows) | text: the rows as JSON |
     * | BoundSection | ReadData(record) | |
     * | | WriteData(record): without argument the record that ReadData had last | text: the record as JSON |
     *
     * The binding is a text {"FieldName": "...", "TableNo": 7}. TV_E_EXCEPTION for what the control raises,
     * by which it also refuses the save; TV_E_NOINTERFACE for a control without a contract,
     * TV_E_MEMBERNOTFOUND for an operation of another one, TV_E_BADPARAMCOUNT, TV_E_TYPEMISMATCH for an
     * argument or a part of the binding of another kind, TV_E_INVALIDARG for JSON that is no record and for a
     * negative count.
     */
    TvResult (*Contract)(TvControl control, const char* operation, const TvVariant* arguments,
                         int32_t argumentCount, TvVariant* result);

    /** For programs that use Qt: the QObject behind a handle, which stays its owner's. TV_E_NOINTERFACE
        for a record. */
    TvResult (*QtObject)(TvHandle object, void** qobject);
    /** For programs that use Qt: a handle for any QObject on this thread, which stays its owner's. It is the
        same as long as the object lives. */
    TvResult (*HandleOf)(void* qobject, TvHandle* object);
};

/** Enters the classes into the user's file of registrations, in place of what it or another library has
    entered for them. TV_E_REGISTRATION for a file that is damaged or cannot be read, which stays as it is;
    TV_E_CANNOTWRITE, also while another program holds the file. */
TV_EXPORT TvResult DllRegisterServer(void);
/** Takes what this library has entered out of the file, also under another name of its own file; TV_S_OK
    also when that is nothing.
    TV_E_REGISTRATION and TV_E_CANNOTWRITE as DllRegisterServer. */
TV_EXPORT TvResult DllUnregisterServer(void);
/** The class or the library by its name and its interface: `*object` becomes a `const TvClassObject *` or
    `const TvLibrary *`, which stays valid as long as the library is loaded, and is the library's; null on
    failure. TV_E_CLASSNOTAVAILABLE for a class that the library does not have, TV_E_NOINTERFACE for an
    interface that the class does not have. */
TV_EXPORT TvResult DllGetClassObject(const char* className, const char* interfaceName, void** object);
/** TV_S_OK when the library may be unloaded; TV_S_FALSE while a control, a dialog, a running timer, a
    call or an application object of the library lives. The caller must also have cleared the values that
    it got. */
TV_EXPORT TvResult DllCanUnloadNow(void);

#ifdef __cplusplus
}
#endif

/* The loader, for C and C++ programs of platforms with dlopen; not where TV_NO_LOADER is defined. */
#if !defined(TV_NO_LOADER)
#include "component/TVBoundControlsLoader.h"
#endif

#endif
