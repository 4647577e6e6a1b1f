#include "capi/CallGuard.h"
#include "capi/StoreRecord.h"
#include "capi/Texts.h"
#include "capi/paravue.h"
#include "device/OrbNetSetup.h"
#include "store/LocalEncoding.h"
#include "store/PasswordDigest.h"
#include "translations/InstallTranslations.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <limits>

using namespace paravue;
using namespace paravue::capi;

uint32_t paravue_api_version(void)
{
    return PARAVUE_API_VERSION;
}

const char *paravue_version(void)
{
    return PARAVUE_VERSION;
}

/// The texts that can be those of paravue_problem() are translated there.
const char *paravue_result_text(paravue_result result)
{
    switch (result) {
    case PARAVUE_OK:
        return "Done";
    case PARAVUE_REFUSED:
        return QT_TRANSLATE_NOOP("CInterface", "The recorder has refused the command");
    case PARAVUE_WRONG_USE:
        return QT_TRANSLATE_NOOP("CInterface", "An argument of the call makes no sense");
    case PARAVUE_NETWORK:
        return QT_TRANSLATE_NOOP("CInterface",
                                 "There is no connection to the recorder, or it does not answer");
    case PARAVUE_LOGIN:
        return QT_TRANSLATE_NOOP("CInterface", "The recorder has refused the login");
    case PARAVUE_LOCAL_FILE:
        return QT_TRANSLATE_NOOP("CInterface", "A file of this computer could not be read or written");
    case PARAVUE_BAD_DATA:
        return QT_TRANSLATE_NOOP("CInterface", "The data make no sense");
    case PARAVUE_CANCELLED:
        return QT_TRANSLATE_NOOP("CInterface", "Given up");
    case PARAVUE_WRONG_THREAD:
        return "The library was started in another thread";
    case PARAVUE_NOT_STARTED:
        return "The library was not started";
    case PARAVUE_WRONG_VERSION:
        return "The library does not have this version of the interface";
    case PARAVUE_BAD_HANDLE:
        return QT_TRANSLATE_NOOP("CInterface", "The handle was destroyed or never created");
    case PARAVUE_BUSY:
        return QT_TRANSLATE_NOOP("CInterface", "Not possible during an exchange or in a callback");
    case PARAVUE_NOT_FOUND:
        return QT_TRANSLATE_NOOP("CInterface", "There is no such value, file or function");
    case PARAVUE_BUFFER_TOO_SMALL:
        return QT_TRANSLATE_NOOP("CInterface", "The buffer is too small");
    case PARAVUE_NO_WINDOWS:
        return QT_TRANSLATE_NOOP("CInterface", "There is no screen, or the process has no windows");
    case PARAVUE_NO_MEMORY:
        return "Out of memory";
    case PARAVUE_INTERNAL:
        return QT_TRANSLATE_NOOP("CInterface", "A mistake in the library");
    default:
        return "Unknown result";
    }
}

paravue_result paravue_start(uint32_t api_version, uint32_t flags)
{
    return withoutExceptions([&] { return Library::instance().start(api_version, flags); });
}

paravue_result paravue_stop(void)
{
    return guarded([](Library &library) { return library.stop(); });
}

paravue_result paravue_set_language(const char *language, size_t length)
{
    return guarded([&](Library &library) {
        if (!language) {
            installTranslations();
            return PARAVUE_OK;
        }
        const auto name = readText(language, length);
        if (!name)
            return library.fail(PARAVUE_WRONG_USE);
        installTranslations({*name});
        return PARAVUE_OK;
    });
}

paravue_result paravue_process_events(uint32_t milliseconds)
{
    return guarded([&](Library &library) {
        if (library.isInCallback())
            return library.fail(PARAVUE_BUSY);
        if (milliseconds > uint32_t(std::numeric_limits<int>::max())) // Qt's timers count in int
            return library.fail(PARAVUE_WRONG_USE);
        const Library::Scope scope(Library::Scope::Kind::Wait);
        QCoreApplication::processEvents();
        // The first call does not do it for events of a level outside of any event loop.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (milliseconds == 0)
            return PARAVUE_OK;
        QEventLoop loop;
        QTimer::singleShot(int(milliseconds), &loop, &QEventLoop::quit);
        loop.exec();
        return PARAVUE_OK;
    });
}

paravue_result paravue_problem(char *buffer, size_t capacity, size_t *length)
{
    return guarded([&](Library &library) {
        const QString problem = library.problem(); // survives a buffer that is too small
        const paravue_result result = writeText(library, problem, buffer, capacity, length);
        return result == PARAVUE_OK ? result : library.fail(result, problem);
    });
}

paravue_result paravue_address(const char *login, size_t login_length, const char *password,
                               size_t password_length, const char *host, size_t host_length, uint16_t port,
                               uint32_t flags, char *buffer, size_t capacity, size_t *length)
{
    return guarded([&](Library &library) {
        const auto loginText = readText(login, login_length);
        auto passwordText = readText(password, password_length);
        const auto hostText = readText(host, host_length);
        if (!loginText || !passwordText || !hostText || (flags & ~PARAVUE_PASSWORD_TYPED))
            return library.fail(PARAVUE_WRONG_USE);
        if (!isInLocalEncoding(*loginText) || !isInLocalEncoding(*passwordText))
            return library.fail(
                PARAVUE_WRONG_USE,
                QCoreApplication::translate(
                    "CInterface", "The login or the password has letters that this computer cannot send."));
        if (flags & PARAVUE_PASSWORD_TYPED)
            passwordText = QString::fromLatin1(passwordDigest(passwordText->toLocal8Bit()));
        const QString address = OrbNetSetup::deviceAddress(*loginText, *passwordText, *hostText, port);
        if (address.isEmpty())
            return library.fail(PARAVUE_WRONG_USE);
        return writeText(library, address, buffer, capacity, length);
    });
}
