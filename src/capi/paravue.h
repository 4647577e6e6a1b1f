/* The library for programs in any language that can call C. docs/c-interface.md has examples.
 *
 * Texts are UTF-8. A text that is given to the library is a pointer and a length in bytes, or
 * PARAVUE_TERMINATED for one that ends with a zero byte. It stays the caller's and is not used after the
 * call. A text that the library returns is written into a buffer of the caller, see
 * paravue_store_get_value(). A text that a callback gets is the library's and valid until the callback
 * returns; it ends with a zero byte too.
 *
 * All functions but the first three are called in the thread that has called paravue_start(); in another one
 * they return PARAVUE_WRONG_THREAD and do nothing. Callbacks come in the same thread, within calls that start
 * an exchange or wait. In a callback values can be read and changed, exchanges given up and windows closed;
 * what starts, waits or destroys returns PARAVUE_BUSY there. A callback has to return: neither an exception
 * nor longjmp() may leave it. No exception leaves the library.
 *
 * Handles that were destroyed, or never were any, are recognised: the call returns PARAVUE_BAD_HANDLE.
 * Pointers to results may be null only where that is said. */
#ifndef PARAVUE_H
#define PARAVUE_H

#include <stddef.h>
#include <stdint.h>

#ifdef _WIN32
#define PARAVUE_C_CALL __cdecl
#ifdef ParavueSetup_EXPORTS
#define PARAVUE_C_EXPORT __declspec(dllexport)
#else
#define PARAVUE_C_EXPORT __declspec(dllimport)
#endif
#else
#define PARAVUE_C_CALL
#define PARAVUE_C_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The version of this interface. The upper 16 bits change when programs have to be changed, the lower ones
 * when something is added. */
#define PARAVUE_API_VERSION UINT32_C(0x00010000)

/* The length of a text that ends with a zero byte. */
#define PARAVUE_TERMINATED ((size_t)-1)

/* What a call has come to. The numbers up to 8 are exit codes of the programs too. */
typedef int32_t paravue_result;
#define PARAVUE_OK 0
#define PARAVUE_REFUSED 1           /* the recorder has answered a command with an error */
#define PARAVUE_WRONG_USE 2         /* an argument makes no sense */
#define PARAVUE_NETWORK 3           /* no connection, or no answer in time */
#define PARAVUE_LOGIN 4             /* the recorder has refused the login */
#define PARAVUE_LOCAL_FILE 6        /* a file of this computer could not be read or written */
#define PARAVUE_BAD_DATA 7          /* an answer is not that of a recorder, or a description has errors */
#define PARAVUE_CANCELLED 8         /* given up by the user, by the program, or because the program ends */
#define PARAVUE_WRONG_THREAD 20     /* not the thread that has called paravue_start() */
#define PARAVUE_NOT_STARTED 21      /* before paravue_start() or after paravue_stop() */
#define PARAVUE_WRONG_VERSION 22    /* the library does not have this version of the interface */
#define PARAVUE_BAD_HANDLE 23       /* destroyed before, or never created */
#define PARAVUE_BUSY 24             /* an exchange runs, or this is a callback */
#define PARAVUE_NOT_FOUND 25        /* no such value, file or function */
#define PARAVUE_BUFFER_TOO_SMALL 26 /* the length that is needed was returned */
#define PARAVUE_NO_WINDOWS 27       /* there is no screen, or the process has no windows */
#define PARAVUE_NO_MEMORY 28
#define PARAVUE_INTERNAL 29 /* a mistake in the library */

/* These three can be called at any time in any thread. The texts are constants. */
PARAVUE_C_EXPORT uint32_t PARAVUE_C_CALL paravue_api_version(void);
/* The version of the library, such as "0.1.0". */
PARAVUE_C_EXPORT const char *PARAVUE_C_CALL paravue_version(void);
/* What a result means, in English; never null. paravue_problem() mostly says more. */
PARAVUE_C_EXPORT const char *PARAVUE_C_CALL paravue_result_text(paravue_result result);

/* Flag of paravue_start(): windows will be shown. Without it the library needs no screen. */
#define PARAVUE_START_WINDOWS UINT32_C(1)

/* To be called first, with PARAVUE_API_VERSION. The calling thread becomes that of the library; on some
 * systems only the first thread of a process can have windows.
 *
 * Where the process has a QApplication (or QCoreApplication) already, the library uses it. It must live in
 * this thread, and until after paravue_stop(). Otherwise the library makes one of its own, whose event loop
 * runs only within functions that wait, and deletes it in paravue_stop(). On Unix that sets the locale of the
 * process from its environment, except LC_NUMERIC, which stays as it was. An X server that cannot be reached
 * although DISPLAY is set ends the process, as in every program with Qt.
 *
 * Calls are counted: each that has returned PARAVUE_OK needs a paravue_stop(). */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_start(uint32_t api_version, uint32_t flags);
/* The last one ends all sessions and destroys the stores and windows that are left, with the local copies of
 * the recorders' files. What has not been sent by then is lost. A process that ends without it leaves the
 * copies on the disk. Afterwards the library can be started again. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_stop(void);
/* Shows the texts of the library, and those of Qt, in this language from now on, also in windows that are
 * open. It is named as in "ru" or "ru-RU"; a null pointer takes the one that the user of this computer
 * prefers. Texts are English before the first call, and when the library has none in the language. Dates and
 * numbers follow. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_set_language(const char *language, size_t length);
/* Handles events for so many milliseconds, at most INT32_MAX (0: those that wait already). For programs with
 * an event loop of their own; those with Qt's do not need it. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_process_events(uint32_t milliseconds);
/* Why the last call that has failed did so, in words for the user; empty when there was none. The buffer is
 * as in paravue_store_get_value(). */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_problem(char *buffer, size_t capacity, size_t *length);

/* Flag of paravue_address(): the password is as a user types it, and its MD5 digest goes into the address, as
 * recorders expect it. Without the flag the password goes there as it is. */
#define PARAVUE_PASSWORD_TYPED UINT32_C(1)

/* Writes the address of a recorder in the form that paravue_store_create() takes. PARAVUE_WRONG_USE for parts
 * that no address can hold: an empty host, port 0, a ":" or "@" in the host, a ":" in a password that is not
 * typed; also for letters in the login or the password that the local 8-bit encoding, in which they are sent
 * or digested, lacks: on Windows that of the user's code page. The buffer is as in paravue_store_get_value().
 */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_address(const char *login, size_t login_length,
                                                               const char *password, size_t password_length,
                                                               const char *host, size_t host_length,
                                                               uint16_t port, uint32_t flags, char *buffer,
                                                               size_t capacity, size_t *length);

/* The settings of one recorder: local copies of its files. */
typedef struct paravue_store paravue_store;

/* Flag of paravue_store_create(): when the recorder refuses the login of the address, a dialog asks the user
 * for another one. Without it the exchange fails. Needs PARAVUE_START_WINDOWS. */
#define PARAVUE_STORE_ASKS_FOR_LOGIN UINT32_C(1)

/* Creates a store for the recorder at an address, login:password@host[:port], where the port is a signed
 * 16-bit number. Nothing is sent yet. *store is null unless the result is PARAVUE_OK. The caller destroys it.
 */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_create(const char *address, size_t length,
                                                                    uint32_t flags, paravue_store **store);
/* Destroys a store with its local copies and gives up an exchange that runs. PARAVUE_BUSY while it has
 * windows. Null is allowed. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_destroy(paravue_store *store);
/* How long an exchange waits for the connection, and for each sign of the recorder, in milliseconds; 0 is for
 * ever. At first 12 s and 60 s. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_set_timeouts(paravue_store *store,
                                                                          uint32_t connection,
                                                                          uint32_t answer);

/* Who hears of what a store does. Callbacks may be null. */
typedef struct paravue_observer {
    size_t size; /* sizeof(paravue_observer) */
    void *user;  /* handed to each callback */
    /* How far the exchange is, 0 to 100. */
    void(PARAVUE_C_CALL *progress)(void *user, int32_t percent);
    /* Something has failed. The explanation, in plain words, is empty when the message says it itself. */
    void(PARAVUE_C_CALL *message)(void *user, const char *text, size_t length, const char *explanation,
                                  size_t explanation_length);
    /* All files, or the report of a function, are there. */
    void(PARAVUE_C_CALL *loaded)(void *user);
    /* Everything was sent, or a function that is no report was done. */
    void(PARAVUE_C_CALL *saved)(void *user);
} paravue_observer;

/* Copies *observer, which replaces the one before; null removes it. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_set_observer(paravue_store *store,
                                                                          const paravue_observer *observer);

/* The next three start an exchange with the recorder and return. It goes on in paravue_store_wait(),
 * paravue_process_events() or Qt's event loop. PARAVUE_BUSY while one runs; one that has failed is given up.
 *
 * load fetches all files and drops edits. save sends all files, edited or not. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_load(paravue_store *store);
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_save(paravue_store *store);
/* Runs a function of the recorder, such as "soft_reboot"; docs/protocol.md lists them. PARAVUE_NOT_FOUND for
 * another name. Functions send values of the store, so the files are fetched before. A report is afterwards
 * the file "tmp", see paravue_store_file_path(). Some functions need no exchange. Nobody is asked whether it
 * may be. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_function(paravue_store *store, const char *name,
                                                                      size_t name_length,
                                                                      const char *argument,
                                                                      size_t argument_length);
/* Waits until the exchange has ended and returns how it has; without one, how the last one has. It is given
 * up when the application quits meanwhile, or has quit: PARAVUE_CANCELLED. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_wait(paravue_store *store);

/* Flag of paravue_store_wait_for_save(): shows the progress, asks before it stops, and after a failure offers
 * to send the missing files again. Needs PARAVUE_START_WINDOWS. */
#define PARAVUE_SAVE_ASKS_USER UINT32_C(1)

/* As paravue_store_wait(), and waits for all that is being sent, also what a window has started: a window
 * closes before its save has ended. A recorder that is silent for more than longest_silence milliseconds (0:
 * 60 s) counts as lost. When nothing is being sent it returns what paravue_store_wait() would. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_wait_for_save(paravue_store *store,
                                                                           uint32_t flags,
                                                                           uint32_t longest_silence);
/* Gives up the exchange that runs or has failed. Files, values and edits stay. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_reset(paravue_store *store);

/* Reads the value at a path, file/section/key; the section of files without sections is "untitled". The value
 * and a zero byte go into the buffer, which is the caller's and has room for capacity bytes; *length is the
 * number of bytes without the zero. PARAVUE_BUFFER_TOO_SMALL when capacity is not more than *length: then the
 * text is empty. A null buffer with capacity 0 asks for the length. PARAVUE_NOT_FOUND without such a value.
 */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_get_value(paravue_store *store, const char *path,
                                                                       size_t path_length, char *buffer,
                                                                       size_t capacity, size_t *length);
/* Changes a value, or adds one, in the local copy; a save sends it. PARAVUE_NOT_FOUND when there is no such
 * file. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_set_value(paravue_store *store, const char *path,
                                                                       size_t path_length, const char *value,
                                                                       size_t value_length);

/* Which files paravue_store_files() lists. */
#define PARAVUE_FILES_FETCHED 0
#define PARAVUE_FILES_ARRIVED 1  /* of the last save: confirmed by the recorder */
#define PARAVUE_FILES_MISSING 2  /* of the last save: not confirmed */
#define PARAVUE_FILES_REPLACED 3 /* fetched anew instead, so that their edits are gone */

/* The names of files, each with a line feed behind it. The buffer is as in paravue_store_get_value(). */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_files(paravue_store *store, int32_t which,
                                                                   char *buffer, size_t capacity,
                                                                   size_t *length);
/* The path of a local copy, after edits were written to it. The file belongs to the store and is only to be
 * read. The buffer is as in paravue_store_get_value(). */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_store_file_path(paravue_store *store, const char *name,
                                                                       size_t name_length, char *buffer,
                                                                       size_t capacity, size_t *length);

/* The setup window of one session. */
typedef struct paravue_window paravue_window;

/* What the window does besides; docs/hosts.md describes each under its name in the C++ interface. All but the
 * first four and the last but one need TRACKS_CHANGES. */
#define PARAVUE_WINDOW_OFFERS_REFRESH UINT32_C(0x0001)
#define PARAVUE_WINDOW_PUTS_ADJUSTMENTS_BACK UINT32_C(0x0002)
#define PARAVUE_WINDOW_REMEMBERS_PLACE UINT32_C(0x0004) /* memory, in the library's settings file */
#define PARAVUE_WINDOW_HAS_NO_STATUS_LINE UINT32_C(0x0008)
#define PARAVUE_WINDOW_TRACKS_CHANGES UINT32_C(0x0010)
#define PARAVUE_WINDOW_ASKS_BEFORE_CLOSING UINT32_C(0x0020)
#define PARAVUE_WINDOW_REVIEWS_BEFORE_SENDING UINT32_C(0x0040)
#define PARAVUE_WINDOW_COMPARES_BEFORE_SENDING UINT32_C(0x0080)
#define PARAVUE_WINDOW_CONFIRMS_SAVES UINT32_C(0x0100)
#define PARAVUE_WINDOW_CONFIRMS_DANGEROUS_FUNCTIONS UINT32_C(0x0200)
#define PARAVUE_WINDOW_KEEPS_SNAPSHOTS UINT32_C(0x0400) /* snapshots, in the user's folder for them */

typedef struct paravue_window_options {
    size_t size; /* sizeof(paravue_window_options) */
    /* The window that the session is a child of: an HWND, or the number of an X11 window. It must outlive the
     * session. 0: the session has a modal window of its own. */
    uintptr_t parent;
    uint32_t features; /* a sum of PARAVUE_WINDOW_... */
    /* The place in the parent in its pixels; without a parent of no meaning. */
    int32_t x;
    int32_t y;
    int32_t width;
    int32_t height;
    void *user;
    /* The session is over: by OK (is_accepted is 1) or by Cancel (0). May be null. */
    void(PARAVUE_C_CALL *finished)(void *user, int32_t is_accepted);
} paravue_window_options;

/* Creates the window of a session, which is not shown yet. Null options mean a modal window of its own
 * without features. *window is null unless the result is PARAVUE_OK. The caller destroys it before the store.
 */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_window_create(paravue_store *store,
                                                                     const paravue_window_options *options,
                                                                     paravue_window **window);
/* Null is allowed. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_window_destroy(paravue_window *window);
/* Shows the window, fetches the recorder's files, and returns when the session is over. *is_accepted (may be
 * null) is as in finished(). The session is over too, by Cancel, when the application quits. The result is
 * that of the fetch when that has failed. A session runs once: PARAVUE_WRONG_USE the second time. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_window_run(paravue_window *window,
                                                                  int32_t *is_accepted);
/* The same for a window with a parent, but returns at once. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_window_show(paravue_window *window);
/* Moves a window with a parent, after the parent was resized for example. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_window_set_geometry(paravue_window *window, int32_t x,
                                                                           int32_t y, int32_t width,
                                                                           int32_t height);
/* Closes the window as its user would, by Cancel. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_window_close(paravue_window *window);

/* A problem of an interface description. */
typedef struct paravue_description_problem {
    size_t size;      /* of this structure in the library; it may grow at its end */
    int32_t is_error; /* 0: a warning */
    int32_t line;     /* line and column count from 1; 0 for the file as a whole */
    int32_t column;
    const char *text; /* one line */
    size_t length;
} paravue_description_problem;

typedef void(PARAVUE_C_CALL *paravue_problem_callback)(void *user,
                                                       const paravue_description_problem *problem);

/* Lists the problems of the interface description in a file, packed or not, without a recorder: calls the
 * callback (may be null) for each, in the order of their places. With a folder of configuration files (null:
 * none) addresses are looked up there too. PARAVUE_BAD_DATA when there are errors; *errors and *warnings (may
 * be null) are their numbers. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL
paravue_check_description(const char *path, size_t path_length, const char *folder, size_t folder_length,
                          paravue_problem_callback callback, void *user, size_t *errors, size_t *warnings);
/* The same for a description in memory. */
PARAVUE_C_EXPORT paravue_result PARAVUE_C_CALL paravue_check_description_data(
    const void *data, size_t data_length, const char *folder, size_t folder_length,
    paravue_problem_callback callback, void *user, size_t *errors, size_t *warnings);

#ifdef __cplusplus
}
#endif

#endif
