#pragma once

#include <QByteArray>
#include <QDir>
#include <QString>

namespace paravue::fuzz
{

/// The first inputs of the fuzz targets, each in the folder of its target.
class Corpus
{
public:
    explicit Corpus(const QString &root) : m_root(root) {}

    /// Adds an input: \a choice are the bytes that choose how the target behaves.
    void add(const QString &target, const QString &name, const QByteArray &choice, const QByteArray &bytes);
    bool isWritten() const { return m_isWritten; }

private:
    QDir m_root;
    bool m_isWritten = true;
};

} // namespace paravue::fuzz
