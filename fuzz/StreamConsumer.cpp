#include "StreamConsumer.h"

#include <utility>

namespace paravue::fuzz
{

StreamConsumer::StreamConsumer(int key, Handler handler) : m_key(key), m_handler(std::move(handler)) {}

void StreamConsumer::create(const QString &text)
{
    handle({Call::CreateWithText, text, {}, 0});
}

void StreamConsumer::create()
{
    handle({Call::CreatePlain, {}, {}, 0});
}

void StreamConsumer::append(const QByteArray &bytes)
{
    handle({Call::AppendBytes, {}, bytes, 0});
}

void StreamConsumer::append(quint64 milliseconds)
{
    handle({Call::AppendTime, {}, {}, milliseconds});
}

/// The handler may delete this consumer.
void StreamConsumer::handle(const Call &call)
{
    const Handler handler = m_handler;
    handler(m_key, call);
}

} // namespace paravue::fuzz
