#!/usr/bin/python3
"""A session manager for one client. Prints its address for SESSION_MANAGER; runs until killed.

Obeys the lines of its input and prints the client's answers:

    save            the session is to be saved, and continues
    end             the session is to end. Another client is asking the user, so this one may not
    others done     the client may ask the user
"""

import ctypes
import select
import sys

ICE = ctypes.CDLL("libICE.so.6")
SM = ctypes.CDLL("libSM.so.6")
POINTER, TEXT, INT = ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int
for function, result in ((ICE.IceAcceptConnection, POINTER), (ICE.IceComposeNetworkIdList, TEXT),
                         (SM.SmsGenerateClientID, TEXT)):
    function.restype = result

SAVE_BOTH, ASK_NOTHING, ASK_ANYTHING = 2, 0, 2

IGNORE = ctypes.CFUNCTYPE(INT, POINTER, POINTER)
HEAR = ctypes.CFUNCTYPE(None, POINTER, POINTER, INT)
REGISTER = ctypes.CFUNCTYPE(INT, POINTER, POINTER, POINTER)
NEW_CLIENT = ctypes.CFUNCTYPE(INT, POINTER, POINTER, ctypes.POINTER(ctypes.c_ulong), ctypes.POINTER(POINTER * 20),
                              ctypes.POINTER(TEXT))
ALLOW = ctypes.CFUNCTYPE(INT, TEXT)

ignore = IGNORE(lambda connection, data: 1)
allow = ALLOW(lambda host: 1)
registered, asking = [], []


def tell(text):
    print(text, flush=True)


@REGISTER
def register(connection, _data, _previous):
    SM.SmsRegisterClientReply(POINTER(connection), SM.SmsGenerateClientID(POINTER(connection)))
    registered.append(POINTER(connection))
    return 1


@HEAR
def hear_question(connection, _data, _kind):
    asking.append(POINTER(connection))
    tell("waits for the user")


@HEAR
def hear_cancelled(connection, _data, is_cancelled):
    if is_cancelled:
        tell("cancelled")
        SM.SmsShutdownCancelled(POINTER(connection))


@HEAR
def hear_done(_connection, _data, _succeeded):
    tell("done")


CALLBACKS = {0: register, 1: hear_question, 2: hear_cancelled, 5: hear_done}


def obey(order):
    if order == "others done":
        SM.SmsInteract(asking.pop())
    else:
        is_end = order == "end"
        SM.SmsSaveYourself(registered[-1], SAVE_BOTH, is_end, ASK_ANYTHING if is_end else ASK_NOTHING, False)


@NEW_CLIENT
def new_client(_connection, _data, mask, callbacks, _reason):
    mask[0] = (1 << 10) - 1
    # Ten callbacks, each followed by its data.
    for index in range(10):
        callbacks[0][2 * index] = ctypes.cast(CALLBACKS.get(index, ignore), POINTER)
        callbacks[0][2 * index + 1] = None
    return 1


def main():
    error = ctypes.create_string_buffer(256)
    if not SM.SmsInitialize(b"vupdater", b"1", new_client, None, allow, 256, error):
        raise SystemExit(error.value.decode())
    count, listeners = INT(), ctypes.POINTER(POINTER)()
    if not ICE.IceListenForConnections(ctypes.byref(count), ctypes.byref(listeners), 256, error):
        raise SystemExit(error.value.decode())
    listening = {ICE.IceGetListenConnectionNumber(POINTER(listeners[index])): listeners[index]
                 for index in range(count.value)}
    for listener in listening.values():
        ICE.IceSetHostBasedAuthProc(POINTER(listener), allow)
    print(ICE.IceComposeNetworkIdList(count, listeners).decode(), flush=True)
    clients = {}
    while True:
        for ready in select.select([sys.stdin, *listening, *clients], [], [])[0]:
            if ready is sys.stdin:
                if not (order := sys.stdin.readline()):
                    return
                obey(order.strip())
            elif ready in listening:
                client = ICE.IceAcceptConnection(POINTER(listening[ready]), ctypes.byref(INT()))
                clients[ICE.IceConnectionNumber(POINTER(client))] = client
            elif ICE.IceProcessMessages(POINTER(clients[ready]), None, None) != 0:
                del clients[ready]


if __name__ == "__main__":
    main()
