#!/usr/bin/python3
"""A session manager that accepts clients and nothing more. Prints its address for SESSION_MANAGER; runs until killed."""

import ctypes
import select

ICE = ctypes.CDLL("libICE.so.6")
SM = ctypes.CDLL("libSM.so.6")
POINTER, TEXT, INT = ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int
for function, result in ((ICE.IceAcceptConnection, POINTER), (ICE.IceComposeNetworkIdList, TEXT),
                         (SM.SmsGenerateClientID, TEXT)):
    function.restype = result

IGNORE = ctypes.CFUNCTYPE(INT, POINTER, POINTER)
REGISTER = ctypes.CFUNCTYPE(INT, POINTER, POINTER, POINTER)
NEW_CLIENT = ctypes.CFUNCTYPE(INT, POINTER, POINTER, ctypes.POINTER(ctypes.c_ulong), ctypes.POINTER(POINTER * 20),
                              ctypes.POINTER(TEXT))
ALLOW = ctypes.CFUNCTYPE(INT, TEXT)

ignore = IGNORE(lambda connection, data: 1)
allow = ALLOW(lambda host: 1)


@REGISTER
def register(connection, _data, _previous):
    SM.SmsRegisterClientReply(POINTER(connection), SM.SmsGenerateClientID(POINTER(connection)))
    return 1


@NEW_CLIENT
def new_client(_connection, _data, mask, callbacks, _reason):
    mask[0] = (1 << 10) - 1
    # Ten callbacks, each followed by its data.
    for index in range(10):
        callbacks[0][2 * index] = ctypes.cast(ignore if index else register, POINTER)
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
        for ready in select.select([*listening, *clients], [], [])[0]:
            if ready in listening:
                client = ICE.IceAcceptConnection(POINTER(listening[ready]), ctypes.byref(INT()))
                clients[ICE.IceConnectionNumber(POINTER(client))] = client
            elif ICE.IceProcessMessages(POINTER(clients[ready]), None, None) != 0:
                del clients[ready]


if __name__ == "__main__":
    main()
