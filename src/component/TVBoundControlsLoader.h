#ifndef TVBOUNDCONTROLSLOADER_H
#define TVBOUNDCONTROLSLOADER_H

/**
 * @file TVBoundControlsLoader.h
 * The loader, for C and C++ programs of platforms with dlopen. TVBoundControls.h includes it, except where
 * TV_NO_LOADER is defined.
 */

#include "component/TVBoundControls.h"

#if !defined(_WIN32)

#include <dlfcn.h>
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Bytes of the text that TvLoadProblem gives: a path and a sentence. */
#define TV_LOAD_PROBLEM_SIZE 8192

/** Why TvLoad of this source file failed last; valid until it is called again. */
static inline char* TvLoadProblem(void)
{
    static char problem[TV_LOAD_PROBLEM_SIZE];
    return problem;
}

/** Notes why TvLoad fails, and returns `result`. */
static inline TvResult TvLoadFailed(TvResult result, const char* what, const char* detail)
{
    snprintf(TvLoadProblem(), TV_LOAD_PROBLEM_SIZE, "%s: %s", what, detail);
    return result;
}

/** Puts the path of the user's file of registrations into `path`; 0 when it has no place. */
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

/** @cond INTERNAL */

/** Notes where the file of registrations is damaged: in a line, counted from 1, or with 0 as a whole. */
static inline TvResult TvDamaged(const char* path, int line, const char* what, const char* name)
{
    char place[32] = "";
    if (line > 0)
        snprintf(place, sizeof place, ", line %d", line);
    snprintf(TvLoadProblem(), TV_LOAD_PROBLEM_SIZE,
             "The file of registrations is damaged: %.4000s%s: %s%.3000s", path, place, what, name);
    return TV_E_REGISTRATION;
}

/** Reads the file into `*text`, which the caller frees. */
static inline TvResult TvReadRegistrations(const char* path, char** text, size_t* length)
{
    FILE* file = fopen(path, "rb");
    size_t size = 4096;
    size_t got = 1;
    if (!file && (errno == ENOENT || errno == ENOTDIR))
        return TvLoadFailed(TV_E_CLASSNOTREGISTERED, path, "No control is registered");
    *length = 0;
    *text = file ? (char*)malloc(size) : NULL;
    while (*text && got > 0) {
        got = fread(*text + *length, 1, size - *length - 1, file);
        *length += got;
        if (*length == size - 1) {
            char* larger = (char*)realloc(*text, size * 2);
            if (!larger)
                free(*text);
            *text = larger;
            size *= 2;
        }
    }
    if (file && !*text) {
        fclose(file);
        return TvLoadFailed(TV_E_OUTOFMEMORY, path, "There is no memory to read it");
    }
    if (!file || ferror(file)) {
        snprintf(TvLoadProblem(), TV_LOAD_PROBLEM_SIZE,
                 "The file of registrations cannot be read: %.4000s: %s", path, strerror(errno));
        if (file) {
            fclose(file);
            free(*text);
        }
        return TV_E_REGISTRATION;
    }
    fclose(file);
    (*text)[*length] = 0;
    return TV_S_OK;
}

/** How many bytes the UTF-8 character at `text` has; 0 for none. */
static inline size_t TvCharacterLength(const unsigned char* text)
{
    const unsigned char lead = text[0];
    const size_t length = lead < 0x80   ? 1
                          : lead < 0xC2 ? 0
                          : lead < 0xE0 ? 2
                          : lead < 0xF0 ? 3
                          : lead < 0xF5 ? 4
                                        : 0;
    size_t i;
    for (i = 1; i < length; ++i) {
        if ((text[i] & 0xC0) != 0x80)
            return 0;
    }
    if ((lead == 0xE0 && text[1] < 0xA0) || (lead == 0xED && text[1] > 0x9F) /* overlong; half of a pair */
        || (lead == 0xF0 && text[1] < 0x90) ||
        (lead == 0xF4 && text[1] > 0x8F)) /* overlong; beyond the last */
        return 0;
    return length;
}

static inline int TvIsText(const char* text, size_t length)
{
    size_t i = 0;
    while (i < length) {
        const size_t character = TvCharacterLength((const unsigned char*)text + i);
        if (text[i] == 0 || character == 0)
            return 0;
        i += character;
    }
    return 1;
}

/** Takes the line at `*rest`, without its end, and puts what follows there; null behind the last. */
static inline char* TvNextLine(char** rest)
{
    char* line = *rest;
    char* end;
    if (!*line)
        return NULL;
    end = line + strcspn(line, "\n");
    *rest = *end ? end + 1 : end;
    *end = 0;
    if (end > line && end[-1] == '\r')
        end[-1] = 0;
    return line;
}

/** What is wrong with a line; null for nothing. A heading becomes its name, behind the bracket. */
static inline const char* TvLineProblem(char* line, int insideGroup)
{
    const char* begin = line + strspn(line, " \t\v\f\r");
    size_t length = strlen(line);
    if (line[0] == '[') {
        while (strchr(" \t\v\f\r", line[length - 1]))
            --length;
        if (length < 3 || line[length - 1] != ']')
            return "a heading without an end";
        line[length - 1] = 0;
        return NULL;
    }
    if (!*begin || *begin == ';' || *begin == '#')
        return NULL;
    if (line[0] == '=' || !strchr(line, '='))
        return "neither a heading nor an entry";
    return insideGroup ? NULL : "an entry without a heading";
}

/** Whether a heading before `end` has this name; the lines up to there end with a zero byte each. */
static inline int TvHasHeading(const char* text, const char* end, const char* name)
{
    while (text < end) {
        if (text[0] == '[' && strcmp(text + 1, name) == 0)
            return 1;
        text += strlen(text) + 1;
        while (text < end && !*text)
            ++text;
    }
    return 0;
}

/** Looks through all lines; `*value` becomes what stands under the key, null for nothing, `*isThere` whether
   the class has a group. */
static inline TvResult TvFindRegistered(const char* path, char* text, const char* className, const char* key,
                                        const char** value, int* isThere)
{
    const size_t keyLength = strlen(key);
    char* rest = text;
    char* line;
    const char* problem;
    const char* group = NULL;
    int number = 0;
    while ((line = TvNextLine(&rest)) != NULL) {
        ++number;
        problem = TvLineProblem(line, group != NULL);
        if (problem)
            return TvDamaged(path, number, problem, "");
        if (line[0] == '[') {
            group = line + 1;
            if (TvHasHeading(text, line, group))
                return TvDamaged(path, number, "a second group ", group);
            *isThere = *isThere || strcmp(group, className) == 0;
        } else if (group && strcmp(group, className) == 0 && strncmp(line, key, keyLength) == 0 &&
                   line[keyLength] == '=') {
            *value = line + keyLength + 1;
        }
    }
    return TV_S_OK;
}

/** @endcond */

/** Reads what is registered for a class under `key`, such as "Library". TV_E_CLASSNOTREGISTERED, or
   TV_E_REGISTRATION for a file that is damaged, that cannot be read, or in which the class lacks the key or
   has a value of `size` bytes or more. */
static inline TvResult TvRegistered(const char* className, const char* key, char* value, size_t size)
{
    char path[4096];
    char missing[64];
    char* text = NULL;
    size_t length = 0;
    size_t mark = 0;
    const char* found = NULL;
    int isThere = 0;
    TvResult result;
    if (!TvRegistrationPath(path, sizeof path))
        return TvLoadFailed(TV_E_CLASSNOTREGISTERED, className, "There is no folder for the user's data");
    result = TvReadRegistrations(path, &text, &length);
    if (result != TV_S_OK)
        return result;
    if (length >= 3 && memcmp(text, "\xEF\xBB\xBF", 3) == 0)
        mark = 3; /* some editors begin a text so */
    if (!TvIsText(text, length))
        result = TvDamaged(path, 0, "it is no text", "");
    else
        result = TvFindRegistered(path, text + mark, className, key, &found, &isThere);
    if (result == TV_S_OK && !isThere) {
        result = TvLoadFailed(TV_E_CLASSNOTREGISTERED, className, "The class is not registered");
    } else if (result == TV_S_OK && (!found || !*found)) {
        snprintf(missing, sizeof missing, "no %.32s for ", key);
        result = TvDamaged(path, 0, missing, className);
    } else if (result == TV_S_OK && strlen(found) >= size) {
        snprintf(missing, sizeof missing, "too long a %.32s for ", key);
        result = TvDamaged(path, 0, missing, className);
    } else if (result == TV_S_OK) {
        strcpy(value, found);
    }
    free(text);
    return result;
}

/** @cond INTERNAL */

/** Gets the class, and what belongs to no class, from the library at `path`. */
static inline TvResult TvLoadFrom(const char* path, const char* className, const TvLibrary** library,
                                  const TvClassObject** classObject)
{
    typedef TvResult (*GetClassObject)(const char*, const char*, void**);
    void* module = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    void* symbol;
    void* functions = NULL;
    void* object = NULL;
    GetClassObject get;
    TvResult result;
    if (!module)
        return TvLoadFailed(TV_E_LIBRARY, className, dlerror());
    symbol = dlsym(module, "DllGetClassObject");
    if (!symbol)
        return TvLoadFailed(TV_E_LIBRARY, path, "The library has no DllGetClassObject");
    memcpy(&get, &symbol, sizeof get);
    result = get(TV_LIBRARY_CLASS, TV_LIBRARY_INTERFACE, &functions);
    if (result != TV_S_OK)
        return TvLoadFailed(result, path, "The library has no TvLibrary");
    result = get(className, TV_CLASS_INTERFACE, &object);
    if (result != TV_S_OK)
        return TvLoadFailed(result, path, "The library does not have the class that is registered for it");
    if (((const TvLibrary*)functions)->version != 1 ||
        ((const TvLibrary*)functions)->size < sizeof(TvLibrary) ||
        ((const TvClassObject*)object)->version != 1 ||
        ((const TvClassObject*)object)->size < sizeof(TvClassObject))
        return TvLoadFailed(TV_E_VERSION, path, "The library is older or other than this program expects");
    *library = (const TvLibrary*)functions;
    *classObject = (const TvClassObject*)object;
    return TV_S_OK;
}

/** @endcond */

/** Loads the library that is registered for a class, and gives the class and what belongs to no class; the
   library stays loaded. On a failure, of which TvLoadProblem tells, both are null: TV_E_POINTER,
   TV_E_CLASSNOTREGISTERED, TV_E_REGISTRATION, TV_E_OUTOFMEMORY, TV_E_VERSION, TV_E_LIBRARY, and what
   DllGetClassObject answers. */
static inline TvResult TvLoad(const char* className, const TvLibrary** library,
                              const TvClassObject** classObject)
{
    char path[4096];
    char version[32];
    TvResult result;
    if (library)
        *library = NULL;
    if (classObject)
        *classObject = NULL;
    if (!className || !library || !classObject)
        return TvLoadFailed(TV_E_POINTER, "TvLoad", "A pointer is null");
    result = TvRegistered(className, "Library", path, sizeof path);
    if (result == TV_S_OK)
        result = TvRegistered(className, "Version", version, sizeof version);
    if (result != TV_S_OK)
        return result;
    if (strncmp(version, "1.", 2) != 0)
        return TvLoadFailed(TV_E_VERSION, className, "The registered library is of another version");
    return TvLoadFrom(path, className, library, classObject);
}

#ifdef __cplusplus
}
#endif

#endif

#endif
