#pragma once

#include "recorder/video/VideoService.h"

#include <QFile>

namespace recorder
{

/// Keeps a video stream in a file, byte for byte as a client would get it.
class RecordFile : public VideoSink
{
public:
    /// Creates the file. Nothing, with \a fault set, when it exists or cannot be written.
    static std::shared_ptr<RecordFile> create(const QString &path, QString &fault);

    bool isReady() const override { return m_file.error() == QFileDevice::NoError; }
    void write(const QByteArray &bytes) override;
    void end() override { m_file.close(); }

    QString path() const { return m_file.fileName(); }
    QString errorString() const { return m_file.errorString(); }

private:
    explicit RecordFile(const QString &path) : m_file(path) {}

    QFile m_file;
};

} // namespace recorder
