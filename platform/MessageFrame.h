#pragma once

/// @file A message between programs as it travels, on systems that have connections: docs/formats/messages.md.

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/MessageWindow.h"

namespace qv::platform {

/// Gathers the bytes of one message, however they were cut on their way.
class MessageFrame {
public:
    enum class State { Partial, Complete, Broken };

    /// What comes before the text: the head, the target's name and the sender's.
    static std::string Opening(const std::string& target, const std::string& sender, std::size_t textSize) {
        Head head;
        head.targetSize = static_cast<std::uint32_t>(target.size());
        head.senderSize = static_cast<std::uint32_t>(sender.size());
        head.textSize = static_cast<std::uint32_t>(textSize);
        return std::string(reinterpret_cast<const char*>(&head), sizeof head) + target + sender;
    }

    /// Broken for what is no message, too long a one, and bytes behind it. No more than one message is kept.
    State Add(std::string_view bytes) {
        m_bytes += bytes;
        if (m_bytes.size() < sizeof(Head)) return State::Partial;
        const Head head = ReadHead();
        if (!head.IsSound() || m_bytes.size() > head.Total()) return State::Broken;
        return m_bytes.size() == head.Total() ? State::Complete : State::Partial;
    }

    // Of a complete message.
    std::string_view Target() const { return Part(sizeof(Head), ReadHead().targetSize); }
    std::string_view Sender() const { return Part(sizeof(Head) + Target().size(), ReadHead().senderSize); }
    std::string_view Text() const {
        return Part(sizeof(Head) + Target().size() + Sender().size(), ReadHead().textSize);
    }

private:
    struct Head {
        std::array<char, 4> mark = {'Q', 'V', 'M', '1'};
        std::uint32_t targetSize = 0, senderSize = 0, textSize = 0;

        bool IsSound() const {
            return mark == Head().mark && targetSize <= kLongestClassName && senderSize <= kLongestClassName &&
                   textSize <= kLongestMessage;
        }
        std::size_t Total() const { return sizeof(Head) + targetSize + senderSize + textSize; }
    };

    Head ReadHead() const {
        Head head;
        std::memcpy(&head, m_bytes.data(), sizeof head);
        return head;
    }
    std::string_view Part(std::size_t from, std::size_t size) const {
        return std::string_view(m_bytes).substr(from, size);
    }

    std::string m_bytes;
};

}  // namespace qv::platform
