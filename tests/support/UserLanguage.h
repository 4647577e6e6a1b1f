#pragma once

#include <QByteArray>

namespace paravue::test
{

/// While it lives, programs that a test starts have a user of this locale.
class UserLanguage
{
public:
    explicit UserLanguage(const QByteArray &locale) { qputenv("LC_ALL", locale); }
    ~UserLanguage() { qputenv("LC_ALL", m_before); }
    Q_DISABLE_COPY_MOVE(UserLanguage)

private:
    const QByteArray m_before = qgetenv("LC_ALL");
};

} // namespace paravue::test
