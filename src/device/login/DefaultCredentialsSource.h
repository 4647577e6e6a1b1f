#pragma once

#include <memory>

namespace paravue
{

class CredentialsSource;

/// Who is asked for a login unless the host brings its own source: the user, in a dialog. Null, which is
/// nobody, in a program that links paravue_link without paravue_device.
///
/// Each of the two targets has a definition. That of paravue_device is an object file, which a linker always
/// takes; it takes that of paravue_link out of its archive only when there is no other.
std::shared_ptr<CredentialsSource> defaultCredentialsSource();

} // namespace paravue
