#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// The peer of cHvx3Parser: a parser of a recorder's video stream as one would write it by hand who trusts
/// the recorder. Every length is right, nothing is counted as lost, and nothing is limited.
class PlainParser
{
public:
    struct Stream {
        uint8_t id = 0;
        uint8_t type = 0;
        std::array<std::string, 3> labels;
    };
    struct Frame {
        const Stream *stream = nullptr;
        uint8_t flags = 0;
        uint16_t milliseconds = 0;
        uint8_t byteA = 0;
        uint8_t byteB = 0;
        std::string payload;
    };

    std::function<void(const Frame &)> onFrame;
    std::function<void(uint32_t seconds)> onIndex;

    int headers() const { return m_headers; }

    void append(std::string_view piece);

private:
    enum class State { Header, Index, Data };

    bool step();
    bool readMagic();
    bool readHeader();
    bool readIndex();
    bool readData();
    bool has(size_t bytes);
    void drop(size_t bytes) { m_input.remove_prefix(bytes); }
    void addFragment(const Stream &stream, uint8_t flags, std::string_view payload);

    State m_state = State::Header;
    std::string_view m_input; ///< what is unread
    std::string m_kept;       ///< the same between two pieces
    size_t m_wanted = 0;      ///< without so many bytes nothing more can be read
    int m_headers = 0;
    std::string m_name;
    std::vector<Stream> m_streams;
    std::array<const Stream *, 256> m_streamOf{};
    std::array<Frame, 256> m_frames; ///< the one under way of each stream
};
