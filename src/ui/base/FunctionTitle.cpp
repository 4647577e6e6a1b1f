#include "ui/base/FunctionTitle.h"

#include "ui/base/WindowText.h"

#include <QHash>

namespace paravue
{

QString functionTitle(const QString &name)
{
    // Deliberate: e-mails on the first disk belong to "clear_email_disk", while formatting counts from 1.
    const QHash<QString, QString> titles{
        {"save_settings", WindowText::tr("Save the settings")},
        {"get_report", WindowText::tr("Get the report")},
        {"soft_istall_packet", WindowText::tr("Install the package")},
        {"remove_package", WindowText::tr("Remove the package")},
        {"soft_reboot", WindowText::tr("Restart the recorder")},
        {"soft_reset", WindowText::tr("Reset the settings")},
        {"format_usb", WindowText::tr("Format the USB disk")},
        {"format_disk1", WindowText::tr("Format disk 1")},
        {"format_disk2", WindowText::tr("Format disk 2")},
        {"clear_email_usb", WindowText::tr("Clear the e-mails on the USB disk")},
        {"clear_email_disk", WindowText::tr("Clear the e-mails on disk 1")},
        {"clear_email_disk1", WindowText::tr("Clear the e-mails on disk 2")},
        {"set_time", WindowText::tr("Set the clock")},
        {"set_time_current", WindowText::tr("Set the clock")},
        {"set_time_ntp", WindowText::tr("Set the clock from the time server")},
        {"send_test_email", WindowText::tr("Send a test e-mail")},
    };
    return titles.value(name, name);
}

QString functionLoss(const QString &name)
{
    const QHash<QString, QString> losses{
        {"format_usb", WindowText::tr("Everything on the USB disk is lost.")},
        {"format_disk1", WindowText::tr("All recordings on disk 1 are lost.")},
        {"format_disk2", WindowText::tr("All recordings on disk 2 are lost.")},
        {"clear_email_usb", WindowText::tr("All e-mails on the USB disk are lost.")},
        {"clear_email_disk", WindowText::tr("All e-mails on disk 1 are lost.")},
        {"clear_email_disk1", WindowText::tr("All e-mails on disk 2 are lost.")},
        {"soft_reset", WindowText::tr("All settings of the recorder are lost.")},
        {"remove_package", WindowText::tr("The package and what it does are removed from the recorder.")},
    };
    return losses.value(name);
}

QString functionTitles(const QStringList &names)
{
    QStringList titles;
    for (const QString &name : names)
        titles.append(functionTitle(name));
    return titles.join(QStringLiteral(", "));
}

} // namespace paravue
