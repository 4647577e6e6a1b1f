/* A host in C: changes the name of a recorder, sends it and prints what the recorder has then, or shows the
 * setup window.
 *
 *     c-host NAME login:password@host[:port]
 *     c-host --window [--close-when-loaded] login:password@host[:port] */

#include <paravue.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static const char name_path[] = "net/untitled/HOSTNAME";

/* Prints why the last call has failed, and returns its result. */
static paravue_result explain(paravue_result result)
{
    char problem[1000];
    size_t length = 0;
    if (paravue_problem(problem, sizeof problem, &length) != PARAVUE_OK || length == 0)
        fprintf(stderr, "%s\n", paravue_result_text(result));
    else
        fprintf(stderr, "%s\n", problem);
    return result;
}

/* A value in memory that the caller frees; null when there is none. */
static char *value_of(paravue_store *store, const char *path)
{
    size_t length = 0;
    char *value;
    if (paravue_store_get_value(store, path, PARAVUE_TERMINATED, NULL, 0, &length) !=
        PARAVUE_BUFFER_TOO_SMALL)
        return NULL;
    value = malloc(length + 1);
    if (value &&
        paravue_store_get_value(store, path, PARAVUE_TERMINATED, value, length + 1, &length) == PARAVUE_OK)
        return value;
    free(value);
    return NULL;
}

static paravue_result rename_recorder(paravue_store *store, const char *name)
{
    char *value;
    paravue_result result = paravue_store_load(store);
    if (result == PARAVUE_OK)
        result = paravue_store_wait(store);
    if (result == PARAVUE_OK)
        result = paravue_store_set_value(store, name_path, PARAVUE_TERMINATED, name, PARAVUE_TERMINATED);
    if (result == PARAVUE_OK)
        result = paravue_store_save(store);
    if (result == PARAVUE_OK)
        result = paravue_store_wait_for_save(store, 0, 0);
    /* What the recorder has, not what was sent. */
    if (result == PARAVUE_OK)
        result = paravue_store_load(store);
    if (result == PARAVUE_OK)
        result = paravue_store_wait(store);
    if (result != PARAVUE_OK)
        return explain(result);
    value = value_of(store, name_path);
    if (!value)
        return explain(PARAVUE_NOT_FOUND);
    puts(value);
    free(value);
    return PARAVUE_OK;
}

/* A session that a script runs without a user. */
struct session {
    paravue_window *window;
    int closes_by_itself;
};

static void PARAVUE_C_CALL loaded(void *user)
{
    struct session *session = user;
    if (session->closes_by_itself)
        paravue_window_close(session->window);
}

static paravue_result show_window(paravue_store *store, int closes_by_itself)
{
    struct session session;
    paravue_window_options options;
    paravue_observer observer;
    int32_t is_accepted = 0;
    paravue_result result;

    memset(&options, 0, sizeof options);
    options.size = sizeof options;
    options.features = PARAVUE_WINDOW_OFFERS_REFRESH | PARAVUE_WINDOW_TRACKS_CHANGES;
    session.closes_by_itself = closes_by_itself;
    result = paravue_window_create(store, &options, &session.window);
    if (result != PARAVUE_OK)
        return explain(result);

    memset(&observer, 0, sizeof observer);
    observer.size = sizeof observer;
    observer.user = &session;
    observer.loaded = loaded;
    result = paravue_store_set_observer(store, &observer);
    if (result == PARAVUE_OK)
        result = paravue_window_run(session.window, &is_accepted);
    if (result == PARAVUE_OK) {
        puts(is_accepted ? "accepted" : "cancelled");
        /* The window is closed, and what it sends may be under way. */
        result = paravue_store_wait_for_save(store, PARAVUE_SAVE_ASKS_USER, 0);
    }
    if (result != PARAVUE_OK)
        explain(result);
    paravue_store_set_observer(store, NULL);
    paravue_window_destroy(session.window);
    return result;
}

int main(int argc, char **argv)
{
    const int has_window = argc > 1 && strcmp(argv[1], "--window") == 0;
    const int closes_by_itself = argc > 2 && strcmp(argv[2], "--close-when-loaded") == 0;
    paravue_store *store = NULL;
    paravue_result result;

    if (argc != 3 + (has_window && closes_by_itself)) {
        fprintf(stderr, "Usage: c-host NAME ADDRESS\n"
                        "       c-host --window [--close-when-loaded] ADDRESS\n");
        return PARAVUE_WRONG_USE;
    }
    result = paravue_start(PARAVUE_API_VERSION, has_window ? PARAVUE_START_WINDOWS : 0);
    if (result != PARAVUE_OK) {
        fprintf(stderr, "%s\n", paravue_result_text(result));
        return result;
    }
    result = paravue_store_create(argv[argc - 1], PARAVUE_TERMINATED, 0, &store);
    if (result != PARAVUE_OK)
        explain(result);
    else
        result = has_window ? show_window(store, closes_by_itself) : rename_recorder(store, argv[1]);
    paravue_store_destroy(store);
    paravue_stop();
    return result;
}
