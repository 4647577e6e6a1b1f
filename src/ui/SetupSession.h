#pragma once

#include "ui/ActionRunner.h"
#include "ui/Bindings.h"
#include "ui/ControlContext.h"
#include "ui/ControlTable.h"
#include "ui/DescribedDialogs.h"
#include "ui/InterfaceDocument.h"
#include "ui/PageBuilder.h"
#include "ui/TextResolver.h"

#include <functional>

namespace paravue
{

/// The parts that turn a description into a living window, each made of those above it.
struct SetupSession {
    SetupSession(OrbSetup &store, QWidget &window, const std::function<void(const QString &)> &report)
        : table(document), texts(document, store), context(store, texts, table, report),
          actions(document, table, context), bindings(context, table, actions),
          builder(context, table, window),
          dialogs(window, {document, table, context, builder, bindings, actions})
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
};

} // namespace paravue
