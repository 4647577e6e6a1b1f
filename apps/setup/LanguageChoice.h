#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class OrbSetup;

namespace paravue
{

/// Sets the language of a session as soon as its description is there, which is before the window reads it. A
/// session whose description has no texts in this language is closed.
class LanguageChoice : public QObject
{
    Q_OBJECT

public:
    /// To be made before the session starts. Does nothing with an empty \a language. \a store must outlive
    /// it.
    LanguageChoice(OrbSetup &store, const QString &language);

    /// Why the session was closed; empty when it was not.
    QString problem() const { return m_problem; }

private:
    void choose();

    OrbSetup &m_store;
    QString m_language;
    QString m_problem;
};

} // namespace paravue
