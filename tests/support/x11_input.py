#!/usr/bin/env python3
"""Keys and pointer of the display that DISPLAY names, as the hardware gives them.

As a program it does what its arguments say, one after the other: "move X Y", "down", "up", "key NAME".
"""
import ctypes as c
import sys

x11 = c.CDLL("libX11.so.6")
xtst = c.CDLL("libXtst.so.6")
ulong = c.c_ulong

x11.XOpenDisplay.restype = c.c_void_p
x11.XOpenDisplay.argtypes = [c.c_char_p]
x11.XStringToKeysym.restype = ulong
x11.XKeysymToKeycode.restype = c.c_ubyte
x11.XKeysymToKeycode.argtypes = [c.c_void_p, ulong]

display = c.c_void_p(x11.XOpenDisplay(None))
if not display:
    sys.exit("There is no display")


def move(x, y):
    xtst.XTestFakeMotionEvent(display, -1, int(x), int(y), ulong(0))


def down():
    xtst.XTestFakeButtonEvent(display, 1, 1, ulong(0))


def up():
    xtst.XTestFakeButtonEvent(display, 1, 0, ulong(0))


def key(name):
    code = c.c_uint(x11.XKeysymToKeycode(display, x11.XStringToKeysym(name.encode())))
    for pressed in (1, 0):
        xtst.XTestFakeKeyEvent(display, code, pressed, ulong(0))


if __name__ == "__main__":
    for argument in sys.argv[1:]:
        name, *arguments = argument.split()
        {"move": move, "down": down, "up": up, "key": key}[name](*arguments)
        x11.XSync(display, 0)
