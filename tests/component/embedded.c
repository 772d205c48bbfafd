/* Shows an agency picker inside the window whose number is its argument, and does what each line of its input says:
   "show", "hide", "move X Y WIDTH HEIGHT", "put NUMBER", "get", "destroy", "end". It answers with the result's
   name or the value, and prints each event of the control. */
#define _POSIX_C_SOURCE 200112L
#include "component/TVBoundControls.h"

#include <poll.h>
#include <unistd.h>

static const char agencyList[] = "[{\"ID\": \"NPD\", \"DisplayText\": \"North Police Department\", \"Value\": 1},"
                                 " {\"ID\": \"SSO\", \"DisplayText\": \"South Sheriff's Office\", \"Value\": 2}]";

static const TvLibrary *library;
static const TvClassObject *agencies;
static TvControl agency;

static TvResult host(const char *service, const char *operation, const TvVariant *arguments, int32_t count,
                     TvVariant *result, void *context)
{
    (void)arguments;
    (void)count;
    (void)context;
    if (strcmp(service, "ListFilling") == 0 && strcmp(operation, "FillTableGrid") == 0)
        return library->SetText(result, agencyList);
    return TV_E_MEMBERNOTFOUND;
}

static TvResult told(TvControl control, const char *event, TvVariant *arguments, int32_t count, void *context)
{
    (void)control;
    (void)arguments;
    (void)count;
    (void)context;
    printf("%s\n", event);
    return TV_S_OK;
}

static void say(TvResult result)
{
    TvError error;
    if (result >= 0) {
        puts("done");
        return;
    }
    library->LastError(&error);
    printf("%08lX %s\n", (unsigned long)(uint32_t)result, error.description);
}

static TvResult get(void)
{
    TvVariant text = {0};
    TvResult result = agencies->Get(agency, "ShortText", &text);
    if (result >= 0)
        printf("%s: ", text.type == TV_TEXT ? text.value.text : "");
    library->VariantClear(&text);
    return result;
}

/* 0 at the end. */
static int obey(const char *line)
{
    int x, y, width, height;
    TvVariant value = {0};
    value.type = TV_LONG;
    if (strncmp(line, "show", 4) == 0)
        say(agencies->Show(agency, 1));
    else if (strncmp(line, "hide", 4) == 0)
        say(agencies->Show(agency, 0));
    else if (sscanf(line, "move %d %d %d %d", &x, &y, &width, &height) == 4)
        say(agencies->Move(agency, x, y, width, height));
    else if (sscanf(line, "put %d", &value.value.integer) == 1)
        say(agencies->Put(agency, "Value", &value));
    else if (strncmp(line, "get", 3) == 0)
        say(get());
    else if (strncmp(line, "destroy", 7) == 0)
        say(agencies->Destroy(agency));
    else
        return 0;
    return 1;
}

int main(int argc, char **argv)
{
    TvSite site = {0};
    char line[200];
    struct pollfd input = {STDIN_FILENO, POLLIN, 0};
    setvbuf(stdout, NULL, _IOLBF, 0);
    setvbuf(stdin, NULL, _IONBF, 0);
    site.size = sizeof site;
    site.parentKind = TV_PARENT_NATIVE;
    site.parent = argc > 1 ? strtoul(argv[1], NULL, 0) : 0;
    if (TvLoad("TVBoundControls.AgencyPicker", &library, &agencies) != TV_S_OK
        || library->SetHost(host, NULL) != TV_S_OK)
        return 2;
    say(agencies->Create(agencies, &site, &agency));
    agencies->Subscribe(agency, "ItemSelect", told, NULL, NULL);
    for (;;) {
        library->ProcessEvents(20);
        if (poll(&input, 1, 0) == 0)
            continue;
        if (!fgets(line, sizeof line, stdin) || !obey(line))
            break;
    }
    agencies->Destroy(agency); /* may be gone already */
    say(library->EndApplication());
    return library->SetHost(NULL, NULL) != TV_S_OK;
}
