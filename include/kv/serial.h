/* SPDX-License-Identifier: MIT */
/* Serial output: plot files, or any bytes, to a plotter on a serial port.
 *
 * Ports. A port is named "COM1" to "COM256"; the case of the letters matters to WinCommPortCheck() and to
 * the entry in WIN.INI only. On POSIX, COM1 is the device /dev/ttyS0, COM2 is /dev/ttyS1 and so on, unless
 * the environment variable KV_COM1, KV_COM2, ... names another (by a path of the host); any other name is
 * the path of a device, such as "Z:/dev/ttyUSB0".
 *
 * Settings. The entry of a port is the value of the key "<port>:" in section "Ports" of the file WIN.INI in
 * the Windows directory (on POSIX C:\WINDOWS), with a default of "9600,n,8,1,p":
 *
 *   baud rate , parity , data bits , stop bits , flow control
 *
 *   parity        e even, m mark, n none, o odd
 *   data bits     5 to 8
 *   stop bits     1, 1.5 (with 5 data bits only) or 2 (with more)
 *   flow control  e, p or x
 *
 * The entry is first taken as the system's command "mode" takes it, and must be valid for that (on Windows
 * the system itself decides; on POSIX a letter that is not known there means nothing). That also sets what
 * the letter of the flow control asks for, XON and XOFF for x. Then the fields are taken as above, in small
 * letters. Whatever the flow control says, the port waits for CTS, has RTS say whether it can receive, and
 * has DTR off. What an entry leaves out stays as the port has it. On POSIX DSR is not looked at, and a port
 * fails to take settings that its device does not keep: a baud rate unknown to the system, for one.
 *
 * Waiting. Bytes go out as they are. Writing returns when the system has sent them, or when the port is
 * gone. A plotter that holds CTS off, for new paper or because it is off, is waited for without end, as it
 * may be hours. On POSIX the environment variable KV_COM_TIMEOUT sets a limit: so many seconds without a
 * single byte taken are a write that has failed.
 *
 * The two ways. Win32s gives programs of 32 bits no way to the ports; there a plot file goes through the
 * sibling library "comthk32.dll", which reads what to do from the file "COMM.TMP" in the current directory.
 * Everywhere else the library drives the port itself.
 *
 * The family is meant for one thread. It reports nothing; message boxes are named where they come up. */
#ifndef KV_SERIAL_H
#define KV_SERIAL_H

#include "kv/types.h"

KV_BEGIN_DECLS

/** Port kinds: where a port's name leads to. */
enum {
    KV_PORT_NONE = 0,   /**< to no serial port, or the port is closed; the kind at the beginning */
    KV_PORT_HELPER = 1, /**< to a serial port that the sibling library reaches */
    KV_PORT_DIRECT = 2  /**< to a serial port that the library drives */
};

/** Reads the entry of a port.
 *
 *  @param entry  receives the text, of which at most 40 characters are read: 41 bytes
 *  @param port   the name, such as "COM1"; without an entry, and with a name of more than 255 characters,
 *                the text is "9600,n,8,1,p"
 *  @retval 1  done
 *  @retval 0  there is no Windows directory (on POSIX: no drive C), or its path has more than 63
 *             characters; entry is untouched */
KV_API int32_t KV_CALL GetComEntry(char *entry, const char *port) KV_NOEXCEPT;

/** Opens a port for this process alone and sets it up by its entry. Settings that the port does not take,
 *  and letters that are not known, are ignored.
 *
 *  @return the port's handle, for WriteWinCom() and CloseWinCom(): that of the system, on POSIX the file
 *          descriptor. It fits into 32 bits and is never 0 for an open port. 0 when there is no such port,
 *          when it is in use, and when its entry cannot be read or is not valid */
KV_API kv_value KV_CALL iOpenWinComWrite(const char *port) KV_NOEXCEPT;

/** Sends bytes. When the port takes fewer, it is closed as by CloseWinCom(), and *handle is 0 then.
 *
 *  @param handle  points to the handle; nothing happens when that is 0
 *  @param buffer  count bytes */
KV_API void KV_CALL WriteWinCom(kv_value *handle, const void *buffer, uint32_t count) KV_NOEXCEPT;

/** Closes a port and makes the port kind KV_PORT_NONE.
 *
 *  @param handle  points to the handle, which becomes 0; NIL and a handle of 0 only change the port kind
 *  @return KV_PORT_NONE, always */
KV_API int32_t KV_CALL CloseWinCom(kv_value *handle) KV_NOEXCEPT;

/** Sends a plot file through a port that is opened for it and closed afterwards. The port kind stays.
 *
 *  @param path  the file, which is sent as it is, 32768 bytes at a time
 *  @param port  the port's name
 *  @retval 1  all of it was sent, or nothing because the file cannot be opened
 *  @retval 0  the port could not be opened, or its entry not read, or the entry is not valid; or the heap
 *             has no room for a buffer: nothing was sent then. Or the port did not take the settings or has
 *             an entry with an unknown letter for parity or flow control: the file was sent all the same.
 * Or the port took, or the file gave, only a part: the sending has ended there */
KV_API int32_t KV_CALL PlotToCom32Bit(const char *path, const char *port) KV_NOEXCEPT;

/** Writes the file for the sibling library, "COMM.TMP" in the current directory: three lines with the path,
 *  the port and its entry.
 *
 *  @retval 1  done
 *  @retval 0  the file cannot be written, or the entry cannot be read (nothing is written then) */
KV_API int32_t KV_CALL WriteComEntry(const char *path, const char *port) KV_NOEXCEPT;

/** Sends a plot file by the way that the platform has: as PlotToCom32Bit(), on Win32s through the sibling
 *  library. When that cannot be loaded or started, a message box says "32Bit Dll couldn't be loaded" or
 *  "32Bit Dll couldn't be initialized" under the caption "win_com". On POSIX it is never there.
 *
 *  @retval 1  sent
 *  @retval 0  not sent, or only a part; or the sibling library or its file failed */
KV_API int32_t KV_CALL WriteFileWinCom(const char *path, const char *port) KV_NOEXCEPT;

/** Stores where a name leads to: a name that begins with "COM" to a serial port, any other to none. The
 *  port need not exist.
 *
 *  @return the port kind */
KV_API int32_t KV_CALL WinCommPortCheck(const char *name) KV_NOEXCEPT;

/** Sets the port kind, or asks for it.
 *
 *  @param kind  stored as it is
 *  @param set   1 to store the kind; anything else only asks
 *  @return the port kind after that */
KV_API int32_t KV_CALL setWinComPort(int32_t kind, int32_t set) KV_NOEXCEPT;

/** @return the port kind */
KV_API int32_t KV_CALL getWinComPort(void) KV_NOEXCEPT;

KV_END_DECLS

#endif
