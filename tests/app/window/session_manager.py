"""A session manager for tests: what a desktop that logs out is to its X clients."""

import ctypes
import select

SAVE_LOCAL, SAVE_BOTH = 1, 2
INTERACT_NONE, INTERACT_ANY = 0, 2
ACCEPTED, PENDING = 1, 0
REGISTER_CLIENT, SAVE_YOURSELF_DONE, CLOSE_CONNECTION = 0, 5, 6
CALLBACK_COUNT = 10
ALL_CALLBACKS = (1 << CALLBACK_COUNT) - 1

Pointer = ctypes.c_void_p
# More arguments than a callback gets do no harm to one that only looks at its first ones.
Callback = ctypes.CFUNCTYPE(ctypes.c_int, Pointer, Pointer, Pointer)
NewClient = ctypes.CFUNCTYPE(
    ctypes.c_int, Pointer, Pointer, ctypes.POINTER(ctypes.c_ulong), Pointer, Pointer
)
HostAllowed = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_char_p)
Failed = ctypes.CFUNCTYPE(None, Pointer)


class CallbackSlot(ctypes.Structure):
    _fields_ = [("callback", Callback), ("data", Pointer)]


class SessionManager:
    """Clients find it by `address`, the value of SESSION_MANAGER. Works while it is pumped."""

    def __init__(self):
        self.ice = ctypes.CDLL("libICE.so.6")
        self.sm = ctypes.CDLL("libSM.so.6")
        for function in (
            *(self.ice.IceComposeNetworkIdList, self.ice.IceAcceptConnection),
            self.sm.SmsGenerateClientID,
        ):
            function.restype = Pointer
        self.clients = []
        self.connections = []
        self.is_logging_out = False
        self.unused = Callback(lambda client, data, more: 1)
        self.callbacks = {
            REGISTER_CLIENT: Callback(self.register),
            SAVE_YOURSELF_DONE: Callback(self.saved),
            CLOSE_CONNECTION: Callback(self.closed),
        }
        self.new_client = NewClient(self.take_client)
        self.host_allowed = HostAllowed(lambda host: 1)
        self.failed = Failed(lambda connection: None)
        self.ice.IceSetIOErrorHandler(self.failed)
        self.listen()

    def listen(self):
        error = ctypes.create_string_buffer(256)
        count = ctypes.c_int()
        listeners = ctypes.POINTER(Pointer)()
        if not self.sm.SmsInitialize(
            b"test", b"1", self.new_client, None, self.host_allowed, len(error), error
        ) or not self.ice.IceListenForConnections(
            ctypes.byref(count), ctypes.byref(listeners), len(error), error
        ):
            raise RuntimeError(error.value.decode())
        self.listeners = [Pointer(listeners[number]) for number in range(count.value)]
        for listener in self.listeners:
            self.ice.IceSetHostBasedAuthProc(listener, self.host_allowed)
        names = self.ice.IceComposeNetworkIdList(count, listeners)
        self.address = ctypes.string_at(names).decode()

    def take_client(self, client, data, mask, callbacks, reason):
        mask[0] = ALL_CALLBACKS
        slots = ctypes.cast(callbacks, ctypes.POINTER(CallbackSlot))
        for number in range(CALLBACK_COUNT):
            slots[number].callback = self.callbacks.get(number, self.unused)
            slots[number].data = None
        return 1

    def register(self, client, data, previous):
        if previous:
            return 0  # it comes again without
        self.sm.SmsRegisterClientReply(
            Pointer(client), Pointer(self.sm.SmsGenerateClientID(Pointer(client)))
        )
        self.sm.SmsSaveYourself(Pointer(client), SAVE_LOCAL, 0, INTERACT_NONE, 0)
        return 1

    def saved(self, client, data, success):
        if self.is_logging_out:
            self.sm.SmsDie(Pointer(client))
        else:
            self.sm.SmsSaveComplete(Pointer(client))
            self.clients.append(client)
        return 1

    def closed(self, client, data, count):
        self.clients.remove(client)
        return 1

    def log_out(self):
        """Has the clients save what they have to, and then end."""
        self.is_logging_out = True
        for client in self.clients:
            self.sm.SmsSaveYourself(Pointer(client), SAVE_BOTH, 1, INTERACT_ANY, 0)

    def pump(self):
        """Heeds what clients say; returns at once."""
        for listener in self.listeners:
            if self.has_input(self.ice.IceGetListenConnectionNumber(listener)):
                status = ctypes.c_int()
                taken = self.ice.IceAcceptConnection(listener, ctypes.byref(status))
                if taken:
                    self.connections.append(taken)
        for connection in list(self.connections):
            known = Pointer(connection)
            while self.has_input(self.ice.IceConnectionNumber(known)):
                if self.ice.IceProcessMessages(known, None, None) != 0 or (
                    self.ice.IceConnectionStatus(known) not in (PENDING, ACCEPTED)
                ):
                    self.connections.remove(connection)
                    break

    @staticmethod
    def has_input(descriptor):
        return bool(select.select((descriptor,), (), (), 0)[0])
