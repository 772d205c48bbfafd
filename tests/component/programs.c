/* What the header promises to a program in C, called where no Qt is: one check after another, until one fails. */
#define _POSIX_C_SOURCE 200112L
#include "component/TVBoundControls.h"

#define CHECK(condition)                                                                                               \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            TvError lastError;                                                                                         \
            if (library && library->LastError(&lastError) == TV_S_OK)                                                  \
                fprintf(stderr, "the last error: %s\n", lastError.description);                                        \
            fprintf(stderr, "line %d: %s; %s\n", __LINE__, #condition, TvLoadProblem());                               \
            return 1;                                                                                                  \
        }                                                                                                              \
    } while (0)

/* The calls of a program from its start to its end, twice. */
static int liveTwice(const TvLibrary *library, const TvClassObject *sections)
{
    int turn;
    for (turn = 0; turn < 2; ++turn) {
        TvControl control = 0;
        TvVariant value = {0};
        CHECK(library->EndApplication() == TV_S_FALSE);
        CHECK(library->StartApplication() == TV_S_OK);
        CHECK(library->StartApplication() == TV_S_FALSE);
        CHECK(sections->Create(sections, NULL, &control) == TV_S_OK);
        CHECK(sections->Show(control, 1) == TV_S_OK);
        CHECK(library->ProcessEvents(10) == TV_S_OK);
        CHECK(sections->SavedProperties(control, &value) == TV_S_OK);
        CHECK(value.type == TV_TEXT);
        CHECK(library->VariantClear(&value) == TV_S_OK);
        CHECK(value.type == TV_EMPTY);
        if (turn == 0)
            CHECK(sections->Destroy(control) == TV_S_OK);
        CHECK(library->EndApplication() == TV_S_OK); /* takes the control with it */
        CHECK(sections->Show(control, 1) == TV_E_HANDLE);
    }
    return 0;
}

static int valuesWork(const TvLibrary *library)
{
    TvVariant value = {0};
    const TvFont font = {"Sans", 9, 400, 1, 0, 0, 1};
    CHECK(library->SetText(&value, "one") == TV_S_OK);
    CHECK(library->SetText(&value, value.value.text) == TV_S_OK); /* itself */
    CHECK(value.type == TV_TEXT && strcmp(value.value.text, "one") == 0);
    CHECK(library->SetText(&value, NULL) == TV_E_POINTER);
    CHECK(library->SetText(&value, "\xff") == TV_E_INVALIDARG);
    CHECK(library->SetText(NULL, "one") == TV_E_POINTER);
    CHECK(value.type == TV_TEXT && strcmp(value.value.text, "one") == 0);
    CHECK(library->SetFont(&value, &font) == TV_S_OK);
    CHECK(value.type == TV_FONT && strcmp(value.value.font->name, "Sans") == 0 && value.value.font->strikethrough == 1);
    CHECK(library->SetFont(&value, value.value.font) == TV_S_OK);
    CHECK(strcmp(value.value.font->name, "Sans") == 0);
    CHECK(library->SetFont(&value, NULL) == TV_E_POINTER);
    CHECK(library->SetPicture(&value, (const unsigned char *)"abc", 3) == TV_S_OK);
    CHECK(value.type == TV_PICTURE && value.value.picture->length == 3);
    CHECK(library->SetPicture(&value, NULL, 3) == TV_E_POINTER);
    CHECK(library->SetPicture(&value, NULL, 0) == TV_S_OK);
    CHECK(library->SetList(&value, 2) == TV_S_OK);
    CHECK(library->SetText(&value.value.list->items[1], "two") == TV_S_OK);
    CHECK(library->SetList(&value, -1) == TV_E_INVALIDARG);
    CHECK(value.type == TV_LIST && value.value.list->items[0].type == TV_EMPTY);
    CHECK(library->VariantClear(&value) == TV_S_OK);
    CHECK(library->VariantClear(&value) == TV_S_OK);
    CHECK(library->VariantClear(NULL) == TV_E_POINTER);
    return 0;
}

/* The number of a window that is none. */
static int isRefused(const char *window, const TvLibrary *library, const TvClassObject *sections)
{
    TvSite site = {sizeof(TvSite), TV_PARENT_NATIVE, 0, NULL, NULL, 0};
    TvControl control = 7;
    site.parent = strtoull(window, NULL, 10);
    CHECK(sections->Create(sections, &site, &control) == TV_E_HANDLE);
    CHECK(control == 0);
    CHECK(library->EndApplication() == TV_S_OK);
    return 0;
}

int main(int argc, char **argv)
{
    const char *asWindow = getenv("TV_TEST_WINDOW");
    const char *className = argc > 1 ? argv[1] : "TVBoundControls.LatLong";
    const TvLibrary noLibrary = {0};
    const TvClassObject noClass = {0};
    const TvLibrary *library = &noLibrary;
    const TvClassObject *sections = &noClass;
    const TvLibrary *other = &noLibrary;
    const TvClassObject *otherClass = &noClass;
    const TvResult loaded = TvLoad(className, &library, &sections);
    if (loaded != TV_S_OK)
        CHECK(!library && !sections);
    if (loaded == TV_S_OK && asWindow)
        return isRefused(asWindow, library, sections);
    if (argc > 2) { /* how loading is expected to fail */
        printf("%s\n", TvLoadProblem());
        return loaded == (TvResult)strtol(argv[2], NULL, 10) ? 0 : 1;
    }
    CHECK(loaded == TV_S_OK);
    CHECK(TvLoad(NULL, &other, &otherClass) == TV_E_POINTER);
    CHECK(!other && !otherClass);
    CHECK(TvLoad(className, NULL, &otherClass) == TV_E_POINTER);
    CHECK(TvLoad(className, &other, NULL) == TV_E_POINTER);
    CHECK(strcmp(sections->className, className) == 0);
    if (valuesWork(library) != 0)
        return 1;
    return liveTwice(library, sections);
}
