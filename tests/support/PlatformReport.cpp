// Compiled into each test program for Windows: prints which platform plug-in it runs on, "none" without a
// screen, so that whoever runs the tests can see that it was the real one.

#include <QCoreApplication>
#include <QVariant>

#include <cstdio>

namespace
{

void printPlatform()
{
    const QByteArray name = qApp->property("platformName").toByteArray();
    std::fprintf(stderr, "Platform: %s\n", name.isEmpty() ? "none" : name.constData());
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(printPlatform)
