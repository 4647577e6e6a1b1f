#pragma once

#include <QDomElement>
#include <QSet>
#include <QString>
#include <QStringList>

#include "check/SourcePositions.h"

namespace paravue
{

class AddressCheck;
class InterfaceDocument;
class ProblemList;
class TextCheck;
struct DescribedParts;

/// Checks the parameters that calls pass to the window's own slots: their fields, and the dialogs and
/// controls of the description that the slot uses.
class SlotParams
{
public:
    SlotParams(const InterfaceDocument &document, const DescribedParts &parts, AddressCheck &addresses,
               const TextCheck &texts, ProblemList &problems);

    void check(const QDomElement &action, const QString &slot, const QString &param);
    /// The same for a call of a function of the recorder: "name,argument".
    void checkFunction(const QDomElement &action, const QString &param);

    /// To be called after all calls: reports dialogs that none of them opens.
    void finish();

private:
    void setValue(const QDomElement &action, const QString &param);
    void showDialog(const QDomElement &action, const QString &tag);
    void fileDialog(const QDomElement &action, const QString &param);
    void settings(const QDomElement &action, const QString &param);
    void saveFileAs(const QDomElement &action, const QString &param);
    void accessList(const QDomElement &action, const QString &tag);
    void softList(const QDomElement &action, const QString &tag);

    void address(const QDomElement &action, const QString &address);
    void needDialogs(const QDomElement &action, const QStringList &tags);
    void needList(const QDomElement &action, const QString &type);
    void open(const QString &tag);
    bool isDialog(const QString &tag) const;
    void wrongField(const QDomElement &action, const QString &field, const QString &known);
    void wrongParam(const QDomElement &action, const QString &form);

    const InterfaceDocument &m_document;
    const DescribedParts &m_parts;
    AddressCheck &m_addresses;
    const TextCheck &m_texts;
    ProblemList &m_problems;
    QSet<ElementId> m_opened;
    bool m_opensAny = false; ///< a tag is known only when the window runs
};

} // namespace paravue
