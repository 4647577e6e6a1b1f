#include "LinkExitCode.h"

namespace paravue
{

ExitCode exitCodeOf(LinkStatus::Cause cause, ExitCode otherwise)
{
    switch (cause) {
    case LinkStatus::Cause::Network:
    case LinkStatus::Cause::NoAnswer:
        return ExitCode::Network;
    case LinkStatus::Cause::Login:
        return ExitCode::Login;
    case LinkStatus::Cause::Refused:
        return ExitCode::Rejected;
    case LinkStatus::Cause::BadAnswer:
        return ExitCode::BadData;
    case LinkStatus::Cause::LocalFile:
        return ExitCode::LocalFile;
    case LinkStatus::Cause::None:
        break;
    }
    return otherwise;
}

} // namespace paravue
