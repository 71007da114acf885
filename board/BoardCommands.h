// SPDX-License-Identifier: MIT
#pragma once

#include "board/FarmCommands.h"
#include "platform/CalendarTime.h"

#include <atomic>

namespace qovelmor {

/// The board's commands, one operation each, named as the board names them, and the properties made
/// of them.
///
/// An order returns as soon as it is sent. A question waits for its reply: a number is -1, a text
/// is absent and bytes are none when it does not come in time.
class BoardCommands : public FarmCommands
{
public:
    using FarmCommands::FarmCommands;

    // The board. ---------------------------------------------------------------------------------

    int echo() { return intFarmCommand(QStringLiteral("echo"), -1); }
    int echo(int on) { return intFarmCommand(QStringLiteral("echo"), on); }
    std::optional<QString> ver()
    {
        return stringFarmCommand(QStringLiteral("ver"));
    } ///< the firmware's version
    std::optional<QString> sync() { return stringFarmCommand(QStringLiteral("sync")); }
    std::optional<QString> help(); ///< the board's list of its commands; takes more than a second
    std::optional<QString> h() { return help(); }

    // Dots and light. ----------------------------------------------------------------------------

    void lm_bright(int level);  ///< 0 to 10; anything else is not sent
    void lm_bright0(int level); ///< 0 to 255; anything else is not sent
    void lm_clear() { voidFarmCommand(QStringLiteral("lm_clear")); }
    void lm_on() { voidFarmCommand(QStringLiteral("lm_on")); }
    void lm_off() { voidFarmCommand(QStringLiteral("lm_off")); }
    void lm_pset(QPointF point) { voidFarmCommand(QStringLiteral("lm_pset"), point); }
    void lm_preset(QPointF point) { voidFarmCommand(QStringLiteral("lm_preset"), point); }
    void lm_pexor(QPointF point) { voidFarmCommand(QStringLiteral("lm_pexor"), point); }
    int lm_pget(QPointF point) { return intFarmCommand(QStringLiteral("lm_pget"), point); }
    void lm_puts(const QString &text) { voidFarmCommand(QStringLiteral("lm_puts"), text); }
    void lm_puts2(const QString &text) { voidFarmCommand(QStringLiteral("lm_puts2"), text); }

    // Infrared. ----------------------------------------------------------------------------------

    void txir(const QString &message) { voidFarmCommand(QStringLiteral("txir"), message); }
    int rcir() { return intFarmCommand(QStringLiteral("rcir"), QStringLiteral("run:")); }
    int rcir(int on) { return intFarmCommand(QStringLiteral("rcir"), on, QStringLiteral("run:")); }
    std::optional<QString> rcir_data() { return stringFarmCommand(QStringLiteral("rcir_data")); }
    std::optional<QString> rcir_data_detail()
    {
        return stringFarmCommand(QStringLiteral("rcir_data detail"));
    }
    void rcir_free() { voidFarmCommand(QStringLiteral("rcir_free")); }
    void rcir_free_all() { voidFarmCommand(QStringLiteral("rcir_free all")); }
    std::optional<QString> rcir_stat() { return stringFarmCommand(QStringLiteral("rcir_stat")); }

    // ROM and memory. ----------------------------------------------------------------------------

    // These two answer with a mark of their own before the one that ends the command.
    std::optional<QString> rom_check() { return stringFarmCommand(QStringLiteral("rom_check"), 1); }
    std::optional<QString> rom_cread() { return stringFarmCommand(QStringLiteral("rom_cread"), 1); }
    void rom_cwrite(const QString &line) { voidFarmCommand(QStringLiteral("rom_cwrite"), line); }
    void rom_dclose() { voidFarmCommand(QStringLiteral("rom_dclose")); }
    QByteArray rom_dread(int first, int end);
    QByteArray rom_dread(int first = 0) { return rom_dread(first, first + 7); }
    void rom_dwrite(const QByteArray &words)
    {
        voidFarmCommand(QStringLiteral("rom_dwrite"), words);
    }
    int rom_format(int size)
    {
        return intFarmCommand(filled(QStringLiteral("rom_format"), size),
                              QStringLiteral("romsize = "));
    }
    int rom_format()
    {
        return intFarmCommand(QStringLiteral("rom_format"), QStringLiteral("romsize = "));
    }
    void rom_scroll(int on = 1) { voidFarmCommand(filled(QStringLiteral("rom_scroll"), on)); }
    void rom_set_bright(int level)
    {
        voidFarmCommand(filled(QStringLiteral("rom_set bright"), level));
    }
    void rom_set_speed(int speed)
    {
        voidFarmCommand(filled(QStringLiteral("rom_set speed"), speed));
    }
    void rom_set_led_reverse(int on)
    {
        voidFarmCommand(filled(QStringLiteral("rom_set led_reverse"), on));
    }
    std::optional<QString> rom_state() { return stringFarmCommand(QStringLiteral("rom_state")); }
    std::optional<QByteArray> rr(int first, int end);
    std::optional<QByteArray> rr(int first = 0) { return rr(first, first + 16); }
    void rw(int address, const QByteArray &data);

    // The scroll. --------------------------------------------------------------------------------

    void sc_clear() { voidFarmCommand(QStringLiteral("sc_clear")); }
    void sc_clear(int mode) { voidFarmCommand(filled(QStringLiteral("sc_clear"), mode)); }
    int sc_data()
    {
        return intFarmCommand(QStringLiteral("sc_data"));
    } ///< the room for columns, in bytes
    /// Sends columns, 16 to a line, and gives the answer to the last line: below 0 they were
    /// refused. -1 when the data is absent. Empty data sends nothing and asks nothing: 0.
    int sc_data(const std::optional<QByteArray> &columns);
    void sc_end() { voidFarmCommand(QStringLiteral("sc_end")); }
    void sc_end(int mode) { voidFarmCommand(filled(QStringLiteral("sc_end"), mode)); }
    void sc_loop() { voidFarmCommand(QStringLiteral("sc_loop")); }
    void sc_scroll() { voidFarmCommand(QStringLiteral("sc_scroll")); }
    void sc_show() { voidFarmCommand(QStringLiteral("sc_show")); }
    void sc_stop() { voidFarmCommand(QStringLiteral("sc_stop")); }
    int sc_mode() { return intFarmCommand(QStringLiteral("sc_mode")); }

    // Variables: without an argument they are asked, with one they are set. ----------------------

    int cmodule() { return variable(QStringLiteral("cmodule")); }
    void cmodule(int modules) { setVariable(QStringLiteral("cmodule"), modules); }
    int led_reverse() { return variable(QStringLiteral("led_reverse")); }
    void led_reverse(int on) { setVariable(QStringLiteral("led_reverse"), on); }
    int rom_verbose() { return variable(QStringLiteral("rom_verbose")); }
    void rom_verbose(int on) { setVariable(QStringLiteral("rom_verbose"), on); }
    int scmode_div() { return variable(QStringLiteral("scmode_div")); }
    void scmode_div(int divider) { setVariable(QStringLiteral("scmode_div"), divider); }
    int scmode_wait1() { return variable(QStringLiteral("scmode_wait1")); }
    void scmode_wait1(int steps) { setVariable(QStringLiteral("scmode_wait1"), steps); }
    int scmode_wait2() { return variable(QStringLiteral("scmode_wait2")); }
    void scmode_wait2(int steps) { setVariable(QStringLiteral("scmode_wait2"), steps); }
    int scmode_verbose() { return variable(QStringLiteral("scmode_verbose")); }
    void scmode_verbose(int on) { setVariable(QStringLiteral("scmode_verbose"), on); }
    int sw_enable() { return variable(QStringLiteral("sw_enable")); }
    void sw_enable(int on) { setVariable(QStringLiteral("sw_enable"), on); }
    int dump_ir() { return variable(QStringLiteral("dump_ir")); }
    void dump_ir(int on) { setVariable(QStringLiteral("dump_ir"), on); }

    // Commands that the board of today does not have. --------------------------------------------

    LocalTime date() const; ///< the host's
    LocalTime date(int) const { return date(); }
    void dsenum() const {}
    void dsconvt() const {}
    void dsconvt(int) const {}
    double dsgett() const { return -999.0; }
    double dsgett(int) const { return dsgett(); }

    // Properties. A missing reply is no 0, so it reads as YES. -----------------------------------

    int moduleCount() { return cmodule(); }
    void setModuleCount(int modules) { cmodule(modules); }
    int speed() { return scmode_div(); }
    void setSpeed(int speed) { scmode_div(speed); }
    int waitBefore() { return scmode_wait1(); }
    void setWaitBefore(int steps) { scmode_wait1(steps); }
    int waitAfter() { return scmode_wait2(); }
    void setWaitAfter(int steps) { scmode_wait2(steps); }
    bool reverse() { return led_reverse() != 0; }
    void setReverse(bool on) { led_reverse(on ? 1 : 0); }
    bool romVerbose() { return rom_verbose() != 0; }
    void setRomVerbose(bool on) { rom_verbose(on ? 1 : 0); }
    bool scrollVerbose() { return scmode_verbose() != 0; }
    void setScrollVerbose(bool on) { scmode_verbose(on ? 1 : 0); }
    bool messageSwitchEnable() { return sw_enable() != 0; }
    void setMessageSwitchEnable(bool on) { sw_enable(on ? 1 : 0); }
    bool dumpIRMessage() { return dump_ir() != 0; }
    void setDumpIRMessage(bool on) { dump_ir(on ? 1 : 0); }
    /// The level set last; the board is not asked.
    int bright() const { return bright_.load(); }
    void setBright(int level);

    // Placeholders without effect. ---------------------------------------------------------------

    int dispState() const { return 0; }
    void dispStateName() const {}
    void errorMessage() const {}
    void repeat() const {}
    void scrollOut() const {}
    void throwError() const {}
    bool isFailed() const; ///< says in the system log that it does nothing
    void aboutBox() const; ///< the same

private:
    /// A literal with its number filled in, whatever its sign; the result is sent as a name.
    static QString filled(const QString &literal, int value)
    {
        return literal + u' ' + QString::number(value);
    }
    int variable(const QString &name)
    {
        return intFarmCommand(QStringLiteral("set ") + name, name);
    }
    void setVariable(const QString &name, int value)
    {
        voidFarmCommand(filled(QStringLiteral("set ") + name, value));
    }

    std::atomic<int> bright_ = 10;
};

} // namespace qovelmor
