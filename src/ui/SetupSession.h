#pragma once

#include "ui/ActionRunner.h"
#include "ui/Bindings.h"
#include "ui/ControlContext.h"
#include "ui/ControlTable.h"
#include "ui/DescribedDialogs.h"
#include "ui/InterfaceDocument.h"
#include "ui/PackageListEditor.h"
#include "ui/PageBuilder.h"
#include "ui/TextResolver.h"
#include "ui/UserListEditor.h"

#include <functional>

namespace paravue
{

/// The parts that turn a description into a living window, each made of those above it.
struct SetupSession {
    using TextSink = std::function<void(const QString &)>;

    /// \a report receives messages for the user; \a showDialog opens the dialog of a tag until it is closed.
    SetupSession(OrbSetup &store, QWidget &window, const TextSink &report, const TextSink &showDialog)
        : table(document), texts(document, store), context(store, texts, table, report),
          actions(document, table, context), bindings(context, table, actions),
          builder(context, table, window),
          dialogs(window, {document, table, context, builder, bindings, actions}),
          users({document, table, context, bindings, dialogs}, showDialog),
          packages({document, table, context, bindings}, showDialog)
    {
    }

    InterfaceDocument document;
    ControlTable table;
    TextResolver texts;
    ControlContext context;
    ActionRunner actions;
    Bindings bindings;
    PageBuilder builder;
    DescribedDialogs dialogs;
    UserListEditor users;
    PackageListEditor packages;
};

} // namespace paravue
