# SPDX-License-Identifier: MIT
"""Sends a plot file with the Windows program to a serial port, which is a pseudo-terminal of this machine that Wine calls
COM1, and checks what arrives.

usage: plot_under_wine.py <run-in-wine> <build directory> <kv.exe> <plot file>
"""

import os
import pty
import subprocess
import sys
import termios
import threading

run_in_wine, build, program, plot_file = sys.argv[1:]
plot = open(plot_file, "rb").read()
plotter, port = pty.openpty()
received = bytearray()


def receive():
    while len(received) < len(plot):
        received.extend(os.read(plotter, 4096))


receiver = threading.Thread(target=receive, daemon=True)
receiver.start()
entry = "COM1: 4800,n,8,2,p"
set_up = ["Z:" + program, "ini", "set", "--create", "--file", r"C:\windows\win.ini", "Ports", *entry.split()]
send = ["Z:" + program, "plot", "Z:" + plot_file, "COM1"]
result = subprocess.run(
    [run_in_wine, build, "cmd", "/c", *set_up, "&&", *send],
    env=os.environ | {"KV_COM1": os.ttyname(port)},
    capture_output=True,
    text=True,
    timeout=120,
)
receiver.join(timeout=10)
speed, flags = termios.tcgetattr(port)[5], termios.tcgetattr(port)[2]

failures = []
if result.returncode != 0 or f"{len(plot)} bytes sent to COM1" not in result.stdout:
    failures.append(f"exit code {result.returncode}: {result.stdout}{result.stderr}")
if received != plot:
    failures.append(f"{len(received)} bytes have come, which are not the file's {len(plot)}")
# A pseudo-terminal has no parity, and 8 bits.
if speed != termios.B4800 or not flags & termios.CSTOPB:
    failures.append(f"the port is not set up as '{entry}' says: speed {speed}, flags {flags:o}")
print("\n".join(failures) or f"{len(plot)} bytes have come as they were sent")
sys.exit(1 if failures else 0)
