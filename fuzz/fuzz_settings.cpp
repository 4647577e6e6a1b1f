// Requires that the file of remembered logins gives back what was put into it, and that a file which cannot
// be understood is set aside with all its bytes.
//
// Input: the file that is there; then pieces, each the bytes of a value.

#include "FuzzInput.h"
#include "InputFolder.h"
#include "InputTime.h"
#include "Require.h"

#include "device/login/SavedCredentials.h"
#include "device/login/SettingsFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>

using namespace paravue;
using namespace paravue::fuzz;

namespace
{

const QString FileName = QStringLiteral("settings.ini");
const QByteArray DefaultText = "[default]\nauthorization/remember=74727565\n";

/// One program after the other: each writes, and the next reads what was written.
void checkFile(const QByteArray &text, const QList<QByteArray> &values)
{
    const InputFolder folder;
    folder.write(FileName, text);
    const auto before = parseSettings(text);
    const SettingsFile::Places places{folder.path(), folder.write("shipped", DefaultText), {}};
    SettingsMap written;
    {
        SettingsFile file(places);
        require(file.all() == before.value_or(*parseSettings(DefaultText)),
                "what is read is what the file says");
        for (qsizetype i = 0; i < values.size(); ++i)
            file.setValue("group/key" + QString::number(i), values.at(i));
        file.change([&](SettingsMap &settings) {
            Credentials record;
            record.url = values.value(0, "recorder");
            record.login = values.value(1);
            record.password = values.value(2);
            record.remember = true;
            saveCredentials(settings, record);
        });
        written = file.all();
        file.sync();
        require(file.all() == written, "writing changes no setting");
    }
    const SettingsFile file(places);
    require(file.all() == written, "a setting survives in the file");
    if (!values.value(0, "recorder").isEmpty())
        require(savedCredentials(file.all(), values.value(0, "recorder")).has_value(),
                "a login is remembered");

    const QStringList aside = QDir(folder.path()).entryList({FileName + ".damaged-*"});
    require(aside.size() == (before ? 0 : 1), "only a damaged file is set aside");
    if (!before)
        require(folder.content(aside.first()) == text, "a damaged file is kept");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv);
    QLoggingCategory::setFilterRules("paravue.settingsfile=false");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const InputTime time;
    const QList<QByteArray> pieces = FuzzInput(data, size).pieces();
    if (const auto settings = parseSettings(pieces.first()))
        require(parseSettings(settingsText(*settings)) == settings, "settings read as they were written");
    checkFile(pieces.first(), pieces.sliced(1));
    return 0;
}
