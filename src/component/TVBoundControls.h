#ifndef TVBOUNDCONTROLS_H
#define TVBOUNDCONTROLS_H

/*
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
 * Results. Every function returns a TvResult: TV_S_OK or TV_S_FALSE, or a negative code; LastError then tells
 * more. Nothing is ever thrown through a function, and a callback must throw nothing either. Each function
 * that takes a pointer answers TV_E_POINTER to a null one unless its comment says what null means; each may
 * answer TV_E_OUTOFMEMORY and, for a failure of its own, TV_E_FAIL.
 *
 * Threads. Controls live on one thread: that of the application object, which is the first to create a
 * control where the program has none yet. On another thread the functions of controls, records, application
 * and host answer TV_E_WRONGTHREAD. The entry points, LastError, RaiseError and the functions of values may
 * be called on any thread. LastError and the host belong to the thread.
 *
 * Texts are UTF-8 and end with a zero byte. Names of members, operations and events are compared without
 * case; class names and names of interfaces are compared exactly.
 *
 * Ownership. What a caller passes in stays the caller's and is copied where it is kept. A TvVariant that a
 * function fills is overwritten, whatever it held, and is the caller's, who ends it with VariantClear. Inside
 * a callback arguments belong to the library, and end with the callback; what the callback answers it puts
 * there with SetText, SetPicture, SetFont and SetList, or as a plain number, and the library clears it. Texts
 * that a structure of the library points to stay valid as long as the library is loaded, where nothing else
 * is said.
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

typedef int32_t TvResult;

#define TV_S_OK 0
#define TV_S_FALSE 1                          /* no failure, and the answer is no */
#define TV_E_NOTIMPL (-2147467263)            /* 80004001: the platform cannot do it */
#define TV_E_NOINTERFACE (-2147467262)        /* 80004002: no such interface or contract */
#define TV_E_POINTER (-2147467261)            /* 80004003: a pointer is null */
#define TV_E_FAIL (-2147467259)               /* 80004005 */
#define TV_E_UNEXPECTED (-2147418113)         /* 8000FFFF: not in this state */
#define TV_E_WRONGTHREAD (-2147417842)        /* 8001010E */
#define TV_E_MEMBERNOTFOUND (-2147352573)     /* 80020003: no such property, operation or event */
#define TV_E_TYPEMISMATCH (-2147352571)       /* 80020005: a value of another type */
#define TV_E_EXCEPTION (-2147352567)          /* 80020009: the member raised an error */
#define TV_E_OVERFLOW (-2147352566)           /* 8002000A: a number out of range */
#define TV_E_BADPARAMCOUNT (-2147352562)      /* 8002000E: too few or too many arguments */
#define TV_E_CANNOTWRITE (-2147287011)        /* 8003001D: the file of registrations */
#define TV_E_CLASSNOTAVAILABLE (-2147221231)  /* 80040111: the library has no such class */
#define TV_E_CLASSNOTREGISTERED (-2147221164) /* 80040154: nobody has registered the class */
#define TV_E_REGISTRATION (-2147220991)       /* 80040201: the file of registrations is damaged */
#define TV_E_VERSION (-2147220990)            /* 80040202: the library is of another version */
#define TV_E_ACCESSDENIED (-2147024891)       /* 80070005: the property is read-only */
#define TV_E_HANDLE (-2147024890)             /* 80070006: no such control, object or record any more */
#define TV_E_LIBRARY (-2147024770)            /* 8007007E: the registered library cannot be loaded */
#define TV_E_OUTOFMEMORY (-2147024882)        /* 8007000E */
#define TV_E_INVALIDARG (-2147024809) /* 80070057: text that is no UTF-8 or no JSON, a negative count */

/* Stands for a control, another object or a record. 0 is none. One whose object has died, by Destroy or by
   its parent's end, is refused with TV_E_HANDLE, and its number never comes back. */
typedef uint64_t TvHandle;
typedef TvHandle TvControl;
typedef TvHandle TvRecord;

/* What a TvVariant holds. */
enum
{
    TV_EMPTY = 0,
    TV_NULL = 1,
    TV_LONG = 3,      /* value.integer */
    TV_DOUBLE = 5,    /* value.number */
    TV_TEXT = 8,      /* value.text */
    TV_OBJECT = 9,    /* value.object */
    TV_BOOLEAN = 11,  /* value.boolean: 0 is False, all else True */
    TV_COLOR = 100,   /* value.color: 0x00BBGGRR, or 0x80000000 + the index of a system colour */
    TV_FONT = 101,    /* value.font */
    TV_PICTURE = 102, /* value.picture, or a null pointer for none */
    TV_LIST = 103     /* value.list */
};

typedef struct TvFont
{
    const char* name;
    double size;    /* points */
    int32_t weight; /* 100 to 900; 400 is normal, 700 bold */
    int32_t charset;
    int32_t italic, underline, strikethrough;
} TvFont;

/* The bytes of a PNG file. */
typedef struct TvPicture
{
    const unsigned char* data;
    uint64_t length;
} TvPicture;

struct TvList;

/* 16 bytes. One of all zeros is Empty and needs no clearing. */
typedef struct TvVariant
{
    int32_t type;
    int32_t reserved; /* 0 */
    union {
        int32_t boolean;
        int32_t integer;
        double number;
        uint32_t color;
        TvHandle object;
        const char* text;
        const TvFont* font;
        const TvPicture* picture;
        struct TvList* list;
    } value;
} TvVariant;

typedef struct TvList
{
    int32_t count;
    TvVariant* items;
} TvList;

/* The last failure on this thread. */
typedef struct TvError
{
    TvResult result;
    int32_t number; /* of the error that a member or the host has raised, 5 being the ordinary one */
    const char* source;
    const char* description; /* "" when nothing has failed yet */
} TvError;

/* A public member of a class. */
enum
{
    TV_PROPERTY = 1,
    TV_OPERATION = 2,
    TV_EVENT = 3
};

typedef struct TvMember
{
    int32_t kind;
    int32_t readOnly;       /* of a property */
    int32_t parameterCount; /* of an operation or event */
    int32_t reserved;
    const char* name;
    const char* type; /* "Boolean", "Long", "String", "Variant", "Color", "Font", "Picture" or "Object"; of an
                         operation without a result and an event "" */
    const char* parameters; /* as in "OfficerNo As Long, ByRef Exclude As Boolean" */
} TvMember;

/* Where a new control stands.

   In a window of the platform's the control keeps the place that Move gives it, whatever becomes of the size
   of that window. On X11 it gets the keys while that window has the keyboard and the pointer is over the
   control, and wherever the pointer is once the window's program hands it the keyboard (XSetInputFocus for
   the inner window); it never takes the keyboard itself. Its lists and dialogs are windows of their own,
   which the window manager does not keep above that window. When that window ends, the control is no longer
   seen; it can still be driven, Run goes on, and Destroy is the caller's as ever. */
enum
{
    TV_PARENT_NONE = 0,    /* in a window of its own, which the library makes, hidden until Show */
    TV_PARENT_NATIVE = 1,  /* in the window with this handle of the platform's, such as an X11 window, which
                              may be  another program's; TV_E_NOTIMPL where the platform cannot embed */
    TV_PARENT_CONTROL = 2, /* beside another control, whose handle this is, in the same window or parent */
    TV_PARENT_QWIDGET = 3  /* on a QWidget, for programs that use Qt, and this library's Qt */
};

typedef struct TvSite
{
    uint32_t size; /* sizeof(TvSite) */
    int32_t parentKind;
    uint64_t parent;
    const char* name;   /* the instance's name, or null */
    const char* saved;  /* saved properties, from SavedProperties; null for a new control */
    int32_t designTime; /* not 0: the control shows only itself and leaves the host's lists alone */
} TvSite;

/* Answers an event. Arguments by reference, such as Exclude of Filter, may be overwritten. A result that is
   no success goes, with what RaiseError has noted, to the handler of unhandled errors. The callback may
   unsubscribe, and destroy the control. */
typedef TvResult (*TvEventCall)(TvControl control, const char* event, TvVariant* arguments,
                                int32_t argumentCount, void* context);

/* Does an operation of the host's services. TV_E_MEMBERNOTFOUND for one that it does not offer: the controls
   then get what a host has by default, or an error where there is no answer without a host. Any other failure
   is raised to the control, with what RaiseError has noted. `result` is Empty at first. A code table is best
   offered by GetTableValues, from which lists are filled by default; the two of ListFilling tell at once what
   is in use.

   service             operation and arguments                    result
   "HostServices"      GetTableValues(table, includeInactive)     text: JSON, as below
                       DateDisplayFormat()                        text
                       SyncCustomDictionaryFile(), NotifyFileUploaded()
   "Session"           CurrentUserId()                            text
                       GetSetting(section, key)                   text
                       HasPermission(module, right)               Boolean
                       FieldExists(module, table, field)          Boolean
                       IsFieldRequired(module, table, field, extra)  Boolean
   "UiServices"        ShadeColor(color, factor)                  colour
                       ScaleModeFromUnits(units)                  Long
                       TextBoxColors()                            text: JSON {"Normal": {"BackColor": number,
   ...}, "Disabled": ..., "Focused": ...} "ListFilling"       FillTableCombo(table, includeInactive, value)
   text: JSON, as below FillTableGrid(table, includeInactive, value)   text: JSON, as below
                       FitPicture(picture, height, width, mode, flag, backColor)  picture
   "Images"            IsImageFile(name)                          Boolean
                       LoadPicture(path)                          picture
   "Environment"       GetDictionaryFolder(), GetDownloadsFolder()  text
                       RefreshSupportFile(name)
                       GetErrorNumber(code)                       Long
   "TableCodeCache"    Document(table)                            text: XML
                       GetDescription(table, code)                text
   "EmployeeListCache", "OffenseListCache"
                       Document()                                 text: XML
                       ShortText(number), FullText(number)        text
   "UsersCache"        Document()                                 text: XML
                       UserDisplayName(userId)                    text
   "ThumbnailService"  GetThumbnailPath(path)                     text, or Empty
   "AttachmentFolders" GetFolderPath(folderNo)                    text
   "CustomDictionary"  AddWord(word)
   "Downloader"        Download(path)                             text: path of the temporary copy
   "Uploader"          Upload(source, destination)
   "NIBRS.Singletons"  GetNibrsOffenseCodeList()                  text: JSON [["13A", "Aggravated Assault"],
   ...]

   Values of a code table: [{"ID": "1", "DisplayText": "...", "Value": 1, "Active": true}, ...]. */
typedef TvResult (*TvHostCall)(const char* service, const char* operation, const TvVariant* arguments,
                               int32_t argumentCount, TvVariant* result, void* context);

/* Hears of failures that no caller can be told of, such as those of an action of the person. */
typedef void (*TvUnhandledCall)(const TvError* error, const char* where, void* context);

/* What belongs to no class; by the class name TV_LIBRARY_CLASS and the interface name TV_LIBRARY_INTERFACE.
 */
#define TV_LIBRARY_CLASS "TVBoundControls.Library"
#define TV_LIBRARY_INTERFACE "TvLibrary"

typedef struct TvLibrary
{
    uint32_t size;    /* in bytes; functions beyond it are not there */
    uint32_t version; /* 1. Another number would be another structure; a newer library may only have a longer
                         one */

    /* Of failures. The error's texts stay valid until the thread's next call of the library. RaiseError notes
       what a callback fails with and returns TV_E_EXCEPTION, for the callback to return; null texts count as
       "". */
    TvResult (*LastError)(TvError* error);
    TvResult (*RaiseError)(int32_t number, const char* source, const char* description);
    /* Null ends the handler: failures are then printed as warnings. */
    TvResult (*SetUnhandled)(TvUnhandledCall call, void* context);

    /* Of values. VariantClear ends what the variant holds and makes it Empty; the others do that first and
       then put a copy. TV_E_INVALIDARG for a text that is no UTF-8 and for a negative count; SetList puts
       `count` times Empty. */
    TvResult (*VariantClear)(TvVariant* variant);
    TvResult (*SetText)(TvVariant* variant, const char* text);
    TvResult (*SetPicture)(TvVariant* variant, const unsigned char* png, uint64_t length);
    TvResult (*SetFont)(TvVariant* variant, const TvFont* font);
    TvResult (*SetList)(TvVariant* variant, int32_t count);

    /* Of the application. StartApplication makes the application object where there is none, as Create does,
       and is TV_S_FALSE where there is one; TV_E_UNEXPECTED where the program's own cannot show windows,
       TV_E_FAIL without a display. (Where a display is named that cannot be reached, the platform's layer
       ends the program.) EndApplication destroys the controls that are left and the object that the library
       has made; TV_S_FALSE when it has made none, TV_E_UNEXPECTED inside Run or an event. Run returns when
       Quit is called or the last window closes, and is TV_E_UNEXPECTED inside itself. ProcessEvents waits for
       events for at most so many milliseconds, 0 for not at all, and handles those that came. */
    TvResult (*StartApplication)(void);
    TvResult (*EndApplication)(void);
    TvResult (*ProcessEvents)(int32_t milliseconds);
    TvResult (*Run)(void);
    TvResult (*Quit)(void);

    /* Of the host of this thread. Null ends it, and the host before is back. RaiseCacheRefreshed tells the
       controls that the host has reloaded its caches; TV_E_UNEXPECTED without a host. */
    TvResult (*SetHost)(TvHostCall call, void* context);
    TvResult (*RaiseCacheRefreshed)(void);

    /* Of records, which contracts take. NewRecord reads one from JSON; TV_E_INVALIDARG tells what is wrong
       with it. RecordText writes it as it is now. ReleaseRecord gives the handle back; a control that shows
       the record keeps it.

       A record: {"className": "tvIncidentBO", "children": {"Attachments": COLLECTION, "Location": ROW, ...},
                  "parent": RECORD}; the parent is what GetParentObject gives, and is not needed.
       The names of children differ in more than case.
       A row: {"fields": {"SeqNo": 1, "FileName": null, ...}, "isNew": false, "columns": COLUMNS}. A row
       without columns has its fields in the order of their names. A collection: {"key": "SeqNo", "columns":
       COLUMNS, "rows": [ROW, ...], "position": 1, "primary": 1}, the primary being a value of the key or
       null; one that no row has becomes null. It has at most 32767 rows. New rows have the columns; without
       columns, those of the first row. COLUMNS: [{"name": "SeqNo", "isKey": true, "maxLength": 0, "isLink":
       false}, or just "SeqNo", ...]. A moment is {"date": "2024-01-31T10:15:00"}. Where only a collection is
       wanted, it is the record. */
    TvResult (*NewRecord)(const char* json, TvRecord* record);
    TvResult (*RecordText)(TvRecord record, TvVariant* json);
    TvResult (*ReleaseRecord)(TvRecord record);

    /* Of classes: their names, counted from 0. TV_S_FALSE behind the last, and `name` is null. */
    TvResult (*ClassName)(int32_t index, const char** name);
} TvLibrary;

/* A class of controls; by its class name and the interface name TV_CLASS_INTERFACE. */
#define TV_CLASS_INTERFACE "TvClassObject"

typedef struct TvClassObject TvClassObject;
struct TvClassObject
{
    uint32_t size;
    uint32_t version; /* 1 */
    const char* className;
    const char* typeLibrary;        /* "Tavrin Bound User Controls" */
    const char* typeLibraryVersion; /* "1.0" */
    const char* defaultInterface;   /* as in "_AgencyPicker" */
    const char* eventInterface;     /* as in "__AgencyPicker"; "" without events */
    const char* contract;           /* "TavrinControl", "BoundControl", "BoundSection" or "" */
    int32_t memberCount;

    /* The class's members, counted from 0: its properties, its operations, its events, each in the published
       order. TV_S_FALSE behind the last. */
    TvResult (*Member)(const TvClassObject* self, int32_t index, TvMember* member);

    /* A control of the class. Without a site it stands in a window of its own. TV_E_HANDLE for a parent that
       is none, TV_E_INVALIDARG for saved properties that are no JSON object. Its owner is its parent; Destroy
       ends it before. A control that is destroyed inside an event of a control disappears at once and ends
       behind the event. A window of its own ends with the last control in it. */
    TvResult (*Create)(const TvClassObject* self, const TvSite* site, TvControl* control);

    /* The functions from here on take a control of any class; those by name, up to Unsubscribe, take other
       objects too, that a property has given. */
    TvResult (*Destroy)(TvControl control);
    /* Shows the control, and its window if that is one of the library's; or hides them. */
    TvResult (*Show)(TvControl control, int32_t visible);
    /* In pixels of the parent; a control in a window of its own moves and sizes that window. */
    TvResult (*Move)(TvControl control, int32_t x, int32_t y, int32_t width, int32_t height);
    TvResult (*SetTitle)(TvControl control,
                         const char* title); /* of its window, if that is one of the library's */

    /* Get and Put: TV_E_MEMBERNOTFOUND, TV_E_EXCEPTION for what the property raises; Put also
       TV_E_TYPEMISMATCH, TV_E_OVERFLOW and, for a property that cannot be put, TV_E_ACCESSDENIED. Values are
       converted as far as that loses nothing of their sense: a text "12" is a Long 12, and a Long is a
       colour. */
    TvResult (*Get)(TvHandle object, const char* property, TvVariant* value);
    TvResult (*Put)(TvHandle object, const char* property, const TvVariant* value);
    /* An operation. `arguments` may be null when there are none, `result` when it is not wanted. */
    TvResult (*Call)(TvHandle object, const char* operation, const TvVariant* arguments,
                     int32_t argumentCount, TvVariant* result);
    /* `cookie` is what Unsubscribe wants; it may be null. "PropertyChanged", by which a control tells that it
       must be saved again, is an event of every control. Unsubscribe: TV_S_FALSE when there is no such
       subscription. */
    TvResult (*Subscribe)(TvHandle object, const char* event, TvEventCall call, void* context,
                          uint64_t* cookie);
    TvResult (*Unsubscribe)(TvHandle object, uint64_t cookie);

    /* The saved properties as a JSON object of those that differ from their defaults; and back:
       TV_E_INVALIDARG for what is no JSON object. */
    TvResult (*SavedProperties)(TvControl control, TvVariant* json);
    TvResult (*RestoreProperties)(TvControl control, const char* json);

    /* The class's contract. TV_E_NOINTERFACE when the control has another one or none.
       TavrinControl: GetValue() gives the value; SetValue(value, usedValues), the latter a list, or left out.
       BoundControl: FillControl(binding, ignored, rows); SetValue(binding, ignored, rows). The binding is a
       text
       {"FieldName": "...", "TableNo": 7}; SetValue gives the rows as JSON.
       BoundSection: ReadData(record); WriteData(record) gives the record as JSON. WriteData without argument
       writes to the record that ReadData had last. TV_E_EXCEPTION refuses the save. Records and rows are
       objects from NewRecord, or texts of JSON. */
    TvResult (*Contract)(TvControl control, const char* operation, const TvVariant* arguments,
                         int32_t argumentCount, TvVariant* result);

    /* For programs that use Qt: the object behind a handle, and a handle for any object on this thread. */
    TvResult (*QtObject)(TvHandle object, void** qobject);
    TvResult (*HandleOf)(void* qobject, TvHandle* object);
};

/* The entry points of the library. */

/* Enters the classes into the user's file of registrations, in place of what it or another library has
   entered for them; TV_E_REGISTRATION for a damaged file, which stays as it is, TV_E_CANNOTWRITE. */
TV_EXPORT TvResult DllRegisterServer(void);
/* Takes what this library has entered out of the file; TV_S_OK also when that is nothing. */
TV_EXPORT TvResult DllUnregisterServer(void);
/* `*object` becomes a `const TvClassObject *` or `const TvLibrary *`, which stays valid as long as the
   library is loaded; null on failure. TV_E_CLASSNOTAVAILABLE, TV_E_NOINTERFACE. */
TV_EXPORT TvResult DllGetClassObject(const char* className, const char* interfaceName, void** object);
/* TV_S_FALSE while a control, a dialog, a running timer, a call or an application object of the library
   lives. The caller must also have cleared the values that it got. */
TV_EXPORT TvResult DllCanUnloadNow(void);

#ifdef __cplusplus
}
#endif

/* The loader, for C and C++ programs of platforms with dlopen; not where TV_NO_LOADER is defined. */
#if !defined(TV_NO_LOADER) && !defined(_WIN32)

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#ifdef __cplusplus
extern "C" {
#endif

#define TV_LOAD_PROBLEM_SIZE 8192 /* a path and a sentence */

/* Why TvLoad of this source file failed last; valid until it is called again. */
static inline char* TvLoadProblem(void)
{
    static char problem[TV_LOAD_PROBLEM_SIZE];
    return problem;
}

static inline TvResult TvLoadFailed(TvResult result, const char* what, const char* detail)
{
    snprintf(TvLoadProblem(), TV_LOAD_PROBLEM_SIZE, "%s: %s", what, detail);
    return result;
}

/* Puts the path of the user's file of registrations into `path`; 0 when it has no place. */
static inline int TvRegistrationPath(char* path, size_t size)
{
    const char* data = getenv("XDG_DATA_HOME");
    const char* home = getenv("HOME");
    int length = -1;
    if (data && data[0] == '/')
        length = snprintf(path, size, "%s/TVBoundControls/components.ini", data);
#if defined(__APPLE__)
    else if (home)
        length = snprintf(path, size, "%s/Library/Application Support/TVBoundControls/components.ini", home);
#else
    else if (home)
        length = snprintf(path, size, "%s/.local/share/TVBoundControls/components.ini", home);
#endif
    return length > 0 && (size_t)length < size;
}

/* Reads what is registered for a class under `key`. */
static inline TvResult TvRegistered(const char* className, const char* key, char* value, size_t size)
{
    char path[4096];
    char line[8192];
    FILE* file;
    const size_t keyLength = strlen(key);
    const size_t nameLength = strlen(className);
    int inside = 0;
    TvResult result = TV_E_CLASSNOTREGISTERED;
    if (!TvRegistrationPath(path, sizeof path))
        return TvLoadFailed(TV_E_CLASSNOTREGISTERED, className, "There is no folder for the user's data");
    file = fopen(path, "r");
    if (!file)
        return TvLoadFailed(TV_E_CLASSNOTREGISTERED, path, "No control is registered");
    while (fgets(line, sizeof line, file)) {
        line[strcspn(line, "\r\n")] = 0;
        if (line[0] == '[') {
            inside = strncmp(line + 1, className, nameLength) == 0 && strcmp(line + 1 + nameLength, "]") == 0;
        } else if (inside && strncmp(line, key, keyLength) == 0 && line[keyLength] == '=' &&
                   strlen(line) - keyLength <= size) {
            strcpy(value, line + keyLength + 1);
            result = TV_S_OK;
        }
    }
    fclose(file);
    return result == TV_S_OK ? result : TvLoadFailed(result, className, "The class is not registered");
}

/* Loads the library that is registered for a class, and gives the class and what belongs to no class;
   TvLoadProblem tells of a failure. The library stays loaded. */
static inline TvResult TvLoad(const char* className, const TvLibrary** library,
                              const TvClassObject** classObject)
{
    typedef TvResult (*GetClassObject)(const char*, const char*, void**);
    char path[4096];
    char version[32];
    void* module;
    void* symbol;
    void* object = NULL;
    GetClassObject get;
    TvResult result;
    if (!className || !library || !classObject)
        return TvLoadFailed(TV_E_POINTER, "TvLoad", "A pointer is null");
    *library = NULL;
    *classObject = NULL;
    result = TvRegistered(className, "Library", path, sizeof path);
    if (result == TV_S_OK)
        result = TvRegistered(className, "Version", version, sizeof version);
    if (result != TV_S_OK)
        return result;
    if (strncmp(version, "1.", 2) != 0)
        return TvLoadFailed(TV_E_VERSION, className, "The registered library is of another version");
    module = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!module)
        return TvLoadFailed(TV_E_LIBRARY, className, dlerror());
    symbol = dlsym(module, "DllGetClassObject");
    if (!symbol)
        return TvLoadFailed(TV_E_LIBRARY, path, "The library has no DllGetClassObject");
    memcpy(&get, &symbol, sizeof get);
    result = get(TV_LIBRARY_CLASS, TV_LIBRARY_INTERFACE, &object);
    if (result != TV_S_OK)
        return TvLoadFailed(result, path, "The library has no TvLibrary");
    *library = (const TvLibrary*)object;
    result = get(className, TV_CLASS_INTERFACE, &object);
    if (result != TV_S_OK)
        return TvLoadFailed(result, path, "The library does not have the class that is registered for it");
    *classObject = (const TvClassObject*)object;
    if ((*library)->version != 1 || (*library)->size < sizeof(TvLibrary) || (*classObject)->version != 1 ||
        (*classObject)->size < sizeof(TvClassObject))
        return TvLoadFailed(TV_E_VERSION, path, "The library is older or other than this program expects");
    return TV_S_OK;
}

#ifdef __cplusplus
}
#endif

#endif

#endif
