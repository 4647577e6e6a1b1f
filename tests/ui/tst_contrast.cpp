// The contrasts of everything that the windows show, computed from what is painted. For what shows changes,
// also whether its texts have room, on screens of usual and of double density.

#include "DescribedWindow.h"

#include "controls/DialogLoop.h"
#include "controls/OrbDlgQuestion.h"
#include "controls/ReadableColors.h"
#include "controls/WindowLook.h"
#include "device/dialog/cDlg.h"
#include "setup/ProgramPalettes.h"
#include "snapshots/EditMerge.h"
#include "snapshots/SnapshotFolder.h"
#include "store/LinkStatus.h"
#include "support/TextInspector.h"
#include "ui/history/HistoryDialog.h"
#include "ui/history/MergeDialog.h"
#include "ui/review/ReviewDialog.h"
#include "ui/sending/ForeignChangesDialog.h"
#include "ui/sending/SendingDialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOptionButton>
#include <QStyleOptionSlider>
#include <QTabBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTreeWidget>

#include <algorithm>
#include <limits>
#include <memory>

using namespace paravue;
using namespace paravue::test;

namespace
{

constexpr int Scale = 3; // strokes of letters are then as wide as a whole pixel
using Colors = QHash<QRgb, int>;

const QByteArray Controls = R"(
    <item row="0" type="label"><text>Text</text></item>
    <item row="1" type="edit"><key>net/a/text</key></item>
    <item row="2" type="edit" password="on"><key>net/a/text</key></item>
    <item row="3" type="dropdown"><text>One<key>net/a/choice/1</key></text>
        <text>Two<key>net/a/choice/2</key></text></item>
    <item row="4" type="datetime" format="dd.MM.yyyy"><key>net/a/time</key></item>
    <item row="5" type="datetime" format="dd.MM.yyyy" calendarPopup="on"><key>net/a/time</key></item>
    <item row="6" type="checkbox"><text>Text</text><key>net/a/on</key></item>
    <item row="7" type="checkbox"><text>Text</text><key>net/a/off</key></item>
    <item row="8" type="pushbutton"><text>Text</text></item>
    <item row="9" type="pushbutton" checkable="true"><text>Text</text></item>
    <item row="10" type="pushbutton" checkable="true" color="green"><text>Text</text></item>
    <item row="11" type="pushbutton" checkable="true" color="blue"><text>Text</text></item>
    <item row="12" type="pushbutton" checkable="true" color="darkCyan"><text>Text</text></item>
    <item row="13" type="pushbutton" checkable="true" color="red"><text>Text</text></item>
    <item row="14" type="k9m_button" checkable="true"><text>Text</text></item>
    <item row="15" type="scroll" orientation="horizontal" maxvalue="9" value="4"/>
    <item row="16" type="progressbar" maxvalue="9" value="0"/>
    <item row="17" type="progressbar" maxvalue="9" value="9"/>
    <item row="18" type="orbpie"><size>9</size><used>4</used></item>
    <item row="19" type="list"><column>Column</column><text>One</text><text>Two</text></item>
    <item row="20" type="softlist"><key>soft/none</key><column>Column</column></item>
    <item row="21" type="accesslist"><key>net/users</key><column>Column</column></item>
    <item row="22" type="vornschedule"><key>net/week/1</key></item>
    <item row="23" type="maskctrl" ctrlColumns="4" ctrlRows="3"><key>net/a/mask</key></item>)";

const QByteArray ListsAndTabs = R"(
    <item row="0" type="dropdown"><text>One<key>net/a/choice/1</key></text>
        <text>Two<key>net/a/choice/2</key></text></item>
    <item row="1" type="list"><column>Column</column><text>One</text><text>Two</text></item>
    <item row="3" type="datetime" format="dd.MM.yyyy" calendarPopup="on"><key>net/a/time</key></item>
    <item row="2" type="tabwidget"><tab><name>One</name></tab><tab><name>Two</name></tab></item>)";

// The last one waits for the check box.
const QByteArray ValuesToRead = R"(
    <item row="0" type="label" enabled="no"><text>Text</text></item>
    <item row="1" type="edit" enabled="no"><key>net/a/text</key></item>
    <item row="2" type="dropdown" enabled="no"><text>One<key>net/a/choice/1</key></text></item>
    <item row="3" type="datetime" enabled="no" format="dd.MM.yyyy"><key>net/a/time</key></item>
    <item row="4" type="checkbox" enabled="no"><text>Text</text><key>net/a/off</key></item>
    <item row="5" type="list" enabled="no"><text>One</text></item>
    <item row="6" type="progressbar" enabled="no" maxvalue="9"/>
    <item row="7" type="orbpie" enabled="no"><size>9</size><used>4</used></item>
    <item row="8" type="edit" enabled="no"><waiting/><key>net/a/text</key></item>
    <item row="9" type="checkbox"><key>net/a/on</key><action type="enable" state="off"> waiting </action></item>)";

const QByteArray Values = "[a]\r\ntext=Text\r\ntime=20260102030405\r\nchoice=1\r\non=on\r\noff=off\r\n";

/// A part of a window as it is painted.
class Painted
{
public:
    Painted(QWidget &window, const QRect &area) : m_image(area.size() * Scale, QImage::Format_RGB32)
    {
        m_image.setDevicePixelRatio(Scale);
        m_image.fill(Qt::magenta);
        QPainter painter(&m_image);
        window.render(&painter, QPoint(), QRegion(area),
                      QWidget::DrawWindowBackground | QWidget::DrawChildren);
    }

    QColor at(const QPointF &point) const { return m_image.pixelColor((point * Scale).toPoint()); }
    int width() const { return m_image.width() / Scale; }
    int height() const { return m_image.height() / Scale; }

    /// Of what stands out most, to the colour that most of the area has.
    double contrast() const
    {
        Colors colors;
        const auto *pixels = reinterpret_cast<const QRgb *>(m_image.constBits());
        const auto *end = pixels + m_image.sizeInBytes() / qsizetype(sizeof(QRgb));
        while (pixels != end) {
            const auto *run = std::find_if(pixels, end, [&](QRgb pixel) { return pixel != *pixels; });
            colors[*pixels] += int(run - pixels);
            pixels = run;
        }
        const QColor ground = std::max_element(colors.cbegin(), colors.cend()).key();
        double most = 1;
        for (auto color = colors.cbegin(); color != colors.cend(); ++color)
            most = std::max(most, contrastRatio(ground, color.key()));
        return most;
    }

private:
    QImage m_image;
};

QRect inWindow(const QWidget &widget, const QRect &area)
{
    return {widget.mapTo(widget.window(), area.topLeft()), area.size()};
}

Painted painted(const QWidget &widget, const QRect &area)
{
    return Painted(*widget.window(), inWindow(widget, area));
}

/// Where the widget writes its text, without edges, arrows and boxes.
QRect textArea(const QWidget &widget)
{
    QRect area = widget.rect().adjusted(5, 4, -5, -4);
    if (qobject_cast<const QComboBox *>(&widget) || qobject_cast<const QAbstractSpinBox *>(&widget))
        area.setRight(area.right() - 20);
    if (const auto *box = qobject_cast<const QCheckBox *>(&widget)) {
        QStyleOptionButton option;
        option.initFrom(box);
        area = box->style()->subElementRect(QStyle::SE_CheckBoxContents, &option, box);
    }
    return area;
}

/// The least contrast of the edge to what is around \a area of the widget, of three places on its upper side.
double edgeContrast(const QWidget &widget, const QRect &area)
{
    constexpr int Around = 3;
    constexpr int Depth = 2;
    const Painted picture = painted(widget, area.adjusted(0, -Around, 0, 0));
    double least = std::numeric_limits<double>::max();
    for (const int quarter : {1, 2, 3}) {
        const double x = picture.width() * quarter / 4.0;
        double most = 1;
        for (double y = Around - 1; y < Around + Depth; y += 1.0 / Scale)
            most = std::max(most, contrastRatio(picture.at({x, 0}), picture.at({x, y})));
        least = std::min(least, most);
    }
    return least;
}

/// The contrast of the focus ring around \a area to what is there without it, of the side where it is least.
double ringContrast(QWidget &widget, const QRect &area, QWidget &elsewhere)
{
    constexpr int Band = 6;
    const QRect all = area.adjusted(-Band, -Band, Band, Band);
    elsewhere.setFocus(Qt::MouseFocusReason);
    const Painted without = painted(widget, all);
    widget.setFocus(Qt::MouseFocusReason);
    const Painted with = painted(widget, all);
    const double right = with.width() - 1;
    const double bottom = with.height() - 1;
    const QPointF middle(right / 2, bottom / 2);
    double least = std::numeric_limits<double>::max();
    for (const QLineF &band : {QLineF(0, middle.y(), 2 * Band, middle.y()),
                               QLineF(right, middle.y(), right - 2 * Band, middle.y()),
                               QLineF(middle.x(), 0, middle.x(), 2 * Band),
                               QLineF(middle.x(), bottom, middle.x(), bottom - 2 * Band)}) {
        double most = 1;
        for (double along = 0; along <= 1; along += 1.0 / (2 * Band * Scale))
            most =
                std::max(most, contrastRatio(with.at(band.pointAt(along)), without.at(band.pointAt(along))));
        least = std::min(least, most);
    }
    return least;
}

struct Look {
    const char *name = nullptr;
    QPalette palette;
    double text = 0; ///< the least contrast
};

/// As high-contrast themes have it: all grounds the same.
QPalette contrastPalette(Qt::GlobalColor ground, Qt::GlobalColor text, QRgb selection)
{
    QPalette palette{QColor(ground), QColor(ground)};
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Base, ground);
    palette.setColor(QPalette::Highlight, QColor(selection));
    palette.setColor(QPalette::HighlightedText, ground);
    return palette;
}

QList<Look> looks()
{
    const std::unique_ptr<QStyle> fusion(QStyleFactory::create("Fusion"));
    return {{"Qt's own", fusion->standardPalette(), ReadableContrast},
            {"light", lightPalette(), ReadableContrast},
            {"dark", darkPalette(), ReadableContrast},
            {"high contrast, dark", contrastPalette(Qt::black, Qt::white, 0xff1aebff), HighContrast},
            {"high contrast, light", contrastPalette(Qt::white, Qt::black, 0xff37006e), HighContrast}};
}

/// Those of the page, in the order of the description.
QList<QWidget *> describedControls(const DescribedWindow &window)
{
    const QRegularExpression uniqueName("^link\\d+$");
    QList<QWidget *> controls;
    for (QWidget *widget : window.page()->findChildren<QWidget *>()) {
        if (uniqueName.match(widget->accessibleName()).hasMatch())
            controls.append(widget);
    }
    return controls;
}

} // namespace

/// Each test notes every contrast that is too low, so that one run tells all.
class TestContrast : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The style of Windows keeps its own colours; programs with other palettes use this one there.
    void initTestCase() { QApplication::setStyle("Fusion"); }
    void init();
    void cleanup() { QVERIFY2(m_faults.isEmpty(), qPrintable(m_faults.join(u'\n'))); }

    void computesContrasts();
    void controls_data() { everyLook(); }
    void controls();
    void valuesToRead_data() { everyLook(); }
    void valuesToRead();
    void lists_data() { everyLook(); }
    void lists();
    void tabs_data() { everyLook(); }
    void tabs();
    void messages_data() { everyLook(); }
    void messages();
    void login_data() { everyLook(); }
    void login();
    void changes_data();
    void changes();

private:
    static void everyLook()
    {
        QTest::addColumn<int>("number");
        for (int number = 0; number < looks().size(); ++number)
            QTest::newRow(looks()[number].name) << number;
    }
    void changeDesktop()
    {
        QApplication::setPalette(m_look.palette);
        QCoreApplication::processEvents();
    }
    void expect(const QString &what, double contrast, double least)
    {
        if (contrast < least)
            m_faults << QString("%1: %2 instead of %3").arg(what).arg(contrast, 0, 'f', 2).arg(least);
    }
    void measureText(const QString &name, QWidget &widget, double least)
    {
        expect(name, painted(widget, textArea(widget)).contrast(), least);
    }
    void measureStates(const QString &name, QWidget &widget);
    void measureEdge(const QString &name, QWidget &widget);
    void measureButtons(const QString &name, QWidget &dialog);
    void measureMarks();
    void measureDialog(const QString &name, QDialog &dialog);
    void measureRow(const QString &name, QTreeWidget &list, int row);
    void measureReview();
    void measureHistory();
    void measureMerge();
    void measureSave();

    Look m_look;
    QStringList m_faults;
};

void TestContrast::init()
{
    m_faults.clear();
    if (!QTest::currentDataTag())
        return;
    QFETCH(int, number);
    // Windows follow a new palette of the desktop: all but the first begin with that of the row before.
    QApplication::setPalette(looks()[std::max(number - 1, 0)].palette);
    m_look = looks()[number];
}

void TestContrast::computesContrasts()
{
    QCOMPARE(contrastRatio(Qt::black, Qt::white), 21.0);
    // The grey that is known to be just too light for text on white.
    QCOMPARE(qRound(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white) * 100), 448);
}

/// The text of a control in all its states.
void TestContrast::measureStates(const QString &name, QWidget &widget)
{
    measureText(name, widget, m_look.text);
    widget.setAttribute(Qt::WA_UnderMouse);
    measureText(name + ", hovered", widget, m_look.text);
    widget.setAttribute(Qt::WA_UnderMouse, false);
    if (auto *button = qobject_cast<QPushButton *>(&widget)) {
        button->setDown(true);
        measureText(name + ", pressed", widget, m_look.text);
        button->setDown(false);
        button->setChecked(button->isCheckable());
        measureText(name + ", checked", widget, m_look.text);
        button->setEnabled(false);
        measureText(name + ", checked and disabled", widget, VisibleContrast);
        button->setEnabled(true);
        button->setChecked(false);
    }
    widget.setEnabled(false);
    measureText(name + ", disabled", widget, VisibleContrast);
    widget.setEnabled(true);
}

/// The edge of a field, and the handle of a slider.
void TestContrast::measureEdge(const QString &name, QWidget &widget)
{
    QRect area = widget.rect();
    if (const auto *bar = qobject_cast<QScrollBar *>(&widget)) {
        QStyleOptionSlider option;
        option.initFrom(bar);
        option.orientation = bar->orientation();
        option.maximum = bar->maximum();
        option.sliderPosition = bar->value();
        area = bar->style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, bar);
    } else if (const auto *box = qobject_cast<QCheckBox *>(&widget)) {
        QStyleOptionButton option;
        option.initFrom(box);
        area = box->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, box);
    } else if (!widget.inherits("QLineEdit") && !widget.inherits("QComboBox") &&
               !widget.inherits("QAbstractSpinBox") && !widget.inherits("QPushButton") &&
               !widget.inherits("QAbstractItemView")) {
        return;
    }
    expect(name + ", edge", edgeContrast(widget, area), VisibleContrast);
}

void TestContrast::controls()
{
    DescribedWindow window(describePage(Controls), {{"net", Values}});
    window.window->resize(700, 3000);
    changeDesktop();
    QWidget opened;
    WindowLook::apply(opened);
    QCOMPARE(window.window->palette(), opened.palette()); // nothing is left of the palette before
    QPushButton hosts;
    QCOMPARE(hosts.palette(), m_look.palette);
    QCOMPARE(hosts.style(), QApplication::style());
    QWidget &elsewhere = *window.window->findChild<QPushButton *>("buttonCancel");
    elsewhere.setFocus();
    const QList<QWidget *> described = describedControls(window);
    QCOMPARE(described.size(), 24);
    for (QWidget *widget : described) {
        const QString name =
            QString("%1 %2").arg(widget->accessibleName(), widget->metaObject()->className());
        measureEdge(name, *widget);
        if (widget->focusPolicy() != Qt::NoFocus)
            expect(name + ", focus", ringContrast(*widget, widget->rect(), elsewhere), VisibleContrast);
        elsewhere.setFocus();
        const bool isOneText = !widget->inherits("QScrollBar") && !widget->inherits("QAbstractItemView") &&
                               !widget->inherits("paravue::WeekSchedule") &&
                               !widget->inherits("paravue::MaskEditor");
        if (isOneText)
            measureStates(name, *widget);
    }
    QPushButton &ok = *window.window->findChild<QPushButton *>("buttonOK");
    measureStates("default", ok);
    QPushButton &cancel = *window.window->findChild<QPushButton *>("buttonCancel");
    for (const QPushButton *button : {&ok, &cancel}) {
        const int icon = button->iconSize().width();
        const int text = button->fontMetrics().horizontalAdvance(button->text());
        const QRect place((button->width() - icon - 4 - text) / 2, 4, icon, button->height() - 8);
        expect(button->text() + ", icon", painted(*button, place).contrast(), VisibleContrast);
    }
    expect("default stands out", edgeContrast(ok, ok.rect()), VisibleContrast);
}

void TestContrast::valuesToRead()
{
    DescribedWindow window(describePage(ValuesToRead), {{"net", Values}});
    window.window->resize(700, 1000);
    changeDesktop();
    const QList<QWidget *> controls = describedControls(window);
    QCOMPARE(controls.size(), 10);
    for (QWidget *value : controls.mid(0, 8)) {
        QVERIFY(!value->isEnabled());
        measureText(value->metaObject()->className(), *value, m_look.text);
    }
    const auto edge = [](QWidget *widget) { return edgeContrast(*widget, widget->rect()); };
    for (const int field : {1, 2, 3, 5}) {
        const QByteArray row = QByteArray::number(field);
        QVERIFY2(edge(controls[field]) < 1.1, row.constData());
        controls[field]->setEnabled(true); // by the host
        QVERIFY2(edge(controls[field]) >= VisibleContrast, row.constData());
    }
    QVERIFY2(edge(controls[8]) > 1.5, "A field that may be enabled remains one");
}

void TestContrast::lists()
{
    DescribedWindow window(describePage(ListsAndTabs), {{"net", Values}});
    changeDesktop();
    auto *list = window.widget<QTreeWidget>();
    list->setCurrentItem(list->topLevelItem(0));
    for (const bool isFocused : {true, false}) {
        if (isFocused)
            list->setFocus();
        else
            window.window->findChild<QPushButton *>("buttonCancel")->setFocus();
        for (const int row : {0, 1}) {
            const QRect place = list->visualItemRect(list->topLevelItem(row)).adjusted(4, 2, -4, -2);
            expect(QString("row %1 with focus %2").arg(row).arg(isFocused),
                   painted(*list->viewport(), place).contrast(), m_look.text);
        }
    }
    expect("header of a column", painted(*list->header(), list->header()->rect()).contrast(), m_look.text);
    auto *box = window.widget<QComboBox>();
    box->showPopup();
    QAbstractItemView *view = box->view();
    for (const int row : {0, 1}) {
        const QRect cell = view->visualRect(view->model()->index(row, 0)) & view->viewport()->rect();
        const QRect place = cell.adjusted(4, 2, -4, -2);
        expect(QString("choice %1").arg(row), painted(*view->viewport(), place).contrast(), m_look.text);
    }
    box->hidePopup();
    auto *date = window.widget<QDateTimeEdit>();
    QTest::mouseClick(date, Qt::LeftButton, {}, QPoint(date->width() - 8, date->height() / 2));
    auto *days = date->findChild<QTableView *>("qt_calendar_calendarview");
    QVERIFY(days && days->isVisible());
    const int midMonth = 3;
    for (int column = 0; column < days->model()->columnCount(); ++column) {
        const QRect place = days->visualRect(days->model()->index(midMonth, column));
        if (!place.isEmpty())
            expect(QString("day %1").arg(column), painted(*days->viewport(), place).contrast(), m_look.text);
    }
    days->window()->close();
}

void TestContrast::tabs()
{
    DescribedWindow window(describePage(ListsAndTabs), {{"net", Values}});
    changeDesktop();
    auto *bar = window.page()->findChild<QTabBar *>();
    QPushButton &elsewhere = *window.window->findChild<QPushButton *>("buttonCancel");
    for (const int tab : {0, 1})
        expect(QString("tab %1").arg(tab), painted(*bar, bar->tabRect(tab).adjusted(8, 6, -8, -6)).contrast(),
               m_look.text);
    expect("tab, focus", ringContrast(*bar, bar->tabRect(0), elsewhere), VisibleContrast);
}

/// The texts of a dialog's labels, the texts and focus of its buttons and fields, and its default button.
void TestContrast::measureButtons(const QString &name, QWidget &dialog)
{
    changeDesktop();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QWidget *first = QApplication::focusWidget();
    QVERIFY2(first, qPrintable(name));
    QWidget *elsewhere = first->nextInFocusChain();
    while (elsewhere->focusPolicy() == Qt::NoFocus || !elsewhere->isVisible() || elsewhere->isWindow())
        elsewhere = elsewhere->nextInFocusChain();
    expect(name + ", first focus", ringContrast(*first, first->rect(), *elsewhere), VisibleContrast);
    for (QWidget *widget : dialog.findChildren<QWidget *>()) {
        if (!widget->isVisible())
            continue;
        const QString part = name + u' ' + widget->metaObject()->className();
        auto *label = qobject_cast<QLabel *>(widget);
        if (label && !label->text().isEmpty())
            expect(part, painted(*label, label->rect()).contrast(), m_look.text);
        if (auto *button = qobject_cast<QPushButton *>(widget)) {
            button->setEnabled(true);
            measureText(part + button->text(), *button, m_look.text);
            if (button->isDefault())
                expect(part + ", default", edgeContrast(*button, button->rect()), VisibleContrast);
        }
        measureEdge(part, *widget);
    }
}

void TestContrast::messages()
{
    const ModalWatcher watcher([this](QWidget &box) { measureButtons("question", box); });
    OrbDlgQuestion::Do(nullptr, QMessageBox::Question, "Title", "Text", QMessageBox::Yes | QMessageBox::No,
                       QMessageBox::No);
    OrbDlgQuestion::DoExplained(nullptr, QMessageBox::Critical, "Title", "Text", "Explanation",
                                QMessageBox::Ok, QMessageBox::NoButton);
    QCOMPARE(watcher.count(), 2);
}

void TestContrast::login()
{
    const auto measure = [this](QWidget &dialog) {
        measureButtons("login", dialog);
        for (QLineEdit *edit : dialog.findChildren<QLineEdit *>()) {
            edit->setText("Text");
            measureText(edit->objectName(), *edit, m_look.text);
        }
    };
    const ModalWatcher watcher(measure, "cDlg");
    Credentials record;
    record.url = "recorder";
    cDlg dialog(record, nullptr, nullptr);
    dialog.tellRefusal();
    DialogLoop::run(dialog);
    QCOMPARE(watcher.count(), 1);
}

void TestContrast::changes_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("scale");
    for (int number = 0; number < looks().size(); ++number) {
        const QByteArray name = looks()[number].name;
        QTest::newRow(name.constData()) << number << 1;
        if (name == "light" || name == "dark")
            QTest::newRow((name + ", 200 %").constData()) << number << 2;
    }
}

/// Marks, outlines and the window's own dialogs about changes.
void TestContrast::changes()
{
    QFETCH(int, scale);
    if (scale != qRound(qApp->devicePixelRatio())) { // which is that of a program for all of its life
        QProcess scaled;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_SCALE_FACTOR", QString::number(scale));
        scaled.setProcessEnvironment(environment);
        scaled.start(QCoreApplication::applicationFilePath(),
                     {QStringLiteral("changes:") + QTest::currentDataTag()});
        QVERIFY(scaled.waitForFinished(60'000));
        const QByteArray output = scaled.readAll();
        QVERIFY2(scaled.exitStatus() == QProcess::NormalExit && scaled.exitCode() == 0, output.constData());
        QVERIFY2(output.contains("3 passed"), output.constData()); // with the first and the last step
        return;
    }
    changeDesktop();
    measureMarks();
    measureReview();
    measureHistory();
    measureMerge();
    measureSave();
}

void TestContrast::measureMarks()
{
    WindowOptions options;
    options.tracksChanges = true;
    const QByteArray page = "<item type='edit'><key>net/a/text</key></item>"
                            "<item type='edit' row='1' minimum='5' maximum='9'><key>net/a/on</key></item>"
                            "<item type='edit' row='2' validator='[a-z]+'><key>net/a/off</key></item>";
    DescribedWindow window(describePage(page), {{"net", Values}, {"net.original", Values}}, options);
    const QList<QLineEdit *> fields = window.page()->findChildren<QLineEdit *>();
    fields[0]->setText("Changed");
    fields[1]->setText("17");
    fields[2]->setText("9");
    fields[0]->setFocus();
    window.settle();
    TextInspector inspector;
    inspector.inspect(*window.window, "window");
    m_faults += inspector.faults();
    const QRect field = fields[0]->geometry();
    const QRect besideIt(field.left() - 6, field.top() + 2, 6, field.height() - 4);
    expect("bar", painted(*fields[0]->parentWidget(), besideIt).contrast(), VisibleContrast);
    for (const int number : {1, 2})
        expect(QString("outline %1").arg(number), edgeContrast(*fields[number], fields[number]->rect()),
               VisibleContrast);
    QLabel *note = nullptr;
    for (QLabel *label : window.page()->findChildren<QLabel *>()) {
        if (label->isVisible() && label->text().startsWith("Outside of the range"))
            note = label;
    }
    QVERIFY(note);
    expect("note", painted(*note, note->rect()).contrast(), m_look.text);
    for (const char *name : {"changeCount", "problemCount"}) {
        auto *badge = window.window->findChild<QLabel *>(name);
        QVERIFY(badge && badge->isVisible());
        expect(name, painted(*badge, badge->rect()).contrast(), m_look.text);
    }
    auto *count = window.window->findChild<QToolButton *>("changes");
    QCOMPARE(count->text(), "3 changes, 2 problems");
    measureText("count in the header", *count, m_look.text);
}

void TestContrast::measureRow(const QString &name, QTreeWidget &list, int row)
{
    const QTreeWidgetItem *item = list.topLevelItem(row);
    QStyleOptionViewItem box;
    box.initFrom(&list);
    const int roomForBox = list.style()->pixelMetric(QStyle::PM_IndicatorHeight, &box, &list) + 2;
    if (list.visualItemRect(item).height() < roomForBox)
        m_faults << name + ", rows are too low for boxes";
    for (int column = 0; column < list.columnCount(); ++column) {
        const QRect cell = list.visualRect(list.indexFromItem(item, column)) & list.viewport()->rect();
        if (!item->text(column).isEmpty() && cell.width() > 20)
            expect(QString("%1, row %2, column %3").arg(name).arg(row).arg(column),
                   painted(*list.viewport(), cell.adjusted(4, 2, -4, -2)).contrast(), m_look.text);
    }
}

/// Whether everything in \a dialog can be read.
void TestContrast::measureDialog(const QString &name, QDialog &dialog)
{
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QCoreApplication::processEvents();
    TextInspector inspector;
    inspector.inspect(dialog, name);
    m_faults += inspector.faults();
    constexpr QSize SmallestScreen(960, 540); // 1920 × 1080 at 200 %
    const QSize least = dialog.minimumSizeHint().expandedTo(dialog.minimumSize());
    if (least.width() > SmallestScreen.width() || least.height() > SmallestScreen.height())
        m_faults << name + " has no room on a small screen";
    for (QWidget *part : dialog.findChildren<QWidget *>()) {
        if (!part->isVisible() || part->width() < 8)
            continue;
        const QString what = name + u' ' + part->metaObject()->className();
        if (const auto *label = qobject_cast<QLabel *>(part); label && !label->text().isEmpty())
            expect(what + ' ' + label->text().left(20), painted(*part, part->rect()).contrast(), m_look.text);
        const auto *button = qobject_cast<QAbstractButton *>(part);
        if (button && !button->text().isEmpty())
            measureText(what + ' ' + button->text(), *part,
                        button->isEnabled() ? m_look.text : VisibleContrast);
        if (qobject_cast<QPushButton *>(part) || qobject_cast<QCheckBox *>(part))
            measureEdge(what, *part);
        auto *list = qobject_cast<QTreeWidget *>(part);
        if (!list)
            continue;
        expect(what + ", header", painted(*list->header(), list->header()->rect()).contrast(), m_look.text);
        for (int row = 0; row < std::min(2, list->topLevelItemCount()); ++row) // the first is selected
            measureRow(what, *list, row);
    }
    dialog.close();
}

void TestContrast::measureReview()
{
    const auto changes = [] {
        return QList<ReviewedChange>{
            {{"net/untitled/HOSTNAME", "old", "new"}, "Network › Host name", 1, true},
            {{"net/untitled/PASSWORD", "a", "b", true}, "Network › Password", 2, true},
            {{"state/door/OPEN", {}, "yes"}, "Follows from other values", 3, false, false}};
    };
    const auto problems = [] {
        return QList<ReviewedProblem>{{"Video › Bit rate", "Outside of the range: From 64 to 16384", 3}};
    };
    ReviewDialog review(changes, problems, nullptr);
    measureDialog("review", review);
    ReviewDialog sending(changes, problems, nullptr);
    sending.offerSending();
    measureDialog("review before sending", sending);
}

void TestContrast::measureHistory()
{
    const QTemporaryDir folder;
    SnapshotFolder snapshots(folder.path(), "recorder");
    for (const char *host : {"first", "second", "third"}) {
        const FileContents files{
            {"net", "[untitled]\nHOSTNAME=" + QByteArray(host) + "\nPASSWORD=x\nPLACE=Gate\n"},
            {"soft", "MODEL=" + QByteArray(host) + "\n"}};
        QCOMPARE(snapshots.keep(files).problem, "");
    }
    PresentSettings present;
    present.recorder.recorder = "recorder";
    present.values = valuesOf({{"net", "[untitled]\nHOSTNAME=now\nPASSWORD=y\nPLACE=Yard\n"}});
    present.caption = [](const QString &path) { return "Network › " + path.section('/', 2); };
    present.isSent = present.isEditable = [](const QString &) { return true; };
    present.isSecret = [](const QString &path) { return path.contains("PASSWORD"); };
    HistoryDialog history(snapshots, present, nullptr);
    auto *list = history.findChild<QTreeWidget *>("snapshots");
    list->setCurrentItem(list->topLevelItem(1));
    measureDialog("history", history);
    list->topLevelItem(3)->setSelected(true);
    measureDialog("comparison", history);
}

void TestContrast::measureMerge()
{
    PresentSettings present;
    present.recorder.recorder = "recorder";
    present.caption = [](const QString &path) { return "Network › " + path.section('/', 2); };
    present.isSecret = [](const QString &path) { return path.contains("PASSWORD"); };
    Snapshot snapshot;
    snapshot.info.recorder = "another";
    const QList<MergedEdit> edits{
        {"net/untitled/HOSTNAME", "old", "new", "other", MergedEdit::State::Collides},
        {"net/untitled/LEVEL1", "0", "1", "0", MergedEdit::State::Collides, "net/untitled"},
        {"net/untitled/PASSWORD", "a", "b", "a", MergedEdit::State::Fits}};
    MergeDialog merge(snapshot, edits, present, nullptr);
    measureDialog("merge", merge);
}

void TestContrast::measureSave()
{
    const ValueTexts texts{[](const QString &path) { return "Network › " + path.section('/', 2); },
                           [](const QString &path) { return path.contains("PASSWORD"); }};
    ForeignChangesDialog foreign({{"net/untitled/HOSTNAME", "old", "theirs", "mine"},
                                  {"net/untitled/LEVEL1", "0", "1", {}, "net/untitled"}},
                                 texts, nullptr);
    measureDialog("foreign changes", foreign);
    QWidget parent; // whose window it stands in front of
    SendingDialog sending(texts, &parent);
    const SaveStatus save{{"streams"}, {"net", "time"}, "net", {}};
    sending.showSending(save, "Sending \"net\"");
    sending.setReportedSilence(0);
    sending.showSilence(12'000);
    measureDialog("sending", sending);
    sending.showFailed(save, "Device error \"net\"");
    measureDialog("broken save", sending);
    sending.showKeptOtherwise({{"net/untitled/HOSTNAME", "new", "limited"}});
    measureDialog("confirmation", sending);
}

QTEST_MAIN(TestContrast)

#include "tst_contrast.moc"
