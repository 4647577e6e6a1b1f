#include "support/TestTable.h"
#include "ui/base/SafeText.h"

#include <QAbstractTextDocumentLayout>
#include <QRandomGenerator>
#include <QTextDocument>

using namespace paravue;
using paravue::test::TestTable;

namespace
{

/// Notes what a rich text asks for.
class CuriousDocument : public QTextDocument
{
public:
    QStringList asked;

protected:
    QVariant loadResource(int, const QUrl &name) override
    {
        if (!name.isEmpty())
            asked << name.toString();
        return {};
    }
};

QStringList askedFor(const QString &text)
{
    CuriousDocument document;
    document.setHtml(text);
    document.documentLayout()->documentSize();
    return document.asked;
}

} // namespace

class TestSafeText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksAtAttributes_data();
    void looksAtAttributes();
    void letsNothingAskForAnything();
};

void TestSafeText::looksAtAttributes_data()
{
    const TestTable<QString, bool> row("text", "isRich");
    row("words in bold", "<b>Important:</b> <i>Background</i> of the source url (href)", true);
    row("harmless attributes", "<p align='right' style=\"color: rgb(1,2,3)\"><font color=red>a</font></p>",
        true);
    row("words of attributes in a title", "<b title='src=1'>a</b>", true);
    row("line break", "a<br/>b", true);
    row("picture", "<img src='a.png'>", false);
    row("picture without quotes", "<b>a</b><IMG\nSRC = a.png>", false);
    row("background", "<body background=\"a.png\">", false);
    row("link", "<a href='file:///a'>a</a>", false);
    row("style", "<p style='background-image: url(a.png)'>a</p>", false);
    row("style with an escape", "<p style='background-image: u\\72l(a.png)'>a</p>", false);
    row("style with an entity", "<p style='background-image: &#117;rl(a.png)'>a</p>", false);
    row("style sheet", "<style>@import 'a.css';</style>", false);
    row("name with an entity", "<img &#115;rc='a.png'>", false);
    row("behind a comment", "<b>a</b><!-- color=' --><img src=a>'", false);
    row("behind a closing tag", "<b>a</b title='><img src=a>'>", false);
    row("behind a slash", "<b / title='><img src=a>'>", false);
    row("behind an equals sign", "<b ='><img src=a>'>", false);
    row("behind an escaped quote", "<b title='\\' a='><img src=a>'>", false);
}

void TestSafeText::looksAtAttributes()
{
    QFETCH(QString, text);
    QVERIFY(Qt::mightBeRichText(text));
    QTEST(safeTextFormat(text) != Qt::PlainText, "isRich");
    QTEST(safeRichText(text) == text, "isRich");
}

/// Qt's own reader of rich text says what a text asks for.
void TestSafeText::letsNothingAskForAnything()
{
    const QStringList parts{
        "<b>",   "</b",  "<img",       "<p", "<body",      "<!--",        "-->",
        "<",     ">",    "/",          "=",  " ",          "\"",          "'",
        "\\",    "src",  "background", "a",  "&",          "&#34;",       "title",
        "style", "\n",   "url(",       ")",  ";",          "<style>",     "x=y",
        "/>",    "<br>", "color",      "</", "<b title='", "<img src=a>", "style='background-image:"};
    QRandomGenerator random(7);
    int asking = 0;
    int safe = 0;
    for (int i = 0; i < 20'000; ++i) {
        QString text = "<b>";
        for (int part = random.bounded(2, 9); part > 0; --part)
            text += parts.at(random.bounded(int(parts.size())));
        const bool isSafe = safeTextFormat(text) != Qt::PlainText;
        const bool asks = !askedFor(text).isEmpty();
        QVERIFY2(!isSafe || !asks, qPrintable(text));
        asking += asks;
        safe += isSafe;
    }
    // Both kinds were there.
    QVERIFY2(asking > 500 && safe > 500, qPrintable(QString("%1 %2").arg(asking).arg(safe)));
}

QTEST_MAIN(TestSafeText)
#include "tst_safetext.moc"
