#include "Corpus.h"

#include <QFile>

#include <cstdio>

namespace paravue::fuzz
{

void Corpus::add(const QString &target, const QString &name, const QByteArray &choice,
                 const QByteArray &bytes)
{
    m_root.mkpath(target);
    QFile file(m_root.filePath(target + '/' + name));
    if (!file.open(QIODevice::WriteOnly) || file.write(choice + bytes) != choice.size() + bytes.size()) {
        std::fprintf(stderr, "fuzz_corpus: %s: %s\n", qPrintable(file.fileName()),
                     qPrintable(file.errorString()));
        m_isWritten = false;
    }
}

} // namespace paravue::fuzz
