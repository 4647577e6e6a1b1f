#pragma once

#include "ui/base/RetiredWidgets.h"
#include "ui/binding/ActionRunner.h"
#include "ui/binding/Bindings.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/FileAccessGuard.h"
#include "ui/binding/FunctionCall.h"
#include "ui/commands/DialogManager.h"
#include "ui/commands/FileCommands.h"
#include "ui/commands/PackageListEditor.h"
#include "ui/commands/UserListEditor.h"
#include "ui/commands/WindowServices.h"
#include "ui/page/PageBuilder.h"
#include "ui/tasks/TimeTasks.h"

#include <utility>

namespace paravue
{

/// The parts that make a window from a description; each uses those above it.
struct WindowParts {
    /// \a adapterOf knows the types of controls.
    WindowParts(OrbSetup &store, QWidget &window, AdapterLookup adapterOf, WindowServices windowServices)
        : services(std::move(windowServices)), description(store),
          context(store, description, services.report), paths(context, services.askForFileAccess),
          actions(context), bindings(context, actions, paths),
          builder(context, services.controlChanged, adapterOf), tasks(context, actions),
          dialogs(window, context, builder, bindings, actions, tasks, retired),
          users(context, bindings, dialogs, services.showDialog),
          packages(context, bindings, services.showDialog), files(window, context, bindings, paths, services)
    {
        tasks.setPictureSaver([this](const QPixmap &picture, const QString &name, const QWidget &control) {
            files.savePicture(picture, name, control);
        });
        actions.setPermit([this](const QWidget &target, const QString &slot, const QString &param) {
            return paths.permitsCall(target, slot, param) &&
                   !callFunction(context, bindings, services.permitsFunction, target, slot, param);
        });
    }

    const WindowServices services;
    BuiltDescription description;
    ControlContext context;
    FileAccessGuard paths;
    ActionRunner actions;
    Bindings bindings;
    PageBuilder builder;
    TimeTasks tasks;
    RetiredWidgets retired;
    DialogManager dialogs;
    UserListEditor users;
    PackageListEditor packages;
    FileCommands files;
};

} // namespace paravue
