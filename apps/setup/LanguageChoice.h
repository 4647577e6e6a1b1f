#pragma once

#include "store/StoreObserver.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class OrbSetup;

namespace paravue
{

/// Sets the language of a session as soon as its description is there, which is before the window reads it,
/// and shows the texts of the library and the program in the language that the window has at any time. A
/// session whose description has no texts in the wanted language is closed.
class LanguageChoice : public QObject, private StoreObserver
{
    Q_OBJECT

public:
    /// To be made before the session starts. An empty \a language leaves it to the recorder.
    LanguageChoice(OrbSetup &store, const QString &language);
    ~LanguageChoice() override;

    /// Why the session was closed; empty when it was not.
    QString problem() const { return m_problem; }

private:
    void valueSet(const QString &path, const std::optional<QString> &) override;
    void fileReplaced(const QString &) override {}
    void choose();
    void follow();

    QPointer<OrbSetup> m_store; ///< a signal may end it before the session
    QString m_language;
    QStringList m_offered; ///< the languages of the description
    bool m_isChosen = false;
    QString m_problem;
};

} // namespace paravue
