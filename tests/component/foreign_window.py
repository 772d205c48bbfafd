#!/usr/bin/env python3
"""A window of a program without Qt, on the display that DISPLAY names.

Prints the window's number, then does what each line of its input says, and answers each with a line:

    focus             gives the window the keyboard
    hand              hands the keyboard to the first window inside
    click X Y         moves the pointer to a place of the window and clicks
    point X Y         moves the pointer there
    type TEXT         presses the keys of small letters and digits
    key NAME          presses one key, as in "Return"
    children          "X Y WIDTH HEIGHT shown" of each window inside
    others            "X Y WIDTH HEIGHT" of each other window on the screen that is shown, from this window's corner
    focused           "own", "inside" or "elsewhere"
    colors            how many colours the window shows
    close             ends the window; the program goes on
"""
import ctypes as c
import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
sys.dont_write_bytecode = True
import x11_input
from x11_input import display, ulong, x11


class Attributes(c.Structure):
    _fields_ = [("x", c.c_int), ("y", c.c_int), ("width", c.c_int), ("height", c.c_int), ("border", c.c_int),
                ("depth", c.c_int), ("visual", c.c_void_p), ("root", ulong), ("kind", c.c_int),
                ("bit_gravity", c.c_int), ("win_gravity", c.c_int), ("backing", c.c_int), ("planes", ulong),
                ("pixel", ulong), ("save_under", c.c_int), ("colormap", ulong), ("installed", c.c_int),
                ("map_state", c.c_int), ("all_events", c.c_long), ("events", c.c_long), ("not_passed", c.c_long),
                ("override", c.c_int), ("screen", c.c_void_p)]


class Image(c.Structure):
    _fields_ = [("width", c.c_int), ("height", c.c_int), ("xoffset", c.c_int), ("format", c.c_int),
                ("data", c.c_void_p), ("byte_order", c.c_int), ("unit", c.c_int), ("bit_order", c.c_int),
                ("pad", c.c_int), ("depth", c.c_int), ("bytes_per_line", c.c_int), ("bits_per_pixel", c.c_int)]


x11.XDefaultRootWindow.restype = ulong
x11.XCreateSimpleWindow.restype = ulong
x11.XCreateSimpleWindow.argtypes = [c.c_void_p, ulong, c.c_int, c.c_int, c.c_uint, c.c_uint, c.c_uint, ulong, ulong]
x11.XGetImage.restype = c.POINTER(Image)
x11.XGetImage.argtypes = [c.c_void_p, ulong, c.c_int, c.c_int, c.c_uint, c.c_uint, ulong, c.c_int]

root = x11.XDefaultRootWindow(display)
WIDTH, HEIGHT = 600, 300
ZPIXMAP = 2
window = x11.XCreateSimpleWindow(display, root, 150, 80, WIDTH, HEIGHT, 0, 0, 0x3060A0)
x11.XStoreName(display, ulong(window), b"A window without Qt")
x11.XMapWindow(display, ulong(window))
x11.XSync(display, 0)


def attributes(of):
    found = Attributes()
    x11.XGetWindowAttributes(display, ulong(of), c.byref(found))
    return found


def inside(of):
    ignored, count, list_ = ulong(), c.c_uint(), c.POINTER(ulong)()
    x11.XQueryTree(display, ulong(of), c.byref(ignored), c.byref(ignored), c.byref(list_), c.byref(count))
    return [list_[i] for i in range(count.value)]


def place(of):
    x, y, ignored = c.c_int(), c.c_int(), ulong()
    x11.XTranslateCoordinates(display, ulong(of), ulong(root), 0, 0, c.byref(x), c.byref(y), c.byref(ignored))
    return x.value, y.value


def point(x, y):
    left, top = place(window)
    x11_input.move(left + int(x), top + int(y))


def focus():
    x11.XSetInputFocus(display, ulong(window), 2, ulong(0))


def hand():
    x11.XSetInputFocus(display, ulong(inside(window)[0]), 2, ulong(0))


def click(x, y):
    point(x, y)
    x11_input.down()
    x11_input.up()


def type_(text):
    for sign in text:
        x11_input.key(sign)


def children():
    found = [attributes(child) for child in inside(window)]
    return "; ".join(f"{a.x} {a.y} {a.width} {a.height} {'shown' if a.map_state == 2 else 'hidden'}" for a in found)


def others():
    left, top = place(window)
    found = [attributes(other) for other in inside(root) if other != window]
    return "; ".join(f"{a.x - left} {a.y - top} {a.width} {a.height}" for a in found if a.map_state == 2)


def focused():
    found, ignored = ulong(), c.c_int()
    x11.XGetInputFocus(display, c.byref(found), c.byref(ignored))
    if found.value == window:
        return "own"
    return "inside" if found.value in inside(window) else "elsewhere"


def colors():
    image = x11.XGetImage(display, window, 0, 0, WIDTH, HEIGHT, 0xFFFFFFFF, ZPIXMAP).contents
    data = c.string_at(image.data, image.bytes_per_line * image.height)
    return len({data[i:i + 3] for i in range(0, len(data), 4)})


def close():
    x11.XDestroyWindow(display, ulong(window))


COMMANDS = {"focus": focus, "hand": hand, "click": click, "point": point, "type": type_,
            "key": x11_input.key, "children": children, "others": others, "focused": focused, "colors": colors,
            "close": close}

print(window, flush=True)
for line in sys.stdin:
    name, *arguments = line.split()
    answer = COMMANDS[name](*arguments)
    x11.XSync(display, 0)
    print("done" if answer is None else answer, flush=True)
