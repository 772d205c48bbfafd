/*
 * Shows an agency picker and prints its events.
 *
 *     ./agency                    in a window of its own
 *     ./agency --parent WINDOW    inside the window with this number, as xwininfo tells it
 *     ./agency --check            shows it, chooses by itself, and ends
 *
 * The program knows the library by nothing but the class's name and the header.
 */
#define _POSIX_C_SOURCE 200112L
#include "TVBoundControls.h"

//! [list]
static const char agencyList[] = "[{\"ID\": \"NPD\", \"DisplayText\": \"North Police Department\", \"Value\": 1},"
                                 " {\"ID\": \"SSO\", \"DisplayText\": \"South Sheriff's Office\", \"Value\": 2},"
                                 " {\"ID\": \"OLD\", \"DisplayText\": \"Old Constabulary\", \"Value\": 3,"
                                 "  \"Active\": false}]";
//! [/list]

static const TvLibrary *library;
static const TvClassObject *agencies;
static int failures;

//! [failure]
/* Ends the program when the library cannot do what everything else rests on. */
static void must(TvResult result, const char *what)
{
    TvError error;
    if (result >= 0)
        return;
    library->LastError(&error);
    fprintf(stderr, "%s: %08lX %s\n", what, (unsigned long)(uint32_t)result, error.description);
    exit(1);
}
//! [/failure]

static void check(int holds, const char *what)
{
    printf("%s: %s\n", what, holds ? "yes" : "NO");
    failures += !holds;
}

//! [value]
static TvVariant number(int32_t value)
{
    TvVariant variant = {0};
    variant.type = TV_LONG;
    variant.value.integer = value;
    return variant;
}
//! [/value]

//! [host]
/* The one callback by which controls ask their host. This one knows a single list. */
static TvResult host(const char *service, const char *operation, const TvVariant *arguments, int32_t count,
                     TvVariant *result, void *context)
{
    (void)context;
    if (strcmp(service, "ListFilling") == 0 && strcmp(operation, "FillTableGrid") == 0 && count > 0
        && arguments[0].value.integer == 997)
        return library->SetText(result, agencyList);
    return TV_E_MEMBERNOTFOUND;
}
//! [/host]

//! [event]
static TvResult agencyChanged(TvControl agency, const char *event, TvVariant *arguments, int32_t count, void *context)
{
    TvVariant text = {0};
    (void)arguments;
    (void)count;
    ++*(int *)context;
    if (agencies->Get(agency, "FullText", &text) == TV_S_OK)
        printf("%s: \"%s\"\n", event, text.value.text);
    library->VariantClear(&text);
    return TV_S_OK;
}
//! [/event]

static void checkAll(TvControl agency, const int *events)
{
    TvVariant value = number(2);
    TvVariant text = {0};
    TvVariant answer = {0};
    //! [put]
    must(agencies->Put(agency, "Value", &value), "Put");
    must(library->ProcessEvents(1), "ProcessEvents");
    //! [/put]
    check(*events > 0, "the control has told of its new value");
    //! [get]
    must(agencies->Get(agency, "ShortText", &text), "Get");
    check(text.type == TV_TEXT && strcmp(text.value.text, "SSO") == 0, "the short text is SSO");
    library->VariantClear(&text);
    //! [/get]
    //! [contract]
    must(agencies->Contract(agency, "GetValue", NULL, 0, &answer), "Contract");
    check(answer.type == TV_LONG && answer.value.integer == 2, "the contract gives 2");
    //! [/contract]
    check(agencies->Get(agency, "NoSuchThing", &answer) == TV_E_MEMBERNOTFOUND, "an unknown member is refused");
}

int main(int argc, char **argv)
{
    const int checks = argc > 1 && strcmp(argv[1], "--check") == 0;
    int events = 0;
    //! [site]
    TvSite site = {0};
    TvControl agency = 0;
    site.size = sizeof site;
    site.name = "agency";
    if (argc > 2 && strcmp(argv[1], "--parent") == 0) {
        site.parentKind = TV_PARENT_NATIVE;
        site.parent = strtoul(argv[2], NULL, 0);
    }
    //! [/site]
    if (checks)
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
    //! [load]
    if (TvLoad("TVBoundControls.AgencyPicker", &library, &agencies) != TV_S_OK) {
        fprintf(stderr, "%s\n", TvLoadProblem());
        return 1;
    }
    //! [/load]
    //! [make]
    must(library->SetHost(host, NULL), "SetHost");
    must(agencies->Create(agencies, &site, &agency), "Create");
    must(agencies->Subscribe(agency, "Change", agencyChanged, &events, NULL), "Subscribe");
    must(agencies->Subscribe(agency, "ItemSelect", agencyChanged, &events, NULL), "Subscribe");
    must(agencies->Move(agency, 100, 100, 400, 30), "Move");
    if (site.parentKind == TV_PARENT_NONE)
        must(agencies->SetTitle(agency, "An agency"), "SetTitle");
    must(agencies->Show(agency, 1), "Show");
    //! [/make]
    if (checks) {
        checkAll(agency, &events);
    } else {
        //! [run]
        TvVariant value = number(1);
        must(agencies->Put(agency, "Value", &value), "Put");
        must(library->Run(), "Run");
        //! [/run]
    }
    //! [end]
    must(agencies->Destroy(agency), "Destroy");
    must(library->EndApplication(), "EndApplication");
    must(library->SetHost(NULL, NULL), "SetHost");
    //! [/end]
    return failures != 0;
}
