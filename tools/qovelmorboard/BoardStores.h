// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qovelmor::simboard {

/// The memory that "rr" and "rw" look into.
class BoardMemory
{
public:
    static constexpr std::size_t size = 4096;

    bool contains(std::size_t address) const { return address < size; }
    std::uint8_t byteAt(std::size_t address) const { return bytes_[address]; }
    void setByteAt(std::size_t address, std::uint8_t value) { bytes_[address] = value; }

private:
    std::array<std::uint8_t, size> bytes_{};
};

/// What the board keeps without power: words of columns, one command line and its start values.
class BoardRom
{
public:
    static constexpr std::size_t maximumWords = 4096;

    std::size_t size() const { return size_; }
    std::size_t used() const { return words_.size(); }
    /// A word that was never written reads as ffff.
    std::uint16_t wordAt(std::size_t address) const
    {
        return address < words_.size() ? words_[address] : std::uint16_t{0xFFFF};
    }
    const std::vector<std::uint16_t> &words() const { return words_; }

    /// Forgets all words and gives `words` of room.
    void format(std::size_t words);
    /// Opens the ROM at its start when it is closed, and goes on behind the last word else; false
    /// when there is not room for all.
    bool write(const std::vector<unsigned> &words);
    void close() { open_ = false; }
    unsigned checkSum() const; ///< sum of all words, 16 bits

    std::string command;
    int bright = 10;
    int speed = 3;
    int reverse = 0;

private:
    std::size_t size_ = maximumWords;
    bool open_ = false;
    std::vector<std::uint16_t> words_;
};

/// Infrared messages. What the board sends is also what it hears while it listens.
class InfraredStore
{
public:
    static constexpr std::size_t maximumMessages = 16;

    bool isListening() const { return listening_; }
    void setListening(bool listening) { listening_ = listening; }
    /// Keeps the message when the board listens and has room; true when it was kept.
    bool hear(std::string_view message);
    std::size_t count() const { return messages_.size(); }
    std::string_view oldest() const;
    void freeOldest();
    void freeAll() { messages_.clear(); }

private:
    bool listening_ = false;
    std::vector<std::string> messages_;
};

} // namespace qovelmor::simboard
