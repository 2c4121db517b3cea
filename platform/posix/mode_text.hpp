// SPDX-License-Identifier: MIT
// The text that describes the settings of a serial port, as the command "mode" and the system call behind
// it take it.
#pragma once

#include <string_view>

#include "platform/platform.hpp"

namespace kv::platform::posix {

/// Changes the settings as the text says. In either form letters have no case.
///
/// The older form is up to five fields with commas between them: baud rate, parity letter (n, e, o, m, s),
/// data bits (5 to 8), stop bits (1, 1.5, 2) and a letter for the flow control, where x is XON and XOFF,
/// and p handshake by CTS, DSR, RTS and DTR. Blanks may surround each field. All but the first may be
/// missing or empty. Other letters for the parity and the flow control are let pass and mean nothing: the
/// command has had several more.
///
/// The newer form is any number of the words baud=, parity=, data=, stop=, to=, xon=, odsr=, octs=, dtr=,
/// rts= and idsr= with their values, and blanks between them.
///
/// In both, the baud rates 11, 15, 30, 60, 12, 24, 48, 96 and 19 are short for 110, 150, 300, 600, 1200,
/// 2400, 4800, 9600 and 19200; 110 baud have two stop bits; the flow control that is not asked for is off,
/// DTR and RTS on. Other settings that the text does not give stay.
///
/// False, with the settings untouched, if the text follows neither form.
bool apply_mode_text(std::string_view text, SerialSettings &settings);

}  // namespace kv::platform::posix
