#pragma once

namespace recorder
{

/// Milliseconds.
struct ConnectionTiming {
    int replyDelay = 0;
    /// How long a client may take to disconnect after its last answer.
    int drainTimeout = 1000;
    /// How long a PUT waits for its length line.
    int bodyTimeout = 2000;
};

} // namespace recorder
