#pragma once

namespace paravue
{

/// Raises the limit of open files of this process, as far as the system allows, to what \a jobs sessions at
/// once need. How many fit then: \a jobs, or fewer, at least one.
int raiseOpenFiles(int jobs);

} // namespace paravue
