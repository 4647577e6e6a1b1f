#pragma once

#include "device/login/Credentials.h"

#include <QDialog>
#include <QPointer>

#include <memory>

class QAction;
class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class cODAdaptor;

namespace paravue
{
class SettingsFile;
}

/// Asks for the login and the password of one recorder. Accepting it writes them into the record, the
/// password as its digest; what was typed is forgotten with the dialog.
class cDlg : public QDialog
{
    Q_OBJECT

public:
    /// \a record names the recorder and receives the answer; it must outlive the dialog. \a adaptor, when it
    /// is given, tells the recorder's name.
    cDlg(paravue::Credentials &record, cODAdaptor *adaptor, QWidget *parent);
    ~cDlg() override;

    /// Says that the recorder has refused the last login.
    void tellRefusal();

public Q_SLOTS:
    void accept() override;
    void reject() override;
    /// A login is needed to go on.
    void onLoginChanged(const QString &login);
    /// Shows the recorder's name in the title line, as far as it is known.
    void onODUpdate();

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void buildRows();
    void makeRoom();
    bool checkLetters();
    void keepRemember();
    void showNotice();
    void applyPalette();
    void addActions();
    void showPassword(bool isShown);
    void forgetLogin();

    paravue::Credentials &m_record;
    QPointer<cODAdaptor> m_adaptor;
    std::shared_ptr<paravue::SettingsFile> m_settings;

    QLabel *m_icon;
    QLabel *m_title;
    QLabel *m_refusal;
    QLabel *m_notice;
    QLabel *m_loginLabel;
    QLineEdit *m_login;
    QLabel *m_passwordLabel;
    QLineEdit *m_password;
    QCheckBox *m_remember;
    QDialogButtonBox *m_buttons;
    QAction *m_showPassword = nullptr;
    QAction *m_forget = nullptr;
};
