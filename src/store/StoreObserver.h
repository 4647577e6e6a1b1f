#pragma once

class QString;

namespace paravue
{

/// Hears of every change of a store's values, in the call that makes it. It must not change the store then.
class StoreObserver
{
public:
    virtual ~StoreObserver() = default;
    /// The value at \a path, "file/section/key", was set, maybe to what it was.
    virtual void valueSet(const QString &path) = 0;
    /// The file \a name is another one from now on, which was fetched for example.
    virtual void fileReplaced(const QString &name) = 0;
};

} // namespace paravue
