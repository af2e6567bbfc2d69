#pragma once

/// @file A message between programs as sent over a connection, and its answer: docs/formats/messages.md.

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/MessageWindow.h"

namespace qv::platform::messages {

/// What the listener sends back for each frame.
enum class Answer : char {
    None = 0,      ///< never sent: the connection ended without an answer
    Handled = 1,   ///< the receiver has returned
    NotTaken = 2,  ///< the connection is closed and the frame unread: it must be sent again over a new one
};

/// Collects the bytes of one frame, regardless of how they are split.
class Frame {
public:
    enum class State { Partial, Complete, Broken };

    /// Returns the bytes before the text: the header, the target's name and the sender's.
    static std::string Opening(const std::string& target, const std::string& sender, std::size_t textSize) {
        Header header;
        header.targetSize = static_cast<std::uint32_t>(target.size());
        header.senderSize = static_cast<std::uint32_t>(sender.size());
        header.textSize = static_cast<std::uint32_t>(textSize);
        return std::string(reinterpret_cast<const char*>(&header), sizeof header) + target + sender;
    }

    /// Returns Broken if the bytes are not a frame, exceed a limit, or continue after the frame's end. Never stores
    /// more than one frame and one call's bytes.
    State Add(std::string_view bytes) {
        m_bytes += bytes;
        if (m_bytes.size() < sizeof(Header)) return State::Partial;
        const Header header = ReadHeader();
        if (!header.IsValid() || m_bytes.size() > header.Total()) return State::Broken;
        return m_bytes.size() == header.Total() ? State::Complete : State::Partial;
    }

    // Of a complete frame.
    std::string_view Target() const { return Part(sizeof(Header), ReadHeader().targetSize); }
    std::string_view Sender() const { return Part(sizeof(Header) + Target().size(), ReadHeader().senderSize); }
    std::string_view Text() const {
        return Part(sizeof(Header) + Target().size() + Sender().size(), ReadHeader().textSize);
    }

private:
    struct Header {
        std::array<char, 4> magic = {'Q', 'V', 'M', '1'};
        std::uint32_t targetSize = 0, senderSize = 0, textSize = 0;

        bool IsValid() const {
            return magic == Header().magic && targetSize <= kLongestClassName && senderSize <= kLongestClassName &&
                   textSize <= kLongestMessage;
        }
        std::size_t Total() const { return sizeof(Header) + targetSize + senderSize + textSize; }
    };

    Header ReadHeader() const {
        Header header;
        std::memcpy(&header, m_bytes.data(), sizeof header);
        return header;
    }
    std::string_view Part(std::size_t from, std::size_t size) const {
        return std::string_view(m_bytes).substr(from, size);
    }

    std::string m_bytes;
};

}  // namespace qv::platform::messages
