#include "device/dialog/cDlg.h"

#include "controls/DialogFrame.h"
#include "controls/MessageText.h"
#include "controls/ReadableColors.h"
#include "controls/SharedPictures.h"
#include "device/dialog/LoginIcons.h"
#include "device/login/SavedCredentials.h"
#include "device/login/SettingsFile.h"
#include "device/login/cODAdaptor.h"
#include "store/LocalEncoding.h"
#include "store/PasswordDigest.h"

#include <QAction>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QShowEvent>
#include <QVBoxLayout>

#include <algorithm>

using namespace paravue;

namespace
{

constexpr int Margin = 12;
constexpr int Spacing = 8;
constexpr int PictureSize = 32;
constexpr int LineLetters = 48; ///< of average width
/// A longer address is cut in its middle: it cannot be broken into lines.
constexpr qsizetype MaxShownUrl = 60;
const QString RememberKey = QStringLiteral("authorization/remember");

template <typename Widget>
Widget *named(const char *name, Widget *widget)
{
    widget->setObjectName(QLatin1StringView(name));
    return widget;
}

QLabel *textLabel(const char *name, QWidget *parent)
{
    auto *label = named(name, new QLabel(parent));
    // Addresses and names come from outside.
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel *paragraph(const char *name, QWidget *parent)
{
    QLabel *label = textLabel(name, parent);
    label->setWordWrap(true);
    label->setMinimumWidth(label->fontMetrics().averageCharWidth() * LineLetters);
    return label;
}

QString shownUrl(const QString &url)
{
    if (url.size() <= MaxShownUrl)
        return url;
    return url.left(MaxShownUrl / 2) + QChar(0x2026) + url.right(MaxShownUrl / 2);
}

QHBoxLayout *row(const char *name, QVBoxLayout *rows)
{
    auto *layout = named(name, new QHBoxLayout);
    layout->setSpacing(Spacing);
    rows->addLayout(layout);
    return layout;
}

} // namespace

cDlg::cDlg(Credentials &record, cODAdaptor *adaptor, QWidget *parent)
    : QDialog(parent), m_record(record), m_adaptor(adaptor), m_settings(SettingsFile::shared()),
      m_icon(named("labelIcon", new QLabel(this))), m_title(paragraph("labelTitle", this)),
      m_refusal(paragraph("labelRefusal", this)), m_notice(paragraph("labelNotice", this)),
      m_loginLabel(textLabel("labelLogin", this)), m_login(named("lineEditLogin", new QLineEdit(this))),
      m_passwordLabel(textLabel("labelPassword", this)),
      m_password(named("lineEditPassword", new QLineEdit(this))),
      m_remember(named("checkBoxRemember", new QCheckBox(this))),
      m_buttons(
          named("buttonBox", new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this)))
{
    setWindowTitle(tr("Dialog"));
    registerSharedPictures();
    const QIcon picture(QStringLiteral(":/icons/resources/settings.png"));
    m_icon->setPixmap(picture.pixmap(QSize(PictureSize, PictureSize), devicePixelRatioF()));
    m_loginLabel->setText(tr("Login"));
    m_passwordLabel->setText(tr("Password"));
    m_remember->setText(tr("Remember password"));
    m_password->setEchoMode(QLineEdit::Password);
    m_loginLabel->setBuddy(m_login);
    m_passwordLabel->setBuddy(m_password);
    m_refusal->hide();
    buildRows();
    addActions();
    applyPalette();
    showNotice();
    onODUpdate();

    m_login->setText(QString::fromLocal8Bit(m_record.login));
    m_remember->setChecked(m_settings->value(RememberKey, "true") == "true");
    onLoginChanged(m_login->text());
    (m_login->text().isEmpty() ? m_login : m_password)->setFocus();

    DialogFrame::give(*this, DialogFrame::Size::OfItsContent);
    connect(m_login, &QLineEdit::textChanged, this, &cDlg::onLoginChanged);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &cDlg::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &cDlg::reject);
    if (adaptor)
        connect(adaptor, &cODAdaptor::update, this, &cDlg::onODUpdate);
}

cDlg::~cDlg() = default;

void cDlg::buildRows()
{
    auto *rows = named("vboxLayout", new QVBoxLayout(this));
    rows->setContentsMargins(Margin, Margin, Margin, Margin);
    rows->setSpacing(Spacing);

    QHBoxLayout *title = row("hboxLayout", rows);
    title->addWidget(m_icon, 0, Qt::AlignTop);
    title->addWidget(m_title, 1);
    rows->addWidget(m_refusal);
    rows->addWidget(m_notice);

    QHBoxLayout *login = row("hboxLayout1", rows);
    login->addWidget(m_loginLabel);
    login->addWidget(m_login, 1);
    QHBoxLayout *password = row("hboxLayout2", rows);
    password->addWidget(m_passwordLabel);
    password->addWidget(m_password, 1);
    // The fields begin at one line.
    const int labelWidth = std::max(m_loginLabel->sizeHint().width(), m_passwordLabel->sizeHint().width());
    m_loginLabel->setMinimumWidth(labelWidth);
    m_passwordLabel->setMinimumWidth(labelWidth);

    row("hboxLayout3", rows)->addWidget(m_remember);
    rows->addStretch();
    row("hboxLayout4", rows)->addWidget(m_buttons);
}

/// They stand inside the fields, so that the keys of the dialog go where they always did.
void cDlg::addActions()
{
    m_showPassword = named("actionShowPassword", new QAction(this));
    m_showPassword->setCheckable(true);
    m_showPassword->setShortcut(QKeySequence(Qt::ALT | Qt::Key_F8));
    m_password->addAction(m_showPassword, QLineEdit::TrailingPosition);
    connect(m_showPassword, &QAction::toggled, this, &cDlg::showPassword);

    m_forget = named("actionForgetLogin", new QAction(this));
    m_forget->setToolTip(tr("Forget the remembered login"));
    m_forget->setVisible(savedCredentials(m_settings->all(), m_record.url).has_value());
    m_login->addAction(m_forget, QLineEdit::TrailingPosition);
    connect(m_forget, &QAction::triggered, this, &cDlg::forgetLogin);
}

void cDlg::showPassword(bool isShown)
{
    m_password->setEchoMode(isShown ? QLineEdit::Normal : QLineEdit::Password);
    applyPalette();
}

void cDlg::forgetLogin()
{
    Credentials forgotten;
    forgotten.url = m_record.url;
    m_settings->change([forgotten](SettingsMap &settings) { saveCredentials(settings, forgotten); });
    m_forget->setVisible(false);
    m_login->clear();
    m_password->clear();
    m_login->setFocus();
    m_notice->setText(tr("The remembered login is forgotten."));
    m_notice->show();
    makeRoom();
}

void cDlg::tellRefusal()
{
    m_refusal->setText(tr("The recorder has refused the login."));
    m_refusal->show();
    m_login->setAccessibleDescription(m_refusal->text());
    m_password->setAccessibleDescription(m_refusal->text());
}

void cDlg::showNotice()
{
    m_notice->setText(SettingsFile::takeNotice());
    m_notice->setVisible(!m_notice->text().isEmpty());
}

/// False, with the reason shown, when the recorder would not get what was typed.
bool cDlg::checkLetters()
{
    QLineEdit *refused = nullptr;
    if (!isInLocalEncoding(m_login->text())) {
        refused = m_login;
        m_refusal->setText(tr("The login has letters that this computer cannot send."));
    } else if (!isInLocalEncoding(m_password->text())) {
        refused = m_password;
        m_refusal->setText(tr("The password has letters that this computer cannot send."));
    }
    if (!refused)
        return true;
    m_refusal->show();
    refused->setAccessibleDescription(m_refusal->text());
    refused->setFocus();
    refused->selectAll();
    makeRoom();
    return false;
}

void cDlg::accept()
{
    if (!checkLetters())
        return;
    m_record.login = m_login->text().toLocal8Bit();
    m_record.password = passwordDigest(m_password->text().toLocal8Bit());
    m_record.remember = m_remember->isChecked();
    keepRemember();
    QDialog::accept();
}

void cDlg::reject()
{
    keepRemember();
    QDialog::reject();
}

void cDlg::keepRemember()
{
    m_settings->setValue(RememberKey, m_remember->isChecked() ? "true" : "false");
}

void cDlg::onLoginChanged(const QString &login)
{
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!login.isEmpty());
}

void cDlg::onODUpdate()
{
    const QString url = QString::fromLocal8Bit(m_record.url);
    const QString known = m_adaptor ? m_adaptor->name(url) : QString();
    if (!known.isEmpty())
        m_record.name = known.toUtf8();
    const QString name = QString::fromUtf8(m_record.name);
    const QString title = tr("Please enter authorization information for") + u' ' + shownUrl(url);
    m_title->setToolTip(url.size() > MaxShownUrl ? literalToolTip(url) : QString());
    m_title->setText(name.isEmpty() ? title : title + QStringLiteral(" (%1)").arg(name));
    // Qt makes room for more lines only until the window is shown.
    if (isVisible())
        makeRoom();
}

void cDlg::makeRoom()
{
    layout()->activate();
    const QSize ground = screen()->availableSize();
    const bool isTooHigh = layout()->totalHeightForWidth(width()) > ground.height();
    const int wide = isTooHigh ? std::max(width(), ground.width() * 9 / 10) : width();
    resize(wide, std::min(std::max(height(), layout()->totalHeightForWidth(wide)), ground.height()));
}

/// Makes room first, as Qt gives a new window no more than two thirds of the screen.
void cDlg::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        makeRoom();
    QDialog::showEvent(event);
}

void cDlg::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        applyPalette();
    QDialog::changeEvent(event);
}

/// The refusal and the icons stand out, on light and on dark grounds.
void cDlg::applyPalette()
{
    const bool isShown = m_showPassword->isChecked();
    m_showPassword->setIcon(eyeIcon(m_password->palette(), isShown));
    m_showPassword->setToolTip(isShown ? tr("Hide the password (Alt+F8)") : tr("Show the password (Alt+F8)"));
    m_forget->setIcon(crossIcon(m_login->palette()));
    const QColor ground = palette().color(QPalette::Window);
    QPalette palette = m_refusal->palette();
    palette.setColor(QPalette::WindowText, readableVersion(QColor(0xc6, 0x28, 0x28), ground));
    m_refusal->setPalette(palette);
}
