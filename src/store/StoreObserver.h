#pragma once

#include <QString>

#include <optional>

namespace paravue
{

/// Hears of every change of a store's values, in the call that makes it. It must not change the store then.
class StoreObserver
{
public:
    virtual ~StoreObserver() = default;
    /// The value at \a path, "file/section/key", was set to \a value, maybe to what it was, or removed.
    virtual void valueSet(const QString &path, const std::optional<QString> &value) = 0;
    /// The file \a name is another one from now on, which was fetched for example.
    virtual void fileReplaced(const QString &name) = 0;
};

} // namespace paravue
