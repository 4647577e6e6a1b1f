# Builds for 64-bit Windows with Debian's MinGW-w64. PARAVUE_WINDOWS_SDK is a folder with Qt, FFmpeg and libarchive, as
# build-sdk makes it; zlib and the system libraries are those of Debian's packages.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The variant with POSIX threads: that with Windows threads has no std::thread and std::mutex.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Without this what the host has would be found. Programs, such as Qt's moc, run on the host.
list(APPEND CMAKE_FIND_ROOT_PATH ${PARAVUE_WINDOWS_SDK} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PARAVUE_WINDOWS_SDK)

# Qt's own tools and the files that describe them.
set(QT_HOST_PATH /usr CACHE PATH "Where the host's Qt is")
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake CACHE PATH "Where the host's Qt describes its tools")
