#pragma once

#include <QString>

#include <functional>

namespace paravue
{

class Bindings;
class ControlContext;

/// Removes a software package from the recorder: asks the user, by a dialog of the description, about the
/// package that is picked in the "softlist" which an element with the tag "softlist" marks. The dialog
/// "softcantdelete" says that the recorder needs the package; "softdodelete" asks, and its own actions do the
/// rest with the name at general/remove_package/name.
class PackageListEditor
{
public:
    /// \a showDialog opens the dialog of a tag and comes back when it is closed.
    PackageListEditor(ControlContext &context, Bindings &bindings,
                      std::function<void(const QString &tag)> showDialog);

    /// \a tag is "remove".
    void run(const QString &tag);

private:
    void removeSelected();

    ControlContext &m_context;
    Bindings &m_bindings;
    std::function<void(const QString &)> m_showDialog;
};

} // namespace paravue
