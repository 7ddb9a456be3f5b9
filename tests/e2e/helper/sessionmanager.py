"""A session manager of the X desktop (XSMP 1.0), small enough for a test: takes one program in and logs out when told.

Writes the address for SESSION_MANAGER as its first line, "registered" when the program has come, "saved" when it has agreed to the end,
"closed" when its connection has ended. A line on standard input logs out.
"""

import ctypes
import select
import sys
from ctypes import CFUNCTYPE, POINTER, Structure, byref, c_char_p, c_int, c_ulong, c_void_p, cast, create_string_buffer

ice = ctypes.CDLL("libICE.so.6")
sm = ctypes.CDLL("libSM.so.6")
libc = ctypes.CDLL(None)
libc.strdup.restype = c_void_p
ice.IceComposeNetworkIdList.restype = c_char_p
ice.IceAcceptConnection.restype = c_void_p
sm.SmsGenerateClientID.restype = c_void_p

SAVE_BOTH, INTERACT_NONE, INTERACT_ANY = 2, 0, 2  # <X11/SM/SM.h>
ICE_CONNECT_PENDING, ICE_CONNECT_ACCEPTED, ICE_PROCESS_SUCCESS = 0, 1, 0  # <X11/ICE/ICElib.h>


class Callback(Structure):
    _fields_ = [("function", c_void_p), ("data", c_void_p)]


class Callbacks(Structure):
    """In the order of SmsCallbacks."""
    _fields_ = [(name, Callback) for name in ("register", "interact_request", "interact_done", "save_request", "save_phase2", "save_done",
                                              "close", "set_properties", "delete_properties", "get_properties")]


def say(text):
    print(text, flush=True)


state = {"client": None, "ending": False, "closed": False}


@CFUNCTYPE(c_int, c_void_p, c_void_p, c_void_p)
def register(client, _data, previous):
    sm.SmsRegisterClientReply(c_void_p(client), c_void_p(sm.SmsGenerateClientID(c_void_p(client))))
    if not previous:
        sm.SmsSaveYourself(c_void_p(client), SAVE_BOTH, 0, INTERACT_NONE, 0)
    return 1


@CFUNCTYPE(None, c_void_p, c_void_p, c_int)
def interact_request(client, _data, _kind):
    sm.SmsInteract(c_void_p(client))


@CFUNCTYPE(None, c_void_p, c_void_p, c_int)
def ignore(_client, _data, _value):
    pass


@CFUNCTYPE(None, c_void_p, c_void_p)
def save_phase2(client, _data):
    sm.SmsSaveYourselfPhase2(c_void_p(client))


@CFUNCTYPE(None, c_void_p, c_void_p, c_int)
def save_done(client, _data, _success):
    if state["ending"]:
        say("saved")
        sm.SmsDie(c_void_p(client))
    else:
        sm.SmsSaveComplete(c_void_p(client))
        state["client"] = client
        say("registered")


@CFUNCTYPE(None, c_void_p, c_void_p, c_int, c_void_p)
def close(_client, _data, _count, _reasons):
    state["closed"] = True


@CFUNCTYPE(None, c_void_p, c_void_p, c_int, c_void_p)
def ignore_list(_client, _data, _count, _list):
    pass


@CFUNCTYPE(None, c_void_p, c_void_p)
def ignore_question(_client, _data):
    pass


@CFUNCTYPE(c_int, c_void_p, c_void_p, POINTER(c_ulong), POINTER(Callbacks), POINTER(c_char_p))
def new_client(_client, _data, mask, callbacks, _reason):
    functions = (register, interact_request, ignore, ignore, save_phase2, save_done, close, ignore_list, ignore_list, ignore_question)
    for (name, _), function in zip(Callbacks._fields_, functions):
        setattr(callbacks[0], name, Callback(cast(function, c_void_p), None))
    mask[0] = 0x3FF
    return 1


@CFUNCTYPE(None, c_void_p)
def lose(_connection):
    """In place of libICE's own answer to an end without farewell, which is to end this program."""


@CFUNCTYPE(c_int, c_char_p)
def allow(_host):
    return 1


def main():
    error = create_string_buffer(256)
    if not sm.SmsInitialize(b"Test", b"1", new_client, None, allow, len(error), error):
        sys.exit(f"SmsInitialize: {error.value}")
    ice.IceSetIOErrorHandler(lose)
    count, listeners = c_int(), POINTER(c_void_p)()
    if not ice.IceListenForConnections(byref(count), byref(listeners), len(error), error):
        sys.exit(f"IceListenForConnections: {error.value}")
    for index in range(count.value):
        ice.IceSetHostBasedAuthProc(c_void_p(listeners[index]), allow)
    addresses = ice.IceComposeNetworkIdList(count, listeners).decode()
    say(next(address for address in addresses.split(",") if address.startswith("local/")))
    sockets = {ice.IceGetListenConnectionNumber(c_void_p(listeners[index])): listeners[index] for index in range(count.value)}
    connections, orders = {}, [0]
    while not state["closed"]:
        for descriptor in select.select([*orders, *sockets, *connections], [], [])[0]:
            if descriptor == 0:
                orders.clear()  # there is only this one
                sys.stdin.readline()
                state["ending"] = True
                sm.SmsSaveYourself(c_void_p(state["client"]), SAVE_BOTH, 1, INTERACT_ANY, 0)
            elif descriptor in sockets:
                status = c_int()
                connection = ice.IceAcceptConnection(c_void_p(sockets[descriptor]), byref(status))
                connections[ice.IceConnectionNumber(c_void_p(connection))] = connection
            elif ice.IceProcessMessages(c_void_p(connections[descriptor]), None, None) != ICE_PROCESS_SUCCESS:
                del connections[descriptor]
                state["closed"] = state["client"] is not None
    say("closed")


main()
