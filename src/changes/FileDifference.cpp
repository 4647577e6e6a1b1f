#include "changes/FileDifference.h"

#include "store/IniMapCodec.h"

#include <QBuffer>

namespace paravue
{

namespace
{

QMap<QString, QVariant> valuesOf(QByteArray text)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    QMap<QString, QVariant> values;
    readIniMap(buffer, values);
    return values;
}

} // namespace

QList<ValueDifference> differences(const QString &name, const QByteArray &before, const QByteArray &after)
{
    if (before == after)
        return {};
    const auto old = valuesOf(before);
    const auto present = valuesOf(after);
    QList<ValueDifference> result;
    const auto note = [&](const QString &key, const QString &oldValue, const QString &newValue) {
        if (oldValue != newValue)
            result.append({name + u'/' + key, oldValue, newValue});
    };
    // Both are sorted: one pass over them side by side.
    auto o = old.cbegin();
    auto p = present.cbegin();
    while (o != old.cend() || p != present.cend()) {
        if (p == present.cend() || (o != old.cend() && o.key() < p.key())) {
            note(o.key(), o->toString(), {});
            ++o;
        } else if (o == old.cend() || p.key() < o.key()) {
            note(p.key(), {}, p->toString());
            ++p;
        } else {
            note(o.key(), o->toString(), p->toString());
            ++o;
            ++p;
        }
    }
    return result;
}

} // namespace paravue
