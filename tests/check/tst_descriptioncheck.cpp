#include "check/DescriptionCheck.h"
#include "recorder/RecorderServer.h"
#include "recorder/files/Gzip.h"

#include <QFileInfo>
#include <QStringConverter>
#include <QTemporaryDir>
#include <QTest>

using namespace paravue;

namespace
{

/// A description with these cells in the second line and \a rest, which stands beside the tabs, in the
/// fourth.
QByteArray description(const QByteArray &cells, const QByteArray &rest = {})
{
    return "<pvsetup><window><main/></window><tabwidget><tab><item type='gridlayout'>\n" + cells +
           "\n</item></tab></tabwidget>\n" + rest + "\n</pvsetup>\n";
}

QByteArray button(const QByteArray &actions)
{
    return "<item type='pushbutton'>" + actions + "</item>";
}

QByteArray call(const QByteArray &slot, const QByteArray &param, const QByteArray &target = "main")
{
    return "<action type='call' slot='" + slot + "' param='" + param + "'>" + target + "</action>";
}

QString line(const DescriptionProblem &problem)
{
    const bool isError = problem.severity == DescriptionProblem::Severity::Error;
    return QString("%1:%2 %3: %4")
        .arg(problem.line)
        .arg(problem.column)
        .arg(isError ? "error" : "warning", problem.text);
}

} // namespace

class TestDescriptionCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsProblems_data();
    void findsProblems();
    void looksIntoFiles();
    void leavesModelsAlone_data();
    void leavesModelsAlone();
    void documentsWhatIsRight();

private:
    QStringList check(const QByteArray &text, const QString &files = {});

    QTemporaryDir m_folder;
};

QStringList TestDescriptionCheck::check(const QByteArray &text, const QString &files)
{
    QFile file(m_folder.filePath("described.xml"));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        return {"cannot write"};
    file.close();
    QStringList lines;
    for (const DescriptionProblem &problem : checkDescription(file.fileName(), files))
        lines += line(problem).replace(file.fileName(), "FILE");
    // Most cells of this test have no place, and most windows no OK button.
    lines.removeIf([&](const QString &found) {
        return (found.contains("covers this place") && !text.contains("row=")) ||
               (found.contains("there is no \"buttonOK\"") && !text.contains("<no_ok/>"));
    });
    return lines;
}

void TestDescriptionCheck::findsProblems_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("problems");
    const auto row = [](const char *name, const QByteArray &text, const QStringList &problems) {
        QTest::newRow(name) << text << problems;
    };

    row("nothing wrong", description(button(call("setValue", "net/untitled/IP/1"))), {});

    // Texts that the window does not read at all.
    row("not well-formed", "<pvsetup>\n  <a></b>", {"2:9 error: Opening and ending tag mismatch."});
    row("packed", recorder::gzip("<pvsetup>\n  <link1/></pvsetup>"),
        {"2:3 error: The window uses the tag \"link1\" itself"});
    row("packed beyond the limit", recorder::gzip(QByteArray(16 * 1024 * 1024 + 1, ' ')),
        {"0:0 error: File \"FILE\" is too large"});
    row("other root", "\n <setup/>", {"2:2 error: FILE is not an Paravue Setup config file."});
    row("other version", "<pvsetup version='2'/>", {"1:1 error: FILE file version is not 1.0"});
    row("entities", "<!DOCTYPE p [<!ENTITY a 'b'>]><pvsetup/>", {"0:0 error: FILE: it declares entities"});

    // Places.
    const QByteArray blink = "<timetask type='blink'/>";
    const QString unknown = " error: Unknown time task \"blink\"";
    const auto window = [](const QByteArray &inside) {
        return "<pvsetup><window>" + inside + "</window></pvsetup>";
    };
    row("start tag of several lines", window("\n\t<timetask\n type='blink'\n/>"), {"2:2" + unknown});
    row("behind other markup", window("<!-- <a>\n<b> --><?x <c>?><![CDATA[><d>]]>" + blink),
        {"2:33" + unknown});
    row("carriage returns", window("\r\n\r\n  " + blink), {"3:3" + unknown});
    row("letters of several bytes", window("<title>\xD0\x96\xF0\x9F\x98\x80</title>" + blink),
        {"1:35" + unknown});
    const QString wide = QChar(0xFEFF) + QString::fromLatin1(window("\n " + blink));
    row("UTF-16", QByteArray(reinterpret_cast<const char *>(wide.utf16()), wide.size() * 2),
        {"2:2" + unknown});
    row("several problems", description("<item type='b'/>\n<item type='a'/>", "<link3/>"),
        {"2:1 error: Unknown control type \"b\"", "3:1 error: Unknown control type \"a\"",
         "5:1 error: The window uses the tag \"link3\" itself"});

    // What is built.
    row("type on a page", "<pvsetup><tabwidget><tab><item type='edit'/></tab></tabwidget></pvsetup>",
        {"1:26 error: Unknown node type \"edit\": a page holds grids, and a control stands in one of them"});
    row("inner tabs",
        description("<item type='tabwidget'><tab><item type='gridlayout'><item type='x'/></item>"
                    "</tab><selection>1</selection></item>"),
        {"2:53 error: Unknown control type \"x\"",
         "2:82 warning: There is no page 1; the first one has the number 0"});
    row("beyond the grid",
        description("<item type='edit' row='999' rowSpan='2'/><stretch column='1000'>1</stretch>"),
        {"2:1 error: This row or column is beyond the limits of a grid",
         "2:42 error: This row or column is beyond the limits of a grid"});
    row("decoration", description("<item type='edit'><controlWidget/></item>"),
        {"2:19 error: The window uses the tag \"controlWidget\" itself"});
    row("words", description("<item type='label' row='x' alignment='centre' enabled='false'/>"),
        {"2:1 warning: Unknown word in alignment=\"centre\"; known are left, center, right",
         "2:1 warning: Unknown word in enabled=\"false\"; known are yes, no",
         "2:1 warning: row=\"x\" is no number and counts as 0"});
    row("limits of fields",
        description("<item type='edit' minimum='low' maximum='-1'/>\n<item type='edit' minimum='2' "
                    "maximum='1' required='always'/>\n<item type='dropdown' required='yes' maximum='1'/>"
                    "\n<item type='edit' minimum='1' maximum='1' required='no'/>"),
        {"2:1 warning: minimum=\"low\" is no number and limits nothing",
         "3:1 warning: Unknown word in required=\"always\"; known are no, yes",
         "3:1 warning: minimum is greater than maximum",
         "4:1 warning: The attribute \"maximum\" has no meaning here",
         "4:1 warning: The attribute \"required\" has no meaning here"});
    row("secret",
        description("<item type='label' secret='yes'><value>net/u/a</value></item>\n"
                    "<item type='edit' row='1' secret='on'/>\n<item type='separator' row='2' secret='yes'/>"),
        {"3:1 warning: Unknown word in secret=\"on\"; known are no, yes",
         "4:1 warning: The attribute \"secret\" has no meaning here"});
    row("validator", description("<item type='edit' validator='[0-9'/>"),
        {"2:1 error: The regular expression \"[0-9\" is invalid: missing terminating ] for character class"});

    row("attributes",
        description("<item type='label' colum='1' minvalue='3'/>\n<item row='1' type='scroll' minValue='3'/>"
                    "\n<stretch collumn='1'>1</stretch><item row='2' type='gridlayout' width='5'/>",
                    "<buttonOK>" + call("showDialog", "d") +
                        "</buttonOK>\n<a width='5' size='5'><d/><item type='gridlayout'/></a>"),
        {"2:1 warning: The attribute \"colum\" has no meaning here; \"column\" would have one",
         "2:1 warning: The attribute \"minvalue\" has no meaning here",
         "3:1 warning: The attribute \"minValue\" has no meaning here; \"minvalue\" would have one",
         "4:1 error: A stretch needs a \"column\" or a \"row\"",
         "4:1 warning: The attribute \"collumn\" has no meaning here; \"column\" would have one",
         "4:33 warning: The attribute \"width\" has no meaning here",
         "7:1 warning: The attribute \"size\" has no meaning here"});
    row("elements that nearly are words",
        description(
            "<item type='edit'><Key>net/u/a</Key><tooltpi>x</tooltpi><tool_tip/><abc/></item>\n" +
            button("<Action type='call'>main</Action><action type='call' slot='setFocus'>tooltp</action>") +
            "\n<item type='label'><tooltp/></item>"),
        {"2:19 warning: Nothing refers to the tag \"Key\"; is it meant as \"key\"?",
         "2:37 warning: Nothing refers to the tag \"tooltpi\"; is it meant as \"tooltip\"?",
         "2:57 warning: Nothing refers to the tag \"tool_tip\"; is it meant as \"tooltip\"?",
         "3:25 warning: Nothing refers to the tag \"Action\"; is it meant as \"action\"?"});
    row("places in a grid",
        description("<item type='label' row='1' columnSpan='2'/><item type='label' row='1' column='1'/>\n"
                    "<item type='label' row='2' rowSpan='-1'/><item type='label' row='3'/>"
                    "<item type='label' row='3' visible='no'/><item type='label' column='3' row='3'/>"),
        {"2:44 warning: Another item of the grid covers this place: row 1, column 1",
         "3:42 warning: Another item of the grid covers this place: row 3, column 0"});
    row("sizes",
        "<pvsetup><window>\n<width>2000</width><height>1080</height></window><tabwidget><tab>"
        "<item type='gridlayout'>\n<item type='list' width='1921' height='1080'/></item></tab></tabwidget>"
        "</pvsetup>",
        {"2:1 warning: A width of 2000 pixels does not fit a screen of 1920 × 1080",
         "3:1 warning: A width of 1921 pixels does not fit a screen of 1920 × 1080"});

    // The window.
    row("no OK button", "\n<pvsetup><tabwidget/><no_ok/></pvsetup>",
        {"2:1 warning: OK does nothing: there is no \"buttonOK\" with a call"});
    row("OK button without calls", "<pvsetup>\n<buttonOK><text>OK</text></buttonOK></pvsetup>",
        {"2:1 warning: OK does nothing: it neither saves nor closes without a call"});
    row("tabs without a keyboard",
        description(
            "<item type='tabwidget'><tab><name>&amp;One</name></tab>\n<tab><name>Tw&amp;o</name></tab>\n"
            "<tab/></item>"
            "\n<item type='tabwidget' enabled='no'><tab/></item>"
            "<item type='tabwidget' enabled='no'><tab/><tabs/></item>" +
            button("<action type='call' slot='show'>tabs</action>")),
        {"3:6 warning: Alt+O is the key of the tab \"One\" already",
         "4:1 warning: A tab without a name cannot be told from others by keyboard",
         "5:1 warning: Nobody can reach these tabs: nothing enables or shows the control",
         "5:50 warning: Nobody can reach these tabs: nothing enables or shows the control"});

    // Actions.
    row("no such tag", description(button("<action type='call'>x</action>")),
        {"2:25 error: There is no tag \"x\""});
    row("tag in no control", description(button("<action type='call'>x</action>"), "<a><x/></a>"),
        {"2:25 error: The tag \"x\" stands in no control"});
    row("no such slot", description(button("<action type='call' slot='wink'>x</action><x/>")),
        {"2:25 error: A control of the type \"pushbutton\" has no slot \"wink\""});
    row("caption of a label",
        description("<item type='label'><x/></item>" + button(call("setText", "1", "x"))), {});
    row("slot of every object", description(button("<action type='call' slot='deleteLater'>main</action>")),
        {"2:25 error: The window has no slot \"deleteLater\""});
    row("too many arguments", description(button(call("accept", "1"))),
        {"2:25 error: The slot \"accept\" takes no param"});
    row("too few arguments", description(button("<action type='call' slot='setValue'>main</action>")),
        {"2:25 error: The slot \"setValue\" needs a param"});
    row("actions that never run",
        description("<item type='checkbox'><x/><action type='enable' state='empty'>x</action>"
                    "<action type='enable'>x</action></item>\n"
                    "<item type='edit'><action type='call' slot='clear'>y</action><y/></item>",
                    "<buttonCancel><action type='call' slot='reject'>main</action></buttonCancel>"),
        {"2:27 warning: Unknown state \"empty\"; known are on, off",
         "2:73 warning: Without a state this action never runs",
         "3:19 warning: A control of the type \"edit\" runs no calls, so this action never runs",
         "5:15 warning: Nothing runs this action: it stands in no control"});
    const QByteArray stateCall = "<action type='call' state='on' slot='accept'>main</action>";
    row("states of buttons",
        description(
            "<item type='pushbutton' checkable='true'>" + stateCall +
            "</item><item type='pushbutton' column='1'>" + stateCall +
            "</item>\n<item type='k9m_button' row='1'>" + stateCall +
            "<action type='enable' state='on'>x</action><x/></item>\n<item type='k9m_button' row='2'>" +
            stateCall + "<key>net/untitled/A</key></item>"),
        {"2:142 error: A control of the type \"pushbutton\" has no states, so this action never runs",
         "3:33 error: A control of the type \"k9m_button\" has no states, so this action never runs",
         "3:91 warning: A control of the type \"k9m_button\" has no states, so this action never runs"});
    row("states of a drop-down list",
        description("<item type='dropdown'><text>A<key>net/untitled/A/1</key></text>\n"
                    "<action type='call' state='net/untitled/A/1' slot='accept'>main</action>\n" +
                    stateCall + "</item>"),
        {"4:1 warning: Unknown state \"on\"; known are net/untitled/A/1"});
    row("state of a scroll bar", description("<item type='scroll'>" + stateCall + "</item>"),
        {"2:21 error: A control of the type \"scroll\" has no states, so this action never runs"});
    row("action type", description(button("<action type='hide'>main</action>")),
        {"2:25 error: Unknown action type \"hide\""});
    row("function",
        description(button(call("callSetup", "soft_rebot,", "s")) + "\n<item type='setup'><s/></item>"),
        {"2:25 error: There is no function \"soft_rebot\""});
    row("calls that lead back",
        description(
            button("<a/>" + call("click", "", "b").replace(" param=''", "")) +
                "\n<item type='checkbox'><b/><action type='call' slot='animateClick'>a</action>"
                "<action type='call' slot='toggle'>c</action></item>"
                "<item type='checkbox'><c/><action type='call' slot='toggle' state='on'>c</action></item>",
            "<buttonOK><action type='call' slot='saveSettings'>main</action></buttonOK>"),
        {"2:29 error: This call does not come to an end: it leads into a circle of calls",
         "3:27 error: This call does not come to an end: it leads into a circle of calls",
         "5:11 error: This call does not come to an end: it leads into a circle of calls"});
    row("window as a target",
        description("<item type='edit'><action type='disable' state='empty'>main</action>"
                    "</item>"),
        {"2:19 error: The window is never enabled or disabled"});
    row("negative period", window("<timetask type='call' slot='reject' period='-1'>m</timetask><m/>"),
        {"1:18 warning: With a negative period this task never runs"});
    row("picture task", window("<timetask type='v3getjpeg'><target>main</target></timetask><main/>"),
        {"1:18 error: A task that fetches pictures needs a \"url\"",
         "1:18 error: The window shows no pictures"});
    const QByteArray turning = "'><url>u</url><target>m</target><ptz>";
    row("turning camera",
        "<pvsetup><window>\n<timetask type='startVideoOnline" + turning + "m</ptz></timetask>" +
            "\n<timetask type='startVideoOnline" + turning + "w</ptz></timetask>" +
            "\n<timetask type='v3getjpeg" + turning + "n</ptz></timetask><w/></window><tabwidget><tab>" +
            "<item type='gridlayout'><item "
            "type='PTZcrossView'><m/></item></item></tab></tabwidget></pvsetup>",
        {"3:65 error: The window shows no position of a camera", "4:58 error: There is no tag \"n\"",
         "4:58 warning: Only live video tells where a camera looks"});

    // Parameters of the window's slots.
    row("no value", description(button(call("setValue", "net/untitled/IP"))),
        {"2:25 error: \"net/untitled/IP\" has no value to write; that would be file/section/key/value"});
    row("values as parameters", description(button(call("setValue", "{net/untitled/A}/x"))), {});
    row("no such dialog", description(button(call("showDialog", "d"))),
        {"2:25 error: Unknown dialog tag \"d\""});
    row("dialog without a page", description(button(call("showDialog", "d")), "<a><d/></a>"),
        {"2:25 error: The first tag \"d\" stands in no dialog"});
    row("dialogs",
        description(button(call("showDialog", "d")),
                    "<one><d/><item type='gridlayout'/></one><two><e/><item type='gridlayout'/></two>"),
        {"4:41 warning: Nothing opens the dialog \"two\""});

    row("dialog that opens itself",
        description(button(call("showDialog", "d")),
                    "<a><d/><item type='gridlayout'>" + button(call("showDialog", "d")) + "</item></a>"),
        {"4:56 warning: The dialog \"d\" is open already when this runs"});
    row("users",
        description("<item type='accesslist'><key>users/untitled/x</key></item>" +
                    button(call("accessListSlot", "newok") + call("accessListSlot", "del"))),
        {"2:25 error: \"users/untitled/x\" is no group of values; that would be file/section",
         "2:83 error: This call may show dialogs that are missing: accessdlgerr_namedouble, "
         "accessdlgerr_editrights, accessdlgerr_name, accessdlgerr_pass",
         "2:83 error: This call works on the control with the tag \"accesslist\", and there is none of that "
         "type",
         "2:152 error: Unknown word \"del\" in the parameter; known are edit, new, newok, remove"});

    row("files",
        description(button(call("fileDialog", "open,@t,All (*),general/a/b") + "\n" +
                           call("fileDialog", "load,t,net") + "\n" + call("fileDialog", "load,t,*,net") +
                           "\n" + call("saveFileAs", "nett,general/a/b") + "\n" +
                           call("settingsSlot", "write,general/a/b,s")),
                    "<translations><ru><t>t</t></ru></translations>"),
        {"3:1 error: The parameter has the wrong number of fields; it must be action,title,filter,address",
         "4:1 error: \"net\" is no address; that would be file/section/key",
         "4:1 error: Unknown word \"load\" in the parameter; known are open, save",
         "5:1 error: No recorder sends a file \"nett\", and the description does not list it",
         "6:1 error: There is no section \"s\" that lists what to write",
         "6:1 error: This call may show dialogs that are missing: filewriteerror"});

    // Addresses.
    row("addresses",
        description("<item type='edit'><key>net/IP</key><key>nett/untitled/IP</key></item>"
                    "\n<item type='label'><text>{a} {general/a/b/c/d}</text></item>"),
        {"2:19 error: \"net/IP\" is no address; that would be file/section/key",
         "2:36 error: No recorder sends a file \"nett\", and the description does not list it",
         "3:20 error: \"a\" is no address; that would be file/section/key"});
    row("own list of files",
        description(
            "<item type='edit'><key>lens/a/b</key><key>lens.original/a/b</key><key>net/a/b</key></item>",
            "<di><difile name='interface'/><difile name='lens' type='ini' get_command='x'/><difile "
            "name='map'/></di>"),
        {"2:66 warning: The file \"net\" is not in the list of files of the description, so it is not "
         "fetched",
         "4:31 warning: Unknown file type \"ini\" counts as \"inifile\"",
         "4:79 warning: Without a get_command the file \"map\" is not fetched"});
    row("files that would lead elsewhere",
        description("", "<di><difile name='interface'/><difile name='..\\net' get_command='x'/>"
                        "<difile name='COM1.txt' get_command='x'/></di>"),
        {"4:31 error: \"..\\net\" is no name for a configuration file",
         "4:70 error: \"COM1.txt\" is no name for a configuration file"});
    row("pattern of keys", description("", "<s><regexp_key>net/untitled/a)|(b</regexp_key></s>"),
        {"4:4 error: The regular expression \"untitled/a)|(b\" is invalid: unmatched closing parenthesis"});
    row("choices",
        description("<item type='dropdown'><text>a</text>\n<text>b</text><text>c<key>net/u/k/3</key></text>"
                    "\n<key>net/u/k/1</key><keyset>net/u/a/1, net/u/b</keyset><keyset/><keyset/>"
                    "\n<keyset/></item>"),
        {"3:1 warning: This entry has no key, so choosing it writes nothing",
         "4:21 error: \"net/u/b\" has no value to write; that would be file/section/key/value",
         "5:1 warning: There is no entry for this keyset"});
    row("keysets that nothing reaches",
        description("<item type='dropdown'><text>a<key>net/u/k/1</key><keyset>net/u/a/1</keyset></text>"
                    "<key/><text>b</text><key>net/u/k/2</key></item>\n<keyset/>"),
        {"2:50 warning: Nothing uses this keyset: it stands in no list of choices",
         "3:1 warning: Nothing uses this keyset: it stands in no list of choices"});
    row("keys that nothing reads",
        description("<item type='dropdown'><text>a<key>net/u/k/1</key><key>net/u/k/2</key></text></item>\n"
                    "<item type='vornschedule'><key>net/u/A</key><key>net/u/B</key></item>\n"
                    "<item type='softlist'/>"),
        {"2:50 warning: This key is not used: an entry has one",
         "3:45 warning: This key is not used: a week has one or seven",
         "4:1 warning: Without a key the list shows nothing"});
    row("custom controls",
        description("<item type='diskfitness' minvalue='10'><key>disk/u/SMART</key></item>"
                    "<item type='PTZCalibrator'><key>net/u</key><key>net/u</key></item>\n"
                    "<item type='maskctrl' mask='Privacy'/>\n"
                    "<item type='vornschedule' resolution='20'><kind value='ab'/><kind "
                    "value='\xF0\x9F\x98\x80'/></item>"),
        {"2:113 error: \"net/u\" is no address; that would be file/section/key",
         "3:1 warning: Unknown word in mask=\"Privacy\"; known are motion, privacy",
         "4:1 warning: Unknown word in resolution=\"20\"; known are 60, 30, 15",
         "4:43 error: value=\"ab\" is not one character, so nothing can be planned with this kind"});
    row("keys without entries",
        description("<item type='dropdown'><text>a</text><key>net/u/k/1</key>"
                    "<key>net/u/k/2</key></item>"),
        {"2:57 warning: There is no entry for this key"});
    row("list", description("<item type='list'><column_source>net/u/a</column_source></item>"),
        {"2:1 warning: Without a row_count the list shows nothing of its sources",
         "2:19 warning: There is no column for this source"});

    // Texts.
    const auto label = [](const QByteArray &text) {
        return "<item type='label'><text>" + text + "</text></item>";
    };
    row("missing translations",
        description(label("@a @b: me@b.org") + "\n" + label("@c"),
                    "<translations><ru><a>1</a><b>1</b></ru><en><b>2</b><c/></en></translations>"),
        {"2:20 error: The text \"@a\" has no translation into en",
         "2:20 error: The text \"@b:\" has no translation (an id ends at a blank; \"@b\" would have one)",
         "3:20 error: The text \"@c\" has no translation"});
    row("translations of translations",
        description("",
                    "<translations><ru><a>@b</a><b>x @c</b><c>x @b {net}</c><d>@@e</d></ru></translations>"),
        {"4:19 error: \"@b\" begins a translation and is shown as it is written there",
         "4:39 error: \"net\" is no address; that would be file/section/key",
         "4:39 error: The translation of \"@b\" into ru refers to itself",
         "4:56 error: The text \"@e\" has no translation into ru"});
    row("unused texts", description("", "<translations><ru><a>1</a></ru><en><b>1</b></en></translations>"),
        {"4:19 warning: The text \"@a\" has no translation into en",
         "4:36 warning: The text \"@b\" has no translation into ru"});
    row("texts in one language",
        description(
            label("Name: {net/u/a} kB") + "\n" + label("DHCP 5 GHz {net/u/address}") +
                "<item type='dropdown'><text>English<key>streams/common/language/en</key></text></item>",
            "<translations><ru/><en/></translations>"),
        {"2:20 warning: This text is the same in all languages; \"@\" with an id would have a translation "
         "into "
         "each"});
    row("braces", description(label("{net/u/a") + "\n" + label("net/u/a} {net/u/{a}}")),
        {"2:20 warning: A \"{\" has no \"}\", so no value is shown for it",
         "3:20 error: \"a\" is no address; that would be file/section/key",
         "3:20 warning: A \"}\" has no \"{\", so no value is shown for it"});
    const QString literally = " is shown as it stands: ";
    row("keys and markup",
        description("<item type='pushbutton'><text>R &amp; D</text></item>\n"
                    "<item type='checkbox'><text>&lt;b>a&lt;/b></text></item>\n" +
                        label("&amp;Name") + "\n" + label("R&amp;D &lt; 5, a &lt;b>fat&lt;/b>") + "\n" +
                        label("&lt;i>Type&lt;/i> &lt;name>") + "\n" +
                        label("&lt;b>a&lt;/b>&lt;img src='x'>") + "\n" + label("5 &amp;gt; 6") + "\n" +
                        button("<text>@k</text>") + label("@k"),
                    "<translations><ru><k>a &amp; b</k></ru></translations>"),
        {"2:25 warning: The \"&\" is not shown here; \"&amp;&amp;\" shows one",
         "3:23 warning: \"<b>\"" + literally + "only labels and tool tips read markup",
         "4:20 warning: The \"&\"" + literally + "only buttons, check boxes and tabs have keys",
         "5:20 warning: \"<b>\"" + literally + "the first \"<\" of the text begins no tag",
         "6:20 warning: \"<name>\" counts as markup and is not shown; \"&amp;lt;\" shows a \"<\"",
         "7:20 warning: The markup is shown as it stands, since it refers to something outside",
         "8:20 warning: \"&gt;\"" + literally + "the text has no markup",
         "11:19 warning: The \"&\" is not shown here; \"&amp;&amp;\" shows one"});
    row("unknown language",
        description(button(call("setValue", "streams/common/language/de")),
                    "<translations><en/></translations>"),
        {"2:25 warning: There are no translations into \"de\"",
         "4:1 warning: There is no translation into \"ru\", which is the language as long as the recorder "
         "names "
         "none"});
}

void TestDescriptionCheck::findsProblems()
{
    QFETCH(QByteArray, text);
    QTEST(check(text), "problems");
}

void TestDescriptionCheck::looksIntoFiles()
{
    const QDir files(m_folder.filePath("files"));
    QVERIFY(files.mkpath("."));
    const QByteArray content = "IP=1\nROWS=2\nNAME0=a\n[ other ]\nPORT = 5\n";
    QFile net(files.filePath("net"));
    QVERIFY(net.open(QIODevice::WriteOnly) && net.write(content) == content.size());
    net.close();

    const QByteArray text = description(
        "<item type='label'><text>{net/untitled/IP} {net/other/PORT} {net/untitled/PORT}</text></item>\n"
        "<item type='edit'><key>net/untitled/GATE/0.0.0.0</key><key>time/untitled/A</key>"
        "<key>general/a/b</key></item>\n"
        "<item type='list'><column/><column/><column_source>net/untitled/NAME</column_source>"
        "<column_source>net/untitled/SIZE</column_source><row_count>net/untitled/ROWS</row_count></item>");
    const QStringList expected{"2:20 warning: The file \"net\" has no key \"untitled/PORT\"",
                               "3:55 warning: The folder of files has no \"time\"",
                               "4:85 warning: The file \"net\" has no key \"untitled/SIZE0\""};
    QCOMPARE(check(text, files.path()), expected);
    QVERIFY(net.open(QIODevice::ReadOnly));
    QCOMPARE(net.readAll(), content);
}

void TestDescriptionCheck::leavesModelsAlone_data()
{
    QTest::addColumn<QString>("model");
    for (const QString &model : recorder::RecorderServer::models())
        QTest::newRow(qPrintable(model)) << model;
}

void TestDescriptionCheck::leavesModelsAlone()
{
    QFETCH(QString, model);
    const QTemporaryDir folder;
    const recorder::RecorderServer server(folder.path(), model);
    QStringList problems;
    for (const DescriptionProblem &problem :
         checkDescription(server.filePath(QStringLiteral("interface")), folder.path()))
        problems += line(problem);
    QCOMPARE(problems, QStringList());
}

/// The page of patterns quotes a description in which there is nothing to find.
void TestDescriptionCheck::documentsWhatIsRight()
{
    const QTemporaryDir folder;
    const recorder::RecorderServer server(folder.path(), "everything");
    QStringList problems;
    for (const DescriptionProblem &problem : checkDescription(DOCS "/patterns.xml", folder.path()))
        problems += line(problem);
    QCOMPARE(problems, QStringList());

    const auto linesOf = [](const char *path) {
        QFile file(path);
        QStringList lines;
        if (file.open(QIODevice::ReadOnly)) {
            for (const QString &line : QString::fromUtf8(file.readAll()).split('\n'))
                lines << line.trimmed();
        }
        return lines.join('\n');
    };
    const QString description = linesOf(DOCS "/patterns.xml");
    const QStringList parts = linesOf(DOCS "/patterns.md").split("```");
    QVERIFY(parts.size() > 20);
    for (qsizetype i = 1; i < parts.size(); i += 2)
        QVERIFY2(description.contains(parts[i].mid(QString("xml").size())), qPrintable(parts[i]));
}

QTEST_APPLESS_MAIN(TestDescriptionCheck)
#include "tst_descriptioncheck.moc"
