#pragma once

#include "device/login/SettingsText.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace paravue
{

/// The library's settings of the user: "settings.ini" in the folder "Paravue" of the user's local application
/// data. A missing file is begun as a copy of the default file beside the application or, without one, of the
/// default built into the library.
///
/// The file holds password digests: only its owner can read it. It is written as a whole, and under a lock,
/// so that several programs can use it at once. A file that cannot be understood is set aside under another
/// name. Where nothing can be written, the settings live as long as this object and a warning is logged.
///
/// shared() is what everybody uses; the file is written when the last user lets go of it. When another
/// program holds the lock just then, the edits stay in memory, where the next user of shared() finds them;
/// they are written with his, or when the application object is destroyed.
class SettingsFile
{
public:
    struct Places {
        QString folder;      ///< where the user's file is or goes
        QString shippedFile; ///< the default file beside the application
        QString builtInFile; ///< the default of the library

        static Places standard();
    };

    static std::shared_ptr<SettingsFile> shared();

    explicit SettingsFile(const Places &places = Places::standard());
    ~SettingsFile();
    Q_DISABLE_COPY_MOVE(SettingsFile)

    /// The value of "group/key", else the one of "default/group/key", else \a otherwise.
    QByteArray value(const QString &key, const QByteArray &otherwise = {}) const;
    void setValue(const QString &key, const QByteArray &value);

    const SettingsMap &all() const { return m_settings; }

    /// Edits the settings. \a edit is called at once, and again on what the file holds when it is written:
    /// another program may have written to it meanwhile.
    using Edit = std::function<void(SettingsMap &settings)>;
    void change(const Edit &edit);

    /// Writes the edits, and takes over what other programs have written. False when another program holds
    /// the lock; the edits are then kept for the next time.
    bool sync();

    /// What the user should know of a file that was set aside, in words; empty when there is nothing, or when
    /// it was taken before.
    static QString takeNotice();

private:
    static void letGo(SettingsFile *file);
    static void writeRest();

    QString path() const;
    QString lockPath() const;
    void makeFolder() const;
    bool syncWithin(int milliseconds);
    bool read();
    void readLocked();
    SettingsMap begin(bool mayWrite);
    QByteArray defaultText() const;
    bool setAside() const;
    bool write(const QByteArray &text) const;

    Places m_places;
    SettingsMap m_settings;
    std::vector<Edit> m_edits;
    bool m_canReplace = true; ///< nothing is lost when the file is written
};

} // namespace paravue
