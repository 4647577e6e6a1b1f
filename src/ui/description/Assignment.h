#pragma once

#include "store/ConfigAddress.h"

#include <QString>

namespace paravue
{

/// A value to be written into the store, which takes it as one text "file/section/key/value".
struct Assignment {
    QString path; ///< file/section/key
    QString value;
    bool hasValue = true; ///< false for a text of the description without one, which the store refuses

    /// What a text of the description means: the value is all that follows the third "/".
    static Assignment fromText(const QString &text)
    {
        const ConfigAddress parts(text);
        return {parts.path().toString(), parts.rest().toString(), parts.hasRest()};
    }
    QString text() const { return hasValue ? path + u'/' + value : path; }
};

} // namespace paravue
