#!/usr/bin/env python3
"""Shows an agency picker and prints its events; --check chooses by itself, and ends.

The program knows the library by nothing but the class's name: the file of registrations tells where it is."""

import configparser
import ctypes
import json
import os
import sys
from ctypes import CFUNCTYPE, POINTER, byref, c_char_p, c_double, c_int32, c_uint32, c_uint64, c_void_p
from pathlib import Path

EMPTY, NULL, LONG, DOUBLE, TEXT, BOOLEAN = 0, 1, 3, 5, 8, 11
MEMBER_NOT_FOUND = -2147352573


#! [variant]
class Value(ctypes.Union):
    _fields_ = [("integer", c_int32), ("number", c_double), ("text", c_char_p), ("pointer", c_void_p)]


class Variant(ctypes.Structure):
    _fields_ = [("type", c_int32), ("reserved", c_int32), ("value", Value)]
#! [/variant]


class Error(ctypes.Structure):
    _fields_ = [("result", c_int32), ("number", c_int32), ("source", c_char_p), ("description", c_char_p)]


def function(*arguments):
    return CFUNCTYPE(c_int32, *arguments)


#! [calls]
EventCall = function(c_uint64, c_char_p, POINTER(Variant), c_int32, c_void_p)
HostCall = function(c_char_p, c_char_p, POINTER(Variant), c_int32, POINTER(Variant), c_void_p)
#! [/calls]
any_call = function()


class Library(ctypes.Structure):
    _fields_ = [("size", c_uint32), ("version", c_uint32), ("LastError", function(POINTER(Error))),
                ("RaiseError", any_call), ("SetUnhandled", any_call), ("VariantClear", function(POINTER(Variant))),
                ("SetText", function(POINTER(Variant), c_char_p)), ("SetPicture", any_call), ("SetFont", any_call),
                ("SetList", any_call), ("StartApplication", function()), ("EndApplication", function()),
                ("ProcessEvents", function(c_int32)), ("Run", function()), ("Quit", function()),
                ("SetHost", function(HostCall, c_void_p))]


class ClassObject(ctypes.Structure):
    _fields_ = [("size", c_uint32), ("version", c_uint32), ("className", c_char_p), ("typeLibrary", c_char_p),
                ("typeLibraryVersion", c_char_p), ("defaultInterface", c_char_p), ("eventInterface", c_char_p),
                ("contract", c_char_p), ("memberCount", c_int32), ("Member", any_call),
                ("Create", function(c_void_p, c_void_p, POINTER(c_uint64))), ("Destroy", function(c_uint64)),
                ("Show", function(c_uint64, c_int32)),
                ("Move", function(c_uint64, c_int32, c_int32, c_int32, c_int32)),
                ("SetTitle", function(c_uint64, c_char_p)),
                ("Get", function(c_uint64, c_char_p, POINTER(Variant))),
                ("Put", function(c_uint64, c_char_p, POINTER(Variant))), ("Call", any_call),
                ("Subscribe", function(c_uint64, c_char_p, EventCall, c_void_p, POINTER(c_uint64)))]


#! [load]
def registrations():
    """Where libraries enter their classes: the user's file of registrations."""
    data = os.environ.get("XDG_DATA_HOME", "")
    folder = Path(data) if data.startswith("/") else Path.home() / ".local/share"
    return folder / "TVBoundControls/components.ini"


def registered(class_name):
    """The path of the library that is registered for a class."""
    path = registrations()
    damaged = f"The file of registrations is damaged: {path}"
    groups = configparser.RawConfigParser(delimiters="=", comment_prefixes=(";", "#"))
    try:
        text = path.read_text(encoding="utf-8-sig")
        groups.read_string(text)
    except FileNotFoundError:
        sys.exit(f"{path}: No control is registered")
    except OSError as error:
        sys.exit(f"The file of registrations cannot be read: {path}: {error.strerror}")
    except (UnicodeDecodeError, configparser.Error):
        sys.exit(damaged)
    if "\0" in text:
        sys.exit(damaged)
    if class_name not in groups:
        sys.exit(f"{class_name}: The class is not registered")
    for key in ("Library", "Version"):
        if not groups[class_name].get(key):
            sys.exit(f"{damaged}: no {key} for {class_name}")
    if not groups[class_name]["Version"].startswith("1."):
        sys.exit(f"{class_name}: The registered library is of another version")
    return groups[class_name]["Library"]


def load(class_name):
    """The two structures of functions, by what is registered for the class."""
    path = registered(class_name)
    try:
        get_class_object = ctypes.CDLL(path).DllGetClassObject
    except OSError as error:
        sys.exit(f"{class_name}: {error}")
    except AttributeError:
        sys.exit(f"{path}: The library has no DllGetClassObject")

    def structure(name, interface, kind):
        found = c_void_p()
        if get_class_object(name.encode(), interface.encode(), byref(found)) != 0:
            sys.exit(f"{path}: The library has no {name}")
        functions = ctypes.cast(found, POINTER(kind)).contents
        if functions.version != 1 or functions.size < ctypes.sizeof(kind):
            sys.exit(f"{path}: The library is older or other than this program expects")
        return functions

    return structure("TVBoundControls.Library", "TvLibrary", Library), structure(class_name, "TvClassObject", ClassObject)
#! [/load]


#! [must]
def must(result):
    if result < 0:
        error = Error()
        library.LastError(byref(error))
        sys.exit(f"{result & 0xFFFFFFFF:08X} {error.description.decode()}")
#! [/must]


#! [get]
def get(control, name):
    variant = Variant()
    must(agencies.Get(control, name.encode(), byref(variant)))
    value = {LONG: variant.value.integer, TEXT: (variant.value.text or b"").decode() if variant.type == TEXT else None,
             BOOLEAN: bool(variant.value.integer)}.get(variant.type)
    library.VariantClear(byref(variant))
    return value
#! [/get]


#! [host]
@HostCall
def host(service, operation, arguments, count, result, context):
    """The one callback by which controls ask their host. This one knows a single list."""
    if (service, operation) == (b"ListFilling", b"FillTableGrid") and arguments[0].value.integer == 997:
        entries = [{"ID": "NPD", "DisplayText": "North Police Department", "Value": 1},
                   {"ID": "SSO", "DisplayText": "South Sheriff's Office", "Value": 2}]
        return library.SetText(result, json.dumps(entries).encode())
    return MEMBER_NOT_FOUND
#! [/host]


#! [event]
@EventCall
def changed(control, event, arguments, count, context):
    events.append(event.decode())
    print(f"{events[-1]}: \"{get(control, 'FullText')}\"", flush=True)
    return 0
#! [/event]


checks = "--check" in sys.argv
if checks:
    os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")
events = []
#! [make]
library, agencies = load("TVBoundControls.AgencyPicker")
agency = c_uint64()
must(library.SetHost(host, None))
must(agencies.Create(ctypes.addressof(agencies), None, byref(agency)))
must(agencies.Subscribe(agency, b"Change", changed, None, None))
must(agencies.Move(agency, 100, 100, 400, 30))
must(agencies.Show(agency, 1))
must(agencies.Put(agency, b"Value", byref(Variant(LONG, 0, Value(integer=2)))))
#! [/make]
if checks:
    must(library.ProcessEvents(1))
    print(f"Value: {get(agency, 'Value')}, text: {get(agency, 'ShortText')}, events: {events}")
    if get(agency, "Value") != 2 or get(agency, "ShortText") != "SSO" or not events:
        sys.exit("The picker does not hold what was put")
else:
    must(library.Run())
must(agencies.Destroy(agency))
must(library.EndApplication())
