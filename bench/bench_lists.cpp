// A change of one user in a list of many, which writes and reads all of them.

#include "PairedRatio.h"

#include "controls/UserListView.h"
#include "store/OrbSetup.h"
#include "ui/CWinMain.h"

#include <QFile>
#include <QTemporaryDir>

#include <memory>
#include <stdexcept>

namespace
{

/// A setup window on a local store with a list of users.
class UserWindow
{
public:
    explicit UserWindow(int users)
    {
        QByteArray file = "CNT=" + QByteArray::number(users) + '\n';
        for (int i = 0; i < users; ++i) {
            const QByteArray number = QByteArray::number(i);
            file += "NAME" + number + "='user " + number + "'\nPASSWD" + number +
                    "='21232f297a57a5a743894a0e4a801fc3'\nLEVEL" + number + "=1\n";
        }
        write("users", file);
        write("interface", "<pvsetup><tabwidget><tab><name>Users</name><item type='gridlayout'>"
                           "<item type='accesslist'><key>users/untitled</key></item>"
                           "<item type='label' row='1'><text>{users/untitled/CNT}</text></item>"
                           "</item></tab></tabwidget></pvsetup>");
        m_window = std::make_unique<CWinMain>(&m_store, nullptr);
        m_list = m_window->findChild<paravue::UserListView *>();
        if (m_list->users().size() != users)
            throw std::runtime_error("not all users are shown");
    }

    void change()
    {
        paravue::User user = m_list->users().first();
        user.password = QString::number(++m_changes);
        m_list->replaceUser(0, user);
        if (m_store.value("users/untitled/PASSWD0") != user.password)
            throw std::runtime_error("the change was not written");
    }

private:
    void write(const QString &name, const QByteArray &text)
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            throw std::runtime_error("cannot write the files of the window");
        m_store.setFilePath(name, file.fileName());
    }

    QTemporaryDir m_folder;
    OrbSetup m_store;
    std::unique_ptr<CWinMain> m_window;
    paravue::UserListView *m_list = nullptr;
    int m_changes = 0;
};

/// Ours beside ours with 100 users, per user.
void changeOfOneUser(benchmark::State &state)
{
    const int users = int(state.range(0));
    UserWindow large(users);
    UserWindow small(100);
    paravue::bench::pairedRatio(
        state, [&] { large.change(); },
        [&] {
            for (int i = 0; i < 10; ++i)
                small.change();
        },
        {.limit = 2.5, .ourUnits = double(users), .peerUnits = 1000});
}
BENCHMARK(changeOfOneUser)->Arg(1000)->Arg(10'000)->Apply(paravue::bench::applyPaired);

} // namespace
