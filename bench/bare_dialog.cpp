// The peer of paravue-setup: the least program that shows a dialog. It says when the dialog is on the screen.

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
    void paintEvent(QPaintEvent *event) override
    {
        QDialog::paintEvent(event);
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
