#pragma once

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace paravue
{

class InterfaceDocument;
class TextResolver;

/// A value that a control of the description lets users set, and what the control can give.
struct DescribedValue {
    enum class Kind {
        Text,
        Choice,   ///< one of the choices
        Switch,   ///< the same, "on" or "off"
        Position, ///< a number from least to most
        Time,     ///< yyyyMMddhhmmss
    };
    struct Choice {
        QString value;
        QString caption; ///< of a switch empty
    };

    QString path; ///< "file/section/key"
    Kind kind = Kind::Text;
    QString place;   ///< the captions of the tabs, or of the dialog, that the control stands on
    QString caption; ///< what the user would call it; may be empty
    QString unit;
    bool isSecret = false;
    bool isRequired = false;
    QList<Choice> choices;
    QString pattern; ///< of the whole text
    QString mask;    ///< see ValueMask
    std::optional<int> least;
    std::optional<int> most;

    /// The place and the caption, as lists name the value.
    QString fullCaption() const;

    /// Why the control cannot give \a value, in words for the user; empty when it can. Never repeats it.
    QString problemWith(const QString &value) const;
};

/// The values of a description that controls let users set, those of schedules and of masks too. Lists, of
/// users for example, have values whose form only the recorder knows, and are not among them. Neither are
/// values that can only be read.
class DescribedValues
{
public:
    /// The texts are those of the moment.
    DescribedValues(const InterfaceDocument &document, const TextResolver &texts);

    /// In the order of the document; more than one where several controls have the same value.
    const QList<DescribedValue> &all() const { return m_values; }

    /// Why no control for the value at \a path can give it \a value; empty when one can, or when there is
    /// none.
    QString problemWith(const QString &path, const QString &value) const;

private:
    class Reader;

    QList<DescribedValue> m_values;
    QHash<QString, QList<qsizetype>> m_byPath;
    QSet<QString> m_assignments; ///< "file/section/key/value" that choices of other values bring with them
};

} // namespace paravue
