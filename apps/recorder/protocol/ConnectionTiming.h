#pragma once

namespace recorder
{

/// Milliseconds.
struct ConnectionTiming {
    int replyDelay = 0;
    /// How long a PUT waits for its length line.
    int bodyTimeout = 2000;
};

} // namespace recorder
