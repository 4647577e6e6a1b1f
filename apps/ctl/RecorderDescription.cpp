#include "RecorderDescription.h"

#include "ControlText.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/TextResolver.h"

namespace paravue
{

std::unique_ptr<DescribedValues> readDescription(const FileContents &files, OrbSetup &store, Outcome &problem)
{
    const QString name = QStringLiteral("interface");
    InterfaceDocument document;
    const QString fault = document.load(files.value(name), name);
    problem = fault.isEmpty()
                  ? Outcome()
                  : Outcome{ExitCode::BadData, ControlText::tr("the interface description: %1").arg(fault)};
    return fault.isEmpty() ? std::make_unique<DescribedValues>(document, TextResolver(document, store))
                           : nullptr;
}

} // namespace paravue
