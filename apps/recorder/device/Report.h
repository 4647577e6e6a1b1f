#pragma once

#include <QByteArray>

namespace recorder
{

class DataFolder;

/// The recorder's present state as text with sections, for a service technician. It holds no passwords.
QByteArray stateReport(const DataFolder &folder, const QByteArray &created);

} // namespace recorder
