#pragma once

#include "ui/ActionRunner.h"
#include "ui/Bindings.h"
#include "ui/ControlContext.h"
#include "ui/ControlTable.h"
#include "ui/DescribedDialogs.h"
#include "ui/FileCommands.h"
#include "ui/InterfaceDocument.h"
#include "ui/LocalPaths.h"
#include "ui/PackageListEditor.h"
#include "ui/PageBuilder.h"
#include "ui/RetiredWidgets.h"
#include "ui/TextResolver.h"
#include "ui/TimeTasks.h"
#include "ui/UserListEditor.h"
#include "ui/WindowServices.h"

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
