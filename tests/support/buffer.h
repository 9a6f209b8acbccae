/* SPDX-License-Identifier: Apache-2.0 */
/* A growing text for test programs that have no C++ runtime. */
#ifndef FRRUCI_TESTS_SUPPORT_BUFFER_H
#define FRRUCI_TESTS_SUPPORT_BUFFER_H

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace stage {

class Buffer {
public:
    Buffer() = default;
    ~Buffer() { free(bytes_); }
    Buffer(const Buffer &) = delete;
    Buffer &operator=(const Buffer &) = delete;

    const char *text() const { return bytes_ == nullptr ? "" : bytes_; }
    std::size_t size() const { return size_; }
    void clear() { cut(0); }

    void cut(std::size_t size) {
        size_ = size;
        if (bytes_ != nullptr) {
            bytes_[size] = '\0';
        }
    }

    void append(const char *bytes, std::size_t count) {
        if (size_ + count + 1 > room_) {
            room_ = (size_ + count + 1) * 2;
            bytes_ = static_cast<char *>(realloc(bytes_, room_));
            if (bytes_ == nullptr) {
                abort();
            }
        }
        memcpy(bytes_ + size_, bytes, count);
        cut(size_ + count);
    }
    void append(const char *text) { append(text, strlen(text)); }
    void append(char byte) { append(&byte, 1); }

    /// The text as a C string's inside: control characters, quotes and backslashes escaped.
    void appendEscaped(const char *bytes, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            appendEscaped(bytes[i]);
        }
    }

    /// The text as it is where a reader can see all of it, else in quotes.
    void appendVisible(const char *text) { appendVisible(text, strlen(text)); }
    void appendVisible(const char *bytes, std::size_t count) {
        if (isPlain(bytes, count)) {
            append(bytes, count);
            return;
        }
        append('"');
        appendEscaped(bytes, count);
        append('"');
    }

private:
    static bool isControl(char byte) {
        const auto value = static_cast<unsigned char>(byte);
        return value < 0x20 || value == 0x7f;
    }

    static bool isPlain(const char *bytes, std::size_t count) {
        if (count == 0 || bytes[0] == ' ' || bytes[count - 1] == ' ') {
            return false;
        }
        for (std::size_t i = 0; i < count; ++i) {
            if (isControl(bytes[i]) || bytes[i] == '\\') {
                return false;
            }
        }
        return bytes[0] != '"';
    }

    void appendEscaped(char byte) {
        static constexpr char kHex[] = "0123456789abcdef";
        static constexpr char kLetters[][2] = {
            {'\n', 'n' },
            {'\r', 'r' },
            {'\t', 't' },
            {'\\', '\\'},
            {'"',  '"' }
        };
        for (const auto &letter : kLetters) {
            if (byte == letter[0]) {
                append('\\');
                append(letter[1]);
                return;
            }
        }
        if (!isControl(byte)) {
            append(byte);
            return;
        }
        const auto value = static_cast<unsigned char>(byte);
        append("\\x");
        append(kHex[value >> 4]);
        append(kHex[value & 15]);
    }

    char *bytes_ = nullptr;
    std::size_t size_ = 0;
    std::size_t room_ = 0;
};

} // namespace stage

#endif
