#pragma once

#include "recorder/protocol/AnswerFault.h"

namespace recorder
{

/// The content that an answer gets in place of \a content; unchanged when \a kind is not about the content.
QByteArray faultyContent(AnswerFault::Kind kind, const QByteArray &content);

} // namespace recorder
