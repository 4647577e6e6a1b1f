#pragma once

#include "video/VideoHVX3Reciver.h"

#include <QDomElement>
#include <QImage>

namespace paravue::test
{

/// Makes the next picture of the process the first one of the eight of which the latter four are shown.
inline void startCountingPictures()
{
    VideoHVX3Reciver receiver(nullptr, QDomElement());
    bool isShown = false;
    QObject::connect(&receiver, &VideoHVX3Reciver::pixmapReady, &receiver, [&isShown] { isShown = true; });
    const auto showsNext = [&] {
        isShown = false;
        receiver.imageReady(QImage(1, 1, QImage::Format_RGB32));
        return isShown;
    };
    while (!showsNext()) {
    }
    while (showsNext()) {
    }
}

} // namespace paravue::test
