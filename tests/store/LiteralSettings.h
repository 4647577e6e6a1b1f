#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

/// The rules of a configuration file, put down line by line as they are told, with no thought of speed: every
/// key looks at every line. It is what the indexed implementation is compared with. Its file is a byte array.
class LiteralSettings
{
public:
    explicit LiteralSettings(const QByteArray &file) : m_file(file) {}

    QByteArray file() const { return m_file; }
    QStringList keysAndValues();
    void setValue(const QString &key, const QString &value);
    void read();
    void write();
    void flush();

private:
    struct Entry {
        QString value;
        bool inFile = false;
    };

    void merge(const QString &section, const QString &name, const Entry &entry);
    void replaceFirst(qsizetype from, const QString &name, const QString &keyLine);
    bool insertBehind(qsizetype header, const QString &keyLine);

    QByteArray m_file;
    bool m_sectioned = false;
    QStringList m_lines;
    QMap<QString, Entry> m_entries;
};
