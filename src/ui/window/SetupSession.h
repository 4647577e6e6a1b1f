#pragma once

#include "ui/base/RetiredWidgets.h"
#include "ui/binding/ActionRunner.h"
#include "ui/binding/Bindings.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/binding/LocalPaths.h"
#include "ui/commands/DescribedDialogs.h"
#include "ui/commands/FileCommands.h"
#include "ui/commands/PackageListEditor.h"
#include "ui/commands/UserListEditor.h"
#include "ui/commands/WindowServices.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/TextResolver.h"
#include "ui/page/PageBuilder.h"
#include "ui/tasks/TimeTasks.h"

#include <utility>

namespace paravue
{

/// The parts that turn a description into a living window, each made of those above it.
struct SetupSession {
    SetupSession(OrbSetup &store, QWidget &window, WindowServices windowServices)
        : services(std::move(windowServices)), table(document), texts(document, store),
          context(store, texts, table, services.report), paths(context, services.askAboutPath),
          actions(document, table, context), bindings(context, table, actions, paths),
          builder(context, table, window), tasks(context, actions),
          dialogs(window, {document, table, context, builder, bindings, actions, tasks, retired}),
          users({document, table, context, bindings, dialogs}, services.showDialog),
          packages({document, table, context, bindings}, services.showDialog),
          files(window, {document, context, bindings, paths, services})
    {
        actions.setPermit([this](const QWidget &target, const QString &slot, const QString &param) {
            return paths.permitsCall(target, slot, param);
        });
    }

    const WindowServices services;
    InterfaceDocument document;
    ControlTable table;
    TextResolver texts;
    ControlContext context;
    LocalPaths paths;
    ActionRunner actions;
    Bindings bindings;
    PageBuilder builder;
    TimeTasks tasks;
    RetiredWidgets retired;
    DescribedDialogs dialogs;
    UserListEditor users;
    PackageListEditor packages;
    FileCommands files;
};

} // namespace paravue
