#include "ui/commands/FileCommands.h"

#include "controls/DialogLoop.h"
#include "store/FileName.h"
#include "store/OrbSetup.h"
#include "store/TextPattern.h"
#include "store/WholeFile.h"
#include "ui/base/UiLimits.h"
#include "ui/base/WindowText.h"
#include "ui/binding/Bindings.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/CallableSlot.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/FileAccessGuard.h"
#include "ui/commands/SettingsExport.h"
#include "ui/commands/WindowServices.h"
#include "ui/description/DialogTags.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QPixmap>
#include <QStandardPaths>

#include <memory>
#include <utility>

namespace paravue
{
namespace
{

QString wrongParam(const QString &slot, const QString &param)
{
    return WindowText::tr("Wrong %0 param \"%1\"").arg(slot, param);
}

QString wrongAction(const QString &slot, const QString &action)
{
    return WindowText::tr("Wrong %0 action \"%1\"").arg(slot, action);
}

QString cannotOpen(const QString &path)
{
    return WindowText::tr("Can't open file\"%1\"").arg(path);
}

enum FileDialogField { Action, Title, FirstOfFilter };

} // namespace

FileCommands::FileCommands(QWidget &window, ControlContext &context, Bindings &bindings,
                           FileAccessGuard &paths, const WindowServices &services)
    : m_window(window), m_context(context), m_bindings(bindings), m_fileAccess(paths), m_services(services)
{
}

void FileCommands::chooseFile(const QString &param)
{
    const QString slot = QStringLiteral("CWinMain::fileDialog");
    const QStringList fields = slotFields(param);
    if (fields.size() < FirstOfFilter + 2) {
        m_context.report(wrongParam(slot, param));
        return;
    }
    const QString &action = fields[Action];
    const bool isSave = action == QLatin1String("save");
    if (!isSave && action != QLatin1String("open")) {
        m_context.report(wrongAction(slot, action));
        return;
    }
    const QString address = OrbSetup::path(fields.constLast());
    const QString path = chosenPath(isSave, fields[Title], param.section(u',', FirstOfFilter, -2), address);
    if (!path.isEmpty())
        m_bindings.write({{address, path}}, ValueOrigin::Person);
}

QString FileCommands::chosenPath(bool isSave, const QString &title, const QString &filter,
                                 const QString &address)
{
    auto dialog = std::make_unique<QFileDialog>(&m_window, m_context.text(title));
    dialog->setAcceptMode(isSave ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog->setFileMode(isSave ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog->setNameFilter(filter);
    dialog->setDefaultSuffix(defaultSuffix(filter));
    if (const QString folder = startFolder(address); !folder.isEmpty())
        dialog->setDirectory(folder);
    return chosenPath(*dialog);
}

QString FileCommands::chosenPath(QFileDialog &dialog)
{
    // A time task may come again while the dialog is open.
    if (m_dialog)
        return {};
    m_dialog = &dialog;
    m_services.letUserAct([&] { DialogLoop::run(dialog); });
    const QPointer<QFileDialog> ended = std::exchange(m_dialog, nullptr);
    return ended && ended->result() == QDialog::Accepted ? ended->selectedFiles().value(0) : QString();
}

void FileCommands::savePicture(const QPixmap &picture, const QString &name, const QWidget &control)
{
    const QStringList filters{WindowText::tr("PNG pictures (*.png)"),
                              WindowText::tr("JPEG pictures (*.jpg)")};
    // It may end before this function, together with its parent.
    const QPointer<QFileDialog> dialog = new QFileDialog(control.window(), WindowText::tr("Save picture"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setNameFilters(filters);
    dialog->setDefaultSuffix(defaultSuffix(filters.first()));
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog,
                     [dialog](const QString &filter) { dialog->setDefaultSuffix(defaultSuffix(filter)); });
    dialog->setDirectory(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    dialog->selectFile(name);
    const QString path = chosenPath(*dialog);
    if (dialog)
        dialog->deleteLater();
    if (path.isEmpty())
        return;
    const QString suffix = QFileInfo(path).suffix().toLower();
    const bool isJpeg = suffix == QLatin1String("jpg") || suffix == QLatin1String("jpeg");
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    constexpr int JpegQuality = 92;
    const bool isMade = picture.save(&bytes, isJpeg ? "JPEG" : "PNG", isJpeg ? JpegQuality : -1);
    if (!isMade || !writeWholeFile(path, bytes.data()))
        m_context.report(cannotOpen(path));
}

/// The folder of the path that stands at the address now.
QString FileCommands::startFolder(const QString &address) const
{
    const QString path = m_context.store().value(address);
    // Opening a folder of another computer would send it the user's credentials.
    if (isPathOfOtherComputer(path) && !m_fileAccess.isTrusted(address))
        return {};
    const QString usual = QDir::fromNativeSeparators(path);
    return usual.left(usual.lastIndexOf(u'/') + 1);
}

void FileCommands::closeDialog()
{
    if (m_dialog)
        m_dialog->reject();
}

void FileCommands::transferSettings(const QString &param)
{
    const QString slot = QStringLiteral("CWinMain::settingsSlot");
    const QStringList fields = slotFields(param);
    const bool isWrite = fields.constFirst() == QLatin1String("write");
    if (!isWrite && fields.constFirst() != QLatin1String("read"))
        m_context.report(wrongAction(slot, fields.constFirst()));
    else if (fields.size() != 3 || m_context.description().document().first(fields[2]).isNull())
        m_context.report(wrongParam(slot, param));
    else if (isWrite)
        writeSettings(fields[1], fields[2]);
    else
        readSettings(fields[1], fields[2]);
}

void FileCommands::writeSettings(const QString &pathAddress, const QString &tag)
{
    const auto path = m_fileAccess.permitted(pathAddress, FileUse::Write);
    if (!path)
        return;
    QString text;
    QStringList leftOut;
    const SettingsSection section(m_context.description().document().first(tag));
    const PatternBudget budget;
    const QList<Assignment> values = section.values(m_context.store());
    if (budget.isExhausted())
        return; // the store has reported it
    for (const Assignment &assignment : values) {
        if (const auto line = settingsLine(assignment))
            text += *line;
        else
            leftOut.append(assignment.path);
    }
    if (!writeWholeFile(*path, text.toUtf8())) {
        m_services.showDialog(dialogtags::ExportFailed);
        return;
    }
    if (!leftOut.isEmpty())
        m_context.report(
            WindowText::tr("These settings hold characters that the file cannot hold, and are not in it: %1")
                .arg(leftOut.join(QStringLiteral(", "))));
}

void FileCommands::readSettings(const QString &pathAddress, const QString &tag)
{
    const auto path = m_fileAccess.permitted(pathAddress, FileUse::Read);
    if (!path)
        return;
    QFile file(*path);
    if (!file.open(QIODevice::ReadOnly)) {
        m_context.report(cannotOpen(*path));
        return;
    }
    const QByteArray text = file.read(limits::SettingsText + 1);
    if (text.size() > limits::SettingsText) {
        m_context.report(WindowText::tr("File \"%1\" is too large").arg(*path));
        return;
    }
    const SettingsSection section(m_context.description().document().first(tag));
    const PatternBudget budget;
    const QList<Assignment> listed = section.listed(readSettingsLines(text));
    if (budget.isExhausted())
        m_context.report(WindowText::tr("The patterns of \"%1\" take too long").arg(tag));
    else
        m_bindings.write(listed);
}

void FileCommands::copyConfigurationFile(const QString &param)
{
    const QStringList fields = slotFields(param);
    if (fields.size() != 2) {
        m_context.report(
            WindowText::tr("Wrong arguments %1(%2)").arg(QStringLiteral("CWinMain::saveFileAs"), param));
        return;
    }
    QFile source(m_context.store().filePath(fields[0]));
    if (!source.open(QIODevice::ReadOnly)) {
        m_context.report(cannotOpen(source.fileName()));
        return;
    }
    const auto destination = m_fileAccess.permitted(fields[1], FileUse::Write);
    if (destination && !writeWholeFile(*destination, source.readAll()))
        m_context.report(cannotOpen(*destination));
}

QString defaultSuffix(const QString &filter)
{
    static const TextPattern extension(QStringLiteral("\\(\\*\\.([^\\)\\,]*)\\)|\\,"));
    const auto match = extension.find(filter);
    // Extensions of one filter may also be separated by blanks.
    return match ? match->captures.value(1).section(u' ', 0, 0) : QString();
}

} // namespace paravue
