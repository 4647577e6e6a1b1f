#include "check/DescriptionCheck.h"

#include "check/ActionCheck.h"
#include "check/AddressCheck.h"
#include "check/CheckText.h"
#include "check/ControlCheck.h"
#include "check/DescribedParts.h"
#include "check/ProblemList.h"
#include "check/SlotParams.h"
#include "check/TextCheck.h"
#include "check/WindowCheck.h"
#include "check/WordCheck.h"
#include "device/protocol/GzText.h"
#include "device/protocol/Limits.h"
#include "store/XmlLimits.h"
#include "ui/description/ElementAttributes.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/page/GridCell.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QSet>

namespace paravue
{
namespace
{

/// The message of the window's own reader about a text that it refuses, with its place.
DescriptionProblem unreadable(const QByteArray &text, const QString &message)
{
    DescriptionProblem problem;
    problem.text = message;
    if (xmlLimitViolation(text))
        return problem;
    QDomDocument document;
    if (!document.setContent(text, false, &problem.text, &problem.line, &problem.column))
        return problem;
    const QDomElement root = document.documentElement();
    const SourcePosition position = SourcePositions(text, root).of(root);
    return {DescriptionProblem::Severity::Error, position.line, position.column, message};
}

/// One walk over a whole description.
class DescriptionChecker
{
public:
    DescriptionChecker(const InterfaceDocument &document, const QString &filesFolder, ProblemList &problems)
        : m_document(document), m_problems(problems), m_parts(findParts(document.root(), problems)),
          m_addresses(document.root(), filesFolder, problems),
          m_texts(document.root(), m_addresses, problems),
          m_params(document, m_parts, m_addresses, m_texts, problems),
          m_actions(document, m_parts, m_params, problems), m_words(document.root(), m_parts, problems)
    {
    }

    void check(const QDomElement &root)
    {
        for (QDomElement child = root.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement())
            visit(child,
                  child.tagName() != QLatin1String("translations") && child.tagName() != QLatin1String("di"));
        for (const DescribedParts::Control &control : m_parts.controls)
            checkControl(control, m_addresses, m_problems);
        checkWindow(m_document, m_parts, m_texts, m_problems);
        m_actions.finish();
        m_params.finish();
        m_texts.finish();
    }

    /// The places of the controls that the window builds, in the order in which it does.
    ControlPlaces controlPlaces(const QDomElement &root) const
    {
        const QDomElement pages = root.firstChildElement(QStringLiteral("tabwidget"));
        QHash<ElementId, int> counts; // by what the controls are built into
        ControlPlaces places;
        for (const DescribedParts::Control &control : m_parts.controls) {
            QDomElement whole = control.element;
            while (!whole.isNull() && whole != pages && m_parts.of(whole).kind != ActionTarget::Kind::Dialog)
                whole = whole.parentNode().toElement();
            if (whole.isNull() || !GridCell::of(ElementAttributes(control.element)).isWithinLimits())
                continue;
            const QString dialog = whole == pages ? QString() : openingTag(whole);
            if (whole == pages || !dialog.isEmpty())
                places.insert(elementId(control.element), {counts[elementId(whole)]++, dialog});
        }
        return places;
    }

private:
    void visit(const QDomElement &element, bool isOfTheWindow)
    {
        if (isOfTheWindow) {
            m_words.check(element);
            judge(element);
        } else {
            m_words.checkTag(element);
        }
        for (QDomElement child = element.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement())
            visit(child, isOfTheWindow);
    }

    void judge(const QDomElement &element)
    {
        const QString tag = element.tagName();
        if (tag == QLatin1String("action"))
            m_actions.action(element);
        else if (tag == QLatin1String("timetask"))
            m_actions.timeTask(element);
        else if (tag == QLatin1String("regexp_key"))
            m_addresses.pattern(element, addressText(element));
        else if (tag == QLatin1String("key") && !isOfAControl(element))
            m_addresses.value(element, addressText(element));
        else if (tag == QLatin1String("tooltip") && isCancelButton(element.parentNode()))
            m_problems.warning(element, CheckText::tr("The Cancel button shows the tooltip of \"buttonOK\""));
        else if (tag == QLatin1String("keyset") && !m_parts.of(element.parentNode().toElement()).adapter)
            m_problems.warning(element,
                               CheckText::tr("Nothing uses this keyset: it stands in no list of choices"));
        else if (const auto place = placeOf(element))
            m_texts.visible(element, ownText(element), *place);
        else if (isText(tag))
            m_texts.resolved(element, ownText(element));
        judgeParam(element);
    }

    void judgeParam(const QDomElement &element)
    {
        QString param = element.attribute(QStringLiteral("param"));
        // The title of a file dialog is translated by itself too: an id does not end at a comma.
        if (element.attribute(QStringLiteral("slot")) == QLatin1String("fileDialog")) {
            QStringList fields = param.split(u',');
            if (fields.size() > 1)
                m_texts.resolved(element, fields.takeAt(1));
            param = fields.join(u',');
        }
        m_texts.resolved(element, param);
    }

    /// The tag by which showDialog() finds \a dialog; empty when another dialog has the same ones before it.
    QString openingTag(const QDomElement &dialog) const
    {
        for (QDomElement tag = dialog.firstChildElement(); !tag.isNull(); tag = tag.nextSiblingElement()) {
            if (!tag.hasChildNodes() && m_document.first(tag.tagName()) == tag)
                return tag.tagName();
        }
        return {};
    }

    static bool isCancelButton(const QDomNode &node)
    {
        return node.nodeName() == QLatin1String("buttonCancel") &&
               node.parentNode() == node.ownerDocument().documentElement();
    }

    bool isOfAControl(const QDomElement &key) const
    {
        const QDomElement parent = key.parentNode().toElement();
        return m_parts.of(parent).adapter || m_parts.of(parent.parentNode().toElement()).adapter;
    }

    /// How the window shows the text of \a element; nothing when it is not shown.
    std::optional<TextPlace> placeOf(const QDomElement &element) const
    {
        static const QSet<QString> plain{"title", "column", "accesslevel", "kind", "unit", "help"};
        const QString tag = element.tagName();
        const QDomElement parent = element.parentNode().toElement();
        if (tag == QLatin1String("tooltip"))
            return TextPlace::RichText;
        if (tag == QLatin1String("name") && parent.tagName() == QLatin1String("tab"))
            return TextPlace::Caption;
        if (plain.contains(tag))
            return TextPlace::PlainText;
        if (tag != QLatin1String("text") && tag != QLatin1String("choice"))
            return {};
        const QMetaObject *widget = m_parts.of(parent).widgetClass;
        if (widget && widget->inherits(&QLabel::staticMetaObject))
            return TextPlace::RichText;
        const bool isFrame = parent.parentNode() == m_document.root();
        return isFrame || (widget && widget->inherits(&QAbstractButton::staticMetaObject))
                   ? TextPlace::Caption
                   : TextPlace::PlainText;
    }

    /// Addresses are not shown to the user, so references in them are not resolved.
    static bool isText(const QString &tag)
    {
        static const QSet<QString> others{"key",       "value",  "keyset", "column_source",
                                          "row_count", "target", "ptz"};
        return !others.contains(tag);
    }

    const InterfaceDocument &m_document;
    ProblemList &m_problems;
    DescribedParts m_parts;
    AddressCheck m_addresses;
    TextCheck m_texts;
    SlotParams m_params;
    ActionCheck m_actions;
    WordCheck m_words;
};

} // namespace

std::optional<QByteArray> unpackedDescription(const QByteArray &content)
{
    return gunzipped(content, MaxDescriptionBytes);
}

QList<DescriptionProblem> checkDescription(const QString &path, const QString &filesFolder)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {{DescriptionProblem::Severity::Error, 0, 0, InterfaceDocument().load(path)}};
    return checkDescription(file, path, filesFolder);
}

QList<DescriptionProblem> checkDescription(QIODevice &file, const QString &name, const QString &filesFolder)
{
    // The size of a device is not known before it ends.
    const QByteArray packed = file.read(MaxDescriptionBytes + 1);
    const auto content = packed.size() <= MaxDescriptionBytes ? unpackedDescription(packed) : std::nullopt;
    if (!content)
        return {{DescriptionProblem::Severity::Error, 0, 0,
                 QCoreApplication::translate("OrbNetSetup", "File \"%1\" is too large").arg(name)}};
    const QByteArray &text = *content;
    InterfaceDocument document;
    if (const QString fault = document.load(text, name); !fault.isEmpty())
        return {unreadable(text, fault)};

    const SourcePositions positions(text, document.root());
    ProblemList problems(positions);
    DescriptionChecker checker(document, filesFolder, problems);
    checker.check(document.root());
    return problems.sorted(checker.controlPlaces(document.root()));
}

} // namespace paravue
