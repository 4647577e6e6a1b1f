#pragma once

#include <QByteArray>

namespace recorder
{

class DataFolder;

/// The state of the recorder for service technicians: text with sections, without passwords.
QByteArray stateReport(const DataFolder &folder, const QByteArray &created);

} // namespace recorder
