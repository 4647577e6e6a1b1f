#include "ConfigurationSeeds.h"

#include "Corpus.h"
#include "FuzzInput.h"

#include "device/login/SavedCredentials.h"
#include "recorder/files/Gzip.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotManifest.h"
#include "store/OrbSettings.h"

#include <QCryptographicHash>
#include <QDomDocument>
#include <QFile>
#include <QSet>

namespace paravue::fuzz
{

namespace
{

/// The files that a recorder is asked for, in this order.
const QStringList FileNames{"streams", "net", "time", "timers", "soft", "disk", "users", "state"};
/// The fuzzer does not read more of an input.
constexpr qsizetype LongestInput = 12'000;

QByteArray modelFile(const QString &name)
{
    QFile file(":/recorder/model/" + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("there is no model file %s", qPrintable(name));
    return file.readAll();
}

QByteArray joined(const QList<QByteArray> &pieces)
{
    return pieces.join(PieceBorder);
}

QString textOf(const QDomElement &element)
{
    QString text;
    QTextStream stream(&text);
    element.save(stream, 0);
    return text;
}

/// A description of its own with these \a cells, and \a rest beside the pages.
QByteArray described(const QString &cells, const QString &rest = {})
{
    const QString text =
        "<pvsetup version=\"1.0\"><window><main_window/></window><tabwidget><tab><name>@t</name>"
        "<item type=\"gridlayout\">" +
        cells + "</item></tab></tabwidget>" + rest +
        "<translations><ru><t>{net/untitled/IP}</t></ru></translations></pvsetup>";
    return text.toUtf8();
}

/// The parts of descriptions, each in a description of its own: a whole one is too large for an input. Of
/// parts with the same name, or controls of the same type, the first one is taken.
class DescriptionParts
{
public:
    explicit DescriptionParts(Corpus &corpus) : m_corpus(corpus) {}

    void addModel(const QString &file);

private:
    void add(const QString &name, const QByteArray &description);
    void addControls(const QDomElement &parent);
    void addDialog(const QDomElement &dialog);

    Corpus &m_corpus;
    QSet<QString> m_names;
};

void DescriptionParts::addModel(const QString &file)
{
    QDomDocument document;
    document.setContent(modelFile(file));
    const QDomElement root = document.documentElement();
    addControls(root);
    for (QDomElement child = root.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        if (!child.firstChildElement("item").isNull())
            addDialog(child);
        else if (child.tagName().startsWith("button") || child.tagName() == "window")
            add(child.tagName(), "<pvsetup>" + textOf(child).toUtf8() + "<tabwidget/></pvsetup>");
    }
}

void DescriptionParts::add(const QString &name, const QByteArray &description)
{
    if (description.size() > LongestInput || m_names.contains(name))
        return;
    m_names.insert(name);
    m_corpus.add("window", name, {}, description);
    m_corpus.add("check", name, {}, joined({description, "net\n" + modelFile("net")}));
}

void DescriptionParts::addControls(const QDomElement &parent)
{
    for (QDomElement child = parent.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const QString type = child.attribute("type");
        if (child.tagName() == "item" && type != "gridlayout")
            add(type, described(textOf(child)));
        addControls(child);
    }
}

void DescriptionParts::addDialog(const QDomElement &dialog)
{
    for (QDomElement tag = dialog.firstChildElement(); !tag.isNull(); tag = tag.nextSiblingElement()) {
        if (tag.hasChildNodes() || tag.hasAttributes())
            continue;
        add(tag.tagName(),
            described("<item type=\"pushbutton\"><action type=\"call\" slot=\"showDialog\" param=\"" +
                          tag.tagName() + "\">main_window</action></item>",
                      textOf(dialog)));
        return;
    }
}

/// What the file holds, each value changed a little, and a new key.
QList<QByteArray> editsOf(const QString &name)
{
    OrbSettings settings(":/recorder/model/" + name);
    QList<QByteArray> edits;
    for (const QString &value : settings.matching(".*"))
        edits << value.toUtf8() + '1';
    settings.setPath({}); // nothing is written
    edits = edits.mid(0, 4);
    return edits << "untitled/NEW/"
                 << "new/NEW/two words";
}

void addSnapshots(Corpus &corpus)
{
    Snapshot snapshot;
    snapshot.info.recorder = "10.0.0.5";
    snapshot.info.time = QDateTime::fromMSecsSinceEpoch(0, Qt::UTC);
    snapshot.info.leftOut = QStringList{"net/untitled/SMTP_PASSWORD"};
    QList<QByteArray> named;
    for (const QString &name : {"net", "users", "state"}) {
        snapshot.files.insert(name, modelFile(name));
        named << name.toUtf8() << modelFile(name);
    }
    snapshot.edited.insert("net", "ID=1\r\n");
    corpus.add("snapshot", "archive", {}, snapshotarchive::pack(snapshot).bytes);
    corpus.add("snapshot", "files", "F", joined(named));
    named << "other"
          << "PSK_KEY=secret\n"
          << "lines"
          << "; PASSWORD='x'\nwlan secret\n#!s/wlan .*/wlan {other/untitled/PSK_KEY}/\n";
    corpus.add("snapshot", "secrets", "F", joined(named));

    SnapshotManifest manifest{snapshot.info, {}};
    for (const char *entry : {"files/net", "edited/net"})
        manifest.files.insert(entry, {4, QCryptographicHash::hash("ID=1", QCryptographicHash::Sha256)});
    corpus.add(
        "snapshot", "entries", "E",
        joined({SnapshotManifest::EntryName, manifest.toJson(), "files/net", "ID=1", "edited/net", "ID=1"}));
}

void addFiles(Corpus &corpus)
{
    for (const QString &name : FileNames)
        corpus.add("ini", name, {}, joined(QList{modelFile(name)} + editsOf(name)));
    corpus.add("ini", "quotes", {},
               joined({"[s]\na = \"it's\"\nb=007\n[t]\r\nc = \n", "s/a/it's", "t/d/x y"}));

    const QByteArray state = modelFile("state");
    corpus.add("state", "state", {}, state);
    corpus.add("state", "pattern", {}, joined({"a\n#!s/a+/b{0}/\n", "[0-9]{1,5}", "8080"}));
    corpus.add("state", "model", {},
               joined({state, "((25[0-5]|2[0-4][0-9]|[1-9]?[0-9])\\.){3}[^ ]*$", "10.0.0.5"}));

    SettingsMap settings;
    Credentials record;
    record.url = "10.0.0.5:5049";
    record.login = "admin";
    record.password = "word";
    record.remember = true;
    saveCredentials(settings, record);
    corpus.add("settings", "login", {}, joined({settingsText(settings), "10.0.0.6", "guest", "word"}));
    corpus.add("settings", "new", {}, joined({"; none\n[default]\na\\b=00ff\n", "x"}));
}

void addTransfers(Corpus &corpus)
{
    const QByteArray description = described("<item type=\"label\"><text>{net/untitled/IP}</text></item>");
    const QByteArray list = described({}, "<di><difile name=\"interface\" get_command=\"GET SETUP\"/>"
                                          "<difile name=\"net\" get_command=\"GET NET CONFIG\" "
                                          "put_command=\"PUT NET CONFIG\" type=\"sectionless\"/>"
                                          "<difile name=\"state\" get_command=\"GET STATE CONFIG\" "
                                          "put_command=\"PUT STATE CONFIG\" type=\"state\"/></di>");
    QList<QByteArray> bodies;
    for (const QString &name : FileNames)
        bodies << modelFile(name);
    const QList<QByteArray> listed{list, modelFile("net"), modelFile("state")};
    const QByteArray refused = "LENGTH=19\r\nVORN_ANSWER=ERROR\r\n";
    const QByteArray reply = "LENGTH=20\r\nabcdVORN_ANSWER=OK\r\n";
    corpus.add("transfer", "all", QByteArray("\x13\0", 2), joined(QList{description} + bodies));
    corpus.add("transfer", "packed", QByteArray("\x17\x01", 2),
               joined(QList{recorder::gzip(description)} + bodies));
    corpus.add("transfer", "listed", QByteArray("\x13\0", 2), joined(listed));
    corpus.add("transfer", "refused", QByteArray("\x08\0", 2), refused);
    corpus.add("transfer", "replies", QByteArray("\x0d\x02", 2),
               joined({reply, "LENGTH=24\r\nVORN_ANSWER=ERROR:busy\r\n"}));
}

} // namespace

void addConfiguration(Corpus &corpus)
{
    addSnapshots(corpus);
    addFiles(corpus);
    addTransfers(corpus);
    DescriptionParts parts(corpus);
    for (const char *model : {"everything/interface.xml", "patrol/interface.xml", "interface.xml"})
        parts.addModel(model);
    corpus.add("check", "packed", {}, recorder::gzip(described({})));
}

} // namespace paravue::fuzz
