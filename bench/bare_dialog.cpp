// The peer of paravue-setup: the least program that shows a dialog. It says when the dialog is
// shown, before it is painted.

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QTextStream>
#include <QVBoxLayout>

namespace
{

class BareDialog : public QDialog
{
public:
    BareDialog()
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(new QLabel(QStringLiteral("Name")));
        layout->addWidget(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel));
    }

protected:
    void showEvent(QShowEvent *event) override
    {
        QDialog::showEvent(event);
        QTextStream(stdout) << "shown" << Qt::endl;
    }
};

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    BareDialog dialog;
    dialog.show();
    return QApplication::exec();
}
