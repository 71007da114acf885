// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qovelmor::simboard {

/// The board's end of a raw pseudo-terminal, with an optional symbolic link that keeps one name
/// for it.
class PseudoTerminal
{
public:
    PseudoTerminal() = default;
    ~PseudoTerminal() { close(); }
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    /// Opens a new pair; false, with the cause in error(), when that fails. `link` may be empty;
    /// a symbolic link that stands there is replaced, anything else is not.
    bool open(const std::string &link);
    /// Hangs up: whoever holds the other end sees the line die. The link is removed.
    void close();

    bool isOpen() const { return master_ >= 0; }
    int descriptor() const { return master_; }
    const std::string &path() const { return path_; } ///< of the host's end
    const std::string &error() const { return error_; }

    /// What has arrived, up to `limit` bytes; empty when nothing has.
    std::string read(std::size_t limit);
    /// Bytes that the far end has no room for are lost, as on a wire.
    void write(std::string_view bytes);
    /// Lets the host open its end again. TIOCEXCL outlives the host's close() as long as the pair
    /// lives, where a real port forgets it.
    void forgetExclusiveUse();

private:
    bool fail(const char *what);
    bool makeRaw();
    bool makeLink(const std::string &link);

    int master_ = -1;
    int hostEnd_ = -1; ///< held open, so that a host that closes is no hang-up for us
    std::string path_;
    std::string link_;
    std::string error_;
};

} // namespace qovelmor::simboard
